// The robot-cell example end to end: the shipped sample (comments and line breaks inside the taught
// path included) read, listed value by value, written and read back.
#include <ZrCellNamespace.h>
#include <ZrRobotCellDocument.h>
#include <ZrTestSupport.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <sstream>
#include <string>

namespace {

TEST(ZrRobotCellExample, SampleReadsWithoutMessagesAndListsItsValues) {
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
       {"robotCell/@name = Assembly cell 4\n", "robotCell/loader/shoulder/@axis = z\n",
        // read through the second name of the mode and the older name of the mass
        "robotCell/welder/mode = automatic\n", "robotCell/welder/mass = 210\n",
        "robotCell/loader/base = 0 -1.2 0.4\n", "robotCell/loader/path[1] = 0.5 0 1.2\n",
        "robotCell/loader/tool = 0.5 0.5 0.5 0.5\n", "robotCell/parameters[1]/value = 180\n",
        "robotCell/shifts[1]/second = 1320\n", "robotCell/speedProfiles[0][3] = 0.25\n",
        // the set holds its identifiers sorted, whatever the document's order
        "robotCell/stations[0] = 4\nrobotCell/stations[1] = 7\nrobotCell/stations[2] = 12\n"})
    EXPECT_NE(text.find(line), std::string::npos) << line << text;
}

TEST(ZrRobotCellExample, WhatTheDemoWritesReadsBackEqual) {
  ZrTest::PrintCapture capture;
  std::ostringstream first;
  ASSERT_EQ(ZrRobotCellDocument::demo("", first), 0);
  ZrRobotCell sample, rewritten;
  ASSERT_TRUE(ZrRobotCellDocument::readFile(ZrRobotCellDocument::samplePath(), sample));
  std::istringstream in(first.str());
  ASSERT_TRUE(ZrRobotCellDocument::read(in, "rewritten.xml", rewritten));
  EXPECT_TRUE(rewritten.equality(&sample)) << first.str();
  EXPECT_EQ(rewritten.welder().mass(), 210.0);
  EXPECT_EQ(first.str().find("weight"), std::string::npos) << "read-only names are not written";

  std::ostringstream second;
  ASSERT_TRUE(ZrRobotCellDocument::write(rewritten, second, ZrRobotCellDocument::samplePath()));
  EXPECT_EQ(second.str(), first.str()) << "writing is stable";
  EXPECT_EQ(capture.all(), "");
}

// The model's classes take their equality from the helper: a change anywhere in the tree, in the cell,
// a robot, a joint or a container, makes the cell unequal, and a copy or a clone equal again.
TEST(ZrRobotCellExample, AChangeAnywhereInTheModelMakesTheCellUnequal) {
  ZrRobotCell sample;
  ASSERT_TRUE(ZrRobotCellDocument::readFile(ZrRobotCellDocument::samplePath(), sample));
  const std::function<void(ZrRobotCell&)> changes[] = {
      [](ZrRobotCell& cell) { cell.setName("Assembly cell 5"); },
      [](ZrRobotCell& cell) { cell.setOperators(cell.operators() + 1); },
      [](ZrRobotCell& cell) { cell.loader().setMass(cell.loader().mass() + 1.0); },
      [](ZrRobotCell& cell) { cell.welder().setMode(ZrRobot::MAINTENANCE); },
      [](ZrRobotCell& cell) { cell.welder().wrist().setLimits(ZrAngle(-0.5), cell.welder().wrist().upper()); },
      [](ZrRobotCell& cell) { cell.loader().setWorkspace(ZrVector(0, 0, 0), ZrVector(1, 1, 1)); },
      [](ZrRobotCell& cell) { cell.parameters().set(std::string("weldCurrent"), 181.0); },
      [](ZrRobotCell& cell) { cell.stations().insert(99u); },
  };
  int index = 0;
  for (const auto& change : changes) {
    ZrRobotCell changed = sample;
    EXPECT_TRUE(changed == sample) << "change " << index;
    change(changed);
    EXPECT_FALSE(changed == sample) << "change " << index;
    EXPECT_FALSE(sample.equality(&changed)) << "change " << index;
    const std::unique_ptr<ZrXmlObject> clone(changed.clone());
    EXPECT_TRUE(clone->equality(&changed)) << "change " << index;
    ++index;
  }
  const std::unique_ptr<ZrXmlObject> fresh(sample.newObject());
  const ZrRobotCell defaultCell;
  EXPECT_TRUE(fresh->equality(&defaultCell)) << "a fresh object is a default cell";
  EXPECT_EQ(fresh->token(), ZrCell::element("robotCell"));
}

TEST(ZrRobotCellExample, RejectsDocumentsOfAnotherKind) {
  ZrTest::PrintCapture capture;
  ZrRobotCell cell;
  std::istringstream other("<garage/>");
  EXPECT_FALSE(ZrRobotCellDocument::read(other, "garage.xml", cell));
  EXPECT_TRUE(capture.contains("root element is garage, not robotCell")) << capture.all();
  EXPECT_EQ(ZrRobotCellDocument::demo("/nonexistent/cell.xml", std::cout), 1);
}

}  // namespace
