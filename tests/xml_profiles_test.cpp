// The two settings values and their profiles: every setting goes through the value, its forwarder and a
// copied writer or reader alike; the toolkit profile is the default; documents written with the standard
// profile and read with the standard profile give back every awkward value exactly.
#include <ZrTestSupport.h>
#include <ZrXmlBasicType.h>
#include <ZrXmlCompoundType.h>
#include <ZrXmlReader.h>
#include <ZrXmlSetType.h>
#include <ZrXmlVectorType.h>
#include <ZrXmlWriter.h>
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

namespace {

TEST(ZrXmlOptions, TheToolkitProfileIsWhatWritersAndReadersStartWith) {
  EXPECT_EQ(ZrXmlWriter().options(), ZrXmlWriteOptions::toolkit());
  EXPECT_EQ(ZrXmlReader().options(), ZrXmlReadOptions::toolkit());
  EXPECT_EQ(ZrXmlWriteOptions::toolkit().header(), "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>");
  EXPECT_EQ(ZrXmlWriteOptions::toolkit().indent(), " ");
  const ZrXmlWriteOptions standard = ZrXmlWriteOptions::standard();
  EXPECT_TRUE(standard.namespaceComplete() && standard.losslessReals() && standard.escapeMarkup());
  EXPECT_EQ(standard.header(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
  EXPECT_TRUE(ZrXmlReadOptions::standard().expandReferences() && ZrXmlReadOptions::standard().checkValues());
}

// Each row sets one writing setting through the writer's own setter and checks that the value, a copy
// and an assigned writer all hold it.
TEST(ZrXmlOptions, EveryWritingSettingLivesInTheValueAndTravelsWithCopies) {
  struct Row {
    const char* name;
    void (*set)(ZrXmlWriter&);
    bool (*holds)(const ZrXmlWriteOptions&);
  };
  const Row rows[] = {
      {"indent", [](ZrXmlWriter& w) { w.setIndent("\t"); }, [](const ZrXmlWriteOptions& o) { return o.indent() == "\t"; }},
      {"header", [](ZrXmlWriter& w) { w.setHeader(""); }, [](const ZrXmlWriteOptions& o) { return o.header().empty(); }},
      {"styleSheet", [](ZrXmlWriter& w) { w.setStyleSheet("<?s?>"); }, [](const ZrXmlWriteOptions& o) { return o.styleSheet() == "<?s?>"; }},
      {"schemaInstance", [](ZrXmlWriter& w) { w.setSchemaInstance("i"); }, [](const ZrXmlWriteOptions& o) { return o.schemaInstance() == "i"; }},
      {"schemaLocation", [](ZrXmlWriter& w) { w.setSchemaLocation("l"); }, [](const ZrXmlWriteOptions& o) { return o.schemaLocation() == "l"; }},
      {"language", [](ZrXmlWriter& w) { w.setLanguageSelection(ZrXmlWriter::PLAIN_XML); }, [](const ZrXmlWriteOptions& o) { return o.indent() == "  "; }},
      {"writeDefaultData", [](ZrXmlWriter& w) { w.setWriteDefaultDataFlag(false); }, [](const ZrXmlWriteOptions& o) { return !o.writeDefaultData(); }},
      {"schemaWriter", [](ZrXmlWriter& w) { w.setSchemaWriter(true); }, [](const ZrXmlWriteOptions& o) { return o.schemaWriter(); }},
      {"namespaceComplete", [](ZrXmlWriter& w) { w.setNamespaceComplete(true); }, [](const ZrXmlWriteOptions& o) { return o.namespaceComplete(); }},
      {"losslessReals", [](ZrXmlWriter& w) { w.setLosslessReals(true); }, [](const ZrXmlWriteOptions& o) { return o.losslessReals(); }},
      {"escapeMarkup", [](ZrXmlWriter& w) { w.setEscapeMarkup(true); }, [](const ZrXmlWriteOptions& o) { return o.escapeMarkup(); }},
      {"portableSchemaFileNames", [](ZrXmlWriter& w) { w.setPortableSchemaFileNames(true); }, [](const ZrXmlWriteOptions& o) { return o.portableSchemaFileNames(); }},
  };
  for (const Row& row : rows) {
    ZrXmlWriter writer;
    row.set(writer);
    EXPECT_TRUE(row.holds(writer.options())) << row.name;
    EXPECT_NE(writer.options(), ZrXmlWriteOptions::toolkit()) << row.name;
    const ZrXmlWriter copy(writer);
    EXPECT_EQ(copy.options(), writer.options()) << row.name;
    ZrXmlWriter assigned;
    assigned = writer;
    EXPECT_EQ(assigned.options(), writer.options()) << row.name;
  }
}

TEST(ZrXmlOptions, EveryReadingSettingLivesInTheValueAndTravelsWithCopies) {
  struct Row {
    const char* name;
    void (*set)(ZrXmlReader&);
  };
  const Row rows[] = {
      {"strict", [](ZrXmlReader& r) { r.setStrict(true); }},
      {"expandReferences", [](ZrXmlReader& r) { r.setExpandReferences(true); }},
      {"checkValues", [](ZrXmlReader& r) { r.setCheckValues(true); }},
      {"maxObjectDepth", [](ZrXmlReader& r) { r.setMaxObjectDepth(3); }},
      {"maxIncludeDepth", [](ZrXmlReader& r) { r.setMaxIncludeDepth(0); }},
      {"maxIncludedDocuments", [](ZrXmlReader& r) { r.setMaxIncludedDocuments(1); }},
      {"maxIncludedBytes", [](ZrXmlReader& r) { r.setMaxIncludedBytes(1); }},
      {"httpIncludesAllowed", [](ZrXmlReader& r) { r.setHttpIncludesAllowed(false); }},
      {"portableIncludeReferences", [](ZrXmlReader& r) { r.setPortableIncludeReferences(true); }},
      {"maxPrintedFaults", [](ZrXmlReader& r) { r.setMaxPrintedFaults(0); }},
      {"httpLimits", [](ZrXmlReader& r) {
         ZrIfHttpStream::Limits limits;
         limits.allowedHosts = {"localhost"};
         r.setOptions(ZrXmlReadOptions(r.options()).setHttpLimits(limits));
       }},
  };
  for (const Row& row : rows) {
    std::istringstream in("<a/>");
    ZrXmlReader reader("a.xml", in);
    row.set(reader);
    EXPECT_NE(reader.options(), ZrXmlReadOptions::toolkit()) << row.name;
    // The open document reads by the same settings.
    EXPECT_EQ(reader.currentFileReader()->options(), reader.options()) << row.name;
    const ZrXmlReader copy(reader);
    EXPECT_EQ(copy.options(), reader.options()) << row.name;
  }
}

TEST(ZrXmlOptions, ClassDefaultsAreOneValuePerSide) {
  ZrXmlFileReader::setDefaultExpandReferences(true);
  EXPECT_TRUE(ZrXmlReader::defaultOptions().expandReferences());
  EXPECT_TRUE(ZrXmlFileReader().options().expandReferences());
  ZrXmlReader::setDefaultOptions(ZrXmlReadOptions::toolkit());
  EXPECT_FALSE(ZrXmlFileReader::defaultExpandReferences());
  ZrXmlWriter::setDefaultLosslessReals(true);
  EXPECT_TRUE(ZrXmlWriter().losslessReals());
  ZrXmlWriter::setDefaultOptions(ZrXmlWriteOptions::toolkit());
  EXPECT_FALSE(ZrXmlWriter::defaultLosslessReals());
}

class Sample : public ZrXmlCompoundType {
 public:
  ZrXmlObject* clone() const override { return new Sample(*this); }
  ZrXmlObject* newObject() const override { return new Sample(); }
  ZrBoolean equality(const ZrXmlObject*) const override { return false; }
  ZrToken token() const override { return ZrToken("urn:sample", "sample"); }
  void registerComponents() override {
    registerAttributeComponent(ZrToken("label"), &label);
    registerComponent(ZrToken("urn:sample", "text"), &text);
    registerComponent(ZrToken("urn:sample", "texts"), &texts);
    registerComponent(ZrToken("urn:sample", "names"), &names);
    registerComponent(ZrToken("urn:sample", "real"), &real);
    registerComponent(ZrToken("urn:sample", "single"), &single);
  }
  ZrXmlBasicType<std::string> label, text;
  ZrXmlVectorType<ZrXmlBasicType<std::string>> texts;
  ZrXmlSetType<ZrXmlBasicType<std::string>> names;
  ZrXmlBasicType<double> real;
  ZrXmlBasicType<float> single;
};

std::string writeStandard(const Sample& sample) {
  std::ostringstream out;
  ZrXmlWriter writer("sample.xml", out);
  writer.setOptions(ZrXmlWriteOptions::standard());
  writer.header(sample.token(), "urn:sample");
  sample.write(writer);
  writer.writeEndTag();
  return out.str();
}

ZrU32 readStandard(const std::string& document, Sample& sample) {
  std::istringstream in(document);
  ZrXmlReader reader("sample.xml", in);
  reader.setOptions(ZrXmlReadOptions::standard());
  reader.readXml();
  sample.read(reader);
  reader.finish();
  return reader.faultCount();
}

// Strings that a reader would trim, split or take for markup, alone, in attributes and in containers.
TEST(ZrXmlStandardProfile, AwkwardStringsComeBackExactly) {
  const std::vector<std::string> awkward = {
      "",           "  padded  ",        "a\tb\n",           "R&D <beta> \"q\" 'a'", " ",
      "\r\n",       "caf\xC3\xA9 \xE2\x82\xAC", "&amp; is not &", "x  y",
      "]]>",        "line one\nline two"};
  for (const std::string& text : awkward) {
    Sample sample;
    sample.label = text;
    sample.text = text;
    sample.texts.pushBack(ZrXmlBasicType<std::string>("before"));
    sample.texts.pushBack(ZrXmlBasicType<std::string>(text));
    sample.texts.pushBack(ZrXmlBasicType<std::string>("after"));
    sample.names.insert(ZrXmlBasicType<std::string>(text));
    sample.names.insert(ZrXmlBasicType<std::string>("other"));
    const std::string document = writeStandard(sample);
    Sample back;
    ZrTest::PrintCapture capture;
    EXPECT_EQ(readStandard(document, back), 0u) << document << capture.all();
    EXPECT_EQ(back.label.value(), text) << document;
    EXPECT_EQ(back.text.value(), text) << document;
    ASSERT_EQ(back.texts.size(), 3u) << document;
    EXPECT_EQ(back.texts[1].value(), text) << document;
    EXPECT_EQ(back.texts[2].value(), "after") << document;
    EXPECT_EQ(back.names.size(), 2u) << document;
  }
}

TEST(ZrXmlStandardProfile, AwkwardRealsComeBackExactly) {
  const double reals[] = {0.1 + 0.2, 1e-310, -0.0, 123456789.123, std::numeric_limits<double>::max(),
                          std::numeric_limits<double>::infinity()};
  const float singles[] = {1.0000001f, 3.4028235e38f, 1e-45f, -std::numeric_limits<float>::infinity()};
  for (std::size_t i = 0; i < 6; ++i) {
    Sample sample;
    sample.real = reals[i];
    sample.single = singles[i % 4];
    Sample back;
    ZrTest::PrintCapture capture;
    const std::string document = writeStandard(sample);
    EXPECT_EQ(readStandard(document, back), 0u) << document << capture.all();
    EXPECT_EQ(back.real.value(), reals[i]) << document;
    EXPECT_EQ(std::signbit(back.real.value()), std::signbit(reals[i])) << document;
    EXPECT_EQ(back.single.value(), singles[i % 4]) << document;
  }
}

}  // namespace

namespace {

// A document written with escaped text and read without reference expansion gets one notice, no fault.
TEST(ZrXmlStandardProfile, ReadingEscapedTextUnexpandedGetsOneNotice) {
  Sample sample;
  sample.text = "R&D <beta>";
  sample.label = "a&b";
  const std::string document = writeStandard(sample);
  for (bool expand : {false, true}) {
    ZrTest::PrintCapture capture;
    std::istringstream in(document);
    ZrXmlReader reader("sample.xml", in);
    reader.setExpandReferences(expand);
    Sample back;
    reader.readXml();
    back.read(reader);
    reader.finish();
    EXPECT_EQ(reader.faultCount(), 0u) << capture.all();
    const std::size_t notices = capture.all().find("read it with the reading option expandReferences") != std::string::npos;
    EXPECT_EQ(capture.count(), expand ? 0u : 1u) << capture.all();
    EXPECT_EQ(notices, expand ? 0u : 1u);
  }
}

}  // namespace

namespace {

// A limit of 0 means what the settings header says: no includes, nothing printed, or no limit at all;
// the largest value of a limit's type is no limit.
TEST(ZrXmlOptions, ZeroAndLargestLimitsMeanWhatTheHeaderSays) {
  ZrTest::TempDir dir;
  dir.write("part.xml", "<part/>");
  const std::string main = dir.write("main.xml", "<doc><ZrInclude type=\"simple\" href=\"part.xml\"/><x/></doc>");
  struct Row {
    const char* name;
    ZrXmlReadOptions options;
    bool includeOpens;
    bool printed;
  };
  const Row rows[] = {
      {"no include depth", ZrXmlReadOptions().setMaxIncludeDepth(0), false, true},
      {"no included documents", ZrXmlReadOptions().setMaxIncludedDocuments(0), false, true},
      {"no included bytes", ZrXmlReadOptions().setMaxIncludedBytes(0), false, true},
      {"no memory limit", ZrXmlReadOptions().setMaxReadMemory(0), true, false},
      {"no time limit", ZrXmlReadOptions().setMaxReadMilliseconds(0), true, false},
      {"largest token size", ZrXmlReadOptions().setMaxTokenSize(static_cast<std::size_t>(-1)), true, false},
      {"nothing printed", ZrXmlReadOptions().setMaxIncludeDepth(0).setMaxPrintedFaults(0), false, false},
  };
  for (const Row& row : rows) {
    std::ifstream in(main);
    ZrTest::PrintCapture capture;
    ZrXmlReader reader(main, in);
    reader.setOptions(row.options);
    bool sawPart = false;
    for (int mode = reader.readXml(); mode != 0 && mode != 5; mode = reader.readXml())
      sawPart = sawPart || reader.element().tokenText() == "part";
    reader.finish();
    EXPECT_EQ(sawPart, row.includeOpens) << row.name;
    EXPECT_EQ(reader.faultCount(), row.includeOpens ? 0u : 1u) << row.name << capture.all();
    const bool printed = capture.contains("ZrXmlReader Error");
    EXPECT_EQ(printed, row.printed) << row.name << capture.all();
  }
}

}  // namespace
