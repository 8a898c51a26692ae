#include "ZrXmlWellFormednessChecker.h"

#include "ZrXmlFileReader.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <utility>

#ifdef __SSE2__
#include <emmintrin.h>
#endif
#if defined(__x86_64__) && defined(__GNUC__)
#include <immintrin.h>
#endif

namespace {

const std::string_view theXmlNamespace = "http://www.w3.org/XML/1998/namespace";
const std::string_view theXmlnsNamespace = "http://www.w3.org/2000/xmlns/";

bool isWhite(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// Name characters of ASCII as XML defines them; every byte above 127 is taken as a name character here
// (High), and a name holding such bytes is decoded and its characters looked up in the ranges below.
enum NameClass : unsigned char { NameStart = 1, NamePart = 2, Colon = 4, High = 8 };

constexpr std::array<unsigned char, 256> makeNameTable() {
  std::array<unsigned char, 256> table{};
  for (int c = 0; c < 256; ++c) {
    const bool start = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' || c >= 0x80;
    const bool part = start || (c >= '0' && c <= '9') || c == '-' || c == '.';
    table[static_cast<std::size_t>(c)] = static_cast<unsigned char>((start ? NameStart : 0) | (part ? NamePart : 0) |
                                                                    (c == ':' ? Colon : 0) | (c >= 0x80 ? High : 0));
  }
  return table;
}

constexpr std::array<unsigned char, 256> theNameTable = makeNameTable();

bool isNameStartByte(unsigned char c) { return theNameTable[c] & NameStart; }

bool isNameByte(unsigned char c) { return theNameTable[c] & NamePart; }

// NameStartChar and NameChar above ASCII.
bool isNameStartCode(unsigned long c) {
  return (c >= 0xC0 && c <= 0xD6) || (c >= 0xD8 && c <= 0xF6) || (c >= 0xF8 && c <= 0x2FF) ||
         (c >= 0x370 && c <= 0x37D) || (c >= 0x37F && c <= 0x1FFF) || (c >= 0x200C && c <= 0x200D) ||
         (c >= 0x2070 && c <= 0x218F) || (c >= 0x2C00 && c <= 0x2FEF) || (c >= 0x3001 && c <= 0xD7FF) ||
         (c >= 0xF900 && c <= 0xFDCF) || (c >= 0xFDF0 && c <= 0xFFFD) || (c >= 0x10000 && c <= 0xEFFFF);
}

bool isNameCode(unsigned long c) {
  return isNameStartCode(c) || c == 0xB7 || (c >= 0x300 && c <= 0x36F) || (c >= 0x203F && c <= 0x2040);
}

// The code point of the UTF-8 sequence at text[at], and its length in `length`; 0 with length 1 for a
// sequence that is no character (the document's bytes are reported as such on their own).
unsigned long decodeAt(std::string_view text, std::size_t at, std::size_t& length) {
  const unsigned char lead = static_cast<unsigned char>(text[at]);
  length = 1;
  if (lead < 0x80) return lead;
  std::size_t count = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 0;
  if (count == 0 || lead > 0xF4 || at + count > text.size()) return 0;
  unsigned long code = lead & (0x7F >> count);
  for (std::size_t i = 1; i < count; ++i) {
    const unsigned char next = static_cast<unsigned char>(text[at + i]);
    if ((next & 0xC0) != 0x80) return 0;
    code = code << 6 | (next & 0x3F);
  }
  static const unsigned long theSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  if (code < theSmallest[count] || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return 0;
  length = count;
  return code;
}

// The characters above ASCII of a name whose ASCII characters were looked at already: the first one of
// the name, and of the part after a ':' (`colonStarts`), must be a name start character.
bool highCharactersFit(std::string_view name, bool colonStarts) {
  bool start = true;
  for (std::size_t at = 0; at < name.size();) {
    std::size_t length;
    const unsigned long code = decodeAt(name, at, length);
    if (code >= 0x80 && !(start ? isNameStartCode(code) : isNameCode(code))) return false;
    if (code == 0) return false;
    start = colonStarts && code == ':';
    at += length;
  }
  return true;
}

// The position of the first byte that is not plain text (a control character other than tab, line feed
// and carriage return, or a byte above 127), or the text's size. Strict mode looks at every byte of the
// document, so this runs at close to the speed of copying: sixteen bytes at a time where the processor
// allows, and sixty-four at a time with AVX2 (chosen when the library is loaded, see theAvx2). The same
// pass sets `bracket` when the bytes it looked at hold a ']' (or may: it can say so of a few bytes past
// the one it stops at), which spares the texts between tags a search for "]]>" of their own.
std::size_t skipPlainBytesSse2(std::string_view text, std::size_t at, bool& bracket) {
#ifdef __SSE2__
  const __m128i space = _mm_set1_epi8(0x20), tab = _mm_set1_epi8('\t'), lineFeed = _mm_set1_epi8('\n'),
                carriageReturn = _mm_set1_epi8('\r'), closingBracket = _mm_set1_epi8(']');
  __m128i brackets = _mm_setzero_si128();
  for (; at + 16 <= text.size(); at += 16) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + at));
    brackets = _mm_or_si128(brackets, _mm_cmpeq_epi8(bytes, closingBracket));
    const __m128i below = _mm_cmplt_epi8(bytes, space);  // signed: control characters and bytes above 127
    if (_mm_movemask_epi8(below) == 0) continue;
    const __m128i allowed = _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(bytes, tab), _mm_cmpeq_epi8(bytes, lineFeed)),
                                         _mm_cmpeq_epi8(bytes, carriageReturn));
    const int odd = _mm_movemask_epi8(_mm_andnot_si128(allowed, below));
    if (odd != 0) {
      bracket |= _mm_movemask_epi8(brackets) != 0;
      return at + static_cast<std::size_t>(__builtin_ctz(static_cast<unsigned>(odd)));
    }
  }
  bracket |= _mm_movemask_epi8(brackets) != 0;
