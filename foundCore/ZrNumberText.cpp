#include "ZrNumberText.h"

#include <langinfo.h>

#include <algorithm>
#include <cfenv>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

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
// The XML Schema spelling of an infinity or NaN, or null for a finite value.
const char* specialRealText(double value) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value > 0 ? "INF" : "-INF";
  return nullptr;
}

template <class Real>
unsigned shortestRealChars(Real value, char* text) {
  if (const char* special = specialRealText(value)) {
    const unsigned length = static_cast<unsigned>(std::strlen(special));
    std::memcpy(text, special, length);
    return length;
  }
  const std::to_chars_result result = std::to_chars(text, text + ZrDOUBLE_CHARS_SIZE, value);
  return static_cast<unsigned>(result.ptr - text);
}
}  // namespace

unsigned ZrDOUBLE2CHARS(double value, char* text) { return shortestRealChars(value, text); }

unsigned ZrFLOAT2CHARS(float value, char* text) { return shortestRealChars(value, text); }

namespace {

// The powers of ten a double holds exactly: a product or quotient of one and an integer below 2^53 is
// rounded once, correctly.
const double thePowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// The digits and decimal exponent of the shortest text that reads back to value (finite): 1234.5 gives
// "12345" and 3. Returns the number of digits.
unsigned shortestDigits(double value, char* digits, int& exponent) {
  char scientific[ZrDOUBLE_CHARS_SIZE];
  const char* end = std::to_chars(scientific, scientific + sizeof scientific, value, std::chars_format::scientific).ptr;
  const char* at = scientific;
  if (*at == '-') ++at;
  unsigned count = 0;
  for (; *at != 'e'; ++at)
    if (*at != '.') digits[count++] = *at;
  std::from_chars(at[1] == '+' ? at + 2 : at + 1, end, exponent);
  return count;
}

// The digits of a value that a decimal of `precision` (at most 15) significant digits reads back to, as
// shortestDigits() gives them (no trailing zeros), found with one multiplication and confirmed with one
// exact division or multiplication; false when no such decimal reads back to the value. At most one
// decimal of that many digits can: they lie more than a unit in the last place of the double apart. Values
// from 1e-7 up to 1e15 are taken, so that every power of ten used is exact.
bool scaledDigits(double value, int precision, char* digits, unsigned& count, int& exponent) {
  const double magnitude = std::fabs(value);
  if (!(magnitude >= 1e-7 && magnitude < 1e15)) return false;
  int power = 0;  // the decimal exponent of the value's leading digit
  if (magnitude >= 1.0) {
    while (power < 15 && thePowersOfTen[power + 1] <= magnitude) ++power;
  } else {
    while (magnitude * thePowersOfTen[-power] < 1.0) --power;
  }
  const int scale = precision - 1 - power;  // from -14 to 21
  const double scaled = scale >= 0 ? magnitude * thePowersOfTen[scale] : magnitude / thePowersOfTen[-scale];
  const std::uint64_t least = static_cast<std::uint64_t>(thePowersOfTen[precision - 1]);
  const std::uint64_t candidate = static_cast<std::uint64_t>(std::llround(scaled));
  if (candidate < least || candidate >= least * 10) return false;
  const double back = scale >= 0 ? static_cast<double>(candidate) / thePowersOfTen[scale]
                                 : static_cast<double>(candidate) * thePowersOfTen[-scale];
  if (back != magnitude) return false;
  std::uint64_t rest = candidate;
  unsigned length = static_cast<unsigned>(precision);
  while (rest % 10 == 0) {
    rest /= 10;
    --length;
  }
  for (unsigned i = length; i > 0; --i) {
    digits[i - 1] = static_cast<char>('0' + rest % 10);
    rest /= 10;
  }
  count = length;
  exponent = power;
  return true;
}

// printf's %g of a value whose exact shortest digits number no more than the precision: those digits,
// in fixed form while the exponent lies in [-4, precision), else as d.ddde+XX; no trailing zeros.
unsigned formatShortG(bool negative, const char* digits, unsigned count, int exponent, int precision, char* text) {
  char* out = text;
  if (negative) *out++ = '-';
  if (exponent < -4 || exponent >= precision) {
    *out++ = digits[0];
    if (count > 1) {
      *out++ = '.';
      for (unsigned i = 1; i < count; ++i) *out++ = digits[i];
    }
    *out++ = 'e';
    *out++ = exponent < 0 ? '-' : '+';
    const unsigned magnitude = static_cast<unsigned>(exponent < 0 ? -exponent : exponent);
    if (magnitude < 10) *out++ = '0';
    out = std::to_chars(out, out + 4, magnitude).ptr;
  } else if (exponent < 0) {
    *out++ = '0';
    *out++ = '.';
    for (int i = -1; i > exponent; --i) *out++ = '0';
    for (unsigned i = 0; i < count; ++i) *out++ = digits[i];
  } else {
    const unsigned integerDigits = static_cast<unsigned>(exponent) + 1;
    for (unsigned i = 0; i < integerDigits; ++i) *out++ = i < count ? digits[i] : '0';
    if (count > integerDigits) {
      *out++ = '.';
      for (unsigned i = integerDigits; i < count; ++i) *out++ = digits[i];
    }
  }
  return static_cast<unsigned>(out - text);
}

}  // namespace

