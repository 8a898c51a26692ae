#include "ZrXmlBasicType.h"

#include "ZrNumberText.h"
#include "ZrPrint.h"
#include "ZrXmlObjectVisitor.h"
#include "ZrXmlReader.h"
#include "ZrXmlSchema.h"
#include "ZrXmlWriter.h"

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

// strtod's result, through the shortcut for plain decimal text: arrays of reals are read value by value.
void parseText(const std::string& text, double& value) { value = ZrSTRING2DOUBLE(text); }

void parseText(const std::string& text, int& value) {
  value = static_cast<int>(std::strtol(text.c_str(), nullptr, 10));
}

void parseText(const std::string& text, unsigned int& value) { extractionStream(text) >> value; }
void parseText(const std::string& text, short& value) { extractionStream(text) >> value; }
void parseText(const std::string& text, unsigned short& value) { extractionStream(text) >> value; }
void parseText(const std::string& text, char& value) { extractionStream(text) >> value; }
void parseText(const std::string& text, bool& value) { extractionStream(text) >> value; }  // numeric form only
void parseText(const std::string& text, std::string& value) { value = text; }

// A byte is read as a number, so that "65" is 65 and not the character '6'.
void parseText(const std::string& text, unsigned char& value) {
  if (text.empty()) {
    value = 0;
    return;
  }
  unsigned short wide = 0;
  extractionStream(text) >> wide;
  value = static_cast<unsigned char>(wide & 0xFFu);
}

namespace {
double extractDouble(const std::string& text) {
  double number = 0.0;
  extractionStream(text) >> number;
  return number;
}
}  // namespace

void parseText(const std::string& text, ZrAngle& value) { value.setValue(extractDouble(text)); }
void parseText(const std::string& text, ZrNonNegReal& value) { value.setValue(extractDouble(text)); }

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