#endif
  for (; at < text.size(); ++at) {
    const unsigned char c = static_cast<unsigned char>(text[at]);
    bracket |= c == ']';
    if (c >= 0x80 || (c < 0x20 && c != '\t' && c != '\n' && c != '\r')) return at;
  }
  return at;
}

#if defined(__x86_64__) && defined(__GNUC__)
#define ZR_XML_HAVE_AVX2_PATH 1
// Sixty-four bytes a round, first tested for anything below a space other than a line feed (which text
// mostly holds); only a round that has some looks at tabs and carriage returns as well.
__attribute__((target("avx2"))) std::size_t skipPlainBytesAvx2(std::string_view text, std::size_t at, bool& bracket) {
  const __m256i space = _mm256_set1_epi8(0x20), tab = _mm256_set1_epi8('\t'), lineFeed = _mm256_set1_epi8('\n'),
                carriageReturn = _mm256_set1_epi8('\r'), closingBracket = _mm256_set1_epi8(']');
  __m256i brackets = _mm256_setzero_si256();
  for (; at + 64 <= text.size(); at += 64) {
    const __m256i first = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(text.data() + at));
    const __m256i second = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(text.data() + at + 32));
    brackets = _mm256_or_si256(brackets, _mm256_or_si256(_mm256_cmpeq_epi8(first, closingBracket),
                                                         _mm256_cmpeq_epi8(second, closingBracket)));
    const __m256i firstBelow = _mm256_cmpgt_epi8(space, first), secondBelow = _mm256_cmpgt_epi8(space, second);
    const __m256i odd = _mm256_or_si256(_mm256_andnot_si256(_mm256_cmpeq_epi8(first, lineFeed), firstBelow),
                                        _mm256_andnot_si256(_mm256_cmpeq_epi8(second, lineFeed), secondBelow));
    if (_mm256_testz_si256(odd, odd)) continue;
    const __m256i firstAllowed = _mm256_or_si256(
        _mm256_or_si256(_mm256_cmpeq_epi8(first, tab), _mm256_cmpeq_epi8(first, lineFeed)), _mm256_cmpeq_epi8(first, carriageReturn));
    const __m256i secondAllowed = _mm256_or_si256(
        _mm256_or_si256(_mm256_cmpeq_epi8(second, tab), _mm256_cmpeq_epi8(second, lineFeed)), _mm256_cmpeq_epi8(second, carriageReturn));
    const std::uint64_t low = static_cast<std::uint32_t>(_mm256_movemask_epi8(_mm256_andnot_si256(firstAllowed, firstBelow)));
    const std::uint64_t high = static_cast<std::uint32_t>(_mm256_movemask_epi8(_mm256_andnot_si256(secondAllowed, secondBelow)));
    const std::uint64_t mask = low | high << 32;
    if (mask != 0) {
      bracket |= !_mm256_testz_si256(brackets, brackets);
      return at + static_cast<std::size_t>(__builtin_ctzll(mask));
    }
  }
  bracket |= !_mm256_testz_si256(brackets, brackets);
  return skipPlainBytesSse2(text, at, bracket);
}

