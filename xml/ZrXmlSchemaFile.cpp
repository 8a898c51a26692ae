#include "ZrXmlSchemaFile.h"

ZrXmlSchemaFile::ZrXmlSchemaFile(const std::string& targetNamespace,
                                 const std::map<std::string, std::string>& prefixes)
    : m_theTargetNamespace(targetNamespace), m_thePrefixes(prefixes) {}

const std::string& ZrXmlSchemaFile::prefix(const std::string& xmlNamespace) const {
  static const std::string none;
  const auto found = m_thePrefixes.find(xmlNamespace);
  return found == m_thePrefixes.end() ? none : found->second;
}

std::string ZrXmlSchemaFile::qualified(const std::string& xmlNamespace, const std::string& localName) {
  if (xmlNamespace != m_theTargetNamespace) m_theImports.insert(xmlNamespace);
  const std::string& namePrefix = prefix(xmlNamespace);
  return namePrefix.empty() ? localName : namePrefix + ":" + localName;
}
