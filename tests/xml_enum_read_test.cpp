// Reading enumerations: names from element content and attribute values.
#include <ZrTestSupport.h>
#include <ZrXmlEnumType.h>
#include <ZrXmlReader.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace {

ZrBoolean readBack(const std::string& text, ZrXmlEnumType<int>& object, bool asAttribute) {
  std::istringstream in(text);
  ZrXmlReader reader("enum.xml", in);
  reader.readXml();
  return asAttribute ? object.readAttribute(reader) : object.read(reader);
}

TEST(ZrXmlEnumRead, KnownNamesSetTheValueUnknownOnesFailSilently) {
  struct Case {
    const char* text;
    bool asAttribute;
    bool result;
    int value;
    const char* message;  // a fragment of the one expected message, or "" for none
  } cases[] = {
      {"<e>two</e>", false, true, 2, ""},
      {"<e> two </e>", false, true, 2, ""},
      {"<e a='two'/>", true, true, 2, ""},
      {"<e>three</e>", false, false, 7, ""},
      {"<e a='Two'/>", true, false, 7, ""},
      {"<e/>", false, false, 7, ""},  // the empty name is not in the table
      {"<e><x/></e>", false, false, 7, "ZrXmlEnumType Error: file not valid.\n\tNo data found.\n\tFile: enum.xml\n\tLine: 1\n"},
      {"<e/>", true, false, 7, "ZrXmlEnumType Error: file not valid.\n\tNo data found.\n\tFile: enum.xml\n\tLine: 1\n"},
  };
  for (const Case& c : cases) {
    ZrTest::PrintCapture capture;
    ZrXmlEnumType<int> e(7, {{1, "one"}, {2, "two"}});
    EXPECT_EQ(readBack(c.text, e, c.asAttribute), c.result) << c.text;
    EXPECT_EQ(e.value(), c.value) << c.text;
    if (*c.message) {
      // The message is headed by the reading function's signature. A read that stops inside the
      // element is followed by the tokenizer's report of unclosed elements.
      ASSERT_GE(capture.count(), 1u) << c.text;
      const std::string first = capture.texts().front();
      EXPECT_NE(first.find(c.asAttribute ? "::readAttribute(" : "::read("), std::string::npos) << first;
      EXPECT_EQ(first.substr(first.find('\n') + 1), c.message) << first;
    } else {
      EXPECT_EQ(capture.count(), 0u) << c.text << capture.all();
    }
  }
}

}  // namespace