// Whether this processor runs the AVX2 path: asked once when the library is loaded, never changed.
const bool theAvx2 = __builtin_cpu_supports("avx2");
#endif

inline std::size_t skipPlainBytes(std::string_view text, std::size_t at, bool& bracket) {
#ifdef ZR_XML_HAVE_AVX2_PATH
  if (theAvx2) return skipPlainBytesAvx2(text, at, bracket);
#endif
  return skipPlainBytesSse2(text, at, bracket);
}

std::string hexBytes(std::string_view bytes) {
  std::string text;
  char one[8];
  for (char c : bytes) {
    std::snprintf(one, sizeof one, "%s#x%02X", text.empty() ? "" : " ", static_cast<unsigned char>(c));
    text += one;
  }
  return text;
}

// What is wrong with the sequence at text[at] (the first byte that is not plain text), or an empty
// text when it is an allowed character; its length in `length`. `length` is 0 when the sequence is cut
// by the end of the text.
std::string characterFault(std::string_view text, std::size_t at, std::size_t& length) {
  const unsigned char lead = static_cast<unsigned char>(text[at]);
  char what[96];
  length = 1;
  if (lead < 0x80) {
    std::snprintf(what, sizeof what, "Character not allowed in XML: #x%02X", lead);
    return what;
  }
  const std::size_t count = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 0;
  if (count == 0 || lead > 0xF7) return "Invalid UTF-8: bytes " + hexBytes(text.substr(at, 1)) + " form no character.";
  std::size_t have = 1;
  while (have < count && at + have < text.size() && (static_cast<unsigned char>(text[at + have]) & 0xC0) == 0x80)
    ++have;
  if (have < count) {
    if (at + have == text.size()) {
      length = 0;  // cut by the end of the block, or of the document
      return "Invalid UTF-8: the document ends inside a character.";
    }
    return "Invalid UTF-8: bytes " + hexBytes(text.substr(at, have + 1)) + " form no character.";
  }
  length = count;
  unsigned long code = lead & (0x7F >> count);
  for (std::size_t i = 1; i < count; ++i) code = code << 6 | (static_cast<unsigned char>(text[at + i]) & 0x3F);
  static const unsigned long theSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  if (code < theSmallest[count]) return "Invalid UTF-8: overlong form " + hexBytes(text.substr(at, count)) + ".";
  if (code >= 0xD800 && code <= 0xDFFF) {
    std::snprintf(what, sizeof what, "Invalid UTF-8: encoded surrogate #x%04lX.", code);
    return what;
  }
  if (code > 0x10FFFF) {
    std::snprintf(what, sizeof what, "Invalid UTF-8: code point #x%lX above #x10FFFF.", code);
    return what;
  }
  if (code == 0xFFFE || code == 0xFFFF) {
    std::snprintf(what, sizeof what, "Character not allowed in XML: #x%lX", code);
    return what;
  }
  return std::string();
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
  // Most names have no ':' and no byte above 127: one pass over their classes settles them without a
  // branch per byte.
  unsigned char all = NamePart, any = 0;
  for (char c : text) {
    const unsigned char byteClass = theNameTable[static_cast<unsigned char>(c)];
    all &= byteClass;
    any |= byteClass;
  }
  std::size_t colon = std::string_view::npos;
  if (!(any & Colon)) {
    valid = !text.empty() && (all & NamePart) && isNameStartByte(static_cast<unsigned char>(text[0]));
  } else {
    valid = !text.empty() && isNameStartByte(static_cast<unsigned char>(text[0])) && text[0] != ':';
    for (std::size_t at = 0; at < text.size(); ++at) {
      const unsigned char c = static_cast<unsigned char>(text[at]);
      if (!isNameByte(c)) valid = false;
      if (c != ':') continue;
      const bool localStarts = at + 1 < text.size() && isNameStartByte(static_cast<unsigned char>(text[at + 1]));
      if (colon != std::string_view::npos || !localStarts) valid = false;
      colon = at;
    }
  }
  if (valid && (any & High)) valid = highCharactersFit(text, true);
  return colon;
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

// The position of the first ']' or '<' in a range, or npos: memchr where the range is long.
std::size_t findByte(std::string_view text, char c, std::size_t from = 0) {
  if (from >= text.size()) return std::string_view::npos;
  const void* hit = std::memchr(text.data() + from, c, text.size() - from);
  return hit ? static_cast<std::size_t>(static_cast<const char*>(hit) - text.data()) : std::string_view::npos;
}

const std::size_t theNoDeclaration = static_cast<std::size_t>(-1);

// Declarations in scope looked at one by one up to this many; more are found through an index by prefix.
const std::size_t theIndexThreshold = 8;

}  // namespace

