#include "ZrXmlSchemaAttributeType.h"

#include "ZrXmlSchema.h"

ZrXmlSchemaAttributeType::ZrXmlSchemaAttributeType(const std::string& name) : m_theName(name) {}

void ZrXmlSchemaAttributeType::write(std::ostream& out, const std::string& indent) const {
  out << indent << "<xs:attribute name=\"" << ZrXmlSchema::escaped(m_theName) << "\"";
  if (!m_theType.isSimple() || m_theType.isNamedBuiltIn()) {
    out << " type=\"" << m_theType.builtInTypeName() << "\"/>\n";
    return;
  }
  out << ">\n";
  m_theType.writeSimpleType(out, indent + "  ");
  out << indent << "</xs:attribute>\n";
}
