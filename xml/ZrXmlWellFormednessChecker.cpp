#include "ZrXmlWellFormednessChecker.h"

#include "ZrXmlFileReader.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace {

const std::string_view theXmlNamespace = "http://www.w3.org/XML/1998/namespace";
const std::string_view theXmlnsNamespace = "http://www.w3.org/2000/xmlns/";

bool isWhite(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// Name characters of ASCII as XML defines them; every byte above 127 is taken as a name character (the
// checker does not decode the document's encoding).
enum NameClass : unsigned char { NameStart = 1, NamePart = 2, Colon = 4 };

constexpr std::array<unsigned char, 256> makeNameTable() {
  std::array<unsigned char, 256> table{};
  for (int c = 0; c < 256; ++c) {
    const bool start = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' || c >= 0x80;
    const bool part = start || (c >= '0' && c <= '9') || c == '-' || c == '.';
    table[static_cast<std::size_t>(c)] =
        static_cast<unsigned char>((start ? NameStart : 0) | (part ? NamePart : 0) | (c == ':' ? Colon : 0));
  }
  return table;
}

constexpr std::array<unsigned char, 256> theNameTable = makeNameTable();

bool isNameStartByte(unsigned char c) { return theNameTable[c] & NameStart; }

bool isNameByte(unsigned char c) { return theNameTable[c] & NamePart; }

// The control characters XML does not allow: below 0x20, except tab, line feed and carriage return.
bool isForbiddenByte(unsigned char c) { return c < 0x20 && c != '\t' && c != '\n' && c != '\r'; }

// The position of the first forbidden byte (or of the byte `also`, when not 0), or npos. Text is checked
// sixteen bytes at a time where the processor allows, since strict mode looks at every byte of the document.
std::size_t findForbiddenByte(std::string_view text, char also = 0) {
  std::size_t at = 0;
#ifdef __SSE2__
  const __m128i limit = _mm_set1_epi8(0x1F), tab = _mm_set1_epi8('\t'), lineFeed = _mm_set1_epi8('\n'),
                carriageReturn = _mm_set1_epi8('\r'), alsoByte = _mm_set1_epi8(also ? also : '\t');
  for (; at + 16 <= text.size(); at += 16) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + at));
    const __m128i control = _mm_cmpeq_epi8(_mm_min_epu8(bytes, limit), bytes);  // byte <= 0x1F
    const __m128i allowed = _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(bytes, tab), _mm_cmpeq_epi8(bytes, lineFeed)),
                                         _mm_cmpeq_epi8(bytes, carriageReturn));
    const __m128i found = _mm_or_si128(_mm_andnot_si128(allowed, control), _mm_cmpeq_epi8(bytes, alsoByte));
    if (_mm_movemask_epi8(found) != 0) break;
  }
#endif
  for (; at < text.size(); ++at)
    if (isForbiddenByte(static_cast<unsigned char>(text[at])) || (also && text[at] == also)) return at;
  return std::string_view::npos;
}

std::string_view skipWhite(std::string_view text) {
  std::size_t first = 0;
  while (first < text.size() && isWhite(text[first])) ++first;
  return text.substr(first);
}

// Takes the characters up to white space or `stop` off the front of text.
std::string_view takeUntil(std::string_view& text, char stop) {
  std::size_t end = 0;
  while (end < text.size() && !isWhite(text[end]) && text[end] != stop) ++end;
  std::string_view word = text.substr(0, end);
  text.remove_prefix(end);
  return word;
}

// One pass over a name: whether it is a qualified name (a name with at most one ':', which has a name on
// both sides), and the position of its ':' (npos for none).
inline std::size_t scanQualifiedName(std::string_view text, bool& valid) {
  // Most names have no ':': one pass over their classes settles them without a branch per byte.
  unsigned char all = NamePart, any = 0;
  for (char c : text) {
    const unsigned char byteClass = theNameTable[static_cast<unsigned char>(c)];
    all &= byteClass;
    any |= byteClass;
  }
  if (!(any & Colon)) {
    valid = !text.empty() && (all & NamePart) && isNameStartByte(static_cast<unsigned char>(text[0]));
    return std::string_view::npos;
  }
  std::size_t colon = std::string_view::npos;
  valid = !text.empty() && isNameStartByte(static_cast<unsigned char>(text[0])) && text[0] != ':';
  for (std::size_t at = 0; at < text.size(); ++at) {
    const unsigned char c = static_cast<unsigned char>(text[at]);
    if (!isNameByte(c)) valid = false;
    if (c != ':') continue;
    const bool localStarts = at + 1 < text.size() && isNameStartByte(static_cast<unsigned char>(text[at + 1]));
    if (colon != std::string_view::npos || !localStarts) valid = false;
    colon = at;
  }
  return colon;
}

