#ifndef ZR_XML_DOCUMENT_H
#define ZR_XML_DOCUMENT_H

#include <ZrTypes.h>
#include <ZrXmlFault.h>
#include <ZrXmlReadOptions.h>
#include <ZrXmlReader.h>
#include <ZrXmlWriteOptions.h>
#include <ZrXmlWriter.h>

#include <istream>
#include <ostream>
#include <string>
#include <vector>

class ZrXmlObject;

// What loading a document gave: whether the root was read, and every fault reported on the way.
class ZrXmlReadResult {
 public:
  // The root was found and read, and nothing was reported while reading.
  bool ok() const { return m_theRootRead && m_theFaultCount == 0; }
  explicit operator bool() const { return ok(); }
  // The root was found and read, whatever faults came with it.
  bool rootRead() const { return m_theRootRead; }
  ZrU32 faultCount() const { return m_theFaultCount; }
  const std::vector<ZrXmlFault>& faults() const { return m_theFaults; }

 private:
  friend struct ZrXmlDocumentAccess;
  bool m_theRootRead = false;
  ZrU32 m_theFaultCount = 0;
  std::vector<ZrXmlFault> m_theFaults;
};

namespace ZrXml {

// Reads a whole document into object, whose element token names the root: opens the file, reads the root
// (an empty root element too), reads on to the end of the document (so that what follows the root is
// checked too) and collects the faults. A file that does not open, a directory, a document without a
// root element and a root of another name are each a fault of the result; nothing is thrown. Messages
// are printed as ever, through Zr::Print.
ZrXmlReadResult load(const std::string& path, ZrXmlObject& object,
                     const ZrXmlReadOptions& options = ZrXmlReader::defaultOptions());
// The same from a stream; the name serves messages and relative include references.
ZrXmlReadResult load(std::istream& in, const std::string& name, ZrXmlObject& object,
                     const ZrXmlReadOptions& options = ZrXmlReader::defaultOptions());

// Writes object as a whole document (declaration, root with its schema location, end tag) to a temporary
// file in path's directory and renames it into place once every byte is on the disk: a failure is
// reported and leaves the file at path as it was, and no partial file behind.
ZrBoolean save(const std::string& path, const ZrXmlObject& object,
               const ZrXmlWriteOptions& options = ZrXmlWriter::defaultOptions());
// The same to a stream; the name serves the schema location. False when the stream failed.
ZrBoolean save(std::ostream& out, const std::string& name, const ZrXmlObject& object,
               const ZrXmlWriteOptions& options = ZrXmlWriter::defaultOptions());

}  // namespace ZrXml

#endif
