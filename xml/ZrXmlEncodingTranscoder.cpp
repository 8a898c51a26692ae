#include "ZrXmlEncodingTranscoder.h"

#include "ZrXmlCharacters.h"

#include <cerrno>
#include <initializer_list>
#include <utility>
#include <cstdio>
#include <iconv.h>

namespace {

const iconv_t theNoConverter = reinterpret_cast<iconv_t>(-1);

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool sameName(std::string_view one, std::string_view other) {
  if (one.size() != other.size()) return false;
  for (std::size_t i = 0; i < one.size(); ++i)
    if (lower(one[i]) != lower(other[i])) return false;
  return true;
}

bool isOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
  for (std::string_view known : names)
    if (sameName(name, known)) return true;
  return false;
}


const unsigned long theReplacement = 0xFFFD;

}  // namespace

bool ZrXmlEncodingTranscoder::isUtf8Name(std::string_view name) { return isOneOf(name, {"UTF-8", "UTF8"}); }

bool ZrXmlEncodingTranscoder::isUtf16Name(std::string_view name) {
  return isOneOf(name, {"UTF-16", "UTF-16LE", "UTF-16BE", "UTF16", "ISO-10646-UCS-2", "UCS-2"});
}

std::unique_ptr<ZrXmlEncodingTranscoder> ZrXmlEncodingTranscoder::forUtf16(bool bigEndian) {
  return std::unique_ptr<ZrXmlEncodingTranscoder>(new ZrXmlEncodingTranscoder(
      bigEndian ? Utf16BigEndian : Utf16LittleEndian, bigEndian ? "UTF-16BE" : "UTF-16LE", nullptr));
}

std::unique_ptr<ZrXmlEncodingTranscoder> ZrXmlEncodingTranscoder::forName(std::string_view name) {
  std::unique_ptr<ZrXmlEncodingTranscoder> transcoder;
  if (name.empty() || isUtf8Name(name)) return transcoder;
  if (isOneOf(name, {"ISO-8859-1", "ISO_8859-1", "ISO8859-1", "LATIN1", "L1", "IBM819", "CP819", "ISO-IR-100",
                     "CSISOLATIN1"}))
    transcoder.reset(new ZrXmlEncodingTranscoder(Latin1, "ISO-8859-1", nullptr));
  else if (isOneOf(name, {"US-ASCII", "ASCII", "ANSI_X3.4-1968", "ISO646-US", "US", "IBM367", "CP367", "CSASCII"}))
    transcoder.reset(new ZrXmlEncodingTranscoder(Ascii, "US-ASCII", nullptr));
  else if (isOneOf(name, {"UTF-16LE"}))
    transcoder = forUtf16(false);
  else if (isOneOf(name, {"UTF-16BE"}))
    transcoder = forUtf16(true);
  if (transcoder) return transcoder;
  const std::string text(name);
  iconv_t converter = iconv_open("UTF-8", text.c_str());
  if (converter == theNoConverter) return transcoder;
  transcoder.reset(new ZrXmlEncodingTranscoder(Iconv, text, converter));
  return transcoder;
}

ZrXmlEncodingTranscoder::ZrXmlEncodingTranscoder(Kind kind, std::string name, void* converter)
    : m_theKind(kind), m_theName(std::move(name)), m_theConverter(converter) {}

// A copy goes on where the other stands: an iconv descriptor of its own, the held bytes copied (the
// shift state of a stateful encoding starts afresh).
ZrXmlEncodingTranscoder::ZrXmlEncodingTranscoder(const ZrXmlEncodingTranscoder& other)
    : m_theKind(other.m_theKind), m_theName(other.m_theName), m_theConverter(nullptr), m_thePending(other.m_thePending) {
  if (m_theKind == Iconv) {
    iconv_t converter = iconv_open("UTF-8", m_theName.c_str());
    m_theConverter = converter == theNoConverter ? nullptr : converter;
  }
}

ZrXmlEncodingTranscoder::~ZrXmlEncodingTranscoder() {
  if (m_theConverter) iconv_close(static_cast<iconv_t>(m_theConverter));
}

void ZrXmlEncodingTranscoder::noteFault(Fault& fault, std::size_t offset, const std::string& what) const {
  if (!fault.what.empty()) return;
  fault.outputOffset = offset;
  fault.what = what;
}

