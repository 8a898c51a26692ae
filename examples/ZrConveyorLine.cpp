#include "ZrConveyorLine.h"

#include "ZrCellNamespace.h"

ZrToken ZrConveyorLine::rootToken() { return ZrCell::element("conveyorLine"); }

void ZrConveyorLine::registerComponents() {
  registerComponent(ZrCell::element("motors"), &m_theMotors);
  registerComponent(ZrCell::element("spares"), &m_theSpares);
  registerComponent(ZrCell::element("label"), &m_theLabel);
}

ZrBoolean ZrConveyorLine::equality(const ZrXmlObject* other) const {
  const ZrConveyorLine* line = dynamic_cast<const ZrConveyorLine*>(other);
  return line && m_theMotors == line->m_theMotors && m_theSpares == line->m_theSpares && m_theLabel == line->m_theLabel;
}
