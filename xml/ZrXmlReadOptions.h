#ifndef ZR_XML_READ_OPTIONS_H
#define ZR_XML_READ_OPTIONS_H

#include <ZrIfHttpStream.h>
#include <ZrTypes.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// Every setting of the reading side, as one plain copyable value. A reader holds one (ZrXmlReader::options,
// setOptions) and hands it to every document it reads, included ones too, and to every HTTP stream it
// opens; new readers and file readers start from ZrXmlReader::defaultOptions(). Setters return the value,
// so that settings chain: ZrXmlReadOptions::standard().setMaxIncludeDepth(4).
//
// Two profiles:
//   toolkit()  documents read as the toolkit writes them, every conversion as forgiving as ever: what a
//              reader starts with unless the class default was changed.
//   standard() reads what ZrXmlWriteOptions::standard() writes: references expanded, values checked.
//
// The settings, with their toolkit values. A limit of 0 means "none" where it says so, and otherwise
// refuses everything it limits; the largest value of its type is as good as no limit.
//   strict                  false   also report whatever is not well-formed XML 1.0 with namespaces
//   expandReferences        false   expand the predefined entities and character references in content
//                                   and attribute values; off, '&' is an ordinary character
//   checkValues             false   report every value whose text is not a whole value of its type (the
//                                   value stored stays what the forgiving conversion gives)
//   maxElementDepth         100,000 open elements of one document; a deeper start tag is reported and
//                                   reading stops (0 refuses the root itself)
//   maxTokenSize            1 GiB   bytes of one tag, comment or text run; past it reading stops
//   maxEntityExpansion      1,000,000  bytes that a document's own entities may expand to in strict mode,
//                                   nested ones counted at every level; past it references are reported and
//                                   kept as written (0: none expanded)
//   maxObjectDepth          1,000   objects read inside one another; deeper elements are reported and
//                                   skipped
//   maxIncludeDepth         64      included documents open inside one another (0: no includes)
//   maxIncludedDocuments    10,000  include elements followed in one read, failed ones counted too
//                                   (0: no includes)
//   maxIncludedBytes        4 GiB   bytes read through included documents in one read (0: no includes)
//   maxReadMemory           1 GiB   bytes the documents being read hold at once (an estimate of their
//                                   buffers, open elements and declarations); past it the read is reported
//                                   and stops (0: none)
//   maxReadMilliseconds     0       the time a whole read may take, included documents with it; past it
//                                   the read is reported and stops (0: none)
//   maxHttpReadMilliseconds 30 min  the same for a read that takes a document over HTTP (0: none)
//   httpIncludesAllowed     true    includes may name http:// references
//   httpLimits              see ZrIfHttpStream::Limits: time-outs, body size, redirects, allowed hosts
//   portableIncludeReferences false a relative include reference is joined to the including document's
//                                   directory with "/" and its "." and ".." resolved; off, the joint is
//                                   the toolkit's backslash
//   maxPrintedFaults        1,000   faults printed per read; past it faults are counted and recorded but
//                                   not printed, and one line says how many were left out (0: none printed)
class ZrXmlReadOptions {
 public:
  static ZrXmlReadOptions toolkit() { return ZrXmlReadOptions(); }
  static ZrXmlReadOptions standard() { return ZrXmlReadOptions().setExpandReferences(true).setCheckValues(true); }

  bool strict() const { return m_theStrict; }
  ZrXmlReadOptions& setStrict(bool flag) { return set(m_theStrict, flag); }
  bool expandReferences() const { return m_theExpandReferences; }
  ZrXmlReadOptions& setExpandReferences(bool flag) { return set(m_theExpandReferences, flag); }
  bool checkValues() const { return m_theCheckValues; }
  ZrXmlReadOptions& setCheckValues(bool flag) { return set(m_theCheckValues, flag); }

  std::size_t maxElementDepth() const { return m_theMaxElementDepth; }
  ZrXmlReadOptions& setMaxElementDepth(std::size_t levels) { return set(m_theMaxElementDepth, levels); }
  std::uint64_t maxEntityExpansion() const { return m_theMaxEntityExpansion; }
  ZrXmlReadOptions& setMaxEntityExpansion(std::uint64_t bytes) { return set(m_theMaxEntityExpansion, bytes); }
  std::size_t maxTokenSize() const { return m_theMaxTokenSize; }
  ZrXmlReadOptions& setMaxTokenSize(std::size_t bytes) { return set(m_theMaxTokenSize, bytes); }
  ZrU32 maxObjectDepth() const { return m_theMaxObjectDepth; }
  ZrXmlReadOptions& setMaxObjectDepth(ZrU32 depth) { return set(m_theMaxObjectDepth, depth); }

