// Text forms of the single-value types: how each type turns text into a value and a value into text.
#include <ZrTestSupport.h>
#include <ZrXmlBasicType.h>
#include <ZrXmlWriter.h>
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

namespace {

// Keeps every text the values hand to the writer.
class CapturingWriter : public ZrXmlWriter {
 public:
  explicit CapturingWriter(std::ostream& out) : ZrXmlWriter("capture.xml", out) {}
  void data(const std::string& text) override {
    texts.push_back(text);
    ZrXmlWriter::data(text);
  }
  std::vector<std::string> texts;
};

template <class T>
struct ParseCase {
  const char* text;
  T expected;
};

template <class T>
void expectParses(const std::vector<ParseCase<T>>& cases, const T& start = T()) {
  for (const auto& c : cases) {
    ZrXmlBasicType<T> object(start);
    object.setValueFromString(c.text);
    EXPECT_TRUE(object.value() == c.expected) << "text \"" << c.text << "\"";
  }
}

TEST(ZrXmlBasicTypeText, CLibraryConversionsIgnoreTheRestAndGiveZeroWithoutNumber) {
  expectParses<double>({{"1.5abc", 1.5}, {"", 0.0}, {"abc", 0.0}, {"  -2e3", -2000.0}, {"0x10", 16.0}}, 9.0);
  expectParses<int>({{"  7", 7}, {"7.9", 7}, {"x", 0}, {"-12abc", -12}, {"", 0}}, 9);
}

TEST(ZrXmlBasicTypeText, StreamExtractionFollowsTheStreamRules) {
  // A failed extraction of a number stores zero, an out-of-range one the nearest limit; text with
  // nothing to extract leaves the value as it was.
  expectParses<unsigned int>({{"42", 42u}, {" 13 ", 13u}, {"x", 0u}, {"7.9", 7u}, {"", 9u}}, 9u);
  expectParses<short>({{"-5", short(-5)}, {"40000", short(SHRT_MAX)}, {"x", short(0)}}, short(9));
  expectParses<unsigned short>({{"65535", (unsigned short)65535}, {"x", (unsigned short)0}}, (unsigned short)9);
  expectParses<char>({{"A", 'A'}, {"  B", 'B'}, {"CD", 'C'}, {"", 'Z'}, {"   ", 'Z'}}, 'Z');
  // Only the numeric form is a bool.
  expectParses<bool>({{"1", true}, {"0", false}, {"true", false}, {"2", true}, {"", true}}, true);
  expectParses<ZrAngle>({{"1.25rad", ZrAngle(1.25)}, {"x", ZrAngle(0.0)}}, ZrAngle(3.0));
}

TEST(ZrXmlBasicTypeText, ByteIsANumberAndStringIsKeptAsItStands) {
  expectParses<unsigned char>({{"65", 65}, {"", 0}, {"300", 44}, {"x", 0}}, 9);
  expectParses<std::string>({{"  a b  ", "  a b  "}, {"", ""}}, "old");
}

TEST(ZrXmlBasicTypeText, NonNegativeRealsAreClamped) {
  expectParses<ZrNonNegReal>({{"2.5", ZrNonNegReal(2.5)}, {"-3", ZrNonNegReal(0.0)}, {"nan", ZrNonNegReal(0.0)},
                              {"0", ZrNonNegReal(0.0)}},
                             ZrNonNegReal(7.0));
}

template <class T>
std::string writtenText(const T& value) {
  std::ostringstream out;
  CapturingWriter writer(out);
  writer.writeStartTag(ZrToken("urn:test", "v"));
  EXPECT_TRUE(ZrXmlBasicType<T>(value).write(writer));
  writer.writeEndTag();
  EXPECT_EQ(writer.texts.size(), 1u);
  EXPECT_TRUE(writer.valueStream().str().empty()) << "the value stream is emptied after each value";
  return writer.texts.empty() ? std::string() : writer.texts.front();
}

TEST(ZrXmlBasicTypeText, WrittenForms) {
  EXPECT_EQ(writtenText(true), "1");
  EXPECT_EQ(writtenText(false), "0");
  EXPECT_EQ(writtenText<unsigned char>(65), "65");
  EXPECT_EQ(writtenText('A'), "A");
  EXPECT_EQ(writtenText('\0'), "");
  EXPECT_EQ(writtenText(-7), "-7");
  EXPECT_EQ(writtenText<short>(-32768), "-32768");
  EXPECT_EQ(writtenText(4000000000u), "4000000000");
  EXPECT_EQ(writtenText(std::string(" a b ")), " a b ");
  EXPECT_EQ(writtenText(ZrAngle(1.5)), "1.5");
  EXPECT_EQ(writtenText(ZrNonNegReal(2.0)), "2");
  // The writer's stream defaults: six significant digits.
  EXPECT_EQ(writtenText(3.14159265), "3.14159");
  EXPECT_EQ(writtenText(123456789.0), "1.23457e+08");
  EXPECT_EQ(writtenText(0.1 + 0.2), "0.3");
}

TEST(ZrXmlBasicTypeText, ValuesBecomeAttributeValuesAfterAnAttributeName) {
  std::ostringstream out;
  ZrXmlWriter writer("a.xml", out);
  writer.writeStartTag(ZrToken("urn:test", "v"));
  writer.setAttributeName(ZrToken("n"));
  ZrXmlBasicType<int>(12).write(writer);
  writer.writeEndTag();
  EXPECT_NE(out.str().find("<v xmlns=\"urn:test\" n=\"12\"/>"), std::string::npos) << out.str();
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
  EXPECT_TRUE(i.isBasicType());
  EXPECT_EQ(i.token(), ZrXml::ZrBasicTypeToken);
}

TEST(ZrXmlBasicTypeValue, DefaultsNullObjectsAndCopies) {
  EXPECT_EQ(ZrXmlBasicType<double>::nullObject().value(), 0.0);
  EXPECT_EQ(ZrXmlBasicType<std::string>::nullObject().value(), "");
  EXPECT_TRUE(ZrXmlBasicType<int>().equalsDefault());
  EXPECT_FALSE(ZrXmlBasicType<int>(1).equalsDefault());

  ZrXmlBasicType<double> source(2.5);
  std::unique_ptr<ZrXmlObject> copy(source.clone());
  EXPECT_TRUE(copy->equality(&source));
  EXPECT_TRUE(copy->specified());
  std::unique_ptr<ZrXmlObject> fresh(source.newObject());
  EXPECT_TRUE(fresh->equalsDefault());
  EXPECT_FALSE(fresh->specified());

  ZrXmlBasicType<double> assigned;
  assigned = 4.0;
  EXPECT_TRUE(assigned.specified());
  EXPECT_TRUE(ZrXmlBasicType<double>(1.0) < ZrXmlBasicType<double>(2.0));
}

}  // namespace
