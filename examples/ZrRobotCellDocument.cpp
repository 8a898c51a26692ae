#include "ZrRobotCellDocument.h"

#include "ZrCellNamespace.h"

#include <ZrPrint.h>
#include <ZrXmlReader.h>
#include <ZrXmlValueListVisitor.h>
#include <ZrXmlWriter.h>

#include <fstream>

#ifndef ZR_ROBOT_CELL_SAMPLE
#define ZR_ROBOT_CELL_SAMPLE "robotCell.xml"
#endif

ZrBoolean ZrRobotCellDocument::read(std::istream& in, const std::string& filename, ZrRobotCell& cell, ZrU32* faultCount) {
  ZrXmlReader reader(filename, in);
  const int mode = reader.readXml();
  if (mode != ZrXmlMode::startTag && mode != ZrXmlMode::emptyElement) {
    Zr::Print::instance().write(Zr::PrintError, "ZrRobotCellDocument Error: no root element found.\n\tFile: %s\n",
                                filename.c_str());
    return false;
  }
  const ZrToken root = ZrRobotCell::rootToken();
  if (reader.element().tokenText() != root.tokenText()) {
    Zr::Print::instance().write(Zr::PrintError,
                                "ZrRobotCellDocument Error: root element is %s, not %s.\n\tFile: %s\n",
                                reader.element().c_str(), root.c_str(), filename.c_str());
    return false;
  }
  // The reader has consumed the root's start tag; the cell reads its attributes and children.
  const ZrBoolean result = cell.read(reader);
  if (faultCount) *faultCount = reader.faultCount();
  return result;
}

ZrBoolean ZrRobotCellDocument::readFile(const std::string& filename, ZrRobotCell& cell, ZrU32* faultCount) {
  std::ifstream in(filename.c_str(), std::ios::in | std::ios::binary);
  if (!in) {
    Zr::Print::instance().write(Zr::PrintError, "ZrRobotCellDocument Error: cannot open %s.\n", filename.c_str());
    return false;
  }
  return read(in, filename, cell, faultCount);
}

// header() leaves the root's start tag open: the cell writes the root's attributes and children into
// it, and one end tag closes the document.
ZrBoolean ZrRobotCellDocument::write(const ZrRobotCell& cell, std::ostream& out, const std::string& filename) {
  ZrXmlWriter writer(filename, out);
  writer.header(ZrRobotCell::rootToken(), ZrCell::uri());
  const ZrBoolean result = cell.write(writer);
  writer.writeEndTag();
  out.flush();
  return result && out.good();
}

void ZrRobotCellDocument::listValues(const ZrRobotCell& cell, std::ostream& out) {
  ZrXmlValueListVisitor lister(out, ZrRobotCell::rootToken().tokenText());
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
