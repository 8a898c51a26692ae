// A document cut short is never read in silence: every prefix of the sample robot cell that ends before
// the root's end tag is read with at least one fault counted.
#include <ZrRobotCell.h>
#include <ZrRobotCellDocument.h>
#include <ZrTestSupport.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace {

TEST(ZrXmlTruncation, EveryPrefixCutBeforeTheRootsEndTagCountsAFault) {
  const std::string document = ZrTest::readFile(ZrRobotCellDocument::samplePath());
  const std::size_t rootEnd = document.rfind("</");
  ASSERT_NE(rootEnd, std::string::npos);
  ZrTest::PrintCapture capture;
  std::size_t silent = 0;
  std::string firstSilent;
  for (std::size_t length = document.find('>', document.find("<robotCell")) + 1; length <= rootEnd; ++length) {
    std::istringstream in(document.substr(0, length));
    ZrRobotCell cell;
    ZrU32 faults = 0;
    ZrRobotCellDocument::read(in, "cut.xml", cell, &faults);
    if (faults == 0 && silent++ == 0) firstSilent = document.substr(0, length);
  }
  EXPECT_EQ(silent, 0u) << "first prefix read without a fault:\n" << firstSilent;

  capture.clear();
  std::istringstream cut(document.substr(0, 714));  // after a child's end tag
  ZrRobotCell cell;
  ZrRobotCellDocument::read(cut, "cut.xml", cell);
  EXPECT_TRUE(capture.contains("End of file before the end tag of robotCell.\n\tFile: cut.xml\n\tLine: ")) << capture.all();
}

}  // namespace
