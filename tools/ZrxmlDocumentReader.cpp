#include "ZrxmlDocumentReader.h"

#include <ZrPrint.h>

namespace zrxml {

bool DocumentReader::isWarning(const std::string& message) {
  static const std::string theVersionWarning = "ZrXmlObject::checkVersion warning: ";
  static const std::string theNamespaceWarning = "ZrXmlReader Error: Namespace already declared: ";
  return message.compare(0, theVersionWarning.size(), theVersionWarning) == 0 ||
         message.compare(0, theNamespaceWarning.size(), theNamespaceWarning) == 0;
}

// The position is printed after the step that printed the warning, not from inside the print facility's
// call of noteFault: the item the warning concerns (the root's start tag, the tag with the declaration)
// is the one the step has just read, so its line is the reader's line then.
int DocumentReader::readXml() {
  const int mode = ZrXmlReader::readXml();
  if (m_thePositionPending) {
    m_thePositionPending = false;
    Zr::Print::instance().write(Zr::PrintError, "\tFile: %s\n\tLine: %d\n", filename().c_str(), lineCountOfFile());
  }
  return mode;
}

void DocumentReader::noteFault(int printType, const std::string& message) {
  if (!isWarning(message)) {
    ZrXmlReader::noteFault(printType, message);
    return;
  }
  ++m_theWarnings;
  m_thePositionPending = true;
}

}  // namespace zrxml
