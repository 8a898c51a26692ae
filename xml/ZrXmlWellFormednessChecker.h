#ifndef ZR_XML_WELL_FORMEDNESS_CHECKER_H
#define ZR_XML_WELL_FORMEDNESS_CHECKER_H

#include <ZrXmlDocumentType.h>
#include <ZrXmlSpareStack.h>
#include <ZrTextAssign.h>
#include <ZrTextEqual.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class ZrXmlFileReader;

// The checks of a tokenizer in strict mode (ZrXmlFileReader::setStrict): the rules of well-formed
// XML 1.0 (fifth edition) with namespaces that the forgiving tokenizer does not look at. The tokenizer
// hands each piece of the document to the check for it as it reads; every fault is reported through the
// tokenizer's frame, "file not well formed.\n\t" and the rule broken, and reading goes on.
//
// What is checked here: every byte of the document as read (UTF-8 sequences, and the characters XML
// allows: no control characters other than tab, line feed and carriage return, no surrogates, no U+FFFE
// or U+FFFF), names (element, attribute, entity and processing-instruction target names are XML names,
// non-ASCII characters included, with at most one ':'), namespace prefixes declared in scope ("xml" is
// always bound, "xmlns" never used as an element or attribute prefix, no empty URI for a prefix; a
// prefix bound again to the same URI is fine), attributes specified twice (by name, or by namespace and
// local name), white space between attributes, '<' in attribute values, "]]>" in text, one root element,
// elements closed at the end of input, the XML declaration (only at the very start; version, encoding and
// standalone in that order and form), processing-instruction targets ("xml" in any case is reserved),
// comments ("--" only as part of the closing "-->"), and a document type declaration only before the
// root, with its internal subset (ZrXmlDocumentType). A checker lives in the tokenizer it serves and is
// made only when strict mode is on, so the forgiving mode pays nothing for it.
class ZrXmlWellFormednessChecker {
 public:
  explicit ZrXmlWellFormednessChecker(const ZrXmlFileReader& reader) : m_theReader(&reader) {}
  // A copy serves another tokenizer: the copy of the one that owned the original.
  ZrXmlWellFormednessChecker(const ZrXmlWellFormednessChecker& other, const ZrXmlFileReader& reader);
  ZrXmlWellFormednessChecker(const ZrXmlWellFormednessChecker&) = delete;
  ZrXmlWellFormednessChecker& operator=(const ZrXmlWellFormednessChecker&) = delete;

  // The first fault among the characters of a block.
  struct CharacterFault {
    std::size_t at = std::string_view::npos;  // where in the text; npos for none
    std::string what;
    bool bracket = false;  // the bytes checked hold a ']' (or may), fault or not
  };
  // The bytes of the document as they are read, each once: UTF-8 sequences and the characters XML
  // allows. Returns how many were checked: a character cut at the end waits for the next block unless
  // `last`. Only the first fault of a block is reported, so that a document in another encoding than it
  // declares gives a report per block rather than one per character.
  static std::size_t checkCharacters(std::string_view text, bool last, CharacterFault& fault);

