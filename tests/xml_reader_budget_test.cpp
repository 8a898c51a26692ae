#include <ZrIfHttpStream.h>
#include <ZrTestHttpServer.h>
#include <ZrTestSupport.h>
#include <ZrXmlReader.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <thread>

namespace {

std::string include(const std::string& href) { return "<ZrInclude type=\"simple\" href=\"" + href + "\"/>"; }

// Elements nested `depth` deep, each declaring a namespace of its own: what an open element costs most.
std::string nested(int depth) {
  std::string text;
  for (int i = 0; i < depth; ++i) text += "<e xmlns:p" + std::to_string(i) + "=\"http://example.org/ns\">";
  return text;
}

// Reads to the end (or the end of the read), calling `look` after every item; returns the start tags read.
int startTags(ZrXmlReader& reader, const std::function<void(ZrXmlReader&)>& look = {}) {
  int starts = 0;
  for (int mode = reader.readXml(); mode != 5; mode = reader.readXml()) {
    if (look) look(reader);
    if (mode == 1 || mode == 3) ++starts;
    while (reader.remainingNumOfAttributes() > 0) reader.attributeValue();
    if (mode == 0 && reader.depth() == 1 && reader.currentFileReader()->atEndOfInput()) break;
  }
  return starts;
}

// The budget is looked at before each element that takes the nesting deeper than ever: with the budget
// at what the documents held before the last element, everything is read; one byte less stops the read
// at that element, with a report naming file and line and nothing reported after it.
TEST(ZrXmlReaderBudget, MemoryAtTheLimitAndOnePast) {
  std::string text = "<root>\n" + nested(200);
  for (int i = 0; i < 200; ++i) text += "</e>";
  text += "</root>";
  std::uint64_t heldBeforeLast = 0;
  {
    std::istringstream in(text);
    ZrTest::PrintCapture quiet;
    ZrXmlReader reader("m.xml", in);
    std::uint64_t previous = 0;
    startTags(reader, [&](ZrXmlReader& at) {
      if (at.mode() != 1) return;
      heldBeforeLast = previous;
      previous = at.heldBytes();
    });
  }
  const struct {
    std::uint64_t budget;
    int starts;
    bool stopped;
  } rows[] = {{heldBeforeLast, 201, false}, {heldBeforeLast - 1, 200, true}};
  for (const auto& row : rows) {
    std::istringstream in(text);
    ZrTest::PrintCapture capture;
    ZrXmlReader reader("m.xml", in);
    reader.setMaxReadMemory(row.budget);
    EXPECT_EQ(startTags(reader), row.starts) << row.budget;
    EXPECT_EQ(reader.readStopped(), row.stopped);
    const std::string report = "ZrXmlFileReader Error: the documents being read hold more than " +
                               std::to_string(row.budget) + " bytes; the read stops.\n\tFile: m.xml\n\tLine: 2\n";
    EXPECT_EQ(capture.texts(), row.stopped ? std::vector<std::string>{report} : std::vector<std::string>{});
  }
}

// A chain of documents, each with a long text before it includes the next: what each consumed is let go
// before the next opens, so the chain holds its open elements and a block or two per document.
TEST(ZrXmlReaderBudget, AnIncludingDocumentLetsGoOfWhatItConsumed) {
  ZrTest::TempDir dir;
  const int documents = 8;
  const std::string text(1 << 20, 'x');
  for (int i = 0; i < documents; ++i) {
    const std::string next = i + 1 < documents ? include("d" + std::to_string(i + 1) + ".xml") : "<last/>";
    dir.write("d" + std::to_string(i) + ".xml", "<d><t a=\"" + text + "\">" + text + "</t>" + next + "</d>");
  }
  std::ifstream first(dir.file("d0.xml"));
  ZrTest::PrintCapture capture;
  ZrXmlReader reader(dir.file("d0.xml"), first);
  std::uint64_t heldBelowLast = 0;  // by the seven documents that include the last one
  startTags(reader, [&](ZrXmlReader& at) {
    if (at.element().tokenText() == "last") heldBelowLast = at.heldBytes() - at.currentFileReader()->heldBytes();
  });
  EXPECT_EQ(reader.includedDocuments(), 7u);
  EXPECT_GT(heldBelowLast, 0u);
  EXPECT_LT(heldBelowLast, 7u * (64u << 10)) << "each document read 2 MiB of text and value";
  EXPECT_EQ(capture.count(), 0u) << capture.all();
}

// Documents that include the next under a new name, each nesting elements with namespace declarations:
// without a budget every level holds its open elements at once. The budget ends the read with a report
// in the document that passed it, and what the documents hold never goes past it by more than an element.
TEST(ZrXmlReaderBudget, NestedIncludesEndAtTheMemoryBudget) {
  ZrTest::TempDir dir;
  const int levels = 16;
  for (int i = 0; i < levels; ++i)
    dir.write("d" + std::to_string(i) + ".xml", "<d>\n" + nested(2000) + include("d" + std::to_string(i + 1) + ".xml"));
  const std::uint64_t budget = 8u << 20;
  std::ifstream first(dir.file("d0.xml"));
  ZrTest::PrintCapture capture;
  ZrXmlReader reader(dir.file("d0.xml"), first);
  reader.setMaxReadMemory(budget);
  std::uint64_t mostHeld = 0;
  std::size_t deepest = 0;
  startTags(reader, [&](ZrXmlReader& at) {
    mostHeld = std::max(mostHeld, at.heldBytes());
    deepest = std::max<std::size_t>(deepest, at.depth());
  });
  EXPECT_TRUE(reader.readStopped());
  EXPECT_LE(mostHeld, budget + 1024);
  EXPECT_GT(deepest, 4u);
  EXPECT_LT(deepest, static_cast<std::size_t>(levels));
  ASSERT_EQ(capture.count(), 1u) << capture.all();
  EXPECT_NE(capture.texts()[0].find("the documents being read hold more than 8388608 bytes; the read stops.\n\tFile: " +
                                    dir.file("d" + std::to_string(deepest - 1) + ".xml") + "\n\tLine: 2\n"),
            std::string::npos)
      << capture.all();
}

// When the documents already hold the budget as an include comes, it is not opened and the read stops.
TEST(ZrXmlReaderBudget, AnIncludePastTheMemoryBudgetIsNotOpened) {
  ZrTest::TempDir dir;
  dir.write("part.xml", "<part/>");
  const std::string text = "<a>\n" + include("part.xml") + "<after/></a>";
  std::uint64_t heldAtRoot = 0;
  {
    std::istringstream in(text);
    ZrXmlReader reader(dir.file("doc.xml"), in);
    reader.readXml();
    heldAtRoot = reader.heldBytes();
  }
  std::istringstream in(text);
  ZrTest::PrintCapture capture;
  ZrXmlReader reader(dir.file("doc.xml"), in);
  reader.setMaxReadMemory(heldAtRoot + 100);  // the include element's own entry passes it
  EXPECT_EQ(startTags(reader), 1);
  EXPECT_TRUE(reader.readStopped());
  EXPECT_EQ(reader.includedDocuments(), 0u);
  EXPECT_EQ(capture.texts(), std::vector<std::string>{"ZrXmlReader Error: the documents being read hold more than " +
                                                      std::to_string(heldAtRoot + 100) + " bytes; the read stops: " +
                                                      dir.file("part.xml") + "\n\tFile: " + dir.file("doc.xml") +
                                                      "\n\tLine: 2\n"});
}

TEST(ZrXmlReaderBudget, TheReadEndsAfterItsTime) {
  std::string text = "<root>";
  for (int i = 0; i < 20000; ++i) text += "<e>" + std::to_string(i) + "</e>\n";
  text += "</root>";
  const struct {
    std::uint64_t milliseconds;
    int pauseMs;  // between building the reader and reading
    bool stopped;
  } rows[] = {{0, 30, false}, {60000, 0, false}, {5, 30, true}};
  for (const auto& row : rows) {
    std::istringstream in(text);
    ZrTest::PrintCapture capture;
    ZrXmlReader reader("t.xml", in);
    reader.setMaxReadMilliseconds(row.milliseconds);
    std::this_thread::sleep_for(std::chrono::milliseconds(row.pauseMs));
    const int starts = startTags(reader);
    EXPECT_EQ(reader.readStopped(), row.stopped) << row.milliseconds;
    EXPECT_EQ(starts, row.stopped ? 0 : 20001) << row.milliseconds;
    const std::string report = "ZrXmlFileReader Error: the read took longer than " + std::to_string(row.milliseconds) +
                               " milliseconds; the read stops.\n\tFile: t.xml\n\tLine: 1\n";
    EXPECT_EQ(capture.texts(), row.stopped ? std::vector<std::string>{report} : std::vector<std::string>{});
  }
}

// Every include tried counts against the documents budget, whether its document opened or not.
TEST(ZrXmlReaderBudget, FailedIncludesCountAgainstTheDocumentsBudget) {
  const struct {
    int includes;
    int budgetReports;
  } rows[] = {{10, 0}, {11, 1}, {30, 20}};
  for (const auto& row : rows) {
    std::string text = "<doc>";
    for (int i = 0; i < row.includes; ++i) text += include("missing.xml");
    text += "<last/></doc>";
    std::istringstream in(text);
    ZrTest::PrintCapture capture;
    ZrXmlReader reader("/nowhere/doc.xml", in);
    reader.setMaxIncludedDocuments(10);
    EXPECT_EQ(startTags(reader), 2);
    EXPECT_EQ(reader.includedDocuments(), static_cast<ZrU32>(std::min(row.includes, 10)));
    int notOpened = 0, overBudget = 0;
    for (const std::string& message : capture.texts()) {
      notOpened += message.find("not able to open file") != std::string::npos;
      overBudget += message.find("more than 10 documents included; include skipped") != std::string::npos;
    }
    EXPECT_EQ(notOpened, std::min(row.includes, 10)) << row.includes;
    EXPECT_EQ(overBudget, row.budgetReports) << row.includes;
  }
}

// Includes of a server that accepts and never answers: each would wait for the stall time-out; the HTTP
// budget of the read ends the whole read instead.
TEST(ZrXmlReaderBudget, TheHttpBudgetEndsIncludesOfASilentServer) {
  ZrTest::TempDir served;
  ZrTest::HttpServer server(served.path());
  ASSERT_TRUE(server.running()) << "python3 test server did not start";
  ZrIfHttpStream::setDefaultStallTimeoutMs(10000);
  std::string text = "<doc>";
  for (int i = 0; i < 4; ++i) text += include(server.url("stall-headers"));
  text += "<last/></doc>";
  std::istringstream in(text);
  ZrTest::PrintCapture capture;
  const auto start = std::chrono::steady_clock::now();
  ZrXmlReader reader("/local/doc.xml", in);
  reader.setMaxHttpReadMilliseconds(1500);
  startTags(reader);
  const auto took = std::chrono::steady_clock::now() - start;
  ZrIfHttpStream::setDefaultStallTimeoutMs(30000);
  EXPECT_GE(took, std::chrono::milliseconds(1400));
  EXPECT_LT(took, std::chrono::milliseconds(6000));
  EXPECT_TRUE(reader.readStopped());
  EXPECT_EQ(reader.includedDocuments(), 1u);
  EXPECT_TRUE(capture.contains("ZrXmlReader Error: the read took longer than 1500 milliseconds; the read stops: " +
                               server.url("stall-headers") + "\n\tFile: /local/doc.xml\n\tLine: 1\n"))
      << capture.all();
}

}  // namespace
