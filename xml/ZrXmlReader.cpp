#include "ZrXmlReader.h"

#include "ZrXmlFactory.h"

#include <ZrIfHttpStream.h>
#include <ZrPrint.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <typeinfo>

namespace {

// Answers for queries made while no document is open, so that a misused reader never crashes.
const ZrToken theNoToken;
const std::string theNoText;

const char* const theHttpScheme = "http://";
const size_t theHttpSchemeLength = 7;

bool startsWith(const std::string& text, const char* prefix) { return text.rfind(prefix, 0) == 0; }

// The name under which an open document is compared with an include's target: HTTP references as
// written, files by their canonical path (so that "./a.xml", "a.xml" and a symbolic link to it match).
std::string documentIdentity(const std::string& name) {
  if (startsWith(name, theHttpScheme) || startsWith(name, "https://")) return name;
  std::error_code ignored;
  std::filesystem::path canonical = std::filesystem::weakly_canonical(name, ignored);
  return canonical.empty() ? name : canonical.string();
}

// The major number of a version text: the leading decimal digits before the first ".", as an unsigned
// 16-bit value (the digits are reduced modulo 65536 as they come, which equals narrowing the whole
// number and cannot overflow however long the text is).
unsigned short majorVersion(const std::string& version) {
  unsigned int major = 0;
  for (char c : version) {
    if (c < '0' || c > '9') break;
    major = (major * 10u + static_cast<unsigned int>(c - '0')) & 0xFFFFu;
  }
  return static_cast<unsigned short>(major);
}

// A directory path with its "." segments dropped and each ".." taking away the segment before it (kept
// where there is none to take: a relative path may climb above where it starts). Separators may be "/"
// or "\\"; the result joins with "/".
std::string withDotsResolved(const std::string& directory) {
  if (directory.empty()) return directory;
  std::vector<std::string> segments;
  std::size_t start = 0;
  while (start <= directory.size()) {
    std::size_t end = directory.find_first_of("/\\", start);
    if (end == std::string::npos) end = directory.size();
    const std::string segment = directory.substr(start, end - start);
    if (segment == "..") {
      if (!segments.empty() && segments.back() != ".." && !segments.back().empty()) segments.pop_back();
      else if (segments.empty() || segments.back() == "..") segments.push_back(segment);
    } else if (segment != "." && !(segment.empty() && !segments.empty())) {
      segments.push_back(segment);  // an empty first segment is the root of an absolute path
    }
    start = end + 1;
  }
  std::string resolved;
  for (std::size_t i = 0; i < segments.size(); ++i) resolved += (i ? "/" : "") + segments[i];
  return segments.size() == 1 && segments[0].empty() ? "/" : resolved;
}

}  // namespace

// Built on first use, so that readers made during static initialisation elsewhere see it.
static ZrXmlReadOptions& readerClassDefaults() {
  static ZrXmlReadOptions theDefaults;
  return theDefaults;
}

const ZrXmlReadOptions& ZrXmlReader::defaultOptions() { return readerClassDefaults(); }
void ZrXmlReader::setDefaultOptions(const ZrXmlReadOptions& options) { readerClassDefaults() = options; }
void ZrXmlReader::setDefaultMaxIncludedDocuments(ZrU32 count) { readerClassDefaults().setMaxIncludedDocuments(count); }
void ZrXmlReader::setDefaultMaxIncludedBytes(std::uint64_t bytes) { readerClassDefaults().setMaxIncludedBytes(bytes); }
void ZrXmlReader::setDefaultHttpIncludesAllowed(bool allowed) { readerClassDefaults().setHttpIncludesAllowed(allowed); }
void ZrXmlReader::setDefaultCheckValues(bool flag) { readerClassDefaults().setCheckValues(flag); }

