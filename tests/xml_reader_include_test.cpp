#include <ZrIfHttpStream.h>
#include <ZrTestHttpServer.h>
#include <ZrTestSupport.h>
#include <ZrXmlReader.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <functional>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

const std::string theDataDir = std::string(ZR_TEST_DATA_DIR) + "/include";

// The items of a document as short texts: "name" a start tag, "name/" an empty element, "/" an end
// tag, "'text'" content; each item is shown to look first. Stops at the end of input, at an error, or
// after a bound.
std::vector<std::string> items(ZrXmlReader& reader, const std::function<void(ZrXmlReader&)>& look = {}) {
  std::vector<std::string> result;
  for (int mode = reader.readXml(), bound = 500; mode != 0 && mode != 5 && bound-- > 0; mode = reader.readXml()) {
    if (look) look(reader);
    if (mode == 1) result.push_back(reader.element().tokenText());
    if (mode == 3) result.push_back(reader.element().tokenText() + "/");
    if (mode == 2) result.push_back("/");
    if (mode == 4) result.push_back("'" + reader.content() + "'");
  }
  return result;
}

typedef std::vector<std::string> Items;

std::string include(const std::string& href) { return "<ZrInclude type=\"simple\" href=\"" + href + "\"/>"; }

TEST(ZrXmlReaderInclude, FollowsNestedIncludesAndContinuesAfterThem) {
  std::ifstream main(theDataDir + "/main.xml");
  ZrTest::PrintCapture capture;
  ZrXmlReader reader(theDataDir + "/main.xml", main);
  std::string nameAtInner;
  int lineAtInner = 0;
  const Items seen = items(reader, [&](ZrXmlReader& at) {
    if (at.mode() != 3 || at.element().tokenText() != "inner") return;
    nameAtInner = at.filename();
    lineAtInner = at.lineCountOfFile();
    EXPECT_EQ(at.depth(), 3u);
  });
  EXPECT_EQ(seen, (Items{"root", "before/", "part", "leaf", "inner/", "/", "partEnd/", "/", "after", "'text'", "/"}));
  EXPECT_EQ(nameAtInner, theDataDir + "/leaf.xml");  // resolved against part.xml, not main.xml
  EXPECT_EQ(lineAtInner, 2);
  EXPECT_EQ(reader.depth(), 1u);
  EXPECT_TRUE(reader.versionFlag());
  EXPECT_EQ(capture.count(), 0u) << capture.all();
}

