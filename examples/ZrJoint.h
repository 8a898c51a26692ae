#ifndef ZR_JOINT_H
#define ZR_JOINT_H

#include <ZrXmlBasicType.h>
#include <ZrXmlCompound.h>

// One revolute joint of a robot arm: the axis it turns about and its travel limits.
//
//   <shoulder axis="z">
//     <lower>-2.96706</lower>
//     <maxSpeed>2.0944</maxSpeed>
//     <upper>2.96706</upper>
//   </shoulder>
//
// The robot names each joint by its role (shoulder, elbow, wrist); "joint" is the class's own element
// name, which the schema and the value list use.
class ZrJoint : public ZrXmlCompound<ZrJoint> {
 public:
  ZrJoint() = default;
  ZrJoint(char axis, double lowerRadians, double upperRadians, double maxSpeed);

  static ZrToken classToken();

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