void ZrXmlReader::reportFaultyValue(bool attribute, const std::string& name, const std::string& text,
                                    const char* typeName) {
  Zr::Print::instance().write(Zr::PrintError,
                              "ZrXmlReader Error: value not valid.\n\t%s %s holds \"%s\", which is not a whole "
                              "value of type %s.\n\tFile: %s\n\tLine: %d\n",
                              attribute ? "Attribute" : "Element", name.c_str(), text.c_str(), typeName,
                              filename().c_str(), lineCountOfFile());
}
void ZrXmlReader::setDefaultPortableIncludeReferences(bool flag) {
  readerClassDefaults().setPortableIncludeReferences(flag);
}
void ZrXmlReader::setDefaultMaxReadMemory(std::uint64_t bytes) { readerClassDefaults().setMaxReadMemory(bytes); }
void ZrXmlReader::setDefaultMaxReadMilliseconds(std::uint64_t milliseconds) {
  readerClassDefaults().setMaxReadMilliseconds(milliseconds);
}
void ZrXmlReader::setDefaultMaxHttpReadMilliseconds(std::uint64_t milliseconds) {
  readerClassDefaults().setMaxHttpReadMilliseconds(milliseconds);
}

ZrXmlReader::ZrXmlReader()
    : m_theVersionCheckPending(true), m_theVersionFlag(true), m_theOptions(defaultOptions()) {}

ZrXmlReader::ZrXmlReader(const std::string& filename, std::istream& stream) : ZrXmlReader() {
  becomeReadingReader();  // the file reader may report a fault as it is built
  m_theFileReaders.emplace_back(filename, stream, nullptr);
  forgetTop();
  startRead(stream);
}

// Copies take the open documents (each file reader copied, the included streams shared), both flags,
// the limits and a share of the factory; assigning a reader to itself changes nothing.
ZrXmlReader::ZrXmlReader(const ZrXmlReader& other) = default;

ZrXmlReader& ZrXmlReader::operator=(const ZrXmlReader& other) = default;

ZrBoolean ZrXmlReader::enterObject() {
  if (m_theObjectDepth < m_theOptions.maxObjectDepth()) {
    ++m_theObjectDepth;
    return true;
  }
  Zr::Print::instance().write(Zr::PrintError,
                              "ZrXmlReader Error: objects nested deeper than %u levels; element %s skipped.\n\tFile: "
                              "%s\n\tLine: %d\n",
                              m_theOptions.maxObjectDepth(), element().c_str(), filename().c_str(), lineCountOfFile());
  nextMatchingEndTag();
  return false;
}

// The documents' end checks are heard before the reader stops listening.
ZrXmlReader::~ZrXmlReader() {
  finish();
  if (m_theWatcher.watcher) Zr::Print::instance().dropWatcher(*m_theWatcher.watcher);
}

// Included documents are let go from the innermost outwards; their streams go with the last share. Each
// is popped while it is still the one on top, so that what its end checks report is recorded as its own.
void ZrXmlReader::finish() {
  if (!m_theFileReaders.empty()) becomeReadingReader();
  while (!m_theFileReaders.empty()) {
    top();
    m_theFileReaders.pop_back();
    forgetTop();
  }
  sayUnprintedFaults();
}

void ZrXmlReader::sayUnprintedFaults() {
  if (m_theUnprintedFaults == 0) return;
  const ZrU32 unprinted = m_theUnprintedFaults;
  m_theUnprintedFaults = 0;
  Zr::Print::instance().write(Zr::PrintNotice,
                              "ZrXmlReader Warning: %u further faults were recorded but not printed (at most %u "
                              "are printed per read).\n",
                              unprinted, m_theOptions.maxPrintedFaults());
}

void ZrXmlReader::setDefaultMaxPrintedFaults(ZrU32 count) { readerClassDefaults().setMaxPrintedFaults(count); }

void ZrXmlReader::setOptions(const ZrXmlReadOptions& options) {
  m_theOptions = options;
  for (OpenDocument& document : m_theFileReaders) applyReadingOptions(document.reader);
  applyBudgets();
}

void ZrXmlReader::setExpandReferences(bool flag) { setOptions(ZrXmlReadOptions(m_theOptions).setExpandReferences(flag)); }

void ZrXmlReader::setStrict(bool flag) { setOptions(ZrXmlReadOptions(m_theOptions).setStrict(flag)); }

// A document's byte budget is its own (the included bytes left); everything else is the reader's.
void ZrXmlReader::applyReadingOptions(ZrXmlFileReader& reader) const {
  if (reader.options() != m_theOptions) reader.setOptions(m_theOptions);
}