ZrXmlWellFormednessChecker::ZrXmlWellFormednessChecker(const ZrXmlWellFormednessChecker& other,
                                                       const ZrXmlFileReader& reader)
    : m_theReader(&reader),
      m_theDeclarations(other.m_theDeclarations),
      m_thePrefixIndex(other.m_thePrefixIndex),
      m_theIndexed(other.m_theIndexed),
      m_theDocumentType(other.m_theDocumentType ? new ZrXmlDocumentType(*other.m_theDocumentType) : nullptr),
      m_theRootSeen(other.m_theRootSeen),
      m_theDoctypeSeen(other.m_theDoctypeSeen),
      m_theEndChecked(other.m_theEndChecked),
      m_theNamespaceExpansion(other.m_theNamespaceExpansion) {
  m_theOpenNames = other.m_theOpenNames;
}

void ZrXmlWellFormednessChecker::report(const std::string& fault) const {
  m_theReader->warnMessage(("file not well formed.\n\t" + fault).c_str());
}

bool ZrXmlWellFormednessChecker::isName(std::string_view text) {
  if (text.empty() || !isNameStartByte(static_cast<unsigned char>(text[0]))) return false;
  bool high = false;
  for (char c : text) {
    if (!isNameByte(static_cast<unsigned char>(c))) return false;
    high |= static_cast<unsigned char>(c) >= 0x80;
  }
  return !high || highCharactersFit(text, false);
}

bool ZrXmlWellFormednessChecker::isQualifiedName(std::string_view text) {
  bool valid;
  scanQualifiedName(text, valid);
  return valid;
}

bool ZrXmlWellFormednessChecker::isNameToken(std::string_view text) {
  if (text.empty()) return false;
  for (std::size_t at = 0; at < text.size();) {
    std::size_t length;
    const unsigned long code = decodeAt(text, at, length);
    if (code < 0x80 ? code == 0 || !isNameByte(static_cast<unsigned char>(code)) : !isNameCode(code)) return false;
    at += length;
  }
  return true;
}

// ---- characters and text ----

std::size_t ZrXmlWellFormednessChecker::checkCharacters(std::string_view text, bool last, CharacterFault& fault) {
  for (std::size_t at = skipPlainBytes(text, 0, fault.bracket); at < text.size();
       at = skipPlainBytes(text, at, fault.bracket)) {
    std::size_t length;
    std::string what = characterFault(text, at, length);
    if (length == 0 && !last) return at;  // the rest of the character comes with the next block
    if (!what.empty()) {
      fault.at = at;
      fault.what = std::move(what);
      fault.bracket = true;  // the rest of the block is not looked at
      return text.size();
    }
    at += length;
  }
  return text.size();
}

// The characters were checked as they were read; text can still hold "]]>", which a ']' betrays.
void ZrXmlWellFormednessChecker::checkText(std::string_view text, bool cdata) const {
  if (cdata) return;
  if (text.size() < 32) {  // most texts between tags: looked at without a call
    bool bracket = false;
    for (char c : text) bracket |= c == ']';
    if (!bracket) return;
  }
  for (std::size_t at = findByte(text, ']'); at != std::string_view::npos; at = findByte(text, ']', at + 1))
    if (text.compare(at, 3, "]]>") == 0) {
      report("']]>' not allowed in text.");
      return;
    }
}

