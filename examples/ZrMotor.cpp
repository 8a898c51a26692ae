#include "ZrMotor.h"

#include "ZrCellNamespace.h"

namespace {
ZrXmlEnumType<ZrMotor::Direction> directionNamed(ZrMotor::Direction direction) {
  return ZrXmlEnumType<ZrMotor::Direction>(
      direction, {{ZrMotor::Direction::forward, "forward"}, {ZrMotor::Direction::reverse, "reverse"}});
}
}  // namespace

ZrMotor::ZrMotor() : m_theDirection(directionNamed(Direction::forward)) {}

ZrMotor::ZrMotor(const std::string& name, float power, long hours, Direction direction)
    : m_theName(name), m_thePower(power), m_theHours(hours), m_theDirection(directionNamed(direction)) {}

void ZrMotor::registerComponents() {
  registerAttributeComponent(ZrCell::attribute("name"), &m_theName);
  registerAttributeComponent(ZrCell::attribute("direction"), &m_theDirection);
  registerComponent(ZrCell::element("power"), &m_thePower);
  registerComponent(ZrCell::element("hours"), &m_theHours);
}

ZrBoolean ZrMotor::equality(const ZrXmlObject* other) const {
  const ZrMotor* motor = dynamic_cast<const ZrMotor*>(other);
  return motor && m_theName == motor->m_theName && m_thePower == motor->m_thePower &&
         m_theHours == motor->m_theHours && m_theDirection == motor->m_theDirection;
}

ZrToken ZrMotor::token() const { return ZrCell::element("motor"); }
