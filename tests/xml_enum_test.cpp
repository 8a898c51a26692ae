// The name table of the enumeration type: which name is written, which names are accepted.
#include <ZrXmlEnumType.h>
#include <ZrXmlWriter.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace {

ZrXmlEnumType<int> oneTwo(int value) { return ZrXmlEnumType<int>(value, {{1, "one"}, {2, "two"}}); }

std::string written(const ZrXmlEnumType<int>& object) {
  std::ostringstream out;
  ZrXmlWriter writer("e.xml", out);
  writer.writeStartTag(ZrToken("urn:test", "e"));
  EXPECT_TRUE(object.write(writer));
  writer.writeEndTag();
  std::string text = out.str();
  std::string::size_type open = text.find('>'), close = text.find("</");
  return open == std::string::npos || close == std::string::npos ? text : text.substr(open + 1, close - open - 1);
}

TEST(ZrXmlEnumType, WritesTheFirstNameOfTheValueOrTheTablesFirstName) {
  struct Case {
    int value;
    const char* name;
  } cases[] = {{1, "one"}, {2, "two"}, {3, "one"}, {0, "one"}};
  for (const Case& c : cases) EXPECT_EQ(written(oneTwo(c.value)), c.name) << c.value;
}

TEST(ZrXmlEnumType, ANameIsAddedOnceAValueMayHaveSeveral) {
  ZrXmlEnumType<int> e = oneTwo(1);
  e.setEnumString(5, "one");  // known name: nothing changes
  ASSERT_EQ(e.names().size(), 2u);
  EXPECT_EQ(e.names()[0].first, 1);
  e.setEnumString(1, "uno");  // a second name for 1; "one" is still written
  ASSERT_EQ(e.names().size(), 3u);
  EXPECT_EQ(e.enumString(1), "one");
  EXPECT_EQ(written(e), "one");

  int value = 0;
  EXPECT_TRUE(e.findEnumString("uno", value));
  EXPECT_EQ(value, 1);
}

TEST(ZrXmlEnumType, NamesMatchExactlyAndUnknownNamesChangeNothing) {
  struct Case {
    const char* name;
    bool found;
    int value;
  } cases[] = {{"two", true, 2}, {"Two", false, 7}, {"tw", false, 7}, {"two ", false, 7}, {"", false, 7}};
  for (const Case& c : cases) {
    ZrXmlEnumType<int> e = oneTwo(7);
    int value = 7;
    EXPECT_EQ(e.findEnumString(c.name, value), c.found) << c.name;
    EXPECT_EQ(value, c.value) << c.name;
    e.setValueFromString(c.name);
    EXPECT_EQ(e.value(), c.value) << c.name;
  }
}

TEST(ZrXmlEnumType, EmptyTableWritesAnEmptyName) {
  ZrXmlEnumType<short> e(3);
  EXPECT_EQ(e.enumString(), "");
}

TEST(ZrXmlEnumType, CopiesKeepTheTableAndEqualityComparesValuesOfTheSameType) {
  ZrXmlEnumType<int> e = oneTwo(2);
  ZrXmlEnumType<int> copy(e);
  EXPECT_EQ(copy.enumString(), "two");
  EXPECT_TRUE(copy.specified());
  EXPECT_FALSE(copy.xmlInitialized());
  EXPECT_TRUE(e.equality(&copy));
  ZrXmlEnumType<int> other(2);  // same value, no table
  EXPECT_TRUE(e.equality(&other));
  ZrXmlEnumType<unsigned int> otherType(2u);
  EXPECT_FALSE(e.equality(&otherType));
  EXPECT_FALSE(e.equalsDefault());
  EXPECT_TRUE(oneTwo(0).equalsDefault());
  EXPECT_EQ(e.token(), ZrXml::ZrEnumTypeToken);
}

}  // namespace