// Every row is one include element inside "<doc><first/> ... <last/></doc>". No row may stop the reading.
TEST(ZrXmlReaderInclude, FaultyIncludesAreReportedAndReadingGoesOn) {
  ZrTest::TempDir dir;
  dir.write("part.xml", "<part/>");
  dir.write("empty.xml", "");
  std::filesystem::create_directory(dir.file("aDirectory"));
  ASSERT_EQ(::mkfifo(dir.file("aFifo").c_str(), 0600), 0);  // opening it for reading would block
  const std::string at = "\n\tFile: " + dir.file("doc.xml") + "\n\tLine: 2\n";
  const std::string includedBy = "\n\tIncluded by: " + dir.file("doc.xml") + "\n\tLine: 2\n";
  const struct {
    std::string element;
    std::vector<std::string> messages;
    bool opened;
  } rows[] = {
      {"<ZrInclude href=\"part.xml\"/>", {"ZrXmlReader Error: XLink syntax not correct." + at}, false},
      {"<ZrInclude type=\"simple\"/>", {"ZrXmlReader Error: XLink syntax not correct." + at}, false},
      {"<ZrInclude type=\"extended\" href=\"part.xml\"/>", {"ZrXmlReader Error: XLink 'type' needs to be simple." + at}, true},
      {"<ZrInclude role=\"x\" type=\"simple\" href=\"part.xml\"/>",
       {"ZrXmlReader Error: attribute name can only be simple and href, not role." + at}, true},
      {"<ZrInclude type=\"simple\" href=\"part.xml\"><stray>text</stray></ZrInclude>", {}, true},
      {"<ZrInclude href=\"part.xml\"><stray/></ZrInclude>", {"ZrXmlReader Error: XLink syntax not correct." + at}, false},
      {include("missing.xml"), {"ZrXmlReader Error: not able to open file: " + dir.file("missing.xml") + includedBy}, false},
      {include("aDirectory"), {"ZrXmlReader Error: not able to open file: " + dir.file("aDirectory") + includedBy}, false},
      {include("aFifo"), {"ZrXmlReader Error: not a regular file; include skipped: " + dir.file("aFifo") + at}, false},
      {include("/dev/zero"), {"ZrXmlReader Error: not a regular file; include skipped: /dev/zero" + at}, false},
  };
  for (const auto& row : rows) {
    std::istringstream document("<doc><first/>\n" + row.element + "<last/></doc>");
    ZrTest::PrintCapture capture;
    ZrXmlReader reader(dir.file("doc.xml"), document);
    const Items expected = row.opened ? Items{"doc", "first/", "part/", "last/", "/"} : Items{"doc", "first/", "last/", "/"};
    EXPECT_EQ(items(reader), expected) << row.element;
    EXPECT_EQ(capture.texts(), row.messages) << row.element;
  }

  std::istringstream withEmpty("<doc>" + include("empty.xml") + "<last/></doc>");
  ZrTest::PrintCapture quiet;
  ZrXmlReader reader(dir.file("doc.xml"), withEmpty);
  EXPECT_EQ(items(reader), (Items{"doc", "last/", "/"}));
}

// Documents that include the next one twice: without a budget, 25 of them make 2^24 opens.
TEST(ZrXmlReaderInclude, TheIncludeBudgetEndsAnExplosionOfIncludes) {
  ZrTest::TempDir dir;
  for (int i = 0; i < 25; ++i)
    dir.write("d" + std::to_string(i) + ".xml",
              "<d>" + include("d" + std::to_string(i + 1) + ".xml") + include("d" + std::to_string(i + 1) + ".xml") + "</d>");
  dir.write("d25.xml", "<d/>");
  std::istringstream document("<top>" + include("d0.xml") + "</top>");
  ZrTest::PrintCapture capture;
  ZrXmlReader reader(dir.file("top.xml"), document);
  reader.setMaxIncludedDocuments(100);
  const Items seen = items(reader);
  EXPECT_EQ(reader.includedDocuments(), 100u);
  EXPECT_LT(capture.count(), 100u) << "each skipped include is reported once";
  EXPECT_TRUE(capture.contains("more than 100 documents included; include skipped")) << capture.all();
  EXPECT_EQ(seen.back(), "/");  // the including document is read to its end
}

TEST(ZrXmlReaderInclude, IncludedBytesPastTheBudgetAreCutWithAReport) {
  ZrTest::TempDir dir;
  dir.write("big.xml", "<big>" + std::string(100000, ' ') + "</big>");
  dir.write("small.xml", "<small/>");
  std::istringstream document("<top>" + include("big.xml") + include("small.xml") + "<last/></top>");
  ZrTest::PrintCapture capture;
  ZrXmlReader reader(dir.file("top.xml"), document);
  reader.setMaxIncludedBytes(50000);
  EXPECT_EQ(items(reader), (Items{"top", "big", "last/", "/"}));
  EXPECT_TRUE(capture.contains("Input longer than 50000 bytes; reading stops.")) << capture.all();
  EXPECT_TRUE(capture.contains("included documents reached 50000 bytes; include skipped: " + dir.file("small.xml")))
      << capture.all();
}

