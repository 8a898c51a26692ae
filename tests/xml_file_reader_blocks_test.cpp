// Documents cut at the block edge everywhere, documents of many blocks, and inputs built to break a
// tokenizer: very many comments, very deep nesting, very long tokens and random bytes.
#include "xml_file_reader_trace.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <sstream>
#include <streambuf>

namespace {

const size_t theBlock = 16383;  // bytes taken from the stream per block

// Every construct the tokenizer knows, some of them faulty, spread over several lines.
const std::string theMixedDocument =
    "<?xml version=\"1.0\"?>\n"
    "<!-- header comment -->\n"
    "<cr:cell xmlns:cr=\"http://www.zrtoolkit.org/namespace/cr\" version=\"3.0.0\">\n"
    "  <robot name='r1' mass=\"12.5\"\n        mode=\"auto\">\n"
    "    <joint min=\"-90\" max=\"90\"/>\n"
    "    <!-- a -- b -->\n"
    "    <values>1 2 3\n 4 5 6 <!-- in the middle --> 7 8 9</values>\n"
    "    <!-- a > b -- c > d -->\n"
    "  </robot>\n"
    "  <empty></empty>\n"
    "  <bad x=1/>\n"
    "</cr:cell>\n";

TEST(ZrXmlFileReaderBlocks, EveryCutAtTheBlockEdgeGivesTheSameEvents) {
  auto reference = ZrTest::traceDocument(theMixedDocument);
  ASSERT_GT(reference.events.size(), 10u);
  ASSERT_EQ(reference.messages.size(), 3u);  // the extra "--", the text it leaves, the missing quotes
  for (size_t cut = 0; cut <= theMixedDocument.size(); ++cut) {
    // Blanks before the root shift the document so that the block edge falls at `cut`.
    auto trace = ZrTest::traceDocument(std::string(theBlock - cut, ' ') + theMixedDocument);
    ASSERT_EQ(trace.events, reference.events) << "cut at " << cut;
    ASSERT_EQ(trace.messages, reference.messages) << "cut at " << cut;
    ASSERT_EQ(trace.lines, reference.lines) << "cut at " << cut;
  }
}

const std::string theArrayDocument =
    "<path size='3'>\n"
    "  <!-- first -->\n"
    "  <element x=\"1.5\" y=\"-2\"\n     z=\"3e2\"/>\n"
    "  <element x='4' y='5' z='6'></element>\n"
    "  <element xmlns:p='urn:p' x=\"7\" y=\"8\" z=\"9\" />\n"
    "</path>\n"
    "<next/>\n";

// The fast path takes the values in document order and leaves the reader on the array's end tag, with
// the lines counted, so that what follows is read as usual.
TEST(ZrXmlFileReaderBlocks, FastPathReadsTheSameAtEveryCut) {
  for (size_t cut = 0; cut <= theArrayDocument.size(); ++cut) {
    ZrTest::PrintCapture capture;
    std::istringstream in(std::string(theBlock - cut, ' ') + theArrayDocument);
    ZrXmlFileReader reader("doc.xml", in);
    ASSERT_EQ(reader.readXml(), 1);
    ASSERT_EQ(reader.attributeValue(), "3");
    std::string values;
    for (int i = 0; i < 9; ++i) values += reader.getAttributeValueFast() + " ";
    ASSERT_EQ(values, "1.5 -2 3e2 4 5 6 7 8 9 ") << "cut at " << cut;
    ASSERT_EQ(reader.lineCountOfFile(), 6) << "cut at " << cut;
    ASSERT_EQ(reader.readXml(), 2) << "cut at " << cut;
    ASSERT_EQ(reader.openElements().size(), 0u);
    ASSERT_EQ(reader.lineCountOfFile(), 7) << "cut at " << cut;
    ASSERT_EQ(reader.readXml(), 3) << "cut at " << cut;
    ASSERT_EQ(reader.element().token(), "next");
    ASSERT_EQ(reader.readXml(), 0) << "cut at " << cut;
    ASSERT_EQ(reader.lineCountOfFile(), 9) << "cut at " << cut;
    ASSERT_EQ(capture.count(), 0u) << capture.all();
  }
}

TEST(ZrXmlFileReaderBlocks, ManyBlocksAreReadWithTheirLines) {
  std::string document = "<r>\n";
  for (int i = 0; i < 5000; ++i) document += "  <e i='" + std::to_string(i) + "'>v" + std::to_string(i) + "</e>\n";
  document += "</r>\n";
  ASSERT_GT(document.size(), 6 * theBlock);
  auto trace = ZrTest::traceDocument(document);
  ASSERT_EQ(trace.events.size(), 2u + 2 * 5000 + 1);
  EXPECT_EQ(trace.events[1 + 2 * 4321], "1 e i=4321");
  EXPECT_EQ(trace.events[2 + 2 * 4321], "4 e 'v4321'");
  EXPECT_EQ(trace.lines, 5003);
  EXPECT_TRUE(trace.messages.empty());
}

TEST(ZrXmlFileReaderBlocks, AMillionCommentsInARowAreSkippedWithoutRecursion) {
  std::string document = "<a>";
  document.reserve(7000010);
  for (int i = 0; i < 1000000; ++i) document += "<!---->";
  document += "</a>";
  auto trace = ZrTest::traceDocument(document);
  EXPECT_EQ(trace.events, (std::vector<std::string>{"1 a", "2 a", "0"}));
  EXPECT_TRUE(trace.messages.empty());
}

TEST(ZrXmlFileReaderBlocks, DeepNestingIsReadWithoutRecursion) {
  const int depth = 100000;
  std::string document;
  for (int i = 0; i < depth; ++i) document += "<e>";
  for (int i = 0; i < depth; ++i) document += "</e>";
  std::istringstream in(document);
  ZrXmlFileReader reader("doc.xml", in);
  size_t maxDepth = 0, events = 0;
  for (int mode = reader.readXml(); mode != 0; mode = reader.readXml()) {
    maxDepth = std::max(maxDepth, reader.openElements().size());
    ++events;
  }
  EXPECT_EQ(maxDepth, size_t(depth));
  EXPECT_EQ(events, size_t(2 * depth));
  EXPECT_TRUE(reader.openElements().empty());
}

// Produces a document with one huge token without holding it in memory twice.
class GeneratedStream : public std::streambuf {
 public:
  GeneratedStream(std::string head, char fill, size_t fillSize, std::string tail)
      : m_head(std::move(head)), m_tail(std::move(tail)), m_fill(fill), m_remaining(fillSize), m_chunk(65536, fill) {
    setg(m_head.data(), m_head.data(), m_head.data() + m_head.size());
  }

