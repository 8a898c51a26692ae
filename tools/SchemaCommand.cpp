// zrxml schema: writes the XML Schema files of the example documents, one per namespace, named as the
// writer names them in the documents' xsi:schemaLocation (robotCell.xml pairs with robotCell.cell.xsd).
// The formula's schema includes the terms of the tool's own plug-in, so that documents using them
// validate too.
#include "ZrxmlTool.h"

#include <ZrCellNamespace.h>
#include <ZrFormula.h>
#include <ZrPrint.h>
#include <ZrRobotCell.h>
#include <ZrXmlWriter.h>

#include <sys/stat.h>
#include <unistd.h>

#include <string>

namespace zrxml {

namespace {

bool isDirectory(const std::string& path) {
  struct stat status;
  return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// The document name stands for the schema files: the writer's rule turns it and each namespace into a
// file name in the same directory.
bool writeSchema(const ZrXmlObject& root, const std::string& directory, const char* documentName) {
  const std::string document = directory + "/" + documentName;
  if (!root.createSchema(document, root.token())) return false;
  const std::string written = directory + "/" + ZrXmlWriter::schemaFileName(document, ZrCell::uri());
  if (!isDirectory(directory) || ::access(written.c_str(), R_OK) != 0) return false;
  output("%s\n", written.c_str());
  return true;
}

}  // namespace

int schemaCommand(int argc, char** argv, const PrintRouter& router) {
  if (argc > 1 || (argc == 1 && argv[0][0] == '-')) {
    output("usage: zrxml schema [DIR]\n");
    return ExitUsage;
  }
  const std::string directory = argc == 1 ? argv[0] : ".";
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

  const bool written = writeSchema(ZrRobotCell(), directory, "robotCell.xml") &&
                       writeSchema(formula, directory, "formula.xml");
  if (!written) return ExitCannotOpen;
  return router.faults() != 0 ? ExitFaults : ExitOk;
}

}  // namespace zrxml