void ZrXmlEncodingTranscoder::transcode(const char* bytes, std::size_t count, bool last, std::string& out,
                                        Fault& fault) {
  m_thePending.append(bytes, count);
  switch (m_theKind) {
    case Utf16LittleEndian:
    case Utf16BigEndian: decodeUtf16(out, fault, last); break;
    case Latin1:
    case Ascii: decodeSingleBytes(out, fault); break;
    case Iconv: decodeWithIconv(out, fault, last); break;
  }
}

void ZrXmlEncodingTranscoder::decodeUtf16(std::string& out, Fault& fault, bool last) {
  const unsigned char* bytes = reinterpret_cast<const unsigned char*>(m_thePending.data());
  const std::size_t size = m_thePending.size();
  const bool big = m_theKind == Utf16BigEndian;
  const auto unitAt = [bytes, big](std::size_t at) {
    return big ? (unsigned(bytes[at]) << 8 | bytes[at + 1]) : (unsigned(bytes[at + 1]) << 8 | bytes[at]);
  };
  std::size_t at = 0;
  out.reserve(out.size() + size);
  while (at + 2 <= size) {
    const unsigned unit = unitAt(at);
    if (unit < 0xD800 || unit > 0xDFFF) {
      ZrXmlCharacters::appendUtf8(out, unit);
      at += 2;
      continue;
    }
    if (unit <= 0xDBFF && at + 4 > size && !last) break;  // the pair's second half comes with the next block
    const unsigned second = at + 4 <= size ? unitAt(at + 2) : 0;
    if (unit <= 0xDBFF && second >= 0xDC00 && second <= 0xDFFF) {
      ZrXmlCharacters::appendUtf8(out, 0x10000 + ((unsigned long)(unit - 0xD800) << 10) + (second - 0xDC00));
      at += 4;
      continue;
    }
    char what[64];
    std::snprintf(what, sizeof what, "Invalid UTF-16: unpaired surrogate #x%04X.", unit);
    noteFault(fault, out.size(), what);
    ZrXmlCharacters::appendUtf8(out, theReplacement);
    at += 2;
  }
  if (last && at < size) {
    noteFault(fault, out.size(), "Invalid UTF-16: the document ends inside a character.");
    ZrXmlCharacters::appendUtf8(out, theReplacement);
    at = size;
  }
  m_thePending.erase(0, at);
}

void ZrXmlEncodingTranscoder::decodeSingleBytes(std::string& out, Fault& fault) {
  out.reserve(out.size() + m_thePending.size());
  for (char c : m_thePending) {
    const unsigned char byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      out += c;
    } else if (m_theKind == Latin1) {
      ZrXmlCharacters::appendUtf8(out, byte);
    } else {
      char what[64];
      std::snprintf(what, sizeof what, "Invalid US-ASCII: byte #x%02X is no character.", byte);
      noteFault(fault, out.size(), what);
      ZrXmlCharacters::appendUtf8(out, theReplacement);
    }
  }
  m_thePending.clear();
}

void ZrXmlEncodingTranscoder::decodeWithIconv(std::string& out, Fault& fault, bool last) {
  iconv_t converter = static_cast<iconv_t>(m_theConverter);
  if (!converter) {  // a copy whose descriptor could not be opened reads nothing more
    m_thePending.clear();
    return;
  }
  char* in = &m_thePending[0];
  std::size_t inLeft = m_thePending.size();
  char block[16384];
  while (inLeft > 0) {
    char* to = block;
    std::size_t toLeft = sizeof block;
    const std::size_t result = iconv(converter, &in, &inLeft, &to, &toLeft);
    out.append(block, sizeof block - toLeft);
    if (result != static_cast<std::size_t>(-1) || errno == E2BIG) continue;
    if (errno == EINVAL && !last) break;  // a character cut at the end: held for the next block
    char what[96];
    std::snprintf(what, sizeof what, "Invalid %.40s: byte #x%02X begins no character.", m_theName.c_str(),
                  static_cast<unsigned char>(*in));
    noteFault(fault, out.size(), what);
    ZrXmlCharacters::appendUtf8(out, theReplacement);
    ++in;
    --inLeft;
  }
  m_thePending.erase(0, m_thePending.size() - inLeft);
}
