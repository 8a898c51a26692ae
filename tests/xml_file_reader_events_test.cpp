// Event sequences, attributes, namespaces, comments, declarations and content words of the tokenizer.
#include "xml_file_reader_trace.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace {

using ZrTest::traceDocument;
using Events = std::vector<std::string>;

struct EventCase {
  const char* name;
  std::string document;
  Events events;
  Events messages;
};

TEST(ZrXmlFileReaderEvents, DocumentsGiveTheirEventSequences) {
  const EventCase cases[] = {
      {"nested", "<a><b/><c x='1'>t</c></a>", {"1 a", "3 b", "1 c x=1", "4 c 't'", "2 a", "0"}, {}},
      {"content is trimmed", "<a> x </a>", {"1 a", "4 a 'x'", "0"}, {}},
      {"content trimmed of every kind of white space", "<a>\r\n x y\t\r\n </a>", {"1 a", "4 a 'x y'", "0"}, {}},
      {"long value and the other quote inside", "<a x='a value longer than sixteen' y=\"it's\"/>",
       {"3 a x=a value longer than sixteen y=it's", "0"}, {}},
      {"declaration and comments skipped", "<?xml version='1.0'?>\n<!-- c --><a><!--x--></a><!-- end -->",
       {"1 a", "2 a", "0"}, {}},
      {"content joins across a comment", "<v>1 2<!-- c --> 3</v>", {"1 v", "4 v '1 2 3'", "0"}, {}},
      {"comment containing --", "<a><!-- a -- b --></a>", {"1 a", "2 a", "0"}, {}},
      {"comment ending in a dash before its first '>'", "<a><!--x->--></a>", {"1 a", "2 a", "0"}, {}},
      {"comment whose -- ends at a later '>'", "<a><!-- a > b -- c > d --></a>", {"1 a", "4 a 'd -->'", "0"},
       {"file not well formed.\n\tComment contains extra -- in it.@1"}},
      {"byte-order mark skipped", "\xEF\xBB\xBF<a/>", {"3 a", "0"}, {}},
      {"UTF-16 reported once", std::string("\xFF\xFE<\0a\0/\0>\0", 10), {"0"},
       {"UTF-16 documents are not supported.@1"}},
      {"UTF-16 without a mark", std::string("\0<\0a\0/\0>", 8), {"0"}, {"UTF-16 documents are not supported.@1"}},
      {"text after an empty element", "<a><b/>text</a>", {"1 a", "3 b", "2 a", "0"},
       {"file not well formed.\n\tContent can only follow start tag.@1"}},
      {"space before the name", "< a></a>", {"1 a", "2 a", "0"},
       {"file not well formed.\n\tWhite space cannot exist before start tag name.@1"}},
      {"prefixes dropped", "<p:a xmlns:p='urn:p'><p:b p:k='v'/></p:a>", {"1 a", "3 b k=v", "2 a", "0"}, {}},
      {"empty document", "", {"0"}, {"file not well formed.\n\tFile must begin with start tag.@1"}},
      {"two roots", "<a/><b/>", {"3 a", "3 b", "0"}, {}},
      {"content then child", "<a>t<b/></a>", {"1 a", "3 b", "2 a", "0"},
       {"file not well formed.\n\tContent did not conclude with proper end tag.@1"}},
  };
  for (const auto& c : cases) {
    auto trace = traceDocument(c.document);
    EXPECT_EQ(trace.events, c.events) << c.name;
    EXPECT_EQ(trace.messages, c.messages) << c.name;
  }
}