void ZrXmlReader::open(const std::string& filename, std::istream& stream) {
  m_theFaultCount = 0;
  m_theLastFault.clear();
  m_theFaults.clear();
  m_theUnprintedFaults = 0;
  m_theIncludedDocuments = 0;
  m_theClosedIncludeBytes = 0;
  becomeReadingReader();
  m_theFileReaders.emplace_back(filename, stream, nullptr);
  forgetTop();
  applyReadingOptions(*top());
  m_theVersionCheckPending = true;
  m_theVersionFlag = true;
  startRead(stream);
}

// The budgets of the read count from here. A stream over HTTP brings the read under the HTTP time budget.
void ZrXmlReader::startRead(std::istream& stream) {
  m_theReadStart = std::chrono::steady_clock::now();
  m_theReadStopped = false;
  m_theHttpRead = dynamic_cast<ZrIfHttpStream*>(&stream) != nullptr;
  applyBudgets();
}

// The time the read may take: the smaller of the limits in force, 0 for none.
std::uint64_t ZrXmlReader::readTimeLimit() const {
  std::uint64_t limit = m_theOptions.maxReadMilliseconds();
  const std::uint64_t http = m_theHttpRead ? m_theOptions.maxHttpReadMilliseconds() : 0;
  if (http != 0 && (limit == 0 || http < limit)) limit = http;
  return limit;
}

std::chrono::steady_clock::time_point ZrXmlReader::deadline() const {
  return m_theReadStart + std::chrono::milliseconds(readTimeLimit());
}

// Each document may hold what the documents below it leave of the memory budget: those are not read
// while it is open, so what they hold stays as it is.
void ZrXmlReader::applyBudgets() {
  const std::uint64_t limit = readTimeLimit();
  const std::chrono::steady_clock::time_point end = deadline();
  std::uint64_t heldBelow = 0;
  for (OpenDocument& document : m_theFileReaders) {
    document.reader.setMemoryBudget(m_theOptions.maxReadMemory(), heldBelow);
    document.reader.setTimeBudget(end, limit);
    heldBelow += document.reader.heldBytes();
  }
}

std::uint64_t ZrXmlReader::heldBytes() const {
  std::uint64_t held = 0;
  for (const OpenDocument& document : m_theFileReaders) held += document.reader.heldBytes();
  return held;
}

// Every document ends where it stands, without further reports: the read is over.
void ZrXmlReader::stopRead() {
  m_theReadStopped = true;
  for (OpenDocument& document : m_theFileReaders) {
    document.reader.abandon();
    document.truncationReported = true;
  }
}

// Every readXml() comes here: the watcher is raised only when another reader (or none) is the one
// watched on this thread.
// Nothing raised, dropped or destroyed since this reader was found innermost on this same thread: it
// still is, and the thread's list need not be looked at.
inline void ZrXmlReader::becomeReadingReader() {
  if (Zr::Print::watcherEpoch() == m_theWatcher.epoch && pthread_equal(pthread_self(), m_theWatcher.thread)) return;
  raiseWatcher();
}

void ZrXmlReader::raiseWatcher() {
  const pthread_t thread = pthread_self();
  Zr::Print& print = Zr::Print::instance();
  if (!m_theWatcher.watcher) m_theWatcher.watcher.reset(new FaultWatcher(*this));
  if (print.innermostWatcher() != m_theWatcher.watcher.get()) print.raiseWatcher(*m_theWatcher.watcher);
  m_theWatcher.epoch = Zr::Print::watcherEpoch();
  m_theWatcher.thread = thread;
}

bool ZrXmlReader::FaultWatcher::observe(int printType, const std::string& message) {
  return m_theReader->takeNoteOf(printType, message);
}

// Reading a document with escaped text without expanding references gives "&amp;" where the writer had
// "&": one notice per document (not a fault) names the setting that reads it back, when its first block
// declares UTF-8 or holds an "&amp;" or "&lt;".
void ZrXmlReader::noticeEscapedText() {
  const std::string_view text = top()->bufferedText();
  const bool utf8 = text.substr(0, text.find("?>")).find("encoding=\"UTF-8\"") != std::string_view::npos &&
                    text.rfind("<?xml", 0) == 0;
  if (!utf8 && text.find("&amp;") == std::string_view::npos && text.find("&lt;") == std::string_view::npos) return;
  m_theSayingNotice = true;
  Zr::Print::instance().write(Zr::PrintSizeWarning,
                              "ZrXmlReader Notice: the document looks written with escaped text (%s), but references "
                              "are not expanded: read it with the reading option expandReferences "
                              "(ZrXmlReadOptions::standard()).\n\tFile: %s\n",
                              utf8 ? "it declares UTF-8" : "it holds &amp; or &lt; references", filename().c_str());
  m_theSayingNotice = false;
}

