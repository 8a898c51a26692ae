// A whole document in one call each way: the lines README.md shows under "Loading and saving". The
// program copies the shipped robot cell sample to cell.xml in the directory it runs in, loads and saves
// it there, and checks that the saved document loads back as the same cell.
#include <ZrRobotCell.h>
#include <ZrRobotCellDocument.h>
#include <ZrXmlDocument.h>

#include <filesystem>
#include <iostream>

int main() {
  std::filesystem::copy_file(ZrRobotCellDocument::samplePath(), "cell.xml",
                             std::filesystem::copy_options::overwrite_existing);

  ZrRobotCell cell;  // the root's element name is the class's: robotCell
  const ZrXmlReadResult result = ZrXml::load("cell.xml", cell);  // a missing file, no root, another root: faults
  if (!result.ok())
    for (const ZrXmlFault& fault : result.faults()) std::cerr << fault.file << ':' << fault.line << ' ' << fault.text;
  ZrXml::save("cell.xml", cell);  // written beside, then renamed into place: never a partial file

  ZrRobotCell saved;
  const bool same = result.ok() && ZrXml::load("cell.xml", saved).ok() && saved == cell;
  std::cerr << (same ? "the saved cell loads back the same\n" : "the saved cell loads back different\n");
  return same ? 0 : 1;
}
