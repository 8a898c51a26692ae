#ifndef ZR_XML_SCHEMA_COMPLEX_TYPE_H
#define ZR_XML_SCHEMA_COMPLEX_TYPE_H

#include <ZrXmlSchemaAttributeType.h>
#include <ZrXmlSchemaElement.h>
#include <ZrXmlSchemaElementType.h>

#include <ostream>
#include <string>
#include <vector>

class ZrXmlSchema;
class ZrXmlSchemaFile;

// The content of an element with attributes or children: its attributes, then a sequence of its child
// elements in the order described (the ascending token order in which they are written), ended by any
// number of the alternatives of a choice group (the children of a variable compound). A type with
// attributes and a value but no children has simple content.
//
// A named type belongs to the file of its namespace and is shared by every element that refers to it;
// an anonymous one (name empty) is written inside the one element that it describes.
class ZrXmlSchemaComplexType {
 public:
  ZrXmlSchemaComplexType(const std::string& name, const std::string& xmlNamespace);

  const std::string& name() const { return m_theName; }
  const std::string& xmlNamespace() const { return m_theNamespace; }

  // Adds an attribute unless one of that name is there already (the root's version attribute is both
  // declared for every root and registered by root classes); returns the attribute or null.
  ZrXmlSchemaAttributeType* addAttribute(const std::string& name);
  const std::vector<ZrXmlSchemaAttributeType>& attributes() const { return m_theAttributes; }
  ZrXmlSchemaAttributeType& attribute(size_t index) { return m_theAttributes[index]; }
  ZrXmlSchemaAttributeType* findAttribute(const std::string& name);

  // Adds a child element; an element of the same name already there stays and may then occur any
  // number of times, so that the sequence never names an element twice.
  void addElement(const ZrXmlSchemaElement& element);
  const std::vector<ZrXmlSchemaElement>& elements() const { return m_theElements; }
  ZrXmlSchemaElement& element(size_t index) { return m_theElements[index]; }
  // The position of the child of that local name, or the number of children when there is none.
  size_t findElement(const std::string& localName) const;
  // Places a child at a position of the sequence, without the checks of addElement.
  void insertElement(size_t position, const ZrXmlSchemaElement& element);

  // The children were seen in more than one order: they are written as a choice repeated any number
  // of times instead of a sequence.
  void makeUnordered() { m_theUnordered = true; }
  bool unordered() const { return m_theUnordered; }

  void setChoiceGroup(int group) { m_theChoiceGroup = group; }
  int choiceGroup() const { return m_theChoiceGroup; }
  void setValue(const ZrXmlSchemaElementType& value) { m_theValue = value; }
  const ZrXmlSchemaElementType& value() const { return m_theValue; }

  // Nothing at all was described: no attribute, no child, no choice.
  bool isEmpty() const;
  // A type found to be a plain value after it had been named is dropped and written nowhere.
  bool isUsed() const { return m_theUsed; }
  void drop() { m_theUsed = false; }

  void write(std::ostream& out, ZrXmlSchemaFile& file, const std::string& indent, const ZrXmlSchema& schema) const;

 private:
  void writeContent(std::ostream& out, ZrXmlSchemaFile& file, const std::string& indent,
                    const ZrXmlSchema& schema) const;

  std::string m_theName;
  std::string m_theNamespace;
  std::vector<ZrXmlSchemaAttributeType> m_theAttributes;
  std::vector<ZrXmlSchemaElement> m_theElements;
  int m_theChoiceGroup;
  ZrXmlSchemaElementType m_theValue;
  bool m_theUsed;
  bool m_theUnordered = false;
};

#endif