TEST(ZrXmlFileReaderEvents, AttributesAreReadOnceInNameOrderWithTheFirstValueKept) {
  ZrTest::PrintCapture capture;
  std::istringstream in("<e b='2' a=\"1\" c=3 a='again' p:b='x' xsi:type='t' xmlns:p='urn:p'/>");
  ZrXmlFileReader reader("doc.xml", in);
  ASSERT_EQ(reader.readXml(), 3);
  EXPECT_EQ(reader.numOfAttributes(), 3u);
  EXPECT_EQ(reader.attributeName(ZrToken("b")).token(), "b");
  EXPECT_EQ(reader.attributeName(ZrToken("type")), ZrXmlFileReader::m_theNullToken);  // xsi: is dropped
  EXPECT_EQ(reader.attributeValue(ZrToken("c")), "3");
  EXPECT_EQ(reader.attributeValue(ZrToken("c")), "");  // each attribute is read once
  EXPECT_EQ(reader.attributeName().token(), "a");
  EXPECT_EQ(reader.attributeValue(), "1");
  EXPECT_EQ(reader.attributeValue(), "2");
  EXPECT_EQ(reader.remainingNumOfAttributes(), 0u);
  EXPECT_EQ(reader.attributeValue(), "");
  EXPECT_EQ(capture.texts(), std::vector<std::string>{
                                 "ZrXmlFileReader Error: file not well formed.\n\tMissing quotes around attribute "
                                 "value.\n\tFile: doc.xml\n\tLine: 1\n"});
}

// The order is that of the names' bytes taken as unsigned, as std::string orders them, whichever byte
// first differs.
TEST(ZrXmlFileReaderEvents, AttributesComeInTheOrderOfTheirNamesBytes) {
  const std::vector<std::string> rows = {
      "<e \xC3\xA9='1' z='2' ab='3' a='4' B='5' aa='6' \xC3\xA0='7'/>",
      "<e zz='1' z='2' y='3'/>",
      "<e b='1' a='2'/>",
  };
  for (const std::string& tag : rows) {
    std::istringstream in(tag);
    ZrXmlFileReader reader("doc.xml", in);
    ASSERT_EQ(reader.readXml(), 3) << tag;
    std::vector<std::string> names;
    while (reader.remainingNumOfAttributes() > 0) {
      names.push_back(reader.attributeName().token());
      reader.attributeValue();
    }
    std::vector<std::string> sorted = names;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(names, sorted) << tag;
    EXPECT_EQ(names.size(), static_cast<std::size_t>(std::count(tag.begin(), tag.end(), '='))) << tag;
  }
}

// Attribute tokens are reused from tag to tag. Tags with many names, names coming back with another prefix
// or namespace part, and copies of the reader must still name each attribute right, and a name handed out
// stays valid while the rest of its tag is read.
TEST(ZrXmlFileReaderEvents, AttributeNamesStayRightAcrossManyTagsAndNames) {
  std::string document = "<r>";
  const char* const tags[] = {"<e a='1' b='2'/>", "<e a='1' p:b='2' xmlns:p='urn:p'/>", "<e u#a='1' b='2'/>",
                              "<f k0='0' k1='1' k2='2' k3='3' k4='4' k5='5' k6='6' k7='7' k8='8' k9='9' k10='10'/>",
                              "<e a='1' b='2'/>"};
  for (int round = 0; round < 3; ++round)
    for (const char* tag : tags) document += tag;
  document += "</r>";
  std::istringstream in(document);
  ZrXmlFileReader reader("doc.xml", in);
  ASSERT_EQ(reader.readXml(), 1);
  for (int round = 0; round < 3; ++round) {
    for (const char* tag : tags) {
      ASSERT_EQ(reader.readXml(), 3) << tag;
      std::istringstream expectedIn(std::string("<x>") + tag + "</x>");
      ZrXmlFileReader expected("doc.xml", expectedIn);  // a fresh reader has kept nothing yet
      expected.readXml();
      expected.readXml();
      const ZrToken& first = reader.attributeName();
      const std::string firstText = first.namespaceAndToken();
      ZrXmlFileReader copy(reader);
      while (reader.remainingNumOfAttributes() > 0) {
        ASSERT_EQ(copy.attributeName(), expected.attributeName()) << tag;
        ASSERT_EQ(reader.attributeName(), expected.attributeName()) << tag;
        EXPECT_EQ(reader.attributeValue(), expected.attributeValue()) << tag;
        copy.attributeValue();
        EXPECT_EQ(first.namespaceAndToken(), firstText) << tag;
      }
    }
  }
}

