// zrxml check FILE...: reads each document to its end and prints one summary line per file.
#include "ZrxmlTool.h"

#include <ZrXmlReader.h>

namespace zrxml {

int checkCommand(int argc, char** argv, const PrintRouter&) {
  if (argc < 1) {
    output("usage: zrxml check FILE...\n");
    return ExitUsage;
  }
  int result = ExitOk;
  for (int i = 0; i < argc; ++i) {
    DocumentSummary summary;
    if (!readDocument(argv[i], [](ZrXmlReader&, int) {}, summary)) {
      output("%s: cannot be opened\n", argv[i]);
      result = ExitCannotOpen;
      continue;
    }
    output("%s: %s, %zu events, %d lines, %zu fault%s\n", argv[i], summary.faults ? "NOT well formed" : "ok",
           summary.events, summary.lines, summary.faults, summary.faults == 1 ? "" : "s");
    if (summary.faults && result == ExitOk) result = ExitFaults;
  }
  return result;
}

}  // namespace zrxml
