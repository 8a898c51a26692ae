#ifndef ZR_XML_ENCODING_TRANSCODER_H
#define ZR_XML_ENCODING_TRANSCODER_H

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

// Turns the bytes of a document in another encoding than UTF-8 into UTF-8, block by block, for the
// tokenizer in strict mode. UTF-16 (either byte order), ISO-8859-1 and US-ASCII are decoded here; any
// other encoding the C library's iconv knows goes through iconv. A character cut at the end of a block
// is held until the next one. Bytes that form no character of the encoding become U+FFFD, and the first
// such fault of each call is handed back for a report.
class ZrXmlEncodingTranscoder {
 public:
  enum Kind { Utf16LittleEndian, Utf16BigEndian, Latin1, Ascii, Iconv };

  // The first fault of one call: where its replacement character begins in the output, and the rule.
  struct Fault {
    std::size_t outputOffset = 0;
    std::string what;  // empty: none
  };

  // The transcoder for an encoding name as written in an XML declaration (compared without regard to
  // case), or null for UTF-8 and for a name nobody here knows.
  static std::unique_ptr<ZrXmlEncodingTranscoder> forName(std::string_view name);
  static std::unique_ptr<ZrXmlEncodingTranscoder> forUtf16(bool bigEndian);
  static bool isUtf8Name(std::string_view name);
  static bool isUtf16Name(std::string_view name);

  ZrXmlEncodingTranscoder(const ZrXmlEncodingTranscoder& other);
  ZrXmlEncodingTranscoder& operator=(const ZrXmlEncodingTranscoder&) = delete;
  ~ZrXmlEncodingTranscoder();

  // Appends the UTF-8 form of the bytes to `out`; `last` when no bytes follow, so that a character cut
  // at the end is a fault rather than held.
  void transcode(const char* bytes, std::size_t count, bool last, std::string& out, Fault& fault);

  Kind kind() const { return m_theKind; }
  const std::string& name() const { return m_theName; }

 private:
  ZrXmlEncodingTranscoder(Kind kind, std::string name, void* converter);

  void decodeUtf16(std::string& out, Fault& fault, bool last);
  void decodeSingleBytes(std::string& out, Fault& fault);
  void decodeWithIconv(std::string& out, Fault& fault, bool last);
  void noteFault(Fault& fault, std::size_t offset, const std::string& what) const;

  Kind m_theKind;
  std::string m_theName;
  void* m_theConverter;   // the iconv descriptor, for Iconv only
  std::string m_thePending;  // bytes held from the last call, then the bytes of this one
};

#endif
