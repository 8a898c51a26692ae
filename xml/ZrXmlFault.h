#ifndef ZR_XML_FAULT_H
#define ZR_XML_FAULT_H

#include <cstdint>
#include <string>

// One fault reported while a reader read its document: where it is and what was printed.
struct ZrXmlFault {
  std::string file;         // the document the fault is in (an included one where it is in one)
  std::int64_t line = 0;    // 1-based; where reading stood when the fault was reported
  std::int64_t column = 0;  // 1-based, in bytes of the line
  int printType = 0;        // the print type it was reported with (3 to 5)
  std::string text;         // the report's text as printed, detail lines that were printed apart excluded
};

#endif
