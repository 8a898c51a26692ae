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

namespace ZrXmlValueText {

std::istringstream& extractionStream(const std::string& text) {
  static thread_local std::istringstream stream;
  stream.clear();
  stream.str(text);
  return stream;
}

namespace {

bool isWhiteSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

bool onlyWhiteSpace(const char* first, const char* last) {
  for (; first != last; ++first)
    if (!isWhiteSpace(*first)) return false;
  return true;
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
  if (stream.fail()) return readSchemaSpecialReal(text, number);
  stream >> std::ws;
  return stream.eof();
}

}  // namespace

// strtod's result, through the shortcut for plain decimal text: arrays of reals are read value by value.
bool parseText(const std::string& text, double& value) { return ZrSTRING2DOUBLE(text, value); }

bool parseText(const std::string& text, float& value) {
  std::istringstream& stream = extractionStream(text);
  stream >> value;
  if (stream.fail()) {
    double special = 0.0;
    if (!readSchemaSpecialReal(text, special)) return false;
    value = static_cast<float>(special);
    return true;
  }
  stream >> std::ws;
  return stream.eof();
}

bool parseText(const std::string& text, int& value) {
  const char* first = text.c_str();
  const char* end = nullptr;
  const long number = ZrSTRING2LONG(first, &end);
  value = static_cast<int>(number);
  return end != first && number == value && onlyWhiteSpace(end, first + text.size());
}

// Stream extraction takes "-1" for an unsigned number (and wraps it round): a minus sign makes the text
// no value of the type, whatever was stored.
static bool hasMinusSign(const std::string& text) {
  const std::size_t first = text.find_first_not_of(" \t\n\r");
  return first != std::string::npos && text[first] == '-';
}

bool parseText(const std::string& text, unsigned int& value) {
  return parseText<unsigned int>(text, value) && !hasMinusSign(text);
}
bool parseText(const std::string& text, short& value) { return parseText<short>(text, value); }
bool parseText(const std::string& text, unsigned short& value) {
  return parseText<unsigned short>(text, value) && !hasMinusSign(text);
}
bool parseText(const std::string& text, char& value) { return parseText<char>(text, value); }
bool parseText(const std::string& text, bool& value) { return parseText<bool>(text, value); }  // numeric form only

bool parseSchemaBool(const std::string& text, bool& value) {
  const std::size_t first = text.find_first_not_of(" \t\n\r");
  const std::size_t last = text.find_last_not_of(" \t\n\r");
  if (first == std::string::npos) return false;
  const std::string_view word(text.data() + first, last - first + 1);
  if (word == "true") value = true;
  else if (word == "false") value = false;
  else return false;
  return true;
}

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
  const bool whole = parseText(text, wide);
  value = static_cast<unsigned char>(wide & 0xFFu);
  return whole && wide <= 0xFFu;
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

void formatText(std::ostream& out, bool value) { out << (value ? '1' : '0'); }
void formatText(std::ostream& out, unsigned char value) { out << static_cast<unsigned short>(value); }
void formatText(std::ostream& out, const ZrAngle& value) { out << value.value(); }
void formatText(std::ostream& out, const ZrNonNegReal& value) { out << value.value(); }

// The character itself; the NUL character (a default char) is written as empty text, which a
// document cannot hold otherwise and which reads back as an unchanged, still default, value.
void formatText(std::ostream& out, char value) {
  if (value != '\0') out << value;
}
}  // namespace ZrXmlValueText

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
