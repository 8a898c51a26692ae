#ifndef ZR_XML_WRITE_OPTIONS_H
#define ZR_XML_WRITE_OPTIONS_H

#include <string>

// Every setting of the writing side, as one plain copyable value. A writer holds one (ZrXmlWriter::options,
// setOptions); new writers start from ZrXmlWriter::defaultOptions(). Setters return the value, so that
// settings chain: ZrXmlWriteOptions::toolkit().setIndent("  ").setLosslessReals(true).
//
// Two profiles:
//   toolkit()  the toolkit's own written form, byte for byte: what a writer starts with unless the class
//              default was changed. The toolkit's programs read exactly these bytes.
//   standard() documents any XML tool reads, and that come back exactly: namespace-complete, lossless
//              reals (float included), markup and edge white space escaped, declared as UTF-8. Read them
//              with ZrXmlReadOptions::standard().
//
// The settings, with their toolkit values:
//   indent                  " "        one indentation step
//   header                  "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>"  the declaration line; empty
//                                      for none
//   styleSheet              ""         a style-sheet processing-instruction line after the declaration
//   schemaInstance          ""         the schema-instance declaration text of language selection 1
//   schemaLocation          ""         the schema location text of language selection 1
//   languageSelection(L)    -          not a setting of its own: sets indent, header, style sheet, schema
//                                      instance and schema location for language 0 (plain XML) or 1 (the
//                                      toolkit's markup dialect); any other value changes nothing
//   writeDefaultData        true       members that still hold their default value are written too
//   schemaWriter            false      the writer also feeds its schema generator (ZrXmlWriter::schema)
//   namespaceComplete       false      the root's namespace declared as the default namespace, so that
//                                      schema validators see every element in its namespace
//   losslessReals           false      reals as the shortest text that reads back to the same value (float
//                                      and double alike), INF, -INF and NaN spelled as XML Schema does;
//                                      off: six significant digits
//   escapeMarkup            false      '&', '<', '>', '"' as entity references, and a string's leading and
//                                      trailing white space and its control characters as character
//                                      references, so that every string comes back unchanged through a
//                                      reader that expands references
//   portableSchemaFileNames false      schema file names built from a namespace's last segment with
//                                      unsafe characters replaced (robot.x.xsd for urn:x)
class ZrXmlWriteOptions {
 public:
  // The toolkit's written form (the same as a default-constructed value).
  static ZrXmlWriteOptions toolkit() { return ZrXmlWriteOptions(); }
  // Documents for any XML tool that read back exactly.
  static ZrXmlWriteOptions standard();

  // The schema-instance declaration language 1 writes, the style-sheet line and the schema location are
  // the deploying toolkit's build-time settings.
  enum Language : int { PLAIN_XML = 0, TOOLKIT_MARKUP = 1 };
  ZrXmlWriteOptions& setLanguageSelection(int language);

  const std::string& indent() const { return m_theIndent; }
  ZrXmlWriteOptions& setIndent(const std::string& indent) { return set(m_theIndent, indent); }
  const std::string& header() const { return m_theHeader; }
  ZrXmlWriteOptions& setHeader(const std::string& header) { return set(m_theHeader, header); }
  const std::string& styleSheet() const { return m_theStyleSheet; }
  ZrXmlWriteOptions& setStyleSheet(const std::string& styleSheet) { return set(m_theStyleSheet, styleSheet); }
  const std::string& schemaInstance() const { return m_theSchemaInstance; }
  ZrXmlWriteOptions& setSchemaInstance(const std::string& text) { return set(m_theSchemaInstance, text); }
  const std::string& schemaLocation() const { return m_theSchemaLocation; }
  ZrXmlWriteOptions& setSchemaLocation(const std::string& text) { return set(m_theSchemaLocation, text); }

  bool writeDefaultData() const { return m_theWriteDefaultData; }
  ZrXmlWriteOptions& setWriteDefaultData(bool flag) { return set(m_theWriteDefaultData, flag); }
  bool schemaWriter() const { return m_theSchemaWriter; }
  ZrXmlWriteOptions& setSchemaWriter(bool flag) { return set(m_theSchemaWriter, flag); }
  bool namespaceComplete() const { return m_theNamespaceComplete; }
  ZrXmlWriteOptions& setNamespaceComplete(bool flag) { return set(m_theNamespaceComplete, flag); }
  bool losslessReals() const { return m_theLosslessReals; }
  ZrXmlWriteOptions& setLosslessReals(bool flag) { return set(m_theLosslessReals, flag); }
  bool escapeMarkup() const { return m_theEscapeMarkup; }
  ZrXmlWriteOptions& setEscapeMarkup(bool flag) { return set(m_theEscapeMarkup, flag); }
  bool portableSchemaFileNames() const { return m_thePortableSchemaFileNames; }
  ZrXmlWriteOptions& setPortableSchemaFileNames(bool flag) { return set(m_thePortableSchemaFileNames, flag); }

  bool operator==(const ZrXmlWriteOptions& other) const;
  bool operator!=(const ZrXmlWriteOptions& other) const { return !(*this == other); }

  // The declaration the toolkit writes, and the one of the standard profile.
  static const char* toolkitHeader();
  static const char* utf8Header();

 private:
  template <class T>
  ZrXmlWriteOptions& set(T& member, const T& value) {
    member = value;
    return *this;
  }

  std::string m_theIndent = " ";
  std::string m_theHeader = toolkitHeader();
  std::string m_theStyleSheet;
  std::string m_theSchemaInstance;
  std::string m_theSchemaLocation;
  bool m_theWriteDefaultData = true;
  bool m_theSchemaWriter = false;
  bool m_theNamespaceComplete = false;
  bool m_theLosslessReals = false;
  bool m_theEscapeMarkup = false;
  bool m_thePortableSchemaFileNames = false;
};

#endif
