// zrxml check [--strict] [--schema XSD] FILE...: reads each document to its end and prints one summary
// line per file; --strict adds the well-formedness checks, --schema validates each document against XSD.
#include "ZrxmlTool.h"

#include <ZrXmlFileReader.h>
#include <ZrXmlReader.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace zrxml {

namespace {

const char* const theUsage = "usage: zrxml check [--strict] [--schema XSD] FILE...\n";

// The validation part of a summary line: the number of violations, or that the document was not validated.
std::string validationText(long violations) {
  if (violations < 0) return ", not validated";
  return ", " + std::to_string(violations) + " schema violation" + (violations == 1 ? "" : "s");
}

}  // namespace

// --strict checks that each document is well-formed XML 1.0 with namespaces, beyond the forgiving reader.
int checkCommand(int argc, char** argv, const PrintRouter&) {
  std::string schemaPath;
  std::vector<const char*> files;
  for (int i = 0; i < argc; ++i) {
    if (std::strcmp(argv[i], "--schema") == 0 && schemaPath.empty() && i + 1 < argc) {
      schemaPath = argv[++i];
    } else if (std::strcmp(argv[i], "--strict") == 0) {
      ZrXmlFileReader::setDefaultStrict(true);
    } else if (argv[i][0] == '-' && argv[i][1] != '\0') {
      output("%s", theUsage);
      return ExitUsage;
    } else {
      files.push_back(argv[i]);
    }
  }
  if (files.empty()) {
    output("%s", theUsage);
    return ExitUsage;
  }
  std::unique_ptr<SchemaValidator> validator;
  if (!schemaPath.empty()) {
    validator.reset(new SchemaValidator(schemaPath));
    if (!SchemaValidator::available()) return ExitUsage;
    if (!validator->usable()) return ExitCannotOpen;
  }
  int result = ExitOk;
  for (const char* file : files) {
    DocumentSummary summary;
    if (!readDocument(file, [](ZrXmlReader&, int) {}, summary)) {
      output("%s: cannot be opened\n", file);
      result = ExitCannotOpen;
      continue;
    }
    const long violations = validator ? validator->validate(file) : 0;
    const bool faulty = summary.faults != 0 || violations != 0;
    output("%s: %s, %zu events, %d lines, %zu fault%s%s\n", file,
           summary.faults ? "NOT well formed" : (violations ? "NOT valid" : "ok"), summary.events, summary.lines,
           summary.faults, summary.faults == 1 ? "" : "s", validator ? validationText(violations).c_str() : "");
    if (faulty && result == ExitOk) result = ExitFaults;
  }
  return result;
}

}  // namespace zrxml
