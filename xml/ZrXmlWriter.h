#ifndef ZR_XML_WRITER_H
#define ZR_XML_WRITER_H

#include <ZrAngle.h>
#include <ZrNonNegReal.h>
#include <ZrToken.h>
#include <ZrTypes.h>
#include <ZrXmlSchema.h>

#include <deque>
#include <map>
#include <ostream>
#include <sstream>
#include <string>
#include <typeinfo>

// Writes one XML document to a caller's stream as a strict sequence of calls: start tag, attribute
// name and value pairs, then content or child elements, then the end tag. Modes of the last call:
//   0 nothing written, 1 start tag open, 2 attribute name written, 3 attribute value written,
//   4 content buffered, 5 end tag written.
// The writer never closes its output stream. When the schema writer flag is set, the same calls
// also feed the embedded schema generator.
class ZrXmlWriter {
 public:
  enum LANGUAGE { PLAIN_XML = 0, TOOLKIT_MARKUP = 1 };

  struct ElementStruct {
    ZrToken element;
    std::string qualifiedName;                       // what the end tag prints
    std::map<std::string, std::string> namespaces;  // namespace URI -> prefix, in force at this element
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
  virtual ZrBoolean writeDefaultDataFlag() const;
  virtual void setWriteDefaultDataFlag(ZrBoolean flag);
  virtual void attributeValue(const std::string& text);
  virtual void content(const std::string& text);
  virtual void setSchemaWriter(bool flag);
  virtual void header(const ZrToken& root, const std::string& schemaNamespace);
  virtual void tab(unsigned count);

  // Plain accessors.
  int mode() const { return m_theMode; }
  ZrU32 depth() const { return static_cast<ZrU32>(m_theElementStack.size()); }
  const std::string& typeName() const { return m_theTypeName; }
  const std::string& filename() const { return m_theFilename; }
  bool schemaWriter() const { return m_theSchemaWriterFlag; }
  unsigned numOfContentColumns() const { return m_theNumOfContentColumns; }
  ZrXmlSchema& schema() { return m_theSchema; }
  std::ostream* output() const { return m_theOutput; }

  // The formatting stream of the value templates: a value is inserted, its text taken, the stream emptied.
  std::ostringstream& valueStream() { return m_theValueStream; }

  // The schema file name that header() pairs with the namespace in xsi:schemaLocation.
  static std::string schemaFileName(const std::string& filename, const std::string& schemaNamespace);

  // Class-wide defaults, copied into each new writer.
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
  static void setDefaultSchemaWriter(bool flag);
  static void setDefaultForWriteDefaultDataFlag(bool flag);
  static void setDefaultLanguageSelection(LANGUAGE language);

 private:
  std::ostringstream m_theValueStream;
  std::ostream* m_theOutput;
  std::string m_theFilename;
  int m_theMode;
  std::deque<ElementStruct> m_theElementStack;
  std::string m_theCurrentNamespace;
  std::string m_theContentBuffer;
  ZrU32 m_theContentCount;
  ZrU32 m_theNumOfContentColumns;
  ZrBoolean m_theWriteDefaultDataFlag;
  std::string m_theIndentString;
  std::string m_theHeaderLine;
  std::string m_theStyleSheetLine;
  std::string m_theSchemaInstanceText;
  std::string m_theSchemaLocationText;
  ZrXmlSchema m_theSchema;
  bool m_theSchemaWriterFlag;
  std::string m_theTypeName;
};

// Writes one value: records its schema type, formats it in the writer's value stream and passes the text to data().
template <class T>
ZrXmlWriter& operator<<(ZrXmlWriter& writer, const T& value);

#endif
