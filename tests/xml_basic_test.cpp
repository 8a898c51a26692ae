// Single values and enumerations: how text becomes a value and a value text, round trips as element
// content and as attribute values, the documented loss of reals, and the faults of reading.
#include <ZrTestDocument.h>
#include <ZrTestSupport.h>
#include <ZrXmlBasicType.h>
#include <ZrXmlEnumType.h>
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace {

using ZrTest::readRoot;
using ZrTest::written;

// The value a text gives, and whether the whole text was a value of the type (setValueFromString's result).
template <class T>
struct ParseCase {
  const char* text;
  T expected;
  bool whole;
};

template <class T>
void expectParses(const std::vector<ParseCase<T>>& cases, const T& start) {
  for (const auto& c : cases) {
    ZrXmlBasicType<T> object(start);
    EXPECT_EQ(object.setValueFromString(c.text), c.whole) << "text \"" << c.text << "\"";
    EXPECT_TRUE(object.value() == c.expected) << "text \"" << c.text << "\"";
  }
}

TEST(ZrXmlBasicTypeText, CLibraryConversionsIgnoreTheRestAndGiveZeroWithoutNumber) {
  expectParses<double>({{"1.5abc", 1.5, false}, {"", 0.0, false}, {"abc", 0.0, false}, {"  -2e3", -2000.0, true},
                        {"0x10", 16.0, true}, {" 2.5\n", 2.5, true}, {"INF", HUGE_VAL, true}},
                       9.0);
  expectParses<int>({{"  7", 7, true}, {"7.9", 7, false}, {"x", 0, false}, {"-12abc", -12, false}, {"", 0, false},
                     {"-12 ", -12, true}},
                    9);
}

TEST(ZrXmlBasicTypeText, StreamExtractionFollowsTheStreamRules) {
  // A failed extraction of a number stores zero, an out-of-range one the nearest limit; text with
  // nothing to extract leaves the value as it was. A byte is a number, a string is kept as it stands.
  expectParses<unsigned int>({{" 13 ", 13u, true}, {"x", 0u, false}, {"7.9", 7u, false}, {"", 9u, false}}, 9u);
  expectParses<short>({{"-5", short(-5), true}, {"40000", short(SHRT_MAX), false}, {"x", short(0), false}}, short(9));
  expectParses<char>({{"A", 'A', true}, {"  B", 'B', true}, {"CD", 'C', false}, {"", 'Z', false}, {"   ", 'Z', false}},
                     'Z');
  expectParses<bool>({{"1", true, true}, {"0", false, true}, {"true", false, false}, {"", true, false}},
                     true);  // numeric form only
  expectParses<ZrAngle>({{"1.25rad", ZrAngle(1.25), false}, {"x", ZrAngle(0.0), false}, {"-0.5", ZrAngle(-0.5), true}},
                        ZrAngle(3.0));
  expectParses<ZrNonNegReal>({{"2.5", ZrNonNegReal(2.5), true},
                              {"-3", ZrNonNegReal(0.0), false},
                              {"nan", ZrNonNegReal(0.0), false},
                              {"INF", ZrNonNegReal(HUGE_VAL), true},
                              {"NaN", ZrNonNegReal(0.0), false}},
                             ZrNonNegReal(7.0));
  expectParses<unsigned char>({{"65", 65, true}, {"", 0, false}, {"300", 44, false}, {"x", 0, false}}, 9);
  expectParses<std::string>({{"  a b  ", "  a b  ", true}, {"", "", true}}, "old");
}

// The content of the element a single value writes.
template <class T>
std::string writtenText(const T& value) {
  const std::string text = written(ZrXmlBasicType<T>(value));
  const std::string::size_type open = text.find('>') + 1;
  return text[open - 2] == '/' ? "" : text.substr(open, text.find("</") - open);
}

// The forms in which a value differs from what the writer's stream alone would make of it.
TEST(ZrXmlBasicTypeText, WrittenForms) {
  EXPECT_EQ(writtenText(true), "1");
  EXPECT_EQ(writtenText<unsigned char>(65), "65");
  EXPECT_EQ(writtenText('\0'), "");
  EXPECT_EQ(writtenText(std::string(" a b ")), " a b ");
  EXPECT_EQ(writtenText(0.1 + 0.2), "0.3");
}

// Values whose text form holds them exactly (six significant digits for reals).
template <class T>
std::vector<T> samples();
template <> std::vector<bool> samples() { return {false, true}; }
template <> std::vector<char> samples() { return {'A', 'z', '~', '='}; }
template <> std::vector<short> samples() { return {0, SHRT_MIN, SHRT_MAX, -1}; }
template <> std::vector<unsigned short> samples() { return {0, USHRT_MAX, 42}; }
template <> std::vector<int> samples() { return {0, INT_MIN, INT_MAX, -7}; }
template <> std::vector<unsigned int> samples() { return {0u, UINT_MAX, 7u}; }
template <> std::vector<unsigned char> samples() { return {0, 65, 255}; }
template <> std::vector<double> samples() { return {0.0, -1.5, 3.14159, 1e-07, 1.23457e+08, -0.0}; }
template <> std::vector<std::string> samples() { return {"", "hello world", "a\tb", "x"}; }
template <> std::vector<ZrAngle> samples() { return {ZrAngle(0.0), ZrAngle(-3.14159), ZrAngle(6.28319)}; }
template <> std::vector<ZrNonNegReal> samples() { return {ZrNonNegReal(0.0), ZrNonNegReal(2.5), ZrNonNegReal(1e+06)}; }

template <class T>
class ZrXmlBasicRoundTrip : public ::testing::Test {};

typedef ::testing::Types<bool, char, short, unsigned short, int, unsigned int, unsigned char, double, std::string,
                         ZrAngle, ZrNonNegReal>
    AllBasicTypes;
TYPED_TEST_SUITE(ZrXmlBasicRoundTrip, AllBasicTypes);

TYPED_TEST(ZrXmlBasicRoundTrip, ValueComesBackUnchanged) {
  ZrTest::PrintCapture capture;
  for (bool asAttribute : {false, true}) {
    for (const TypeParam& value : samples<TypeParam>()) {
      const std::string text = written(ZrXmlBasicType<TypeParam>(value), asAttribute ? "a" : "");
      ZrXmlBasicType<TypeParam> back;
      EXPECT_TRUE(readRoot(text, back, nullptr, asAttribute)) << text;
      EXPECT_TRUE(back == ZrXmlBasicType<TypeParam>(value)) << text;
      EXPECT_TRUE(back.specified());
    }
  }
  EXPECT_EQ(capture.count(), 0u) << capture.all();
}

// The documented loss: reals keep six significant digits.
TEST(ZrXmlBasicRoundTripLoss, RealsKeepSixSignificantDigits) {
  struct Case {
    double written, read;
  } cases[] = {{3.14159265, 3.14159}, {123456789.0, 1.23457e+08}, {1.0000004, 1.0}};
  for (const Case& c : cases) {
    for (const char* attribute : {"", "a"}) {
      ZrXmlBasicType<double> real;
      readRoot(written(ZrXmlBasicType<double>(c.written), attribute), real, nullptr, *attribute);
      EXPECT_EQ(real.value(), c.read) << c.written;
    }
  }
}

TEST(ZrXmlBasicRead, ElementShapesAndMissingAttribute) {
  const std::string at = ".\n\tFile: doc.xml\n\tLine: ";
  struct Case {
    const char* text;
    bool asAttribute, result;
    double value;
    std::string message;  // the first one
  } cases[] = {
      {"<v/>", false, true, 0.0, ""},
      {"<v></v>", false, true, 0.0, ""},
      {"<v>\n 1.5 m </v>", false, true, 1.5, ""},
      {"<v>\n<w>2</w></v>", false, false, 0.0, "ZrXmlBasicType Error: file not valid.\n\tNo data found" + at + "2\n"},
      {"<v/>", true, true, 0.0, "ZrXmlBasicType Error: file not valid.\n\tNo attributes found" + at + "1\n"},
  };
  for (const Case& c : cases) {
    ZrTest::PrintCapture capture;
    ZrXmlBasicType<double> value(9.0);
    EXPECT_EQ(readRoot(c.text, value, nullptr, c.asAttribute), c.result) << c.text;
    EXPECT_EQ(value.value(), c.value) << c.text;
    EXPECT_EQ(capture.count() == 0 ? "" : capture.texts().front(), c.message) << c.text;
  }
  ZrXmlBasicType<std::string> text("old");
  EXPECT_TRUE(readRoot("<v/>", text));
  EXPECT_EQ(text.value(), "");
}

TEST(ZrXmlBasicTypeValue, EqualityNeedsTheSameDynamicTypeAndValue) {
  ZrXmlBasicType<int> i(3), j(3), k(4);
  ZrXmlBasicType<short> s(3);
  EXPECT_TRUE(i.equality(&j));
  EXPECT_FALSE(i.equality(&k));
  EXPECT_FALSE(i.equality(&s));
  EXPECT_FALSE(i.equality(nullptr));
  ZrXmlBasicType<double> nan(std::numeric_limits<double>::quiet_NaN());
  EXPECT_FALSE(nan.equality(&nan));
}

ZrXmlEnumType<int> oneTwo(int value) { return ZrXmlEnumType<int>(value, {{1, "one"}, {2, "two"}}); }

std::string writtenName(const ZrXmlEnumType<int>& object) {
  const std::string text = written(object, "n");
  const std::string::size_type open = text.find("n=\"") + 3;
  return text.substr(open, text.find('"', open) - open);
}

TEST(ZrXmlEnumType, WritesTheFirstNameOfTheValueOrElseTheTablesFirstName) {
  struct Case {
    int value;
    const char* name;
  } cases[] = {{1, "one"}, {2, "two"}, {3, "one"}, {0, "one"}};
  for (const Case& c : cases) EXPECT_EQ(writtenName(oneTwo(c.value)), c.name) << c.value;
  EXPECT_EQ(ZrXmlEnumType<short>(3).enumString(), "") << "an empty table has no name to give";
}

TEST(ZrXmlEnumType, ANameIsAddedOnceAValueMayHaveSeveral) {
  ZrXmlEnumType<int> e = oneTwo(1);
  e.setEnumString(5, "one");  // known name: nothing changes
  e.setEnumString(1, "uno");  // a second name for 1; "one" is still written
  ASSERT_EQ(e.names().size(), 3u);
  EXPECT_EQ(e.names()[0].first, 1);
  EXPECT_EQ(writtenName(e), "one");
  ZrXmlEnumType<int> copy(e);
  EXPECT_TRUE(copy.setValueFromString("uno"));
  EXPECT_EQ(copy.value(), 1) << "a copy keeps the table";
  EXPECT_FALSE(copy.setValueFromString("Uno")) << "the result is the search's";
  EXPECT_EQ(copy.value(), 1);
  const ZrXmlEnumType<unsigned> otherType(1u);
  EXPECT_FALSE(e.equality(&otherType));
}

TEST(ZrXmlEnumType, ReadsKnownNamesExactlyAndFailsSilentlyOnOthers) {
  const std::string noData = "ZrXmlEnumType Error: file not valid.\n\tNo data found.\n\tFile: doc.xml\n\tLine: 1\n";
  struct Case {
    const char* text;
    bool asAttribute, result;
    int value;
    const std::string message;  // the first message, after the signature line
  } cases[] = {
      {"<e> two </e>", false, true, 2, ""},   {"<e a='two'/>", true, true, 2, ""},
      {"<e>Two</e>", false, false, 7, ""},    {"<e a='two '/>", true, false, 7, ""},
      {"<e/>", false, false, 7, ""},          {"<e><x/></e>", false, false, 7, noData},
      {"<e/>", true, false, 7, noData},
  };
  for (const Case& c : cases) {
    ZrTest::PrintCapture capture;
    ZrXmlEnumType<int> e = oneTwo(7);
    EXPECT_EQ(readRoot(c.text, e, nullptr, c.asAttribute), c.result) << c.text;
    EXPECT_EQ(e.value(), c.value) << c.text;
    if (c.message.empty()) {
      EXPECT_EQ(capture.count(), 0u) << c.text << capture.all();
      continue;
    }
    // Headed by the reading function's signature.
    ASSERT_GE(capture.count(), 1u) << c.text;
    const std::string first = capture.texts().front();
    EXPECT_NE(first.find(c.asAttribute ? "::readAttribute(" : "::read("), std::string::npos) << first;
    EXPECT_EQ(ZrTest::withoutSignature(first), c.message) << first;
  }
}

}  // namespace
