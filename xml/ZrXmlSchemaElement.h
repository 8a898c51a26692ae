#ifndef ZR_XML_SCHEMA_ELEMENT_H
#define ZR_XML_SCHEMA_ELEMENT_H

#include <ZrToken.h>
#include <ZrXmlSchemaElementType.h>

#include <ostream>
#include <string>

class ZrXmlSchema;
class ZrXmlSchemaFile;

// One element of a content model: its name, how often it may occur and what it holds. Every element
// is nillable, since the writer closes an element without attributes or content as a nil element.
//
// In the file of its own namespace the element is declared where it occurs; in another namespace's
// file it is a reference to the global declaration in its own namespace's file. An element without a
// namespace is declared where it occurs, unqualified.
class ZrXmlSchemaElement {
 public:
  static const int m_theUnbounded = -1;

  ZrXmlSchemaElement();
  ZrXmlSchemaElement(const ZrToken& token, int minOccurs, int maxOccurs);

  const ZrToken& token() const { return m_theToken; }
  int minOccurs() const { return m_theMinOccurs; }
  int maxOccurs() const { return m_theMaxOccurs; }
  void setOccurs(int minOccurs, int maxOccurs);
  ZrXmlSchemaElementType& type() { return m_theType; }
  const ZrXmlSchemaElementType& type() const { return m_theType; }

  // Writes the element as a particle of a content model in file.
  void write(std::ostream& out, ZrXmlSchemaFile& file, const std::string& indent, const ZrXmlSchema& schema) const;
  // Writes the element as a top-level declaration of file.
  void writeGlobal(std::ostream& out, ZrXmlSchemaFile& file, const std::string& indent,
                   const ZrXmlSchema& schema) const;
  // Whether file declares the element where it occurs (rather than referring to a global one).
  bool isLocalIn(const std::string& targetNamespace) const;

 private:
  void writeOccurs(std::ostream& out) const;
  void writeTypeAndEnd(std::ostream& out, ZrXmlSchemaFile& file, const std::string& indent,
                       const ZrXmlSchema& schema) const;

  ZrToken m_theToken;
  int m_theMinOccurs;
  int m_theMaxOccurs;
  ZrXmlSchemaElementType m_theType;
};

#endif
