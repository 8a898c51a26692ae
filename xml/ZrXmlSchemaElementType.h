#ifndef ZR_XML_SCHEMA_ELEMENT_TYPE_H
#define ZR_XML_SCHEMA_ELEMENT_TYPE_H

#include <ostream>
#include <string>
#include <typeinfo>
#include <vector>

// What an element (or, for the simple kinds, an attribute) holds, as the schema describes it:
//   NOTHING  no value, no attributes, no children (a compound without registrations; nil elements)
//   VALUE    one value of an XML Schema built-in type, possibly restricted to a list of names
//   LIST     white-space separated values of one type (the "group" content of a container)
//   COMPLEX  attributes and children, described by a ZrXmlSchemaComplexType of the generator
//
// It also names the start-tag options of ZrXmlSchema::writeStartTag: how the element takes part in its
// parent's content model.
class ZrXmlSchemaElementType {
 public:
  enum {
    XML_CHOICE_OPTION = 0,   // one of the alternatives of a choice (children created by a factory)
    XML_STARTTAG_OPTION = 1  // an element of a sequence
  };
  enum Kind { NOTHING = 0, VALUE, LIST, COMPLEX };

  ZrXmlSchemaElementType();

  Kind kind() const { return m_theKind; }
  bool isSimple() const { return m_theKind == VALUE || m_theKind == LIST; }

  // The value's type, from the C++ type that the value templates write.
  void setValueType(const std::type_info& info);
  // Restricts the value to the given names (the names of an enumeration); repeated names are kept once.
  void addEnumeration(const std::string& name);
  const std::vector<std::string>& enumerations() const { return m_theEnumerations; }
  // A value becomes a list of such values.
  void makeList();
  // Widens a value so that it also admits the values of other (both simple or empty): a list stays a
  // list, names of two tables are joined, a table or a length facet meeting an unrestricted value is
  // dropped, and two different built-in types meet in text.
  void widen(const ZrXmlSchemaElementType& other);
  void setComplexType(int index);
  int complexType() const { return m_theComplexType; }
  // "xs:" and the built-in type's name, e.g. "xs:double".
  std::string builtInTypeName() const;

  // A simple type that a type="..." attribute can name: a built-in type without restrictions.
  bool isNamedBuiltIn() const;
  // Writes the anonymous xs:simpleType of a value or list that needs one, each line indented by indent.
  void writeSimpleType(std::ostream& out, const std::string& indent) const;

  // The XML Schema built-in type of a C++ value type as the value templates write it. Numbers whose
  // text is a plain integer get the integer type of their range; ZrAngle and ZrNonNegReal are written
  // as doubles; a char is written as the character itself (a string of at most one character, empty
  // for the NUL character).
  static const char* builtInTypeOf(const std::type_info& info, unsigned& maxLength);

  bool operator==(const ZrXmlSchemaElementType& other) const;

 private:
  void writeRestriction(std::ostream& out, const std::string& indent) const;

  Kind m_theKind;
  std::string m_theValueType;  // the built-in type's local name, e.g. "double"
  unsigned m_theMaxLength;     // 0: no length facet
  std::vector<std::string> m_theEnumerations;
  int m_theComplexType;  // index into the generator's complex types, for COMPLEX
};

#endif
