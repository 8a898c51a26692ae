#include "ZrRobot.h"

#include "ZrCellNamespace.h"

// "auto" is accepted as a second name for AUTOMATIC; "automatic", added first, is the one written.
ZrRobot::ZrRobot()
    : m_theMode(MANUAL, {{MANUAL, "manual"}, {AUTOMATIC, "automatic"}, {MAINTENANCE, "maintenance"}, {AUTOMATIC, "auto"}}) {}

ZrRobot::ZrRobot(const std::string& name, unsigned serial) : ZrRobot() {
  m_theName = name;
  m_theSerial = serial;
}

void ZrRobot::registerComponents() {
  registerAttributeComponent(ZrCell::attribute("name"), &m_theName);
  registerAttributeComponent(ZrCell::attribute("serial"), &m_theSerial);
  registerComponent(ZrCell::element("mode"), &m_theMode);
  registerComponent(ZrCell::element("mass"), &m_theMass);
  registerComponentReadOnly(ZrCell::element("weight"), &m_theMass);
  registerComponent(ZrCell::element("payload"), &m_thePayload);
  registerComponent(ZrCell::element("priority"), &m_thePriority);
  registerComponent(ZrCell::element("shoulder"), &m_theShoulder);
  registerComponent(ZrCell::element("elbow"), &m_theElbow);
  registerComponent(ZrCell::element("wrist"), &m_theWrist);
  registerComponent(ZrCell::element("base"), &m_theBase);
  registerComponent(ZrCell::element("tool"), &m_theTool);
  registerComponent(ZrCell::element("path"), &m_thePath);
  registerComponent(ZrCell::element("workspace"), &m_theWorkspace);
}

ZrToken ZrRobot::classToken() { return ZrCell::element("robot"); }