  ZrU32 maxIncludeDepth() const { return m_theMaxIncludeDepth; }
  ZrXmlReadOptions& setMaxIncludeDepth(ZrU32 depth) { return set(m_theMaxIncludeDepth, depth); }
  ZrU32 maxIncludedDocuments() const { return m_theMaxIncludedDocuments; }
  ZrXmlReadOptions& setMaxIncludedDocuments(ZrU32 count) { return set(m_theMaxIncludedDocuments, count); }
  std::uint64_t maxIncludedBytes() const { return m_theMaxIncludedBytes; }
  ZrXmlReadOptions& setMaxIncludedBytes(std::uint64_t bytes) { return set(m_theMaxIncludedBytes, bytes); }
  bool httpIncludesAllowed() const { return m_theHttpIncludesAllowed; }
  ZrXmlReadOptions& setHttpIncludesAllowed(bool allowed) { return set(m_theHttpIncludesAllowed, allowed); }
  const ZrIfHttpStream::Limits& httpLimits() const { return m_theHttpLimits; }
  ZrXmlReadOptions& setHttpLimits(const ZrIfHttpStream::Limits& limits) { return set(m_theHttpLimits, limits); }
  bool portableIncludeReferences() const { return m_thePortableIncludeReferences; }
  ZrXmlReadOptions& setPortableIncludeReferences(bool flag) { return set(m_thePortableIncludeReferences, flag); }

  std::uint64_t maxReadMemory() const { return m_theMaxReadMemory; }
  ZrXmlReadOptions& setMaxReadMemory(std::uint64_t bytes) { return set(m_theMaxReadMemory, bytes); }
  std::uint64_t maxReadMilliseconds() const { return m_theMaxReadMilliseconds; }
  ZrXmlReadOptions& setMaxReadMilliseconds(std::uint64_t milliseconds) { return set(m_theMaxReadMilliseconds, milliseconds); }
  std::uint64_t maxHttpReadMilliseconds() const { return m_theMaxHttpReadMilliseconds; }
  ZrXmlReadOptions& setMaxHttpReadMilliseconds(std::uint64_t milliseconds) {
    return set(m_theMaxHttpReadMilliseconds, milliseconds);
  }

  ZrU32 maxPrintedFaults() const { return m_theMaxPrintedFaults; }
  ZrXmlReadOptions& setMaxPrintedFaults(ZrU32 count) { return set(m_theMaxPrintedFaults, count); }

  bool operator==(const ZrXmlReadOptions& other) const;
  bool operator!=(const ZrXmlReadOptions& other) const { return !(*this == other); }

 private:
  template <class T>
  ZrXmlReadOptions& set(T& member, const T& value) {
    member = value;
    return *this;
  }

  bool m_theStrict = false;
  bool m_theExpandReferences = false;
  bool m_theCheckValues = false;
  bool m_theHttpIncludesAllowed = true;
  bool m_thePortableIncludeReferences = false;
  std::size_t m_theMaxElementDepth = 100000;
  std::size_t m_theMaxTokenSize = std::size_t(1) << 30;
  std::uint64_t m_theMaxEntityExpansion = 1000000;
  ZrU32 m_theMaxObjectDepth = 1000;
  ZrU32 m_theMaxIncludeDepth = 64;
  ZrU32 m_theMaxIncludedDocuments = 10000;
  std::uint64_t m_theMaxIncludedBytes = std::uint64_t(4) << 30;
  std::uint64_t m_theMaxReadMemory = std::uint64_t(1) << 30;
  std::uint64_t m_theMaxReadMilliseconds = 0;
  std::uint64_t m_theMaxHttpReadMilliseconds = 30 * 60 * 1000;
  ZrU32 m_theMaxPrintedFaults = 1000;
  ZrIfHttpStream::Limits m_theHttpLimits;
};

#endif