// Rounding the exact value to the precision gives the shortest digits themselves whenever they are no
// more than the precision: the value lies within half a unit in the last place of the double of them,
// and up to fifteen digits that is far less than half a step of the precision. Past fifteen digits the
// steps come near the double's own, so the general conversion decides; so it does for subnormal values,
// whose last place is wide (the shortest text of the least of them is "5e-324", its value 4.94066e-324).
unsigned ZrDOUBLE2CHARS_G(double value, int precision, char* text) {
  if (precision <= 0) precision = 1;  // as printf takes a zero precision for %g
  const int theWidestShortcut = 15;
  const int kind = std::fpclassify(value);
  if ((kind == FP_NORMAL || kind == FP_ZERO) && precision <= theWidestShortcut) {
    char digits[ZrDOUBLE_CHARS_SIZE];
    int exponent = 0;
    unsigned count = 0;
    if (!scaledDigits(value, precision, digits, count, exponent)) count = shortestDigits(value, digits, exponent);
    if (count <= static_cast<unsigned>(precision))
      return formatShortG(std::signbit(value), digits, count, exponent, precision, text);
  }
  const std::to_chars_result result =
      std::to_chars(text, text + ZrDOUBLE_G_CHARS_SIZE, value, std::chars_format::general, precision);
  if (result.ec == std::errc()) return static_cast<unsigned>(result.ptr - text);
  const int written = std::snprintf(text, ZrDOUBLE_G_CHARS_SIZE, "%.*g", precision, value);  // cut to fit
  return static_cast<unsigned>(std::min<int>(written, ZrDOUBLE_G_CHARS_SIZE - 1));
}

