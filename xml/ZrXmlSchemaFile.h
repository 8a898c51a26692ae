#ifndef ZR_XML_SCHEMA_FILE_H
#define ZR_XML_SCHEMA_FILE_H

#include <map>
#include <set>
#include <string>

// The state of one schema file while its text is written: its target namespace, the prefixes of all
// namespaces of the schema, and the other namespaces that its text refers to, which the file imports.
class ZrXmlSchemaFile {
 public:
  ZrXmlSchemaFile(const std::string& targetNamespace, const std::map<std::string, std::string>& prefixes);

  const std::string& targetNamespace() const { return m_theTargetNamespace; }
  // The qualified name of a global declaration (type, group or element) of xmlNamespace, e.g.
  // "cell:ZrRobot"; a name of another namespace makes the file import that namespace.
  std::string qualified(const std::string& xmlNamespace, const std::string& localName);
  const std::string& prefix(const std::string& xmlNamespace) const;
  const std::set<std::string>& imports() const { return m_theImports; }

 private:
  std::string m_theTargetNamespace;
  const std::map<std::string, std::string>& m_thePrefixes;
  std::set<std::string> m_theImports;
};

#endif