  // Text between tags (or a CDATA section's content when cdata is set: "]]>" is its end, not a fault).
  void checkText(std::string_view text, bool cdata = false) const;
  // A start tag: the tokenizer hands over each attribute as it parses it (name and value as written, and
  // whether white space came before it), then the tag's text without '<', '>' and a closing '/', its
  // element name, the open-element stack's size with this element pushed, and whether the tag may hold a
  // '<' or a control character (the tokenizer's own pass over the tag tells; false spares a second one).
  // Kept for the tag's check: a call per attribute into another source file would cost more than this.
  void addAttribute(std::string_view name, std::string_view value, bool whiteBefore) {
    m_theAttributes.push_back({name, value, whiteBefore});
  }
  void checkStartTag(std::string_view tag, std::string_view name, std::size_t depth, bool suspect = true);
  // A start tag the tokenizer found clean in its own pass: its element and attribute names are qualified
  // names of ASCII name characters (`colon` is the position of a name's ':', npos for none), white space
  // stands before every attribute, no value holds '<' and no name is written twice. What is left to check
  // is what depends on the declarations in scope: namespace declarations, prefixes and attributes named
  // twice through two prefixes of one namespace. Most tags of most documents are clean, and this spares
  // them the look at every name's characters again.
  // Kept to five words: with a flag added, the tokenizer's stores of an attribute and the loads of it that
  // follow no longer matched, and clean tags took a third longer to read.
  // A namespace declaration ("xmlns", "xmlns:p") has theDeclarationColon in place of its ':' position.
  struct CleanAttribute {
    std::string_view name;
    std::string_view value;
    std::size_t colon;
  };
  static const std::size_t theDeclarationColon = std::string_view::npos - 1;
  static const std::size_t theCleanAttributeLimit = 16;  // a tag with more goes the long way
  // Where the tokenizer puts a clean tag's attributes, kept here so that no tag initialises a list.
  CleanAttribute* cleanAttributes() { return m_theCleanAttributes; }
  void checkCleanStartTag(std::string_view name, std::size_t colon, std::size_t depth, std::size_t count,
                          bool declares, bool prefixed) {
    // Most tags below the root declare nothing, name no attribute with a prefix and repeat the plain name
    // of the element before them at their depth: nothing is left to check.
    if (declares || prefixed || depth <= 1 || !repeatsPlainName(name, depth))
      checkCleanStartTagInScope(name, colon, depth, count, declares, prefixed);
  }
  // An end tag's name, and the open-element stack's size before it closes anything. An end tag that
  // names its element as the start tag did needs no other look: that name was checked with its prefix.
  void checkEndTag(std::string_view name, std::size_t depth) {
    if (depth == 0 || depth > m_theOpenNames.size() || !sameText(name, m_theOpenNames[depth - 1].name()))
      checkOtherEndTag(name, depth);
  }
  // The element at depth is closed: its declarations go out of scope.
  void closeElement(std::size_t depth) {
    if (!m_theDeclarations.empty() && m_theDeclarations.back().depth >= depth) closeDeclarations(depth);
  }
  // The text of a processing instruction between "<?" and "?>"; atStart when nothing came before it.
  void checkProcessingInstruction(std::string_view text, bool atStart) const;
  // The text of a comment between "<!--" and "-->".
  void checkComment(std::string_view text) const;
  // A comment's text may hold no "--" and end in no '-'.
  static bool isCommentText(std::string_view text) {
    return text.find("--") == std::string_view::npos && (text.empty() || text.back() != '-');
  }
  // A document type declaration, its text between "<!" and '>'; inRoot when an element is open or closed.
  void checkDoctype(std::string_view text);
  // The input ended with openElements elements open (innermost's name given).
  void checkEnd(std::size_t openElements, std::string_view innermost);

  bool doctypeSeen() const { return m_theDoctypeSeen; }
  // The document type declaration read, or null.
  const ZrXmlDocumentType* documentType() const { return m_theDocumentType.get(); }

  // The name productions of XML 1.0 (fifth edition): a name, a qualified name (at most one ':', a name on
  // each side), a name token (name characters only).
  static bool isName(std::string_view text);
  static bool isQualifiedName(std::string_view text);
  static bool isNameToken(std::string_view text);

 private:
  struct Declaration {
    std::string prefix;
    std::string uri;
    std::size_t depth;
    std::size_t shadowed;  // the declaration of the same prefix this one hides (npos: none); indexed only
    bool allowed = false;  // a prefix and URI found allowed, which a spare entry keeps for the next push
  };

  void report(const std::string& fault) const;
  // The namespace a prefix stands for: "xml" its own, any other the URI declared for it in scope. A prefix
  // without one (and "xmlns", which is never declared) stands for no namespace, and is reported when asked.
  // Mostly the declaration found last for the prefix's first byte, allowed and so bound to a URI.
  std::string_view namespaceOfPrefix(std::string_view prefix, bool report = true) const {
    if (!prefix.empty()) {
      const Declaration* const last = m_theLastFound[static_cast<unsigned char>(prefix[0])];
      if (last && last->allowed && sameText(prefix, last->prefix)) return last->uri;
    }
    return namespaceOfPrefixInScope(prefix, report);
  }
  std::string_view namespaceOfPrefixInScope(std::string_view prefix, bool report) const;
  const Declaration* lookUpDeclaration(std::string_view prefix) const;
  std::size_t checkName(std::string_view name);
  void checkPrefixDeclared(std::string_view prefix) const { namespaceOfPrefix(prefix); }
  void reportUndeclaredPrefix(std::string_view prefix) const;
  bool checkCleanPrefixes(std::size_t count) const;
  void checkCleanExpandedNames(std::size_t count);
  static bool isCleanPrefixed(const CleanAttribute& attribute) { return attribute.colon < theDeclarationColon; }
  static std::string_view cleanPrefix(const CleanAttribute& attribute) {
    return std::string_view(attribute.name.data(), attribute.colon);
  }
  static std::string_view cleanLocal(const CleanAttribute& attribute) {
    return std::string_view(attribute.name.data() + attribute.colon + 1, attribute.name.size() - attribute.colon - 1);
  }
  bool checkNamespaceDeclaration(std::string_view attribute, std::string_view uri) const;
  void pushDeclaration(std::string_view attribute, std::string_view uri, std::size_t depth);
  void popDeclaration();
  void closeDeclarations(std::size_t depth);
  void checkXmlDeclaration(std::string_view text, bool atStart) const;
  void checkPrefixedAttributes();
  void addExpandedName(std::string_view written, std::size_t colon);
  void reportExpandedTwice();
  void checkCleanStartTagInScope(std::string_view name, std::size_t colon, std::size_t depth, std::size_t count,
                                 bool declares, bool prefixed);
  // The element before at this depth bore the same name, a plain one: a name without a prefix is valid
  // whatever is declared.
  bool repeatsPlainName(std::string_view name, std::size_t depth) const {
    if (depth > m_theOpenNames.size()) return false;
    const OpenName& written = m_theOpenNames[depth - 1];
    return written.plain() && sameText(name, written.name());
  }
  void checkRoot(std::string_view name, std::size_t depth);
  void declare(std::string_view attribute, std::string_view uri, std::size_t depth);
  std::string_view expandedNamespaceName(std::string_view uri);
  void checkManyAttributesOnce();

