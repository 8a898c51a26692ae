#include "ZrXmlDocument.h"

#include "ZrXmlObject.h"

#include <ZrFileReplace.h>
#include <ZrPrint.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

// Fills results: load() is their only author.
struct ZrXmlDocumentAccess {
  static void takeRead(ZrXmlReadResult& result, ZrXmlReader& reader, bool rootRead) {
    reader.finish();
    result.m_theRootRead = rootRead;
    result.m_theFaultCount = reader.faultCount();
    result.m_theFaults = reader.faults();
  }

  // A fault found before any reader read: printed, and recorded by hand.
  static ZrXmlReadResult fault(const std::string& path, const char* what) {
    ZrXmlReadResult result;
    const std::string text = std::string("ZrXml Error: ") + what + "\n\tFile: " + path + "\n";
    Zr::Print::instance().write(Zr::PrintError, "%s", text.c_str());
    ZrXmlFault fault;
    fault.file = path;
    fault.printType = Zr::PrintError;
    fault.text = text;
    result.m_theFaultCount = 1;
    result.m_theFaults.push_back(fault);
    return result;
  }
};

namespace {
// What follows the root is read too, so that more after it is reported. A document cut short has
// already said so while the root was read; asked again, the reader would take its end for a document
// without a root.
void readOnAfterTheRoot(ZrXmlReader& reader) {
  if (reader.mode() == ZrXmlMode::endOfInput || reader.mode() == ZrXmlMode::error) return;
  for (int next = reader.readXml(); next != ZrXmlMode::endOfInput && next != ZrXmlMode::error; next = reader.readXml()) {
  }
}
}  // namespace

namespace ZrXml {

ZrXmlReadResult load(const std::string& path, ZrXmlObject& object, const ZrXmlReadOptions& options) {
  std::error_code error;
  if (std::filesystem::is_directory(path, error))
    return ZrXmlDocumentAccess::fault(path, "cannot read the document: it is a directory.");
  std::ifstream in(path.c_str(), std::ios::in | std::ios::binary);
  if (!in) {
    const std::string what = std::string("cannot open the document: ") + std::strerror(errno) + ".";
    return ZrXmlDocumentAccess::fault(path, what.c_str());
  }
  return load(in, path, object, options);
}

ZrXmlReadResult load(std::istream& in, const std::string& name, ZrXmlObject& object, const ZrXmlReadOptions& options) {
  ZrXmlReadResult result;
  ZrXmlReader reader(name, in);
  reader.setOptions(options);
  const int mode = reader.readXml();
  const ZrToken root = object.token();
  bool rootRead = false;
  if (mode != ZrXmlMode::startTag && mode != ZrXmlMode::emptyElement) {
    Zr::Print::instance().write(Zr::PrintError, "ZrXml Error: no root element found.\n\tFile: %s\n", name.c_str());
  } else if (reader.element().tokenText() != root.tokenText()) {
    Zr::Print::instance().write(Zr::PrintError, "ZrXml Error: the root element is %s, not %s.\n\tFile: %s\n\tLine: %d\n",
                                reader.element().c_str(), root.c_str(), name.c_str(), reader.lineCountOfFile());
  } else {
    object.read(reader);
    rootRead = true;
    readOnAfterTheRoot(reader);
  }
  ZrXmlDocumentAccess::takeRead(result, reader, rootRead);
  return result;
}

ZrBoolean save(std::ostream& out, const std::string& name, const ZrXmlObject& object, const ZrXmlWriteOptions& options) {
  ZrXmlWriter writer(name, out);
  writer.setOptions(options);
  const ZrToken root = object.token();
  writer.header(root, root.xmlNamespace());
  const ZrBoolean written = object.write(writer);
  writer.writeEndTag();
  out.flush();
  return written && out.good();
}

ZrBoolean save(const std::string& path, const ZrXmlObject& object, const ZrXmlWriteOptions& options) {
  std::ostringstream text;
  if (!save(text, path, object, options)) return false;
  if (ZrReplaceFile(path, text.str())) return true;
  Zr::Print::instance().write(Zr::PrintError, "ZrXml Error: cannot write the document: %s.\n\tFile: %s\n",
                              std::strerror(errno), path.c_str());
  return false;
}

}  // namespace ZrXml