// The full name is checked through the "not able to open" message, so no row needs its file to exist.
TEST(ZrXmlReaderInclude, ResolvesReferencesAgainstTheIncludingDocument) {
  const struct {
    const char* documentName;
    const char* href;
    const char* fullName;
  } rows[] = {
      {"/a/b/main.xml", "part.xml", "/a/b/part.xml"},
      {"/a/b/main.xml", "sub/part.xml", "/a/b\\sub/part.xml"},  // the backslash joint
      {"/a/b/main.xml", "sub\\deeper/part.xml", "/a/b\\sub\\deeper/part.xml"},
      {"/a/b/main.xml", "/x/part.xml", "/x/part.xml"},
      {"/a/b/main.xml", "c:/x/part.xml", "c:/x/part.xml"},
      {"/a/b/main.xml", "C:\\x\\part.xml", "C:\\x/part.xml"},
      {"main.xml", "sub/part.xml", "sub/part.xml"},
      {"/a/b/main.xml", "http://h:1/d/f.xml", "http://h:1/d/f.xml"},
      {"/a/b/main.xml", "http://h:1", "http://h:1/"},
      {"http://h:1/d/main.xml", "f.xml", "http://h:1/d/f.xml"},
      {"http://h:1/d/main.xml", "sub/f.xml", "http://h:1/d\\sub/f.xml"},
      {"http://h:1/d/main.xml", "/abs/f.xml", "http://h:1//abs/f.xml"},
  };
  for (const auto& row : rows) {
    std::istringstream document("<doc>" + include(row.href) + "</doc>");
    ZrTest::PrintCapture capture;
    ZrXmlReader reader(row.documentName, document);
    reader.setHttpIncludesAllowed(false);  // no row may reach the network
    items(reader);
    ASSERT_EQ(capture.count(), 1u) << row.href << capture.all();
    const std::string message = capture.texts()[0];
    const bool http = std::string(row.fullName).rfind("http://", 0) == 0;
    const std::string expected = http ? std::string("switched off; include skipped: ") + row.fullName + "\n"
                                      : std::string("not able to open file: ") + row.fullName + "\n";
    EXPECT_NE(message.find(expected), std::string::npos) << message;
  }
}

// With portable references the joint is "/" and "." and ".." are resolved; the failure names the
// including document and the line of the include element.
TEST(ZrXmlReaderInclude, PortableReferencesJoinWithASlashAndResolveDots) {
  const struct {
    const char* documentName;
    const char* href;
    const char* fullName;
  } rows[] = {
      {"/a/b/main.xml", "sub/part.xml", "/a/b/sub/part.xml"},
      {"/a/b/main.xml", "../part.xml", "/a/part.xml"},
      {"/a/b/main.xml", "./x/../../y/part.xml", "/a/y/part.xml"},
      {"/a/main.xml", "../../../part.xml", "/part.xml"},
      {"main.xml", "../part.xml", "../part.xml"},
      {"d/main.xml", "sub\\part.xml", "d/sub/part.xml"},
      {"/a/b/main.xml", "/x/./part.xml", "/x/part.xml"},
  };
  for (const auto& row : rows) {
    std::istringstream document("<doc>\n" + include(row.href) + "</doc>");
    ZrTest::PrintCapture capture;
    ZrXmlReader reader(row.documentName, document);
    reader.setPortableIncludeReferences(true);
    items(reader);
    ASSERT_EQ(reader.faultCount(), 1u) << row.href << capture.all();
    const std::string expected = std::string("not able to open file: ") + row.fullName + "\n\tIncluded by: " +
                                 row.documentName + "\n\tLine: 2\n";
    EXPECT_NE(capture.all().find(expected), std::string::npos) << capture.all();
  }
}

// A reference into a subdirectory and one out of it open whatever path the parent was opened by.
TEST(ZrXmlReaderInclude, PortableReferencesOpenFromAParentOpenedByAPath) {
  ZrTest::TempDir dir;
  std::filesystem::create_directories(dir.file("cell/sub"));
  dir.write("cell/sub/drive.xml", "<drive/>");
  dir.write("shared.xml", "<shared/>");
  const std::string main = dir.write("cell/main.xml", "<doc>" + include("sub/drive.xml") + include("../shared.xml") + "</doc>");
  std::ifstream in(main);
  ZrTest::PrintCapture capture;
  ZrXmlReader reader(main, in);
  reader.setPortableIncludeReferences(true);
  EXPECT_EQ(items(reader), (Items{"doc", "drive/", "shared/", "/"})) << capture.all();
  EXPECT_EQ(reader.faultCount(), 0u);
}

