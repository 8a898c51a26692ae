#ifndef ZR_XML_WRITER_H
#define ZR_XML_WRITER_H

#include <ZrAngle.h>
#include <ZrNonNegReal.h>
#include <ZrToken.h>
#include <ZrTypes.h>
#include <ZrXmlSchema.h>
#include <ZrXmlWriteOptions.h>

#include <cstddef>
#include <deque>
#include <map>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>
#include <typeinfo>

// Writes one XML document to a caller's stream as a strict sequence of calls: start tag, attribute
// name and value pairs, then content or child elements, then the end tag. Modes of the last call:
//   0 nothing written, 1 start tag open, 2 attribute name written, 3 attribute value written,
//   4 content buffered, 5 end tag written.
// The writer never closes its output stream.
//
// Schema feed:
//   With the schema writer flag set (before the document's first tag), the same calls also feed the
//   embedded generator, schema(): start tags (those in the parent's namespace as the parent's own
//   children), attribute names, value types and end tags; enumerations add their names. Once the
//   root's end tag is written, schema().write(filename) writes a schema that the document validates
//   against, each element described as it was written and repeated elements merged (ZrXmlSchema).
//   Values are typed through type() before data(); text passed to data() without a type is not
//   described. With the flag off the feed costs one test per call.
//
// Shape of a document:
//   header(root, schemaNamespace) writes the XML declaration and style-sheet lines, then "<root"
//   with the xmlns:xsi declaration and the xsi:schemaLocation pair, and pushes the root onto the
//   element stack with its start tag still open (mode 1). The caller then writes the root's
//   attributes (setAttributeName + data), its children, and closes it with one writeEndTag(). The
//   caller does not call writeStartTag for the root after header.
//
// Namespaces (the toolkit's written form, the default):
//   header() declares only the schema-instance namespace; the root's namespace becomes the current
//   namespace without a declaration. Without header, the first start tag's namespace becomes the
//   current namespace, again undeclared. An element in the current namespace is written by its local
//   name. An element in another namespace is written prefix:name, the prefix being the namespace's
//   text after its last "/"; the first such element of a subtree declares xmlns:prefix, and its
//   descendants in that namespace find the declaration and use the same prefix. An empty prefix (a
//   namespace ending in "/") declares xmlns="..." and writes the local name. A nil element ends with
//   xsi:nil="true" alone. The reader and the toolkit's other programs match elements by local name and
//   expect exactly these bytes; standard XML tools, however, see the root and its unprefixed
//   descendants in no namespace, so a schema validator needs the form below.
//
// Settings: every setting lives in one ZrXmlWriteOptions value (options(), setOptions()), which lists them
// with their values and names the two profiles, toolkit() and standard(). New writers start from the class
// default, defaultOptions(); set it before writers are made on other threads. The per-writer and
// class-wide accessors below (setIndent, setDefaultIndent, setNamespaceComplete, ...) forward to the value.
//
// Namespace-complete documents (setNamespaceComplete, off by default):
//   The root's namespace is declared as the document's default namespace (xmlns="..." right after the
//   root's name, before xmlns:xsi; without header, on the first start tag). Declarations are looked
//   up with shadowing in mind: a descendant whose prefix was rebound in between declares its namespace
//   again, and an element of the outer default namespace inside a subtree that declared another
//   default namespace declares a prefix of its own. Where the namespace's last segment cannot serve as
//   a prefix (not an XML name, reserved "xml..." names, or "xsi" for anything but the schema-instance
//   namespace) the prefix "ns<depth>" is used instead. A nil element declares the schema-instance
//   namespace itself when no xmlns:xsi is in force. Documents in this form validate against the
//   schemas the generator writes.
//
// Lossless reals (setLosslessReals, off by default):
//   By default reals take the value stream's defaults: general notation, six significant digits, so
//   0.1 + 0.2 is written "0.3" and 123456789.123 "1.23457e+08". With lossless reals every real the
//   writer formats (basic values, angles, non-negative reals, vectors, orientations, arrays) is written
//   as the shortest text that reads back to the same double ("0.30000000000000004"), and infinities
//   and NaN take the XML Schema spellings "INF", "-INF" and "NaN", which the reader reads back.
//
// Markup-safe text (setEscapeMarkup, off by default):
//   By default attribute values and content are written exactly as given: a reader expands no
//   references unless told to, so escaping would change values on the way back in, and callers must
//   not pass markup characters. With escaping on, '&', '<', '>' and '"' are written as the predefined
//   entity references, and a reader with reference expansion on (ZrXmlFileReader::setExpandReferences)
//   reads every string back unchanged. A document holding UTF-8 text should also say so in its
//   declaration: setHeader("<?xml version=\"1.0\" encoding=\"UTF-8\"?>").
//
// Outside the call protocol:
//   Content followed by a child start tag (mixed content) closes the parent's start tag and writes
//   the buffered content before the child, so the output stays well-formed. An end tag or a value
//   with no element open is reported and writes nothing. A content column count of 0 means content
//   is never broken into rows. A writer made by the default constructor has no stream: it writes
//   nothing and serves the schema feed alone.
class ZrXmlWriter {
 public:
  enum LANGUAGE : int { PLAIN_XML = 0, TOOLKIT_MARKUP = 1 };