// Compared character by character: names are short, and a call of memcmp costs more than they do.
bool sameName(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i)
    if (a[i] != b[i]) return false;
  return true;
}

// Attributes compared pairwise as they come; a tag with more is sorted as well.
const std::size_t thePairwiseLimit = 16;

bool isXmlnsAttribute(std::string_view name) {
  return name.size() >= 5 && name[0] == 'x' && name[1] == 'm' && name[2] == 'l' && name[3] == 'n' && name[4] == 's' &&
         (name.size() == 5 || name[5] == ':');
}

// One pseudo-attribute of the XML declaration, ` name="value"`, taken off the front of text; false when
// text does not begin with white space and that name.
bool takePseudoAttribute(std::string_view& text, std::string_view name, std::string_view& value) {
  std::string_view rest = skipWhite(text);
  if (rest.size() == text.size() || rest.compare(0, name.size(), name) != 0) return false;
  rest = skipWhite(rest.substr(name.size()));
  if (rest.empty() || rest[0] != '=') return false;
  rest = skipWhite(rest.substr(1));
  if (rest.empty() || (rest[0] != '"' && rest[0] != '\'')) return false;
  const std::size_t close = rest.find(rest[0], 1);
  if (close == std::string_view::npos) return false;
  value = rest.substr(1, close - 1);
  text = rest.substr(close + 1);
  return true;
}