void ZrXmlWellFormednessChecker::checkComment(std::string_view text) const {
  if (!isCommentText(text)) report("Comment contains extra -- in it.");
}

// ---- names and namespaces ----

// The declaration in force for the prefix, or null: along the declarations in scope, innermost first, or
// through the index.
const ZrXmlWellFormednessChecker::Declaration* ZrXmlWellFormednessChecker::lookUpDeclaration(std::string_view prefix) const {
  const Declaration* found = nullptr;
  if (!m_theIndexed) {
    for (std::size_t at = m_theDeclarations.size(); at-- > 0 && !found;)
      if (sameText(prefix, m_theDeclarations[at].prefix)) found = &m_theDeclarations[at];
  } else {
    m_theLookupKey.assign(prefix.data(), prefix.size());
    const auto entry = m_thePrefixIndex.find(m_theLookupKey);
    if (entry != m_thePrefixIndex.end()) found = &m_theDeclarations[entry->second];
  }
  if (found && !prefix.empty()) m_theLastFound[static_cast<unsigned char>(prefix[0])] = found;
  return found;
}

// A declaration comes into force, after its check. The innermost of its prefix, it is the one a look-up
// by the prefix's first byte finds. A document that declares a namespace on every record pushes the same
// prefix and URI again where the record before it popped them: the spare entry holds them, checked.
// Past the threshold every declaration in scope is indexed by prefix, each one linked to the one of the
// same prefix it hides, so that closing an element brings the hidden one back.
void ZrXmlWellFormednessChecker::pushDeclaration(std::string_view attribute, std::string_view uri, std::size_t depth) {
  const bool prefixed = attribute.size() > 5;
  const std::string_view prefix = prefixed ? attribute.substr(6) : std::string_view();
  Declaration& declaration = m_theDeclarations.push();
  if (!(declaration.allowed && prefixed && sameText(prefix, declaration.prefix) && uri == declaration.uri)) {
    // "xmlns" and "xmlns:" both declare the empty prefix, and only the first may: the flag is for prefixes.
    declaration.allowed = checkNamespaceDeclaration(attribute, uri) && prefixed;
    Zr::assignText(declaration.prefix, prefix);
    Zr::assignText(declaration.uri, uri);
  }
  declaration.depth = depth;
  declaration.shadowed = theNoDeclaration;
  if (!prefix.empty()) m_theLastFound[static_cast<unsigned char>(prefix[0])] = &declaration;
  if (!m_theIndexed && m_theDeclarations.size() > theIndexThreshold) {
    m_theIndexed = true;
    m_thePrefixIndex.clear();
    for (std::size_t i = 0; i + 1 < m_theDeclarations.size(); ++i) {
      auto entry = m_thePrefixIndex.emplace(m_theDeclarations[i].prefix, i);
      m_theDeclarations[i].shadowed = entry.second ? theNoDeclaration : entry.first->second;
      entry.first->second = i;
    }
  }
  if (!m_theIndexed) return;
  const std::size_t index = m_theDeclarations.size() - 1;
  auto entry = m_thePrefixIndex.emplace(m_theDeclarations.back().prefix, index);
  m_theDeclarations.back().shadowed = entry.second ? theNoDeclaration : entry.first->second;
  entry.first->second = index;
}

void ZrXmlWellFormednessChecker::popDeclaration() {
  const Declaration& last = m_theDeclarations.back();
  if (!last.prefix.empty()) m_theLastFound[static_cast<unsigned char>(last.prefix[0])] = nullptr;
  if (m_theIndexed) {
    if (last.shadowed == theNoDeclaration) m_thePrefixIndex.erase(last.prefix);
    else m_thePrefixIndex[last.prefix] = last.shadowed;
  }
  m_theDeclarations.pop();
  if (m_theDeclarations.empty() && m_theIndexed) {
    m_theIndexed = false;
    m_thePrefixIndex.clear();
  }
}

