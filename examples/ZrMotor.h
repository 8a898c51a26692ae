#ifndef ZR_MOTOR_H
#define ZR_MOTOR_H

#include <ZrXmlBasicType.h>
#include <ZrXmlCompoundType.h>
#include <ZrXmlEnumType.h>

#include <string>

// One drive motor of a conveyor line: an application's own compound, held by the line in a vector and
// in a map. Its members use value types the library does not compile in (float, long, an enum class),
// which instantiate from the headers.
//
//   <element name="infeed" direction="forward">
//     <hours>1200</hours>
//     <power>0.75</power>
//   </element>
class ZrMotor : public ZrXmlCompoundType {
 public:
  enum class Direction { forward, reverse };

  ZrMotor();
  ZrMotor(const std::string& name, float power, long hours, Direction direction);

  // The four operations every persistent class completes its interface with.
  ZrXmlObject* clone() const override { return new ZrMotor(*this); }
  ZrXmlObject* newObject() const override { return new ZrMotor(); }
  ZrBoolean equality(const ZrXmlObject* other) const override;
  ZrToken token() const override;

  const std::string& name() const { return m_theName.value(); }
  float power() const { return m_thePower.value(); }  // kilowatts
  long hours() const { return m_theHours.value(); }   // hours run
  Direction direction() const { return m_theDirection.value(); }

 protected:
  void registerComponents() override;

 private:
  ZrXmlBasicType<std::string> m_theName;
  ZrXmlBasicType<float> m_thePower;
  ZrXmlBasicType<long> m_theHours;
  ZrXmlEnumType<Direction> m_theDirection;
};

#endif
