#ifndef ZR_XML_SCHEMA_H
#define ZR_XML_SCHEMA_H

#include <ZrToken.h>
#include <ZrTypes.h>
#include <ZrXmlSchemaComplexType.h>
#include <ZrXmlSchemaElement.h>
#include <ZrXmlSchemaGlobalElementType.h>
#include <ZrXmlSchemaGroupType.h>

#include <map>
#include <set>
#include <string>
#include <typeinfo>
#include <vector>

// Builds a description of a document's elements and types from the calls that objects make in
// writeSchema (and createSchema), and writes it as XML Schema text, one file per namespace.
//
// The calls follow the writer's protocol: a start tag, attribute names each followed by the type of
// the attribute's value, the element's own value type or its child elements, and the end tag. Start-tag
// options (ZrXmlSchemaElementType): 1 for an element of a sequence, 0 for an alternative of a choice
// (the children of a variable compound). openGroup and closeGroup bracket an element's children.
//
// What the description says:
//   - A compound's children form a sequence in the order described, which is the ascending token order
//     in which the writer writes them. Each may be missing (the writer leaves out default-valued
//     structured components, and read-only registrations are never written) and each is nillable
//     (an element without attributes or content is written as a nil element).
//   - The children that a container writes in its parent's namespace follow the container's layout:
//     "group" at most once, holding a list of values; "element" any number of times; "key", "value",
//     "first" and "second" exactly once; "addLibraries" at most once, before the alternatives of a
//     variable compound.
//   - Alternatives (option 0) form a named choice group of the enclosing element, repeated any number
//     of times. A tree node whose children are again any of those alternatives says so through
//     repeatEnclosingChoice().
//   - An element's type is registered under the run-time type name of its object (isRegistered): the
//     first element of a class describes it as a named complex type of its namespace, later ones refer
//     to it. Plain values and enumerations are not registered: their description is the value's type,
//     and two enumerations of one class may have different tables.
//   - Elements of another namespace are referred to through global declarations in their own
//     namespace's file, which the referring file imports.
//
// Files are named by the writer's schema-file rule (ZrXmlWriter::schemaFileName) from the file name
// given to write() and each namespace, in the directory of that file name, so that a document written
// as NAME.xml pairs its namespace with the file that describes it.
//
// The writer's feed (ZrXmlWriter::setSchemaWriter) makes the same calls while a document is written,
// without isRegistered: each element written is described as it was written, in an anonymous type.
// An element of a name that its parent's type holds already is merged into that description:
//   - a name repeated within one parent (the "element" children of a container) may occur any number
//     of times;
//   - attributes, children and values seen in either description are all admitted; a child missing in
//     one of them becomes optional, and children new to the known description are placed after the
//     known children that preceded them;
//   - a merged element's own records are released, so that writing a long container describes it in
//     the room of one element.
// Named types (registered classes) are never merged: the first description of an element stays. A
// child that one description places before a sibling and another after it (the children of a
// polymorphic list: photoEye, diverter, photoEye) cannot be described by one sequence: the parent's
// children are then described as a choice repeated any number of times, which admits them in any
// order (and no longer requires any of them).
//
// Bad call sequences never crash: an end tag without a start tag and a value outside any element are
// reported; nesting deeper than m_theMaxDepth is reported once and not described (isRegistered then
// answers true, which ends the recursion of objects that describe themselves through their members).
class ZrXmlSchema {
 public:
  static const ZrU32 m_theMaxDepth = 256;

  ZrXmlSchema();

  // Whether the files and their imports are named by the portable schema file names of
  // ZrXmlWriter::schemaFileName; new generators take ZrXmlWriter's class default.
  void setPortableSchemaFileNames(bool portable) { m_thePortableSchemaFileNames = portable; }
  bool portableSchemaFileNames() const { return m_thePortableSchemaFileNames; }
  ZrXmlSchema(const ZrXmlSchema& other);
  ZrXmlSchema& operator=(const ZrXmlSchema& other);
  virtual ~ZrXmlSchema();

  virtual void writeStartTag(const ZrToken& token, int option);
  virtual void writeStartTagUsingParentNamespace(const ZrToken& token, int option);
  virtual void setAttributeName(const ZrToken& token);
  virtual void setType(const std::type_info& info);
  virtual void writeEndTag();
  virtual void openGroup();
  virtual void closeGroup();
  virtual ZrBoolean isRegistered(const ZrToken& token, const std::string& typeName);
  virtual ZrBoolean write(std::string filename);

