// Every fault of the tokenizer in its fixed words, at its line, with reading going on afterwards.
#include "xml_file_reader_trace.h"

#include <gtest/gtest.h>

namespace {

struct FaultCase {
  const char* document;
  std::vector<std::string> messages;  // "fault text@line", in order
};

std::string fault(const char* what) { return std::string("file not well formed.\n\t") + what; }

TEST(ZrXmlFileReaderFaults, EachFaultIsReportedInItsWordsAtItsLine) {
  const FaultCase cases[] = {
      {"<a>\n</b>", {fault("End tag closed incorrect start tag.@2"), "\tStart tag: a\n\tEnd tag: b\n"}},
      {"<a></ a>", {fault("White space cannot exist before end tag name.@1")}},
      {"<a/>\nx", {fault("Extra characters found before EOF.@2")}},
      {"<a>\n<b", {fault("EOF found before end of tag.@2"), fault("Premature end of file.@2")}},
      {"<a><!-- x > y", {fault("EOF found within comment.@1"), fault("Premature end of file.@1")}},
      {"<a><!-- a > b -- c > d --></a>", {fault("Comment contains extra -- in it.@1")}},
      {"<a><?bad></a>", {fault("Declaration not properly defined.@1")}},
      {"<a x='1' y></a>", {fault("Extra characters found behind element or attributes.@1")}},
      {"<a ='1'></a>", {fault("Missing attribute name.@1")}},
      {"<a x='1></a>", {fault("Second quote of attribute value is missing.@1")}},
      {"<#></#>", {fault("No element name found in start tag.@1")}},
      {"<a><b/></a>\n</a>", {fault("More end tags than start tags.@2")}},
      // The search that a white-space-only tag starts ends the event with 0, which a start tag calls premature.
      {"<r><a>\n< >x</a><b/></r>", {fault("Tag contains only white space.@2"), fault("Premature end of file.@2")}},
      {"<r><a><b/>\n", {fault("Some start tags not closed with end tag.@2")}},
      {"<a x='1'>\ntext", {fault("Extra characters found before EOF.@2"), fault("Premature end of file.@2")}},
  };
  for (const auto& c : cases) {
    auto trace = ZrTest::traceDocument(c.document);
    EXPECT_EQ(trace.messages, c.messages) << c.document;
  }
}

TEST(ZrXmlFileReaderFaults, UnusedAttributesOfThePreviousElementAreReported) {
  ZrTest::PrintCapture capture;
  std::istringstream in("<a x='1'><b/></a>");
  {
    ZrXmlFileReader reader("doc.xml", in);
    while (reader.readXml() != 0) {
    }
  }
  ASSERT_EQ(capture.count(), 1u);
  EXPECT_EQ(ZrTest::shortMessage(capture.texts()[0]), "file possibly not valid.\n\tPrevious attribute names were not used.@1");
}

TEST(ZrXmlFileReaderFaults, NulByteCutsItsBlockAndIsReported) {
  auto trace = ZrTest::traceDocument(std::string("<a>\n<b/>\0<c/></a>", 17));
  EXPECT_EQ(trace.events, (std::vector<std::string>{"1 a", "3 b", "0"}));
  ASSERT_FALSE(trace.messages.empty());
  EXPECT_EQ(trace.messages[0], fault("NUL character in the input; the rest of its block was dropped.@1"));
}

TEST(ZrXmlFileReaderFaults, ErrorModeIsStickyAfterAFailedSearch) {
  ZrTest::PrintCapture capture;
  std::istringstream in("<a>< >");
  ZrXmlFileReader reader("doc.xml", in);
  EXPECT_EQ(reader.readXml(), 1);
  EXPECT_EQ(reader.readXml(), 5);
  EXPECT_EQ(reader.readXml(), 5);
  EXPECT_EQ(ZrTest::shortMessage(capture.texts().at(0)), fault("Tag contains only white space.@1"));
  EXPECT_TRUE(capture.contains("ZrXmlFileReader Error: error mode encountered."));
}

TEST(ZrXmlFileReaderFaults, TokensBeyondTheLimitStopReading) {
  size_t saved = ZrXmlFileReader::defaultMaxTokenSize();
  ZrXmlFileReader::setDefaultMaxTokenSize(100000);
  auto trace = ZrTest::traceDocument("<a x='" + std::string(300000, 'v') + "'/>");
  ZrXmlFileReader::setDefaultMaxTokenSize(saved);
  ASSERT_FALSE(trace.messages.empty());
  EXPECT_NE(trace.messages[0].find("longer than 100000 bytes"), std::string::npos);
  EXPECT_EQ(trace.events.back(), "0");
}

}  // namespace
