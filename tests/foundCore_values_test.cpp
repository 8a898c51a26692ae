#include <ZrNonNegReal.h>
#include <ZrNumberText.h>
#include <ZrOrientation.h>
#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace {

TEST(ZrNumberText, ShortestTextThatReadsBackExactly) {
  const struct {
    double value;
    const char* text;
  } rows[] = {
      {0.0, "0"}, {-0.0, "-0"}, {0.1, "0.1"}, {100.0, "100"}, {-2.5, "-2.5"}, {1e21, "1e+21"},
      {1.0 / 3.0, "0.3333333333333333"}, {DBL_MAX, "1.7976931348623157e+308"}, {5e-324, "5e-324"},
  };
  for (const auto& row : rows) EXPECT_EQ(ZrDOUBLE2STRING(row.value), row.text);

  const double awkward[] = {0.1 + 0.2, 123456789.123456789, 2.2250738585072014e-308, -1e-7, 6.02214076e23};
  for (double value : awkward) EXPECT_EQ(std::strtod(ZrDOUBLE2STRING(value).c_str(), nullptr), value) << value;
  // Non-finite values use texts that strtod reads; integers are plain decimal.
  EXPECT_EQ(ZrDOUBLE2STRING(-std::numeric_limits<double>::infinity()), "-inf");
  EXPECT_EQ(ZrDOUBLE2STRING(-std::numeric_limits<double>::quiet_NaN()), "nan");
  EXPECT_EQ(ZrINT2STRING(INT_MIN), "-2147483648");
}

TEST(ZrNonNegReal, NegativeAndNaNBecomeZero) {
  EXPECT_EQ(ZrNonNegReal(-1.5).value(), 0.0);
  EXPECT_EQ(ZrNonNegReal(std::nan("")).value(), 0.0);
  EXPECT_EQ(ZrNonNegReal(2.5).value(), 2.5);
  ZrNonNegReal value(3.0);
  value.setValue(-std::numeric_limits<double>::infinity());
  EXPECT_EQ(value.value(), 0.0);
  value.setValue(std::numeric_limits<double>::infinity());
  EXPECT_TRUE(std::isinf(value.value()));
}

TEST(ZrOrientation, NormalizeScalesToUnitLengthAndMakesDegenerateInputTheIdentity) {
  ZrOrientation turned(0.0, 3.0, 0.0, 4.0);
  turned.normalize();
  EXPECT_DOUBLE_EQ(turned.q1(), 0.6);
  EXPECT_DOUBLE_EQ(turned.q3(), 0.8);
  EXPECT_DOUBLE_EQ(turned.norm(), 1.0);

  const ZrOrientation degenerate[] = {
      ZrOrientation(0, 0, 0, 0), ZrOrientation(std::nan(""), 0, 0, 0),
      ZrOrientation(std::numeric_limits<double>::infinity(), 1, 0, 0)};
  for (ZrOrientation q : degenerate) {
    q.normalize();
    EXPECT_EQ(q, ZrOrientation());
  }
}

}  // namespace
