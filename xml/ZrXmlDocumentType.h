#ifndef ZR_XML_DOCUMENT_TYPE_H
#define ZR_XML_DOCUMENT_TYPE_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

// A document type declaration as strict mode reads it: "DOCTYPE name", an optional external identifier
// (never fetched) and an internal subset, whose markup declarations (elements, attribute lists, entities,
// notations, processing instructions, comments, parameter-entity references between them) are checked
// for well-formedness. Each fault goes to the report function as the rule broken. Internal general
// entities are kept for the references of the document; the first declaration of a name binds it.
class ZrXmlDocumentType {
 public:
  struct Entity {
    std::string replacement;  // character references expanded, entity references left as written
    bool external = false;    // declared with SYSTEM or PUBLIC: its text is not read
    bool unparsed = false;    // declared with NDATA
    // Its replacement text has been checked as content, the first time it was referred to there: the
    // check is made once however often the entity is used.
    mutable bool contentChecked = false;
  };
  typedef std::function<void(const std::string& fault)> Report;

  // `text` is the declaration between "<!" and the closing '>'. Attributes' default values are
  // expanded once as they are declared, so that their faults (an entity that refers to itself, '<'
  // brought in) are found even when no element takes the default; all of them together expand at most
  // `expansionLimit` bytes of replacement text.
  void parse(std::string_view text, const Report& report, std::uint64_t expansionLimit);

  // The general entity of that name, or null.
  const Entity* entity(std::string_view name) const;
  // Appends what the entity `name` stands for in content (or, with inAttribute, in an attribute value):
  // its replacement text with the references in it expanded in turn, nested entities followed with a
  // stack of their own rather than by recursion. Faults (a reference to an undeclared, unparsed or
  // external entity where it cannot stand, an entity that refers to itself, '<' brought into an attribute
  // value, a character reference to no XML character) are reported and the reference is kept as
  // written. In content, each entity's replacement text is checked once to be well-formed content on its
  // own, and the markup in it (tags, comments, processing instructions, CDATA sections) is appended as
  // written, its '&' no reference. `produced` counts the bytes of replacement text expanded; past `limit`
  // nothing more is expanded and the result is false (the caller reports it).
  bool expand(std::string_view name, bool inAttribute, std::string& out, std::uint64_t& produced,
              std::uint64_t limit, const Report& report) const;

  // Appends an attribute value with its references expanded, for a check that compares what they stand
  // for (a namespace's name): character references, the predefined entities and the internal entities of
  // `declared`, which may be null. Faults are reported and the reference is kept as written; so are the
  // entities once `produced` has passed `limit` (reported when it passes).
  static void expandValue(const ZrXmlDocumentType* declared, std::string_view value, std::string& out,
                          std::uint64_t& produced, std::uint64_t limit, const Report& report);

  // Whether a reference to an undeclared entity is allowed: the declarations may not all have been read
  // (an external subset, or a parameter-entity reference in the internal one).
  bool declarationsIncomplete() const { return m_theExternalSubset || m_theParameterReferenced; }

 private:
  // The parser's position in the text being read.
  struct Cursor {
    std::string_view text;
    std::size_t at = 0;
    bool atEnd() const { return at >= text.size(); }
    char peek() const { return at < text.size() ? text[at] : '\0'; }
    bool takes(std::string_view word);
    bool skipWhite();  // true when there was white space
    std::string_view name();
    std::string_view nameToken();
    bool quoted(std::string_view& value);
  };

  void parseSubset(Cursor& in);
  void parseElement(Cursor& in);
  bool parseContentModel(Cursor& in);
  void parseAttributeList(Cursor& in);
  bool parseAttributeType(Cursor& in);
  bool parseDefaultValue(Cursor& in);
  void expandDefault(std::string_view name);
  std::string valueReferenceFault(std::string_view name, const Entity*& internal) const;
  bool checkContent(std::string_view name, const Entity& entity, std::uint64_t& produced, std::uint64_t limit,
                    const Report& report) const;
  std::string markupFault(std::string_view markup, std::vector<std::string_view>& open, std::uint64_t& produced,
                          std::uint64_t limit, const Report& report, bool& stopped) const;
  std::string startTagFault(std::string_view tag, std::uint64_t& produced, std::uint64_t limit, const Report& report,
                            bool& stopped) const;
  std::string attributeValueFault(std::string_view value, std::uint64_t& produced, std::uint64_t limit,
                                  const Report& report, bool& stopped) const;
  void parseEntity(Cursor& in);
  void parseNotation(Cursor& in);
  bool parseExternalId(Cursor& in, bool publicIdAlone);
  bool replacementText(std::string_view value, std::string& replacement);
  bool endDeclaration(Cursor& in, const char* what);
  void skipToDeclarationEnd(Cursor& in);
  void fault(const std::string& what) const { (*m_theReport)(what); }

  std::unordered_map<std::string, Entity> m_theEntities;
  std::unordered_map<std::string, bool> m_theParameterEntities;  // name -> external
  bool m_theExternalSubset = false;
  bool m_theParameterReferenced = false;
  const Report* m_theReport = nullptr;
  // The default values' expansion while the declaration is parsed: its limit and the bytes used so far.
  std::uint64_t m_theExpansionLimit = 0;
  std::uint64_t m_theDefaultsExpanded = 0;
};

#endif
