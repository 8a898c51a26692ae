#include "ZrXmlFileReader.h"

#include <ZrPrint.h>
#include <ZrTextAssign.h>
#include <ZrXmlCharacters.h>
#include <ZrXmlEncodingTranscoder.h>
#include <ZrXmlReader.h>
#include <ZrXmlWellFormednessChecker.h>

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <limits>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace {

// One block read from the stream; the block array holds it plus the terminating NUL.
const std::size_t theBlockSize = 16384;

// A read buffer whose capacity grew past this (after a long token) is shrunk once it is mostly empty.
const std::size_t theShrinkThreshold = 4 * 1024 * 1024;
// Namespace bindings in force up to this many are looked along; more are indexed by prefix.
const std::size_t theFewBindings = 8;
// What memory an open-element entry and a namespace declaration cost: the objects themselves, their tree
// and hash nodes, the texts, and the allocator's own share. Measured with glibc on 64-bit Linux (the
// resident size of 100,000 nested elements: 221 bytes each; 506 when each declares a namespace of 28
// characters of prefix and URI; 63 more for a name of 40 characters; a declaration's binding indexed by
// prefix, as it is past a few in force, 54 more), and rounded up, so that the estimate of what a reader
// holds stays a little above what it really holds.
const std::uint64_t theEntryBytes = 240;
std::uint64_t nameBytes(std::size_t length) { return length > 15 ? length + 32 : 0; }  // past the string's own room
std::uint64_t declarationBytes(std::size_t prefixLength, std::size_t uriLength) {
  return 320 + 2 * (prefixLength + uriLength);
}

// Character classes, one bit each, looked up in a 256-entry table.
enum CharClass : unsigned char {
  White = 1,     // blank, tab, line feed, carriage return: the only white space the reader knows
  NameStop = 2,  // ends an attribute name on the fast path: white space, '=', '/', '>'
  WordStop = 4,  // ends an unquoted value on the fast path: white space, '/', '>'
  TextStop = 8,  // ends a word of text on the fast path: white space, '<'
  Equals = 16,   // '=' between an attribute's name and its value
  NameMark = 32  // '#' and ':', which split a name into namespace, prefix and token text
};

constexpr std::array<unsigned char, 256> makeCharTable() {
  std::array<unsigned char, 256> table{};
  for (unsigned char c : {' ', '\t', '\n', '\r'}) table[c] = White | NameStop | WordStop | TextStop;
  table[static_cast<unsigned char>('=')] = NameStop | Equals;
  table[static_cast<unsigned char>('/')] = NameStop | WordStop;
  table[static_cast<unsigned char>('>')] = NameStop | WordStop;
  table[static_cast<unsigned char>('<')] = TextStop;
  table[static_cast<unsigned char>('#')] = NameMark;
  table[static_cast<unsigned char>(':')] = NameMark;
  return table;
}

constexpr std::array<unsigned char, 256> theCharTable = makeCharTable();

inline bool hasClass(char c, unsigned char charClass) { return theCharTable[static_cast<unsigned char>(c)] & charClass; }

inline bool isWhite(char c) { return hasClass(c, White); }

bool isAllWhite(std::string_view text) {
  for (char c : text)
    if (!isWhite(c)) return false;
  return true;
}

ZrU32 countWords(std::string_view text) {
  ZrU32 count = 0;
  bool inWord = false;
  for (char c : text) {
    bool white = isWhite(c);
    if (!white && !inWord) ++count;
    inWord = !white;
  }
  return count;
}

// A spare string mostly holds the text already: a document declares the same namespaces record after
// record, and the comparison costs less than the copy.
inline void assignIfChanged(std::string& to, std::string_view text) {
  if (!Zr::textEqual(to, text)) Zr::assignText(to, text);
}

// Trims white space at both ends; a text made only of white space is left as it is, like ZrToken::strip.
// Tags and names mostly have none: those cost a look at each end.
inline std::string_view stripView(std::string_view text) {
  if (!text.empty() && !isWhite(text.front()) && !isWhite(text.back())) return text;
  std::size_t first = 0;
  while (first < text.size() && isWhite(text[first])) ++first;
  if (first == text.size()) return text;
  std::size_t last = text.size();
  while (isWhite(text[last - 1])) --last;
  return text.substr(first, last - first);
}

std::string_view skipLeadingWhite(std::string_view text) {
  std::size_t first = 0;
  while (first < text.size() && isWhite(text[first])) ++first;
  return text.substr(first);
}

// The order of std::string_view, decided by the first characters without a call when they differ, as
// the names of most tags' attributes do.
inline bool textLess(std::string_view one, std::string_view other) {
  if (!one.empty() && !other.empty() && one[0] != other[0])
    return static_cast<unsigned char>(one[0]) < static_cast<unsigned char>(other[0]);
  return one < other;
}

// Comparisons with short literals, unrolled by the compiler instead of calling memcmp per tag.
template <std::size_t N>
inline bool startsWith(std::string_view text, const char (&start)[N]) {
  if (text.size() < N - 1) return false;
  for (std::size_t i = 0; i + 1 < N; ++i)
    if (text[i] != start[i]) return false;
  return true;
}

template <std::size_t N>
inline bool endsWith(std::string_view text, const char (&end)[N]) {
  if (text.size() < N - 1) return false;
  std::size_t offset = text.size() - (N - 1);
  for (std::size_t i = 0; i + 1 < N; ++i)
    if (text[offset + i] != end[i]) return false;
  return true;
}

// Content most often ends right at the next tag: the white space at its end is looked for from the
// back, and removed when there is some.
inline void trimTrailingWhite(std::string& text) {
  std::size_t end = text.size();
  while (end > 0 && isWhite(text[end - 1])) --end;
  if (end != text.size()) text.erase(end);
}

#ifdef __SSE2__
// Which of the 16 bytes at `at` are `c`, one bit each, lowest byte first.
inline unsigned matchesInSixteen(const char* at, char c) {
  return static_cast<unsigned>(
      _mm_movemask_epi8(_mm_cmpeq_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(at)), _mm_set1_epi8(c))));
}
#endif

// The first `c` in a range that is mostly a few bytes long (an attribute value): the first 16 bytes are
// looked at in one compare, the rest by memchr; a range shorter than that byte by byte. Null when there
// is none.
inline const char* findShortFirst(const char* at, const char* end, char c) {
#ifdef __SSE2__
  if (end - at >= 16) {
    if (const unsigned hits = matchesInSixteen(at, c)) return at + __builtin_ctz(hits);
    return static_cast<const char*>(std::memchr(at + 16, c, static_cast<std::size_t>(end - at - 16)));
  }
#endif
  for (; at < end; ++at)
    if (*at == c) return at;
  return nullptr;
}

// A name split by the "namespace#token" rule, with the namespace prefix dropped from the local name: one
// pass over the name, looking for the first '#' and the first ':' after it.
struct SplitName {
  std::string_view xmlNamespace;
  std::string_view local;
  bool hasHash;
  bool emptyToken;  // nothing after the '#' rule, before the prefix is dropped
};

SplitName splitMarkedName(std::string_view text) {
  const char* begin = text.data();
  const char* end = begin + text.size();
  const char* tokenBegin = begin;
  const char* colon = nullptr;
  bool hasHash = false;
  for (const char* at = begin; at < end; ++at) {
    if (*at == '#' && !hasHash) {
      hasHash = true;
      tokenBegin = at + 1;
      colon = nullptr;
    } else if (*at == ':' && !colon) {
      colon = at;
    }
  }
  const char* localBegin = colon ? colon + 1 : tokenBegin;
  return {std::string_view(begin, hasHash ? static_cast<std::size_t>(tokenBegin - 1 - begin) : 0),
          std::string_view(localBegin, static_cast<std::size_t>(end - localBegin)), hasHash, tokenBegin == end};
}

// A name without '#' and ':' is its own token text, without a namespace.
inline SplitName unmarkedName(std::string_view text) { return {std::string_view(text.data(), 0), text, false, text.empty()}; }

// Most names hold neither '#' nor ':' and are their own token text.
inline SplitName splitName(std::string_view text) {
  const char* const begin = text.data();
  const char* const end = begin + text.size();
  for (const char* at = begin; at < end; ++at)
    if (hasClass(*at, NameMark)) return splitMarkedName(text);
  return unmarkedName(text);
}

// Scans an element name up to white space, splitting it as splitName() does in the same pass.
inline SplitName scanElementName(const char*& at, const char* end) {
  const char* const begin = at;
  for (; at < end; ++at) {
    if (!hasClass(*at, White | NameMark)) continue;
    if (isWhite(*at)) break;
    while (at < end && !isWhite(*at)) ++at;
    return splitMarkedName(std::string_view(begin, static_cast<std::size_t>(at - begin)));
  }
  return unmarkedName(std::string_view(begin, static_cast<std::size_t>(at - begin)));
}

// Fills a token from a split name; no allocation when the texts fit the strings' capacity.
void assignName(ZrToken& token, const SplitName& name) {
  if (name.hasHash)
    token.setNamespace(std::string(name.xmlNamespace));
  else if (!token.namespaceText().empty())
    token.setNamespace(std::string());
  token.clear();
  token.append(name.local.data(), static_cast<ZrU32>(name.local.size()));
}

void assignName(ZrToken& token, std::string_view text) { assignName(token, splitName(text)); }

// Whether the token is the split name, as the token made from it would compare.
inline bool holdsName(const ZrToken& token, const SplitName& name) {
  return Zr::textEqual(name.local, token.tokenText()) && Zr::textEqual(name.xmlNamespace, token.namespaceText());
}

// The same as assignName, leaving the token alone when it already holds the name, as end tags of one
// element name in a row find it. The test is holdsName's, written out: called through holdsName, GCC 12
// inlined this function into its callers and reading took 1 % more instructions.
void assignNameIfChanged(ZrToken& token, const SplitName& name) {
  if (Zr::textEqual(name.local, token.tokenText()) && Zr::textEqual(name.xmlNamespace, token.namespaceText())) return;
  assignName(token, name);
}

// Scans an attribute name up to white space or '=', noting where its token text begins (after the first
// '#', then after the first ':' that follows), as splitName() would, in the same pass.
inline const char* scanAttributeName(const char* at, const char* end, std::size_t& localOffset) {
  const char* const begin = at;
  const char* local = at;
  bool hash = false, colon = false;
  for (; at < end; ++at) {
    const unsigned char charClass = theCharTable[static_cast<unsigned char>(*at)];
    if (charClass & (White | Equals)) break;
    if (!(charClass & NameMark)) continue;
    if (*at == '#' && !hash) {
      hash = true;
      colon = false;
      local = at + 1;
    } else if (*at == ':' && !colon) {
      colon = true;
      local = at + 1;
    }
  }
  localOffset = static_cast<std::size_t>(local - begin);
  return at;
}

// The number of line feeds in a range, sixteen bytes at a time where the processor allows.
std::int64_t countLineFeeds(const char* begin, const char* end) {
  std::int64_t count = 0;
#ifdef __SSE2__
  const __m128i lineFeed = _mm_set1_epi8('\n');
  while (end - begin >= 16) {
    // Up to 255 rounds add into byte lanes (each match subtracts -1) before the lanes are summed.
    __m128i lanes = _mm_setzero_si128();
    const char* stop = begin + std::min<std::ptrdiff_t>((end - begin) / 16, 255) * 16;
    for (; begin < stop; begin += 16)
      lanes = _mm_sub_epi8(lanes, _mm_cmpeq_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(begin)), lineFeed));
    const __m128i sums = _mm_sad_epu8(lanes, _mm_setzero_si128());
    count += _mm_cvtsi128_si32(sums) + _mm_cvtsi128_si32(_mm_srli_si128(sums, 8));
  }
#endif
  return count + std::count(begin, end, '\n');
}

// The quote a tag's text leaves open (0 for none), given the one open before it. Runs of sixteen bytes
// without an apostrophe, outside a value in single quotes, are settled by the parity of their double
// quotes where the processor allows; the rest goes character by character. The last run of a tag is
// read as sixteen bytes too, the bytes past the tag left out of the counts, when `readable` bytes (those
// of the buffer from the tag on) hold them. The same pass notes whether the text holds a '<' or a control
// character, which the strict checks then look at again.
char quoteAfter(std::string_view text, char quote, bool& suspect, std::size_t readable) {
  std::size_t at = 0;
#ifdef __SSE2__
  const __m128i doubleQuote = _mm_set1_epi8('"'), apostrophe = _mm_set1_epi8('\''), less = _mm_set1_epi8('<'),
                control = _mm_set1_epi8(0x1F);
  unsigned odd = 0;
  for (; at < text.size() && at + 16 <= readable && quote != '\''; at += 16) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + at));
    const unsigned inTag = at + 16 <= text.size() ? 0xFFFFu : (1u << (text.size() - at)) - 1;
    if (static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, apostrophe))) & inTag) break;
    odd |= static_cast<unsigned>(_mm_movemask_epi8(
               _mm_or_si128(_mm_cmpeq_epi8(bytes, less), _mm_cmpeq_epi8(_mm_min_epu8(bytes, control), bytes)))) &
           inTag;
    const unsigned doubles = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, doubleQuote))) & inTag;
    if (__builtin_popcount(doubles) & 1) quote = quote ? 0 : '"';
  }
  if (odd != 0) suspect = true;
  if (at > text.size()) at = text.size();
