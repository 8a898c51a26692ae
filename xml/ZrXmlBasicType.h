#ifndef ZR_XML_BASIC_TYPE_H
#define ZR_XML_BASIC_TYPE_H

#include <ZrAngle.h>
#include <ZrBaseXmlBasicType.h>
#include <ZrNonNegReal.h>

#include <ostream>
#include <string>
#include <vector>

// One plain value as an XML object: read from and written to an element's content or an
// attribute's value in a fixed text form per type:
//   double          read with strtod (rest ignored, no number gives 0), written through the writer's stream
//   int             read with strtol in base 10 (rest ignored, no number gives 0)
//   unsigned int, short, unsigned short
//                   read by stream extraction (a failed extraction leaves what the stream rules leave)
//   unsigned char   read as an unsigned short whose low byte is kept (empty text gives 0), written as a number
//   char            read as one character after leading white space, written as the character itself
//   bool            numeric form only: "0" and "1"
//   std::string     the text as it stands, untrimmed
//   ZrAngle         a double, handed to the angle's setter; written as the angle's value
//   ZrNonNegReal    a double; anything not above 0.0 (NaN too) is stored as 0.0
// Numbers are written with the writer's stream defaults, so reals keep six significant digits unless
// the writer writes lossless reals (ZrXmlWriter::setLosslessReals). The infinities and NaN of that form
// ("INF", "-INF", "NaN") read back into every real type: strtod takes them, and the angle and the
// non-negative real take them where their stream extraction fails.
//
// The members are defined in the library for exactly these types: bool, char, short, unsigned short,
// int, unsigned int, unsigned char, double, std::string, ZrAngle and ZrNonNegReal.
template <class T>
class ZrXmlBasicType : public ZrBaseXmlBasicType {
 public:
  ZrXmlBasicType() : m_theValue() {}  // inline, like the destructor: vectors hold millions of these
  ZrXmlBasicType(const T& value);  // NOLINT: implicit, so that members can be initialised from plain values
  ZrXmlBasicType(const ZrXmlBasicType& other);
  ZrXmlBasicType& operator=(const ZrXmlBasicType& other);
  ZrXmlBasicType& operator=(const T& value);
  ~ZrXmlBasicType() override = default;

  void accept(ZrXmlObjectVisitor* visitor) const override;
  ZrXmlObject* clone() const override;
  ZrBoolean read(ZrXmlReader& reader) override;
  ZrBoolean readAttribute(ZrXmlReader& reader) override;
  ZrBoolean write(ZrXmlWriter& writer) const override;
  ZrBoolean writeSchema(ZrXmlSchema& schema) const override;
  ZrBoolean isBasicType() const override;
  ZrBoolean equality(const ZrXmlObject* other) const override;
  ZrXmlObject* newObject() const override;
  ZrToken token() const override;
  // Stores what the type's text form gives (reading is forgiving: no message, faulty text still
  // yields a value) and returns whether the whole text, white space around it aside, was a value of
  // the type: "1.5x" gives 1.5 and false, "" gives 0 and false, "300" for a byte gives 44 and false.
  virtual ZrBoolean setValueFromString(const std::string& text);
  // Appends one element per word left in the content the reader stands on (word-by-word reading),
  // each holding what read() would have given it, and returns how many. Vectors of single values read
  // their groups through it: no string per word, and conversion settings are looked at once per group.
  static long readWords(ZrXmlReader& reader, std::vector<ZrXmlBasicType>& elements);

  const T& value() const { return m_theValue; }
  T& value() { return m_theValue; }
  // Giving a value (by setValue or by assigning a plain value) marks the object specified.
  void setValue(const T& value);
  operator const T&() const { return m_theValue; }

  // Equal values by T's own ==, so a NaN double never equals anything.
  bool operator==(const ZrXmlBasicType& other) const;
  bool operator!=(const ZrXmlBasicType& other) const { return !(*this == other); }
  // Orders by value only, so that these objects can be keys of ordered containers.
  bool operator<(const ZrXmlBasicType& other) const { return m_theValue < other.m_theValue; }

  // An object holding the type's zero value (0.0 for double, false, the empty string).
  static ZrXmlBasicType nullObject();

  // The value's text form, as write() would pass it to the writer.
  std::string text() const;
  static void formatValue(std::ostream& out, const T& value);

 private:
  T m_theValue;
};

extern template class ZrXmlBasicType<bool>;
extern template class ZrXmlBasicType<char>;
extern template class ZrXmlBasicType<short>;
extern template class ZrXmlBasicType<unsigned short>;
extern template class ZrXmlBasicType<int>;
extern template class ZrXmlBasicType<unsigned int>;
extern template class ZrXmlBasicType<unsigned char>;
extern template class ZrXmlBasicType<double>;
extern template class ZrXmlBasicType<std::string>;
extern template class ZrXmlBasicType<ZrAngle>;
extern template class ZrXmlBasicType<ZrNonNegReal>;

#endif
