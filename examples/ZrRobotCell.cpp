#include "ZrRobotCell.h"

#include "ZrCellNamespace.h"

// A new cell is stamped with the document format version this code writes.
ZrRobotCell::ZrRobotCell() : m_theVersion(std::string(ZrXml::codeBaseVersion)) {}

ZrToken ZrRobotCell::classToken() { return ZrCell::element("robotCell"); }

// The root also takes the "version" attribute that every document's root carries.
void ZrRobotCell::registerComponents() {
  registerAttributeComponent(ZrXml::ZrVersionToken, &m_theVersion);
  registerAttributeComponent(ZrCell::attribute("name"), &m_theName);
  registerComponent(ZrCell::element("cycleTime"), &m_theCycleTime);
  registerComponent(ZrCell::element("enabled"), &m_theEnabled);
  registerComponent(ZrCell::element("operators"), &m_theOperators);
  registerComponent(ZrCell::element("loader"), &m_theLoader);
  registerComponent(ZrCell::element("welder"), &m_theWelder);
  registerComponent(ZrCell::element("parameters"), &m_theParameters);
  registerComponent(ZrCell::element("stations"), &m_theStations);
  registerComponent(ZrCell::element("shifts"), &m_theShifts);
  registerComponent(ZrCell::element("speedProfiles"), &m_theSpeedProfiles);
}