TEST(ZrXmlFileReaderEvents, NamespaceDeclarationsAreInheritedAndKept) {
  ZrTest::PrintCapture capture;
  std::istringstream in(
      "<r xmlns='urn:d' xmlns:p='urn:p' xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'>"
      "<c xmlns:p='urn:other' xmlns:q='urn:q'><d xmlns:q='urn:q'/></c></r>");
  ZrXmlFileReader reader("doc.xml", in);
  ASSERT_EQ(reader.readXml(), 1);
  EXPECT_EQ(reader.remainingNumOfAttributes(), 0u);  // declarations are not attributes
  std::map<std::string, std::string> root{{"", "urn:d"}, {"p", "urn:p"}};
  EXPECT_EQ(reader.namespacesInForce(0), root);
  EXPECT_EQ(reader.openElements().back().namespaces, root);
  ASSERT_EQ(reader.readXml(), 1);
  std::map<std::string, std::string> child{{"", "urn:d"}, {"p", "urn:p"}, {"q", "urn:q"}};
  EXPECT_EQ(reader.namespacesInForce(1), child);  // an inherited prefix keeps its URI
  EXPECT_EQ(reader.namespacesInForce(0), root);
  EXPECT_EQ(reader.openElements().back().namespaces, (std::map<std::string, std::string>{{"q", "urn:q"}}));
  EXPECT_EQ(capture.count(), 0u);
  ASSERT_EQ(reader.readXml(), 3);
  EXPECT_EQ(capture.texts(), std::vector<std::string>{"ZrXmlReader Error: Namespace already declared: urn:q\n"});
  EXPECT_EQ(reader.readXml(), 2);
  EXPECT_EQ(reader.openElements().size(), 1u);
}

// The same with few prefixes in force and with more than the reader looks along one by one.
TEST(ZrXmlFileReaderEvents, ManyNamespaceDeclarationsComeAndGoWithTheirElements) {
  for (const int prefixes : {3, 20}) {
    std::string document = "<r";
    std::map<std::string, std::string> root;
    for (int i = 0; i < prefixes; ++i) {
      const std::string prefix = "p" + std::to_string(i), uri = "urn:" + std::to_string(i);
      document += " xmlns:" + prefix + "='" + uri + "'";
      root[prefix] = uri;
    }
    document += "><c xmlns:p1='urn:other' xmlns:p2='urn:2' xmlns:q='urn:q'/><e><d xmlns:q='urn:q2'/></e></r>";
    std::istringstream in(document);
    ZrXmlFileReader reader("doc.xml", in);
    ZrTest::PrintCapture capture;
    ASSERT_EQ(reader.readXml(), 1) << prefixes;
    EXPECT_EQ(reader.namespacesInForce(0), root) << prefixes;
    ASSERT_EQ(reader.readXml(), 3) << prefixes;
    std::map<std::string, std::string> child = root;
    child["q"] = "urn:q";  // p1 keeps its first URI
    EXPECT_EQ(reader.namespacesInForce(1), child) << prefixes;
    EXPECT_EQ(capture.texts(), std::vector<std::string>{"ZrXmlReader Error: Namespace already declared: urn:2\n"})
        << prefixes;
    ASSERT_EQ(reader.readXml(), 1) << prefixes;  // <e>: q went with <c>
    EXPECT_EQ(reader.namespacesInForce(1), root) << prefixes;
    ASSERT_EQ(reader.readXml(), 3) << prefixes;
    child["q"] = "urn:q2";
    EXPECT_EQ(reader.namespacesInForce(2), child) << prefixes;
    EXPECT_EQ(capture.count(), 1u) << capture.all();
  }
}

