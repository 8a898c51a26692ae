#include <ZrToken.h>
#include <gtest/gtest.h>

#include <map>

namespace {

struct HashRuleCase {
  const char* text;
  const char* ns;
  const char* token;
};

TEST(ZrToken, HashRuleSplitsAtTheFirstHash) {
  const HashRuleCase cases[] = {
      {"abc", "", "abc"}, {"u#v", "u", "v"}, {"a#b#c", "a", "b#c"}, {"#x", "", "x"}, {"ns#", "ns", ""}, {"", "", ""},
  };
  for (const auto& c : cases) {
    ZrToken fromChars(c.text);
    ZrToken fromString{std::string(c.text)};
    ZrToken assigned;
    assigned = std::string(c.text);
    for (const ZrToken* t : {&fromChars, &fromString, &assigned}) {
      EXPECT_EQ(t->xmlNamespace(), c.ns) << c.text;
      EXPECT_EQ(t->token(), c.token) << c.text;
      // The text form parses back to the same token.
      EXPECT_EQ(ZrToken(t->namespaceAndToken()), *t) << c.text;
    }
  }
}

TEST(ZrToken, EqualityUsesBothTextsOrderingOnlyTheLocalName) {
  ZrToken qualified("u#v"), plain("v");
  EXPECT_EQ(qualified, ZrToken("u", "v"));
  EXPECT_NE(qualified, plain);
  EXPECT_FALSE(qualified < plain);
  EXPECT_FALSE(plain < qualified);
  EXPECT_TRUE(qualified == std::string("v"));
  EXPECT_TRUE(plain == std::string("v"));
  EXPECT_EQ(plain.namespaceAndToken(), "#v");

  // A map keyed by tokens keeps one entry for names that differ only in namespace.
  std::map<ZrToken, int> byName;
  byName[qualified] = 1;
  byName[plain] = 2;
  ASSERT_EQ(byName.size(), 1u);
  EXPECT_EQ(byName.begin()->first.xmlNamespace(), "u");
  EXPECT_EQ(byName.begin()->second, 2);
}

// Names are compared in words, namespaces of up to 48 bytes in blocks: a difference at any byte of any
// length must still be seen, and bytes beyond either text must never decide.
TEST(ZrToken, EqualitySeesADifferenceAtEveryPositionOfEveryLength) {
  for (std::size_t length = 0; length <= 64; ++length) {
    const std::string text(length, 'a');
    EXPECT_EQ(ZrToken("n", text), ZrToken("n", std::string(text))) << length;
    EXPECT_NE(ZrToken("n", text), ZrToken("n", text + "a")) << length;
    EXPECT_NE(ZrToken(text, "v"), ZrToken(text + "a", "v")) << length;
    for (std::size_t at = 0; at < length; ++at) {
      std::string other = text;
      other[at] = 'b';
      EXPECT_NE(ZrToken("n", text), ZrToken("n", other)) << length << " at " << at;
      EXPECT_NE(ZrToken(text, "v"), ZrToken(other, "v")) << length << " at " << at;
      EXPECT_EQ(ZrToken("n", other), ZrToken("n", std::string(other)));
    }
  }
  // Equal texts held in buffers with different bytes after them.
  const std::string same(48, 'n');
  const std::string one = same + "XYZXYZXYZXYZXYZXYZ";
  const std::string other = same + "QRSQRSQRSQRSQRSQRS";
  for (std::size_t length = 0; length <= same.size(); ++length)
    EXPECT_TRUE(Zr::textEqual(std::string_view(one.data(), length), std::string_view(other.data(), length))) << length;
}

TEST(ZrToken, AssignKeepsTheNamespaceAndDoesNotParse) {
  ZrToken t("old", "x");
  t.assign("a#b");
  EXPECT_EQ(t.token(), "a#b");
  EXPECT_EQ(t.xmlNamespace(), "old");
  t = std::string("a#b");
  EXPECT_EQ(t.xmlNamespace(), "a");
  EXPECT_EQ(t.token(), "b");
  t += "c";  // string operations act on the token text alone
  EXPECT_EQ(t.namespaceAndToken(), "a#bc");
}

TEST(ZrToken, StripTrimsBothEndsButLeavesWhiteOnlyText) {
  const std::pair<const char*, const char*> cases[] = {
      {"  a b\n", "a b"}, {" \t ", " \t "}, {"", ""}, {"\r\nx", "x"}, {"x \t", "x"}, {"x", "x"},
  };
  for (const auto& c : cases) {
    ZrToken t("ns", c.first);
    t.strip();
    EXPECT_EQ(t.token(), c.second);
    EXPECT_EQ(t.xmlNamespace(), "ns");
  }
}

}  // namespace