// Faults are noted; a report past the printing cap is kept from the sink, and its detail lines with it.
bool ZrXmlReader::takeNoteOf(int printType, const std::string& message) {
  const bool detailLine = !message.empty() && message[0] == '\t';
  if (detailLine) return m_thePrintingReport;
  if (m_theSayingNotice) return true;
  const bool fault = printType == Zr::PrintSizeWarning || printType == Zr::PrintError || printType == Zr::PrintPluginError;
  m_thePrintingReport = true;
  if (!fault) return true;
  noteFault(printType, message);
  m_thePrintingReport = m_theFaultCount <= m_theOptions.maxPrintedFaults();
  if (!m_thePrintingReport) ++m_theUnprintedFaults;
  return m_thePrintingReport;
}

void ZrXmlReader::noteFault(int printType, const std::string& message) {
  ++m_theFaultCount;
  m_theLastFault = message;
  if (m_theFaults.size() >= m_theMaxFaultRecords) return;
  ZrXmlFault fault;
  if (ZrXmlFileReader* document = top()) {
    fault.file = document->ZrXmlFileReader::filename();
    fault.line = document->lineCount();
    fault.column = document->columnOfFile();
  }
  fault.printType = printType;
  fault.text = message;
  m_theFaults.push_back(std::move(fault));
}

inline const ZrToken& ZrXmlReader::includeToken() {
  static const ZrToken theIncludeToken("ZrInclude");
  return theIncludeToken;
}

// An item that neither begins an include nor ends a document, read by a reader whose include tests are
// this class's own, needs neither test: the tests would find nothing, so the item is handed out at once.
// A derived reader's tests, which may look at other items, are always called.
inline bool ZrXmlReader::isOrdinaryItem(int mode) {
  if (mode == 0 || m_theVersionCheckPending) return false;
  signed char& own = m_theOwnIncludeTests.known;
  if (own < 0) own = typeid(*this) == typeid(ZrXmlReader);
  if (!own) return false;
  return (mode != 1 && mode != 3) || !(top()->ZrXmlFileReader::element() == includeToken());
}

int ZrXmlReader::readXml() {
  if (m_theFileReaders.empty()) return 0;
  becomeReadingReader();
  int mode = top()->ZrXmlFileReader::readXml();
  if (isOrdinaryItem(mode)) return mode;
  // Each turn consumes an item of some document or closes one, so the loop ends with the input.
  for (;;) {
    if (mode == 0) {
      if (top()->budgetExhausted() && !m_theReadStopped) stopRead();  // the document reported it
      reportTruncation(m_theFileReaders.back());
    }
    if (!openFileTest() && !closeFileTest()) break;
    mode = top()->ZrXmlFileReader::readXml();
  }
  if (m_theVersionCheckPending) {
    m_theVersionCheckPending = false;
    m_theVersionFlag = checkVersion();
    if (!m_theOptions.expandReferences()) noticeEscapedText();
  }
  return top()->ZrXmlFileReader::mode();
}

ZrBoolean ZrXmlReader::versionFlag() const { return m_theVersionFlag; }

// ---- Queries answered by the document on top -------------------------------------------------------
// The stack holds file readers by value, so each query goes straight to ZrXmlFileReader's own function.

int ZrXmlReader::mode() const { return top() ? top()->ZrXmlFileReader::mode() : 0; }

const ZrToken& ZrXmlReader::element() const { return top() ? top()->ZrXmlFileReader::element() : theNoToken; }

const ZrToken& ZrXmlReader::attributeName() const {
  return top() ? top()->ZrXmlFileReader::attributeName() : theNoToken;
}

const ZrToken& ZrXmlReader::attributeName(const ZrToken& name) const {
  return top() ? top()->ZrXmlFileReader::attributeName(name) : theNoToken;
}

const std::string& ZrXmlReader::attributeValue() {
  return top() ? top()->ZrXmlFileReader::attributeValue() : theNoText;
}

