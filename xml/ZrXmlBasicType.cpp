#include "ZrXmlBasicType.h"

#include "ZrNumberText.h"
#include "ZrPrint.h"
#include "ZrXmlObjectVisitor.h"
#include "ZrXmlReader.h"
#include "ZrXmlSchema.h"
#include "ZrXmlWriter.h"

#include <cmath>
#include <cstdlib>
#include <sstream>
#include <string_view>
#include <type_traits>
#include <typeinfo>

namespace {

// One extraction stream serves every conversion that the text forms define by stream extraction:
// building a stream (and its locale) per value would dominate the cost of reading numbers. It is
// reset before each use, and nothing ever changes its format flags, so each extraction behaves as
// on a freshly built stream.
std::istringstream& extractionStream(const std::string& text) {
  static thread_local std::istringstream stream;
  stream.clear();
  stream.str(text);
  return stream;
}

bool isWhiteSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

bool onlyWhiteSpace(const char* first, const char* last) {
  for (; first != last; ++first)
    if (!isWhiteSpace(*first)) return false;
  return true;
}

// Whether an extraction took a value and left nothing but white space behind it.
bool extractedWholeText(std::istringstream& stream) {
  if (stream.fail()) return false;
  stream >> std::ws;
  return stream.eof();
}

template <class Number>
bool extractWhole(const std::string& text, Number& value) {
  std::istringstream& stream = extractionStream(text);
  stream >> value;
  return extractedWholeText(stream);
}

// Each parser stores what the text form gives (however faulty the text) and says whether the whole
// text, white space around it aside, was a value of the type.

// strtod's result, through the shortcut for plain decimal text: arrays of reals are read value by value.
bool parseText(const std::string& text, double& value) { return ZrSTRING2DOUBLE(text, value); }

bool parseText(const std::string& text, int& value) {
  const char* first = text.c_str();
  char* end = nullptr;
  const long number = std::strtol(first, &end, 10);
  value = static_cast<int>(number);
  return end != first && number == value && onlyWhiteSpace(end, first + text.size());
}

bool parseText(const std::string& text, unsigned int& value) { return extractWhole(text, value); }
bool parseText(const std::string& text, short& value) { return extractWhole(text, value); }
bool parseText(const std::string& text, unsigned short& value) { return extractWhole(text, value); }
bool parseText(const std::string& text, char& value) { return extractWhole(text, value); }
bool parseText(const std::string& text, bool& value) { return extractWhole(text, value); }  // numeric form only

bool parseText(const std::string& text, std::string& value) {
  value = text;
  return true;
}

// A byte is read as a number, so that "65" is 65 and not the character '6'.
bool parseText(const std::string& text, unsigned char& value) {
  if (text.empty()) {
    value = 0;
    return false;
  }
  unsigned short wide = 0;
  const bool whole = extractWhole(text, wide);
  value = static_cast<unsigned char>(wide & 0xFFu);
  return whole && wide <= 0xFFu;
}

// Stream extraction reads no infinity or NaN; the XML Schema spellings that lossless reals are
// written in are taken as well, where the extraction failed.
bool readSchemaSpecialReal(const std::string& text, double& number) {
  const std::size_t first = text.find_first_not_of(" \t\n\r");
  const std::size_t last = text.find_last_not_of(" \t\n\r");
  if (first == std::string::npos) return false;
  const std::string_view word(text.data() + first, last - first + 1);
  if (word == "INF") number = HUGE_VAL;
  else if (word == "-INF") number = -HUGE_VAL;
  else if (word == "NaN") number = std::nan("");
  else return false;
  return true;
}

bool extractDouble(const std::string& text, double& number) {
  number = 0.0;
  std::istringstream& stream = extractionStream(text);
  stream >> number;
  if (extractedWholeText(stream)) return true;
  return stream.fail() && readSchemaSpecialReal(text, number);
}

bool parseText(const std::string& text, ZrAngle& value) {
  double number;
  const bool whole = extractDouble(text, number);
  value.setValue(number);
  return whole;
}

// Negative numbers and NaN are stored as 0.0 and are no value of the type.
bool parseText(const std::string& text, ZrNonNegReal& value) {
  double number;
  const bool whole = extractDouble(text, number);
  value.setValue(number);
  return whole && number >= 0.0;
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

template <class T>
void formatText(std::ostream& out, const T& value) {
  out << value;
}

void formatText(std::ostream& out, bool value) { out << (value ? '1' : '0'); }
void formatText(std::ostream& out, unsigned char value) { out << static_cast<unsigned short>(value); }
void formatText(std::ostream& out, const ZrAngle& value) { out << value.value(); }
void formatText(std::ostream& out, const ZrNonNegReal& value) { out << value.value(); }

// The character itself; the NUL character (a default char) is written as empty text, which a
// document cannot hold otherwise and which reads back as an unchanged, still default, value.
void formatText(std::ostream& out, char value) {
  if (value != '\0') out << value;
}

}  // namespace

template <class T>
ZrXmlBasicType<T>::ZrXmlBasicType(const T& value) : m_theValue(value) {}

template <class T>
ZrXmlBasicType<T>::ZrXmlBasicType(const ZrXmlBasicType& other) : ZrBaseXmlBasicType(other), m_theValue(other.m_theValue) {}

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
  if (visitor) visitor->visit(this);
}

template <class T>
ZrXmlObject* ZrXmlBasicType<T>::clone() const {
  return new ZrXmlBasicType(*this);
}

template <class T>
ZrBoolean ZrXmlBasicType<T>::read(ZrXmlReader& reader) {
  ZrBoolean result = ZrXmlObject::read(reader);
  if (!result) return result;
  std::string text;
  if (elementText(reader, text)) {
    setValueFromString(text);
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
  ZrBoolean result = ZrXmlObject::read(reader);
  if (!result) return result;
  if (reader.remainingNumOfAttributes() != 0) {
    setValueFromString(reader.attributeValue());
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
  } else if constexpr (std::is_same<T, double>::value) {
    writer.realData(m_theValue);  // the writer chooses between six digits and the lossless form
  } else if constexpr (std::is_same<T, ZrAngle>::value || std::is_same<T, ZrNonNegReal>::value) {
    writer.realData(m_theValue.value());
  } else {
    std::ostringstream& stream = writer.valueStream();
    formatText(stream, m_theValue);
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
  return parseText(text, m_theValue);
}

// The elements are made here, so they are exactly this type: no override of setValueFromString() or
// of the base's bookkeeping could apply, and the word is parsed straight from the view.
template <class T>
long ZrXmlBasicType<T>::readWords(ZrXmlReader& reader, std::vector<ZrXmlBasicType>& elements) {
  const WordParser<T> parse{};
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
    formatText(out, m_theValue);
    return out.str();
  }
}

template <class T>
void ZrXmlBasicType<T>::formatValue(std::ostream& out, const T& value) {
  formatText(out, value);
}

template class ZrXmlBasicType<bool>;
template class ZrXmlBasicType<char>;
template class ZrXmlBasicType<short>;
template class ZrXmlBasicType<unsigned short>;
template class ZrXmlBasicType<int>;
template class ZrXmlBasicType<unsigned int>;
template class ZrXmlBasicType<unsigned char>;
template class ZrXmlBasicType<double>;
template class ZrXmlBasicType<std::string>;
template class ZrXmlBasicType<ZrAngle>;
template class ZrXmlBasicType<ZrNonNegReal>;