  struct ElementStruct {
    ElementStruct();
    ElementStruct(const ElementStruct& other);
    ElementStruct& operator=(const ElementStruct& other);
    ~ElementStruct();

    ZrToken element;
    std::string qualifiedName;  // what the end tag prints
    // Namespace URI -> prefix declared on this element itself ("" for a default declaration). The
    // declarations in force at an element are those of the element and its ancestors, nearer ones
    // shadowing farther ones with the same prefix; keeping only the element's own declarations
    // spares a map copy per start tag.
    std::map<std::string, std::string> namespaces;
  };

  ZrXmlWriter();
  ZrXmlWriter(const std::string& filename, std::ostream& output);
  ZrXmlWriter(const ZrXmlWriter& other);
  ZrXmlWriter& operator=(const ZrXmlWriter& other);
  virtual ~ZrXmlWriter();

  virtual void writeStartTag(const ZrToken& token);
  virtual void writeStartTagUsingParentNamespace(const ZrToken& token);
  virtual void setAttributeName(const ZrToken& token);
  virtual void setNumOfContentColumns(unsigned columns);
  virtual void writeEndTag();
  virtual const std::string& indent() const;
  virtual void setIndent(const std::string& indent);
  virtual const std::string& header() const;
  virtual void setHeader(const std::string& header);
  virtual const std::string& styleSheet() const;
  virtual void setStyleSheet(const std::string& styleSheet);
  virtual const std::string& schemaInstance() const;
  virtual void setSchemaInstance(const std::string& schemaInstance);
  virtual const std::string& schemaLocation() const;
  virtual void setSchemaLocation(const std::string& schemaLocation);
  virtual void setLanguageSelection(LANGUAGE language);
  virtual void type(const std::type_info& info);
  virtual void data(const std::string& text);
  // data() for text that is not held in a string, such as digits formatted on the stack: the same
  // output, without a string per value. It goes past the virtual data(), attributeValue() and
  // content(), so a derived writer overriding those does not see these texts; the reals of vectors,
  // orientations and arrays are written through it.
  void data(const char* text, std::size_t size);
  // Passes a real's text to the virtual data(): six significant digits from the value stream, or the
  // lossless form. Basic values, angles and non-negative reals are written through it, after type().
  void realData(double value);
  // A float's text: with lossless reals the shortest text that reads back to the same float, otherwise
  // as the value stream writes it.
  void realData(float value);
  virtual ZrBoolean writeDefaultDataFlag() const;
  virtual void setWriteDefaultDataFlag(ZrBoolean flag);
  virtual void attributeValue(const std::string& text);
  virtual void content(const std::string& text);
  virtual void setSchemaWriter(bool flag);
  virtual void header(const ZrToken& root, const std::string& schemaNamespace);
  virtual void tab(unsigned count);

  // All settings at once. A copy of the writer copies them.
  const ZrXmlWriteOptions& options() const { return m_theOptions; }
  void setOptions(const ZrXmlWriteOptions& options);

  // The written forms (see the class comment); each off by default.
  bool namespaceComplete() const { return m_theOptions.namespaceComplete(); }
  void setNamespaceComplete(bool flag) { m_theOptions.setNamespaceComplete(flag); }
  bool losslessReals() const { return m_theOptions.losslessReals(); }
  void setLosslessReals(bool flag) { m_theOptions.setLosslessReals(flag); }
  bool escapeMarkup() const { return m_theOptions.escapeMarkup(); }
  void setEscapeMarkup(bool flag) { m_theOptions.setEscapeMarkup(flag); }

  // Plain accessors.
  int mode() const { return m_theMode; }
  ZrU32 depth() const { return static_cast<ZrU32>(m_theDepth); }
  const std::string& typeName() const;
  const std::string& filename() const { return m_theFilename; }
  const std::string& currentNamespace() const { return m_theCurrentNamespace; }
  bool schemaWriter() const { return m_theOptions.schemaWriter(); }
  unsigned numOfContentColumns() const { return m_theNumOfContentColumns; }
  ZrXmlSchema& schema() { return m_theSchema; }
  std::ostream* output() const { return m_theOutput; }

  // The formatting stream of the value templates: a value is inserted, its text taken, the stream emptied.
  std::ostringstream& valueStream() { return m_theValueStream; }
  // Whether the value stream still formats numbers as a fresh stream does (decimal, no width, the
  // classic locale): numbers are then formatted straight into a buffer, to the same text.
  bool plainValueStream() const;
  // An integer's text as the value stream formats it, passed to data().
  void integerData(long long value);
  void unsignedData(unsigned long long value);

