#ifndef XML_FILE_READER_TRACE_H
#define XML_FILE_READER_TRACE_H

#include <ZrTestSupport.h>
#include <ZrXmlFileReader.h>

#include <sstream>
#include <string>
#include <vector>

namespace ZrTest {

// One event in a compact text form: "1 name a=v", "3 name", "2 name", "4 name 'content'", "0", "5".
// Attributes are taken (in name order) so that the reader has none left over.
inline std::string describeEvent(ZrXmlFileReader& reader, int mode) {
  std::string text = std::to_string(mode);
  if (mode == 1 || mode == 3) {
    text += " " + reader.element().token();
    while (reader.remainingNumOfAttributes() > 0) {
      std::string name = reader.attributeName().token();
      text += " " + name + "=" + reader.attributeValue();
    }
  } else if (mode == 2 || mode == 4) {
    text += " " + reader.endTag().token();
    if (mode == 4) text += " '" + reader.content() + "'";
  }
  return text;
}

// A printed message reduced to its fault text and line: "what@line" for the reader's frame, the text
// as printed otherwise.
inline std::string shortMessage(const std::string& message) {
  const std::string head = "ZrXmlFileReader Error: ";
  size_t file = message.find("\n\tFile: ");
  size_t line = message.find("\n\tLine: ");
  if (message.compare(0, head.size(), head) != 0 || file == std::string::npos || line == std::string::npos)
    return message;
  std::string lineText = message.substr(line + 8);
  if (!lineText.empty() && lineText.back() == '\n') lineText.pop_back();
  return message.substr(head.size(), file - head.size()) + "@" + lineText;
}

struct Trace {
  std::vector<std::string> events;
  std::vector<std::string> messages;  // shortMessage of each, including the reader's destructor
  int lines = 0;
};

// Reads a whole document, going on after a 0 that came before the end of input, and stopping at mode 5.
inline Trace traceDocument(const std::string& document, size_t maxEvents = 100000) {
  Trace trace;
  PrintCapture capture;
  {
    std::istringstream in(document);
    ZrXmlFileReader reader("doc.xml", in);
    for (size_t i = 0; i < maxEvents; ++i) {
      int mode = reader.readXml();
      trace.events.push_back(describeEvent(reader, mode));
      if (mode == 5 || (mode == 0 && reader.atEndOfInput())) break;
    }
    trace.lines = reader.lineCountOfFile();
  }
  for (const auto& message : capture.texts()) trace.messages.push_back(shortMessage(message));
  return trace;
}

// Reads a document with the tokenizer's class default for strict mode set as asked, and back to off.
inline Trace traceIn(bool strict, const std::string& document) {
  ZrXmlFileReader::setDefaultStrict(strict);
  Trace trace = traceDocument(document);
  ZrXmlFileReader::setDefaultStrict(false);
  return trace;
}

}  // namespace ZrTest

#endif