#endif
  for (; at < text.size(); ++at) {
    const char c = text[at];
    if (c == '<' || static_cast<unsigned char>(c) < 0x20) suspect = true;
    if (quote ? c == quote : (c == '"' || c == '\'')) quote = quote ? 0 : c;
  }
  return quote;
}

// The ASCII name characters of XML, for strict mode's pass over a clean start tag (readCleanStartTag);
// every other byte, those above 127 among them, ends a name there and sends the tag the long way.
enum CleanNameClass : unsigned char { CleanNameStart = 1, CleanNamePart = 2, CleanNameColon = 4 };

constexpr std::array<unsigned char, 256> makeCleanNameTable() {
  std::array<unsigned char, 256> table{};
  for (int c = 0; c < 128; ++c) {
    const bool start = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
    const bool part = start || (c >= '0' && c <= '9') || c == '-' || c == '.';
    table[static_cast<std::size_t>(c)] =
        static_cast<unsigned char>((start ? CleanNameStart : 0) | (part ? CleanNamePart : 0) | (c == ':' ? CleanNameColon : 0));
  }
  return table;
}

constexpr std::array<unsigned char, 256> theCleanNameTable = makeCleanNameTable();

inline unsigned char cleanNameClass(char c) { return theCleanNameTable[static_cast<unsigned char>(c)]; }

// A qualified name of ASCII name characters at `at`: its end (the first byte that is no name character),
// with the position of its ':' in `colon` (npos for none); null when it is no such name (empty, a bad
// first character, a ':' at its end, before a bad character or after another ':'). The tag it stands in
// ends at a '>', which is no name character, so the scan needs no other bound.
inline const char* scanCleanName(const char* at, std::size_t& colon) {
  const char* const begin = at;
  colon = std::string_view::npos;
  if (!(cleanNameClass(*at) & CleanNameStart)) return nullptr;
  for (++at;; ++at) {
    const unsigned char charClass = cleanNameClass(*at);
    if (charClass & CleanNamePart) continue;
    if (!(charClass & CleanNameColon)) break;
    if (colon != std::string_view::npos || !(cleanNameClass(at[1]) & CleanNameStart)) return nullptr;
    colon = static_cast<std::size_t>(at - begin);
  }
  return at;
}

// The first `quote`, '<' or '&' of an attribute value that starts at `at` and ends at the latest at
// `end`; null when there is none before `end`. Sixteen bytes at a time while the buffer, which ends at
// `readable`, holds them.
inline const char* findValueStop(const char* at, const char* end, const char* readable, char quote) {
#ifdef __SSE2__
  for (; at < end && readable - at >= 16; at += 16) {
    const unsigned hits = matchesInSixteen(at, quote) | matchesInSixteen(at, '<') | matchesInSixteen(at, '&');
    if (hits == 0) continue;
    const char* const hit = at + __builtin_ctz(hits);
    return hit < end ? hit : nullptr;
  }
#endif
  for (; at < end; ++at)
    if (*at == quote || *at == '<' || *at == '&') return at;
  return nullptr;
}

// What readCleanStartTag returns for a tag it leaves to the long way.
const int theNotClean = -1;

// ---- references (expanded only when the reader is told to) ----

// The characters a reference's name or number is made of; anything else ends it.
inline bool isReferenceChar(char c) {
  const unsigned char u = static_cast<unsigned char>(c);
  return (u >= 'a' && u <= 'z') || (u >= 'A' && u <= 'Z') || (u >= '0' && u <= '9') || u == '#' || u == '_' ||
         u == '-' || u == '.' || u == ':' || u >= 0x80;
}

// Code points up to 255 are one byte, as documents written in ISO-8859-1 hold them; higher ones are
// UTF-8. Returns the number of bytes written.
std::size_t encodeCodePoint(unsigned long code, char* out) {
  if (code > 0xFF) return ZrXmlCharacters::utf8(code, out);
  out[0] = static_cast<char>(code);
  return 1;
}

