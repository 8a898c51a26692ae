#include "ZrXmlSchemaElementType.h"

#include "ZrXmlSchema.h"

#include <ZrAngle.h>
#include <ZrNonNegReal.h>

#include <algorithm>
#include <cstring>

namespace {

struct BuiltIn {
  const std::type_info& info;
  const char* name;
  unsigned maxLength;
};

// The text forms are those of the value templates: bool as 0 or 1, unsigned char as a number, char as
// the character itself, ZrAngle and ZrNonNegReal as their double value.
const BuiltIn theBuiltIns[] = {
    {typeid(bool), "boolean", 0},
    {typeid(char), "string", 1},
    {typeid(signed char), "byte", 0},
    {typeid(unsigned char), "unsignedByte", 0},
    {typeid(short), "short", 0},
    {typeid(unsigned short), "unsignedShort", 0},
    {typeid(int), "int", 0},
    {typeid(unsigned int), "unsignedInt", 0},
    {typeid(long), "long", 0},
    {typeid(unsigned long), "unsignedLong", 0},
    {typeid(long long), "long", 0},
    {typeid(unsigned long long), "unsignedLong", 0},
    {typeid(float), "float", 0},
    {typeid(double), "double", 0},
    {typeid(ZrAngle), "double", 0},
    {typeid(ZrNonNegReal), "double", 0},
};

}  // namespace

ZrXmlSchemaElementType::ZrXmlSchemaElementType() : m_theKind(NOTHING), m_theMaxLength(0), m_theComplexType(-1) {}

// Types are matched by identity, with the names as fallback for type information that comes from
// another shared object. Every other type (std::string included) is written as text.
const char* ZrXmlSchemaElementType::builtInTypeOf(const std::type_info& info, unsigned& maxLength) {
  for (const BuiltIn& builtIn : theBuiltIns) {
    if (builtIn.info == info || std::strcmp(builtIn.info.name(), info.name()) == 0) {
      maxLength = builtIn.maxLength;
      return builtIn.name;
    }
  }
  maxLength = 0;
  return "string";
}

void ZrXmlSchemaElementType::setValueType(const std::type_info& info) {
  m_theKind = VALUE;
  m_theValueType = builtInTypeOf(info, m_theMaxLength);
  m_theEnumerations.clear();
  m_theComplexType = -1;
}

void ZrXmlSchemaElementType::addEnumeration(const std::string& name) {
  if (std::find(m_theEnumerations.begin(), m_theEnumerations.end(), name) == m_theEnumerations.end())
    m_theEnumerations.push_back(name);
}

void ZrXmlSchemaElementType::makeList() {
  if (m_theKind == VALUE) m_theKind = LIST;
}

void ZrXmlSchemaElementType::widen(const ZrXmlSchemaElementType& other) {
  if (!other.isSimple()) return;
  if (!isSimple()) {
    if (m_theKind == NOTHING) *this = other;
    return;
  }
  if (other.m_theKind == LIST) m_theKind = LIST;
  if (m_theValueType != other.m_theValueType) {
    m_theValueType = "string";
    m_theMaxLength = 0;
    m_theEnumerations.clear();
    return;
  }
  if (m_theMaxLength != other.m_theMaxLength) m_theMaxLength = 0;
  if (m_theEnumerations.empty() || other.m_theEnumerations.empty()) {
    m_theEnumerations.clear();
    return;
  }
  for (const std::string& name : other.m_theEnumerations) addEnumeration(name);
}

void ZrXmlSchemaElementType::setComplexType(int index) {
  m_theKind = COMPLEX;
  m_theComplexType = index;
}

std::string ZrXmlSchemaElementType::builtInTypeName() const {
  return "xs:" + (m_theValueType.empty() ? std::string("string") : m_theValueType);
}

bool ZrXmlSchemaElementType::isNamedBuiltIn() const {
  return m_theKind == VALUE && m_theEnumerations.empty() && m_theMaxLength == 0;
}

void ZrXmlSchemaElementType::writeRestriction(std::ostream& out, const std::string& indent) const {
  out << indent << "<xs:restriction base=\"" << builtInTypeName() << "\">\n";
  for (const std::string& name : m_theEnumerations)
    out << indent << "  <xs:enumeration value=\"" << ZrXmlSchema::escaped(name) << "\"/>\n";
  if (m_theMaxLength != 0 && m_theEnumerations.empty())
    out << indent << "  <xs:maxLength value=\"" << m_theMaxLength << "\"/>\n";
  out << indent << "</xs:restriction>\n";
}

// A list's items are restricted like a single value, so a list of names or characters keeps its facets.
void ZrXmlSchemaElementType::writeSimpleType(std::ostream& out, const std::string& indent) const {
  out << indent << "<xs:simpleType>\n";
  const bool restricted = !m_theEnumerations.empty() || m_theMaxLength != 0;
  if (m_theKind == LIST) {
    if (!restricted) {
      out << indent << "  <xs:list itemType=\"" << builtInTypeName() << "\"/>\n";
    } else {
      out << indent << "  <xs:list>\n" << indent << "    <xs:simpleType>\n";
      writeRestriction(out, indent + "      ");
      out << indent << "    </xs:simpleType>\n" << indent << "  </xs:list>\n";
    }
  } else {
    writeRestriction(out, indent + "  ");
  }
  out << indent << "</xs:simpleType>\n";
}

bool ZrXmlSchemaElementType::operator==(const ZrXmlSchemaElementType& other) const {
  return m_theKind == other.m_theKind && m_theValueType == other.m_theValueType &&
         m_theMaxLength == other.m_theMaxLength && m_theEnumerations == other.m_theEnumerations &&
         m_theComplexType == other.m_theComplexType;
}
