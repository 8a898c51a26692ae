#ifndef ZRXML_DOCUMENT_READER_H
#define ZRXML_DOCUMENT_READER_H

#include <ZrXmlReader.h>

#include <cstddef>
#include <string>

namespace zrxml {

// The reader the tool reads documents with. Two reports are advisory, not faults of the document: the
// version check's warnings (a root's "version" attribute of another format, as in <svg version="1.1">)
// and a namespace declared again with the URI already in force, which XML allows. They are counted apart
// as warnings, and each is followed by a detail line that names the file and line it concerns.
class DocumentReader : public ZrXmlReader {
 public:
  DocumentReader(const std::string& filename, std::istream& stream) : ZrXmlReader(filename, stream) {}

  int readXml() override;
  void noteFault(int printType, const std::string& message) override;

  std::size_t warnings() const { return m_theWarnings; }

  // Whether a printed report is one of the advisory ones.
  static bool isWarning(const std::string& message);

 private:
  std::size_t m_theWarnings = 0;
  bool m_thePositionPending = false;  // a warning was printed whose file and line are still to follow
};

}  // namespace zrxml

#endif