  const ZrXmlFileReader* m_theReader;
  ZrXmlSpareStack<Declaration> m_theDeclarations;  // in scope, outermost first; popped ones kept as spares
  // With more declarations in scope than a look along them costs, the innermost of each prefix by name,
  // so that a look-up costs the same however many are in scope.
  std::unordered_map<std::string, std::size_t> m_thePrefixIndex;
  bool m_theIndexed = false;
  mutable std::string m_theLookupKey;  // the prefix looked up, in a string kept for its capacity
  // By a prefix's first byte, the declaration in scope a look-up found last or that was made last, the
  // innermost of its prefix: a document uses the same few prefixes again and again. A declaration of a
  // prefix with that first byte gone out of scope clears the entry. Not copied: it points into the stack.
  mutable const Declaration* m_theLastFound[256] = {};
  std::unique_ptr<ZrXmlDocumentType> m_theDocumentType;
  bool m_theRootSeen = false;
  bool m_theDoctypeSeen = false;
  bool m_theEndChecked = false;
  std::uint64_t m_theNamespaceExpansion = 0;  // bytes of entities expanded in namespace names
  std::string m_theExpandedUri;               // the last namespace name written with references, expanded
  // Work lists of the tag being checked, kept so that checking a tag allocates nothing once warmed up.
  struct WrittenAttribute {
    std::string_view first;   // the name as written
    std::string_view second;  // the value as written
    bool whiteBefore;
  };
  std::vector<WrittenAttribute> m_theAttributes;
  CleanAttribute m_theCleanAttributes[theCleanAttributeLimit];
  void checkAttributes(std::size_t depth);
  void checkOtherEndTag(std::string_view name, std::size_t depth);
  // The start tags' names as written, by depth, kept as spares: the elements of one depth mostly bear the
  // same few names. A plain name is valid and has no prefix, so nothing about it can change. Each depth
  // keeps the name before the last one too, so that two kinds of element taking turns are not copied.
  struct OpenName {
    std::string names[2];
    bool plains[2] = {false, false};
    unsigned char current = 0;
    const std::string& name() const { return names[current]; }
    bool plain() const { return plains[current]; }
    // The name becomes the current one: false when it is neither of the two kept, and is copied in.
    bool recall(std::string_view written) {
      if (sameText(written, names[current])) return true;
      current ^= 1;
      if (sameText(written, names[current])) return true;
      Zr::assignText(names[current], written);
      return false;
    }
  };
  std::vector<OpenName> m_theOpenNames;
  std::size_t m_theInvalidNames = 0;  // names reported invalid so far
  // The last names found valid, with the position of their ':': documents name the same few elements
  // again and again, and an end tag mostly names the element whose start tag came just before it.
  struct ValidName {
    std::string name;
    std::size_t colon = std::string_view::npos;
  };
  static const std::size_t theValidNames = 4;
  ValidName m_theValidNames[theValidNames];
  std::size_t m_theNextValidName = 0;  // the entry the next valid name replaces
  // Names are short: compared word by word inline, without a call of memcmp.
  static bool sameText(std::string_view one, std::string_view other) { return Zr::textEqual(one, other); }
  struct ExpandedName {
    std::string_view uri, local, written;
  };
  std::vector<ExpandedName> m_theExpandedNames;
  std::vector<std::pair<std::string_view, std::size_t>> m_theWrittenNames;  // name as written, position
};

#endif
