#include <ZrTestSupport.h>
#include <ZrXmlReader.h>
#include <gtest/gtest.h>

#include <sstream>

namespace {

const char* const theGreater =
    "ZrXmlObject::checkVersion warning: Input file version (v%s) is greater than code base version (v3.0.0).\n";
const char* const theTwoSmaller =
    "ZrXmlObject::checkVersion warning: Input file version (v%s) is two versions smaller than code base version "
    "(v3.0.0).\n";

std::string expand(const char* format, const std::string& version) {
  std::string text(format);
  text.replace(text.find("%s"), 2, version);
  return text;
}

TEST(ZrXmlReaderVersion, OnlyTheMajorNumberCounts) {
  const struct {
    const char* version;  // null: no version attribute
    bool flag;
    const char* warning;  // null: silent
  } rows[] = {
      {nullptr, true, nullptr},     {"3.0.0", true, nullptr},      {"3", true, nullptr},
      {"2.9", true, nullptr},       {"1.5", true, theTwoSmaller},  {"abc", true, theTwoSmaller},
      {"", true, theTwoSmaller},    {"4", false, theGreater},      {"10.2", false, theGreater},
      {"65539.0", true, nullptr},  // the major number is kept in 16 bits: 65539 reads as 3
      {"999999999999999999999", false, theGreater},
  };
  for (const auto& row : rows) {
    std::string root = row.version ? std::string("<root version=\"") + row.version + "\">" : "<root>";
    std::istringstream document(root + "<child/></root>");
    ZrTest::PrintCapture capture;
    ZrXmlReader reader("doc.xml", document);
    EXPECT_EQ(reader.readXml(), 1);
    const std::string label = row.version ? row.version : "(none)";
    EXPECT_EQ(reader.versionFlag(), row.flag) << label;
    if (row.warning) {
      ASSERT_EQ(capture.count(), 1u) << label << capture.all();
      EXPECT_EQ(capture.messages()[0].first, Zr::PrintError);
      EXPECT_EQ(capture.texts()[0], expand(row.warning, row.version));
    } else {
      EXPECT_EQ(capture.count(), 0u) << label << capture.all();
    }
    EXPECT_EQ(reader.remainingNumOfAttributes(), 0u) << "the check takes the version attribute";
  }
}

TEST(ZrXmlReaderVersion, OnlyTheFirstItemOfADocumentIsChecked) {
  std::istringstream document("<root><child version=\"9.0\"/></root>");
  ZrTest::PrintCapture capture;
  ZrXmlReader reader("doc.xml", document);
  reader.readXml();
  EXPECT_EQ(reader.readXml(), 3);
  EXPECT_TRUE(reader.versionFlag());
  EXPECT_EQ(reader.attributeValue(ZrXml::ZrVersionToken), "9.0");  // left for the object to read
  EXPECT_EQ(capture.count(), 0u);
}

TEST(ZrXmlReaderVersion, OpenStartsAFreshCheck) {
  std::istringstream newer("<root version=\"5.0\"/>");
  std::istringstream current("<root version=\"3.0.0\"/>");
  ZrTest::PrintCapture capture;
  ZrXmlReader reader;
  reader.open("newer.xml", newer);
  reader.readXml();
  EXPECT_FALSE(reader.versionFlag());
  reader.open("current.xml", current);
  EXPECT_TRUE(reader.versionFlag());
  reader.readXml();
  EXPECT_TRUE(reader.versionFlag());
  EXPECT_EQ(reader.filename(), "current.xml");
}

}  // namespace
