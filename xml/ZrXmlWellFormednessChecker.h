#ifndef ZR_XML_WELL_FORMEDNESS_CHECKER_H
#define ZR_XML_WELL_FORMEDNESS_CHECKER_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

class ZrXmlFileReader;

// The checks of a tokenizer in strict mode (ZrXmlFileReader::setStrict): the rules of well-formed
// XML 1.0 with namespaces that the forgiving tokenizer does not look at. The tokenizer hands each piece
// of the document to the check for it as it reads; every fault is reported through the tokenizer's frame,
// "file not well formed.\n\t" and the rule broken, and reading goes on.
//
// What is checked here: names (element, attribute and processing-instruction target names are XML names
// with at most one ':', bytes above 127 taken as name characters), namespace prefixes declared in scope
// ("xml" is always bound, "xmlns" never used as an element or attribute prefix, no empty URI for a
// prefix), attributes specified twice (by name, or by namespace and local name), white space between
// attributes, '<' in attribute values, characters XML does not allow (control characters other than tab,
// line feed and carriage return), "]]>" in text, one root element, elements closed at the end of input,
// the XML declaration (only at the very start; version, encoding and standalone in that order and form),
// processing-instruction targets ("xml" in any case is reserved), comments ("--" only as part of the
// closing "-->"), and a document type declaration only before the root. A checker lives in the tokenizer
// it serves and is made only when strict mode is on, so the forgiving mode pays nothing for it.
class ZrXmlWellFormednessChecker {
 public:
  explicit ZrXmlWellFormednessChecker(const ZrXmlFileReader& reader) : m_theReader(&reader) {}
  // A copy serves another tokenizer: the copy of the one that owned the original.
  ZrXmlWellFormednessChecker(const ZrXmlWellFormednessChecker& other, const ZrXmlFileReader& reader);
  ZrXmlWellFormednessChecker(const ZrXmlWellFormednessChecker&) = delete;
  ZrXmlWellFormednessChecker& operator=(const ZrXmlWellFormednessChecker&) = delete;

  // Text between tags (or a CDATA section's content when cdata is set: "]]>" is its end, not a fault).
  void checkText(std::string_view text, bool cdata = false) const;
  // A start tag: the tokenizer hands over each attribute as it parses it (name and value as written, and
  // whether white space came before it), then the tag's text without '<', '>' and a closing '/', its
  // element name, the open-element stack's size with this element pushed, and whether the tag may hold a
  // '<' or a control character (the tokenizer's own pass over the tag tells; false spares a second one).
  void addAttribute(std::string_view name, std::string_view value, bool whiteBefore);
  void checkStartTag(std::string_view tag, std::string_view name, std::size_t depth, bool suspect = true);
  // An end tag's name.
  void checkEndTag(std::string_view name) const;
  // The element at depth is closed: its declarations go out of scope.
  void closeElement(std::size_t depth);
  // The text of a processing instruction between "<?" and "?>"; atStart when nothing came before it.
  void checkProcessingInstruction(std::string_view text, bool atStart) const;
  // The text of a comment between "<!--" and "-->".
  void checkComment(std::string_view text) const;
  // A document type declaration, its text between "<!" and '>'; inRoot when an element is open or closed.
  void checkDoctype(std::string_view text);
  // The input ended with openElements elements open (innermost's name given).
  void checkEnd(std::size_t openElements, std::string_view innermost);

  bool doctypeSeen() const { return m_theDoctypeSeen; }

  static bool isName(std::string_view text);
  static bool isQualifiedName(std::string_view text);

 private:
  struct Declaration {
    std::string prefix;
    std::string uri;
    std::size_t depth;
  };

  void report(const std::string& fault) const;
  const Declaration* declared(std::string_view prefix) const;
  std::size_t checkName(std::string_view name) const;
  void checkPrefixDeclared(std::string_view prefix) const;
  void checkNamespaceDeclaration(std::string_view attribute, std::string_view uri) const;
  void checkCharacters(std::string_view text) const;
  void checkXmlDeclaration(std::string_view text, bool atStart) const;
  void checkPrefixedAttributes();
  void checkManyAttributesOnce();

  const ZrXmlFileReader* m_theReader;
  std::vector<Declaration> m_theDeclarations;  // in scope, outermost first
  bool m_theRootSeen = false;
  bool m_theDoctypeSeen = false;
  bool m_theEndChecked = false;
  // Work lists of the tag being checked, kept so that checking a tag allocates nothing once warmed up.
  std::vector<std::pair<std::string_view, std::string_view>> m_theAttributes;  // name and value as written
  std::vector<std::pair<std::string, std::string_view>> m_theExpandedNames;  // namespace#local, as written
  std::vector<std::pair<std::string_view, std::size_t>> m_theWrittenNames;  // name as written, position
  bool m_theTagDeclares = false;     // the tag being read declares namespaces
  bool m_theTagHasPrefixes = false;  // the tag being read has prefixed attribute names
};

#endif
