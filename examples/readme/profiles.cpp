// The standard profile on both sides: the lines README.md shows under "Settings". The program saves the
// shipped robot cell sample in the standard profile to cell.xml in the directory it runs in, and checks
// that the document is namespace-complete UTF-8 and loads back, values checked, as the same cell.
#include <ZrRobotCell.h>
#include <ZrRobotCellDocument.h>
#include <ZrXmlDocument.h>

#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

namespace {
std::string fileText(const char* path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

bool namespaceCompleteUtf8(const std::string& document) {
  return document.rfind("<?xml version=\"1.0\" encoding=\"UTF-8\"?>", 0) == 0 &&
         document.find("<robotCell xmlns=\"http://www.zrtoolkit.org/namespace/cell\"") != std::string::npos;
}
}  // namespace

int main() {
  ZrRobotCell cell;
  if (!ZrXml::load(ZrRobotCellDocument::samplePath(), cell).ok()) return 1;

  ZrXml::save("cell.xml", cell, ZrXmlWriteOptions::standard());  // any XML tool reads it
  ZrRobotCell copy;
  const ZrXmlReadResult result = ZrXml::load("cell.xml", copy, ZrXmlReadOptions::standard().setMaxIncludeDepth(8));

  const bool same = result.ok() && copy == cell && namespaceCompleteUtf8(fileText("cell.xml"));
  std::cerr << (same ? "the standard profile reads back what it wrote\n" : "the standard profile reads back something else\n");
  return same ? 0 : 1;
}