// The bytes that a reference's name ("amp", "#233", "#x20AC") stands for; 0 bytes for an unknown
// entity or a number that is no XML character.
std::size_t resolveReference(std::string_view name, char* out) {
  if (!name.empty() && name[0] == '#') {
    const unsigned long code = ZrXmlCharacters::characterReferenceCode(name);
    return ZrXmlCharacters::isXmlChar(code) ? encodeCodePoint(code, out) : 0;
  }
  static const std::pair<std::string_view, char> thePredefined[] = {
      {"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"apos", '\''}, {"quot", '"'}};
  for (const auto& entity : thePredefined) {
    if (name == entity.first) {
      out[0] = entity.second;
      return 1;
    }
  }
  return 0;
}

}  // namespace

const ZrToken ZrXmlFileReader::m_theNullToken;
const std::string ZrXmlFileReader::m_theNullString;
const std::string ZrXmlFileReader::m_schemaInstanceNamespace = "http://www.w3.org/2001/XMLSchema-instance";
// The class defaults are the reader's: one value for the whole reading side.
std::size_t ZrXmlFileReader::defaultMaxTokenSize() { return ZrXmlReader::defaultOptions().maxTokenSize(); }

std::uint64_t ZrXmlFileReader::defaultMaxEntityExpansion() { return ZrXmlReader::defaultOptions().maxEntityExpansion(); }

void ZrXmlFileReader::setDefaultMaxEntityExpansion(std::uint64_t bytes) {
  ZrXmlReader::setDefaultOptions(ZrXmlReadOptions(ZrXmlReader::defaultOptions()).setMaxEntityExpansion(bytes));
}

void ZrXmlFileReader::setDefaultMaxTokenSize(std::size_t bytes) {
  ZrXmlReader::setDefaultOptions(ZrXmlReadOptions(ZrXmlReader::defaultOptions()).setMaxTokenSize(bytes));
}

bool ZrXmlFileReader::defaultExpandReferences() { return ZrXmlReader::defaultOptions().expandReferences(); }

void ZrXmlFileReader::setDefaultExpandReferences(bool flag) {
  ZrXmlReader::setDefaultOptions(ZrXmlReadOptions(ZrXmlReader::defaultOptions()).setExpandReferences(flag));
}

std::size_t ZrXmlFileReader::defaultMaxDepth() { return ZrXmlReader::defaultOptions().maxElementDepth(); }

void ZrXmlFileReader::setDefaultMaxDepth(std::size_t levels) {
  ZrXmlReader::setDefaultOptions(ZrXmlReadOptions(ZrXmlReader::defaultOptions()).setMaxElementDepth(levels));
}

bool ZrXmlFileReader::defaultStrict() { return ZrXmlReader::defaultOptions().strict(); }

void ZrXmlFileReader::setDefaultStrict(bool flag) {
  ZrXmlReader::setDefaultOptions(ZrXmlReadOptions(ZrXmlReader::defaultOptions()).setStrict(flag));
}

void ZrXmlFileReader::setOptions(const ZrXmlReadOptions& options) {
  m_theOptions = options;
  setStrict(options.strict());
}

void ZrXmlFileReader::setStrict(bool flag) {
  m_theOptions.setStrict(flag);
  if (!flag) m_theChecker.reset();
  else if (!m_theChecker) m_theChecker = std::make_unique<ZrXmlWellFormednessChecker>(*this);
}

// ---------------------------------------------------------------------------------------------------------
// Construction

// A reader without a stream reads nothing: its first readXml() meets the end of input.
ZrXmlFileReader::ZrXmlFileReader() : ZrXmlFileReader(std::string(), nullptr) {}

ZrXmlFileReader::ZrXmlFileReader(const std::string& filename, std::istream& stream)
    : ZrXmlFileReader(filename, &stream) {}

ZrXmlFileReader::ZrXmlFileReader(const std::string& filename, std::istream* stream)
    : m_theStream(stream),
      m_theFilename(filename),
      m_theNumOfAttributes(0),
      m_theContentOffset(0),
      m_theContentVectorFlag(false),
      m_theMode(0),
      m_theLineCount(1),
      m_theReadIndex(0),
      m_theBlock(new char[theBlockSize]),
      m_theStreamExhausted(m_theStream == nullptr),
      m_theSearchingEndTag(false),
      m_theLastEndTagPopped(false),
      m_theFastActive(false),
      m_theFastInTag(false),
      m_theFastSelfClosed(false),
      m_theFastBaseDepth(0),
      m_theStartRead(false),
      m_theUnsupportedEncoding(false),
      m_theMarkupSeen(false) {
  m_theReadBuffer.reserve(theBlockSize);
  setOptions(ZrXmlReader::defaultOptions());
}

ZrXmlFileReader::ZrXmlFileReader(const ZrXmlFileReader& other) : m_theBlock(new char[theBlockSize]) {
  copyFrom(other);
}

ZrXmlFileReader& ZrXmlFileReader::operator=(const ZrXmlFileReader& other) {
  if (this != &other) copyFrom(other);
  return *this;
}

// Copies the reading state; the block array and the pools of spare entries stay the copy's own.
void ZrXmlFileReader::copyFrom(const ZrXmlFileReader& other) {
  m_theStream = other.m_theStream;
  m_theFilename = other.m_theFilename;
  m_theElementStack = other.m_theElementStack;
  m_theNamespacesInForce = other.m_theNamespacesInForce;
  m_theBindingIndex = other.m_theBindingIndex;
  m_theBindingsIndexed = other.m_theBindingsIndexed;
  m_theNumOfAttributes = other.m_theNumOfAttributes;
  m_theContent = other.m_theContent;
  m_theContentOffset = other.m_theContentOffset;
  m_theContentVectorFlag = other.m_theContentVectorFlag;
  m_theMode = other.m_theMode;
  m_theLineCount = other.m_theLineCount;
  m_theLineCountedTo = other.m_theLineCountedTo;
  m_theColumnBase = other.m_theColumnBase;
  setEndTag(other.endTag());  // the copy holds the open entries only
  m_theWorkToken = other.m_theWorkToken;
  m_theValueBuffer = other.m_theValueBuffer;
  m_theReadBuffer = other.m_theReadBuffer;
  m_theReadIndex = other.m_theReadIndex;
  m_theAttributeName = other.m_theAttributeName;
  m_theStreamExhausted = other.m_theStreamExhausted;
  m_theSearchingEndTag = other.m_theSearchingEndTag;
  m_theLastEndTagPopped = other.m_theLastEndTagPopped;
  m_theFastActive = other.m_theFastActive;
  m_theFastInTag = other.m_theFastInTag;
  m_theFastSelfClosed = other.m_theFastSelfClosed;
  m_theFastBaseDepth = other.m_theFastBaseDepth;
  m_theFastElement = other.m_theFastElement;
  m_theFastName = other.m_theFastName;
  m_theOptions = other.m_theOptions;
  m_theMaxBytes = other.m_theMaxBytes;
  m_theBytesRead = other.m_theBytesRead;
  m_theNulReports = other.m_theNulReports;
  m_theStartRead = other.m_theStartRead;
  m_theUnsupportedEncoding = other.m_theUnsupportedEncoding;
  m_theMarkupSeen = other.m_theMarkupSeen;
  m_theResumeFilename = other.m_theResumeFilename;
  m_theResumeLine = other.m_theResumeLine;
  m_theMaxHeldBytes = other.m_theMaxHeldBytes;
  m_theHeldElsewhere = other.m_theHeldElsewhere;
  m_theDeadline = other.m_theDeadline;
  m_theMaxReadMilliseconds = other.m_theMaxReadMilliseconds;
  m_theBudgetExhausted = other.m_theBudgetExhausted;
  m_theFreshEntry = other.m_theFreshEntry;
  m_theEntryBytes = other.m_theEntryBytes;
  m_theDeclarationBytes = other.m_theDeclarationBytes;
  m_theChecker.reset(other.m_theChecker ? new ZrXmlWellFormednessChecker(*other.m_theChecker, *this) : nullptr);
  m_theTranscoder.reset(other.m_theTranscoder ? new ZrXmlEncodingTranscoder(*other.m_theTranscoder) : nullptr);
  m_theUtf16Unconfirmed = other.m_theUtf16Unconfirmed;
  m_theCheckedTo = other.m_theCheckedTo;
  m_theBracketsBefore = other.m_theBracketsBefore;
  m_theExpandedBytes = other.m_theExpandedBytes;
  m_theExpansionStopped = other.m_theExpansionStopped;
  rebaseAttributes(other);
}

// The copy's attributes view its own read buffer and attribute text, at the same places as the other's.
void ZrXmlFileReader::rebaseAttributes(const ZrXmlFileReader& other) {
  m_theAttributeEntries = other.m_theAttributeEntries;
  m_theAttributeCount = other.m_theAttributeCount;
  m_theUnreadAttributes = other.m_theUnreadAttributes;
  m_theNilElement = other.m_theNilElement;
  m_theAttributeOrder = other.m_theAttributeOrder;
  m_theAttributeOrderBuilt = other.m_theAttributeOrderBuilt;
  m_theFirstUnreadInOrder = other.m_theFirstUnreadInOrder;
  m_theAttributesViewBuffer = other.m_theAttributesViewBuffer;
  m_theAttributeText = other.m_theAttributeText;
  const auto rebase = [&other, this](std::string_view text) {
    const char* at = text.data();
    const std::string_view buffer(other.m_theReadBuffer), held(other.m_theAttributeText);
    if (at >= buffer.data() && at + text.size() <= buffer.data() + buffer.size())
      return std::string_view(m_theReadBuffer.data() + (at - buffer.data()), text.size());
    if (at >= held.data() && at + text.size() <= held.data() + held.size())
      return std::string_view(m_theAttributeText.data() + (at - held.data()), text.size());
    return std::string_view();
  };
  for (std::size_t i = 0; i < m_theAttributeCount; ++i) {
    AttributeEntry& entry = m_theAttributeEntries[i];
    if (entry.taken) continue;
    entry.name = rebase(entry.name);
    entry.value = rebase(entry.value);
  }
}

// A single element left open passes silently: a reader that stops after its root's start tag is normal.
ZrXmlFileReader::~ZrXmlFileReader() {
  if (m_theElementStack.size() > 1) warnMessage("file not well formed.\n\tSome start tags not closed with end tag.");
  if (m_theUnreadAttributes != 0) warnMessage("file not well formed.\n\tSome attribute were not used.");
}

void ZrXmlFileReader::close() {
  delete m_theStream;
  m_theStream = nullptr;
  m_theStreamExhausted = true;
}

// ---------------------------------------------------------------------------------------------------------
// Accessors

// Attributes are handed out by token text, smallest first, not in document order; names that differ
// only in namespace are one attribute, as in any map keyed by ZrToken.
const ZrToken& ZrXmlFileReader::attributeName() const {
  const std::size_t index = firstUnreadAttribute();
  return index == npos ? m_theNullToken : attributeToken(index);
}

const ZrToken& ZrXmlFileReader::attributeName(const ZrToken& name) const {
  const std::size_t index = findUnreadAttribute(name);
  return index == npos ? m_theNullToken : attributeToken(index);
}

const std::string& ZrXmlFileReader::attributeValue() {
  const std::size_t index = firstUnreadAttribute();
  return index == npos ? m_theNullString : takeAttributeValue(index);
}

const std::string& ZrXmlFileReader::attributeValue(const ZrToken& name) {
  const std::size_t index = findUnreadAttribute(name);
  return index == npos ? m_theNullString : takeAttributeValue(index);
}

const std::string& ZrXmlFileReader::takeAttributeValue(std::size_t index) {
  AttributeEntry& entry = m_theAttributeEntries[index];
  Zr::assignText(m_theValueBuffer, entry.value);
  entry.taken = true;
  --m_theUnreadAttributes;
  return m_theValueBuffer;
}

// Most tags have a handful of attributes, often already in order as the writer puts them: an insertion
// sort settles those with a comparison or two each.
void ZrXmlFileReader::buildAttributeOrder() const {
  m_theAttributeOrderBuilt = true;
  m_theFirstUnreadInOrder = 0;
  m_theAttributeOrder.resize(m_theAttributeCount);
  const auto byTokenText = [this](std::uint32_t one, std::uint32_t other) {
    return textLess(m_theAttributeEntries[one].local(), m_theAttributeEntries[other].local());
  };
  if (m_theAttributeCount > 16) {
    for (std::size_t i = 0; i < m_theAttributeCount; ++i) m_theAttributeOrder[i] = static_cast<std::uint32_t>(i);
    std::sort(m_theAttributeOrder.begin(), m_theAttributeOrder.end(), byTokenText);
    return;
  }
  for (std::size_t i = 0; i < m_theAttributeCount; ++i) {
    std::size_t at = i;
    for (; at > 0 && byTokenText(static_cast<std::uint32_t>(i), m_theAttributeOrder[at - 1]); --at)
      m_theAttributeOrder[at] = m_theAttributeOrder[at - 1];
    m_theAttributeOrder[at] = static_cast<std::uint32_t>(i);
  }
}

// The unread attribute with the smallest token text, or npos.
std::size_t ZrXmlFileReader::firstUnreadAttribute() const {
  if (m_theUnreadAttributes == 0) return npos;
  if (m_theAttributeCount == 1) return 0;  // the one attribute, unread
  if (!m_theAttributeOrderBuilt) buildAttributeOrder();
  while (m_theAttributeEntries[m_theAttributeOrder[m_theFirstUnreadInOrder]].taken) ++m_theFirstUnreadInOrder;
  return m_theAttributeOrder[m_theFirstUnreadInOrder];
}

// The unread attribute whose token text is the name's, or npos.
std::size_t ZrXmlFileReader::findUnreadAttribute(const ZrToken& name) const {
  if (m_theUnreadAttributes == 0) return npos;
  const std::string_view wanted = name.tokenText();
  if (m_theAttributeCount <= 16) {
    for (std::size_t i = 0; i < m_theAttributeCount; ++i)
      if (!m_theAttributeEntries[i].taken && Zr::textEqual(m_theAttributeEntries[i].local(), wanted)) return i;
    return npos;
  }
  if (!m_theAttributeOrderBuilt) buildAttributeOrder();
  const auto found = std::lower_bound(
      m_theAttributeOrder.begin(), m_theAttributeOrder.end(), wanted,
      [this](std::uint32_t index, std::string_view text) { return textLess(m_theAttributeEntries[index].local(), text); });
  if (found == m_theAttributeOrder.end()) return npos;
  const AttributeEntry& entry = m_theAttributeEntries[*found];
  return !entry.taken && Zr::textEqual(entry.local(), wanted) ? *found : npos;
}

const ZrToken& ZrXmlFileReader::attributeToken(std::size_t index) const {
  AttributeEntry& entry = m_theAttributeEntries[index];
  if (!entry.tokenBuilt) {
    // Entries are reused: the same tag's names come again. The tag's scan found where the token text
    // begins; at the start, the name holds no '#' or ':' to split at.
    assignNameIfChanged(entry.token, entry.localOffset == 0 ? unmarkedName(entry.name) : splitName(entry.name));
    entry.tokenBuilt = true;
  }
  return entry.token;
}

std::string ZrXmlFileReader::content() const {
  if (m_theContentVectorFlag) return contentByWord();
  return m_theContent.substr(std::min(m_theContentOffset, m_theContent.size()));
}

std::string ZrXmlFileReader::contentByWord() const { return std::string(nextContentWord()); }

// The white space after the word is taken with it, so that the offset reaches the content's end with
// the last word and isContentAvailable() turns false without another call.
std::string_view ZrXmlFileReader::nextContentWord() const {
  const char* const content = m_theContent.data();
  const std::size_t size = m_theContent.size();
  std::size_t begin = m_theContentOffset;
  while (begin < size && isWhite(content[begin])) ++begin;
  std::size_t end = begin;
  while (end < size && !isWhite(content[end])) ++end;
  std::size_t next = end;
  while (next < size && isWhite(content[next])) ++next;
  m_theContentOffset = next;
  return std::string_view(content + begin, end - begin);
}

ZrU32 ZrXmlFileReader::contentCount() const {
  return countWords(std::string_view(m_theContent).substr(std::min(m_theContentOffset, m_theContent.size())));
}

void ZrXmlFileReader::setContentVectorFlag(bool flag) { m_theContentVectorFlag = flag; }

const std::string& ZrXmlFileReader::filename() { return m_theFilename; }

int ZrXmlFileReader::lineCountOfFile() const {
  const std::int64_t line = lineCount();
  return line > std::numeric_limits<int>::max() ? std::numeric_limits<int>::max() : static_cast<int>(line);
}

std::int64_t ZrXmlFileReader::lineCount() const {
  if (m_theLineCountedTo < m_theReadIndex) {
    const char* data = m_theReadBuffer.data();
    m_theLineCount += countLineFeeds(data + m_theLineCountedTo, data + m_theReadIndex);
    m_theLineCountedTo = m_theReadIndex;
  }
  return m_theLineCount;
}

std::int64_t ZrXmlFileReader::columnOfFile() const {
  const std::size_t end = std::min(m_theReadIndex, m_theReadBuffer.size());
  const std::size_t lineFeed = end == 0 ? std::string::npos : m_theReadBuffer.rfind('\n', end - 1);
  if (lineFeed != std::string::npos) return static_cast<std::int64_t>(end - lineFeed);
  return m_theColumnBase + static_cast<std::int64_t>(end) + 1;
}

// Called before the consumed front of the buffer is dropped: the column goes on from what the current
// line had there.
void ZrXmlFileReader::keepColumnOfDroppedFront() {
  const std::size_t end = std::min(m_theReadIndex, m_theReadBuffer.size());
  // memrchr looks at many bytes at once: a document with long lines drops whole blocks without a line feed.
  const void* const lineFeed = end == 0 ? nullptr : memrchr(m_theReadBuffer.data(), '\n', end);
  if (lineFeed)
    m_theColumnBase = static_cast<std::int64_t>(end - (static_cast<const char*>(lineFeed) - m_theReadBuffer.data()) - 1);
  else m_theColumnBase += static_cast<std::int64_t>(end);
}

std::istream* ZrXmlFileReader::stream() const { return m_theStream; }

bool ZrXmlFileReader::atEndOfInput() const {
  return m_theStreamExhausted && m_theReadIndex >= m_theReadBuffer.size();
}

// ---------------------------------------------------------------------------------------------------------
// Messages

void ZrXmlFileReader::warnMessage(const char* what) const {
  Zr::Print::instance().write(Zr::PrintError, "ZrXmlFileReader Error: %s\n\tFile: %s\n\tLine: %lld\n", what,
                              m_theFilename.c_str(), static_cast<long long>(lineCount()));
}

// Expands references in place: the text never grows, since every reference is at least as long as
// the bytes it stands for, except for the entities of a document type, whose text goes through a second
// string once one is met. A reference that cannot be expanded is reported and its '&' is kept as text,
// so nothing of the document is lost.
void ZrXmlFileReader::expandReferencesIn(std::string& text, bool inAttribute) const {
  std::size_t at = text.find('&');
  if (at == std::string::npos) return;
  std::size_t out = at;
  bool grown = false;  // the expansion is being built in m_theExpansion, from `out` on
  const auto emit = [&](const char* bytes, std::size_t length) {
    if (grown) m_theExpansion.append(bytes, length);
    else std::memmove(&text[out], bytes, length);
    out += length;
  };
  while (at < text.size()) {
    if (text[at] != '&') {
      const std::size_t next = std::min(text.find('&', at), text.size());
      emit(text.data() + at, next - at);
      at = next;
      continue;
    }
    std::size_t end = at + 1;
    while (end < text.size() && isReferenceChar(text[end])) ++end;
    const std::string_view name(text.data() + at + 1, end - at - 1);
    char bytes[4];
    std::size_t length = 0;
    bool expanded = false;
    if (name.empty()) {
      warnMessage("file not well formed.\n\t'&' not followed by a reference.");
    } else if (end == text.size() || text[end] != ';') {
      warnFormatted("file not well formed.\n\tReference without ';': &%.*s", static_cast<int>(name.size()), name.data());
    } else if ((length = resolveReference(name, bytes)) == 0) {
      if (name[0] != '#' && m_theChecker && m_theChecker->documentType()) {
        if (!grown) {
          m_theExpansion.assign(text.data(), out);
          grown = true;
        }
        expanded = expandEntity(name, inAttribute, m_theExpansion);
        out = m_theExpansion.size();
      } else {
        const char* fault = name[0] == '#' ? "Invalid character reference" : "Undefined entity reference";
        warnFormatted("file not well formed.\n\t%s: &%.*s;", fault, static_cast<int>(name.size()), name.data());
      }
    }
    if (expanded) {
      at = end + 1;
    } else if (length == 0) {
      emit(text.data() + at, 1);
      ++at;
    } else {
      emit(bytes, length);
      at = end + 1;
    }
  }
  if (grown) text.swap(m_theExpansion);
  else text.resize(out);
}

// An entity of the document type, expanded into `out`; false, with the reference kept as written, when
// it cannot be (a fault reported, or the expansion limit passed: reported once, nothing expanded after).
bool ZrXmlFileReader::expandEntity(std::string_view name, bool inAttribute, std::string& out) const {
  const std::string written = "&" + std::string(name) + ";";
  if (!m_theExpansionStopped) {
    const std::size_t before = out.size();
    const auto report = [this](const std::string& fault) { warnMessage(("file not well formed.\n\t" + fault).c_str()); };
    if (m_theChecker->documentType()->expand(name, inAttribute, out, m_theExpandedBytes, m_theOptions.maxEntityExpansion(), report))
      return true;
    out.resize(before);
    m_theExpansionStopped = true;
    warnFormatted("file not well formed.\n\tEntity expansion passes %llu bytes: &%.*s; and the references after it "
                  "are not expanded.",
                  static_cast<unsigned long long>(m_theOptions.maxEntityExpansion()), static_cast<int>(name.size()), name.data());
  }
  out += written;
  return true;
}

void ZrXmlFileReader::warnFormatted(const char* format, ...) const {
  char text[256];
  va_list args;
  va_start(args, format);
  std::vsnprintf(text, sizeof text, format, args);
  va_end(args);
  warnMessage(text);
}

// ---------------------------------------------------------------------------------------------------------
// The read buffer

// Past the depth limit the document is not read further: the rest of its nesting is unknown, and
// skipping it would mean reading it.
// The memory budget is looked at only when the stack reaches a depth it never had: the entries of
// lesser depths are kept, so only a new one adds to what is held.
bool ZrXmlFileReader::mayOpenElement() {
  if (m_theElementStack.size() < m_theOptions.maxElementDepth())
    return m_theElementStack.size() < m_theElementStack.kept() || withinMemoryBudget();
  warnFormatted("file not well formed.\n\tElements nested deeper than %zu levels; reading stops.", m_theOptions.maxElementDepth());
  stopReading();
  return false;
}

std::uint64_t ZrXmlFileReader::heldBytes() const {
  return theBlockSize + m_theReadBuffer.capacity() + m_theContent.capacity() + m_theValueBuffer.capacity() +
         m_theAttributeText.capacity() + m_theScratch.capacity() +
         m_theAttributeEntries.capacity() * sizeof(AttributeEntry) +
         m_theAttributeOrder.capacity() * sizeof(std::uint32_t) + m_theEntryBytes + m_theDeclarationBytes;
}

bool ZrXmlFileReader::withinMemoryBudget() {
  if (m_theMaxHeldBytes == 0 || m_theHeldElsewhere + heldBytes() <= m_theMaxHeldBytes) return true;
  warnFormatted("the documents being read hold more than %llu bytes; the read stops.",
                static_cast<unsigned long long>(m_theMaxHeldBytes));
  m_theBudgetExhausted = true;
  stopReading();
  return false;
}

bool ZrXmlFileReader::withinTimeBudget() {
  if (m_theMaxReadMilliseconds == 0 || std::chrono::steady_clock::now() < m_theDeadline) return true;
  warnFormatted("the read took longer than %llu milliseconds; the read stops.",
                static_cast<unsigned long long>(m_theMaxReadMilliseconds));
  m_theBudgetExhausted = true;
  stopReading();
  return false;
}

namespace {
void releaseString(std::string& text) { std::string().swap(text); }
}  // namespace

void ZrXmlFileReader::releaseConsumed() {
  keepAttributesOutOfBuffer();
  if (m_theReadIndex > 0) {
    lineCount();
    m_theReadBuffer.erase(0, m_theReadIndex);
    m_theReadIndex = 0;
    m_theLineCountedTo = 0;
  }
  if (m_theReadBuffer.capacity() > 2 * theBlockSize) {
    m_theReadBuffer.shrink_to_fit();
    m_theReadBuffer.reserve(theBlockSize);
  }
  releaseString(m_theContent);
  m_theContentOffset = 0;
  releaseString(m_theValueBuffer);
  releaseString(m_theScratch);
  if (m_theUnreadAttributes == 0) releaseString(m_theAttributeText);
}

// With no element open, a document that stood on a start tag stands as after an end tag: the next
// readXml() meets the end of input without a report.
void ZrXmlFileReader::abandon() {
  stopReading();
  clearAttributes();
  while (!m_theElementStack.empty()) popElement();
  releaseString(m_theContent);
  m_theContentOffset = 0;
  if (m_theMode == 1) m_theMode = 2;
}

void ZrXmlFileReader::stopReading() {
  keepAttributesOutOfBuffer();
  lineCount();
  keepColumnOfDroppedFront();
  m_theLineCountedTo = 0;
  m_theStreamExhausted = true;
  m_theReadBuffer.clear();
  m_theReadIndex = 0;
  m_theCheckedTo = 0;
  m_theBracketsBefore = 0;
}

// Drops the consumed front of the buffer (once per block, never per token) and appends one block. Returns
// false when the stream has nothing more to give.
bool ZrXmlFileReader::readBlock() {
  if (m_theStreamExhausted || !withinTimeBudget()) return false;
  keepAttributesOutOfBuffer();
  if (m_theReadIndex > 0) {
    lineCount();
    keepColumnOfDroppedFront();
    m_theReadBuffer.erase(0, m_theReadIndex);
    m_theCheckedTo = m_theCheckedTo > m_theReadIndex ? m_theCheckedTo - m_theReadIndex : 0;
    m_theBracketsBefore = m_theBracketsBefore > m_theReadIndex ? m_theBracketsBefore - m_theReadIndex : 0;
    m_theReadIndex = 0;
    m_theLineCountedTo = 0;
    if (m_theReadBuffer.capacity() > theShrinkThreshold && m_theReadBuffer.size() < theBlockSize) {
      m_theReadBuffer.shrink_to_fit();
      m_theReadBuffer.reserve(theBlockSize);
    }
  }
  if (m_theReadBuffer.size() > m_theOptions.maxTokenSize()) {
    warnFormatted("file not well formed.\n\tA tag, comment or text longer than %zu bytes was found; reading stops.",
                  m_theOptions.maxTokenSize());
    m_theStreamExhausted = true;
    return false;
  }
  if (!m_theStream) {
    m_theStreamExhausted = true;
    return false;
  }
  m_theStream->read(m_theBlock.get(), static_cast<std::streamsize>(theBlockSize - 1));
  std::streamsize count = m_theStream->gcount();
  if (count <= 0) {
    m_theStreamExhausted = true;
    withinTimeBudget();  // a stream given the time left ends when it runs out
    if (m_theTranscoder) transcodeBlock(nullptr, 0, true);  // a character cut at the very end
    else if (m_theChecker) checkCharactersRead();
    return false;
  }
  m_theBytesRead += static_cast<std::uint64_t>(count);
  if (m_theMaxBytes != 0 && m_theBytesRead > m_theMaxBytes) {
    warnFormatted("file not well formed.\n\tInput longer than %llu bytes; reading stops.",
                  static_cast<unsigned long long>(m_theMaxBytes));
    stopReading();
    return false;
  }
  if (m_theStream->eof()) m_theStreamExhausted = true;
  m_theBlock[static_cast<std::size_t>(count)] = '\0';
  std::size_t skipped = 0;
  if (!m_theStartRead && !checkDocumentStart(static_cast<std::size_t>(count), skipped)) return false;
  const char* text = m_theBlock.get() + skipped;
  std::size_t available = static_cast<std::size_t>(count) - skipped;
  if (m_theTranscoder) {
    transcodeBlock(text, available, m_theStreamExhausted);
    return withinMemoryBudget();
  }
  std::size_t length = std::strlen(text);  // the block is taken as a C string: cut at a NUL
  m_theReadBuffer.append(text, length);
  if (!withinMemoryBudget()) return false;
  if (m_theChecker) checkCharactersRead();
  if (length < available) {
    warnMessage("file not well formed.\n\tNUL character in the input; the rest of its block was dropped.");
    if (++m_theNulReports == m_theMaxNulReports) {
      warnMessage("file not well formed.\n\tToo many NUL characters: the input is no text; reading stops.");
      stopReading();
      return false;
    }
  }
  return true;
}

// The first bytes of a document: a UTF-8 byte-order mark is skipped; a document in UTF-16 (its mark, or
// '<' next to a NUL byte) is reported once and not read at all, instead of a NUL report per block.
bool ZrXmlFileReader::checkDocumentStart(std::size_t count, std::size_t& skipped) {
  m_theStartRead = true;
  const unsigned char* bytes = reinterpret_cast<const unsigned char*>(m_theBlock.get());
  if (count >= 3 && bytes[0] == 0xEF && bytes[1] == 0xBB && bytes[2] == 0xBF) skipped = 3;
  const bool utf16 = count >= 2 && ((bytes[0] == 0xFE && bytes[1] == 0xFF) || (bytes[0] == 0xFF && bytes[1] == 0xFE) ||
                                    (bytes[0] == 0 && bytes[1] == '<') || (bytes[0] == '<' && bytes[1] == 0));
  if (m_theChecker) {
    chooseEncoding(count, skipped, utf16);
    return true;
  }
  if (!utf16) return true;
  warnMessage("UTF-16 documents are not supported.");
  m_theUnsupportedEncoding = true;
  m_theStreamExhausted = true;
  return false;
}

// Position of the next `c` at or after `from`, reading blocks as needed; npos at end of input. After a
// block read only the new bytes are searched.
std::size_t ZrXmlFileReader::findChar(char c, std::size_t from) {
  for (;;) {
    std::size_t size = m_theReadBuffer.size();
    if (from < size) {
      // Most tags and gaps between tags are short: look at the first bytes before calling memchr.
      const char* data = m_theReadBuffer.data();
      std::size_t nearEnd = std::min(size, from + 32);
#ifdef __SSE2__
      for (; from + 16 <= nearEnd; from += 16)
        if (const unsigned hits = matchesInSixteen(data + from, c)) return from + __builtin_ctz(hits);
#endif
      for (std::size_t at = from; at < nearEnd; ++at)
        if (data[at] == c) return at;
      if (nearEnd < size) {
        const void* hit = std::memchr(data + nearEnd, c, size - nearEnd);
        if (hit) return static_cast<std::size_t>(static_cast<const char*>(hit) - data);
      }
    }
    std::size_t searched = size - m_theReadIndex;  // relative to the read index, which a block read moves to 0
    if (!readBlock()) return npos;
    from = m_theReadIndex + searched;
  }
}

// findChar() for the characters that end a gap between tags or a tag: most are found in the 32 bytes
// that follow, looked at here before any call. The two halves are tested together: tags of 16 to 31
// bytes, as many are, then take the same branch as shorter ones.
inline std::size_t ZrXmlFileReader::findCharSoon(char c, std::size_t from) {
#ifdef __SSE2__
  if (from + 32 <= m_theReadBuffer.size()) {
    const char* at = m_theReadBuffer.data() + from;
    if (const unsigned hits = matchesInSixteen(at, c) | (matchesInSixteen(at + 16, c) << 16))
      return from + __builtin_ctz(hits);
    return findChar(c, from + 32);
  }
#endif
  return findChar(c, from);
}

bool ZrXmlFileReader::ensureAvailable(std::size_t count) {
  while (m_theReadBuffer.size() - m_theReadIndex < count)
    if (!readBlock()) return false;
  return true;
}

void ZrXmlFileReader::consumeTo(std::size_t position) { m_theReadIndex = position; }

// Consumes characters of the class; false when the input ended before another character.
bool ZrXmlFileReader::skipWhile(unsigned char charClass) {
  for (;;) {
    const char* data = m_theReadBuffer.data();
    std::size_t size = m_theReadBuffer.size();
    std::size_t at = m_theReadIndex;
    while (at < size && hasClass(data[at], charClass)) ++at;
    consumeTo(at);
    if (at < size) return true;
    if (!readBlock()) return false;
  }
}

// Consumes characters up to one of the class into `out`.
void ZrXmlFileReader::readUntil(unsigned char charClass, std::string& out) {
  out.clear();
  for (;;) {
    const char* data = m_theReadBuffer.data();
    std::size_t size = m_theReadBuffer.size();
    std::size_t at = m_theReadIndex;
    while (at < size && !hasClass(data[at], charClass)) ++at;
    out.append(data + m_theReadIndex, at - m_theReadIndex);
    consumeTo(at);
    if (at < size || !readBlock()) return;
  }
}

ZrBoolean ZrXmlFileReader::getLineWithLineCount(std::string& out, char delimiter, bool skip) {
  std::size_t found = findChar(delimiter, m_theReadIndex);
  if (found == npos) {
    out.assign(m_theReadBuffer, m_theReadIndex, std::string::npos);
    consumeTo(m_theReadBuffer.size());
    return false;
  }
  out.assign(m_theReadBuffer, m_theReadIndex, found - m_theReadIndex);
  consumeTo(skip ? found + 1 : found);
  return true;
}

// ---------------------------------------------------------------------------------------------------------
// Events

int ZrXmlFileReader::readXml() {
  if (m_theFastInTag) fastFinishTag(true);
  m_theFastActive = false;
  m_theFastSelfClosed = false;
  switch (m_theMode) {
    case 0:
      m_theMode = nextEvent();
      if (m_theMode != 1 && m_theMode != 3 && !m_theUnsupportedEncoding && !m_theBudgetExhausted)
        warnMessage("file not well formed.\n\tFile must begin with start tag.");
      return m_theMode;
    case 1:
      m_theContent.clear();
      m_theContentOffset = 0;
      m_theContentVectorFlag = false;
      m_theMode = nextEvent();
      if (m_theMode == 0 && !m_theBudgetExhausted) warnMessage("file not well formed.\n\tPremature end of file.");
      return m_theMode;
    case 3:
      popElement();  // the empty element closes itself
      [[fallthrough]];
    case 2:
    case 4:
      m_theMode = nextEvent();
      if (m_theMode == 4) {
        warnMessage("file not well formed.\n\tContent cannot follow end tag.");
        if (m_theMode != 0 && !nextMatchingEndTag()) warnMessage("file not well formed.\n\tNo start tag found.");
      }
      return m_theMode;
    case 5:
      warnMessage("error mode encountered.");
      return m_theMode;
    default:
      return m_theMode;
  }
}

// One event. Comments and declarations are skipped in this loop, never by recursion, so any number of
// them in a row costs no stack.
int ZrXmlFileReader::nextEvent() {
  bool contentRead = false;
  for (;;) {
    std::size_t open = findCharSoon('<', m_theReadIndex);
    if (open == npos) {
      if (m_theChecker) {
        m_theChecker->checkText(std::string_view(m_theReadBuffer).substr(m_theReadIndex));
        m_theChecker->checkEnd(m_theElementStack.size(),
                               m_theElementStack.empty() ? std::string_view() : m_theElementStack.back().element.tokenText());
      }
      bool white = isAllWhite(std::string_view(m_theReadBuffer).substr(m_theReadIndex));
      consumeTo(m_theReadBuffer.size());
      if (!white) warnMessage("file not well formed.\n\tExtra characters found before EOF.");
      return 0;
    }
    std::string_view text(m_theReadBuffer.data() + m_theReadIndex, open - m_theReadIndex);
    const bool atDocumentStart = !m_theMarkupSeen && text.empty();
    m_theMarkupSeen = true;
    consumeTo(open + 1);
    if (m_theChecker && !text.empty() && mayHoldBracket(open - text.size(), open)) m_theChecker->checkText(text);
    if (!isAllWhite(text)) {
      if (m_theMode == 1) {
        // The content is trimmed when it ends, so its leading white space is never stored.
        m_theContent.append(m_theContent.empty() ? skipLeadingWhite(text) : text);
        contentRead = true;
      } else if (m_theChecker && !m_theElementStack.empty()) {
        checkReferences(text);  // mixed content is well-formed; its text is passed over as before
      } else {
        warnMessage("file not well formed.\n\tContent can only follow start tag.");
      }
    }

    std::size_t close = findCharSoon('>', m_theReadIndex);
    const bool endTag = close != npos && m_theReadBuffer[m_theReadIndex] == '/';
    int type = m_theChecker && close != npos && !endTag ? readCleanStartTag(close) : theNotClean;
    if (type == theNotClean) {
      // An end tag holds no quoted value: its first '>' ends it.
      if (m_theChecker && close != npos && !endTag) close = strictTagEnd(close);
      if (close == npos) {
        consumeTo(m_theReadBuffer.size());
        if (!m_theElementStack.empty()) warnMessage("file not well formed.\n\tEOF found before end of tag.");
        return 0;
      }
      std::string_view tag(m_theReadBuffer.data() + m_theReadIndex, close - m_theReadIndex);
      consumeTo(close + 1);

      const bool markup = !tag.empty() && (tag[0] == '!' || tag[0] == '?');
      if (m_theChecker && markup && checkStrictMarkup(tag, atDocumentStart, contentRead)) continue;
      // Only a comment ("!--") or a declaration ('?') is skipped: other tags are not handed over.
      if (markup && skipCommentOrDeclaration(tag, nullptr)) continue;

      type = classifyTag(tag);
      if (type == 5) {
        warnMessage("file not well formed.\n\tTag contains only white space.");
        if (m_theSearchingEndTag) continue;  // already searching: no nested search
        m_theSearchingEndTag = true;
        bool found = nextMatchingEndTag();
        m_theSearchingEndTag = false;
        type = found ? 0 : 5;
        if (found && !m_theElementStack.empty() && !m_theResumeFilename.empty()) reportSkippedRest();
      }
    }
    if (contentRead) {
      if (type == 2) {
        trimTrailingWhite(m_theContent);
        // After trimming, so that "&#32;" stays; most content holds no '&', which one short search tells.
        if (expanding() && findShortFirst(m_theContent.data(), m_theContent.data() + m_theContent.size(), '&'))
          expandReferencesIn(m_theContent);
        return 4;
      }
      if (type != 4 && !m_theChecker)  // mixed content is well-formed XML
        warnMessage("file not well formed.\n\tContent did not conclude with proper end tag.");
    }
    return type;
  }
}

// The end of input that a white-space-only tag's search gave ends an included document with elements
// still open: a detail line of that tag's report says what is lost.
void ZrXmlFileReader::reportSkippedRest() const {
  Zr::Print::instance().write(Zr::PrintError,
                              "\tThe rest of this document, from line %lld, was skipped; reading goes on in %s after "
                              "the include element on line %lld.\n",
                              static_cast<long long>(lineCount()), m_theResumeFilename.c_str(),
                              static_cast<long long>(m_theResumeLine));
}

// ---------------------------------------------------------------------------------------------------------
// Strict mode

// The encoding name of an XML declaration at the start of text ("<?xml version='1.0' encoding='...'"),
// or an empty text when there is none. The declaration itself is checked where it is read as markup.
std::string_view declaredEncoding(std::string_view text) {
  if (text.size() < 6 || text.compare(0, 5, "<?xml") != 0 || !isWhite(text[5])) return std::string_view();
  text = text.substr(0, std::min(text.find("?>"), std::size_t(1024)));
  std::size_t at = text.find("encoding");
  if (at == std::string_view::npos || !isWhite(text[at - 1])) return std::string_view();
  text = skipLeadingWhite(text.substr(at + 8));
  if (text.empty() || text[0] != '=') return std::string_view();
  text = skipLeadingWhite(text.substr(1));
  if (text.empty() || (text[0] != '"' && text[0] != '\'')) return std::string_view();
  const std::size_t close = text.find(text[0], 1);
  return close == std::string_view::npos ? std::string_view() : text.substr(1, close - 1);
}

// Strict mode's choice of how the document's bytes become UTF-8: UTF-16 by its byte-order mark or a NUL
// byte beside the first '<', otherwise the encoding the XML declaration names.
void ZrXmlFileReader::chooseEncoding(std::size_t count, std::size_t& skipped, bool utf16) {
  const unsigned char* bytes = reinterpret_cast<const unsigned char*>(m_theBlock.get());
  if (utf16) {
    const bool mark = (bytes[0] == 0xFE && bytes[1] == 0xFF) || (bytes[0] == 0xFF && bytes[1] == 0xFE);
    if (mark) skipped = 2;
    m_theTranscoder = ZrXmlEncodingTranscoder::forUtf16(bytes[0] == 0xFE || bytes[0] == 0);
    m_theUtf16Unconfirmed = true;
    return;
  }
  const std::string_view declared = declaredEncoding(std::string_view(m_theBlock.get() + skipped, count - skipped));
  if (declared.empty() || ZrXmlEncodingTranscoder::isUtf8Name(declared)) return;
  const std::string name(declared);
  if (skipped == 3 || ZrXmlEncodingTranscoder::isUtf16Name(declared)) {
    warnFormatted("file not well formed.\n\tEncoding declaration does not match the document: %.100s", name.c_str());
    return;
  }
  m_theTranscoder = ZrXmlEncodingTranscoder::forName(declared);
  if (!m_theTranscoder)
    warnFormatted("file not well formed.\n\tUnknown encoding: %.100s; the document is read as UTF-8.", name.c_str());
}

// A UTF-16 document may name its encoding, once its first block is read: the name must be UTF-16's.
void ZrXmlFileReader::confirmUtf16Declaration() {
  m_theUtf16Unconfirmed = false;
  const std::string_view declared = declaredEncoding(m_theReadBuffer);
  if (declared.empty() || ZrXmlEncodingTranscoder::isUtf16Name(declared)) return;
  warnFormatted("file not well formed.\n\tEncoding declaration does not match the document: %.*s",
                static_cast<int>(std::min<std::size_t>(declared.size(), 100)), declared.data());
}

// One block in the document's encoding into the read buffer as UTF-8, with the same cut at a NUL
// character as a block read as it is; the transcoder's first fault is reported where it stands.
void ZrXmlFileReader::transcodeBlock(const char* bytes, std::size_t count, bool last) {
  m_theTranscoded.clear();
  ZrXmlEncodingTranscoder::Fault fault;
  m_theTranscoder->transcode(bytes, count, last, m_theTranscoded, fault);
  const std::size_t start = m_theReadBuffer.size();
  const std::size_t length = std::strlen(m_theTranscoded.c_str());
  m_theReadBuffer.append(m_theTranscoded.data(), length);
  if (!fault.what.empty() && fault.outputOffset <= length)
    warnMessageAtOffset(("file not well formed.\n\t" + fault.what).c_str(), start + fault.outputOffset);
  if (m_theUtf16Unconfirmed) confirmUtf16Declaration();
  checkCharactersRead();
  if (length < m_theTranscoded.size()) {
    warnMessage("file not well formed.\n\tNUL character in the input; the rest of its block was dropped.");
    if (++m_theNulReports == m_theMaxNulReports) {
      warnMessage("file not well formed.\n\tToo many NUL characters: the input is no text; reading stops.");
      stopReading();
    }
  }
}

// The characters of the read buffer not checked yet, each once, as they are read; a character cut by the
// end of the buffer is checked with the next block.
void ZrXmlFileReader::checkCharactersRead() {
  if (m_theCheckedTo > m_theReadBuffer.size()) m_theCheckedTo = m_theReadBuffer.size();
  ZrXmlWellFormednessChecker::CharacterFault fault;
  const std::string_view unchecked = std::string_view(m_theReadBuffer).substr(m_theCheckedTo);
  const std::size_t checked = ZrXmlWellFormednessChecker::checkCharacters(unchecked, m_theStreamExhausted, fault);
  if (fault.at != std::string_view::npos)
    warnMessageAtOffset(("file not well formed.\n\t" + fault.what).c_str(), m_theCheckedTo + fault.at);
  m_theCheckedTo += checked;
  if (fault.bracket) m_theBracketsBefore = m_theCheckedTo;
}

// A report about the character at `offset` in the read buffer, which may lie ahead of the read index:
// its line is counted up to it.
void ZrXmlFileReader::warnMessageAtOffset(const char* what, std::size_t offset) const {
  std::int64_t line = lineCount();
  if (offset > m_theReadIndex && offset <= m_theReadBuffer.size())
    line += countLineFeeds(m_theReadBuffer.data() + m_theReadIndex, m_theReadBuffer.data() + offset);
  Zr::Print::instance().write(Zr::PrintError, "ZrXmlFileReader Error: %s\n\tFile: %s\n\tLine: %lld\n", what,
                              m_theFilename.c_str(), static_cast<long long>(line));
}

// A start tag's attributes begin: those of the tag before are dropped, with a word when some went unread.
inline void ZrXmlFileReader::startAttributes() {
  if (m_theUnreadAttributes != 0) warnMessage("file possibly not valid.\n\tPrevious attribute names were not used.");
  clearAttributes();
}

// The attribute joins the tag's entries, as it stands.
inline void ZrXmlFileReader::holdAttribute(std::string_view name, std::size_t localOffset, std::string_view value) {
  if (m_theAttributeCount == m_theAttributeEntries.size()) m_theAttributeEntries.emplace_back();
  AttributeEntry& entry = m_theAttributeEntries[m_theAttributeCount++];
  entry.name = name;
  entry.localOffset = localOffset;
  entry.value = value;
  entry.tokenBuilt = false;
  entry.taken = false;
  ++m_theUnreadAttributes;
  m_theAttributesViewBuffer = true;
}

// One attribute of a start tag: a namespace declaration is applied, an xsi: attribute left to the reader
// of schemas, any other kept for reading.
inline void ZrXmlFileReader::takeAttribute(std::string_view name, std::size_t localOffset, std::string_view value,
                                           bool mayHoldReferences, bool distinct) {
  if (name[0] == 'x' && startsWith(name, "xmlns"))
    declareNamespace(name, value);
  else if (name[0] != 'x' || !startsWith(name, "xsi:"))
    addAttribute(name, localOffset, value, mayHoldReferences, distinct);
  else if (name == "xsi:nil")
    m_theNilElement = value == "true" || value == "1";
}

// Strict mode's start tag in one pass, when it is clean: names that are qualified names of ASCII name
// characters, white space before every attribute, each value quoted and closed before the first '>', no
// '<' in a value and no attribute name written twice. Such a tag ends at its first '>' and needs none of
// the checks of its characters that other tags get; it is read as parseStartTag reads it, and the checker
// is left what depends on the declarations in scope. Any other tag is left alone, nothing consumed, and
// theNotClean returned: it goes the long way, whose reports say what is wrong with it.
int ZrXmlFileReader::readCleanStartTag(std::size_t close) {
  const char* const begin = m_theReadBuffer.data() + m_theReadIndex;
  const char* end = m_theReadBuffer.data() + close;
  std::size_t nameColon;
  const char* at = scanCleanName(begin, nameColon);
  if (!at) return theNotClean;
  const std::string_view name(begin, static_cast<std::size_t>(at - begin));
  const bool empty = end[-1] == '/';
  if (empty) --end;
  const char* const readable = m_theReadBuffer.data() + m_theReadBuffer.size();
  ZrXmlWellFormednessChecker::CleanAttribute* const attributes = m_theChecker->cleanAttributes();
  std::size_t count = 0;
  bool declares = false, prefixed = false, references = false;
  // The text ends before a '>' (or "/>"), which no name, white space or '=' holds: the scans stop there.
  while (at < end) {
    if (!isWhite(*at)) return theNotClean;
    do ++at;
    while (isWhite(*at));
    if (at == end) break;
    std::size_t colon;
    const char* const nameEnd = scanCleanName(at, colon);
    if (!nameEnd || count == ZrXmlWellFormednessChecker::theCleanAttributeLimit) return theNotClean;
    const std::string_view attribute(at, static_cast<std::size_t>(nameEnd - at));
    for (at = nameEnd; isWhite(*at);) ++at;
    if (at == end || *at != '=') return theNotClean;
    do ++at;
    while (isWhite(*at));
    if (at == end || (*at != '"' && *at != '\'')) return theNotClean;
    const char* quote = findValueStop(at + 1, end, readable, *at);
    for (; quote && *quote == '&'; quote = findValueStop(quote + 1, end, readable, *at)) references = true;
    if (!quote || *quote == '<') return theNotClean;
    for (std::size_t i = 0; i < count; ++i)
      if (Zr::textEqual(attributes[i].name, attribute)) return theNotClean;
    if (attribute[0] == 'x' && startsWith(attribute, "xmlns") && (attribute.size() == 5 || attribute[5] == ':')) {
      declares = true;
      colon = ZrXmlWellFormednessChecker::theDeclarationColon;  // takeAttribute needs no local name of it
    } else if (colon != std::string_view::npos) {
      prefixed = true;
    }
    attributes[count++] = {attribute, std::string_view(at + 1, static_cast<std::size_t>(quote - at - 1)), colon};
    at = quote + 1;
  }

  consumeTo(close + 1);
  if (!mayOpenElement()) return 0;
  pushElement();
  startAttributes();
  if (references) m_theAttributeText.reserve(static_cast<std::size_t>(end - begin));  // see addAttribute
  // Names written once each: without a prefix, their local names differ too, and one that begins with
  // no 'x' is neither a declaration nor an xsi: attribute. Such an attribute, its value holding nothing
  // to expand, is held as it is.
  const bool expandable = references && expanding();
  for (std::size_t i = 0; i < count; ++i) {  // npos + 1: no prefix
    const ZrXmlWellFormednessChecker::CleanAttribute& attribute = attributes[i];
    if (!prefixed && !expandable && attribute.name[0] != 'x')
      holdAttribute(attribute.name, 0, attribute.value);
    else
      takeAttribute(attribute.name, attribute.colon + 1, attribute.value, references, !prefixed);
  }
  const std::string_view local = nameColon == std::string_view::npos ? name : name.substr(nameColon + 1);
  assignNameIfChanged(m_theElementStack.back().element, SplitName{std::string_view(begin, 0), local, false, false});
  if (m_theFreshEntry) m_theEntryBytes += nameBytes(name.size());
  m_theNumOfAttributes = m_theUnreadAttributes;
  m_theChecker->checkCleanStartTag(name, nameColon, m_theElementStack.size(), count, declares, prefixed);
  return empty ? 3 : 1;
}

// The '>' that ends the markup beginning at the read index, given the first '>' after it: in strict mode
// a '>' inside a quoted attribute value, a comment before its "--", a CDATA section before its "]]", a
// processing instruction before its '?' or a document type declaration's quoted strings or internal
// subset does not end the markup. Each character is looked at once, however many '>' it holds.
std::size_t ZrXmlFileReader::strictTagEnd(std::size_t close) {
  m_theTagSuspect = false;
  char quote = 0;
  bool inSubset = false;
  bool inComment = false;
  bool inInstruction = false;  // a processing instruction of the internal subset
  std::size_t scanned = 0;  // relative to the read index, which a block read may move
  for (;;) {
    const std::string_view markup(m_theReadBuffer.data() + m_theReadIndex, close - m_theReadIndex);
    bool ends;
    if (!markup.empty() && markup[0] == '/') {
      ends = true;  // an end tag holds no value
    } else if (markup.empty() || (markup[0] != '!' && markup[0] != '?')) {
      // A tag: only its quotes matter.
      quote = quoteAfter(markup.substr(scanned), quote, m_theTagSuspect,
                         m_theReadBuffer.size() - m_theReadIndex - scanned);
      ends = !quote;
    } else if (startsWith(markup, "!--")) {
      ends = markup.size() >= 5 && endsWith(markup, "--");
    } else if (startsWith(markup, "![CDATA[")) {
      ends = markup.size() >= 10 && endsWith(markup, "]]");
    } else if (markup[0] == '?') {
      ends = markup.size() >= 2 && markup.back() == '?';
    } else {
      // A document type declaration, or other markup read by the same rules: quoted strings, and for a
      // document type its internal subset with the comments and processing instructions in it.
      m_theTagSuspect = true;  // not scanned for the checks: they look for themselves
      for (std::size_t at = scanned; at < markup.size(); ++at) {
        const char c = markup[at];
        if (inComment) inComment = !(c == '>' && at >= 2 && markup[at - 1] == '-' && markup[at - 2] == '-');
        else if (inInstruction) inInstruction = !(c == '>' && markup[at - 1] == '?');
        else if (inSubset && c == '?' && markup[at - 1] == '<') inInstruction = true;
        else if (quote) quote = c == quote ? 0 : quote;
        else if (c == '"' || c == '\'') quote = c;
        else if (c == '[') inSubset = true;
        else if (c == ']') inSubset = false;
        else if (inSubset && c == '-' && at >= 3 && markup.compare(at - 3, 4, "<!--") == 0) inComment = true;
      }
      ends = !quote && !inSubset && !inComment && !inInstruction;
    }
    if (ends) return close;
    scanned = markup.size();  // the '>' at `close` belongs to the markup from now on
    close = findChar('>', close + 1);
    if (close == npos) return npos;
  }
}

// Comments, processing instructions, CDATA sections and document type declarations as strict mode reads
// them; false, consuming nothing, for any other markup. A CDATA section is text: it joins the content.
bool ZrXmlFileReader::checkStrictMarkup(std::string_view tag, bool atDocumentStart, bool& contentRead) {
  if (startsWith(tag, "!--")) {
    m_theChecker->checkComment(tag.substr(3, tag.size() - 5));
  } else if (!tag.empty() && tag[0] == '?') {
    m_theChecker->checkProcessingInstruction(tag.substr(1, tag.size() - 2), atDocumentStart);
  } else if (startsWith(tag, "![CDATA[")) {
    addCdataSection(tag.substr(8, tag.size() - 10), contentRead);
  } else if (startsWith(tag, "!DOCTYPE")) {
    m_theChecker->checkDoctype(tag);
  } else {
    return false;
  }
  return true;
}

// The content's references are expanded when it ends, so a section's own '&' joins it as "&amp;".
void ZrXmlFileReader::addCdataSection(std::string_view text, bool& contentRead) {
  m_theChecker->checkText(text, true);
  if (m_theElementStack.empty()) {
    warnMessage("file not well formed.\n\tContent can only follow start tag.");
    return;
  }
  if (m_theMode != 1) return;  // mixed content: passed over, as its text is
  if (m_theContent.empty()) text = skipLeadingWhite(text);
  for (std::size_t amp = text.find('&'); amp != std::string_view::npos; amp = text.find('&')) {
    m_theContent.append(text.substr(0, amp)).append("&amp;");
    text.remove_prefix(amp + 1);
  }
  m_theContent.append(text);
  contentRead = true;
}

// Reports the faulty references of text that is passed over, as expansion would.
void ZrXmlFileReader::checkReferences(std::string_view text) {
  if (text.find('&') == std::string_view::npos) return;
  m_theScratch.assign(text.data(), text.size());
  expandReferencesIn(m_theScratch);
}

// The rest of a comment whose first '>' came before a closing "--": it ends at the first "--" that
// follows (counting the tag's last character) and then at the next '>'. With `text`, the characters read
// are appended to it the way the tag text grows.
void ZrXmlFileReader::skipCommentRest(char lastChar, std::string* text) {
  char previous = lastChar;
  for (bool endsWithDashes = false; !endsWithDashes;) {
    std::size_t dash = findChar('-', m_theReadIndex);
    if (dash == npos) {
      if (text) text->append(m_theReadBuffer, m_theReadIndex, std::string::npos);
      consumeTo(m_theReadBuffer.size());
      warnMessage("file not well formed.\n\tEOF found within comment.");
      return;
    }
    endsWithDashes = dash == m_theReadIndex && previous == '-';
    if (text) text->append(m_theReadBuffer, m_theReadIndex, dash - m_theReadIndex).append(1, '-');
    consumeTo(dash + 1);
    previous = '-';
  }
  std::size_t close = findChar('>', m_theReadIndex);
  if (close == npos) {
    if (text) text->append(m_theReadBuffer, m_theReadIndex, std::string::npos);
    consumeTo(m_theReadBuffer.size());
    warnMessage("file not well formed.\n\tEOF found within comment.");
    return;
  }
  // The comment ends well when its text then ends with "-->": the two characters before this '>' are
  // dashes, counting the dash just read ("<!--x->-->" ends well; "<!-- a > b -- c > d -->" does not).
  const std::string_view last(m_theReadBuffer.data() + m_theReadIndex, close - m_theReadIndex);
  const bool clean = last.empty() || last == "-" || endsWith(last, "--");
  if (text) text->append(m_theReadBuffer, m_theReadIndex, close - m_theReadIndex).append(1, '>');
  consumeTo(close + 1);
  if (!clean) warnMessage("file not well formed.\n\tComment contains extra -- in it.");
}

// A comment ("!--") is read on to its end when its first '>' came before a closing "--"; a declaration
// ("?") is only checked for its closing '?'. False, consuming nothing, for any other tag. With `text`,
// the rest of a comment is appended to it; `tag` is not looked at after that, so it may view `text` or
// the read buffer, which reading on may move.
bool ZrXmlFileReader::skipCommentOrDeclaration(std::string_view tag, std::string* text) {
  if (startsWith(tag, "!--")) {
    if (!endsWith(tag, "--")) skipCommentRest(tag.back(), text);
    return true;
  }
  if (!tag.empty() && tag[0] == '?') {
    if (tag.back() != '?') warnMessage("file not well formed.\n\tDeclaration not properly defined.");
    return true;
  }
  return false;
}

ZrBoolean ZrXmlFileReader::isComment(std::string& tag) { return skipCommentOrDeclaration(tag, &tag); }

int ZrXmlFileReader::tagType(std::string& tag) { return classifyTag(tag); }

// Classifies the text between '<' and '>' and applies it: an end tag closes, a start tag opens.
int ZrXmlFileReader::classifyTag(std::string_view tag) {
  if (isAllWhite(tag)) return 5;
  if (tag[0] == '/') {
    if (m_theChecker) checkEndTagStrictly(tag);
    return readEndTag(tag);
  }
  if (!mayOpenElement()) return 0;
  bool empty = tag.back() == '/';
  if (tag[0] == ' ') warnMessage("file not well formed.\n\tWhite space cannot exist before start tag name.");
  if (empty) tag.remove_suffix(1);
  parseStartTag(stripView(tag));
  return empty ? 3 : 1;
}

// Out of line, so that the forgiving mode's classifyTag stays as small as it was without strict mode.
#if defined(__GNUC__)
__attribute__((noinline))
#endif
void ZrXmlFileReader::checkEndTagStrictly(std::string_view tag) {
  m_theChecker->checkEndTag(stripView(tag.substr(1)), m_theElementStack.size());
}

int ZrXmlFileReader::readEndTag(std::string_view tag) {
  if (tag.size() > 1 && tag[1] == ' ')
    warnMessage("file not well formed.\n\tWhite space cannot exist before end tag name.");
  const SplitName name = splitName(stripView(tag.substr(1)));
  m_theLastEndTagPopped = false;
  if (!m_theElementStack.empty() && holdsName(m_theElementStack.back().element, name)) {
    assignNameIfChanged(m_theElementStack.back().endTag, name);
    m_theEndTagDepth = m_theElementStack.size();
    popElement();
    m_theLastEndTagPopped = true;
    return 2;
  }
  assignNameIfChanged(m_theEndTag, name);
  m_theEndTagDepth = 0;
  if (m_theElementStack.empty()) {
    warnMessage("file not well formed.\n\tMore end tags than start tags.");
  } else {
    warnMessage("file not well formed.\n\tEnd tag closed incorrect start tag.");
    Zr::Print::instance().write(Zr::PrintError, "\tStart tag: %s\n\tEnd tag: %s\n",
                                m_theElementStack.back().element.c_str(), m_theEndTag.c_str());
  }
  return 2;
}

ZrBoolean ZrXmlFileReader::parseElementAndAttributes(std::string& text) {
  ZrBoolean parsed = parseStartTag(text);
  text.clear();
  return parsed;
}

// One forward pass over the tag text. The order of the checks keeps the reports of the rule that looks
// for '=' first ("Extra characters ..."), then for an empty name ("Missing attribute name.").
bool ZrXmlFileReader::parseStartTag(std::string_view text) {
  pushElement();
  const char* at = text.data();
  const char* end = at + text.size();
  while (at < end && isWhite(*at)) ++at;
  const char* nameBegin = at;
  const SplitName splitElementName = scanElementName(at, end);
  std::string_view name(nameBegin, static_cast<std::size_t>(at - nameBegin));
  if (splitElementName.emptyToken) {
    m_theElementStack.back().element = m_theElementStack.size() > 1
                                           ? m_theElementStack[m_theElementStack.size() - 2].element
                                           : m_theNullToken;  // the entry stays a copy of its parent
    warnMessage("file not well formed.\n\tNo element name found in start tag.");
    return false;
  }
  startAttributes();
  if (expanding()) m_theAttributeText.reserve(text.size());  // expanded values are longer only through entities

  for (;;) {
    const char* gap = at;
    while (at < end && isWhite(*at)) ++at;
    if (at == end) break;
    const char* attributeBegin = at;
    std::size_t localOffset = 0;
    at = scanAttributeName(at, end, localOffset);
    std::string_view attribute(attributeBegin, static_cast<std::size_t>(at - attributeBegin));
    while (at < end && *at != '=') ++at;
    if (at == end) {
      warnMessage("file not well formed.\n\tExtra characters found behind element or attributes.");
      break;
    }
    if (attribute.empty()) {
      warnMessage("file not well formed.\n\tMissing attribute name.");
      break;
    }
    ++at;
    while (at < end && isWhite(*at)) ++at;
    std::string_view value;
    if (at < end && (*at == '"' || *at == '\'')) {
      const char* valueBegin = at + 1;
      const char* quote = findShortFirst(valueBegin, end, *at);
      if (!quote) {
        warnMessage("file not well formed.\n\tSecond quote of attribute value is missing.");
        value = std::string_view(valueBegin, static_cast<std::size_t>(end - valueBegin));
        at = end;
      } else {
        const char* valueEnd = quote;
        value = std::string_view(valueBegin, static_cast<std::size_t>(valueEnd - valueBegin));
        at = valueEnd + 1;
      }
    } else {
      warnMessage("file not well formed.\n\tMissing quotes around attribute value.");
      const char* valueBegin = at;
      while (at < end && !isWhite(*at)) ++at;
      value = std::string_view(valueBegin, static_cast<std::size_t>(at - valueBegin));
    }
    if (m_theChecker) m_theChecker->addAttribute(attribute, value, attributeBegin != gap);
    takeAttribute(attribute, localOffset, value);
  }

  assignNameIfChanged(m_theElementStack.back().element, splitElementName);  // a spare entry may hold it
  if (m_theFreshEntry) m_theEntryBytes += nameBytes(name.size());
  m_theNumOfAttributes = m_theUnreadAttributes;
  if (m_theChecker) m_theChecker->checkStartTag(text, name, m_theElementStack.size(), m_theTagSuspect);
  return true;
}

void ZrXmlFileReader::declareNamespace(std::string_view name, std::string_view uri) {
  name.remove_prefix(5);  // "xmlns"
  if (!name.empty() && name[0] == ':') name.remove_prefix(1);
  const std::string_view prefix = name;
  const std::size_t bound = boundPosition(prefix);
  if (bound != std::string_view::npos) {
    // XML allows a prefix bound again to the URI it has: strict mode, which reports what XML does not
    // allow, says nothing about it.
    if (m_theNamespacesInForce[bound].uri == uri && !m_theChecker) {
      std::string uriText(uri);
      Zr::Print::instance().write(Zr::PrintError, "ZrXmlReader Error: Namespace already declared: %s\n",
                                  uriText.c_str());
    }
    return;  // an existing mapping is kept
  }
  if (uri == m_schemaInstanceNamespace) return;
  m_theDeclarationBytes += declarationBytes(prefix.size(), uri.size());
  std::map<std::string, std::string>& declarations = m_theElementStack.back().namespaces;
  if (m_theSpareDeclarations.empty()) {
    declarations.emplace(prefix, std::string(uri));
  } else {
    auto node = std::move(m_theSpareDeclarations.back());
    m_theSpareDeclarations.pop_back();
    assignIfChanged(node.key(), prefix);
    assignIfChanged(node.mapped(), uri);
    declarations.insert(std::move(node));
  }
  bindNamespace(prefix, uri);
}

std::size_t ZrXmlFileReader::boundPosition(std::string_view prefix) {
  if (!m_theBindingsIndexed) {
    for (std::size_t at = m_theNamespacesInForce.size(); at-- > 0;)
      if (Zr::textEqual(prefix, m_theNamespacesInForce[at].prefix)) return at;
    return std::string_view::npos;
  }
  Zr::assignText(m_thePrefixKey, prefix);
  const auto found = m_theBindingIndex.find(m_thePrefixKey);
  return found == m_theBindingIndex.end() ? std::string_view::npos : found->second;
}

void ZrXmlFileReader::bindNamespace(std::string_view prefix, std::string_view uri) {
  NamespaceBinding& binding = m_theNamespacesInForce.push();
  assignIfChanged(binding.prefix, prefix);
  assignIfChanged(binding.uri, uri);
  binding.depth = m_theElementStack.size();
  if (!m_theBindingsIndexed && m_theNamespacesInForce.size() > theFewBindings) {
    m_theBindingsIndexed = true;
    m_theBindingIndex.clear();
    for (std::size_t i = 0; i + 1 < m_theNamespacesInForce.size(); ++i)
      m_theBindingIndex.emplace(m_theNamespacesInForce[i].prefix, i);
  }
  if (m_theBindingsIndexed) m_theBindingIndex.emplace(binding.prefix, m_theNamespacesInForce.size() - 1);
}

std::map<std::string, std::string> ZrXmlFileReader::namespacesInForce(std::size_t index) const {
  std::map<std::string, std::string> inForce;
  for (const NamespaceBinding& binding : m_theNamespacesInForce)
    if (binding.depth <= index + 1) inForce.emplace(binding.prefix, binding.uri);
  return inForce;
}

// The first value of a name is kept. A tag's duplicates are looked for among its earlier attributes one by
// one, and through a set once it has many, so a tag with a million attributes is still read in linear time.
void ZrXmlFileReader::addAttribute(std::string_view name, std::size_t localOffset, std::string_view value,
                                   bool mayHoldReferences, bool distinct) {
  const std::string_view local(name.data() + localOffset, name.size() - localOffset);
  const std::size_t theFewAttributes = 16;
  if (!distinct && m_theAttributeCount < theFewAttributes) {
    for (std::size_t i = 0; i < m_theAttributeCount; ++i)
      if (Zr::textEqual(m_theAttributeEntries[i].local(), local)) return;
  } else if (!distinct) {
    if (m_theAttributeLocals.empty())
      for (std::size_t i = 0; i < m_theAttributeCount; ++i) m_theAttributeLocals.insert(m_theAttributeEntries[i].local());
    if (!m_theAttributeLocals.insert(local).second) return;
  }
  if (mayHoldReferences && expanding() && findShortFirst(value.data(), value.data() + value.size(), '&'))
    value = expandedAttributeValue(value);
  holdAttribute(name, localOffset, value);
}

// A value holding references, expanded into the tag's attribute text. That text was reserved for the
// whole tag when it began, so the text held so far never moves, unless entities of the document type
// made a value longer than it was written: then the values held move with it.
std::string_view ZrXmlFileReader::expandedAttributeValue(std::string_view value) {
  m_theScratch.assign(value.data(), value.size());
  expandReferencesIn(m_theScratch, true);
  const std::size_t offset = m_theAttributeText.size();
  if (offset + m_theScratch.size() > m_theAttributeText.capacity()) {
    const char* const before = m_theAttributeText.data();
    m_theAttributeText.reserve(2 * (offset + m_theScratch.size()));
    for (std::size_t i = 0; i < m_theAttributeCount; ++i) {
      std::string_view& held = m_theAttributeEntries[i].value;
      if (held.data() >= before && held.data() <= before + offset)
        held = std::string_view(m_theAttributeText.data() + (held.data() - before), held.size());
    }
  }
  m_theAttributeText.append(m_theScratch);
  return std::string_view(m_theAttributeText).substr(offset);
}

void ZrXmlFileReader::clearAttributes() {
  m_theAttributeCount = 0;
  m_theUnreadAttributes = 0;
  m_theNilElement = false;
  m_theAttributeOrderBuilt = false;
  m_theAttributesViewBuffer = false;
  m_theAttributeText.clear();
  if (!m_theAttributeLocals.empty()) m_theAttributeLocals.clear();
}

// Copies the unread names and values out of the read buffer, which is about to move or drop them. The
// copy is made in one string sized for all of them, so the views into it stay valid.
void ZrXmlFileReader::keepAttributesOutOfBuffer() {
  if (!m_theAttributesViewBuffer) return;
  m_theAttributesViewBuffer = false;
  if (m_theUnreadAttributes == 0) return;
  std::size_t total = 0;
  for (std::size_t i = 0; i < m_theAttributeCount; ++i)
    if (!m_theAttributeEntries[i].taken) total += m_theAttributeEntries[i].name.size() + m_theAttributeEntries[i].value.size();
  std::string held;
  held.reserve(std::max<std::size_t>(total, 64));  // never the string's in-object storage, which a move copies
  const auto keep = [&held](std::string_view text) {
    const std::size_t offset = held.size();
    held.append(text.data(), text.size());
    return std::string_view(held.data() + offset, text.size());
  };
  for (std::size_t i = 0; i < m_theAttributeCount; ++i) {
    AttributeEntry& entry = m_theAttributeEntries[i];
    if (entry.taken) {
      entry.name = entry.value = std::string_view();
      continue;
    }
    entry.name = keep(entry.name);
    entry.value = keep(entry.value);
  }
  m_theAttributeText = std::move(held);
  if (!m_theAttributeLocals.empty()) m_theAttributeLocals.clear();  // its views were into the buffer
}

// An entry holds only the declarations its own tag added: the declarations in force live in one table
// beside the stack, so opening and closing an element that declares nothing costs the same however many
// declarations are in scope.
// The entry pushed is a spare: its name is set by the caller, and its declarations were cleared when it
// was popped.
void ZrXmlFileReader::pushElement() {
  m_theFreshEntry = m_theElementStack.size() == m_theElementStack.kept();
  if (m_theFreshEntry) m_theEntryBytes += theEntryBytes;
  m_theElementStack.push();
}

// Every declaration an open element holds is also in force, so with none in force the entry's own
// declarations need not be looked at: most documents declare no namespace the reader keeps.
void ZrXmlFileReader::popElement() {
  if (m_theElementStack.empty()) return;
  if (m_theChecker) m_theChecker->closeElement(m_theElementStack.size());
  if (!m_theNamespacesInForce.empty()) withdrawDeclarations(m_theElementStack.back().namespaces);
  m_theElementStack.pop();
}

void ZrXmlFileReader::withdrawDeclarations(std::map<std::string, std::string>& declarations) {
  if (declarations.empty()) return;
  const std::size_t depth = m_theElementStack.size();
  while (!m_theNamespacesInForce.empty() && m_theNamespacesInForce.back().depth >= depth) {
    if (m_theBindingsIndexed) m_theBindingIndex.erase(m_theNamespacesInForce.back().prefix);
    m_theNamespacesInForce.pop();
  }
  if (m_theNamespacesInForce.empty() && m_theBindingsIndexed) {
    m_theBindingsIndexed = false;
    m_theBindingIndex.clear();
  }
  for (const auto& declaration : declarations) {
    const std::uint64_t bytes = declarationBytes(declaration.first.size(), declaration.second.size());
    m_theDeclarationBytes -= std::min(bytes, m_theDeclarationBytes);
  }
  while (!declarations.empty()) m_theSpareDeclarations.push_back(declarations.extract(declarations.begin()));
}

// ---------------------------------------------------------------------------------------------------------
// Skipping and collecting elements

// Whether the end tag just read closes the element `target` that stood at stack depth `depth`: it popped
// that element, or it carries the element's name but closed nothing (a fault already reported).
bool ZrXmlFileReader::closesElement(const ZrToken& target, std::size_t depth) const {
  if (m_theElementStack.size() < depth) return true;
  return endTag() == target && !m_theLastEndTagPopped;
}

ZrBoolean ZrXmlFileReader::nextMatchingEndTag() {
  if (m_theMode == 3) return true;
  ZrToken target = element();
  std::size_t depth = m_theElementStack.size();
  for (;;) {
    clearAttributes();
    int event = readXml();
    if (event == 2 || event == 4) {
      if (closesElement(target, depth)) return true;
    } else if (event == 0) {
      if (atEndOfInput()) {
        warnMessage("Requested next end tag but found EOF.");
        return false;
      }
    } else if (event == 5) {
      return false;
    }
  }
}

std::string ZrXmlFileReader::getChildrenAsString() {
  std::string children;
  if (m_theMode == 3) {
    setEndTag(element());
    popElement();
    m_theMode = 2;
    return children;
  }
  ZrToken target = element();
  std::size_t depth = m_theElementStack.size();
  for (;;) {
    int event = readXml();
    switch (event) {
      case 1:
      case 3:
        children.append(1, '<').append(element().tokenText());
        while (m_theUnreadAttributes != 0) {
          children.append(1, ' ').append(attributeName().tokenText());
          const std::string& value = attributeValue();
          char quote = value.find('"') == std::string::npos ? '"' : '\'';
          children.append("=").append(1, quote).append(value).append(1, quote);
        }
        children.append(event == 3 ? "/>" : ">");
        break;
      case 4:
        children.append(content());
        [[fallthrough]];
      case 2:
        if (closesElement(target, depth)) return children;
        children.append("</").append(endTag().tokenText()).append(">");
        break;
      case 0:
        if (!atEndOfInput()) break;
        Zr::Print::instance().write(Zr::PrintError,
                                    "getChildrenAsString Error: end of file too early -- expecting start tag.\n"
                                    "\tFile: %s\n\tLine: %lld\n",
                                    m_theFilename.c_str(), static_cast<long long>(lineCount()));
        return children;
      default:
        return children;
    }
  }
}

// ---------------------------------------------------------------------------------------------------------
// Text helpers

void ZrXmlFileReader::swapNamespacePrefixWithUri(ZrToken& token, DEFAULT_NAMESPACE_OPTION) const {
  std::size_t colon = token.find(':');
  if (colon != std::string::npos) token.erase(0, static_cast<ZrU32>(colon + 1));
}

std::string ZrXmlFileReader::nextWord(std::string& text) const {
  std::size_t begin = 0;
  while (begin < text.size() && isWhite(text[begin])) ++begin;
  std::size_t end = begin;
  while (end < text.size() && !isWhite(text[end])) ++end;
  std::string word = text.substr(begin, end - begin);
  while (end < text.size() && isWhite(text[end])) ++end;
  text.erase(0, end);
  return word;
}

ZrU32 ZrXmlFileReader::wordCount(const std::string& text) const { return countWords(text); }

std::string ZrXmlFileReader::nextQuotedToken(std::string& text) const {
  if (text.empty() || (text[0] != '"' && text[0] != '\'')) return nextWord(text);
  std::size_t quote = text.find(text[0], 1);
  if (quote == std::string::npos) {
    std::string value = text.substr(1);
    text.clear();
    return value;
  }
  std::string value = text.substr(1, quote - 1);
  text.erase(0, quote + 1);
  stripLeadingWhiteSpace(text);
  return value;
}

void ZrXmlFileReader::stripWhiteSpaceFromBounds(std::string& text) const {
  std::string_view stripped = stripView(text);
  if (stripped.size() != text.size()) text = std::string(stripped);
}

void ZrXmlFileReader::stripLeadingWhiteSpace(std::string& text) const {
  std::size_t first = text.find_first_not_of(" \t\n\r");
  if (first != std::string::npos) text.erase(0, first);
}

void ZrXmlFileReader::stripTrailingWhiteSpace(std::string& text) const {
  std::size_t last = text.find_last_not_of(" \t\n\r");
  if (last != std::string::npos) text.erase(last + 1);
}

void ZrXmlFileReader::stripLeadingSlash(std::string& text) const {
  if (!text.empty() && text[0] == '/') text.erase(0, 1);
}

void ZrXmlFileReader::stripTrailingSlash(std::string& text) const {
  if (!text.empty() && text.back() == '/') text.pop_back();
}

void ZrXmlFileReader::stripQuotes(std::string& text) const {
  if (text.size() >= 2 && (text[0] == '"' || text[0] == '\'') && text.back() == text[0]) {
    text = text.substr(1, text.size() - 2);
    return;
  }
  warnMessage("file not well formed.\n\tImproper quotes around attribute value.");
}

ZrBoolean ZrXmlFileReader::isWhiteSpace(std::string& text) const { return isAllWhite(text); }

// ---------------------------------------------------------------------------------------------------------
// The fast path

void ZrXmlFileReader::beginFast() {
  if (m_theFastActive) return;
  m_theFastActive = true;
  m_theFastBaseDepth = m_theElementStack.size();
}

// At '<' followed by '!' or '?': skips the comment or declaration. False when not at such markup.
bool ZrXmlFileReader::fastSkipMarkup() {
  if (!ensureAvailable(2)) return false;
  const char* here = m_theReadBuffer.data() + m_theReadIndex;
  if (here[0] != '<' || (here[1] != '!' && here[1] != '?')) return false;
  std::size_t close = findChar('>', m_theReadIndex + 1);
  if (close == npos) {
    consumeTo(m_theReadBuffer.size());
    warnMessage("file not well formed.\n\tEOF found before end of tag.");
    return true;
  }
  std::string_view tag(m_theReadBuffer.data() + m_theReadIndex + 1, close - m_theReadIndex - 1);
  consumeTo(close + 1);
  skipCommentOrDeclaration(tag, nullptr);  // any other '<!...>' is passed over as it stands
  return true;
}

// At "</": reads the end tag as readXml() would. With `onlyIfNamed`, only an end tag of the element the
// fast path entered last is read. False when nothing was consumed.
bool ZrXmlFileReader::fastCloseEndTag(bool onlyIfNamed) {
  std::size_t close = findChar('>', m_theReadIndex);
  if (close == npos) return false;
  std::string_view tag(m_theReadBuffer.data() + m_theReadIndex + 1, close - m_theReadIndex - 1);
  if (onlyIfNamed) {
    assignName(m_theWorkToken, stripView(tag.substr(1)));
    if (!(m_theWorkToken == m_theFastElement)) return false;
    setEndTag(m_theWorkToken);
    consumeTo(close + 1);
    return true;
  }
  consumeTo(close + 1);
  readEndTag(tag);
  return true;
}

// Between tags: passes white space, comments and declarations, and end tags of elements the fast path
// opened; enters the next start tag. False at text, at any other end tag or at the end of input.
bool ZrXmlFileReader::fastEnterStartTag() {
  m_theFastSelfClosed = false;
  for (;;) {
    if (!skipWhile(White) || !ensureAvailable(2)) return false;
    const char* here = m_theReadBuffer.data() + m_theReadIndex;
    if (here[0] != '<') return false;
    if (here[1] == '!' || here[1] == '?') {
      fastSkipMarkup();
      continue;
    }
    if (here[1] == '/') {
      if (m_theElementStack.size() <= m_theFastBaseDepth || !fastCloseEndTag(false)) return false;
      continue;
    }
    consumeTo(m_theReadIndex + 1);
    readUntil(NameStop, m_theFastName);
    assignName(m_theFastElement, m_theFastName);
    m_theFastInTag = true;
    return true;
  }
}

// Inside a start tag: reads the next attribute into the value buffer. False when the tag ended instead.
// `passedOver` tells that the attribute was a namespace declaration or an "xsi:" attribute.
bool ZrXmlFileReader::fastReadAttribute(bool& passedOver) {
  passedOver = false;
  if (!skipWhile(White)) {
    m_theFastInTag = false;
    warnMessage("file not well formed.\n\tEOF found before end of tag.");
    return false;
  }
  char next = m_theReadBuffer[m_theReadIndex];
  if (next == '/' || next == '>') {
    fastFinishTag(true);
    return false;
  }
  readUntil(NameStop, m_theFastName);
  if (!skipWhile(White) || m_theReadBuffer[m_theReadIndex] != '=') {
    warnMessage("file not well formed.\n\tExtra characters found behind element or attributes.");
    passedOver = true;
    return true;
  }
  consumeTo(m_theReadIndex + 1);
  skipWhile(White);
  char quote = m_theReadIndex < m_theReadBuffer.size() ? m_theReadBuffer[m_theReadIndex] : '\0';
  if (quote == '"' || quote == '\'') {
    consumeTo(m_theReadIndex + 1);
    std::size_t end = findChar(quote, m_theReadIndex);
    if (end == npos) {
      warnMessage("file not well formed.\n\tSecond quote of attribute value is missing.");
      m_theValueBuffer.assign(m_theReadBuffer, m_theReadIndex, std::string::npos);
      consumeTo(m_theReadBuffer.size());
      m_theFastInTag = false;
      return true;
    }
    m_theValueBuffer.assign(m_theReadBuffer, m_theReadIndex, end - m_theReadIndex);
    consumeTo(end + 1);
  } else {
    warnMessage("file not well formed.\n\tMissing quotes around attribute value.");
    readUntil(WordStop, m_theValueBuffer);
  }
  passedOver = startsWith(m_theFastName, "xmlns") || startsWith(m_theFastName, "xsi:");
  // When no further attribute follows, the tag is finished now, so that readXml() can go on after it.
  if (skipWhile(White)) {
    next = m_theReadBuffer[m_theReadIndex];
    if (next == '/' || next == '>') fastFinishTag(true);
  }
  return true;
}

// Consumes the rest of the start tag the fast path stands in. After ">", the element is pushed as open,
// unless `closeEmptyPair` is set and its own end tag follows, which is then consumed too.
void ZrXmlFileReader::fastFinishTag(bool closeEmptyPair) {
  m_theFastInTag = false;
  std::size_t close = findChar('>', m_theReadIndex);
  if (close == npos) {
    consumeTo(m_theReadBuffer.size());
    warnMessage("file not well formed.\n\tEOF found before end of tag.");
    return;
  }
  bool selfClosed = close > m_theReadIndex && m_theReadBuffer[close - 1] == '/';
  consumeTo(close + 1);
  if (selfClosed) {
    m_theFastSelfClosed = true;
    return;
  }
  if (closeEmptyPair) {
    while (skipWhile(White) && fastSkipMarkup()) {
    }
    if (ensureAvailable(2) && m_theReadBuffer.compare(m_theReadIndex, 2, "</") == 0 && fastCloseEndTag(true)) return;
  }
  if (!mayOpenElement()) return;
  pushElement();
  m_theElementStack.back().element = m_theFastElement;
  if (m_theFreshEntry) m_theEntryBytes += nameBytes(m_theFastElement.tokenText().size());
}

const std::string& ZrXmlFileReader::getAttributeValueFast() {
  beginFast();
  for (;;) {
    if (!m_theFastInTag && !fastEnterStartTag()) {
      m_theValueBuffer.clear();
      return m_theNullString;
    }
    bool passedOver = false;
    if (fastReadAttribute(passedOver) && !passedOver) {
      if (expanding()) expandReferencesIn(m_theValueBuffer);
      return m_theValueBuffer;
    }
  }
}

const std::string& ZrXmlFileReader::getLastAttributeValueFast() {
  getAttributeValueFast();
  if (m_theFastInTag) fastFinishTag(true);
  return m_theValueBuffer;
}

const ZrToken& ZrXmlFileReader::getComplexStartTagFast() {
  beginFast();
  if (m_theFastInTag) fastFinishTag(true);
  return fastEnterStartTag() ? m_theFastElement : m_theNullToken;
}

const ZrToken& ZrXmlFileReader::getSimpleStartTagFast() {
  beginFast();
  if (m_theFastInTag) fastFinishTag(true);
  if (!fastEnterStartTag()) return m_theNullToken;
  fastFinishTag(false);
  return m_theFastElement;
}

const std::string& ZrXmlFileReader::getContentByWordFast() {
  beginFast();
  if (m_theFastInTag) fastFinishTag(false);
  m_theValueBuffer.clear();
  while (skipWhile(White)) {
    if (m_theReadBuffer[m_theReadIndex] != '<') {
      readUntil(TextStop, m_theValueBuffer);
      if (expanding()) expandReferencesIn(m_theValueBuffer);
      return m_theValueBuffer;
    }
    if (!fastSkipMarkup()) break;
  }
  return m_theNullString;
}

const ZrToken& ZrXmlFileReader::getEndTagFast() {
  beginFast();
  if (m_theFastInTag) fastFinishTag(false);
  if (m_theFastSelfClosed) {
    m_theFastSelfClosed = false;
    setEndTag(m_theFastElement);
    return m_theEndTag;
  }
  while (skipWhile(White)) {
    if (m_theReadBuffer[m_theReadIndex] != '<') {
      std::size_t open = findChar('<', m_theReadIndex);  // text left unread is passed over
      consumeTo(open == npos ? m_theReadBuffer.size() : open);
      continue;
    }
    if (fastSkipMarkup()) continue;
    if (!ensureAvailable(2) || m_theReadBuffer[m_theReadIndex + 1] != '/' || !fastCloseEndTag(false)) break;
    return endTag();
  }
  return m_theNullToken;
}
