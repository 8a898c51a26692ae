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
// In a robot's document a joint is named by its role (shoulder, elbow, wrist), under which the robot
// registers it; "joint", the class's own element name, names a joint saved as a document of its own.
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
