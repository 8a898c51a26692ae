// Values written and read back, as element content and as attribute values, for every value type.
#include <ZrTestSupport.h>
#include <ZrXmlBasicType.h>
#include <ZrXmlReader.h>
#include <ZrXmlWriter.h>
#include <gtest/gtest.h>

#include <climits>
#include <sstream>
#include <string>
#include <vector>

namespace {

const char* const fileName = "roundTrip.xml";

template <class Object>
std::string document(const Object& object, bool asAttribute) {
  std::ostringstream out;
  ZrXmlWriter writer(fileName, out);
  writer.writeStartTag(ZrToken("urn:test", "v"));
  if (asAttribute) writer.setAttributeName(ZrToken("a"));
  EXPECT_TRUE(object.write(writer));
  writer.writeEndTag();
  return out.str();
}

// Reads the value of the document's root element (its content, or its attribute).
template <class Object>
ZrBoolean readBack(const std::string& text, Object& object, bool asAttribute) {
  std::istringstream in(text);
  ZrXmlReader reader(fileName, in);
  reader.readXml();
  return asAttribute ? object.readAttribute(reader) : object.read(reader);
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
      const std::string text = document(ZrXmlBasicType<TypeParam>(value), asAttribute);
      ZrXmlBasicType<TypeParam> back;
      EXPECT_TRUE(readBack(text, back, asAttribute)) << text;
      EXPECT_TRUE(back == ZrXmlBasicType<TypeParam>(value)) << text;
      EXPECT_TRUE(back.specified());
    }
  }
  EXPECT_EQ(capture.count(), 0u) << capture.all();
}

// The documented losses: reals keep six significant digits.
TEST(ZrXmlBasicRoundTripLoss, RealsKeepSixSignificantDigits) {
  struct Case {
    double written, read;
  } cases[] = {{3.14159265, 3.14159}, {123456789.0, 1.23457e+08}, {2.0 / 3.0, 0.666667}, {1.0000004, 1.0}};
  for (const Case& c : cases) {
    for (bool asAttribute : {false, true}) {
      ZrXmlBasicType<double> real;
      readBack(document(ZrXmlBasicType<double>(c.written), asAttribute), real, asAttribute);
      EXPECT_EQ(real.value(), c.read) << c.written;
      ZrXmlBasicType<ZrAngle> angle;
      readBack(document(ZrXmlBasicType<ZrAngle>(ZrAngle(c.written)), asAttribute), angle, asAttribute);
      EXPECT_EQ(angle.value().value(), c.read) << c.written;
      ZrXmlBasicType<ZrNonNegReal> mass;
      readBack(document(ZrXmlBasicType<ZrNonNegReal>(ZrNonNegReal(c.written)), asAttribute), mass, asAttribute);
      EXPECT_EQ(mass.value().value(), c.read) << c.written;
    }
  }
}

TEST(ZrXmlBasicRead, ElementShapes) {
  const std::string noData = "ZrXmlBasicType Error: file not valid.\n\tNo data found.\n\tFile: roundTrip.xml\n\tLine: 2\n";
  struct Case {
    const char* text;
    bool result;
    double value;
    const char* message;
  } cases[] = {
      {"<v/>", true, 0.0, ""},
      {"<v></v>", true, 0.0, ""},
      {"<v>\n 1.5 m </v>", true, 1.5, ""},
      {"<v>\n<w>2</w></v>", false, 0.0, noData.c_str()},
  };
  for (const Case& c : cases) {
    ZrTest::PrintCapture capture;
    ZrXmlBasicType<double> value(9.0);
    EXPECT_EQ(readBack(c.text, value, false), c.result) << c.text;
    EXPECT_EQ(value.value(), c.value) << c.text;
    // A read that stops inside the element also leaves the tokenizer's report of unclosed elements.
    EXPECT_EQ(capture.count() == 0 ? "" : capture.texts().front(), c.message) << c.text;
  }
  ZrXmlBasicType<std::string> text("old");
  EXPECT_TRUE(readBack("<v/>", text, false));
  EXPECT_EQ(text.value(), "");
}

TEST(ZrXmlBasicRead, MissingAttributeIsReportedButNotAFailure) {
  ZrTest::PrintCapture capture;
  ZrXmlBasicType<int> value(9);
  EXPECT_TRUE(readBack("<v/>", value, true));
  EXPECT_EQ(value.value(), 0);
  EXPECT_EQ(capture.all(), "ZrXmlBasicType Error: file not valid.\n\tNo attributes found.\n\tFile: roundTrip.xml\n\tLine: 1\n");
}

}  // namespace