 protected:
  int_type underflow() override {
    if (m_remaining > 0) {
      size_t n = std::min(m_remaining, m_chunk.size());
      m_remaining -= n;
      setg(m_chunk.data(), m_chunk.data(), m_chunk.data() + n);
    } else if (!m_tailDone) {
      m_tailDone = true;
      setg(m_tail.data(), m_tail.data(), m_tail.data() + m_tail.size());
    } else {
      return traits_type::eof();
    }
    return traits_type::to_int_type(*gptr());
  }

 private:
  std::string m_head, m_tail;
  char m_fill;
  size_t m_remaining;
  std::string m_chunk;
  bool m_tailDone = false;
};

struct LongToken {
  const char* name;
  const char* head;
  char fill;
  const char* tail;
  std::vector<std::string> events;
};

void readEvents(const LongToken& token, size_t size, std::vector<std::string>& events) {
  GeneratedStream source(token.head, token.fill, size, token.tail);
  std::istream in(&source);
  {
    ZrXmlFileReader reader("doc.xml", in);
    events.clear();
    for (int mode = reader.readXml(); mode != 0; mode = reader.readXml()) {
      std::string event = std::to_string(mode);
      if (mode == 1 || mode == 3) event += " " + std::to_string(reader.attributeValue().size());
      if (mode == 4) event += " " + std::to_string(reader.content().size());
      events.push_back(event);
    }
  }
}

// A tag, a comment or a text run spanning four thousand blocks is read whole. Read in time linear in its
// size this takes well under a second; searching or copying the token again per block would take
// minutes and run into the test's time-out.
TEST(ZrXmlFileReaderBlocks, LongTokensSpanningThousandsOfBlocksAreReadWhole) {
  const size_t large = 64u << 20;
  const LongToken tokens[] = {
      {"attribute value", "<a v='", 'x', "'/>", {"3 " + std::to_string(large)}},
      {"comment", "<a><!--", 'c', "--></a>", {"1 0", "2"}},
      {"content", "<a>", '7', "</a>", {"1 0", "4 " + std::to_string(large)}},
  };
  for (const auto& token : tokens) {
    std::vector<std::string> events;
    readEvents(token, large, events);
    EXPECT_EQ(events, token.events) << token.name;
  }
}

// Random bytes drawn mostly from markup characters, NUL included: every fault path, never a crash or hang.
TEST(ZrXmlFileReaderBlocks, RandomBytesAreReportedNeverFatal) {
  const char alphabet[] = "<<<>>>//!!--?=?=\"\"''  \n\t abcxyz:#";
  for (unsigned seed : {1u, 2u, 3u, 4u, 5u}) {
    std::mt19937 random(seed);
    std::string document(200000, ' ');
    for (char& c : document) {
      unsigned pick = random() % 100;
      c = pick == 0 ? '\0' : pick < 10 ? static_cast<char>(random() % 256) : alphabet[random() % (sizeof alphabet - 1)];
    }
    ZrTest::PrintCapture capture;
    std::istringstream in(document);
    ZrXmlFileReader reader("random.xml", in);
    size_t events = 0;
    for (int mode = reader.readXml(); mode != 5 && !(mode == 0 && reader.atEndOfInput()); mode = reader.readXml()) {
      while (reader.remainingNumOfAttributes() > 0) reader.attributeValue();
      ASSERT_LT(++events, document.size()) << "seed " << seed;
    }
    EXPECT_GT(capture.count(), 0u) << "seed " << seed;
  }
}

}  // namespace

