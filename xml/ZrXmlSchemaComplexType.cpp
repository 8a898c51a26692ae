#include "ZrXmlSchemaComplexType.h"

#include "ZrXmlSchema.h"
#include "ZrXmlSchemaFile.h"
#include "ZrXmlSchemaGroupType.h"

#include <algorithm>
#include <cstddef>

ZrXmlSchemaComplexType::ZrXmlSchemaComplexType(const std::string& name, const std::string& xmlNamespace)
    : m_theName(name), m_theNamespace(xmlNamespace), m_theChoiceGroup(-1), m_theUsed(true) {}

ZrXmlSchemaAttributeType* ZrXmlSchemaComplexType::addAttribute(const std::string& name) {
  for (const ZrXmlSchemaAttributeType& attribute : m_theAttributes)
    if (attribute.name() == name) return nullptr;
  m_theAttributes.emplace_back(name);
  return &m_theAttributes.back();
}

ZrXmlSchemaAttributeType* ZrXmlSchemaComplexType::findAttribute(const std::string& name) {
  for (ZrXmlSchemaAttributeType& attribute : m_theAttributes)
    if (attribute.name() == name) return &attribute;
  return nullptr;
}

size_t ZrXmlSchemaComplexType::findElement(const std::string& localName) const {
  size_t index = 0;
  while (index < m_theElements.size() && m_theElements[index].token().tokenText() != localName) ++index;
  return index;
}

void ZrXmlSchemaComplexType::insertElement(size_t position, const ZrXmlSchemaElement& element) {
  m_theElements.insert(m_theElements.begin() + static_cast<std::ptrdiff_t>(std::min(position, m_theElements.size())),
                       element);
}

void ZrXmlSchemaComplexType::addElement(const ZrXmlSchemaElement& element) {
  for (ZrXmlSchemaElement& known : m_theElements) {
    if (known.token().tokenText() == element.token().tokenText()) {
      known.setOccurs(0, ZrXmlSchemaElement::m_theUnbounded);
      return;
    }
  }
  m_theElements.push_back(element);
}

bool ZrXmlSchemaComplexType::isEmpty() const {
  return m_theAttributes.empty() && m_theElements.empty() && m_theChoiceGroup < 0;
}

void ZrXmlSchemaComplexType::write(std::ostream& out, ZrXmlSchemaFile& file, const std::string& indent,
                                   const ZrXmlSchema& schema) const {
  out << indent << "<xs:complexType";
  if (!m_theName.empty()) out << " name=\"" << ZrXmlSchema::escaped(m_theName) << "\"";
  const bool hasChildren = !m_theElements.empty() || m_theChoiceGroup >= 0;
  // A value beside children would be mixed content; the library's classes never write it, but a
  // class of an application might.
  if (hasChildren && m_theValue.isSimple()) out << " mixed=\"true\"";
  if (!hasChildren && m_theAttributes.empty()) {
    out << "/>\n";
    return;
  }
  out << ">\n";
  writeContent(out, file, indent + "  ", schema);
  out << indent << "</xs:complexType>\n";
}

// Simple content extends a built-in type, which cannot carry the restrictions of an enumeration or a
// list: such a value keeps its base type there.
void ZrXmlSchemaComplexType::writeContent(std::ostream& out, ZrXmlSchemaFile& file, const std::string& indent,
                                          const ZrXmlSchema& schema) const {
  const bool hasChildren = !m_theElements.empty() || m_theChoiceGroup >= 0;
  std::string attributeIndent = indent;
  if (!hasChildren && m_theValue.isSimple()) {
    out << indent << "<xs:simpleContent>\n"
        << indent << "  <xs:extension base=\""
        << (m_theValue.kind() == ZrXmlSchemaElementType::LIST ? std::string("xs:string") : m_theValue.builtInTypeName())
        << "\">\n";
    attributeIndent = indent + "    ";
  } else if (hasChildren) {
    out << indent << (m_theUnordered ? "<xs:choice minOccurs=\"0\" maxOccurs=\"unbounded\">\n" : "<xs:sequence>\n");
    for (const ZrXmlSchemaElement& element : m_theElements) element.write(out, file, indent + "  ", schema);
    const ZrXmlSchemaGroupType* group = schema.group(m_theChoiceGroup);
    if (group)
      out << indent << "  <xs:group ref=\"" << file.qualified(group->xmlNamespace(), group->name())
          << "\" minOccurs=\"0\" maxOccurs=\"unbounded\"/>\n";
    out << indent << (m_theUnordered ? "</xs:choice>\n" : "</xs:sequence>\n");
  }
  for (const ZrXmlSchemaAttributeType& attribute : m_theAttributes) attribute.write(out, attributeIndent);
  if (attributeIndent != indent) out << indent << "  </xs:extension>\n" << indent << "</xs:simpleContent>\n";
}