// Closed elements' entries are reused by the next elements opened at their depth: a reused entry must not
// keep the name or the declarations of the element it held before.
TEST(ZrXmlFileReaderEvents, ElementsOpenedAfterOthersClosedHoldOnlyTheirOwn) {
  std::istringstream in("<r><a xmlns:p='urn:p'><b/></a><c><p:d/></c><a/></r>");
  ZrXmlFileReader reader("doc.xml", in);
  ZrTest::PrintCapture capture;
  const std::vector<std::pair<int, std::string>> expected = {{1, "r"}, {1, "a"}, {3, "b"}, {2, "a"}, {1, "c"},
                                                             {3, "d"}, {2, "c"}, {3, "a"}, {2, "r"}};
  for (const auto& event : expected) {
    ASSERT_EQ(reader.readXml(), event.first) << event.second;
    const std::string name = event.first == 2 ? reader.endTag().tokenText() : reader.element().tokenText();
    EXPECT_EQ(name, event.second);
    if (event.first == 1 && event.second == "c") {
      EXPECT_TRUE(reader.openElements().back().namespaces.empty());
      EXPECT_TRUE(reader.namespacesInForce(1).empty());
    }
  }
  EXPECT_TRUE(reader.openElements().empty());
  EXPECT_EQ(capture.count(), 0u) << capture.all();
}

// endTag() is the last end tag read, whatever start tags and depths follow it, a mismatched one too, and a
// copy of the reader holds it as well. Each row: the event, then the end tag the reader holds after it.
TEST(ZrXmlFileReaderEvents, TheLastEndTagStaysUntilTheNextOne) {
  std::istringstream in("<r><a><b/></a><c><x:a/></c><d>t</d><q></w><a></a></r>");
  ZrXmlFileReader reader("doc.xml", in);
  ZrTest::PrintCapture capture;
  const std::vector<std::pair<int, std::string>> expected = {
      {1, ""},  {1, ""},  {3, ""},  {2, "a"}, {1, "a"}, {3, "a"}, {2, "c"}, {1, "c"},
      {4, "d"}, {1, "d"}, {2, "w"}, {1, "w"}, {2, "a"}, {2, "r"}, {0, "r"}};
  for (std::size_t i = 0; i < expected.size(); ++i) {
    ASSERT_EQ(reader.readXml(), expected[i].first) << "event " << i;
    EXPECT_EQ(reader.endTag().tokenText(), expected[i].second) << "event " << i;
    const ZrXmlFileReader copy(reader);
    EXPECT_EQ(copy.endTag(), reader.endTag()) << "event " << i;
  }
  EXPECT_TRUE(capture.contains("End tag closed incorrect start tag")) << capture.all();
}

// Shapes that once cost a copy of every declaration in scope per element: each of 10,000 nested elements
// declaring a prefix, and 100,000 siblings under an element with 10,000 declarations.
TEST(ZrXmlFileReaderEvents, DeclarationsInScopeCostNothingPerElement) {
  const int count = 10000;
  std::string nested, wide = "<r";
  for (int i = 0; i < count; ++i) nested += "<e xmlns:p" + std::to_string(i) + "='urn:" + std::to_string(i) + "'>";
  for (int i = 0; i < count; ++i) nested += "</e>";
  for (int i = 0; i < count; ++i) wide += " xmlns:p" + std::to_string(i) + "='urn:" + std::to_string(i) + "'";
  wide += ">";
  for (int i = 0; i < 10 * count; ++i) wide += "<s/>";
  wide += "</r>";

  std::istringstream nestedIn(nested);
  ZrXmlFileReader deep("nested.xml", nestedIn);
  for (int i = 0; i < count; ++i) ASSERT_EQ(deep.readXml(), 1);
  EXPECT_EQ(deep.namespacesInForce(count - 1).size(), size_t(count));
  EXPECT_EQ(deep.namespacesInForce(0).size(), 1u);
  for (int i = 0; i < count; ++i) ASSERT_EQ(deep.readXml(), 2);

  std::istringstream wideIn(wide);
  ZrXmlFileReader siblings("wide.xml", wideIn);
  ASSERT_EQ(siblings.readXml(), 1);
  for (int i = 0; i < 10 * count; ++i) ASSERT_EQ(siblings.readXml(), 3);
  EXPECT_EQ(siblings.namespacesInForce(0).size(), size_t(count));
  EXPECT_EQ(siblings.readXml(), 2);
}

