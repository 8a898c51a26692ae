#ifndef ZR_XML_SCHEMA_ATTRIBUTE_TYPE_H
#define ZR_XML_SCHEMA_ATTRIBUTE_TYPE_H

#include <ZrXmlSchemaElementType.h>

#include <ostream>
#include <string>

// One attribute of a complex type: its local name and the simple type of its value. Attributes are
// optional: a class may leave one out (and the root's version attribute is only a convention).
// Attributes carry no namespace in the documents the writer produces, so they are declared by local name.
class ZrXmlSchemaAttributeType {
 public:
  explicit ZrXmlSchemaAttributeType(const std::string& name);

  const std::string& name() const { return m_theName; }
  ZrXmlSchemaElementType& type() { return m_theType; }
  const ZrXmlSchemaElementType& type() const { return m_theType; }

  void write(std::ostream& out, const std::string& indent) const;

 private:
  std::string m_theName;
  ZrXmlSchemaElementType m_theType;
};

#endif
