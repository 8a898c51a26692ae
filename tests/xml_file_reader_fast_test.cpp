// The fast path that array readers use to pull attribute values and words straight from the buffer.
#include "xml_file_reader_trace.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

const char* const theArrayDocument =
    "<cell>\n"
    "  <path size=\"3\">\n"
    "    <!-- first point -->\n"
    "    <element x=\"1\" y=\"2\" z=\"3\"/>\n"
    "    <element\n"
    "       x='4' y=\"5\" z=\"6\"></element>\n"
    "    <!-- a comment\n"
    "         over lines -->\n"
    "    <element xmlns:p='urn:p' x=\"7\" y=\"8\" z=\"9\" />\n"
    "  </path>\n"
    "  <next/>\n"
    "</cell>\n";

// Reads the array the way an array-of-vectors reader does; returns the values read.
std::vector<std::string> readArray(ZrXmlFileReader& reader, size_t valueCount) {
  std::vector<std::string> values;
  EXPECT_EQ(reader.readXml(), 1);
  EXPECT_EQ(reader.readXml(), 1);
  EXPECT_EQ(reader.element().token(), "path");
  EXPECT_EQ(reader.attributeValue(), "3");
  for (size_t i = 0; i < valueCount; ++i) values.push_back(reader.getAttributeValueFast());
  return values;
}

TEST(ZrXmlFileReaderFast, ArrayValuesLeaveTheReaderOnTheEndTag) {
  ZrTest::PrintCapture capture;
  std::istringstream in(theArrayDocument);
  ZrXmlFileReader reader("doc.xml", in);
  EXPECT_EQ(readArray(reader, 9), (std::vector<std::string>{"1", "2", "3", "4", "5", "6", "7", "8", "9"}));
  EXPECT_EQ(reader.lineCountOfFile(), 9);
  EXPECT_EQ(reader.readXml(), 2);
  EXPECT_EQ(reader.endTag().token(), "path");
  EXPECT_EQ(reader.lineCountOfFile(), 10);
  EXPECT_EQ(reader.readXml(), 3);
  EXPECT_EQ(reader.element().token(), "next");
  EXPECT_EQ(reader.readXml(), 2);
  EXPECT_EQ(reader.readXml(), 0);
  EXPECT_EQ(reader.lineCountOfFile(), 13);
  EXPECT_EQ(capture.count(), 0u) << capture.all();
}

TEST(ZrXmlFileReaderFast, FewerValuesThanAnnouncedStopAtTheEndTag) {
  std::istringstream in("<cell><path size='3'><element x='1' y='2' z='3'/></path></cell>");
  ZrXmlFileReader reader("doc.xml", in);
  auto values = readArray(reader, 6);
  EXPECT_EQ(values, (std::vector<std::string>{"1", "2", "3", "", "", ""}));
  EXPECT_EQ(reader.readXml(), 2);
  EXPECT_EQ(reader.endTag().token(), "path");
}

TEST(ZrXmlFileReaderFast, ElementsLeftOpenAreClosedConsistently) {
  ZrTest::PrintCapture capture;
  // The second element has a child, so the fast path keeps it open and later closes it on the way.
  std::istringstream in("<r><a v='1'><b v='2'/></a><a v='3'>text</a></r>");
  ZrXmlFileReader reader("doc.xml", in);
  ASSERT_EQ(reader.readXml(), 1);
  EXPECT_EQ(reader.getAttributeValueFast(), "1");
  EXPECT_EQ(reader.openElements().size(), 2u);
  EXPECT_EQ(reader.getAttributeValueFast(), "2");
  EXPECT_EQ(reader.getAttributeValueFast(), "3");
  EXPECT_EQ(reader.openElements().size(), 2u);  // <a> before its text
  EXPECT_EQ(reader.readXml(), 4);
  EXPECT_EQ(reader.content(), "text");
  EXPECT_EQ(reader.readXml(), 2);
  EXPECT_EQ(reader.openElements().size(), 0u);
  EXPECT_EQ(capture.count(), 0u) << capture.all();
}

TEST(ZrXmlFileReaderFast, TagsWordsAndEndTags) {
  ZrTest::PrintCapture capture;
  std::istringstream in(
      "<list>\n <v n='1'>1.5 <!-- c --> -2\n 3</v>\n <e/>\n <w a='1' b='2' c='3'/>\n <u a='x' b='y'></u></list>");
  ZrXmlFileReader reader("doc.xml", in);
  ASSERT_EQ(reader.readXml(), 1);
  EXPECT_EQ(reader.getSimpleStartTagFast().token(), "v");
  std::vector<std::string> words;
  for (std::string word = reader.getContentByWordFast(); !word.empty(); word = reader.getContentByWordFast())
    words.push_back(word);
  EXPECT_EQ(words, (std::vector<std::string>{"1.5", "-2", "3"}));
  EXPECT_EQ(reader.getEndTagFast().token(), "v");
  EXPECT_EQ(reader.getSimpleStartTagFast().token(), "e");
  EXPECT_EQ(reader.getEndTagFast().token(), "e");  // it closed itself
  EXPECT_EQ(reader.getComplexStartTagFast().token(), "w");
  EXPECT_EQ(reader.getLastAttributeValueFast(), "1");  // the rest of the tag is skipped
  EXPECT_EQ(reader.getComplexStartTagFast().token(), "u");
  EXPECT_EQ(reader.getAttributeValueFast(), "x");
  EXPECT_EQ(reader.getEndTagFast().token(), "u");
  EXPECT_EQ(reader.getEndTagFast().token(), "list");  // an end tag opened by readXml() closes as well
  EXPECT_EQ(reader.openElements().size(), 0u);
  EXPECT_EQ(reader.getEndTagFast(), ZrXmlFileReader::m_theNullToken);
  EXPECT_EQ(reader.lineCountOfFile(), 6);
  EXPECT_EQ(capture.count(), 0u) << capture.all();
}

TEST(ZrXmlFileReaderFast, ReadXmlFinishesAHalfReadTag) {
  std::istringstream in("<r><e a='1' b='2' c='3'/><f/></r>");
  ZrXmlFileReader reader("doc.xml", in);
  ASSERT_EQ(reader.readXml(), 1);
  EXPECT_EQ(reader.getAttributeValueFast(), "1");
  EXPECT_EQ(reader.readXml(), 3);
  EXPECT_EQ(reader.element().token(), "f");
}

}  // namespace