// The name's form, and its prefix declared in scope. Returns the position of its ':' (npos for none).
std::size_t ZrXmlWellFormednessChecker::checkName(std::string_view name) {
  std::size_t colon = std::string_view::npos;
  bool known = false;
  for (const ValidName& valid : m_theValidNames)
    if (sameText(name, valid.name) && !name.empty()) {
      colon = valid.colon;
      known = true;
      break;
    }
  if (!known) {
    bool valid;
    colon = scanQualifiedName(name, valid);
    if (!valid) {
      report("Invalid name: " + std::string(name));
      ++m_theInvalidNames;
    } else {
      ValidName& entry = m_theValidNames[m_theNextValidName];
      m_theNextValidName = (m_theNextValidName + 1) % theValidNames;
      entry.name.assign(name.data(), name.size());
      entry.colon = colon;
    }
  }
  if (colon != std::string_view::npos) checkPrefixDeclared(name.substr(0, colon));
  return colon;
}

// The look-up behind namespaceOfPrefix() when the declaration found last does not answer.
std::string_view ZrXmlWellFormednessChecker::namespaceOfPrefixInScope(std::string_view prefix, bool report) const {
  if (prefix.size() == 3 && prefix == "xml") return theXmlNamespace;
  if (prefix.size() != 5 || prefix != "xmlns") {
    const Declaration* declaration = lookUpDeclaration(prefix);
    if (declaration && !declaration->uri.empty()) return declaration->uri;
  }
  if (report) reportUndeclaredPrefix(prefix);
  return std::string_view();
}

// Kept out of the look-up above, which runs for every prefix.
void ZrXmlWellFormednessChecker::reportUndeclaredPrefix(std::string_view prefix) const {
  report("Prefix not declared: " + std::string(prefix));
}


bool ZrXmlWellFormednessChecker::checkNamespaceDeclaration(std::string_view attribute, std::string_view uri) const {
  const std::string_view prefix = attribute.size() > 5 ? attribute.substr(6) : std::string_view();
  bool allowed = true;
  if (attribute.size() > 5 && !isQualifiedName(prefix)) allowed = false;             // "xmlns:" alone, "xmlns:a:b"
  else if (prefix == "xmlns" || uri == theXmlnsNamespace) allowed = false;            // reserved for declarations
  else if ((prefix == "xml") != (uri == theXmlNamespace)) allowed = false;            // "xml" and its URI go together
  else if (!prefix.empty() && uri.empty()) allowed = false;                           // a prefix needs a namespace
  if (!allowed) report("Namespace declaration not allowed: " + std::string(attribute));
  return allowed;
}

// ---- tags ----

// An element at depth 1 is a root: the document has one.
void ZrXmlWellFormednessChecker::checkRoot(std::string_view name, std::size_t depth) {
  if (depth != 1) return;
  if (m_theRootSeen) report("More than one root element: " + std::string(name));
  m_theRootSeen = true;
}

// A namespace name written with references is the characters they stand for: "~" is "&#x7E;". The view
// is of a buffer kept by the checker, valid until the next call.
std::string_view ZrXmlWellFormednessChecker::expandedNamespaceName(std::string_view uri) {
  m_theExpandedUri.clear();
  ZrXmlDocumentType::expandValue(m_theDocumentType.get(), uri, m_theExpandedUri, m_theNamespaceExpansion,
                                 m_theReader->maxEntityExpansion(), [this](const std::string& fault) { report(fault); });
  return m_theExpandedUri;
}

// A namespace declaration of a start tag, checked and in force from the tag on.
void ZrXmlWellFormednessChecker::declare(std::string_view attribute, std::string_view uri, std::size_t depth) {
  if (findByte(uri, '&') != std::string_view::npos) uri = expandedNamespaceName(uri);
  pushDeclaration(attribute, uri, depth);
}

void ZrXmlWellFormednessChecker::checkStartTag(std::string_view tag, std::string_view name, std::size_t depth,
                                               bool suspect) {
  checkRoot(name, depth);
  if (!m_theAttributes.empty()) checkAttributes(depth);
  // '<' can only stand in a value; the tokenizer's pass over the tag tells whether it may hold one.
  if (suspect && findByte(tag, '<') != std::string_view::npos)
    for (const auto& attribute : m_theAttributes)
      if (attribute.second.find('<') != std::string_view::npos) report("'<' not allowed in attribute value.");
  m_theAttributes.clear();
  if (m_theOpenNames.size() < depth) m_theOpenNames.resize(depth);
  OpenName& written = m_theOpenNames[depth - 1];
  if (written.recall(name) && written.plain()) return;  // the name of an element before it here
  // After the tag's own declarations, which are in force on it.
  const std::size_t errorsBefore = m_theInvalidNames;
  const bool prefixed = checkName(name) != std::string_view::npos;
  written.plains[written.current] = !prefixed && errorsBefore == m_theInvalidNames;
}