  // The schema file name that header() pairs with the namespace in xsi:schemaLocation: the file name
  // without its extension and directory, ".", the namespace's text after its last "/", ".xsd"
  // (robot.xml with .../cr gives robot.cr.xsd). With portable names (off by default) the namespace
  // part is its text after the last "/" or ":", each character other than a letter, digit, ".", "-"
  // or "_" replaced by "_": a URN namespace such as urn:x gives robot.x.xsd instead of robot.urn:x.xsd,
  // which a schema location would read as a reference with the scheme "robot.urn". The two-argument
  // form follows the class-wide default.
  static std::string schemaFileName(const std::string& filename, const std::string& schemaNamespace);
  static std::string schemaFileName(const std::string& filename, const std::string& schemaNamespace, bool portable);
  // Whether this writer's header and its schema generator use portable schema file names; the class
  // default is what new writers and generators start with (off).
  void setPortableSchemaFileNames(bool portable);
  bool portableSchemaFileNames() const { return m_theOptions.portableSchemaFileNames(); }
  static bool defaultPortableSchemaFileNames();
  static void setDefaultPortableSchemaFileNames(bool portable);

  // The XML Schema-instance namespace, declared with the prefix "xsi".
  static const char* schemaInstanceUri();

  // The class-wide default, copied into each new writer, and its one-setting forwarders.
  static const ZrXmlWriteOptions& defaultOptions();
  static void setDefaultOptions(const ZrXmlWriteOptions& options);
  static const std::string& defaultIndent();
  static void setDefaultIndent(const std::string& indent);
  static const std::string& defaultHeader();
  static void setDefaultHeader(const std::string& header);
  static const std::string& defaultStyleSheet();
  static void setDefaultStyleSheet(const std::string& styleSheet);
  static const std::string& defaultSchemaInstance();
  static void setDefaultSchemaInstance(const std::string& schemaInstance);
  static const std::string& defaultSchemaLocation();
  static void setDefaultSchemaLocation(const std::string& schemaLocation);
  static bool defaultSchemaWriter();
  static void setDefaultSchemaWriter(bool flag);
  static bool defaultForWriteDefaultDataFlag();
  static void setDefaultForWriteDefaultDataFlag(bool flag);
  static void setDefaultLanguageSelection(LANGUAGE language);
  static bool defaultNamespaceComplete();
  static void setDefaultNamespaceComplete(bool flag);
  static bool defaultLosslessReals();
  static void setDefaultLosslessReals(bool flag);
  static bool defaultEscapeMarkup();
  static void setDefaultEscapeMarkup(bool flag);

 private:
  static ZrXmlWriteOptions& classDefaults();

  void put(const std::string& text);
  void put(const char* text);
  void put(const char* text, std::size_t size);
  void flushOutput();
  void putAttributeValue(const char* text, std::size_t size);
  void putEscaped(const char* text, std::size_t size);
  void appendContent(const char* text, std::size_t size);
  void reportMisplacedData() const;
  void openElement(const std::string& xmlNamespace, const std::string& localName);
  ElementStruct& pushElement(const std::string& xmlNamespace, const std::string& localName);
  ElementStruct& innermost() { return m_theElementStack[m_theDepth - 1]; }
  const std::string* declaredPrefix(const std::string& xmlNamespace) const;
  const std::string* prefixInForce(const std::string& xmlNamespace) const;
  bool prefixReboundBelow(const std::string& prefix, size_t level) const;
  std::string declarationPrefix(const std::string& xmlNamespace) const;
  void closeOpenStartTag();
  void startContent();
  void writeNilEnding();
  void writeContentAndEndTag();

  std::ostringstream m_theValueStream;
  std::ostream* m_theOutput;
  // What the current call wrote (its first m_theOutputSize bytes), handed to the stream when it returns.
  std::vector<char> m_theOutputBuffer;
  std::size_t m_theOutputSize = 0;
  std::string m_theFilename;
  int m_theMode;
  // Open elements, innermost at m_theDepth - 1. Entries beyond the depth are kept as spares and
  // reused by later start tags, so that a steady document allocates nothing per tag.
  std::deque<ElementStruct> m_theElementStack;
  size_t m_theDepth;
  std::string m_theCurrentNamespace;
  std::string m_theContentBuffer;
  ZrU32 m_theContentCount;
  ZrU32 m_theNumOfContentColumns;
  ZrXmlWriteOptions m_theOptions;
  ZrXmlSchema m_theSchema;
  mutable std::string m_theTypeName;  // the schema name of m_theNamedTypeInfo
  // The type of the last value written; its schema name is looked up when typeName() asks.
  const std::type_info* m_theLastTypeInfo = nullptr;
  mutable const std::type_info* m_theNamedTypeInfo = nullptr;
};

// Writes one value: records its schema type, formats it in the writer's value stream and passes the text to data().
// Instantiated for bool, char, double, int, short, unsigned int, unsigned short, std::string, ZrAngle
// (its value in radians) and ZrNonNegReal.
template <class T>
ZrXmlWriter& operator<<(ZrXmlWriter& writer, const T& value);

#endif
