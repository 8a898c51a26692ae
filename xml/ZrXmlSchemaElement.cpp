#include "ZrXmlSchemaElement.h"

#include "ZrXmlSchema.h"
#include "ZrXmlSchemaComplexType.h"
#include "ZrXmlSchemaFile.h"

ZrXmlSchemaElement::ZrXmlSchemaElement() : m_theMinOccurs(1), m_theMaxOccurs(1) {}

ZrXmlSchemaElement::ZrXmlSchemaElement(const ZrToken& token, int minOccurs, int maxOccurs)
    : m_theToken(token), m_theMinOccurs(minOccurs), m_theMaxOccurs(maxOccurs) {}

void ZrXmlSchemaElement::setOccurs(int minOccurs, int maxOccurs) {
  m_theMinOccurs = minOccurs;
  m_theMaxOccurs = maxOccurs;
}

bool ZrXmlSchemaElement::isLocalIn(const std::string& targetNamespace) const {
  const std::string& xmlNamespace = m_theToken.namespaceText();
  return xmlNamespace.empty() || xmlNamespace == targetNamespace;
}

void ZrXmlSchemaElement::write(std::ostream& out, ZrXmlSchemaFile& file, const std::string& indent,
                               const ZrXmlSchema& schema) const {
  const std::string& xmlNamespace = m_theToken.namespaceText();
  out << indent << "<xs:element ";
  if (!isLocalIn(file.targetNamespace())) {
    out << "ref=\"" << file.qualified(xmlNamespace, m_theToken.tokenText()) << "\"";
    writeOccurs(out);
    out << "/>\n";
    return;
  }
  out << "name=\"" << ZrXmlSchema::escaped(m_theToken.tokenText()) << "\"";
  if (xmlNamespace.empty() && !file.targetNamespace().empty()) out << " form=\"unqualified\"";
  writeOccurs(out);
  writeTypeAndEnd(out, file, indent, schema);
}

void ZrXmlSchemaElement::writeGlobal(std::ostream& out, ZrXmlSchemaFile& file, const std::string& indent,
                                     const ZrXmlSchema& schema) const {
  out << indent << "<xs:element name=\"" << ZrXmlSchema::escaped(m_theToken.tokenText()) << "\"";
  writeTypeAndEnd(out, file, indent, schema);
}

void ZrXmlSchemaElement::writeOccurs(std::ostream& out) const {
  if (m_theMinOccurs != 1) out << " minOccurs=\"" << m_theMinOccurs << "\"";
  if (m_theMaxOccurs == m_theUnbounded)
    out << " maxOccurs=\"unbounded\"";
  else if (m_theMaxOccurs != 1)
    out << " maxOccurs=\"" << m_theMaxOccurs << "\"";
}

// Named types are referred to; anonymous ones are written inside the declaration.
void ZrXmlSchemaElement::writeTypeAndEnd(std::ostream& out, ZrXmlSchemaFile& file, const std::string& indent,
                                         const ZrXmlSchema& schema) const {
  out << " nillable=\"true\"";
  const std::string inner = indent + "  ";
  switch (m_theType.kind()) {
    case ZrXmlSchemaElementType::VALUE:
    case ZrXmlSchemaElementType::LIST:
      if (m_theType.isNamedBuiltIn()) {
        out << " type=\"" << m_theType.builtInTypeName() << "\"/>\n";
        return;
      }
      out << ">\n";
      m_theType.writeSimpleType(out, inner);
      break;
    case ZrXmlSchemaElementType::COMPLEX: {
      const ZrXmlSchemaComplexType* complexType = schema.complexType(m_theType.complexType());
      if (complexType && !complexType->name().empty()) {
        out << " type=\"" << file.qualified(complexType->xmlNamespace(), complexType->name()) << "\"/>\n";
        return;
      }
      out << ">\n";
      if (complexType)
        complexType->write(out, file, inner, schema);
      else
        out << inner << "<xs:complexType/>\n";
      break;
    }
    case ZrXmlSchemaElementType::NOTHING:
      out << ">\n" << inner << "<xs:complexType/>\n";
      break;
  }
  out << indent << "</xs:element>\n";
}
