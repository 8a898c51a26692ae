// ZrSTRING2DOUBLE must give strtod's double bit for bit, whichever of its two ways a text takes.
#include <ZrNumberText.h>
#include <gtest/gtest.h>

#include <cfenv>
#include <clocale>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <cmath>
#include <vector>
#include <limits>
#include <string>

namespace {

std::uint64_t bits(double value) {
  std::uint64_t pattern = 0;
  std::memcpy(&pattern, &value, sizeof pattern);
  return pattern;
}

// The string, the character range and the run of many numbers must all agree with strtod.
void expectSameAsStrtod(const std::string& text) {
  const std::uint64_t expected = bits(std::strtod(text.c_str(), nullptr));
  const char* const first = text.data();
  const char* const last = first + text.size();
  EXPECT_EQ(bits(ZrSTRING2DOUBLE(text)), expected) << '"' << text << '"';
  EXPECT_EQ(bits(ZrSTRING2DOUBLE(first, last)), expected) << "range \"" << text << '"';
  EXPECT_EQ(bits(ZrDoubleTextRun().read(first, last)), expected) << "run \"" << text << '"';
}

TEST(ZrNumberParse, PlainAndAwkwardTextsReadAsStrtodReadsThem) {
  const char* const texts[] = {
      // plain decimals, the shortcut's own ground
      "0", "-0", "1.5", "-273.15", ".5", "5.", "1e5", "1E-5", "00012", "6.02214076e23",
      // correct rounding: halfway and long inputs, smallest normal and subnormal numbers
      "9007199254740993", "0.1000000000000000055511151231257827021181583404541015625",
      "123456789012345678901234567890", "2.2250738585072011e-308", "4.9e-324", "2e-324",
      // what strtod accepts or stops at and from_chars does not: its way must decide
      "+1.5", " 1.5", "\t-2", "1.5 ", "1.5abc", "0x1p3", "0x10", "-0X1.8P1", "1e", "1e+", "1,5",
      // non-finite, out of range, and no number at all
      "inf", "-inf", "infinity", "nan", "-nan", "nan(123)", "1e400", "-1e400", "1e-400", "", " ", "abc", "-", ".",
      "e5"};
  for (const char* text : texts) expectSameAsStrtod(text);
  expectSameAsStrtod(std::string("1.5\0" "7", 5));  // strtod stops at the NUL, so must the shortcut
}

// Numbers spread over the whole range of doubles, in the forms writers produce.
TEST(ZrNumberParse, GeneratedNumbersInEveryWrittenFormReadAsStrtodReadsThem) {
  std::mt19937_64 random(20240701);
  const char* const formats[] = {"%.17g", "%.6g", "%.3e", "%.10f", "%.1f"};
  char text[512];
  for (int i = 0; i < 4000; ++i) {
    double value = 0.0;
    const std::uint64_t pattern = random();
    std::memcpy(&value, &pattern, sizeof value);
    if (value != value) continue;  // NaN patterns: covered by the table
    for (const char* format : formats) {
      std::snprintf(text, sizeof text, format, value);
      expectSameAsStrtod(text);
    }
  }
}

// Decimals of up to 17 digits with the point anywhere, on both sides of the 15 digits and 22 places that
// are read as one division, and with zeros and signs where writers put them.
TEST(ZrNumberParse, ShortDecimalsWithThePointAnywhereReadAsStrtodReadsThem) {
  std::mt19937_64 random(20261125);
  for (int i = 0; i < 20000; ++i) {
    const int digits = 1 + static_cast<int>(random() % 17);
    std::string text = random() % 3 == 0 ? "-" : "";
    const std::size_t integerAt = text.size();
    for (int d = 0; d < digits; ++d) text += static_cast<char>('0' + random() % 10);
    const std::size_t point = integerAt + random() % (digits + 1);
    if (random() % 4 != 0) text.insert(point, ".");
    if (random() % 8 == 0) text.insert(integerAt, std::string(random() % 10, '0'));
    if (random() % 8 == 0) text.append(std::string(random() % 12, '0'));
    expectSameAsStrtod(text);
  }
}

// strtod rounds in the current rounding direction; the shortcut must not silently round to nearest.
TEST(ZrNumberParse, OtherRoundingDirectionsGiveStrtodsResult) {
  const char* const texts[] = {"0.1", "-0.1", "1.0000000000000002220446", "3.14159265358979323846", "1e-310"};
  for (int direction : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
    ASSERT_EQ(std::fesetround(direction), 0);
    for (const char* text : texts) expectSameAsStrtod(text);
  }
  std::fesetround(FE_TONEAREST);
}

// ZrDOUBLE2CHARS_G must write printf's %.*g to the byte, through its shortcut (values whose shortest text is
// short) and without it: reals rounded to a few digits, random bit patterns, powers of ten at the edges of
// the fixed form, and the special values, at every precision from 0 to 20.
TEST(ZrNumberParse, RealsWrittenWithAPrecisionAreWhatPrintfWrites) {
  std::mt19937_64 random(20261124);
  std::vector<double> values = {0.0, -0.0, 1.0, -1.0, 0.1, 0.5, 1e-4, 9.99999e-5, 1e-5, 123456.0, 999999.5, 1e15,
                                1e16, 1e21, 5e-324, 2.2250738585072014e-308, 1.7976931348623157e308,
                                std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
                                std::numeric_limits<double>::quiet_NaN(),
                                // the edges of the range read by scaling, and values just off short decimals
                                1e-7, 9.999999e-8, 1.0000001e-7, 999999999999999.0, 99999999999999.9,
                                0.30000000000000004, 1.0 / 3, 2.675, 1.005, 0.000123456, -708.77};
  for (int i = 0; i < 2000; ++i) {
    const double scale = std::pow(10.0, static_cast<int>(random() % 40) - 20);
    values.push_back(std::round(std::uniform_real_distribution<double>(-1e6, 1e6)(random)) / 100.0 * scale);
    std::uint64_t pattern = random();
    double any = 0.0;
    std::memcpy(&any, &pattern, sizeof any);
    values.push_back(any);
  }
  char expected[ZrDOUBLE_G_CHARS_SIZE];
  char text[ZrDOUBLE_G_CHARS_SIZE];
  for (int precision = 0; precision <= 20; ++precision) {
    for (double value : values) {
      std::snprintf(expected, sizeof expected, "%.*g", precision, value);
      const unsigned length = ZrDOUBLE2CHARS_G(value, precision, text);
      ASSERT_EQ(std::string(text, length), expected) << "precision " << precision;
    }
  }
}

// ZrSTRING2LONG reads the plain decimal forms itself and must give strtol's number and end for every text.
TEST(ZrNumberParse, IntegersGiveStrtolsNumberAndEnd) {
  const char* const texts[] = {"42", "-7", "0", "-0", "007", "12abc", "3.9", "  12", "\t-5", "+5", "", "-", "- 3",
                               "abc", "0x1A", "9223372036854775807", "9223372036854775808", "-9223372036854775808",
                               "-9223372036854775809", "99999999999999999999999", "123456789012345678",
                               "-123456789012345678", "1234567890123456789", "999999999999999999", "12 34", "5-"};
  for (const char* text : texts) {
    char* strtolEnd = nullptr;
    const long expected = std::strtol(text, &strtolEnd, 10);
    const char* end = nullptr;
    EXPECT_EQ(ZrSTRING2LONG(text, &end), expected) << '"' << text << '"';
    EXPECT_EQ(end, strtolEnd) << '"' << text << '"';
  }
}

// Only the C locales are installed on the build machines; elsewhere a comma locale is checked too.
TEST(ZrNumberParse, DecimalPointOfTheLocaleIsHonouredAsStrtodHonoursIt) {
  const char* const commaLocales[] = {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "de_DE"};
  const std::string saved = std::setlocale(LC_NUMERIC, nullptr);
  const char* chosen = nullptr;
  for (const char* name : commaLocales)
    if ((chosen = std::setlocale(LC_NUMERIC, name)) != nullptr) break;
  if (chosen == nullptr) GTEST_SKIP() << "no locale with a decimal comma installed";
  for (const char* text : {"1.5", "1,5", "-0.25"}) expectSameAsStrtod(text);
  std::setlocale(LC_NUMERIC, saved.c_str());
}

}  // namespace