const std::string& ZrXmlReader::attributeValue(const ZrToken& name) {
  return top() ? top()->ZrXmlFileReader::attributeValue(name) : theNoText;
}

ZrU32 ZrXmlReader::numOfAttributes() const { return top() ? top()->ZrXmlFileReader::numOfAttributes() : 0; }

ZrU32 ZrXmlReader::remainingNumOfAttributes() const {
  return top() ? top()->ZrXmlFileReader::remainingNumOfAttributes() : 0;
}

std::string ZrXmlReader::content() const { return top() ? top()->ZrXmlFileReader::content() : std::string(); }

std::string ZrXmlReader::contentByWord() const {
  return top() ? top()->ZrXmlFileReader::contentByWord() : std::string();
}

std::string_view ZrXmlReader::nextContentWord() const {
  return top() ? top()->ZrXmlFileReader::nextContentWord() : std::string_view();
}

ZrU32 ZrXmlReader::contentCount() const { return top() ? top()->ZrXmlFileReader::contentCount() : 0; }

ZrBoolean ZrXmlReader::isContentAvailable() const {
  return top() ? top()->ZrXmlFileReader::isContentAvailable() : false;
}

void ZrXmlReader::setContentVectorFlag(bool flag) {
  if (top()) top()->ZrXmlFileReader::setContentVectorFlag(flag);
}

const std::string& ZrXmlReader::filename() { return top() ? top()->ZrXmlFileReader::filename() : theNoText; }

int ZrXmlReader::lineCountOfFile() const { return top() ? top()->ZrXmlFileReader::lineCountOfFile() : 0; }

ZrBoolean ZrXmlReader::nextMatchingEndTag() { return top() ? top()->ZrXmlFileReader::nextMatchingEndTag() : false; }

std::string ZrXmlReader::getChildrenAsString() {
  return top() ? top()->ZrXmlFileReader::getChildrenAsString() : std::string();
}

std::istream* ZrXmlReader::stream() const { return top() ? top()->ZrXmlFileReader::stream() : nullptr; }

const ZrToken& ZrXmlReader::getComplexStartTagFast() {
  return top() ? top()->ZrXmlFileReader::getComplexStartTagFast() : theNoToken;
}

const ZrToken& ZrXmlReader::getSimpleStartTagFast() {
  return top() ? top()->ZrXmlFileReader::getSimpleStartTagFast() : theNoToken;
}

const std::string& ZrXmlReader::getAttributeValueFast() {
  return top() ? top()->ZrXmlFileReader::getAttributeValueFast() : theNoText;
}

const std::string& ZrXmlReader::getLastAttributeValueFast() {
  return top() ? top()->ZrXmlFileReader::getLastAttributeValueFast() : theNoText;
}

const std::string& ZrXmlReader::getContentByWordFast() {
  return top() ? top()->ZrXmlFileReader::getContentByWordFast() : theNoText;
}

const ZrToken& ZrXmlReader::getEndTagFast() { return top() ? top()->ZrXmlFileReader::getEndTagFast() : theNoToken; }

// ---- Factory ---------------------------------------------------------------------------------------

void ZrXmlReader::setFactoryPointer(ZrBaseXmlFactory* factory) {
  if (factory == m_theFactory.get()) return;  // already ours: releasing it first would leave it dangling
  m_theFactory.reset(factory);
}

ZrBaseXmlFactory* ZrXmlReader::factoryPointer() const { return m_theFactory.get(); }

ZrBaseXmlFactory* ZrXmlReader::newFactory() const { return new ZrXmlFactory; }

// The result tells whether this call created the factory, not whether the creator was registered.
ZrBoolean ZrXmlReader::registerComponentCreator(const ZrToken& token, Creator creator) {
  if (m_theFactory) {
    m_theFactory->registerComponentCreator(token, creator);
    return false;
  }
  m_theFactory.reset(newFactory());
  if (!m_theFactory) {
    Zr::Print::instance().write(Zr::PrintError, "ZrXmlReader Error: no factory to register %s in.\n",
                                token.namespaceAndToken().c_str());
    return false;
  }
  m_theFactory->registerComponentCreator(token, creator);
  return true;
}

// ---- Includes --------------------------------------------------------------------------------------

