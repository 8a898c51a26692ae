#include "ZrXmlSchemaGroupType.h"

#include "ZrXmlSchema.h"
#include "ZrXmlSchemaFile.h"

ZrXmlSchemaGroupType::ZrXmlSchemaGroupType(const std::string& name, const std::string& xmlNamespace)
    : m_theName(name), m_theNamespace(xmlNamespace) {}

void ZrXmlSchemaGroupType::addAlternative(const ZrXmlSchemaElement& element) {
  for (const ZrXmlSchemaElement& known : m_theAlternatives)
    if (known.token().tokenText() == element.token().tokenText()) return;
  m_theAlternatives.push_back(element);
}

// An empty choice is kept: its references all allow zero occurrences.
void ZrXmlSchemaGroupType::write(std::ostream& out, ZrXmlSchemaFile& file, const std::string& indent,
                                 const ZrXmlSchema& schema) const {
  out << indent << "<xs:group name=\"" << ZrXmlSchema::escaped(m_theName) << "\">\n" << indent << "  <xs:choice>\n";
  for (const ZrXmlSchemaElement& element : m_theAlternatives) element.write(out, file, indent + "    ", schema);
  out << indent << "  </xs:choice>\n" << indent << "</xs:group>\n";
}
