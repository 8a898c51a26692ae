// The conveyor example (examples/conveyor): seven classes on the class helper and the polymorphic list,
// read back from a file as written, compared by value, and kept within its line budget.
#include <ZrConveyorModel.h>
#include <ZrTestSupport.h>
#include <ZrXmlReader.h>
#include <ZrXmlWriter.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

namespace {
using namespace ZrConveyor;

Line sampleLine() {
  Line line;
  line.label = {7, std::string("Sorting")};
  BeltSegment segment;
  segment.id = 1;
  segment.length = 6.0;
  segment.speed = 0.8;
  segment.start = ZrVector(0.0, 0.0, 0.9);
  segment.end = ZrVector(6.0, 0.0, 0.9);
  segment.zoneLengths = {1.5, 2, 2.5};
  line.segments = {segment, segment};
  line.segments.vectorContainer()[1].id = 2;
  Station& labelling = line.stations.mapContainer()[std::string("labelling")];
  labelling.position = ZrVector(3.0, 1.0, 0.0);
  labelling.cycleTime = 12.5;
  labelling.tools = {"printer", "applicator"};
  line.stations.mapContainer()[std::string("packing")].cycleTime = 40.0;
  Motor& motor = line.devices.emplace_back<Motor>();
  motor.name = "drive";
  motor.power = 1.1;
  motor.direction = Direction::reverse;
  PhotoSensor& eye = line.devices.emplace_back<PhotoSensor>();
  eye.name = "eye";
  eye.position = ZrVector(2.0, 0.3, 1.0);
  eye.range = 0.8;
  eye.responseTime = 4;
  Diverter& gate = line.devices.emplace_back<Diverter>();
  gate.name = "gate";
  gate.side = Side::right;
  gate.angle = 35.0;
  return line;
}

void save(const Line& line, const std::string& path) {
  std::ofstream out(path);
  ZrXmlWriter writer(path, out);
  writer.header(Line::classToken(), ZrCell::uri());
  line.write(writer);
  writer.writeEndTag();
}

// Reads the document at path into line; returns the reader's fault count.
ZrU32 load(const std::string& path, Line& line) {
  std::ifstream in(path);
  ZrXmlReader reader(path, in);
  if (reader.readXml() == ZrXmlMode::startTag) line.read(reader);
  while (reader.readXml() > ZrXmlMode::endOfInput && reader.mode() != ZrXmlMode::error) {
  }
  return reader.faultCount();
}

TEST(ConveyorExample, ALineRoundTripsThroughAFile) {
  ZrTest::TempDir dir;
  const Line line = sampleLine();
  save(line, dir.file("line.xml"));
  Line back;
  ZrTest::PrintCapture capture;
  EXPECT_EQ(load(dir.file("line.xml"), back), 0u) << capture.all();
  EXPECT_TRUE(back == line) << ZrTest::readFile(dir.file("line.xml"));
  ASSERT_EQ(back.devices.size(), 3u);
  EXPECT_EQ(dynamic_cast<const Motor&>(back.devices[0]).direction.value(), Direction::reverse);
  EXPECT_EQ(back.stations.mapContainer().size(), 2u);

  Line changed = back;
  dynamic_cast<Diverter&>(changed.devices[2]).side = Side::left;
  EXPECT_FALSE(changed == line);
}

TEST(ConveyorExample, AnUnknownDeviceIsCountedAndTheOthersRead) {
  ZrTest::TempDir dir;
  const std::string path = dir.write("line.xml",
                                     "<conveyor xmlns='http://www.zrtoolkit.org/namespace/cell'>\n<devices>\n"
                                     "<motor name='a' direction='reverse'/>\n<robot name='r'><reach>2</reach></robot>\n"
                                     "<diverter name='b' side='right'/>\n</devices>\n</conveyor>\n");
  Line line;
  ZrTest::PrintCapture capture;
  EXPECT_EQ(load(path, line), 1u);
  EXPECT_TRUE(capture.contains("unknown kind: robot; element skipped.\n\tFile: " + path + "\n\tLine: 4\n"))
      << capture.all();
  ASSERT_EQ(line.devices.size(), 2u);
  EXPECT_EQ(dynamic_cast<const Diverter&>(line.devices[1]).side.value(), Side::right);
}

// The schema the model describes takes the document the line writes, devices of every kind included,
// and refuses a device of a kind the list has no creator for.
TEST(ConveyorExample, WrittenLinesValidateAgainstTheLinesSchema) {
  const std::string xmllint = ZR_XMLLINT;
  if (xmllint.empty() || xmllint.find("NOTFOUND") != std::string::npos) GTEST_SKIP() << "xmllint is not installed";
  ZrTest::TempDir dir;
  const Line line = sampleLine();
  ASSERT_TRUE(line.createSchema(dir.file("line.xml"), Line::classToken()));
  std::ostringstream text;
  ZrXmlWriter writer("line.xml", text);
  writer.setNamespaceComplete(true);
  writer.header(Line::classToken(), ZrCell::uri());
  line.write(writer);
  writer.writeEndTag();
  const auto validates = [&](const std::string& document) {
    const std::string path = dir.write("line.xml", document);
    const std::string command =
        xmllint + " --noout --schema '" + dir.file("line.cell.xsd") + "' '" + path + "' 2>/dev/null";
    return std::system(command.c_str()) == 0;
  };
  EXPECT_TRUE(validates(text.str())) << text.str();
  std::string robot = text.str();
  robot.replace(robot.find("<motor "), 7, "<robot ").replace(robot.find("</motor>"), 8, "</robot>");
  EXPECT_FALSE(validates(robot)) << robot;
}

// The model's budget: seven classes in at most 160 non-blank lines, comments included.
TEST(ConveyorExample, TheModelStaysWithinItsLineBudget) {
  std::ifstream header(ZR_CONVEYOR_MODEL_HEADER);
  ASSERT_TRUE(header) << ZR_CONVEYOR_MODEL_HEADER;
  int lines = 0;
  for (std::string line; std::getline(header, line);)
    if (line.find_first_not_of(" \t\r") != std::string::npos) ++lines;
  EXPECT_LE(lines, 160);
}

}  // namespace