TEST(ZrXmlReaderInclude, DocumentsThatIncludeThemselvesAreSkipped) {
  ZrTest::TempDir dir;
  dir.write("a.xml", "<a>" + include("b.xml") + "<afterB/></a>");
  dir.write("b.xml", "<b>" + include(dir.file("a.xml")) + "<afterA/></b>");
  std::filesystem::create_symlink(dir.file("a.xml"), dir.file("alias.xml"));
  dir.write("c.xml", "<c>" + include("alias.xml") + "</c>");
  {
    std::ifstream a(dir.file("a.xml"));
    ZrTest::PrintCapture capture;
    ZrXmlReader reader(dir.file("a.xml"), a);
    EXPECT_EQ(items(reader), (Items{"a", "b", "afterA/", "/", "afterB/", "/"}));
    ASSERT_EQ(capture.count(), 1u);
    EXPECT_EQ(capture.texts()[0], "ZrXmlReader Error: document includes itself; include skipped: " + dir.file("a.xml") +
                                      "\n\tFile: " + dir.file("b.xml") + "\n\tLine: 1\n");
  }
  std::ifstream loop(theDataDir + "/loop.xml");  // a document that names itself, met through a relative name
  ZrTest::PrintCapture capture;
  ZrXmlReader reader(theDataDir + "/./loop.xml", loop);
  EXPECT_EQ(items(reader), (Items{"loop", "afterLoop/", "/"}));
  EXPECT_TRUE(capture.contains("document includes itself")) << capture.all();

  std::ifstream c(dir.file("c.xml"));  // a.xml first met under another name, through a symbolic link
  ZrXmlReader linked(dir.file("c.xml"), c);
  EXPECT_EQ(items(linked), (Items{"c", "a", "b", "afterA/", "/", "afterB/", "/", "/"}));
}

TEST(ZrXmlReaderInclude, NestingDeeperThanTheLimitIsSkipped) {
  ZrTest::TempDir dir;
  const int chain = ZrXmlReader::m_theDefaultMaxIncludeDepth + 3;
  for (int i = 0; i < chain; ++i)
    dir.write("d" + std::to_string(i) + ".xml", "<d" + std::to_string(i) + ">" + include("d" + std::to_string(i + 1) + ".xml") + "</d" + std::to_string(i) + ">");
  for (ZrU32 limit : {3u, static_cast<ZrU32>(ZrXmlReader::m_theDefaultMaxIncludeDepth)}) {
    std::ifstream first(dir.file("d0.xml"));
    ZrTest::PrintCapture capture;
    ZrXmlReader reader(dir.file("d0.xml"), first);
    if (limit == 3u) reader.setMaxIncludeDepth(limit);
    EXPECT_EQ(reader.maxIncludeDepth(), limit);
    const Items seen = items(reader);
    ASSERT_EQ(seen.size(), 2u * (limit + 1));  // d0 .. d<limit>, each opened and closed
    EXPECT_EQ(seen[limit], "d" + std::to_string(limit));
    ASSERT_EQ(capture.count(), 1u) << capture.all();
    EXPECT_TRUE(capture.contains("include nested deeper than " + std::to_string(limit) + " documents; skipped: " +
                                 dir.file("d" + std::to_string(limit + 1) + ".xml")));
  }
}