void ZrXmlReader::includeError(const char* what, const std::string& name) {
  Zr::Print::instance().write(Zr::PrintError, "ZrXmlReader Error: %s: %s\n\tFile: %s\n\tLine: %d\n", what, name.c_str(),
                              filename().c_str(), lineCountOfFile());
}

// An include element is <ZrInclude type="simple" href="..."/>. Whatever becomes of it (the document
// opened, or a fault reported), the include element itself is consumed: one written with content and
// an end tag is skipped up to that end tag, so that the including document goes on after it.
ZrBoolean ZrXmlReader::openFileTest() {
  if (!top()) return false;
  const int currentMode = top()->ZrXmlFileReader::mode();
  if (currentMode != 1 && currentMode != 3) return false;  // only a start tag can begin an include
  if (!(element() == includeToken())) return false;
  followInclude(currentMode);
  return true;
}

// Kept apart from the test above, which every item read passes through.
void ZrXmlReader::followInclude(int currentMode) {
  m_theVersionCheckPending = true;
  std::string host;
  std::string fullName;
  bool typeSeen = false;
  bool hrefSeen = false;
  // Bounded by the count at the start, in case a faulty document leaves attributes that cannot be taken.
  for (ZrU32 left = remainingNumOfAttributes(); left > 0 && remainingNumOfAttributes() > 0; --left) {
    const ZrToken name = attributeName();  // a copy: taking the value removes the entry it refers to
    const std::string value = attributeValue();
    if (name.tokenText() == "type") {
      if (value != "simple")
        Zr::Print::instance().write(Zr::PrintError,
                                    "ZrXmlReader Error: XLink 'type' needs to be simple.\n\tFile: %s\n\tLine: %d\n",
                                    filename().c_str(), lineCountOfFile());
      typeSeen = true;
    } else if (name.tokenText() == "href") {
      resolveHref(value, host, fullName);
      hrefSeen = true;
    } else {
      Zr::Print::instance().write(
          Zr::PrintError, "ZrXmlReader Error: attribute name can only be simple and href, not %s.\n\tFile: %s\n\tLine: %d\n",
          name.tokenText().c_str(), filename().c_str(), lineCountOfFile());
    }
  }
  const bool syntaxCorrect = typeSeen && hrefSeen;
  if (!syntaxCorrect)
    Zr::Print::instance().write(Zr::PrintError, "ZrXmlReader Error: XLink syntax not correct.\n\tFile: %s\n\tLine: %d\n",
                                filename().c_str(), lineCountOfFile());

  const bool mayOpen = syntaxCorrect && mayOpenInclude(host, fullName);
  if (currentMode == 1 && !m_theReadStopped) top()->ZrXmlFileReader::nextMatchingEndTag();
  if (mayOpen) pushInclude(host, fullName);
}

// Checks the limits of this reader, each refusal reported in the including document's position.
bool ZrXmlReader::mayOpenInclude(const std::string& host, const std::string& fullName) {
  if (m_theReadStopped) return false;
  if (!host.empty() && m_theOptions.httpIncludesAllowed() && !m_theHttpRead) {
    m_theHttpRead = true;  // the read comes under the HTTP time budget
    applyBudgets();
  }
  if (!withinReadBudgets(fullName)) return false;
  if (!host.empty() && !m_theOptions.httpIncludesAllowed()) {
    includeError("HTTP includes are switched off; include skipped", fullName);
    return false;
  }
  if (m_theIncludedDocuments >= m_theOptions.maxIncludedDocuments()) {
    std::string what = "more than " + std::to_string(m_theOptions.maxIncludedDocuments()) + " documents included; include skipped";
    includeError(what.c_str(), fullName);
    return false;
  }
  if (includedBytes() >= m_theOptions.maxIncludedBytes()) {
    std::string what = "included documents reached " + std::to_string(m_theOptions.maxIncludedBytes()) + " bytes; include skipped";
    includeError(what.c_str(), fullName);
    return false;
  }
  if (m_theFileReaders.size() - 1 >= m_theOptions.maxIncludeDepth()) {
    std::string what = "include nested deeper than " + std::to_string(m_theOptions.maxIncludeDepth()) + " documents; skipped";
    includeError(what.c_str(), fullName);
    return false;
  }
  const std::string identity = documentIdentity(fullName);
  for (OpenDocument& open : m_theFileReaders) {
    if (documentIdentity(open.reader.filename()) == identity) {
      includeError("document includes itself; include skipped", fullName);
      return false;
    }
  }
  return true;
}

