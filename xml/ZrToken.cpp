#include "ZrToken.h"

#include <cstring>

ZrToken::ZrToken(const std::string& xmlNamespace, const std::string& token)
    : m_theToken(token), m_theNamespace(xmlNamespace) {}

ZrToken::ZrToken(const char* text) { parse(text, std::strlen(text)); }

ZrToken::ZrToken(const std::string& text) { parse(text.data(), text.size()); }

ZrToken::~ZrToken() = default;

ZrToken& ZrToken::operator=(const std::string& text) {
  parse(text.data(), text.size());
  return *this;
}

// Everything before the first '#' is the namespace; without a '#' the whole text is the token.
void ZrToken::parse(const char* text, size_t length) {
  const void* hash = std::memchr(text, '#', length);
  if (!hash) {
    m_theNamespace.clear();
    m_theToken.assign(text, length);
    return;
  }
  size_t split = static_cast<size_t>(static_cast<const char*>(hash) - text);
  m_theNamespace.assign(text, split);
  m_theToken.assign(text + split + 1, length - split - 1);
}

std::string ZrToken::xmlNamespace() const { return m_theNamespace; }

std::string ZrToken::token() const { return m_theToken; }

std::string ZrToken::namespaceAndToken() const {
  std::string text;
  text.reserve(m_theNamespace.size() + 1 + m_theToken.size());
  text.append(m_theNamespace).append(1, '#').append(m_theToken);
  return text;
}

void ZrToken::strip() {
  static const char* const whiteSpace = " \t\n\r";
  size_t first = m_theToken.find_first_not_of(whiteSpace);
  if (first == std::string::npos) return;  // an all-white text is deliberately left as it is
  m_theToken.erase(0, first);
  size_t last = m_theToken.find_last_not_of(whiteSpace);
  if (last + 1 < m_theToken.size()) m_theToken.erase(last + 1);
}

ZrToken operator+(const ZrToken& t, const char* s) {
  ZrToken result(t);
  result += s;
  return result;
}

// Constructed in this order within this file; the qualified group derives from ns.
namespace ZrXml {
const char* const libraryUri = "http://www.zrtoolkit.org/namespace/cr";
const char* const codeBaseVersion = "3.0.0";

const ZrToken ns(std::string(libraryUri) + "#");
const ZrToken ZrBasicTypeToken = ns + "basicType";
const ZrToken ZrDefaultToken = ns + "default";
const ZrToken ZrEnumTypeToken = ns + "enumType";
const ZrToken ZrLinearToken = ns + "linear";
const ZrToken ZrMapTypeToken = ns + "mapType";
const ZrToken ZrNullToken = ns + "null";
const ZrToken ZrOrientationToken = ns + "orientation";
const ZrToken ZrSetTypeToken = ns + "setType";
const ZrToken ZrPairTypeToken = ns + "pairType";
const ZrToken ZrVectorTypeToken = ns + "vectorType";
const ZrToken ZrAddLibrariesToken("addLibraries");
const ZrToken ZrElementToken("element");
const ZrToken ZrGroupToken("group");
const ZrToken ZrKeyToken("key");
const ZrToken ZrValueToken("value");
const ZrToken ZrFirstToken("first");
const ZrToken ZrSecondToken("second");
const ZrToken ZrCountToken("size");
const ZrToken ZrQuaternion0Token("q0");
const ZrToken ZrQuaternion1Token("q1");
const ZrToken ZrQuaternion2Token("q2");
const ZrToken ZrQuaternion3Token("q3");
const ZrToken ZrVectorXToken("x");
const ZrToken ZrVectorYToken("y");
const ZrToken ZrVectorZToken("z");
const ZrToken ZrVersionToken("version");
}  // namespace ZrXml
