// The fast path that array readers use to pull attribute values and words straight from the buffer.
#include "xml_file_reader_trace.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

// (Arrays across comments, split tags and every block edge are swept in the blocks test.)

TEST(ZrXmlFileReaderFast, FewerValuesThanAnnouncedStopAtTheEndTag) {
  std::istringstream in("<path size='3'><element x='1' y='2' z='3'/></path>");
  ZrXmlFileReader reader("doc.xml", in);
  ASSERT_EQ(reader.readXml(), 1);
  std::string values;
  for (int i = 0; i < 6; ++i) values += reader.getAttributeValueFast() + ",";
  EXPECT_EQ(values, "1,2,3,,,,");
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