// The time and memory budgets of the whole read, looked at before an include is opened: past either, the
// read stops here.
bool ZrXmlReader::withinReadBudgets(const std::string& fullName) {
  const std::uint64_t limit = readTimeLimit();
  if (limit != 0 && std::chrono::steady_clock::now() >= deadline()) {
    const std::string what = "the read took longer than " + std::to_string(limit) + " milliseconds; the read stops";
    includeError(what.c_str(), fullName);
    stopRead();
    return false;
  }
  top()->releaseConsumed();
  if (m_theOptions.maxReadMemory() != 0 && heldBytes() >= m_theOptions.maxReadMemory()) {
    const std::string what =
        "the documents being read hold more than " + std::to_string(m_theOptions.maxReadMemory()) + " bytes; the read stops";
    includeError(what.c_str(), fullName);
    stopRead();
    return false;
  }
  return true;
}

void ZrXmlReader::pushInclude(const std::string& host, const std::string& fullName) {
  ++m_theIncludedDocuments;  // an attempt counts, whether the document opens or not
  std::shared_ptr<std::istream> stream;
  if (host.empty()) {
    // Looked at without being opened: opening a FIFO blocks, and a device (/dev/zero) never ends. A
    // directory holds no document and is reported like a file that does not open.
    std::error_code ignored;
    const std::filesystem::file_status status = std::filesystem::status(fullName, ignored);
    const bool directory = std::filesystem::is_directory(status);
    if (std::filesystem::exists(status) && !directory && !std::filesystem::is_regular_file(status)) {
      includeError("not a regular file; include skipped", fullName);
      return;
    }
    if (!directory) stream = std::make_shared<std::ifstream>(fullName, std::ios::in);
  } else {
    // The document may take what is left of the read's time.
    long timeLeftMs = 0;
    if (readTimeLimit() != 0) {
      const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline() - std::chrono::steady_clock::now());
      timeLeftMs = std::max<long>(1, static_cast<long>(left.count()));
    }
    stream = std::make_shared<ZrIfHttpStream>(fullName.c_str(), std::ios::in, m_theOptions.httpLimits().within(timeLeftMs));
  }
  if (!stream || stream->fail()) {
    // The stream that failed is released with the last reference to it, here.
    Zr::Print::instance().write(Zr::PrintError, "ZrXmlReader Error: not able to open file: %s\n\tIncluded by: %s\n\tLine: %d\n",
                                fullName.c_str(), filename().c_str(), lineCountOfFile());
    return;
  }
  std::istream& in = *stream;
  const std::uint64_t bytesLeft = m_theOptions.maxIncludedBytes() - includedBytes();
  const std::string includingName = filename();
  const std::int64_t includeLine = top()->lineCount();
  m_theFileReaders.emplace_back(fullName, in, std::move(stream));
  forgetTop();
  applyReadingOptions(*top());
  top()->setResumePoint(includingName, includeLine);
  top()->ZrXmlFileReader::setMaxBytes(bytesLeft);
  applyBudgets();
}

// Bytes read through includes: those of the included documents closed, and of those still open.
std::uint64_t ZrXmlReader::includedBytes() const {
  std::uint64_t bytes = m_theClosedIncludeBytes;
  for (std::size_t level = 1; level < m_theFileReaders.size(); ++level) bytes += m_theFileReaders[level].reader.bytesRead();
  return bytes;
}

