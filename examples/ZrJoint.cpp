#include "ZrJoint.h"

#include "ZrCellNamespace.h"

ZrJoint::ZrJoint(char axis, double lowerRadians, double upperRadians, double maxSpeed)
    : m_theAxis(axis), m_theLower(ZrAngle(lowerRadians)), m_theUpper(ZrAngle(upperRadians)), m_theMaxSpeed(maxSpeed) {}

// The members are registered by token; the order here does not matter, documents list them by name.
void ZrJoint::registerComponents() {
  registerAttributeComponent(ZrCell::attribute("axis"), &m_theAxis);
  registerComponent(ZrCell::element("lower"), &m_theLower);
  registerComponent(ZrCell::element("upper"), &m_theUpper);
  registerComponent(ZrCell::element("maxSpeed"), &m_theMaxSpeed);
}

ZrBoolean ZrJoint::equality(const ZrXmlObject* other) const {
  const ZrJoint* joint = dynamic_cast<const ZrJoint*>(other);
  return joint && m_theAxis == joint->m_theAxis && m_theLower == joint->m_theLower &&
         m_theUpper == joint->m_theUpper && m_theMaxSpeed == joint->m_theMaxSpeed;
}

ZrToken ZrJoint::token() const { return ZrCell::element("joint"); }

void ZrJoint::setLimits(const ZrAngle& lower, const ZrAngle& upper) {
  m_theLower = lower;
  m_theUpper = upper;
}
