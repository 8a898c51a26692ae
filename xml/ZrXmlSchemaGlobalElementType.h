#ifndef ZR_XML_SCHEMA_GLOBAL_ELEMENT_TYPE_H
#define ZR_XML_SCHEMA_GLOBAL_ELEMENT_TYPE_H

#include <ZrXmlSchemaElement.h>

#include <ostream>
#include <string>

class ZrXmlSchema;
class ZrXmlSchemaFile;

// A top-level element declaration of a namespace's file: a document's root, or an element that a
// type of another namespace refers to (a content model can name another namespace's elements only
// through their global declarations).
class ZrXmlSchemaGlobalElementType {
 public:
  explicit ZrXmlSchemaGlobalElementType(const ZrXmlSchemaElement& element);

  const ZrXmlSchemaElement& element() const { return m_theElement; }
  const std::string& xmlNamespace() const { return m_theElement.token().namespaceText(); }
  const std::string& name() const { return m_theElement.token().tokenText(); }

  void write(std::ostream& out, ZrXmlSchemaFile& file, const std::string& indent, const ZrXmlSchema& schema) const;

 private:
  ZrXmlSchemaElement m_theElement;
};

#endif
