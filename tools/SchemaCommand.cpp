// zrxml schema: writes the XML Schema files of the example documents, one per namespace, named as the
// writer names them in the documents' xsi:schemaLocation (robotCell.xml pairs with robotCell.cell.xsd).
// The formula's schema includes the terms of the tool's own plug-in, so that documents using them
// validate too. With --namespace-complete the sample documents are written beside their schemas in the
// namespace-complete form, ready for a validator: xmllint --schema DIR/robotCell.cell.xsd DIR/robotCell.xml.
#include "ZrxmlTool.h"

#include <ZrCellNamespace.h>
#include <ZrFormula.h>
#include <ZrFormulaDocument.h>
#include <ZrFileReplace.h>
#include <ZrPrint.h>
#include <ZrRobotCell.h>
#include <ZrRobotCellDocument.h>
#include <ZrXmlWriter.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <sstream>
#include <string>

namespace zrxml {

namespace {

bool isDirectory(const std::string& path) {
  struct stat status;
  return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// The document name stands for the schema files: the writer's rule turns it and each namespace into a
// file name in the same directory. The generator reports a file it could not write (and leaves the one
// there untouched), so a schema is listed only when writing it reported nothing.
bool writeSchema(const ZrXmlObject& root, const std::string& directory, const char* documentName,
                 const PrintRouter& router) {
  const std::string document = directory + "/" + documentName;
  const std::size_t faultsBefore = router.faults();
  root.createSchema(document, root.token());
  const std::string written = directory + "/" + ZrXmlWriter::schemaFileName(document, ZrCell::uri());
  if (router.faults() != faultsBefore || ::access(written.c_str(), R_OK) != 0) return false;
  output("%s\n", written.c_str());
  return true;
}

// Reads a sample document into root and writes it again as directory/name, replacing the file whole.
template <class Document, class Root>
bool writeSample(Root& root, const std::string& directory, const char* name) {
  const std::string path = directory + "/" + name;
  if (!Document::readFile(Document::samplePath(), root)) return false;
  std::ostringstream text;
  if (!Document::write(root, text, path)) return false;
  if (!ZrReplaceFile(path, text.str())) {
    Zr::Print::instance().write(Zr::PrintError, "zrxml Error: cannot write file: %s\n\tFile: %s\n", std::strerror(errno),
                                path.c_str());
    return false;
  }
  output("%s\n", path.c_str());
  return true;
}

}  // namespace

int schemaCommand(int argc, char** argv, const PrintRouter& router) {
  std::string directory;
  bool usage = false;
  for (int i = 0; i < argc && !usage; ++i) {
    if (std::string(argv[i]) == "--namespace-complete")
      ZrXmlWriter::setDefaultNamespaceComplete(true);
    else if (takeProfileOption(argc, argv, i))
      continue;
    else if (directory.empty() && argv[i][0] != '-')
      directory = argv[i];
    else
      usage = true;
  }
  if (usage) {
    output("usage: zrxml schema [--namespace-complete] [--profile standard|toolkit] [DIR]\n");
    return ExitUsage;
  }
  if (directory.empty()) directory = ".";
  if (!isDirectory(directory)) {
    Zr::Print::instance().write(Zr::PrintError, "zrxml Error: not a directory.\n\tFile: %s\n", directory.c_str());
    return ExitCannotOpen;
  }

  ZrFormula formula;
  ZrXmlBaseVariableCompoundType::LibraryList libraries;
  libraries.pushBack(ZrXmlBasicType<std::string>("zrExpressionExtras"));
  formula.setAddLibraries(libraries);
  addOwnPluginDirectory();
  formula.processLibraries();

  bool written = writeSchema(ZrRobotCell(), directory, "robotCell.xml", router) &&
                 writeSchema(formula, directory, "formula.xml", router);
  if (written && ZrXmlWriter::defaultNamespaceComplete()) {
    ZrRobotCell cell;
    ZrFormula sampleFormula;
    written = writeSample<ZrRobotCellDocument>(cell, directory, "robotCell.xml") &&
              writeSample<ZrFormulaDocument>(sampleFormula, directory, "formula.xml");
  }
  if (!written) return ExitCannotOpen;
  return router.faults() != 0 ? ExitFaults : ExitOk;
}

}  // namespace zrxml