TEST(ZrXmlFileReaderEvents, ContentIsTakenWordByWordInVectorMode) {
  std::istringstream in("<v>\n  1.5 -2\t3e4\n</v>");
  ZrXmlFileReader reader("doc.xml", in);
  ASSERT_EQ(reader.readXml(), 1);
  ASSERT_EQ(reader.readXml(), 4);
  EXPECT_EQ(reader.contentCount(), 3u);
  EXPECT_EQ(reader.content(), "1.5 -2\t3e4");
  reader.setContentVectorFlag(true);
  std::vector<std::string> words;
  while (reader.isContentAvailable()) words.push_back(reader.content());
  EXPECT_EQ(words, (std::vector<std::string>{"1.5", "-2", "3e4"}));
  EXPECT_EQ(reader.contentCount(), 0u);
}

TEST(ZrXmlFileReaderEvents, NextMatchingEndTagSkipsTheWholeElement) {
  ZrTest::PrintCapture capture;
  std::istringstream in("<r><skip a='1'><skip><x/></skip>text<y/></skip><next/></r>");
  ZrXmlFileReader reader("doc.xml", in);
  ASSERT_EQ(reader.readXml(), 1);
  ASSERT_EQ(reader.readXml(), 1);
  EXPECT_TRUE(reader.nextMatchingEndTag());
  EXPECT_EQ(reader.openElements().size(), 1u);
  EXPECT_EQ(reader.readXml(), 3);
  EXPECT_EQ(reader.element().token(), "next");
  EXPECT_EQ(capture.count(), 1u);  // the stray text inside, nothing else
}

TEST(ZrXmlFileReaderEvents, ChildrenAreRebuiltAsTextUpToTheEndOfInput) {
  ZrTest::PrintCapture capture;
  std::istringstream in("<r><doc><p k='v' a=\"1\">some text</p><br/><q><!-- c --></q></doc><after/></r>");
  ZrXmlFileReader reader("doc.xml", in);
  ASSERT_EQ(reader.readXml(), 1);
  ASSERT_EQ(reader.readXml(), 1);
  EXPECT_EQ(reader.getChildrenAsString(), "<p a=\"1\" k=\"v\">some text</p><br/><q></q>");
  EXPECT_EQ(reader.mode(), 2);
  EXPECT_EQ(reader.readXml(), 3);
  EXPECT_EQ(reader.element().token(), "after");
  EXPECT_EQ(capture.count(), 0u) << capture.all();

  std::istringstream cut("<r><doc><p/>");
  ZrXmlFileReader early("doc.xml", cut);
  early.readXml();
  early.readXml();
  EXPECT_EQ(early.getChildrenAsString(), "<p/>");
  EXPECT_TRUE(capture.contains("getChildrenAsString Error: end of file too early -- expecting start tag."));
}

TEST(ZrXmlFileReaderEvents, LineCountFollowsTheDocument) {
  std::istringstream in("<?xml version='1.0'?>\n<a\n x='1'>\n<!--\n\n-->\n<b>\n</b>\n</a>\n");
  ZrXmlFileReader reader("doc.xml", in);
  std::vector<int> lines;
  while (reader.readXml() != 0) {
    lines.push_back(reader.lineCountOfFile());
    while (reader.remainingNumOfAttributes() > 0) reader.attributeValue();
  }
  EXPECT_EQ(lines, (std::vector<int>{3, 7, 8, 9}));
  EXPECT_EQ(reader.lineCountOfFile(), 10);
}

TEST(ZrXmlFileReaderEvents, TextHelpersFollowTheirWhiteSpaceRules) {
  ZrXmlFileReader reader;
  std::string text = "  one\ttwo \n";
  EXPECT_EQ(reader.wordCount(text), 2u);
  EXPECT_EQ(reader.nextWord(text), "one");
  EXPECT_EQ(text, "two \n");
  std::string white = " \t ";
  reader.stripWhiteSpaceFromBounds(white);
  EXPECT_EQ(white, " \t ");  // an all-white text is left alone
  std::string quoted = "'a b' rest";
  EXPECT_EQ(reader.nextQuotedToken(quoted), "a b");
  EXPECT_EQ(quoted, "rest");
  EXPECT_EQ(reader.readXml(), 0);  // a reader without a stream meets the end at once
}

}  // namespace
