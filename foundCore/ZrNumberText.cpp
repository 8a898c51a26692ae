#include "ZrNumberText.h"

#include <langinfo.h>

#include <algorithm>
#include <cfenv>
#include <charconv>
#include <cmath>
#include <cstdlib>

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

namespace {

// strtod follows LC_NUMERIC and the current rounding direction, from_chars follows neither; they agree
// only while the decimal point is '.' and numbers round to nearest.
bool fromCharsAgreesWithStrtod() {
  const char* point = nl_langinfo(RADIXCHAR);  // the current thread's locale, as strtod reads it; localeconv costs more
  return point[0] == '.' && point[1] == '\0' && std::fegetround() == FE_TONEAREST;
}

}  // namespace

// from_chars and strtod both round correctly, so wherever from_chars takes the whole text as a finite
// number the two give the same double. Every other case, rare in documents, keeps strtod's own answer.
double ZrSTRING2DOUBLE(const std::string& text) {
  const char* const last = text.data() + text.size();
  double value = 0.0;
  const std::from_chars_result result = std::from_chars(text.data(), last, value);
  if (result.ec == std::errc() && result.ptr == last && std::isfinite(value) &&
      fromCharsAgreesWithStrtod())
    return value;
  return std::strtod(text.c_str(), nullptr);
}

namespace {

// A buffer room that holds any shortest scientific text ("-2.2250738585072014e-308").
const int theShortestRoom = 32;

// The precision up to which rounding a normal double to precision digits only pads its shortest
// round-trip digits with zeros: below 15.65 digits, half a unit in the last place stays smaller than
// half a unit in the precision-th digit.
const int theLargestPaddedPrecision = 15;

// The %g text from the shortest digits, or nullptr when they are more than precision or the number is
// not a normal one (zero, subnormal, infinite, NaN), where the digits of the rounding may differ.
char* shortGeneral(char* first, double value, int precision) {
  if (precision < 1 || precision > theLargestPaddedPrecision || !std::isnormal(value)) return nullptr;
  char scientific[theShortestRoom];  // "-d.ddde+XX"
  char* const end =
      std::to_chars(scientific, scientific + sizeof scientific, value, std::chars_format::scientific).ptr;
  const char* mantissa = scientific + (value < 0 ? 1 : 0);
  const char* const e = std::find(mantissa, static_cast<const char*>(end), 'e');
  const int digitCount = static_cast<int>(e - mantissa) - (e - mantissa > 1 ? 1 : 0);  // without the point
  if (digitCount > precision) return nullptr;
  int exponent = 0;
  std::from_chars(e + 2, end, exponent);
  if (e[1] == '-') exponent = -exponent;
  if (exponent < -4 || exponent >= precision) return std::copy(scientific, end, first);
  // Fixed notation with the same digits: d.ddd shifted by the exponent, zeros padded where needed.
  char digits[theShortestRoom];
  char* const digitsEnd = std::remove_copy(mantissa, e, digits, '.');
  char* out = first;
  if (value < 0) *out++ = '-';
  if (exponent < 0) {
    out = std::copy_n("0.0000", 1 - exponent, out);  // "0." and the leading zeros
    return std::copy(digits, digitsEnd, out);
  }
  const int integerDigits = exponent + 1;
  for (int i = 0; i < integerDigits; ++i) *out++ = i < digitCount ? digits[i] : '0';
  if (digitCount > integerDigits) {
    *out++ = '.';
    out = std::copy(digits + integerDigits, digitsEnd, out);
  }
  return out;
}

}  // namespace

char* ZrDOUBLE2CHARS(char* first, char* last, double value, int precision) {
  if (last - first >= theShortestRoom) {
    if (char* end = shortGeneral(first, value, precision)) return end;
  }
  return std::to_chars(first, last, value, std::chars_format::general, precision).ptr;
}
