// zrxml check [--strict] [--warnings-as-faults] [-j N] [--schema XSD] FILE...: reads each document to its
// end and prints one summary line per file; --strict adds the well-formedness checks, --schema validates
// each document against XSD, -j checks several files at once.
#include "ZrxmlDocumentReader.h"
#include "ZrxmlParallel.h"
#include "ZrxmlSchemaTree.h"
#include "ZrxmlTool.h"

#include <ZrXmlFileReader.h>
#include <ZrXmlReader.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace zrxml {

namespace {

const char* const theUsage = "usage: zrxml check [--strict] [--warnings-as-faults] [-j N] [--schema XSD] FILE...\n";

struct CheckOptions {
  std::string schemaPath;
  bool warningsAsFaults = false;
  unsigned jobs = 0;  // 0: one per processor
  std::vector<const char*> files;
};

// The validation part of a summary line: the number of violations, or that the document was not validated.
std::string validationText(long violations) {
  if (violations < 0) return ", not validated";
  return ", " + std::to_string(violations) + " schema violation" + (violations == 1 ? "" : "s");
}

std::string warningText(std::size_t warnings) {
  if (warnings == 0) return std::string();
  return ", " + std::to_string(warnings) + " warning" + (warnings == 1 ? "" : "s");
}

// "-j N" or "-jN": a count of at least 1. False for anything else.
bool takeJobs(int argc, char** argv, int& i, unsigned& jobs) {
  const char* text = argv[i][2] != '\0' ? argv[i] + 2 : (i + 1 < argc ? argv[++i] : nullptr);
  if (!text) return false;
  char* end = nullptr;
  const unsigned long count = std::strtoul(text, &end, 10);
  if (*text == '\0' || *end != '\0' || count == 0 || count > 4096) return false;
  jobs = static_cast<unsigned>(count);
  return true;
}

bool parseOptions(int argc, char** argv, CheckOptions& options) {
  for (int i = 0; i < argc; ++i) {
    if (std::strcmp(argv[i], "--schema") == 0 && options.schemaPath.empty() && i + 1 < argc) {
      options.schemaPath = argv[++i];
    } else if (std::strcmp(argv[i], "--strict") == 0) {
      ZrXmlFileReader::setDefaultStrict(true);
    } else if (std::strcmp(argv[i], "--warnings-as-faults") == 0) {
      options.warningsAsFaults = true;
    } else if (std::strncmp(argv[i], "-j", 2) == 0) {
      if (!takeJobs(argc, argv, i, options.jobs)) return false;
    } else if (argv[i][0] == '-' && argv[i][1] != '\0') {
      return false;
    } else {
      options.files.push_back(argv[i]);
    }
  }
  return !options.files.empty();
}

// Reads one document, validates it when asked, and prints its summary line. Returns its exit status.
int checkFile(const char* file, const CheckOptions& options, SchemaValidator* validator) {
  DocumentSummary summary;
  // With a schema, the document is also built as it is read, for a document that the file alone would
  // not validate as the library reads it (the toolkit's form, includes).
  std::unique_ptr<SchemaTree> tree(validator ? new SchemaTree(file) : nullptr);
  const auto onEvent = [&tree](ZrXmlReader& reader, int mode) {
    if (tree) tree->onEvent(reader, mode);
  };
  if (!readDocument(file, onEvent, summary)) {
    output("%s: cannot be opened\n", file);
    return ExitCannotOpen;
  }
  if (options.warningsAsFaults) {
    summary.faults += summary.warnings;
    summary.warnings = 0;
  }
  long violations = 0;
  if (validator) violations = tree->needed() ? validator->validate(file, *tree) : validator->validate(file);
  output("%s: %s%s, %zu events, %d lines, %zu fault%s%s\n", file,
         summary.faults ? "NOT well formed" : (violations ? "NOT valid" : "ok"), warningText(summary.warnings).c_str(),
         summary.events, summary.lines, summary.faults, summary.faults == 1 ? "" : "s",
         validator ? validationText(violations).c_str() : "");
  return summary.faults != 0 || violations != 0 ? ExitFaults : ExitOk;
}

// A file that cannot be opened outweighs faults in other files.
int combined(int result, int status) {
  if (status == ExitCannotOpen || result == ExitCannotOpen) return ExitCannotOpen;
  return status != ExitOk ? ExitFaults : result;
}

}  // namespace

// --strict checks that each document is well-formed XML 1.0 with namespaces, beyond the forgiving reader.
int checkCommand(int argc, char** argv, const PrintRouter&) {
  CheckOptions options;
  if (!parseOptions(argc, argv, options)) {
    output("%s", theUsage);
    return ExitUsage;
  }
  std::unique_ptr<SchemaValidator> validator;
  if (!options.schemaPath.empty()) {
    validator.reset(new SchemaValidator(options.schemaPath));
    if (!SchemaValidator::available()) return ExitUsage;
    if (!validator->usable()) return ExitCannotOpen;
  }
  const unsigned jobs = options.jobs ? options.jobs : processorCount();
  int result = ExitOk;
  if (jobs == 1 || options.files.size() == 1) {
    for (const char* file : options.files) result = combined(result, checkFile(file, options, validator.get()));
    return result;
  }
  const auto checkOne = [&options, &validator](std::size_t index) {
    return checkFile(options.files[index], options, validator.get());
  };
  for (int status : runInChildProcesses(options.files.size(), jobs, checkOne)) result = combined(result, status);
  return result;
}

}  // namespace zrxml
