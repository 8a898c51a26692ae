#include "ZrJoint.h"

#include "ZrCellNamespace.h"

ZrJoint::ZrJoint(char axis, double lowerRadians, double upperRadians, double maxSpeed)
    : m_theAxis(axis), m_theLower(ZrAngle(lowerRadians)), m_theUpper(ZrAngle(upperRadians)), m_theMaxSpeed(maxSpeed) {}

ZrToken ZrJoint::classToken() { return ZrCell::element("joint"); }

// The members are registered by token; the order here does not matter, documents list them by name.
void ZrJoint::registerComponents() {
  registerAttributeComponent(ZrCell::attribute("axis"), &m_theAxis);
  registerComponent(ZrCell::element("lower"), &m_theLower);
  registerComponent(ZrCell::element("upper"), &m_theUpper);
  registerComponent(ZrCell::element("maxSpeed"), &m_theMaxSpeed);
}

void ZrJoint::setLimits(const ZrAngle& lower, const ZrAngle& upper) {
  m_theLower = lower;
  m_theUpper = upper;
}
