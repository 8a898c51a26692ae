// zrxml events FILE: one line per event.
#include "ZrxmlTool.h"

#include <ZrXmlReader.h>

namespace zrxml {

namespace {

const char* modeName(int mode) {
  static const char* const names[] = {"end", "start", "end-tag", "empty", "content", "error"};
  return mode >= 0 && mode <= 5 ? names[mode] : "unknown";
}

// Line breaks, tabs and backslashes written as \n, \r, \t and \\, so that an event stays on one line
// and the text can still be told apart from a written escape.
std::string escaped(const std::string& text) {
  std::string out;
  out.reserve(text.size());
  for (char c : text) {
    switch (c) {
      case '\n': out += "\\n"; break;
      case '\r': out += "\\r"; break;
      case '\t': out += "\\t"; break;
      case '\\': out += "\\\\"; break;
      default: out += c;
    }
  }
  return out;
}

std::string nameOf(const ZrToken& token) {
  return token.namespaceText().empty() ? token.tokenText() : token.namespaceAndToken();
}

// "line 12: 1 start robot mass="12.5" name="r1"" and the like; attributes in name order, values and
// content escaped.
// Events of an included document name that document before the line.
void printEvent(ZrXmlReader& reader, int mode) {
  std::string line = reader.depth() > 1 ? reader.filename() + " " : std::string();
  line += "line " + std::to_string(reader.lineCountOfFile()) + ": " + std::to_string(mode) + " " + modeName(mode);
  if (mode == 1 || mode == 3) {
    line += " " + nameOf(reader.element());
    while (reader.remainingNumOfAttributes() > 0) {
      std::string name = nameOf(reader.attributeName());
      line += " " + name + "=\"" + escaped(reader.attributeValue()) + "\"";
    }
  } else if (mode == 2 || mode == 4) {
    line += " " + nameOf(reader.currentFileReader()->endTag());
    if (mode == 4) line += " \"" + escaped(reader.content()) + "\"";
  }
  output("%s\n", line.c_str());
}

}  // namespace

int eventsCommand(int argc, char** argv, const PrintRouter&) {
  if (argc != 1) {
    output("usage: zrxml events FILE\n");
    return ExitUsage;
  }
  DocumentSummary summary;
  if (!readDocument(argv[0], printEvent, summary)) return ExitCannotOpen;
  return summary.faults ? ExitFaults : ExitOk;
}

}  // namespace zrxml
