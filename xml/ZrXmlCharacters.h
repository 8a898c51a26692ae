#ifndef ZR_XML_CHARACTERS_H
#define ZR_XML_CHARACTERS_H

#include <string>
#include <string_view>

// Character helpers shared by the tokenizer, the document type of strict mode and the encoding
// transcoder: what XML 1.0 allows, the number of a character reference, and UTF-8 forms.
namespace ZrXmlCharacters {

// The characters that XML 1.0 allows in a document.
inline bool isXmlChar(unsigned long code) {
  return code == 0x9 || code == 0xA || code == 0xD || (code >= 0x20 && code <= 0xD7FF) ||
         (code >= 0xE000 && code <= 0xFFFD) || (code >= 0x10000 && code <= 0x10FFFF);
}

// The number of a character reference, "#65" or "#x41" (without '&' and ';'); 0 when it is none or
// above U+10FFFF. Leading zeros are allowed in any number ("#x000041" is 'A'); past them, eight digits
// are more than any character needs, so a longer number is refused before it could overflow.
inline unsigned long characterReferenceCode(std::string_view name) {
  const bool hex = name.size() > 1 && name[1] == 'x';
  std::string_view digits = name.substr(hex ? 2 : 1);
  if (digits.empty()) return 0;
  std::size_t zeros = 0;
  while (zeros < digits.size() && digits[zeros] == '0') ++zeros;
  digits.remove_prefix(zeros);
  if (digits.size() > 8) return 0;
  unsigned long code = 0;
  for (char c : digits) {
    unsigned digit;
    if (c >= '0' && c <= '9') digit = static_cast<unsigned>(c - '0');
    else if (hex && c >= 'a' && c <= 'f') digit = static_cast<unsigned>(c - 'a' + 10);
    else if (hex && c >= 'A' && c <= 'F') digit = static_cast<unsigned>(c - 'A' + 10);
    else return 0;
    code = code * (hex ? 16 : 10) + digit;
  }
  return code <= 0x10FFFF ? code : 0;
}

// The UTF-8 form of a code point into out[0, 4); returns its length.
inline std::size_t utf8(unsigned long code, char* out) {
  if (code < 0x80) {
    out[0] = static_cast<char>(code);
    return 1;
  }
  if (code < 0x800) {
    out[0] = static_cast<char>(0xC0 | (code >> 6));
    out[1] = static_cast<char>(0x80 | (code & 0x3F));
    return 2;
  }
  if (code < 0x10000) {
    out[0] = static_cast<char>(0xE0 | (code >> 12));
    out[1] = static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    out[2] = static_cast<char>(0x80 | (code & 0x3F));
    return 3;
  }
  out[0] = static_cast<char>(0xF0 | (code >> 18));
  out[1] = static_cast<char>(0x80 | ((code >> 12) & 0x3F));
  out[2] = static_cast<char>(0x80 | ((code >> 6) & 0x3F));
  out[3] = static_cast<char>(0x80 | (code & 0x3F));
  return 4;
}

inline void appendUtf8(std::string& out, unsigned long code) {
  char bytes[4];
  out.append(bytes, utf8(code, bytes));
}

}  // namespace ZrXmlCharacters

#endif
