#ifndef ZR_XML_ORIENTATION_H
#define ZR_XML_ORIENTATION_H

#include <ZrOrientation.h>
#include <ZrXmlObject.h>

#include <istream>
#include <ostream>

// An orientation (a quaternion q0 + q1 i + q2 j + q3 k) as an XML object, its components written as
// attributes of one element:
//   <tool q0="1" q1="0" q2="0" q3="0"/>
// Reading starts every component at 0.0, takes the q0 to q3 attributes that are present and then
// normalises the quaternion, so the object always holds a unit quaternion afterwards (one without
// any component given becomes the foundation's choice for a zero quaternion, the identity). Faults
// are reported, but read() always returns true: an orientation is never a failed read.
class ZrXmlOrientation : public ZrXmlObject {
 public:
  ZrXmlOrientation() = default;
  ZrXmlOrientation(const ZrOrientation& value);  // NOLINT: implicit, so that members can be initialised from orientations
  ZrXmlOrientation(double q0, double q1, double q2, double q3);
  ZrXmlOrientation(const ZrXmlOrientation& other) = default;
  ZrXmlOrientation(ZrXmlOrientation&& other) noexcept = default;
  ZrXmlOrientation& operator=(const ZrXmlOrientation& other) = default;
  ZrXmlOrientation& operator=(const ZrOrientation& value);
  ~ZrXmlOrientation() override;

  void accept(ZrXmlObjectVisitor* visitor) const override;
  ZrXmlObject* clone() const override;
  ZrBoolean read(ZrXmlReader& reader) override;
  ZrBoolean write(ZrXmlWriter& writer) const override;
  ZrBoolean writeSchema(ZrXmlSchema& schema) const override;
  ZrBoolean equality(const ZrXmlObject* other) const override;
  ZrXmlObject* newObject() const override;
  ZrToken token() const override;

  const ZrOrientation& value() const { return m_theValue; }
  ZrOrientation& value() { return m_theValue; }
  // Giving a value marks the object specified. The value is stored as given, not normalised.
  void setValue(const ZrOrientation& value);
  double q0() const { return m_theValue.q0(); }
  double q1() const { return m_theValue.q1(); }
  double q2() const { return m_theValue.q2(); }
  double q3() const { return m_theValue.q3(); }
  operator const ZrOrientation&() const { return m_theValue; }

  bool operator==(const ZrXmlOrientation& other) const { return m_theValue == other.m_theValue; }
  bool operator!=(const ZrXmlOrientation& other) const { return !(*this == other); }
  bool operator<(const ZrXmlOrientation& other) const { return m_theValue < other.m_theValue; }

  // The raw binary form: q0 to q3 as native 8-byte reals, 32 bytes without a header. Both return true
  // whatever the stream's state; a short read leaves the missing components 0.0 (not normalised).
  ZrBoolean writeBin(std::ostream& out) const;
  ZrBoolean readBin(std::istream& in);

  // An orientation whose four components are zero (not a rotation: the identity is the default).
  static ZrXmlOrientation nullObject();
  static const ZrToken& classToken();

 private:
  ZrOrientation m_theValue;
};

#endif