namespace {

// "<a>", then `units` times an empty element "<b/>" followed by 1020 line feeds, served from one 64 KiB
// buffer (nothing of the document's size is ever held), then an end tag cut short, "</a".
class ManyLinesBuffer : public std::streambuf {
 public:
  static const long long theFeedsPerUnit = 1020;
  static const long long theUnitsPerBuffer = 64;

  explicit ManyLinesBuffer(long long buffers) : m_theLeft(buffers) {
    for (long long unit = 0; unit < theUnitsPerBuffer; ++unit) m_theUnits += "<b/>" + std::string(theFeedsPerUnit, '\n');
    setg(m_theHead, m_theHead, m_theHead + 3);
  }

 protected:
  int_type underflow() override {
    if (m_theLeft > 0) {
      --m_theLeft;
      setg(&m_theUnits[0], &m_theUnits[0], &m_theUnits[0] + m_theUnits.size());
      return traits_type::to_int_type('<');
    }
    if (!m_theTailServed) {
      m_theTailServed = true;
      setg(m_theTail, m_theTail, m_theTail + 3);
      return traits_type::to_int_type('<');
    }
    return traits_type::eof();
  }

 private:
  char m_theHead[4] = "<a>";
  char m_theTail[4] = "</a";
  std::string m_theUnits;
  long long m_theLeft;
  bool m_theTailServed = false;
};

TEST(ZrXmlFileReaderBlocks, LineCountsPastTheLargestIntDoNotOverflow) {
  const long long buffers = 32899;  // 2,147,646,720 line feeds: just past the largest int
  const long long lines = buffers * ManyLinesBuffer::theUnitsPerBuffer * ManyLinesBuffer::theFeedsPerUnit + 1;
  ManyLinesBuffer buffer(buffers);
  std::istream in(&buffer);
  ZrTest::PrintCapture capture;
  ZrXmlFileReader reader("long.xml", in);
  int mode = reader.readXml();
  while (mode == 1 || mode == 3) mode = reader.readXml();
  EXPECT_EQ(mode, 0);
  EXPECT_EQ(reader.lineCount(), lines);
  EXPECT_EQ(reader.lineCountOfFile(), std::numeric_limits<int>::max());  // saturated, never negative
  // the cut end tag is reported with the whole count
  EXPECT_TRUE(capture.contains("EOF found before end of tag.\n\tFile: long.xml\n\tLine: " + std::to_string(lines) + "\n"))
      << capture.all();
}

// An endless "<a><a><a>...", as a server that never stops sending would give.
class EndlessNestingBuffer : public std::streambuf {
 public:
  EndlessNestingBuffer() {
    for (int i = 0; i < 4096; ++i) m_theTags += "<a>";
  }

 protected:
  int_type underflow() override {
    setg(&m_theTags[0], &m_theTags[0], &m_theTags[0] + m_theTags.size());
    return traits_type::to_int_type('<');
  }

 private:
  std::string m_theTags;
};

TEST(ZrXmlFileReaderBlocks, NestingPastTheDepthLimitStopsReadingWithOneReport) {
  EndlessNestingBuffer buffer;
  std::istream in(&buffer);
  ZrTest::PrintCapture capture;
  std::size_t starts = 0;
  {
    ZrXmlFileReader reader("deep.xml", in);
    reader.setMaxDepth(1000);
    for (int mode = reader.readXml(); mode == 1; mode = reader.readXml()) ++starts;
    EXPECT_EQ(reader.openElements().size(), 1000u);
    EXPECT_TRUE(reader.atEndOfInput());
  }
  EXPECT_EQ(starts, 1000u);
  EXPECT_EQ(capture.texts().at(0),
            "ZrXmlFileReader Error: file not well formed.\n\tElements nested deeper than 1000 levels; reading stops."
            "\n\tFile: deep.xml\n\tLine: 1\n");
}

// Endless NUL bytes after a start tag, as /dev/zero would give.
class EndlessZerosBuffer : public std::streambuf {
 public:
  EndlessZerosBuffer() : m_theZeros(1 << 16, '\0') { setg(m_theHead, m_theHead, m_theHead + 3); }

 protected:
  int_type underflow() override {
    setg(&m_theZeros[0], &m_theZeros[0], &m_theZeros[0] + m_theZeros.size());
    return traits_type::to_int_type('\0');
  }

 private:
  char m_theHead[4] = "<a>";
  std::string m_theZeros;
};

TEST(ZrXmlFileReaderBlocks, InputThatKeepsBeingCutByNulBytesStopsBeingRead) {
  EndlessZerosBuffer buffer;
  std::istream in(&buffer);
  ZrTest::PrintCapture capture;
  ZrXmlFileReader reader("zeros.xml", in);
  EXPECT_EQ(reader.readXml(), 1);
  EXPECT_EQ(reader.readXml(), 0);
  EXPECT_EQ(capture.count(), ZrXmlFileReader::m_theMaxNulReports + 2) << "the NUL reports, the stop, the end";
  EXPECT_TRUE(capture.contains("Too many NUL characters: the input is no text; reading stops.")) << capture.all();
}

}  // namespace