// An end tag written otherwise than its start tag: a name of its own to check, and when only the prefix
// differs (the local names the tokenizer compares are the same) a fault the tokenizer does not see.
void ZrXmlWellFormednessChecker::checkOtherEndTag(std::string_view name, std::size_t depth) {
  checkName(name);
  if (depth == 0 || depth > m_theOpenNames.size()) return;
  const std::string_view start = m_theOpenNames[depth - 1].name();
  const auto local = [](std::string_view written) { return written.substr(written.find(':') + 1); };
  if (local(name) == local(start))
    report("End tag does not match start tag: </" + std::string(name) + "> closes <" + std::string(start) + ">");
}

// The tag's attributes in one pass: white space before each, its name's form, and its name against the
// ones before it (sorted instead, when there are many); then the tag's declarations come into force and
// prefixed names are looked up.
void ZrXmlWellFormednessChecker::checkAttributes(std::size_t depth) {
  bool declares = false, prefixed = false;
  const std::size_t count = m_theAttributes.size();
  for (std::size_t i = 0; i < count; ++i) {
    const WrittenAttribute& attribute = m_theAttributes[i];
    const std::string_view name = attribute.first;
    if (!attribute.whiteBefore) report("White space required between attributes.");
    if (isXmlnsAttribute(name)) {
      declares = true;
    } else {
      bool valid;
      if (scanQualifiedName(name, valid) != std::string_view::npos) prefixed = true;
      if (!valid) report("Invalid name: " + std::string(name));
    }
    if (count > thePairwiseLimit) continue;
    for (std::size_t earlier = 0; earlier < i; ++earlier)
      if (sameText(m_theAttributes[earlier].first, name)) {
        report("Attribute specified twice: " + std::string(name));
        break;
      }
  }
  if (count > thePairwiseLimit) checkManyAttributesOnce();
  if (declares)
    for (const auto& attribute : m_theAttributes)
      if (isXmlnsAttribute(attribute.first)) declare(attribute.first, attribute.second, depth);
  if (prefixed) checkPrefixedAttributes();
}

// Prefixed attribute names: each prefix declared, and no two names for one namespace and local name.
// Namespaces are compared by their URIs' text, viewed where the declarations hold them.
void ZrXmlWellFormednessChecker::checkPrefixedAttributes() {
  m_theExpandedNames.clear();
  for (const auto& attribute : m_theAttributes) {
    const std::size_t colon = attribute.first.find(':');
    if (colon != std::string_view::npos && !isXmlnsAttribute(attribute.first)) addExpandedName(attribute.first, colon);
  }
  reportExpandedTwice();
}

// A prefixed attribute name with the namespace its prefix stands for; an undeclared prefix is reported.
void ZrXmlWellFormednessChecker::addExpandedName(std::string_view written, std::size_t colon) {
  m_theExpandedNames.push_back({namespaceOfPrefix(written.substr(0, colon)), written.substr(colon + 1), written});
}

// Names written alike are reported as such; these are names written differently for one attribute.
void ZrXmlWellFormednessChecker::reportExpandedTwice() {
  std::vector<ExpandedName>& names = m_theExpandedNames;
  if (names.size() < 2) return;
  const auto less = [](const ExpandedName& one, const ExpandedName& other) {
    return one.local != other.local ? one.local < other.local : one.uri < other.uri;
  };
  std::sort(names.begin(), names.end(), less);
  for (std::size_t i = 1; i < names.size(); ++i)
    if (names[i].local == names[i - 1].local && names[i].uri == names[i - 1].uri && names[i].written != names[i - 1].written)
      report("Attribute specified twice: " + std::string(names[i].written));
}

