#ifndef ZR_TOKEN_H
#define ZR_TOKEN_H

#include <ZrTextEqual.h>
#include <ZrTypes.h>

#include <string>

// A name in a document: a local name (the token text) qualified by a namespace URI (the namespace
// text). Its one text form is "namespace#token".
//
// Equality compares both texts, but ordering compares the token text alone. Maps keyed by ZrToken
// therefore hold one entry for names that differ only in namespace: components, attributes and
// schema entries are ordered and looked up by local name.
class ZrToken {
 public:
  ZrToken() = default;
  ZrToken(const std::string& xmlNamespace, const std::string& token);
  ZrToken(const char* text);         // NOLINT: implicit by design, parses "namespace#token"
  ZrToken(const std::string& text);  // NOLINT: implicit by design, parses "namespace#token"
  ZrToken(const ZrToken&) = default;
  ZrToken(ZrToken&&) noexcept = default;
  virtual ~ZrToken();

  // Readers copy names into tokens they keep, mostly names they already hold or without a namespace: a
  // text already equal is left as it is.
  ZrToken& operator=(const ZrToken& other) {
    if (!Zr::textEqual(m_theToken, other.m_theToken)) m_theToken = other.m_theToken;
    if (!Zr::textEqual(m_theNamespace, other.m_theNamespace)) m_theNamespace = other.m_theNamespace;
    return *this;
  }
  ZrToken& operator=(ZrToken&&) noexcept = default;
  ZrToken& operator=(const std::string& text);  // parses "namespace#token", replacing both texts

  virtual std::string xmlNamespace() const;
  virtual std::string token() const;
  virtual std::string namespaceAndToken() const;  // always "namespace#token", also for an empty namespace
  virtual void strip();  // trims blank, tab, line feed and carriage return; leaves an all-white text alone

  // Direct access for hot paths, without the copies that the virtual getters make.
  const std::string& tokenText() const { return m_theToken; }
  const std::string& namespaceText() const { return m_theNamespace; }
  void setNamespace(const std::string& xmlNamespace) { m_theNamespace = xmlNamespace; }

  void assign(const std::string& s) { m_theToken = s; }  // the token text only; no parsing
  ZrToken& operator+=(const std::string& s) {
    m_theToken += s;
    return *this;
  }

#if defined(__GNUC__)
  __attribute__((always_inline))
#endif
  bool operator==(const ZrToken& other) const {
    return Zr::textEqual(m_theToken, other.m_theToken) && Zr::textEqual(m_theNamespace, other.m_theNamespace);
  }
  bool operator!=(const ZrToken& other) const { return !(*this == other); }
  bool operator<(const ZrToken& other) const { return m_theToken < other.m_theToken; }
  bool operator==(const std::string& text) const { return m_theToken == text; }
  bool operator==(const char* text) const { return m_theToken == text; }

  // String operations on the token text.
  ZrU32 size() const { return static_cast<ZrU32>(m_theToken.size()); }
  ZrU32 length() const { return static_cast<ZrU32>(m_theToken.length()); }
  bool empty() const { return m_theToken.empty(); }
  void clear() { m_theToken.clear(); }
  void resize(ZrU32 n) { m_theToken.resize(n); }
  ZrToken& append(const std::string& s) {
    m_theToken.append(s);
    return *this;
  }
  ZrToken& append(const std::string& s, ZrU32 pos, ZrU32 n) {
    m_theToken.append(s, pos, n);
    return *this;
  }
  ZrToken& append(const char* s, ZrU32 n) {
    m_theToken.append(s, n);
    return *this;
  }
  std::string& erase(ZrU32 pos, ZrU32 n) { return m_theToken.erase(pos, n); }
  ZrU32 copy(char* dest, ZrU32 n, ZrU32 pos) const { return static_cast<ZrU32>(m_theToken.copy(dest, n, pos)); }
  const char* c_str() const { return m_theToken.c_str(); }
  size_t find(const std::string& s, ZrU32 pos = 0) const { return m_theToken.find(s, pos); }
  size_t find(const char* s, ZrU32 pos, ZrU32 n) const { return m_theToken.find(s, pos, n); }
  size_t find(const char* s, ZrU32 pos = 0) const { return m_theToken.find(s, pos); }
  size_t find(char c, ZrU32 pos = 0) const { return m_theToken.find(c, pos); }
  std::string substr(ZrU32 pos = 0, ZrU32 n = static_cast<ZrU32>(-1)) const {
    return m_theToken.substr(pos, n == static_cast<ZrU32>(-1) ? std::string::npos : n);
  }
  operator const std::string&() const { return m_theToken; }

 private:
  void parse(const char* text, size_t length);

  std::string m_theToken;
  std::string m_theNamespace;
};

ZrToken operator+(const ZrToken& t, const char* s);

// The library's fixed names and its code-base version.
namespace ZrXml {
extern const char* const libraryUri;       // the URI of the library's own namespace
extern const char* const codeBaseVersion;  // "major.minor.patch" of the document format this code writes

extern const ZrToken ns;  // namespace text: the library URI; token text: empty
extern const ZrToken ZrBasicTypeToken;
extern const ZrToken ZrDefaultToken;
extern const ZrToken ZrEnumTypeToken;
extern const ZrToken ZrLinearToken;
extern const ZrToken ZrMapTypeToken;
extern const ZrToken ZrNullToken;
extern const ZrToken ZrOrientationToken;
extern const ZrToken ZrSetTypeToken;
extern const ZrToken ZrPairTypeToken;
extern const ZrToken ZrVectorTypeToken;
extern const ZrToken ZrAddLibrariesToken;
extern const ZrToken ZrElementToken;
extern const ZrToken ZrGroupToken;
extern const ZrToken ZrKeyToken;
extern const ZrToken ZrValueToken;
extern const ZrToken ZrFirstToken;
extern const ZrToken ZrSecondToken;
extern const ZrToken ZrCountToken;  // "size": the element count of a container
extern const ZrToken ZrQuaternion0Token;
extern const ZrToken ZrQuaternion1Token;
extern const ZrToken ZrQuaternion2Token;
extern const ZrToken ZrQuaternion3Token;
extern const ZrToken ZrVectorXToken;
extern const ZrToken ZrVectorYToken;
extern const ZrToken ZrVectorZToken;
extern const ZrToken ZrVersionToken;
}  // namespace ZrXml

#endif
