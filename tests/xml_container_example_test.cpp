// The example's geometric values and containers: read from the sample (comments and line breaks
// inside the taught path included), listed element by element, and written back unchanged.
#include <ZrRobotCellDocument.h>
#include <ZrTestSupport.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace {

TEST(ZrRobotCellContainers, SampleValuesAreReadAndListed) {
  ZrTest::PrintCapture capture;
  ZrRobotCell cell;
  ASSERT_TRUE(ZrRobotCellDocument::readFile(ZrRobotCellDocument::samplePath(), cell));
  EXPECT_EQ(capture.all(), "");
  EXPECT_EQ(cell.loader().path().size(), 3u);
  EXPECT_EQ(cell.loader().path()[2], ZrVector(0.6, 0.4, 0.9));
  EXPECT_EQ(cell.welder().tool(), ZrOrientation(0, 0.6, 0.8, 0));

  std::ostringstream values;
  ZrRobotCellDocument::listValues(cell, values);
  const std::string text = values.str();
  for (const char* line :
       {"robotCell/loader/base = 0 -1.2 0.4\n", "robotCell/loader/path[1] = 0.5 0 1.2\n",
        "robotCell/loader/tool = 0.5 0.5 0.5 0.5\n", "robotCell/loader/workspace/second = 1.5 0.5 2\n",
        "robotCell/parameters[1]/key = weldCurrent\n", "robotCell/parameters[1]/value = 180\n",
        "robotCell/shifts[1]/second = 1320\n", "robotCell/speedProfiles[0][3] = 0.25\n",
        // the set holds its identifiers sorted, whatever the document's order
        "robotCell/stations[0] = 4\nrobotCell/stations[1] = 7\nrobotCell/stations[2] = 12\n"})
    EXPECT_NE(text.find(line), std::string::npos) << line << text;
}

TEST(ZrRobotCellContainers, ChangedContainersSurviveARoundTrip) {
  ZrTest::PrintCapture capture;
  ZrRobotCell cell;
  ASSERT_TRUE(ZrRobotCellDocument::readFile(ZrRobotCellDocument::samplePath(), cell));
  cell.parameters().set(std::string("coolant"), 3.5);
  cell.stations().insert(1u);
  cell.speedProfiles().pushBack(ZrXmlVectorType<ZrXmlBasicType<double>>());
  cell.welder().path().clear();
  cell.welder().setWorkspace(ZrVector(-1, -1, 0), ZrVector(1, 1, 2));

  std::ostringstream written;
  ASSERT_TRUE(ZrRobotCellDocument::write(cell, written, "cell.xml"));
  ZrRobotCell back;
  std::istringstream in(written.str());
  ASSERT_TRUE(ZrRobotCellDocument::read(in, "cell.xml", back));
  EXPECT_TRUE(back.equality(&cell)) << written.str();
  EXPECT_EQ(back.speedProfiles().size(), 3u);
  EXPECT_EQ(capture.all(), "");
}

}  // namespace
