#ifndef ZRXML_TOOL_H
#define ZRXML_TOOL_H

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <streambuf>
#include <string>

class ZrXmlReader;

// Shared pieces of the zrxml commands. Each command lives in its own source file and is entered in the
// dispatch table of zrxml.cpp.
namespace zrxml {

// Exit codes of every command.
enum ExitCode { ExitOk = 0, ExitFaults = 1, ExitCannotOpen = 2, ExitUsage = 64 };

// A command receives the arguments that follow its name and the router that counts faults.
class PrintRouter;
typedef int (*CommandFunction)(int argc, char** argv, const PrintRouter& router);

struct Command {
  const char* name;
  const char* arguments;
  const char* summary;
  CommandFunction run;
};

int checkCommand(int argc, char** argv, const PrintRouter& router);
int eventsCommand(int argc, char** argv, const PrintRouter& router);
int demoCommand(int argc, char** argv, const PrintRouter& router);
int schemaCommand(int argc, char** argv, const PrintRouter& router);

// The written-form options of the commands that write documents: --namespace-complete, --lossless-reals
// and --escape-markup switch the writer's class default of the same name on. True when `argument` was one.
bool takeWrittenFormOption(const char* argument);
// "--profile standard" or "--profile toolkit" at argv[i]: sets the writer's and the reader's class defaults
// to that profile and steps i past the name. False, changing nothing, for anything else.
bool takeProfileOption(int argc, char** argv, int& i);
extern const char* const theWrittenFormOptions;  // for usage lines

// Puts the directory of the tool's own plug-ins on the library's plug-in search path.
void addOwnPluginDirectory();

// Installs itself as the print sink while it lives: information (the tool's own output) goes to standard
// output, everything else to standard error. Error-type messages that open a report (not the detail lines
// that begin with a tab) are counted as faults.
class PrintRouter {
 public:
  PrintRouter();
  ~PrintRouter();
  PrintRouter(const PrintRouter&) = delete;
  PrintRouter& operator=(const PrintRouter&) = delete;

  std::size_t faults() const { return m_theFaults; }

 private:
  void route(int printType, const std::string& message);

  std::size_t m_theFaults = 0;
  bool m_theProgressShown = false;
};

// The tool's standard output. Output that cannot be written (a closed pipe, a full disk) ends the
// command at once, wherever it stands: "zrxml Error: standard output could not be written: REASON" on
// standard error and exit status 1. Every write is looked at, so a closed pipe is noticed by the next
// write that reaches it (at most a stdio buffer later), not at the end of a long document.
void writeStandardOutput(const char* data, std::size_t size);
void flushStandardOutput();

// Sends std::cout through writeStandardOutput while it lives (the demo's documents are written there).
class StandardOutput {
 public:
  StandardOutput();
  ~StandardOutput();
  StandardOutput(const StandardOutput&) = delete;
  StandardOutput& operator=(const StandardOutput&) = delete;

 private:
  class Buffer;
  std::unique_ptr<Buffer> m_theBuffer;
  std::streambuf* m_theOriginal;
};

// Prints the tool's own output (one printf-style line) through the print facility.
void output(const char* format, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 1, 2)))
#endif
    ;

// A progress line on standard error for large files, shown only when standard error is a terminal.
class Progress {
 public:
  Progress(const std::string& path, std::size_t totalBytes);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  bool enabled() const { return m_theEnabled; }
  void update(std::size_t bytesRead);

 private:
  std::string m_thePath;
  std::size_t m_theTotal;
  bool m_theEnabled;
  std::chrono::steady_clock::time_point m_theLastShown;
};

// What reading one document found.
struct DocumentSummary {
  std::size_t events = 0;
  int lines = 0;
  std::size_t faults = 0;
  std::size_t warnings = 0;  // advisory reports, not counted among the faults (see ZrxmlDocumentReader.h)
};

// Reads the document at `path` (a file, or an http:// reference) to its end through the reader, which
// follows include elements, calling `onEvent` after every event (the handler may take the attributes;
// those it leaves are taken afterwards, since an unread attribute is no fault of the document). Reading
// goes on after a 0 that came before the end of the input, and stops in error mode. Returns false, after
// a report, when the document cannot be opened (a directory cannot). The summary counts the faults that
// the reader counted while reading, and apart from them its warnings.
bool readDocument(const std::string& path, const std::function<void(ZrXmlReader&, int)>& onEvent,
                  DocumentSummary& summary);

// Validates documents against one XML Schema with a real validator (libxml2), reporting each violation
// as a fault with the validator's text, file and line. Built without libxml2 it reports, once, that
// validation is unavailable, and validates nothing.
class SchemaValidator {
 public:
  explicit SchemaValidator(const std::string& schemaPath);
  ~SchemaValidator();
  SchemaValidator(const SchemaValidator&) = delete;
  SchemaValidator& operator=(const SchemaValidator&) = delete;

  static bool available();
  bool usable() const { return m_theSchema != nullptr; }
  // The number of violations in the document at path; -1 when it could not be validated at all.
  long validate(const std::string& path);
  // The same for the document as it was read (see ZrxmlSchemaTree.h), each violation named by the file
  // and line of its element.
  long validate(const std::string& path, const class SchemaTree& tree);

  // What the validator's reports go to: their count, and the file they concern.
  struct Faults {
    std::size_t count = 0;
    std::string file;
    const class SchemaTree* tree = nullptr;  // where the elements of a tree being validated come from
  };

 private:
  void* m_theSchema = nullptr;  // the parsed schema (libxml2's type, kept out of this header)
  Faults m_theFaults;
};

}  // namespace zrxml

#endif
