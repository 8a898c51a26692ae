#ifndef ZR_NUMBER_TEXT_H
#define ZR_NUMBER_TEXT_H

#include <string>

// Number-to-text helpers used wherever a number becomes document text, and the way back.
//
// ZrINT2STRING writes the plain decimal form ("-42").
//
// ZrDOUBLE2STRING writes the shortest text that reads back (through strtod) to exactly the same
// double: 0.1 gives "0.1", 1e21 gives "1e+21", 100 gives "100". The text never depends on the
// locale. Infinities are written "inf" and "-inf", NaN is written "nan", forms that strtod accepts.
//
// ZrSTRING2DOUBLE reads text exactly as strtod(text.c_str(), nullptr) does: leading white space and
// the unparsed rest are ignored, text without a number gives 0. Text that is one plain decimal number,
// as documents hold them, is converted several times faster than strtod manages; anything else (a
// leading '+' or white space, trailing text, hexadecimal, infinities, NaN, a number out of range, a
// locale whose decimal point is not '.', a rounding direction other than to nearest) is handed to
// strtod itself. The range form reads the characters [first, last) the same way, for words that are
// views into a larger text: only texts that go to strtod are copied.
// ZrDOUBLE2CHARS writes the same shortest text into text[0, ZrDOUBLE_CHARS_SIZE) without a string and
// returns its length, with infinities and NaN spelt as XML Schema spells them: "INF", "-INF", "NaN"
// (strtod reads these too). Documents written with lossless reals hold this form.
std::string ZrINT2STRING(int value);
std::string ZrDOUBLE2STRING(double value);
const unsigned ZrDOUBLE_CHARS_SIZE = 32;  // the longest shortest form is 24 characters ("-2.2250738585072014e-308")
unsigned ZrDOUBLE2CHARS(double value, char* text);
// The same for a float: the shortest text that reads back to exactly the same float ("1.0000001"),
// infinities and NaN spelt as above.
unsigned ZrFLOAT2CHARS(float value, char* text);
// printf's "%.*g" with this precision (as an output stream with that precision writes a double), into
// text[0, ZrDOUBLE_G_CHARS_SIZE); returns the length. A value whose shortest exact text has no more
// significant digits than the precision (as reals written in six digits and read back do) is formatted
// from that text, several times faster than the general conversion, which takes every other value.
const unsigned ZrDOUBLE_G_CHARS_SIZE = 400;  // "%.17g" needs 24; wider precisions may fill the rest
unsigned ZrDOUBLE2CHARS_G(double value, int precision, char* text);
double ZrSTRING2DOUBLE(const std::string& text);
// The same conversion into value, returning whether the whole text, white space around it aside, was
// one number (false for empty text, trailing letters, or nothing to convert).
bool ZrSTRING2DOUBLE(const std::string& text, double& value);
double ZrSTRING2DOUBLE(const char* first, const char* last);
// strtol(text, &end, 10) on the NUL-terminated text: the same number and the same end, the plain
// decimal forms ("42", "-7") read without the C library's locale machinery.
long ZrSTRING2LONG(const char* text, const char** end = nullptr);

// ZrSTRING2DOUBLE for a run of many numbers, such as the words of one array: whether the fast
// conversion agrees with strtod (the locale's decimal point, the rounding direction) is asked once,
// when the run is made, instead of once per number. A run is meant to live no longer than a loop.
class ZrDoubleTextRun {
 public:
  ZrDoubleTextRun();
  double read(const char* first, const char* last) const;

 private:
  bool m_theFromCharsAgrees;
};

#endif
