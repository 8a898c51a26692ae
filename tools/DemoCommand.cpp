// zrxml demo: reads a robot-cell document into the example model and writes it back to standard
// output (or lists its values), showing the object model end to end.
#include "ZrxmlTool.h"

#include <ZrPrint.h>
#include <ZrRobotCellDocument.h>

#include <cstring>
#include <fstream>
#include <iostream>
#include <string>

namespace zrxml {

int demoCommand(int argc, char** argv, const PrintRouter& router) {
  bool listValues = false;
  std::string path;
  for (int i = 0; i < argc; ++i) {
    if (std::strcmp(argv[i], "--values") == 0 && !listValues) {
      listValues = true;
    } else if (path.empty() && argv[i][0] != '-') {
      path = argv[i];
    } else {
      output("usage: zrxml demo [--values] [FILE]\n");
      return ExitUsage;
    }
  }
  if (path.empty()) path = ZrRobotCellDocument::samplePath();
  if (!std::ifstream(path.c_str())) {
    Zr::Print::instance().write(Zr::PrintError, "zrxml Error: cannot open file.\n\tFile: %s\n", path.c_str());
    return ExitCannotOpen;
  }
  const int status = ZrRobotCellDocument::demo(path, std::cout, listValues);
  std::cout.flush();
  return status != 0 || router.faults() != 0 ? ExitFaults : ExitOk;
}

}  // namespace zrxml