bool isVersionNumber(std::string_view value) {
  if (value.size() < 3 || value.compare(0, 2, "1.") != 0) return false;
  return std::all_of(value.begin() + 2, value.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool isEncodingName(std::string_view value) {
  if (value.empty() || !((value[0] >= 'a' && value[0] <= 'z') || (value[0] >= 'A' && value[0] <= 'Z'))) return false;
  return std::all_of(value.begin(), value.end(), [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' || c == '_' ||
           c == '-';
  });
}

}  // namespace

ZrXmlWellFormednessChecker::ZrXmlWellFormednessChecker(const ZrXmlWellFormednessChecker& other,
                                                       const ZrXmlFileReader& reader)
    : m_theReader(&reader),
      m_theDeclarations(other.m_theDeclarations),
      m_theRootSeen(other.m_theRootSeen),
      m_theDoctypeSeen(other.m_theDoctypeSeen),
      m_theEndChecked(other.m_theEndChecked) {}

void ZrXmlWellFormednessChecker::report(const std::string& fault) const {
  m_theReader->warnMessage(("file not well formed.\n\t" + fault).c_str());
}

bool ZrXmlWellFormednessChecker::isName(std::string_view text) {
  if (text.empty() || !isNameStartByte(static_cast<unsigned char>(text[0]))) return false;
  return std::all_of(text.begin(), text.end(), [](char c) { return isNameByte(static_cast<unsigned char>(c)); });
}

bool ZrXmlWellFormednessChecker::isQualifiedName(std::string_view text) {
  bool valid;
  scanQualifiedName(text, valid);
  return valid;
}

// ---- characters and text ----

// One report per piece of text.
void ZrXmlWellFormednessChecker::checkCharacters(std::string_view text) const {
  const std::size_t at = findForbiddenByte(text);
  if (at == std::string_view::npos) return;
  char fault[48];
  std::snprintf(fault, sizeof fault, "Character not allowed in XML: #x%02X", static_cast<unsigned char>(text[at]));
  report(fault);
}

// One pass for forbidden characters and ']'; text that holds either is looked at again, the rare case.
void ZrXmlWellFormednessChecker::checkText(std::string_view text, bool cdata) const {
  const std::size_t suspect = findForbiddenByte(text, ']');
  if (suspect == std::string_view::npos) return;
  checkCharacters(text.substr(suspect));
  if (!cdata && text.find("]]>", suspect) != std::string_view::npos) report("']]>' not allowed in text.");
}

void ZrXmlWellFormednessChecker::checkComment(std::string_view text) const {
  if (text.find("--") != std::string_view::npos || (!text.empty() && text.back() == '-'))
    report("Comment contains extra -- in it.");
  checkCharacters(text);
}

// ---- names and namespaces ----

const ZrXmlWellFormednessChecker::Declaration* ZrXmlWellFormednessChecker::declared(std::string_view prefix) const {
  for (auto at = m_theDeclarations.rbegin(); at != m_theDeclarations.rend(); ++at)
    if (at->prefix == prefix) return &*at;
  return nullptr;
}

// The name's form, and its prefix declared in scope. Returns the position of its ':' (npos for none).
std::size_t ZrXmlWellFormednessChecker::checkName(std::string_view name) const {
  bool valid;
  const std::size_t colon = scanQualifiedName(name, valid);
  if (!valid) report("Invalid name: " + std::string(name));
  if (colon != std::string_view::npos) checkPrefixDeclared(name.substr(0, colon));
  return colon;
}

void ZrXmlWellFormednessChecker::checkPrefixDeclared(std::string_view prefix) const {
  if (prefix == "xml") return;
  const Declaration* declaration = prefix == "xmlns" ? nullptr : declared(prefix);
  if (!declaration || declaration->uri.empty()) report("Prefix not declared: " + std::string(prefix));
}

void ZrXmlWellFormednessChecker::checkNamespaceDeclaration(std::string_view attribute, std::string_view uri) const {
  const std::string_view prefix = attribute.size() > 5 ? attribute.substr(6) : std::string_view();
  bool allowed = true;
  if (attribute.size() > 5 && !isQualifiedName(prefix)) allowed = false;             // "xmlns:" alone, "xmlns:a:b"
  else if (prefix == "xmlns" || uri == theXmlnsNamespace) allowed = false;            // reserved for declarations
  else if ((prefix == "xml") != (uri == theXmlNamespace)) allowed = false;            // "xml" and its URI go together
  else if (!prefix.empty() && uri.empty()) allowed = false;                           // a prefix needs a namespace
  if (!allowed) report("Namespace declaration not allowed: " + std::string(attribute));
}

// ---- tags ----

// Most of an attribute is checked as it comes: its white space, its name's form, and its name against the
// tag's first attributes. Its prefix waits for the tag's own declarations, which may follow it.
void ZrXmlWellFormednessChecker::addAttribute(std::string_view name, std::string_view value, bool whiteBefore) {
  if (!whiteBefore) report("White space required between attributes.");
  if (isXmlnsAttribute(name)) {
    m_theTagDeclares = true;
  } else {
    bool valid;
    if (scanQualifiedName(name, valid) != std::string_view::npos) m_theTagHasPrefixes = true;
    if (!valid) report("Invalid name: " + std::string(name));
  }
  const std::size_t earlier = std::min(m_theAttributes.size(), thePairwiseLimit);
  for (std::size_t i = 0; i < earlier && m_theAttributes.size() < thePairwiseLimit; ++i)
    if (sameName(m_theAttributes[i].first, name)) {
      report("Attribute specified twice: " + std::string(name));
      break;
    }
  m_theAttributes.emplace_back(name, value);
}

void ZrXmlWellFormednessChecker::checkStartTag(std::string_view tag, std::string_view name, std::size_t depth,
                                               bool suspect) {
  if (depth == 1) {
    if (m_theRootSeen) report("More than one root element: " + std::string(name));
    m_theRootSeen = true;
  }
  // One pass over the tag for forbidden characters and for '<', which can only stand in a value; a tag
  // that holds either is looked at again, the rare case.
  const std::size_t first = suspect ? findForbiddenByte(tag, '<') : std::string_view::npos;
  if (first != std::string_view::npos) {
    checkCharacters(tag.substr(first));
    if (tag.find('<', first) != std::string_view::npos)
      for (const auto& attribute : m_theAttributes)
        if (attribute.second.find('<') != std::string_view::npos) report("'<' not allowed in attribute value.");
  }
  if (m_theTagDeclares) {
    for (const auto& attribute : m_theAttributes) {
      if (!isXmlnsAttribute(attribute.first)) continue;
      checkNamespaceDeclaration(attribute.first, attribute.second);
      m_theDeclarations.push_back(
          {std::string(attribute.first.size() > 5 ? attribute.first.substr(6) : std::string_view()),
           std::string(attribute.second), depth});
    }
  }
  checkName(name);  // after the tag's own declarations, which are in force on it
  if (m_theTagHasPrefixes) checkPrefixedAttributes();
  if (m_theAttributes.size() > thePairwiseLimit) checkManyAttributesOnce();
  m_theAttributes.clear();
  m_theTagDeclares = m_theTagHasPrefixes = false;
}

// Prefixed attribute names: each prefix declared, and no two names for one namespace and local name.
void ZrXmlWellFormednessChecker::checkPrefixedAttributes() {
  std::vector<std::pair<std::string, std::string_view>>& names = m_theExpandedNames;
  names.clear();
  for (const auto& attribute : m_theAttributes) {
    const std::string_view written = attribute.first;
    const std::size_t colon = written.find(':');
    if (colon == std::string_view::npos || isXmlnsAttribute(written)) continue;
    const std::string_view prefix = written.substr(0, colon);
    checkPrefixDeclared(prefix);
    const Declaration* declaration = prefix == "xml" ? nullptr : declared(prefix);
    std::string_view uri = theXmlNamespace;  // a view of the declaration itself, never of a temporary
    if (prefix != "xml") uri = declaration ? std::string_view(declaration->uri) : std::string_view();
    names.emplace_back(std::string(uri).append(1, '#').append(written.substr(colon + 1)), written);
  }
  // Names written alike are reported as such; these are names written differently for one attribute.
  std::sort(names.begin(), names.end());
  for (std::size_t i = 1; i < names.size(); ++i)
    if (names[i].first == names[i - 1].first && names[i].second != names[i - 1].second)
      report("Attribute specified twice: " + std::string(names[i].second));
}

// A tag with more attributes than are compared pairwise as they come: sorted, so that the check stays
// linear-logarithmic however many attributes a tag holds. Duplicates among the first ones were reported.
void ZrXmlWellFormednessChecker::checkManyAttributesOnce() {
  std::vector<std::pair<std::string_view, std::size_t>>& written = m_theWrittenNames;
  written.clear();
  for (std::size_t i = 0; i < m_theAttributes.size(); ++i) written.emplace_back(m_theAttributes[i].first, i);
  std::sort(written.begin(), written.end());
  for (std::size_t i = 1; i < written.size(); ++i)
    if (written[i].first == written[i - 1].first && written[i].second >= thePairwiseLimit)
      report("Attribute specified twice: " + std::string(written[i].first));
}

void ZrXmlWellFormednessChecker::checkEndTag(std::string_view name) const { checkName(name); }

void ZrXmlWellFormednessChecker::closeElement(std::size_t depth) {
  while (!m_theDeclarations.empty() && m_theDeclarations.back().depth >= depth) m_theDeclarations.pop_back();
}

// ---- declarations and processing instructions ----

void ZrXmlWellFormednessChecker::checkXmlDeclaration(std::string_view text, bool atStart) const {
  if (!atStart) report("XML declaration not at the start of the document.");
  std::string_view rest = text.substr(3);
  std::string_view value;
  bool wellFormed = takePseudoAttribute(rest, "version", value) && isVersionNumber(value);
  if (wellFormed && takePseudoAttribute(rest, "encoding", value)) wellFormed = isEncodingName(value);
  if (wellFormed && takePseudoAttribute(rest, "standalone", value)) wellFormed = value == "yes" || value == "no";
  if (!wellFormed || !skipWhite(rest).empty()) report("Malformed XML declaration.");
}

void ZrXmlWellFormednessChecker::checkProcessingInstruction(std::string_view text, bool atStart) const {
  std::string_view rest = text;
  const std::string_view target = takeUntil(rest, '\0');
  checkCharacters(text);
  if (target.empty()) {
    report("Processing instruction without target.");
  } else if (target == "xml") {
    checkXmlDeclaration(text, atStart);
  } else if (target.size() == 3 && (target[0] | 0x20) == 'x' && (target[1] | 0x20) == 'm' && (target[2] | 0x20) == 'l') {
    report("Reserved processing instruction target: " + std::string(target));
  } else if (!isName(target) || target.find(':') != std::string_view::npos) {
    report("Invalid name: " + std::string(target));
  }
}

void ZrXmlWellFormednessChecker::checkDoctype(std::string_view text) {
  if (m_theRootSeen) report("Document type declaration after the root element.");
  if (m_theDoctypeSeen) report("More than one document type declaration.");
  m_theDoctypeSeen = true;
  std::string_view rest = text.substr(8);  // "!DOCTYPE"
  const std::size_t white = rest.size() - skipWhite(rest).size();
  rest.remove_prefix(white);
  const std::string_view name = takeUntil(rest, '[');
  if (white == 0 || !isQualifiedName(name)) report("Invalid name: " + std::string(name));
}

void ZrXmlWellFormednessChecker::checkEnd(std::size_t openElements, std::string_view innermost) {
  if (m_theEndChecked) return;
  m_theEndChecked = true;
  if (openElements > 0) report("Element not closed: " + std::string(innermost));
}
