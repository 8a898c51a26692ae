#include "ZrNumberText.h"

#include <charconv>
#include <cmath>

std::string ZrINT2STRING(int value) {
  char text[16];  // "-2147483648" and a spare
  std::to_chars_result result = std::to_chars(text, text + sizeof(text), value);
  return std::string(text, result.ptr);
}

std::string ZrDOUBLE2STRING(double value) {
  // to_chars without a precision gives the shortest round-trip text and ignores the locale, unlike
  // printf("%g"), whose decimal point follows LC_NUMERIC.
  if (std::isnan(value)) return "nan";
  char text[32];  // the longest shortest form is 24 characters ("-2.2250738585072014e-308")
  std::to_chars_result result = std::to_chars(text, text + sizeof(text), value);
  return std::string(text, result.ptr);
}
