#include "ZrRobotCellDocument.h"

#include <ZrXmlDocument.h>
#include <ZrXmlValueListVisitor.h>

#ifndef ZR_ROBOT_CELL_SAMPLE
#define ZR_ROBOT_CELL_SAMPLE "robotCell.xml"
#endif

namespace {
ZrBoolean rootRead(const ZrXmlReadResult& result, ZrU32* faultCount) {
  if (faultCount) *faultCount = result.faultCount();
  return result.rootRead();
}
}  // namespace

ZrBoolean ZrRobotCellDocument::read(std::istream& in, const std::string& filename, ZrRobotCell& cell, ZrU32* faultCount) {
  return rootRead(ZrXml::load(in, filename, cell), faultCount);
}

ZrBoolean ZrRobotCellDocument::readFile(const std::string& filename, ZrRobotCell& cell, ZrU32* faultCount) {
  return rootRead(ZrXml::load(filename, cell), faultCount);
}

ZrBoolean ZrRobotCellDocument::write(const ZrRobotCell& cell, std::ostream& out, const std::string& filename) {
  return ZrXml::save(out, filename, cell);
}

void ZrRobotCellDocument::listValues(const ZrRobotCell& cell, std::ostream& out) {
  ZrXmlValueListVisitor lister(out, ZrRobotCell::classToken().tokenText());
  lister.list(cell);
}

std::string ZrRobotCellDocument::samplePath() { return ZR_ROBOT_CELL_SAMPLE; }

int ZrRobotCellDocument::demo(const std::string& filename, std::ostream& out, bool list) {
  const std::string path = filename.empty() ? samplePath() : filename;
  ZrRobotCell cell;
  ZrU32 faults = 0;
  if (!readFile(path, cell, &faults)) return 1;
  const bool shown = list ? (listValues(cell, out), out.good()) : write(cell, out, path);
  return shown && faults == 0 ? 0 : 1;
}
