// zrxml demo: reads a robot-cell document into the example model and writes it back to standard
// output (or lists its values), or reads a formula document, prints the formula and evaluates it,
// showing the object model end to end.
#include "ZrxmlTool.h"

#include <ZrDllLoader.h>
#include <ZrFormulaDocument.h>
#include <ZrPrint.h>
#include <ZrRobotCellDocument.h>
#include <ZrXmlReader.h>

#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <string>

namespace zrxml {

namespace {

std::string executableDirectory() {
  char path[PATH_MAX];
  const ssize_t length = ::readlink("/proc/self/exe", path, sizeof(path) - 1);
  if (length <= 0) return std::string();
  std::string text(path, static_cast<size_t>(length));
  return text.substr(0, text.find_last_of('/'));
}

// NAME=VALUE, the value a number in C notation.
bool parseBinding(const char* text, ZrTerm::Bindings& bindings) {
  const char* equals = std::strchr(text, '=');
  if (!equals || equals == text || equals[1] == '\0') return false;
  char* end = nullptr;
  errno = 0;
  const double value = std::strtod(equals + 1, &end);
  if (*end != '\0' || errno != 0) return false;
  bindings[std::string(text, equals)] = value;
  return true;
}

}  // namespace

// Documents may name plug-ins only by name; the loader looks for them on its search path alone. The
// tool adds the directory of its own plug-ins: the build tree's when it runs from the build tree,
// otherwise the installed one, found relative to the installed binary.
void addOwnPluginDirectory() {
  const std::string directory = executableDirectory();
  if (directory.empty()) return;
  if (directory == ZR_TOOL_BUILD_DIR)
    ZrDllLoader::addSearchDirectory(ZR_PLUGIN_BUILD_DIR);
  else
    ZrDllLoader::addSearchDirectory(directory + "/" ZR_PLUGIN_DIR_FROM_BINDIR);
}

int demoCommand(int argc, char** argv, const PrintRouter& router) {
  bool listValues = false;
  bool formula = false;
  ZrTerm::Bindings bindings;
  std::string path;
  bool usage = false;
  for (int i = 0; i < argc && !usage; ++i) {
    if (std::strcmp(argv[i], "--values") == 0 && !listValues) {
      listValues = true;
    } else if (std::strcmp(argv[i], "--formula") == 0 && !formula) {
      formula = true;
    } else if (takeWrittenFormOption(argv[i]) || takeProfileOption(argc, argv, i)) {
    } else if (std::strcmp(argv[i], "--check-values") == 0) {
      ZrXmlReader::setDefaultCheckValues(true);
    } else if (formula && std::strchr(argv[i], '=')) {
      usage = !parseBinding(argv[i], bindings);
    } else if (path.empty() && argv[i][0] != '-') {
      path = argv[i];
    } else {
      usage = true;
    }
  }
  if (usage || (formula && listValues)) {
    output("usage: zrxml demo [--values] [--profile standard|toolkit] [--check-values] %s [FILE]\n"
           "       zrxml demo --formula [FILE] [NAME=VALUE...]\n",
           theWrittenFormOptions);
    return ExitUsage;
  }
  if (path.empty()) path = formula ? ZrFormulaDocument::samplePath() : ZrRobotCellDocument::samplePath();
  if (!std::ifstream(path.c_str())) {
    Zr::Print::instance().write(Zr::PrintError, "zrxml Error: cannot open file.\n\tFile: %s\n", path.c_str());
    return ExitCannotOpen;
  }
  int status = 0;
  if (formula) {
    addOwnPluginDirectory();
    status = ZrFormulaDocument::demo(path, bindings, std::cout);
  } else {
    status = ZrRobotCellDocument::demo(path, std::cout, listValues);
  }
  std::cout.flush();
  return status != 0 || router.faults() != 0 ? ExitFaults : ExitOk;
}

}  // namespace zrxml
