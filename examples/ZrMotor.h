#ifndef ZR_MOTOR_H
#define ZR_MOTOR_H

#include "ZrCellNamespace.h"

#include <ZrXmlBasicType.h>
#include <ZrXmlCompound.h>
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
class ZrMotor : public ZrXmlCompound<ZrMotor> {
 public:
  enum class Direction { forward, reverse };
  friend ZrXmlEnumNames<Direction> zrXmlEnumNames(Direction) {  // the names, once for the type
    return {{Direction::forward, "forward"}, {Direction::reverse, "reverse"}};
  }

  ZrMotor() = default;
  ZrMotor(const std::string& name, float power, long hours, Direction direction);
  static ZrToken classToken() { return ZrCell::element("motor"); }

  const std::string& name() const { return m_theName.value(); }
  float power() const { return m_thePower.value(); }  // kilowatts
  long hours() const { return m_theHours.value(); }   // hours run
  Direction direction() const { return m_theDirection.value(); }

 protected:
  void registerComponents() override {  // the members, by the names they have in documents
    registerAttributeComponent(ZrCell::attribute("name"), &m_theName);
    registerAttributeComponent(ZrCell::attribute("direction"), &m_theDirection);
    registerComponent(ZrCell::element("power"), &m_thePower);
    registerComponent(ZrCell::element("hours"), &m_theHours);
  }

 private:
  ZrXmlBasicType<std::string> m_theName;
  ZrXmlBasicType<float> m_thePower;
  ZrXmlBasicType<long> m_theHours;
  ZrXmlEnumType<Direction> m_theDirection;
};

#endif