TEST(ZrXmlReaderInclude, CopiesShareOpenIncludesSafely) {
  ZrTest::TempDir dir;
  dir.write("part.xml", "<part><one/><two/></part>");
  std::istringstream document("<doc>" + include("part.xml") + "<last/></doc>");
  ZrXmlReader reader(dir.file("doc.xml"), document);
  reader.readXml();
  reader.readXml();
  EXPECT_EQ(reader.readXml(), 3);  // <one/>, inside the included document
  {
    ZrXmlReader copy(reader);
    EXPECT_EQ(copy.depth(), 2u);
    EXPECT_EQ(items(copy), (Items{"two/", "/", "last/", "/"}));
  }
  ZrXmlReader assigned;
  assigned = reader;
  EXPECT_EQ(items(reader), (Items{"two/", "/", "last/", "/"}));  // the copy's end released nothing in use
  EXPECT_EQ(assigned.depth(), 2u);
}

// A reader of its own that treats every "secret" start tag as read elsewhere: its include test skips the
// element and asks for the next item, as following an include does.
class SecretSkippingReader : public ZrXmlReader {
 public:
  using ZrXmlReader::ZrXmlReader;
  explicit SecretSkippingReader(const ZrXmlReader& plain) : ZrXmlReader(plain) {}
  ZrBoolean openFileTest() override {
    ++tests;
    if (mode() != 1 || element().tokenText() != "secret") return ZrXmlReader::openFileTest();
    nextMatchingEndTag();
    return true;
  }
  int tests = 0;
};

// A reader's own include tests are skipped for ordinary items; a derived reader's are called for every
// item, also when it starts as a copy of a plain reader that has read already.
TEST(ZrXmlReaderInclude, ADerivedReadersIncludeTestSeesEveryItem) {
  const std::string text = "<doc><a/><secret><b/></secret><c>x</c></doc>";
  std::istringstream document(text);
  SecretSkippingReader reader("doc.xml", document);
  EXPECT_EQ(items(reader), (Items{"doc", "a/", "c", "'x'", "/"}));  // "'x'" ends c
  EXPECT_EQ(reader.tests, 7);  // the six items read (the secret one too), and the end of input

  std::istringstream again(text);
  ZrXmlReader plain("doc.xml", again);
  EXPECT_EQ(plain.readXml(), 1);
  SecretSkippingReader copy(plain);
  EXPECT_EQ(items(copy), (Items{"a/", "c", "'x'", "/"}));
  EXPECT_EQ(copy.tests, 6);
}

// A white-space-only tag starts a search for the innermost element's end tag, which gives the end of
// input; an included document ends there. When elements were still open, the tag's report says that
// the rest of the document was skipped and where reading goes on.
TEST(ZrXmlReaderInclude, ADocumentLeftAfterAWhiteSpaceTagSaysWhatWasSkipped) {
  const struct {
    const char* part;
    Items seen;
    const char* tagLine;
    const char* skippedFromLine;  // null: nothing skipped, no detail line
  } rows[] = {
      {"<part><x>< ></x><y>1</y><z>2</z></part>", {"doc", "first/", "part", "x", "last/", "/"}, "1", "1"},
      {"<part>\n<x>\n< >\n</x>\n<y/>\n</part>", {"doc", "first/", "part", "x", "last/", "/"}, "3", "4"},
      {"<part><x><y>< ></y></x><z/></part>", {"doc", "first/", "part", "x", "y", "last/", "/"}, "1", "1"},
      // The search ends with the document's own end: nothing is left to skip.
      {"<part><x>1</x>< ></part>", {"doc", "first/", "part", "x", "'1'", "last/", "/"}, "1", nullptr},
  };
  for (const auto& row : rows) {
    ZrTest::TempDir dir;
    dir.write("part.xml", row.part);
    std::istringstream document("<doc>\n<first/>\n" + include("part.xml") + "\n<last/></doc>");
    ZrTest::PrintCapture capture;
    ZrXmlReader reader(dir.file("doc.xml"), document);
    EXPECT_EQ(items(reader), row.seen) << row.part;
    const std::vector<std::string> texts = capture.texts();
    ASSERT_FALSE(texts.empty()) << row.part;
    EXPECT_EQ(texts[0], "ZrXmlFileReader Error: file not well formed.\n\tTag contains only white space.\n\tFile: " +
                            dir.file("part.xml") + "\n\tLine: " + row.tagLine + "\n")
        << row.part;
    const std::string detail = row.skippedFromLine
                                   ? std::string("\tThe rest of this document, from line ") + row.skippedFromLine +
                                         ", was skipped; reading goes on in " + dir.file("doc.xml") +
                                         " after the include element on line 3.\n"
                                   : std::string();
    EXPECT_EQ(texts.size() > 1 ? texts[1] : std::string(), detail) << row.part << capture.all();
  }
  // A document read on its own is not left at that point, and its report has no such line.
  std::istringstream alone("<part><x>< ></x><y>1</y></part>");
  ZrTest::PrintCapture capture;
  ZrXmlReader reader("alone.xml", alone);
  items(reader);
  EXPECT_FALSE(capture.contains("was skipped")) << capture.all();
}

