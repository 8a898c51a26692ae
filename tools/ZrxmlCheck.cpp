// zrxml check FILE...: reads each document to its end and prints one summary line per file.
#include "ZrxmlTool.h"

#include <ZrXmlFileReader.h>
#include <ZrXmlReader.h>

#include <cstring>

namespace zrxml {

// --strict checks that each document is well-formed XML 1.0 with namespaces, beyond the forgiving reader.
int checkCommand(int argc, char** argv, const PrintRouter& router) {
  if (argc >= 1 && std::strcmp(argv[0], "--strict") == 0) {
    ZrXmlFileReader::setDefaultStrict(true);
    --argc;
    ++argv;
  }
  if (argc < 1) {
    output("usage: zrxml check [--strict] FILE...\n");
    return ExitUsage;
  }
  int result = ExitOk;
  for (int i = 0; i < argc; ++i) {
    DocumentSummary summary;
    if (!readDocument(argv[i], [](ZrXmlReader&, int) {}, router, summary)) {
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