// Resolves an include reference against the name of the document that holds it. A relative reference
// with a directory part is joined to the including document's directory with a backslash (for
// "dir/f.xml" in "/data/main.xml" the name is "/data\dir/f.xml"); documents that rely on this joint
// keep working. A relative reference inside a document that came over HTTP stays on that host.
void ZrXmlReader::resolveHref(const std::string& href, std::string& host, std::string& fullName) {
  std::string hrefDirectory, hrefFile;
  std::string currentHost, currentDirectory, currentFile;
  parseHref(href, host, hrefDirectory, hrefFile);
  parseHref(filename(), currentHost, currentDirectory, currentFile);

  if (!host.empty())
    currentDirectory.clear();
  else
    host = currentHost;

  const bool absolute = startsWith(hrefDirectory, "C:") || startsWith(hrefDirectory, "c:") || startsWith(hrefDirectory, "/");
  if (m_theOptions.portableIncludeReferences()) {
    if (!absolute && !currentDirectory.empty())
      hrefDirectory = hrefDirectory.empty() ? currentDirectory : currentDirectory + "/" + hrefDirectory;
    hrefDirectory = withDotsResolved(hrefDirectory);
  } else if (!absolute && !currentDirectory.empty()) {
    if (!hrefDirectory.empty()) hrefDirectory = "\\" + hrefDirectory;
    hrefDirectory = currentDirectory + hrefDirectory;
  }

  fullName.clear();
  if (!host.empty()) fullName += host + "/";
  if (!hrefDirectory.empty()) fullName += hrefDirectory == "/" ? hrefDirectory : hrefDirectory + "/";
  fullName += hrefFile;
}

void ZrXmlReader::parseHref(const std::string& href, std::string& host, std::string& directory, std::string& file) {
  host.clear();
  directory.clear();
  file.clear();
  if (startsWith(href, theHttpScheme)) {
    host = href;
    const size_t separator = href.find_first_of("\\/", theHttpSchemeLength);
    if (separator != std::string::npos) {
      file = href.substr(separator + 1);
      host.erase(separator);
    }
  } else {
    file = href;
  }
  const size_t last = file.find_last_of("\\/");
  if (last != std::string::npos) {
    directory = file.substr(0, last);
    file.erase(0, last + 1);
  }
}

// A document whose input ends while elements are still open was cut short, even where the tokenizer
// itself passes it in silence (the end came after an end tag, or one element is left open): reported
// once per document, naming the innermost open element, and so counted as a fault of the read.
void ZrXmlReader::reportTruncation(OpenDocument& document) {
  const ZrXmlFileReader& reader = document.reader;
  if (document.truncationReported || reader.openElements().empty() || !reader.atEndOfInput()) return;
  document.truncationReported = true;
  Zr::Print::instance().write(Zr::PrintError,
                              "ZrXmlReader Error: file not well formed.\n\tEnd of file before the end tag of %s.\n\tFile: "
                              "%s\n\tLine: %d\n",
                              reader.openElements().back().element.c_str(), document.reader.filename().c_str(),
                              reader.lineCountOfFile());
}

ZrBoolean ZrXmlReader::closeFileTest() {
  if (!top() || top()->ZrXmlFileReader::mode() != 0) return false;
  if (m_theFileReaders.size() < 2) return false;  // the opened document itself stays
  m_theClosedIncludeBytes += top()->ZrXmlFileReader::bytesRead();
  m_theFileReaders.pop_back();
  forgetTop();
  return true;
}

// ---- Version ---------------------------------------------------------------------------------------

// The document's major version against the code base's: a newer major makes the flag false, one two or
// more majors older is only reported. Minor and patch numbers are not compared. The flag is advisory.
ZrBoolean ZrXmlReader::checkVersion() {
  m_theVersionFlag = true;
  if (!top() || !(attributeName(ZrXml::ZrVersionToken) == ZrXml::ZrVersionToken)) return true;

  const std::string fileVersion = attributeValue(ZrXml::ZrVersionToken);
  const std::string codeVersion = ZrXml::codeBaseVersion;
  if (fileVersion == codeVersion) return true;

  const int fileMajor = majorVersion(fileVersion);
  const int codeMajor = majorVersion(codeVersion);
  if (fileMajor > codeMajor) {
    Zr::Print::instance().write(
        Zr::PrintError,
        "ZrXmlObject::checkVersion warning: Input file version (v%s) is greater than code base version (v%s).\n",
        fileVersion.c_str(), codeVersion.c_str());
    m_theVersionFlag = false;
  }
  if (codeMajor > fileMajor + 1) {
    Zr::Print::instance().write(
        Zr::PrintError,
        "ZrXmlObject::checkVersion warning: Input file version (v%s) is two versions smaller than code base version "
        "(v%s).\n",
        fileVersion.c_str(), codeVersion.c_str());
    m_theVersionFlag = true;
  }
  return m_theVersionFlag;
}