class ZrXmlReaderHttpInclude : public ::testing::Test {
 protected:
  void SetUp() override {
    m_theServedDir.write("docs/remote.xml", "<remote>" + include("leaf.xml") + "<remoteEnd/></remote>");
    m_theServedDir.write("docs/leaf.xml", "<leaf version=\"4.0\"/>");
    m_theServer.reset(new ZrTest::HttpServer(m_theServedDir.path()));
    ASSERT_TRUE(m_theServer->running()) << "python3 test server did not start";
    ZrIfHttpStream::setDefaultConnectTimeoutMs(2000);
    ZrIfHttpStream::setDefaultStallTimeoutMs(2000);
  }
  void TearDown() override {
    ZrIfHttpStream::setDefaultConnectTimeoutMs(10000);
    ZrIfHttpStream::setDefaultStallTimeoutMs(30000);
  }
  ZrTest::TempDir m_theServedDir;
  std::unique_ptr<ZrTest::HttpServer> m_theServer;
};

TEST_F(ZrXmlReaderHttpInclude, RelativeReferencesStayOnTheHost) {
  std::istringstream document("<doc>" + include(m_theServer->url("docs/remote.xml")) + "<last/></doc>");
  ZrTest::PrintCapture capture;
  ZrXmlReader reader("/local/doc.xml", document);
  std::string leafName;
  const Items seen = items(reader, [&](ZrXmlReader& at) {
    if (at.mode() != 3 || at.element().tokenText() != "leaf") return;
    leafName = at.filename();
    EXPECT_FALSE(at.versionFlag());  // the included root is checked too
  });
  EXPECT_EQ(seen, (Items{"doc", "remote", "leaf/", "remoteEnd/", "/", "last/", "/"}));
  EXPECT_EQ(leafName, m_theServer->url("docs/leaf.xml"));
  EXPECT_TRUE(capture.contains("Input file version (v4.0) is greater")) << capture.all();
}

TEST_F(ZrXmlReaderHttpInclude, UnreachableOrForbiddenReferencesAreSkipped) {
  const std::string missing = m_theServer->url("docs/missing.xml");
  std::istringstream document("<doc>" + include(missing) + include(m_theServer->url("docs/leaf.xml")) + "<last/></doc>");
  ZrTest::PrintCapture capture;
  ZrXmlReader reader("/local/doc.xml", document);
  EXPECT_EQ(items(reader), (Items{"doc", "leaf/", "last/", "/"}));
  EXPECT_TRUE(capture.contains("status 404")) << capture.all();
  EXPECT_TRUE(capture.contains("ZrXmlReader Error: not able to open file: " + missing + "\n"));

  std::istringstream again("<doc>" + include(m_theServer->url("docs/leaf.xml")) + "<last/></doc>");
  ZrXmlReader local("/local/doc.xml", again);
  local.setHttpIncludesAllowed(false);
  capture.clear();
  EXPECT_EQ(items(local), (Items{"doc", "last/", "/"}));
  EXPECT_TRUE(capture.contains("HTTP includes are switched off")) << capture.all();
}

}  // namespace
