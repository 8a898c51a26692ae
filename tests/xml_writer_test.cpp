#include <ZrTestSupport.h>
#include <ZrXmlWriter.h>
#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <string>
#include <vector>

namespace {

const std::string A = "http://example.org/a";
const std::string B = "http://example.org/b";
const std::string XSI = "http://www.w3.org/2001/XMLSchema-instance";
const std::string declA = " xmlns=\"" + A + "\"";
const std::string nilHeaderless = " xmlns:xsi=\"" + XSI + "\" xsi:nil=\"true\"/>\n";

ZrToken inA(const char* name) { return ZrToken(A, name); }
ZrToken inB(const char* name) { return ZrToken(B, name); }

// Restores the class-wide defaults that a test changes.
class ZrXmlWriterDefaults : public ::testing::Test {
 protected:
  void TearDown() override {
    ZrXmlWriter::setDefaultIndent(" ");
    ZrXmlWriter::setDefaultHeader("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>");
    ZrXmlWriter::setDefaultStyleSheet("");
    ZrXmlWriter::setDefaultSchemaInstance("");
    ZrXmlWriter::setDefaultSchemaLocation("");
    ZrXmlWriter::setDefaultSchemaWriter(false);
    ZrXmlWriter::setDefaultForWriteDefaultDataFlag(true);
  }
};

struct LayoutCase {
  const char* name;
  std::function<void(ZrXmlWriter&)> calls;
  std::string expected;
};

TEST(ZrXmlWriterLayout, CallSequencesGiveTheseBytes) {
  const std::string fifty(50, 'x'), fiftyOne(51, 'y');
  const LayoutCase cases[] = {
      {"nil element declares xsi when no header did",
       [](ZrXmlWriter& w) {
         w.writeStartTag(inA("root"));
         w.writeEndTag();
       },
       "<root" + declA + nilHeaderless},
      {"attributes only",
       [](ZrXmlWriter& w) {
         w.writeStartTag(inA("root"));
         w.setAttributeName(ZrToken("size"));
         w.data("3");
         w.setAttributeName(ZrToken("name"));
         w.data("x");
         w.writeEndTag();
       },
       "<root" + declA + " size=\"3\" name=\"x\"/>\n"},
      {"50 characters stay on the tag's line",
       [&](ZrXmlWriter& w) {
         w.writeStartTag(inA("root"));
         w.writeStartTag(inA("c"));
         w.data(fifty);
         w.writeEndTag();
         w.writeEndTag();
       },
       "<root" + declA + ">\n <c>" + fifty + "</c>\n</root>\n"},
      {"51 characters go on their own indented line",
       [&](ZrXmlWriter& w) {
         w.writeStartTag(inA("root"));
         w.writeStartTag(inA("c"));
         w.data(fiftyOne);
         w.writeEndTag();
         w.writeEndTag();
       },
       "<root" + declA + ">\n <c>\n  " + fiftyOne + "\n </c>\n</root>\n"},
      {"eleven items: a new row before the eleventh, two blanks per open element",
       [](ZrXmlWriter& w) {
         w.writeStartTag(inA("root"));
         w.writeStartTag(inA("c"));
         for (int i = 1; i <= 11; ++i) w << i;
         w.writeEndTag();
         w.writeEndTag();
       },
       "<root" + declA + ">\n <c>1 2 3 4 5 6 7 8 9 10\n    11</c>\n</root>\n"},
      {"content columns set after the start tag",
       [](ZrXmlWriter& w) {
         w.writeStartTag(inA("v"));
         w.setNumOfContentColumns(3);
         for (int i = 1; i <= 4; ++i) w << i;
         w.writeEndTag();
       },
       "<v" + declA + ">1 2 3\n  4</v>\n"},
      {"zero content columns never break rows",
       [](ZrXmlWriter& w) {
         w.writeStartTag(inA("v"));
         w.setNumOfContentColumns(0);
         for (int i = 1; i <= 12; ++i) w << i;
         w.writeEndTag();
       },
       "<v" + declA + ">1 2 3 4 5 6 7 8 9 10 11 12</v>\n"},
      {"nested indentation, attributes then content",
       [](ZrXmlWriter& w) {
         w.writeStartTag(inA("root"));
         w.writeStartTag(inA("a"));
         w.writeStartTag(inA("b"));
         w.setAttributeName(ZrToken("k"));
         w.data("v");
         w.data("text");
         w.writeEndTag();
         w.writeEndTag();
         w.writeEndTag();
       },
       "<root" + declA + ">\n <a>\n  <b k=\"v\">text</b>\n </a>\n</root>\n"},
      {"another namespace is declared once per subtree",
       [](ZrXmlWriter& w) {
         w.writeStartTag(inA("root"));
         w.writeStartTag(inB("x"));
         w.writeStartTag(inB("y"));
         w.data("1");
         w.writeEndTag();
         w.writeStartTag(inA("back"));
         w.data("2");
         w.writeEndTag();
         w.writeEndTag();
         w.writeStartTag(inB("z"));
         w.data("3");
         w.writeEndTag();
         w.writeEndTag();
       },
       "<root" + declA + ">\n <b:x xmlns:b=\"" + B + "\">\n  <b:y>1</b:y>\n  <back>2</back>\n </b:x>\n <b:z xmlns:b=\"" +
           B + "\">3</b:z>\n</root>\n"},
      {"a child in the parent's namespace needs no declaration",
       [](ZrXmlWriter& w) {
         w.writeStartTag(inA("root"));
         w.writeStartTag(inB("x"));
         w.writeStartTagUsingParentNamespace(ZrToken("group"));
         w.data("1");
         w.writeEndTag();
         w.writeEndTag();
         w.writeStartTagUsingParentNamespace(ZrToken(B, "element"));  // the parent's namespace wins
         w.data("2");
         w.writeEndTag();
         w.writeEndTag();
       },
       "<root" + declA + ">\n <b:x xmlns:b=\"" + B + "\">\n  <b:group>1</b:group>\n </b:x>\n <element>2</element>\n</root>\n"},
      {"a namespace without a usable last segment gets a numbered prefix",
       [](ZrXmlWriter& w) {
         w.writeStartTag(inA("root"));
         w.writeStartTag(ZrToken("urn:zr:test", "item"));
         w.data("1");
         w.writeEndTag();
         w.writeEndTag();
       },
       "<root" + declA + ">\n <ns2:item xmlns:ns2=\"urn:zr:test\">1</ns2:item>\n</root>\n"},
      {"an empty prefix rebinds the default namespace; the outer one then needs a prefix",
       [](ZrXmlWriter& w) {
         w.writeStartTag(inA("root"));
         w.writeStartTag(ZrToken("http://example.org/c/", "item"));
         w.writeStartTag(inA("kid"));
         w.data("1");
         w.writeEndTag();
         w.writeEndTag();
         w.writeEndTag();
       },
       "<root" + declA + ">\n <item xmlns=\"http://example.org/c/\">\n  <a:kid xmlns:a=\"" + A +
           "\">1</a:kid>\n </item>\n</root>\n"},
      {"a prefix rebound in a subtree is declared again for its first namespace",
       [](ZrXmlWriter& w) {
         w.writeStartTag(inA("root"));
         w.writeStartTag(inB("x"));
         w.writeStartTag(ZrToken("http://other.org/b", "y"));
         w.writeStartTag(inB("z"));
         w.data("1");
         w.writeEndTag();
         w.writeEndTag();
         w.writeEndTag();
         w.writeEndTag();
       },
       "<root" + declA + ">\n <b:x xmlns:b=\"" + B + "\">\n  <b:y xmlns:b=\"http://other.org/b\">\n   <b:z xmlns:b=\"" +
           B + "\">1</b:z>\n  </b:y>\n </b:x>\n</root>\n"},
      {"content before a child is written before it",
       [](ZrXmlWriter& w) {
         w.writeStartTag(inA("root"));
         w.data("lead");
         w.writeStartTag(inA("c"));
         w.data("1");
         w.writeEndTag();
         w.writeEndTag();
       },
       "<root" + declA + ">lead\n <c>1</c>\n</root>\n"},
  };
  for (const LayoutCase& c : cases) {
    ZrTest::PrintCapture capture;
    std::ostringstream out;
    ZrXmlWriter writer("t.xml", out);
    c.calls(writer);
    EXPECT_EQ(out.str(), c.expected) << c.name;
    EXPECT_EQ(capture.count(), 0u) << c.name << "\n" << capture.all();
    EXPECT_EQ(writer.depth(), 0u) << c.name;
    EXPECT_EQ(writer.mode(), 5) << c.name;
  }
}

struct MessageCase {
  const char* name;
  std::function<void(ZrXmlWriter&)> calls;
  std::vector<std::string> messages;
  std::string expectedOutput;
};

TEST(ZrXmlWriterMessages, EachFaultPrintsItsTextAndWritingGoesOn) {
  const MessageCase cases[] = {
      {"element without namespace",
       [](ZrXmlWriter& w) {
         w.writeStartTag(ZrToken("plain"));
         w.data("1");
         w.writeEndTag();
       },
       {"ZrXmlWriter Error: All elements must have namespace: plain\n\tFile: f.xml\n"},
       "<plain>1</plain>\n"},
      {"attribute in a declared namespace",
       [](ZrXmlWriter& w) {
         w.writeStartTag(inA("root"));
         w.writeStartTag(inB("x"));
         w.setAttributeName(inB("at"));
         w.data("1");
         w.writeEndTag();
         w.writeEndTag();
       },
       {"ZrXmlWriter Error: no namespace on attributes preferred: at\n\tFile: f.xml\n"},
       "<root" + declA + ">\n <b:x xmlns:b=\"" + B + "\" b:at=\"1\"/>\n</root>\n"},
      {"attribute in an undeclared namespace",
       [](ZrXmlWriter& w) {
         w.writeStartTag(inA("root"));
         w.setAttributeName(inB("at"));
         w.data("1");
         w.writeEndTag();
       },
       {"ZrXmlWriter Error: no namespace on attributes preferred: at\n\tFile: f.xml\n",
        "ZrXmlWriter Error: attribute namespace doesn't exist: at\n\tFile: f.xml\n"},
       "<root" + declA + " at=\"1\"/>\n"},
      {"end tag right after an attribute name",
       [](ZrXmlWriter& w) {
         w.writeStartTag(inA("root"));
         w.setAttributeName(ZrToken("at"));
         w.writeEndTag();
       },
       {"ZrXmlWriter Error: end tag following incorrect mode 2.  File f.xml\n"},
       "<root" + declA + " at="},
      {"end tag before anything",
       [](ZrXmlWriter& w) { w.writeEndTag(); },
       {"ZrXmlWriter Error: end tag following incorrect mode 0.  File f.xml\n"},
       ""},
      {"more end tags than start tags",
       [](ZrXmlWriter& w) {
         w.writeStartTag(inA("root"));
         w.writeEndTag();
         w.writeEndTag();
       },
       {"ZrXmlWriter Error: end tag following incorrect mode 5.  File f.xml\n"},
       "<root" + declA + nilHeaderless},
      {"value before any element",
       [](ZrXmlWriter& w) { w << 1.5; },
       {"ZrXmlWriter Error: element  is placing content at incorrect location.\n\tFile: f.xml\n"},
       ""},
      {"value after a child's end tag",
       [](ZrXmlWriter& w) {
         w.writeStartTag(inA("root"));
         w.writeStartTag(inA("c"));
         w.setAttributeName(ZrToken("k"));
         w.data("v");
         w.writeEndTag();
         w << std::string("late");
         w.writeEndTag();
       },
       {"ZrXmlWriter Error: element root is placing content at incorrect location.\n\tFile: f.xml\n"},
       "<root" + declA + ">\n <c k=\"v\"/>\n</root>\n"},
  };
  for (const MessageCase& c : cases) {
    ZrTest::PrintCapture capture;
    std::ostringstream out;
    ZrXmlWriter writer("f.xml", out);
    c.calls(writer);
    EXPECT_EQ(capture.texts(), c.messages) << c.name;
    for (const auto& message : capture.messages()) EXPECT_EQ(message.first, Zr::PrintError) << c.name;
    EXPECT_EQ(out.str(), c.expectedOutput) << c.name;
  }
}

TEST(ZrXmlWriterValues, TypeNamesFollowTheSchemaMapping) {
  struct Case {
    const std::type_info& info;
    const char* name;
  };
  const Case cases[] = {
      {typeid(bool), "boolean"},        {typeid(float), "float"},      {typeid(double), "double"},
      {typeid(unsigned long), "unsignedLong"}, {typeid(long), "long"}, {typeid(unsigned short), "unsignedShort"},
      {typeid(short), "short"},         {typeid(unsigned char), "unsignedByte"}, {typeid(char), "byte"},
      {typeid(int), "string"},          {typeid(unsigned int), "string"}, {typeid(std::string), "string"},
      {typeid(signed char), "string"},  {typeid(ZrAngle), "string"},
  };
  ZrXmlWriter writer;
  for (const Case& c : cases) {
    writer.type(c.info);
    EXPECT_EQ(writer.typeName(), c.name) << c.info.name();
  }
}

TEST(ZrXmlWriterValues, EachValueIsFormattedWithTheStreamDefaultsAndRecordsItsType) {
  struct Case {
    std::function<void(ZrXmlWriter&)> insert;
    const char* text;
    const char* typeName;
  };
  const Case cases[] = {
      {[](ZrXmlWriter& w) { w << true; }, "1", "boolean"},
      {[](ZrXmlWriter& w) { w << 'A'; }, "A", "byte"},
      {[](ZrXmlWriter& w) { w << 0.1; }, "0.1", "double"},
      {[](ZrXmlWriter& w) { w << 1234567.0; }, "1.23457e+06", "double"},
      {[](ZrXmlWriter& w) { w << -7; }, "-7", "string"},
      {[](ZrXmlWriter& w) { w << static_cast<short>(-3); }, "-3", "short"},
      {[](ZrXmlWriter& w) { w << 4000000000u; }, "4000000000", "string"},
      {[](ZrXmlWriter& w) { w << static_cast<unsigned short>(65535); }, "65535", "unsignedShort"},
      {[](ZrXmlWriter& w) { w << std::string("two words"); }, "two words", "string"},
      {[](ZrXmlWriter& w) { w << ZrAngle(1.5); }, "1.5", "string"},
      {[](ZrXmlWriter& w) { w << ZrNonNegReal(2.25); }, "2.25", "string"},
  };
  for (const Case& c : cases) {
    std::ostringstream out;
    ZrXmlWriter writer("v.xml", out);
    writer.writeStartTag(inA("e"));
    writer.setAttributeName(ZrToken("a"));
    c.insert(writer);
    EXPECT_EQ(out.str(), "<e" + declA + " a=\"" + c.text + "\"") << c.text;
    EXPECT_EQ(writer.typeName(), c.typeName) << c.text;
    EXPECT_TRUE(writer.valueStream().str().empty()) << c.text;
  }
}

TEST(ZrXmlWriterValues, ChainedValuesBecomeSeparateContentItems) {
  std::ostringstream out;
  ZrXmlWriter writer("v.xml", out);
  writer.writeStartTag(inA("e"));
  writer << 1 << 2.5 << std::string("x");
  writer.writeEndTag();
  EXPECT_EQ(out.str(), "<e" + declA + ">1 2.5 x</e>\n");
}

TEST(ZrXmlWriterHeader, HeaderOpensTheRootThatTheCallerCloses) {
  ZrTest::PrintCapture capture;
  std::ostringstream out;
  ZrXmlWriter writer("/data/robot.xml", out);
  writer.header(inA("robot"), "http://example.org/ns/cr");
  EXPECT_EQ(writer.depth(), 1u);
  EXPECT_EQ(writer.mode(), 1);
  writer.setAttributeName(ZrToken("version"));
  writer.data("3.0.0");
  writer.writeStartTag(inA("arm"));
  writer.writeEndTag();
  writer.writeEndTag();
  EXPECT_EQ(out.str(),
            "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n"
            "<robot xmlns=\"" + A + "\" xmlns:xsi=\"" + XSI + "\"\n"
            "  xsi:schemaLocation=\"http://example.org/ns/cr\n"
            "  robot.cr.xsd\" version=\"3.0.0\">\n"
            " <arm xsi:nil=\"true\"/>\n"
            "</robot>\n");
  EXPECT_EQ(capture.count(), 0u) << capture.all();
}

TEST(ZrXmlWriterHeader, EmptyHeaderLineAndANamespacelessRoot) {
  std::ostringstream out;
  ZrXmlWriter writer("r.xml", out);
  writer.setHeader("");
  writer.setStyleSheet("<?xml-stylesheet type=\"text/xsl\" href=\"s.xsl\"?>");
  writer.header(ZrToken("r"), "cr");
  writer.writeEndTag();
  EXPECT_EQ(out.str(),
            "<?xml-stylesheet type=\"text/xsl\" href=\"s.xsl\"?>\n"
            "<r xmlns:xsi=\"" + XSI + "\"\n  xsi:schemaLocation=\"cr\n  r.cr.xsd\" xsi:nil=\"true\"/>\n");
}

TEST(ZrXmlWriterHeader, SchemaFileNameRule) {
  struct Case {
    const char* file;
    const char* schemaNamespace;
    const char* expected;
  };
  const Case cases[] = {
      {"/data/robot.xml", "http://www.zrtoolkit.org/namespace/cr", "robot.cr.xsd"},
      {"robot.xml", "cr", "robot.cr.xsd"},
      {"C:\\models\\robot.xml", "http://x.org/cr", "robot.cr.xsd"},
      {"/data/robot", "http://x.org/cr", "robot.cr.xsd"},
      {"/data/robot.v2.xml", "http://x.org/cr", "robot.v2.cr.xsd"},
      {"", "cr", ".cr.xsd"},
  };
  for (const Case& c : cases) EXPECT_EQ(ZrXmlWriter::schemaFileName(c.file, c.schemaNamespace), c.expected) << c.file;
}

TEST_F(ZrXmlWriterDefaults, LanguageSelectionOnWritersAndOnDefaults) {
  const std::string declaration = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>";
  EXPECT_EQ(ZrXmlWriter::defaultIndent(), " ");
  EXPECT_EQ(ZrXmlWriter::defaultHeader(), declaration);

  ZrXmlWriter writer;
  writer.setLanguageSelection(ZrXmlWriter::TOOLKIT_MARKUP);
  EXPECT_EQ(writer.indent(), "  ");
  EXPECT_EQ(writer.header(), declaration);
  EXPECT_EQ(writer.styleSheet().rfind("<?xml-stylesheet type=\"text/xsl\" href=\"", 0), 0u) << writer.styleSheet();
  EXPECT_GT(writer.styleSheet().size(), std::string("<?xml-stylesheet type=\"text/xsl\" href=\"\"?>").size());
  EXPECT_EQ(writer.styleSheet().substr(writer.styleSheet().size() - 3), "\"?>");
  EXPECT_EQ(writer.schemaInstance(), "xmlns:xsi=\"" + XSI + "\"");
  EXPECT_FALSE(writer.schemaLocation().empty());

  const std::string markupStyleSheet = writer.styleSheet();
  writer.setLanguageSelection(static_cast<ZrXmlWriter::LANGUAGE>(7));  // unknown: nothing changes
  EXPECT_EQ(writer.styleSheet(), markupStyleSheet);

  writer.setIndent("\t");
  writer.setLanguageSelection(ZrXmlWriter::PLAIN_XML);
  EXPECT_EQ(writer.indent(), "  ");
  EXPECT_TRUE(writer.styleSheet().empty());
  EXPECT_TRUE(writer.schemaInstance().empty());
  EXPECT_TRUE(writer.schemaLocation().empty());

  // The defaults change only for writers made afterwards.
  ZrXmlWriter before;
  ZrXmlWriter::setDefaultLanguageSelection(ZrXmlWriter::TOOLKIT_MARKUP);
  ZrXmlWriter after;
  EXPECT_EQ(before.indent(), " ");
  EXPECT_TRUE(before.styleSheet().empty());
  EXPECT_EQ(after.indent(), "  ");
  EXPECT_EQ(after.styleSheet(), markupStyleSheet);
  EXPECT_EQ(after.schemaLocation(), ZrXmlWriter::defaultSchemaLocation());
  ZrXmlWriter::setDefaultLanguageSelection(static_cast<ZrXmlWriter::LANGUAGE>(2));
  EXPECT_EQ(ZrXmlWriter::defaultStyleSheet(), markupStyleSheet);
  ZrXmlWriter::setDefaultLanguageSelection(ZrXmlWriter::PLAIN_XML);
  EXPECT_TRUE(ZrXmlWriter::defaultStyleSheet().empty());
  EXPECT_EQ(ZrXmlWriter::defaultIndent(), "  ");
}

TEST_F(ZrXmlWriterDefaults, NewWritersCopyTheClassDefaults) {
  ZrXmlWriter plain;
  EXPECT_TRUE(plain.writeDefaultDataFlag());
  EXPECT_FALSE(plain.schemaWriter());
  EXPECT_EQ(plain.numOfContentColumns(), 10u);
  EXPECT_EQ(plain.mode(), 0);

  ZrXmlWriter::setDefaultForWriteDefaultDataFlag(false);
  ZrXmlWriter::setDefaultSchemaWriter(true);
  ZrXmlWriter::setDefaultIndent("\t");
  std::ostringstream out;
  ZrXmlWriter writer("d.xml", out);
  EXPECT_FALSE(writer.writeDefaultDataFlag());
  EXPECT_TRUE(writer.schemaWriter());
  // The schema feed runs alongside the document and changes nothing in it.
  writer.writeStartTag(inA("r"));
  writer.writeStartTag(inA("c"));
  writer << 1.0;
  writer.writeEndTag();
  writer.writeEndTag();
  EXPECT_EQ(out.str(), "<r" + declA + ">\n\t<c>1</c>\n</r>\n");
}

TEST(ZrXmlWriterCopy, CopiesShareTheStreamButNotTheirState) {
  std::ostringstream out;
  ZrXmlWriter original("c.xml", out);
  original.valueStream().precision(3);
  original.writeStartTag(inA("root"));
  original.writeStartTag(inB("x"));

  ZrXmlWriter copy(original);
  ZrXmlWriter assigned;
  assigned = original;
  for (ZrXmlWriter* w : {&copy, &assigned}) {
    EXPECT_EQ(w->output(), &out);
    EXPECT_EQ(w->filename(), "c.xml");
    EXPECT_EQ(w->depth(), 2u);
    EXPECT_EQ(w->mode(), 1);
    EXPECT_EQ(w->valueStream().precision(), 3);
  }

  // The copy finishes the document with its own indent; the original's stack and buffer stay as they were.
  copy.setIndent("    ");
  copy << 3.14159;
  copy.writeEndTag();
  copy.writeStartTag(inA("y"));
  copy.data("2");
  copy.writeEndTag();
  copy.writeEndTag();
  const std::string byCopy = "<root" + declA + ">\n <b:x xmlns:b=\"" + B + "\">3.14</b:x>\n    <y>2</y>\n</root>\n";
  EXPECT_EQ(out.str(), byCopy);
  EXPECT_EQ(original.depth(), 2u);
  EXPECT_EQ(original.indent(), " ");
  original.data("o");
  original.writeEndTag();
  EXPECT_EQ(out.str(), byCopy + ">o</b:x>\n");
}

TEST(ZrXmlWriterCopy, DestroyingTheWriterLeavesTheStreamOpen) {
  std::ostringstream out;
  {
    ZrXmlWriter writer("o.xml", out);
    writer.writeStartTag(inA("r"));
    writer.data("1");
    writer.writeEndTag();
  }
  out << "after";
  EXPECT_TRUE(out.good());
  EXPECT_EQ(out.str(), "<r" + declA + ">1</r>\nafter");
}

TEST(ZrXmlWriterCopy, AWriterWithoutStreamKeepsTrackButWritesNothing) {
  ZrXmlWriter writer;
  writer.writeStartTag(inA("r"));
  writer << 2;
  EXPECT_EQ(writer.mode(), 4);
  writer.writeEndTag();
  EXPECT_EQ(writer.depth(), 0u);
  EXPECT_EQ(writer.output(), nullptr);
}

}  // namespace