namespace {

// strtod follows LC_NUMERIC and the current rounding direction, from_chars follows neither; they agree
// only while the decimal point is '.' and numbers round to nearest.
bool fromCharsAgreesWithStrtod() {
  const char* point = nl_langinfo(RADIXCHAR);  // the current thread's locale, as strtod reads it; localeconv costs more
  return point[0] == '.' && point[1] == '\0' && std::fegetround() == FE_TONEAREST;
}

inline bool isDigit(char c) { return c >= '0' && c <= '9'; }

// A decimal of at most 15 digits with at most 22 of them after the point ("-12.5", "0.001", "7.") is
// its digits as an integer, exact in a double, divided by a power of ten, also exact: one division,
// rounded correctly, as from_chars and strtod round. Anything else is left to from_chars.
bool readShortDecimal(const char* first, const char* last, double& value) {
  const std::ptrdiff_t theMostDigits = 15;
  const char* at = first;
  const bool negative = at < last && *at == '-';
  if (negative) ++at;
  std::uint64_t digits = 0;
  const char* const integerBegin = at;
  for (; at < last && isDigit(*at); ++at) digits = digits * 10 + static_cast<unsigned>(*at - '0');
  std::ptrdiff_t count = at - integerBegin;
  std::ptrdiff_t fraction = 0;
  if (at < last && *at == '.') {
    const char* const fractionBegin = ++at;
    for (; at < last && isDigit(*at); ++at) digits = digits * 10 + static_cast<unsigned>(*at - '0');
    fraction = at - fractionBegin;
    count += fraction;
  }
  if (at != last || count == 0 || count > theMostDigits) return false;
  const double magnitude = static_cast<double>(digits) / thePowersOfTen[fraction];
  value = negative ? -magnitude : magnitude;
  return true;
}

// from_chars and strtod both round correctly, so wherever from_chars takes the whole text as a finite
// number the two give the same double. Every other case, rare in documents, keeps strtod's own answer.
bool readPlainDecimal(const char* first, const char* last, double& value) {
  if (readShortDecimal(first, last, value)) return true;
  const std::from_chars_result result = std::from_chars(first, last, value);
  return result.ec == std::errc() && result.ptr == last && std::isfinite(value);
}

}  // namespace

// Digits right at the start (after at most a '-') read the same with from_chars as with strtol, which
// stops at the same first non-digit; white space or '+' in front, and numbers out of range, are left to
// strtol itself.
long ZrSTRING2LONG(const char* text, const char** end) {
  const char* digits = text[0] == '-' ? text + 1 : text;
  // Up to 18 digits cannot overflow: those are summed here.
  const char* at = digits;
  unsigned long magnitude = 0;
  for (; isDigit(*at) && at - digits < 18; ++at) magnitude = magnitude * 10 + static_cast<unsigned>(*at - '0');
  if (at != digits && !isDigit(*at)) {
    if (end) *end = at;
    const long value = static_cast<long>(magnitude);
    return digits == text ? value : -value;
  }
  if (isDigit(*digits)) {
    long value = 0;
    const std::from_chars_result result = std::from_chars(text, text + std::strlen(text), value);
    if (result.ec == std::errc()) {
      if (end) *end = result.ptr;
      return value;
    }
  }
  char* stop = nullptr;
  const long value = std::strtol(text, &stop, 10);
  if (end) *end = stop;
  return value;
}

double ZrSTRING2DOUBLE(const std::string& text) {
  double value = 0.0;
  if (readPlainDecimal(text.data(), text.data() + text.size(), value) && fromCharsAgreesWithStrtod()) return value;
  return std::strtod(text.c_str(), nullptr);
}

bool ZrSTRING2DOUBLE(const std::string& text, double& value) {
  const char* first = text.c_str();
  const char* last = first + text.size();
  if (readPlainDecimal(first, last, value) && fromCharsAgreesWithStrtod()) return true;
  char* end = nullptr;
  value = std::strtod(first, &end);
  if (end == first) return false;
  while (end != last && (*end == ' ' || *end == '\t' || *end == '\n' || *end == '\r')) ++end;
  return end == last;
}

double ZrSTRING2DOUBLE(const char* first, const char* last) { return ZrDoubleTextRun().read(first, last); }

ZrDoubleTextRun::ZrDoubleTextRun() : m_theFromCharsAgrees(fromCharsAgreesWithStrtod()) {}

double ZrDoubleTextRun::read(const char* first, const char* last) const {
  double value = 0.0;
  if (m_theFromCharsAgrees && readPlainDecimal(first, last, value)) return value;
  return std::strtod(std::string(first, last).c_str(), nullptr);  // strtod needs the terminating NUL
}
