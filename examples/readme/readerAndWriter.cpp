// What ZrXml::load and ZrXml::save do underneath, with a reader and a writer of one's own: the lines
// README.md shows under "Underneath". The program reads the shipped robot cell sample (copied to
// cell.xml in the directory it runs in), writes it to copy.xml, and checks that the copy holds the bytes
// ZrXml::save writes and reads back as the same cell.
#include <ZrCellNamespace.h>
#include <ZrRobotCell.h>
#include <ZrRobotCellDocument.h>
#include <ZrXmlDocument.h>
#include <ZrXmlReader.h>
#include <ZrXmlWriter.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <string>

namespace {
// Reads cell.xml into cell and writes cell to copy.xml; true when reading reported nothing.
bool copyThroughAReaderAndAWriter(ZrRobotCell& cell) {
  std::ifstream in("cell.xml");
  ZrXmlReader reader("cell.xml", in);
  const int mode = reader.readXml();                 // positioned on the root's start tag,
  if (mode == ZrXmlMode::startTag || mode == ZrXmlMode::emptyElement) cell.read(reader);  // or on an empty root
  reader.finish();                                   // the documents' end checks; reader.faults() holds all

  std::ofstream out("copy.xml");
  ZrXmlWriter writer("copy.xml", out);
  writer.header(cell.token(), ZrCell::uri());        // declaration, namespaces, schema location; root left open
  cell.write(writer);                                // the root's attributes and children
  writer.writeEndTag();                              // closes the root
  return reader.faults().empty();
}

std::string fileText(const char* path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}
}  // namespace

int main() {
  std::filesystem::copy_file(ZrRobotCellDocument::samplePath(), "cell.xml",
                             std::filesystem::copy_options::overwrite_existing);
  ZrRobotCell cell;
  const bool readClean = copyThroughAReaderAndAWriter(cell);

  std::ostringstream saved;
  ZrXml::save(saved, "copy.xml", cell);
  ZrRobotCell copy;
  const bool same = readClean && fileText("copy.xml") == saved.str() && ZrXml::load("copy.xml", copy).ok() && copy == cell;
  std::cerr << (same ? "the copy holds what ZrXml::save writes\n" : "the copy differs from what ZrXml::save writes\n");
  return same ? 0 : 1;
}