  // Restricts the value just typed (an element's or an attribute's) to a table of names; called once
  // per name by enumerations after their setType.
  virtual void addEnumeration(const std::string& name);
  // The open element's children are any number of the alternatives of the nearest enclosing choice.
  virtual void repeatEnclosingChoice();

  // The records built so far.
  const ZrXmlSchemaComplexType* complexType(int index) const;
  const ZrXmlSchemaGroupType* group(int index) const;
  const std::vector<ZrXmlSchemaGlobalElementType>& rootElements() const { return m_theRootElements; }
  // The namespaces that get a file, and the text of one of them as write() would write it.
  std::vector<std::string> namespaces() const;
  std::string fileText(const std::string& xmlNamespace, const std::string& filename) const;

  // Text made safe for an attribute value of the schema.
  static std::string escaped(const std::string& text);
  // The schema's name for a C++ type given by its run-time type name, e.g. "ZrXmlVectorType.double".
  static std::string typeNameOf(const std::string& runTimeTypeName);

 private:
  struct Frame {
    ZrXmlSchemaElement element;  // its type holds the element's own value until the end tag
    int option = 1;
    bool structural = false;  // started in the parent's namespace: a container's own child
    int complexType = -1;     // created on the first attribute, child or choice
    std::string registryKey;  // set when the element's type is registered under its class
    ZrToken pendingAttribute;
    bool attributePending = false;
    int valueTarget = -1;  // what addEnumeration restricts: -2 the element's value, >= 0 an attribute
    int choiceGroup = -1;
    int openGroups = 0;
    // What the generator held when the element started: the records made for this element alone
    // lie beyond these, and are released when its description merges into one given before.
    size_t typesAtStart = 0;
    size_t groupsAtStart = 0;
    ZrU32 registrationsAtStart = 0;
  };
  typedef std::vector<ZrXmlSchemaGlobalElementType> Globals;

  void startElement(const ZrToken& token, int option, bool structural);
  bool ignoring();
  int ensureComplexType(Frame& frame);
  int ensureChoiceGroup(Frame& frame);
  void finishElement(Frame& frame);
  // Returns whether the element's description went into one of the same name given before.
  bool attach(const ZrXmlSchemaElement& element, int option, bool structural);
  void releaseRecordsOf(const Frame& frame);
  bool merge(ZrXmlSchemaElementType& known, const ZrXmlSchemaElementType& incoming);
  bool mergeComplexTypes(int known, int incoming);
  void mergeElements(ZrXmlSchemaComplexType& known, const ZrXmlSchemaComplexType& incoming, bool& adopted);
  void widenValue(ZrXmlSchemaComplexType& type, const ZrXmlSchemaElementType& value);
  std::string uniqueName(std::set<std::string>& taken, const std::string& base) const;

  Globals allGlobalElements() const;
  void collectReferences(const std::vector<ZrXmlSchemaElement>& elements, const std::string& containerNamespace,
                         Globals& globals) const;
  void addReferencedGlobal(const ZrXmlSchemaElement& element, Globals& globals) const;
  std::set<std::string> namespacesOf(const Globals& globals) const;
  std::map<std::string, std::string> prefixesOf(const std::set<std::string>& namespaces) const;
  std::string fileText(const std::string& xmlNamespace, const std::string& filename, const Globals& globals,
                       const std::map<std::string, std::string>& prefixes) const;

  std::vector<Frame> m_theFrames;
  ZrU32 m_theIgnoredDepth;  // start tags beyond m_theMaxDepth still open
  bool m_theDepthReported;
  std::vector<ZrXmlSchemaComplexType> m_theComplexTypes;
  std::vector<ZrXmlSchemaGroupType> m_theGroups;
  Globals m_theRootElements;
  std::map<std::string, int> m_theRegistry;  // "namespace#type name" -> complex type
  ZrU32 m_theRegistrations;                  // types ever registered
  std::map<std::string, std::set<std::string>> m_theTypeNames;   // per namespace: names of types
  std::map<std::string, std::set<std::string>> m_theGroupNames;  // per namespace: names of groups
  bool m_thePortableSchemaFileNames;
};

#endif
