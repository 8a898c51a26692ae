#ifndef ZR_XML_SCHEMA_GROUP_TYPE_H
#define ZR_XML_SCHEMA_GROUP_TYPE_H

#include <ZrXmlSchemaElement.h>

#include <ostream>
#include <string>
#include <vector>

class ZrXmlSchema;
class ZrXmlSchemaFile;

// A named choice of alternative elements: the children that a variable compound creates by element
// name. It is a top-level group of its namespace's file, so that the compound's own type and the
// types of nested tree nodes (an operation whose operands are again any of the compound's children)
// can all refer to the same alternatives.
class ZrXmlSchemaGroupType {
 public:
  ZrXmlSchemaGroupType(const std::string& name, const std::string& xmlNamespace);

  const std::string& name() const { return m_theName; }
  const std::string& xmlNamespace() const { return m_theNamespace; }

  // Adds an alternative; a second alternative of the same name is ignored.
  void addAlternative(const ZrXmlSchemaElement& element);
  const std::vector<ZrXmlSchemaElement>& alternatives() const { return m_theAlternatives; }

  void write(std::ostream& out, ZrXmlSchemaFile& file, const std::string& indent, const ZrXmlSchema& schema) const;

 private:
  std::string m_theName;
  std::string m_theNamespace;
  std::vector<ZrXmlSchemaElement> m_theAlternatives;
};

#endif
