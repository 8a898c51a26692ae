#ifndef ZR_JOINT_H
#define ZR_JOINT_H

#include <ZrXmlBasicType.h>
#include <ZrXmlCompoundType.h>

// One revolute joint of a robot arm: the axis it turns about and its travel limits.
//
//   <shoulder axis="z">
//     <lower>-2.96706</lower>
//     <maxSpeed>2.0944</maxSpeed>
//     <upper>2.96706</upper>
//   </shoulder>
//
// The pattern every persistent class follows: members are value objects, registerComponents()
// names them, and clone / newObject / equality / token complete the object interface.
class ZrJoint : public ZrXmlCompoundType {
 public:
  ZrJoint() = default;
  ZrJoint(char axis, double lowerRadians, double upperRadians, double maxSpeed);

  ZrXmlObject* clone() const override { return new ZrJoint(*this); }
  ZrXmlObject* newObject() const override { return new ZrJoint(); }
  ZrBoolean equality(const ZrXmlObject* other) const override;
  ZrToken token() const override;

  char axis() const { return m_theAxis.value(); }
  const ZrAngle& lower() const { return m_theLower.value(); }
  const ZrAngle& upper() const { return m_theUpper.value(); }
  double maxSpeed() const { return m_theMaxSpeed.value(); }  // radians per second
  void setLimits(const ZrAngle& lower, const ZrAngle& upper);

 protected:
  void registerComponents() override;

 private:
  ZrXmlBasicType<char> m_theAxis;
  ZrXmlBasicType<ZrAngle> m_theLower;
  ZrXmlBasicType<ZrAngle> m_theUpper;
  ZrXmlBasicType<double> m_theMaxSpeed;
};

#endif