// A clean tag's prefixed attributes: each prefix declared. True when two of them have one local name, so
// that their namespaces decide whether they name one attribute. Few names: a look at each pair finds none
// twice far sooner than sorting them would.
inline bool ZrXmlWellFormednessChecker::checkCleanPrefixes(std::size_t count) const {
  const CleanAttribute* const attributes = m_theCleanAttributes;
  bool localTwice = false;
  for (std::size_t i = 0; i < count; ++i) {
    if (!isCleanPrefixed(attributes[i])) continue;
    namespaceOfPrefix(cleanPrefix(attributes[i]));
    for (std::size_t earlier = 0; earlier < i && !localTwice; ++earlier)
      localTwice = isCleanPrefixed(attributes[earlier]) && sameText(cleanLocal(attributes[i]), cleanLocal(attributes[earlier]));
  }
  return localTwice;
}

// Prefixed names of one local name: reported when their prefixes stand for one namespace.
void ZrXmlWellFormednessChecker::checkCleanExpandedNames(std::size_t count) {
  const CleanAttribute* const attributes = m_theCleanAttributes;
  m_theExpandedNames.clear();
  for (std::size_t i = 0; i < count; ++i)
    if (isCleanPrefixed(attributes[i]))
      m_theExpandedNames.push_back({namespaceOfPrefix(cleanPrefix(attributes[i]), false),
                                    cleanLocal(attributes[i]), attributes[i].name});
  reportExpandedTwice();
}

void ZrXmlWellFormednessChecker::checkCleanStartTagInScope(std::string_view name, std::size_t colon, std::size_t depth,
                                                           std::size_t count, bool declares, bool prefixed) {
  const CleanAttribute* const attributes = m_theCleanAttributes;
  if (depth == 1) checkRoot(name, depth);
  if (declares)
    for (std::size_t i = 0; i < count; ++i)
      if (attributes[i].colon == theDeclarationColon) declare(attributes[i].name, attributes[i].value, depth);
  if (prefixed && checkCleanPrefixes(count)) checkCleanExpandedNames(count);
  // The element's name at its depth, its prefix declared, unless an element before it here bore the same
  // plain name.
  if (m_theOpenNames.size() < depth) m_theOpenNames.resize(depth);
  OpenName& written = m_theOpenNames[depth - 1];
  if (written.recall(name) && written.plain()) return;
  if (colon != std::string_view::npos) checkPrefixDeclared(std::string_view(name.data(), colon));
  written.plains[written.current] = colon == std::string_view::npos;
}

// A tag with more attributes than are compared pairwise: sorted, so that the check stays
// linear-logarithmic however many attributes a tag holds.
void ZrXmlWellFormednessChecker::checkManyAttributesOnce() {
  std::vector<std::pair<std::string_view, std::size_t>>& written = m_theWrittenNames;
  written.clear();
  for (std::size_t i = 0; i < m_theAttributes.size(); ++i) written.emplace_back(m_theAttributes[i].first, i);
  std::sort(written.begin(), written.end());
  for (std::size_t i = 1; i < written.size(); ++i)
    if (written[i].first == written[i - 1].first)
      report("Attribute specified twice: " + std::string(written[i].first));
}


void ZrXmlWellFormednessChecker::closeDeclarations(std::size_t depth) {
  while (!m_theDeclarations.empty() && m_theDeclarations.back().depth >= depth) popDeclaration();
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

// The first declaration before the root is the one whose entities the document uses.
void ZrXmlWellFormednessChecker::checkDoctype(std::string_view text) {
  if (m_theRootSeen) report("Document type declaration after the root element.");
  if (m_theDoctypeSeen) report("More than one document type declaration.");
  const bool first = !m_theDoctypeSeen;
  m_theDoctypeSeen = true;
  std::unique_ptr<ZrXmlDocumentType> documentType(new ZrXmlDocumentType());
  documentType->parse(text, [this](const std::string& fault) { report(fault); }, m_theReader->maxEntityExpansion());
  if (first && !m_theRootSeen) m_theDocumentType = std::move(documentType);
}

void ZrXmlWellFormednessChecker::checkEnd(std::size_t openElements, std::string_view innermost) {
  if (m_theEndChecked) return;
  m_theEndChecked = true;
  if (openElements > 0) report("Element not closed: " + std::string(innermost));
}
