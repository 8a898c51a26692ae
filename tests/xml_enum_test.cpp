// Enumerations: which name is written, which names are accepted when reading.
#include <ZrTestSupport.h>
#include <ZrXmlEnumType.h>
#include <ZrXmlReader.h>
#include <ZrXmlWriter.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace {

ZrXmlEnumType<int> oneTwo(int value) { return ZrXmlEnumType<int>(value, {{1, "one"}, {2, "two"}}); }

std::string writtenName(const ZrXmlEnumType<int>& object) {
  std::ostringstream out;
  ZrXmlWriter writer("e.xml", out);
  writer.writeStartTag(ZrToken("urn:test", "e"));
  writer.setAttributeName(ZrToken("n"));
  EXPECT_TRUE(object.write(writer));
  writer.writeEndTag();
  const std::string text = out.str();
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
  copy.setValueFromString("uno");
  EXPECT_EQ(copy.value(), 1) << "a copy keeps the table";
  const ZrXmlEnumType<unsigned> otherType(1u);
  EXPECT_FALSE(e.equality(&otherType));
}

TEST(ZrXmlEnumType, ReadsKnownNamesExactlyAndFailsSilentlyOnOthers) {
  const std::string noData = "ZrXmlEnumType Error: file not valid.\n\tNo data found.\n\tFile: e.xml\n\tLine: 1\n";
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
    {
      std::istringstream in(c.text);
      ZrXmlReader reader("e.xml", in);
      reader.readXml();
      EXPECT_EQ(c.asAttribute ? e.readAttribute(reader) : e.read(reader), c.result) << c.text;
    }
    EXPECT_EQ(e.value(), c.value) << c.text;
    if (c.message.empty()) {
      EXPECT_EQ(capture.count(), 0u) << c.text << capture.all();
      continue;
    }
    // Headed by the reading function's signature; a read that stops inside the element is followed
    // by the tokenizer's report of unclosed elements.
    ASSERT_GE(capture.count(), 1u) << c.text;
    const std::string first = capture.texts().front();
    EXPECT_NE(first.find(c.asAttribute ? "::readAttribute(" : "::read("), std::string::npos) << first;
    EXPECT_EQ(first.substr(first.find('\n') + 1), c.message) << first;
  }
}

}  // namespace
