#ifndef ZR_NUMBER_TEXT_H
#define ZR_NUMBER_TEXT_H

#include <string>

// Number-to-text helpers used wherever a number becomes document text.
//
// ZrINT2STRING writes the plain decimal form ("-42").
//
// ZrDOUBLE2STRING writes the shortest text that reads back (through strtod) to exactly the same
// double: 0.1 gives "0.1", 1e21 gives "1e+21", 100 gives "100". The text never depends on the
// locale. Infinities are written "inf" and "-inf", NaN is written "nan", forms that strtod accepts.
std::string ZrINT2STRING(int value);
std::string ZrDOUBLE2STRING(double value);

#endif
