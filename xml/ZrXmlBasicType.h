#ifndef ZR_XML_BASIC_TYPE_H
#define ZR_XML_BASIC_TYPE_H

#include <ZrAngle.h>
#include <ZrBaseXmlBasicType.h>
#include <ZrNonNegReal.h>

#include <ZrNumberText.h>
#include <ZrPrint.h>
#include <ZrXmlObjectVisitor.h>
#include <ZrXmlReader.h>
#include <ZrXmlSchema.h>
#include <ZrXmlWriter.h>

#include <ostream>
#include <sstream>
#include <string>
#include <string_view>
#include <type_traits>
#include <typeinfo>
#include <utility>
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
// The members are compiled into the library (and declared extern below) for bool, char, short,
// unsigned short, int, unsigned int, unsigned char, double, std::string, ZrAngle and ZrNonNegReal. Any
// other T (float, long, ...) instantiates from this header: read by stream extraction, written by
// stream insertion.
template <class T>
class ZrXmlBasicType : public ZrBaseXmlBasicType {
 public:
  ZrXmlBasicType() : m_theValue() {}  // inline, like the destructor: vectors hold millions of these
  ZrXmlBasicType(const T& value);  // NOLINT: implicit, so that members can be initialised from plain values
  ZrXmlBasicType(const ZrXmlBasicType& other);
  ZrXmlBasicType(ZrXmlBasicType&& other) noexcept(std::is_nothrow_move_constructible<T>::value);
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
  // What a reader checking values reads: the same, but a bool also takes "true" and "false".
  ZrBoolean setCheckedValueFromString(const std::string& text);
  // Appends one element per word left in the content the reader stands on (word-by-word reading),
  // each holding what read() would have given it, and returns how many. Vectors of single values read
  // their groups through it: no string per word, and conversion settings are looked at once per group.
  static long readWords(ZrXmlReader& reader, std::vector<ZrXmlBasicType>& elements);
  // The same, each word checked (a reader checking values); a word that is no whole value is reported.
  static long readCheckedWords(ZrXmlReader& reader, std::vector<ZrXmlBasicType>& elements);

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

// The text forms of values. The library's own types have conversions of their own (defined in the
// library); any other type is read by stream extraction and written by stream insertion.
namespace ZrXmlValueText {
// The one extraction stream that every extraction shares: building a stream (and its locale) per value
// would dominate the cost of reading numbers. It is reset before each use, and nothing ever changes
// its format flags, so each extraction behaves as on a freshly built stream.
std::istringstream& extractionStream(const std::string& text);

bool parseText(const std::string& text, double& value);
bool parseText(const std::string& text, int& value);
bool parseText(const std::string& text, unsigned int& value);
bool parseText(const std::string& text, short& value);
bool parseText(const std::string& text, unsigned short& value);
bool parseText(const std::string& text, char& value);
bool parseText(const std::string& text, bool& value);
bool parseText(const std::string& text, std::string& value);
bool parseText(const std::string& text, unsigned char& value);
bool parseText(const std::string& text, ZrAngle& value);
bool parseText(const std::string& text, ZrNonNegReal& value);

// Each parser stores what the text form gives, however faulty the text, and says whether the whole
// text, white space around it aside, was a value of the type.
// Stream extraction, and where it fails the XML Schema spellings of lossless reals ("INF", "-INF", "NaN").
bool parseText(const std::string& text, float& value);

template <class T>
bool parseText(const std::string& text, T& value) {
  std::istringstream& stream = extractionStream(text);
  stream >> value;
  if (stream.fail()) return false;
  stream >> std::ws;
  return stream.eof();
}

// The name a checked value's report gives its type.
template <class T>
const char* typeName() {
  if constexpr (std::is_same<T, bool>::value) return "bool";
  else if constexpr (std::is_same<T, char>::value) return "char";
  else if constexpr (std::is_same<T, unsigned char>::value) return "unsigned char";
  else if constexpr (std::is_same<T, short>::value) return "short";
  else if constexpr (std::is_same<T, unsigned short>::value) return "unsigned short";
  else if constexpr (std::is_same<T, int>::value) return "int";
  else if constexpr (std::is_same<T, unsigned int>::value) return "unsigned int";
  else if constexpr (std::is_same<T, long>::value) return "long";
  else if constexpr (std::is_same<T, unsigned long>::value) return "unsigned long";
  else if constexpr (std::is_same<T, float>::value) return "float";
  else if constexpr (std::is_same<T, double>::value) return "double";
  else if constexpr (std::is_same<T, std::string>::value) return "string";
  else if constexpr (std::is_same<T, ZrAngle>::value) return "angle";
  else if constexpr (std::is_same<T, ZrNonNegReal>::value) return "non-negative real";
  else return typeid(T).name();
}

// With checked values, bools are read as XML Schema reads them: "true" and "false" beside "1" and "0".
bool parseSchemaBool(const std::string& text, bool& value);

// The integer types the stream writes as plain decimal numbers (not the character and boolean types).
template <class T>
struct isPlainInteger
    : std::integral_constant<bool, std::is_same<T, short>::value || std::is_same<T, unsigned short>::value ||
                                       std::is_same<T, int>::value || std::is_same<T, unsigned int>::value ||
                                       std::is_same<T, long>::value || std::is_same<T, unsigned long>::value ||
                                       std::is_same<T, long long>::value || std::is_same<T, unsigned long long>::value> {};

void formatText(std::ostream& out, bool value);
void formatText(std::ostream& out, unsigned char value);
void formatText(std::ostream& out, char value);
void formatText(std::ostream& out, const ZrAngle& value);
void formatText(std::ostream& out, const ZrNonNegReal& value);

template <class T>
void formatText(std::ostream& out, const T& value) {
  out << value;
}

// Words of long arrays: reals and strings are taken from the view itself; the other forms are defined
// by conversions that want a terminated string, and short words fit in the string's own storage.
template <class T>
struct WordParser {
  void operator()(std::string_view word, T& value) const { parseText(std::string(word), value); }
};

template <>
struct WordParser<double> {
  ZrDoubleTextRun run;  // one look at the locale and rounding direction for the whole group
  void operator()(std::string_view word, double& value) const { value = run.read(word.data(), word.data() + word.size()); }
};

template <>
struct WordParser<std::string> {
  void operator()(std::string_view word, std::string& value) const { value.assign(word.data(), word.size()); }
};
}  // namespace ZrXmlValueText

// Member definitions: any value type instantiates them; the types listed above are compiled into
// the library and declared extern below, so their users do not compile them again.

template <class T>
ZrXmlBasicType<T>::ZrXmlBasicType(const T& value) : m_theValue(value) {}

template <class T>
ZrXmlBasicType<T>::ZrXmlBasicType(const ZrXmlBasicType& other) : ZrBaseXmlBasicType(other), m_theValue(other.m_theValue) {}

template <class T>
ZrXmlBasicType<T>::ZrXmlBasicType(ZrXmlBasicType&& other) noexcept(std::is_nothrow_move_constructible<T>::value)
    : ZrBaseXmlBasicType(std::move(other)), m_theValue(std::move(other.m_theValue)) {}

template <class T>
ZrXmlBasicType<T>& ZrXmlBasicType<T>::operator=(const ZrXmlBasicType& other) {
  ZrBaseXmlBasicType::operator=(other);
  m_theValue = other.m_theValue;
  return *this;
}

template <class T>
ZrXmlBasicType<T>& ZrXmlBasicType<T>::operator=(const T& value) {
  setValue(value);
  return *this;
}

template <class T>
void ZrXmlBasicType<T>::accept(ZrXmlObjectVisitor* visitor) const {
  ZrXmlAcceptValue(this, visitor);
}

template <class T>
ZrXmlObject* ZrXmlBasicType<T>::clone() const {
  return new ZrXmlBasicType(*this);
}

template <class T>
ZrBoolean ZrXmlBasicType<T>::read(ZrXmlReader& reader) {
  ZrBoolean result = readBaseOf<ZrXmlBasicType>(reader);
  if (!result) return result;
  std::string text;
  if (elementText(reader, text)) {
    if (!reader.checkValues()) {
      setValueFromString(text);
    } else if (!setCheckedValueFromString(text)) {
      reader.reportFaultyValue(false, reader.element().tokenText(), text, ZrXmlValueText::typeName<T>());
    }
    return true;
  }
  Zr::Print::instance().write(Zr::PrintError,
                              "ZrXmlBasicType Error: file not valid.\n\tNo data found.\n\tFile: %s\n\tLine: %d\n",
                              reader.filename().c_str(), reader.lineCountOfFile());
  setValueFromString(text);
  return false;
}

// A missing attribute is reported but is not a failure: the value becomes that of the empty text.
template <class T>
ZrBoolean ZrXmlBasicType<T>::readAttribute(ZrXmlReader& reader) {
  ZrBoolean result = readBaseOf<ZrXmlBasicType>(reader);
  if (!result) return result;
  if (reader.remainingNumOfAttributes() != 0) {
    if (!reader.checkValues()) {
      setValueFromString(reader.attributeValue());
    } else {
      const ZrToken name = reader.attributeName();
      const std::string& text = reader.attributeValue();
      if (!setCheckedValueFromString(text))
        reader.reportFaultyValue(true, name.tokenText(), text, ZrXmlValueText::typeName<T>());
    }
  } else {
    Zr::Print::instance().write(Zr::PrintError,
                                "ZrXmlBasicType Error: file not valid.\n\tNo attributes found.\n\tFile: %s\n\tLine: %d\n",
                                reader.filename().c_str(), reader.lineCountOfFile());
    setValueFromString(std::string());
  }
  return result;
}

template <class T>
ZrBoolean ZrXmlBasicType<T>::write(ZrXmlWriter& writer) const {
  if (!ZrXmlObject::write(writer)) return false;
  writer.type(typeid(T));
  if constexpr (std::is_same<T, std::string>::value) {
    writer.data(m_theValue);  // a string's text is the string itself: no formatting needed
  } else if constexpr (std::is_same<T, double>::value || std::is_same<T, float>::value) {
    writer.realData(m_theValue);  // the writer chooses between six digits and the lossless form
  } else if constexpr (std::is_same<T, ZrAngle>::value || std::is_same<T, ZrNonNegReal>::value) {
    writer.realData(m_theValue.value());
  } else if constexpr (ZrXmlValueText::isPlainInteger<T>::value) {
    if constexpr (std::is_signed<T>::value) writer.integerData(m_theValue);
    else writer.unsignedData(m_theValue);
  } else {
    std::ostringstream& stream = writer.valueStream();
    ZrXmlValueText::formatText(stream, m_theValue);
    writer.data(stream.str());
    stream.str(std::string());
  }
  return true;
}

template <class T>
ZrBoolean ZrXmlBasicType<T>::writeSchema(ZrXmlSchema& schema) const {
  ZrBoolean result = ZrXmlObject::writeSchema(schema);
  if (result) schema.setType(typeid(T));
  return result;
}

template <class T>
ZrBoolean ZrXmlBasicType<T>::isBasicType() const {
  return true;
}

template <class T>
ZrBoolean ZrXmlBasicType<T>::equality(const ZrXmlObject* other) const {
  const ZrXmlBasicType* same = dynamic_cast<const ZrXmlBasicType*>(other);
  return same != nullptr && *this == *same;
}

template <class T>
ZrXmlObject* ZrXmlBasicType<T>::newObject() const {
  return new ZrXmlBasicType();
}

template <class T>
ZrToken ZrXmlBasicType<T>::token() const {
  return ZrXml::ZrBasicTypeToken;
}

template <class T>
ZrBoolean ZrXmlBasicType<T>::setValueFromString(const std::string& text) {
  return ZrXmlValueText::parseText(text, m_theValue);
}

template <class T>
ZrBoolean ZrXmlBasicType<T>::setCheckedValueFromString(const std::string& text) {
  if constexpr (std::is_same<T, bool>::value) {
    if (ZrXmlValueText::parseSchemaBool(text, m_theValue)) return true;
  }
  return setValueFromString(text);
}

// The elements are made here, so they are exactly this type: no override of setValueFromString() or
// of the base's bookkeeping could apply, and the word is parsed straight from the view.
template <class T>
long ZrXmlBasicType<T>::readWords(ZrXmlReader& reader, std::vector<ZrXmlBasicType>& elements) {
  if (reader.checkValues()) return readCheckedWords(reader, elements);
  const ZrXmlValueText::WordParser<T> parse{};
  long count = 0;
  for (std::string_view word = reader.nextContentWord(); !word.empty(); word = reader.nextContentWord()) {
    ZrXmlBasicType& element = elements.emplace_back();
    element.setReadFlags();  // what ZrXmlObject::read gives a fresh value
    parse(word, element.m_theValue);
    ++count;
  }
  return count;
}

template <class T>
long ZrXmlBasicType<T>::readCheckedWords(ZrXmlReader& reader, std::vector<ZrXmlBasicType>& elements) {
  const std::string name = reader.element().tokenText();
  std::string text;
  long count = 0;
  for (std::string_view word = reader.nextContentWord(); !word.empty(); word = reader.nextContentWord()) {
    ZrXmlBasicType& element = elements.emplace_back();
    element.setReadFlags();
    text.assign(word.data(), word.size());
    if (!element.setCheckedValueFromString(text))
      reader.reportFaultyValue(false, name, text, ZrXmlValueText::typeName<T>());
    ++count;
  }
  return count;
}

template <class T>
void ZrXmlBasicType<T>::setValue(const T& value) {
  m_theValue = value;
  setSpecified(true);
}

template <class T>
bool ZrXmlBasicType<T>::operator==(const ZrXmlBasicType& other) const {
  return ZrXmlObject::operator==(other) && m_theValue == other.m_theValue;
}

template <class T>
ZrXmlBasicType<T> ZrXmlBasicType<T>::nullObject() {
  return ZrXmlBasicType();
}

template <class T>
std::string ZrXmlBasicType<T>::text() const {
  if constexpr (std::is_same<T, std::string>::value) {
    return m_theValue;
  } else {
    std::ostringstream out;
    ZrXmlValueText::formatText(out, m_theValue);
    return out.str();
  }
}

template <class T>
void ZrXmlBasicType<T>::formatValue(std::ostream& out, const T& value) {
  ZrXmlValueText::formatText(out, value);
}

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
