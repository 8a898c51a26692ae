// Writes a sample conveyor line, reads the text back into a second line and says whether the two are
// equal:  conveyor_example [FILE]  (the document goes to FILE, or to standard output).
#include "ZrConveyorModel.h"

#include <ZrXmlReader.h>
#include <ZrXmlWriter.h>

#include <fstream>
#include <iostream>
#include <sstream>

using namespace ZrConveyor;

namespace {
Line sampleLine() {
  Line line;
  line.label = {3, std::string("Packing")};
  BeltSegment segment;
  segment.id = 1;
  segment.length = 4.0;
  segment.speed = 0.5;
  segment.end = ZrVector(4.0, 0.0, 0.0);
  segment.zoneLengths = {1.5, 2.5};
  line.segments.pushBack(segment);
  Station& packing = line.stations.mapContainer()[std::string("packing")];
  packing.cycleTime = 42.5;
  packing.tools = {"taper", "labeller"};
  Motor& motor = line.devices.emplace_back<Motor>();
  motor.name = "infeed";
  motor.power = 0.75;
  Diverter& gate = line.devices.emplace_back<Diverter>();
  gate.name = "gate";
  gate.side = Side::right;
  gate.angle = 30.0;
  return line;
}
}  // namespace

int main(int argc, char** argv) {
  const Line line = sampleLine();
  std::ostringstream text;
  ZrXmlWriter writer("conveyor.xml", text);
  writer.header(Line::classToken(), ZrCell::uri());
  line.write(writer);
  writer.writeEndTag();
  if (argc > 1) {
    std::ofstream(argv[1]) << text.str();
  } else {
    std::cout << text.str();
  }

  std::istringstream in(text.str());
  ZrXmlReader reader("conveyor.xml", in);
  Line back;
  if (reader.readXml() == ZrXmlMode::startTag) back.read(reader);
  const bool same = back == line && reader.faultCount() == 0;
  std::cerr << (same ? "read back the same line\n" : "read back a different line\n");
  return same ? 0 : 1;
}
