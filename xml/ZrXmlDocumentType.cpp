#include "ZrXmlDocumentType.h"

#include "ZrXmlCharacters.h"

#include "ZrXmlWellFormednessChecker.h"

#include <algorithm>
#include <vector>

namespace {

bool isWhite(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// The characters that end a name or name token inside a declaration.
bool endsName(char c) {
  switch (c) {
    case '>': case '(': case ')': case '|': case ',': case '?': case '*': case '+': case '"': case '\'':
    case '[': case ']': case '%': case ';': case '<': case '=': case '&':
      return true;
    default:
      return isWhite(c);
  }
}

// A name without ':' (namespaces leave no room for one), and not "xml" in any case, which is reserved.
bool isProcessingInstructionTarget(std::string_view target) {
  if (!ZrXmlWellFormednessChecker::isName(target) || target.find(':') != std::string_view::npos) return false;
  return !(target.size() == 3 && (target[0] | 0x20) == 'x' && (target[1] | 0x20) == 'm' && (target[2] | 0x20) == 'l');
}

bool isPublicIdChar(char c) {
  if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')) return true;
  for (char allowed : std::string_view(" \r\n-'()+,./:=?;!*#@$_%"))
    if (c == allowed) return true;
  return false;
}




}  // namespace

// ---- the cursor ----

bool ZrXmlDocumentType::Cursor::takes(std::string_view word) {
  if (text.compare(at, word.size(), word) != 0) return false;
  at += word.size();
  return true;
}

bool ZrXmlDocumentType::Cursor::skipWhite() {
  const std::size_t from = at;
  while (at < text.size() && isWhite(text[at])) ++at;
  return at != from;
}

std::string_view ZrXmlDocumentType::Cursor::nameToken() {
  const std::size_t from = at;
  while (at < text.size() && !endsName(text[at])) ++at;
  return text.substr(from, at - from);
}

std::string_view ZrXmlDocumentType::Cursor::name() { return nameToken(); }

// A literal in single or double quotes; false, consuming nothing, without its closing quote.
bool ZrXmlDocumentType::Cursor::quoted(std::string_view& value) {
  const char quote = peek();
  if (quote != '"' && quote != '\'') return false;
  const std::size_t close = text.find(quote, at + 1);
  if (close == std::string_view::npos) return false;
  value = text.substr(at + 1, close - at - 1);
  at = close + 1;
  return true;
}

// ---- the declaration ----

const ZrXmlDocumentType::Entity* ZrXmlDocumentType::entity(std::string_view name) const {
  const auto found = m_theEntities.find(std::string(name));
  return found == m_theEntities.end() ? nullptr : &found->second;
}

void ZrXmlDocumentType::parse(std::string_view text, const Report& report, std::uint64_t expansionLimit) {
  m_theReport = &report;
  m_theExpansionLimit = expansionLimit;
  m_theDefaultsExpanded = 0;
  Cursor in{text, 0};
  in.takes("!DOCTYPE");
  const bool white = in.skipWhite();
  const std::string_view name = in.name();
  if (!white || !ZrXmlWellFormednessChecker::isQualifiedName(name)) fault("Invalid name: " + std::string(name));
  const bool whiteBefore = in.skipWhite();
  if (in.peek() == 'S' || in.peek() == 'P') {
    if (!whiteBefore) fault("White space required in document type declaration.");
    m_theExternalSubset = true;
    if (!parseExternalId(in, false)) {
      m_theReport = nullptr;
      return;
    }
    in.skipWhite();
  }
  if (in.peek() == '[') {
    ++in.at;
    parseSubset(in);
    if (in.peek() == ']') ++in.at;
    else fault("Internal subset not closed with ']'.");
    in.skipWhite();
  }
  if (!in.atEnd()) fault("Malformed document type declaration.");
  m_theReport = nullptr;
}

// SYSTEM "literal" or PUBLIC "public id" "literal"; with publicIdAlone (a notation), PUBLIC "public id".
bool ZrXmlDocumentType::parseExternalId(Cursor& in, bool publicIdAlone) {
  std::string_view literal;
  if (in.takes("SYSTEM")) {
    if (in.skipWhite() && in.quoted(literal)) return true;
  } else if (in.takes("PUBLIC")) {
    if (in.skipWhite() && in.quoted(literal)) {
      for (char c : literal)
        if (!isPublicIdChar(c)) {
          fault("Character not allowed in a public identifier: " + std::string(1, c));
          break;
        }
      const std::size_t before = in.at;
      const bool white = in.skipWhite();
      if (white && in.quoted(literal)) return true;
      in.at = before;
      if (publicIdAlone) return true;
    }
  }
  fault("Malformed external identifier.");
  return false;
}

void ZrXmlDocumentType::parseSubset(Cursor& in) {
  for (;;) {
    in.skipWhite();
    if (in.atEnd() || in.peek() == ']') return;
    if (in.takes("<!--")) {
      const std::size_t end = in.text.find("--", in.at);
      if (end == std::string_view::npos || end + 2 >= in.text.size() || in.text[end + 2] != '>') {
        fault("Comment contains extra -- in it.");
        skipToDeclarationEnd(in);
      } else {
        in.at = end + 3;
      }
    } else if (in.takes("<?")) {
      const std::size_t end = std::min(in.text.find("?>", in.at), in.text.size());
      // The target is all up to white space or "?>": a character that may not stand in a name spoils it.
      std::size_t targetEnd = in.at;
      while (targetEnd < end && !isWhite(in.text[targetEnd])) ++targetEnd;
      const std::string_view target = in.text.substr(in.at, targetEnd - in.at);
      if (!isProcessingInstructionTarget(target)) fault("Invalid processing instruction target: " + std::string(target));
      in.at = end == in.text.size() ? end : end + 2;
    } else if (in.peek() == '%') {
      ++in.at;
      const std::string_view name = in.name();
      if (!ZrXmlWellFormednessChecker::isName(name) || !in.takes(";"))
        fault("Malformed parameter-entity reference: %" + std::string(name));
      else if (m_theParameterEntities.find(std::string(name)) == m_theParameterEntities.end() && !m_theExternalSubset)
        fault("Undefined parameter entity: %" + std::string(name) + ";");
      // The entity's declarations are not read: from here on, undeclared entities are not faults.
      m_theParameterReferenced = true;
    } else if (in.takes("<!ELEMENT")) {
      parseElement(in);
    } else if (in.takes("<!ATTLIST")) {
      parseAttributeList(in);
    } else if (in.takes("<!ENTITY")) {
      parseEntity(in);
    } else if (in.takes("<!NOTATION")) {
      parseNotation(in);
    } else {
      fault("Markup declaration not allowed in the internal subset.");
      skipToDeclarationEnd(in);
    }
  }
}

// After a fault inside a declaration: on after its '>' (outside quotes), so the next one is read.
void ZrXmlDocumentType::skipToDeclarationEnd(Cursor& in) {
  char quote = 0;
  for (; !in.atEnd(); ++in.at) {
    const char c = in.text[in.at];
    if (quote) quote = c == quote ? 0 : quote;
    else if (c == '"' || c == '\'') quote = c;
    else if (c == '>' || c == ']') break;
  }
  if (in.peek() == '>') ++in.at;
}

bool ZrXmlDocumentType::endDeclaration(Cursor& in, const char* what) {
  in.skipWhite();
  if (in.takes(">")) return true;
  fault(std::string("Malformed ") + what + " declaration.");
  skipToDeclarationEnd(in);
  return false;
}

void ZrXmlDocumentType::parseElement(Cursor& in) {
  const bool white = in.skipWhite();
  const std::string_view name = in.name();
  if (!white || !ZrXmlWellFormednessChecker::isQualifiedName(name)) fault("Invalid name: " + std::string(name));
  if (!in.skipWhite()) {
    fault("Malformed element declaration.");
    skipToDeclarationEnd(in);
    return;
  }
  const bool model = in.takes("EMPTY") || in.takes("ANY") || parseContentModel(in);
  if (!model) {
    fault("Malformed element declaration.");
    skipToDeclarationEnd(in);
    return;
  }
  endDeclaration(in, "element");
}

// A content model: mixed content ("(#PCDATA|a|b)*" or "(#PCDATA)") or groups of names joined by ',' or
// '|', each with an optional '?', '*' or '+'. Nested groups are followed with a stack of their joints, not
// by recursion, so that no nesting in the input can run the stack out.
bool ZrXmlDocumentType::parseContentModel(Cursor& in) {
  if (!in.takes("(")) return false;
  in.skipWhite();
  if (in.takes("#PCDATA")) {
    bool names = false;
    for (;;) {
      in.skipWhite();
      if (in.takes(")")) break;
      if (!in.takes("|")) return false;
      in.skipWhite();
      if (!ZrXmlWellFormednessChecker::isQualifiedName(in.name())) return false;
      names = true;
    }
    return in.takes("*") || !names;
  }
  std::string joints(1, '\0');  // per open group: ',' or '|' once known, '\0' before
  bool expectItem = true;
  while (!joints.empty()) {
    in.skipWhite();
    if (expectItem) {
      if (in.takes("(")) {
        joints += '\0';
        continue;
      }
      if (!ZrXmlWellFormednessChecker::isQualifiedName(in.name())) return false;
      if (in.peek() == '?' || in.peek() == '*' || in.peek() == '+') ++in.at;
      expectItem = false;
      continue;
    }
    const char c = in.peek();
    if (c == ')') {
      ++in.at;
      joints.pop_back();
      if (in.peek() == '?' || in.peek() == '*' || in.peek() == '+') ++in.at;
      continue;
    }
    if (c != ',' && c != '|') return false;
    if (joints.back() != '\0' && joints.back() != c) return false;  // ',' and '|' mixed in one group
    joints.back() = c;
    ++in.at;
    expectItem = true;
  }
  return true;
}

void ZrXmlDocumentType::parseAttributeList(Cursor& in) {
  const bool white = in.skipWhite();
  const std::string_view element = in.name();
  if (!white || !ZrXmlWellFormednessChecker::isQualifiedName(element)) fault("Invalid name: " + std::string(element));
  for (;;) {
    const bool whiteBefore = in.skipWhite();
    if (in.takes(">")) return;
    const std::string_view name = in.name();
    const bool valid = whiteBefore && ZrXmlWellFormednessChecker::isQualifiedName(name) && in.skipWhite() &&
                       parseAttributeType(in) && in.skipWhite() && parseDefaultValue(in);
    if (!valid) {
      fault("Malformed attribute-list declaration.");
      skipToDeclarationEnd(in);
      return;
    }
  }
}

bool ZrXmlDocumentType::parseAttributeType(Cursor& in) {
  static const char* const theTypes[] = {"CDATA", "IDREFS", "IDREF", "ID", "ENTITIES", "ENTITY", "NMTOKENS", "NMTOKEN"};
  const bool notation = in.takes("NOTATION");
  if (!notation) {
    for (const char* type : theTypes) {
      const std::size_t before = in.at;
      if (in.takes(type) && (in.atEnd() || isWhite(in.peek()))) return true;
      in.at = before;
    }
  } else if (!in.skipWhite()) {
    return false;
  }
  // An enumeration of name tokens, or the notation names after NOTATION.
  if (!in.takes("(")) return false;
  for (;;) {
    in.skipWhite();
    const std::string_view token = in.nameToken();
    if (notation ? !ZrXmlWellFormednessChecker::isName(token) : !ZrXmlWellFormednessChecker::isNameToken(token))
      return false;
    in.skipWhite();
    if (in.takes(")")) return true;
    if (!in.takes("|")) return false;
  }
}

// #REQUIRED, #IMPLIED, or a default value (after #FIXED): no '<', and every '&' a reference to a
// character or to an internal entity declared before it.
bool ZrXmlDocumentType::parseDefaultValue(Cursor& in) {
  if (in.takes("#REQUIRED") || in.takes("#IMPLIED")) return true;
  if (in.takes("#FIXED") && !in.skipWhite()) return false;
  std::string_view value;
  if (!in.quoted(value)) return false;
  if (value.find('<') != std::string_view::npos) fault("'<' not allowed in attribute value.");
  for (std::size_t amp = value.find('&'); amp != std::string_view::npos; amp = value.find('&', amp + 1)) {
    const std::size_t semicolon = value.find(';', amp);
    const std::string_view name =
        value.substr(amp + 1, semicolon == std::string_view::npos ? std::string_view::npos : semicolon - amp - 1);
    if (semicolon == std::string_view::npos || name.empty()) {
      fault("'&' not followed by a reference.");
      continue;
    }
    const Entity* internal;
    const std::string what = valueReferenceFault(name, internal);
    if (!what.empty()) fault(what);
    else if (internal) expandDefault(name);
  }
  return true;
}

// Expands an internal entity referred to in a default value, for the faults on the way; what it stands
// for is not kept. Past the limit the default values' references are no longer expanded.
void ZrXmlDocumentType::expandDefault(std::string_view name) {
  if (m_theDefaultsExpanded > m_theExpansionLimit) return;
  std::string expansion;
  if (expand(name, true, expansion, m_theDefaultsExpanded, m_theExpansionLimit, *m_theReport)) return;
  // expand stopped with the count past the limit: this is reported once.
  fault("Entity expansion passes " + std::to_string(m_theExpansionLimit) + " bytes in a default value: &" +
        std::string(name) + ";");
}

void ZrXmlDocumentType::parseEntity(Cursor& in) {
  bool white = in.skipWhite();
  const bool parameter = in.takes("%");
  if (parameter) white = in.skipWhite() && white;
  const std::string_view name = in.name();
  if (!white || !ZrXmlWellFormednessChecker::isName(name) || name.find(':') != std::string_view::npos)
    fault("Invalid name: " + std::string(name));
  if (!in.skipWhite()) {
    fault("Malformed entity declaration.");
    skipToDeclarationEnd(in);
    return;
  }
  Entity declared;
  std::string_view value;
  if (in.quoted(value)) {
    if (!replacementText(value, declared.replacement)) {
      skipToDeclarationEnd(in);
      return;
    }
  } else if (parseExternalId(in, false)) {
    declared.external = true;
    const std::size_t before = in.at;
    if (in.skipWhite() && in.takes("NDATA")) {
      if (parameter || !in.skipWhite() || !ZrXmlWellFormednessChecker::isName(in.name())) {
        fault("Malformed entity declaration.");
        skipToDeclarationEnd(in);
        return;
      }
      declared.unparsed = true;
    } else {
      in.at = before;
    }
  } else {
    skipToDeclarationEnd(in);
    return;
  }
  if (!endDeclaration(in, "entity")) return;
  // After a parameter-entity reference that was not read, a non-validating processor leaves the
  // declarations alone: they might be overridden by the ones it did not read.
  if (m_theParameterReferenced) return;
  if (parameter) m_theParameterEntities.emplace(std::string(name), declared.external);
  else m_theEntities.emplace(std::string(name), std::move(declared));
}

// An entity value's replacement text: character references expanded, entity references kept as
// written (they are expanded where the entity is used). A parameter-entity reference cannot stand inside
// a declaration of the internal subset.
bool ZrXmlDocumentType::replacementText(std::string_view value, std::string& replacement) {
  replacement.reserve(value.size());
  for (std::size_t at = 0; at < value.size();) {
    const char c = value[at];
    if (c == '%') {
      fault("Parameter-entity reference inside a declaration of the internal subset.");
      return false;
    }
    if (c != '&') {
      replacement += c;
      ++at;
      continue;
    }
    const std::size_t semicolon = value.find(';', at);
    const std::string_view name =
        value.substr(at + 1, semicolon == std::string_view::npos ? std::string_view::npos : semicolon - at - 1);
    if (semicolon == std::string_view::npos || name.empty() ||
        (name[0] != '#' && !ZrXmlWellFormednessChecker::isName(name))) {
      fault("'&' not followed by a reference.");
      return false;
    }
    if (name[0] == '#') {
      const unsigned long code = ZrXmlCharacters::characterReferenceCode(name);
      if (!ZrXmlCharacters::isXmlChar(code)) {
        fault("Invalid character reference: &" + std::string(name) + ";");
        return false;
      }
      ZrXmlCharacters::appendUtf8(replacement, code);
    } else {
      replacement.append(value.substr(at, semicolon + 1 - at));
    }
    at = semicolon + 1;
  }
  return true;
}

void ZrXmlDocumentType::parseNotation(Cursor& in) {
  const bool white = in.skipWhite();
  const std::string_view name = in.name();
  if (!white || !ZrXmlWellFormednessChecker::isName(name) || name.find(':') != std::string_view::npos)
    fault("Invalid name: " + std::string(name));
  if (!in.skipWhite() || !parseExternalId(in, true)) {
    skipToDeclarationEnd(in);
    return;
  }
  endDeclaration(in, "notation");
}

// ---- expansion ----

namespace {

const char* predefinedEntity(std::string_view name) {
  if (name == "lt") return "<";
  if (name == "gt") return ">";
  if (name == "amp") return "&";
  if (name == "apos") return "'";
  if (name == "quot") return "\"";
  return nullptr;
}

const std::size_t npos = std::string_view::npos;

bool startsWith(std::string_view text, std::string_view start) { return text.compare(0, start.size(), start) == 0; }

// The position after `close`, searched from `from`; npos without it.
std::size_t endAfter(std::string_view text, std::size_t from, std::string_view close) {
  const std::size_t found = text.find(close, from);
  return found == npos ? npos : found + close.size();
}

// The position after the markup beginning with the '<' at `at` (a comment, a CDATA section, a processing
// instruction or a tag, whose quoted values may hold '>'); npos when the text ends before it does.
std::size_t markupEnd(std::string_view text, std::size_t at) {
  const std::string_view rest = text.substr(at);
  if (startsWith(rest, "<!--")) return endAfter(text, at + 4, "-->");
  if (startsWith(rest, "<![CDATA[")) return endAfter(text, at + 9, "]]>");
  if (startsWith(rest, "<?")) return endAfter(text, at + 2, "?>");
  char quote = 0;
  for (++at; at < text.size(); ++at) {
    const char c = text[at];
    if (quote) quote = c == quote ? 0 : quote;
    else if (c == '"' || c == '\'') quote = c;
    else if (c == '>') return at + 1;
  }
  return npos;
}

// The first bytes of a text, for a message: no more than 16, and no character cut in two.
std::string_view excerpt(std::string_view text) {
  std::size_t size = std::min<std::size_t>(text.size(), 16);
  if (size < text.size())
    while (size > 0 && (static_cast<unsigned char>(text[size]) & 0xC0) == 0x80) --size;
  return text.substr(0, size);
}

std::string_view trimTrailingWhite(std::string_view text) {
  while (!text.empty() && isWhite(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace

bool ZrXmlDocumentType::expand(std::string_view name, bool inAttribute, std::string& out, std::uint64_t& produced,
                               std::uint64_t limit, const Report& report) const {
  struct Frame {
    std::string_view name;
    std::string_view text;
    std::size_t at;
  };
  std::vector<Frame> frames;
  bool lessThanReported = false;
  // Opens the entity `called` for expansion, or reports why it cannot be and keeps the reference.
  const auto open = [&](std::string_view called, std::string_view written) {
    const Entity* found = entity(called);
    std::string fault;
    if (!found) {
      if (!declarationsIncomplete()) fault = "Undefined entity reference: ";
    } else if (found->unparsed) {
      fault = "Reference to an unparsed entity: ";
    } else if (found->external && inAttribute) {
      fault = "External entity referenced in attribute value: ";
    } else if (!found->external) {
      for (const Frame& frame : frames)
        if (frame.name == called) fault = "Entity refers to itself: ";
    }
    if (!fault.empty()) report(fault + std::string(written));
    if (!found || found->unparsed || found->external || !fault.empty()) {
      out.append(written.data(), written.size());  // not read, or faulty: kept as written
      return true;
    }
    if (!inAttribute && !found->contentChecked && !checkContent(called, *found, produced, limit, report)) return false;
    produced += found->replacement.size();
    if (produced > limit) return false;
    frames.push_back({called, found->replacement, 0});
    return true;
  };
  const std::string written = "&" + std::string(name) + ";";
  if (!open(name, written)) return false;
  while (!frames.empty()) {
    Frame& frame = frames.back();
    if (frame.at >= frame.text.size()) {
      frames.pop_back();
      continue;
    }
    // In content, markup is taken as it is written, up to its end: the '&' in a CDATA section, a comment
    // or a processing instruction begins no reference. What it adds to the content is characters: the
    // elements an entity holds do not become events.
    const std::size_t amp = frame.text.find_first_of(inAttribute ? "&" : "&<", frame.at);
    const std::string_view plain = frame.text.substr(frame.at, amp == std::string_view::npos ? std::string_view::npos : amp - frame.at);
    if (inAttribute && !lessThanReported && plain.find('<') != std::string_view::npos) {
      report("'<' not allowed in attribute value.");
      lessThanReported = true;
    }
    out.append(plain.data(), plain.size());
    if (amp == std::string_view::npos) {
      frame.at = frame.text.size();
      continue;
    }
    if (frame.text[amp] == '<') {
      const std::size_t end = std::min(markupEnd(frame.text, amp), frame.text.size());
      out.append(frame.text.data() + amp, end - amp);
      frame.at = end;
      continue;
    }
    // A '&' that a character reference brought into the replacement text may begin no reference.
    const std::size_t semicolon = frame.text.find(';', amp);
    if (semicolon == std::string_view::npos || semicolon == amp + 1) {
      report("'&' not followed by a reference.");
      out += '&';
      frame.at = amp + 1;
      continue;
    }
    const std::string_view reference = frame.text.substr(amp + 1, semicolon - amp - 1);
    frame.at = semicolon + 1;
    if (reference[0] == '#') {
      // A character reference a reference to '&' brought in ("&#38;#38;") is read here, not where declared.
      const unsigned long code = ZrXmlCharacters::characterReferenceCode(reference);
      if (ZrXmlCharacters::isXmlChar(code)) {
        ZrXmlCharacters::appendUtf8(out, code);
      } else {
        const std::string_view asWritten = frame.text.substr(amp, semicolon + 1 - amp);
        report("Invalid character reference: " + std::string(asWritten));
        out.append(asWritten.data(), asWritten.size());
      }
    } else if (const char* predefined = predefinedEntity(reference)) {
      out += predefined;
    } else if (!open(reference, frame.text.substr(amp, semicolon + 1 - amp))) {
      return false;
    }
  }
  return true;
}

// The fault of a reference in an attribute value, its name between '&' and ';', or nothing. `internal`
// is the internal entity it names, whose text the caller expands; null for any other reference. A
// predefined entity the document declares again is taken as declared.
std::string ZrXmlDocumentType::valueReferenceFault(std::string_view name, const Entity*& internal) const {
  internal = nullptr;
  const std::string written = "&" + std::string(name) + ";";
  if (name[0] == '#')
    return ZrXmlCharacters::isXmlChar(ZrXmlCharacters::characterReferenceCode(name)) ? std::string()
                                                                                     : "Invalid character reference: " + written;
  const Entity* found = entity(name);
  if (!found)
    return declarationsIncomplete() || predefinedEntity(name) ? std::string() : "Undefined entity reference: " + written;
  if (found->external || found->unparsed) return "External entity referenced in attribute value: " + written;
  internal = found;
  return {};
}

// ---- an entity's replacement text as content ----

// The replacement text of an entity referred to in content must be content on its own: elements closed
// where they are opened, tags, comments, processing instructions and CDATA sections whole, no "]]>" in
// text. The references in its text are the expansion's to follow and report; those in its tags' values
// are looked at here. Element nesting is kept in a list, not followed by recursion. The first fault is
// reported, once for the entity. False when the expansion limit was passed.
bool ZrXmlDocumentType::checkContent(std::string_view name, const Entity& entity, std::uint64_t& produced,
                                     std::uint64_t limit, const Report& report) const {
  entity.contentChecked = true;
  const std::string_view text = entity.replacement;
  std::vector<std::string_view> open;  // the elements opened and not yet closed, innermost last
  std::string what;
  bool stopped = false;
  for (std::size_t at = text.find_first_of("<]"); at != npos && what.empty() && !stopped;
       at = text.find_first_of("<]", at)) {
    if (text[at] == ']') {
      if (text.compare(at, 3, "]]>") == 0) what = "']]>' not allowed in text.";
      ++at;
      continue;
    }
    const std::size_t end = markupEnd(text, at);
    if (end == npos) {
      what = "Markup not closed within the entity: " + std::string(excerpt(text.substr(at)));
      break;
    }
    what = markupFault(text.substr(at, end - at), open, produced, limit, report, stopped);
    at = end;
  }
  if (what.empty() && !open.empty()) what = "Element not closed: " + std::string(open.back());
  if (!what.empty() && !stopped)
    report("Entity's replacement text is not well-formed content: &" + std::string(name) + ";\n\t" + what);
  return !stopped;
}

// One piece of markup of an entity's replacement text, from its '<' to its end; `open` follows the
// elements it opens and closes.
std::string ZrXmlDocumentType::markupFault(std::string_view markup, std::vector<std::string_view>& open,
                                           std::uint64_t& produced, std::uint64_t limit, const Report& report,
                                           bool& stopped) const {
  if (startsWith(markup, "<!--")) {
    const std::string_view body = markup.substr(4, markup.size() - 7);
    if (!ZrXmlWellFormednessChecker::isCommentText(body)) return "Comment contains extra -- in it.";
    return {};
  }
  if (startsWith(markup, "<![CDATA[")) return {};
  if (startsWith(markup, "<?")) {
    // "<?xml" too: an XML declaration has no place inside an entity referred to in content.
    const std::string_view body = markup.substr(2, markup.size() - 4);
    std::size_t targetEnd = 0;
    while (targetEnd < body.size() && !isWhite(body[targetEnd])) ++targetEnd;
    const std::string_view target = body.substr(0, targetEnd);
    if (!isProcessingInstructionTarget(target)) return "Invalid processing instruction target: " + std::string(target);
    return {};
  }
  if (startsWith(markup, "<!")) return "Markup declaration not allowed in content.";
  if (startsWith(markup, "</")) {
    const std::string_view name = trimTrailingWhite(markup.substr(2, markup.size() - 3));
    if (open.empty()) return "End tag without its start tag: </" + std::string(name) + ">";
    if (open.back() != name)
      return "End tag does not match start tag: </" + std::string(name) + "> closes <" + std::string(open.back()) + ">";
    open.pop_back();
    return {};
  }
  std::string_view tag = markup.substr(1, markup.size() - 2);
  const bool empty = !tag.empty() && tag.back() == '/';
  if (empty) tag.remove_suffix(1);
  std::string what = startTagFault(tag, produced, limit, report, stopped);
  if (what.empty() && !empty) {
    Cursor in{tag, 0};
    open.push_back(in.name());
  }
  return what;
}

// A start tag's text between '<' and '>' (or "/>"): a qualified name, then attributes, each after white
// space, a name, '=' and a quoted value, no name twice.
std::string ZrXmlDocumentType::startTagFault(std::string_view tag, std::uint64_t& produced, std::uint64_t limit,
                                             const Report& report, bool& stopped) const {
  Cursor in{tag, 0};
  const std::string_view element = in.name();
  if (!ZrXmlWellFormednessChecker::isQualifiedName(element)) return "Invalid name: " + std::string(element);
  std::vector<std::string_view> names;
  for (;;) {
    const bool white = in.skipWhite();
    if (in.atEnd()) break;
    if (!white) return "White space required between attributes.";
    const std::string_view name = in.name();
    if (!ZrXmlWellFormednessChecker::isQualifiedName(name)) return "Invalid name: " + std::string(name);
    in.skipWhite();
    if (!in.takes("=")) return "Missing '=' after attribute name: " + std::string(name);
    in.skipWhite();
    std::string_view value;
    if (!in.quoted(value)) return "Missing quotes around attribute value.";
    std::string what = attributeValueFault(value, produced, limit, report, stopped);
    if (!what.empty() || stopped) return what;
    names.push_back(name);
  }
  std::sort(names.begin(), names.end());
  const auto twice = std::adjacent_find(names.begin(), names.end());
  if (twice != names.end()) return "Attribute specified twice: " + std::string(*twice);
  return {};
}

// A value in a tag of an entity's replacement text: no '<', and every '&' a reference to a character or
// to an entity that may stand in a value. The internal entities it names are expanded here for their
// own faults, which they report themselves; `stopped` tells that the expansion limit was passed.
std::string ZrXmlDocumentType::attributeValueFault(std::string_view value, std::uint64_t& produced,
                                                   std::uint64_t limit, const Report& report, bool& stopped) const {
  if (value.find('<') != npos) return "'<' not allowed in attribute value.";
  std::string expansion;
  for (std::size_t amp = value.find('&'); amp != npos; amp = value.find('&', amp + 1)) {
    const std::size_t semicolon = value.find(';', amp);
    if (semicolon == npos || semicolon == amp + 1) return "'&' not followed by a reference.";
    const std::string_view name = value.substr(amp + 1, semicolon - amp - 1);
    if (name[0] != '#' && !ZrXmlWellFormednessChecker::isName(name)) return "'&' not followed by a reference.";
    if (predefinedEntity(name)) continue;  // here, even when declared again
    const Entity* internal;
    std::string what = valueReferenceFault(name, internal);
    if (!what.empty()) return what;
    if (!internal) continue;
    expansion.clear();
    if (!expand(name, true, expansion, produced, limit, report)) {
      stopped = true;
      return {};
    }
  }
  return {};
}

// ---- a value with its references expanded ----

void ZrXmlDocumentType::expandValue(const ZrXmlDocumentType* declared, std::string_view value, std::string& out,
                                    std::uint64_t& produced, std::uint64_t limit, const Report& report) {
  for (std::size_t at = 0; at < value.size();) {
    const std::size_t amp = value.find('&', at);
    out.append(value.substr(at, amp == npos ? npos : amp - at));
    if (amp == npos) return;
    const std::size_t semicolon = value.find(';', amp);
    if (semicolon == npos || semicolon == amp + 1) {
      report("'&' not followed by a reference.");
      out += '&';
      at = amp + 1;
      continue;
    }
    const std::string_view name = value.substr(amp + 1, semicolon - amp - 1);
    const std::string_view written = value.substr(amp, semicolon + 1 - amp);
    at = semicolon + 1;
    if (name[0] == '#') {
      const unsigned long code = ZrXmlCharacters::characterReferenceCode(name);
      if (ZrXmlCharacters::isXmlChar(code)) {
        ZrXmlCharacters::appendUtf8(out, code);
      } else {
        report("Invalid character reference: " + std::string(written));
        out.append(written);
      }
    } else if (const char* predefined = predefinedEntity(name)) {
      out += predefined;
    } else if (!declared) {
      report("Undefined entity reference: " + std::string(written));
      out.append(written);
    } else if (produced > limit) {
      out.append(written);  // past the limit, which was reported when it was passed
    } else {
      const std::size_t before = out.size();
      if (declared->expand(name, true, out, produced, limit, report)) continue;
      out.resize(before);
      out.append(written);
      report("Entity expansion passes " + std::to_string(limit) + " bytes: " + std::string(written));
    }
  }
}
