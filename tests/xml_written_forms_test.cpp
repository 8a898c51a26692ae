// The optional written forms and their reading counterpart: lossless reals, markup-safe text with
// reference expansion, and the faults of malformed references.
#include "xml_file_reader_trace.h"

#include <ZrTestDocument.h>
#include <ZrTestSupport.h>
#include <ZrXmlBasicType.h>
#include <ZrXmlOrientation.h>
#include <ZrXmlVector.h>
#include <ZrXmlVectorType.h>
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

namespace {

using ZrTest::readRoot;
using ZrTest::written;

// Switches the class defaults for the life of a test, so that the shared document helpers write and
// read in the forms under test; every default is off again afterwards.
struct FormDefaults {
  FormDefaults(bool lossless, bool markupSafe) {
    ZrXmlWriter::setDefaultLosslessReals(lossless);
    ZrXmlWriter::setDefaultEscapeMarkup(markupSafe);
    ZrXmlFileReader::setDefaultExpandReferences(markupSafe);
  }
  ~FormDefaults() {
    ZrXmlWriter::setDefaultLosslessReals(false);
    ZrXmlWriter::setDefaultEscapeMarkup(false);
    ZrXmlFileReader::setDefaultExpandReferences(false);
  }
};

const double theInfinity = std::numeric_limits<double>::infinity();

std::vector<double> awkwardReals() {
  return {0.85, 0.1 + 0.2, 123456789.123, 1.0 / 3.0, -0.0, DBL_MAX, DBL_MIN, DBL_TRUE_MIN, 1e-300,
          theInfinity, -theInfinity};
}

bool sameReal(double a, double b) {
  return (std::isnan(a) && std::isnan(b)) || (a == b && std::signbit(a) == std::signbit(b));
}

TEST(ZrXmlLosslessReals, WrittenTextsAreTheShortestThatReadBack) {
  const struct {
    double value;
    const char* lossless;
    const char* sixDigits;
  } cases[] = {{0.85, "0.85", "0.85"},
               {0.1 + 0.2, "0.30000000000000004", "0.3"},
               {123456789.123, "123456789.123", "1.23457e+08"},
               {theInfinity, "INF", "inf"},
               {-theInfinity, "-INF", "-inf"},
               {std::nan(""), "NaN", "nan"}};
  for (const auto& c : cases) {
    EXPECT_EQ(written(ZrXmlBasicType<double>(c.value)), std::string("<v>") + c.sixDigits + "</v>\n");
    FormDefaults lossless(true, false);
    EXPECT_EQ(written(ZrXmlBasicType<double>(c.value)), std::string("<v>") + c.lossless + "</v>\n");
    EXPECT_EQ(written(ZrXmlVector(c.value, 0, 1)),
              std::string("<v x=\"") + c.lossless + "\" y=\"0\" z=\"1\"/>\n");
  }
}

// Every kind of real the writer formats, as content and as attribute, element by element and in arrays.
TEST(ZrXmlLosslessReals, AwkwardRealsRoundTripThroughEveryPath) {
  FormDefaults lossless(true, false);
  ZrTest::PrintCapture capture;
  std::vector<double> reals = awkwardReals();
  reals.push_back(std::nan(""));
  for (double value : reals) {
    for (const char* attribute : {"", "a"}) {
      ZrXmlBasicType<double> real;
      readRoot(written(ZrXmlBasicType<double>(value), attribute), real, nullptr, *attribute);
      EXPECT_TRUE(sameReal(real.value(), value)) << value << " " << attribute;
      ZrXmlBasicType<ZrAngle> angle;
      readRoot(written(ZrXmlBasicType<ZrAngle>(ZrAngle(value)), attribute), angle, nullptr, *attribute);
      EXPECT_TRUE(sameReal(angle.value().value(), ZrAngle(value).value())) << value << " angle";
    }
    ZrXmlBasicType<ZrNonNegReal> nonNegative;
    readRoot(written(ZrXmlBasicType<ZrNonNegReal>(ZrNonNegReal(value))), nonNegative);
    EXPECT_TRUE(sameReal(nonNegative.value().value(), ZrNonNegReal(value).value())) << value << " non-negative";
    ZrXmlVector vector;
    readRoot(written(ZrXmlVector(value, -value, 0.5)), vector);
    EXPECT_TRUE(sameReal(vector.value().x(), value) && sameReal(vector.value().y(), -value)) << value << " vector";
  }

  ZrXmlVectorType<ZrXmlBasicType<double>> array, back;
  for (double value : reals) array.pushBack(ZrXmlBasicType<double>(value));
  readRoot(written(array), back);
  ASSERT_EQ(back.vectorContainer().size(), reals.size());
  for (std::size_t i = 0; i < reals.size(); ++i)
    EXPECT_TRUE(sameReal(back[static_cast<ZrU32>(i)].value(), reals[i])) << i;

  // Reading normalises an orientation, so its written text is what is compared.
  EXPECT_EQ(written(ZrXmlOrientation(0.1 + 0.2, 1.0 / 3.0, -0.0, 0.85)),
            "<v q0=\"0.30000000000000004\" q1=\"0.3333333333333333\" q2=\"-0\" q3=\"0.85\"/>\n");
  EXPECT_EQ(capture.all(), "");
}

// Text that holds every markup character, quotes of both kinds, references as text and UTF-8.
const std::vector<std::string> theAwkwardStrings = {
    "a < b", "R&D", "17\" belt", "x > y && y > z", "it's", "&amp; stays text", "&#65;", "<tag/>",
    "Gr\xC3\xBC\xC3\x9F" "e \xE2\x82\xAC", "]]>"};

TEST(ZrXmlMarkupSafeText, AwkwardStringsRoundTripAsContentAndAttribute) {
  FormDefaults markupSafe(false, true);
  ZrTest::PrintCapture capture;
  for (const std::string& text : theAwkwardStrings) {
    for (const char* attribute : {"", "a"}) {
      ZrXmlBasicType<std::string> back;
      readRoot(written(ZrXmlBasicType<std::string>(text), attribute), back, nullptr, *attribute);
      EXPECT_EQ(back.value(), text) << attribute;
    }
  }
  EXPECT_EQ(written(ZrXmlBasicType<std::string>("a<\"b\">&c"), "k"), "<v k=\"a&lt;&quot;b&quot;&gt;&amp;c\"/>\n");
  EXPECT_EQ(capture.all(), "");
}

TEST(ZrXmlMarkupSafeText, XmllintReadsTheStringsBack) {
  if (std::system("command -v xmllint >/dev/null 2>&1") != 0) GTEST_SKIP() << "xmllint is not installed";
  ZrTest::TempDir dir;
  const std::string path = dir.file("text.xml");
  {
    std::ofstream out(path, std::ios::binary);
    ZrXmlWriter writer(path, out);
    writer.setEscapeMarkup(true);
    writer.setNamespaceComplete(true);
    writer.setHeader("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
    writer.header(ZrToken("urn:zr:test", "texts"), "urn:zr:test");
    for (const std::string& text : theAwkwardStrings) {
      writer.writeStartTag(ZrToken("urn:zr:test", "t"));
      writer.setAttributeName(ZrToken("copy"));
      writer.data(text);
      writer.data(text);
      writer.writeEndTag();
    }
    writer.writeEndTag();
  }
  // xmllint's own reading of each string, as attribute value and as content, without a diagnostic.
  const std::string report = path + ".out";
  for (std::size_t i = 0; i < theAwkwardStrings.size(); ++i) {
    for (const char* node : {"/@copy", ""}) {
      const std::string query = "xmllint --xpath 'string(//*[local-name()=\"t\"][" + std::to_string(i + 1) + "]" +
                                node + ")' '" + path + "' >'" + report + "' 2>&1";
      ASSERT_EQ(std::system(query.c_str()), 0) << ZrTest::readFile(report) << ZrTest::readFile(path);
      EXPECT_EQ(ZrTest::readFile(report), theAwkwardStrings[i] + "\n") << node;
    }
  }
}

// Each malformed reference is reported in the tokenizer's frame and kept as text; with expansion off
// the same documents read as the toolkit writes them, '&' an ordinary character.
TEST(ZrXmlMarkupSafeText, ReferencesAndTheirFaults) {
  const struct {
    const char* document;
    const char* expanded;
    const char* fault;
  } cases[] = {
      {"<a k='&lt;&#65;&#x42;&gt;'>&quot;&apos;&amp;</a>", "1 a k=<AB>|4 a '\"'&'", ""},
      {"<a>&#233;&#x20AC;&#x1F600;</a>", "1 a|4 a '\xE9\xE2\x82\xAC\xF0\x9F\x98\x80'", ""},
      {"<a>&#32;x&#32;</a>", "1 a|4 a ' x '", ""},
      {"<a>&unknown;</a>", "1 a|4 a '&unknown;'", "Undefined entity reference: &unknown;"},
      {"<a>&#xZZ;</a>", "1 a|4 a '&#xZZ;'", "Invalid character reference: &#xZZ;"},
      {"<a>&#0;</a>", "1 a|4 a '&#0;'", "Invalid character reference: &#0;"},
      {"<a>&#xD800;</a>", "1 a|4 a '&#xD800;'", "Invalid character reference: &#xD800;"},
      {"<a>R & D</a>", "1 a|4 a 'R & D'", "'&' not followed by a reference."},
      {"<a k='x&amp'/>", "3 a k=x&amp", "Reference without ';': &amp"},
      {"<a>&</a>", "1 a|4 a '&'", "'&' not followed by a reference."},
  };
  auto eventsOf = [](const ZrTest::Trace& trace) {
    std::string events;
    for (const std::string& event : trace.events)
      if (event != "0") events += (events.empty() ? "" : "|") + event;
    return events;
  };
  for (const auto& c : cases) {
    ZrTest::Trace literal = ZrTest::traceDocument(c.document);
    EXPECT_TRUE(literal.messages.empty()) << c.document;
    EXPECT_NE(eventsOf(literal).find('&'), std::string::npos) << c.document;  // kept as it stands

    FormDefaults expanding(false, true);
    ZrTest::Trace expanded = ZrTest::traceDocument(c.document);
    EXPECT_EQ(eventsOf(expanded), c.expanded) << c.document;
    std::vector<std::string> faults;
    if (*c.fault) faults.push_back(std::string("file not well formed.\n\t") + c.fault + "@1");
    EXPECT_EQ(expanded.messages, faults) << c.document;
  }
}

}  // namespace
