#ifndef ZR_XML_READER_H
#define ZR_XML_READER_H

#include <ZrToken.h>
#include <ZrPrint.h>
#include <pthread.h>
#include <ZrTypes.h>
#include <ZrXmlFault.h>
#include <ZrXmlFileReader.h>
#include <ZrXmlReadOptions.h>

#include <chrono>
#include <cstdint>
#include <deque>
#include <istream>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class ZrBaseXmlFactory;
class ZrXmlObject;

// The values readXml() and mode() return: the kind of item the reader stands on.
namespace ZrXmlMode {
constexpr int endOfInput = 0;
constexpr int startTag = 1;
constexpr int endTag = 2;
constexpr int emptyElement = 3;  // a start tag that is also its end tag
constexpr int content = 4;       // content, up to and with its end tag
constexpr int error = 5;
}  // namespace ZrXmlMode

// The reader every object reads itself from. It keeps a stack of file readers so that include
// elements (<ZrInclude type="simple" href="..."/>) pull in other files or HTTP references
// transparently, checks each document's root "version" attribute once, and owns the factory through
// which objects are created by element name while reading. Every query goes to the file reader on top.
//
// An include that cannot be followed (faulty attributes, a document that does not open, a limit below)
// is reported and skipped, and reading goes on after the include element in the including document;
// the message about a document that does not open names the resolved full name. An include element
// written with content and an end tag is skipped up to that end tag, so that the element never shows.
//
// Copies: a copy goes on from the same position. It shares the reader's factory and the streams of
// included documents still open (see the members below); neither is ever deleted twice.
class ZrXmlReader {
 public:
  typedef ZrXmlObject* (*Creator)();

  static const ZrU32 m_theDefaultMaxIncludeDepth = 64;
  // Objects read their children by calling the children's read, so a document can drive the recursion
  // as deep as it nests recursive models (trees of nodes). Past this many levels the element is
  // reported and skipped, well before the stack runs out (also in sanitized builds).
  static const ZrU32 m_theDefaultMaxObjectDepth = 1000;

  ZrXmlReader();
  ZrXmlReader(const std::string& filename, std::istream& stream);
  ZrXmlReader(const ZrXmlReader& other);
  ZrXmlReader& operator=(const ZrXmlReader& other);
  virtual ~ZrXmlReader();

  virtual void open(const std::string& filename, std::istream& stream);
  virtual int readXml();
  virtual ZrBoolean versionFlag() const;

  virtual int mode() const;
  virtual const ZrToken& element() const;
  virtual const ZrToken& attributeName() const;
  virtual const ZrToken& attributeName(const ZrToken& name) const;
  virtual const std::string& attributeValue();
  virtual const std::string& attributeValue(const ZrToken& name);
  virtual ZrU32 numOfAttributes() const;
  virtual ZrU32 remainingNumOfAttributes() const;
  virtual std::string content() const;
  virtual std::string contentByWord() const;
  // The next word of the content as a view that stays valid until the next readXml(); empty when no
  // word is left. Long arrays of single values are read through it, a word at a time without a copy.
  virtual std::string_view nextContentWord() const;
  virtual ZrU32 contentCount() const;
  virtual ZrBoolean isContentAvailable() const;
  virtual void setContentVectorFlag(bool flag);
  virtual const std::string& filename();
  virtual int lineCountOfFile() const;
  virtual ZrBoolean nextMatchingEndTag();
  virtual std::string getChildrenAsString();
  virtual std::istream* stream() const;
  virtual const ZrToken& getComplexStartTagFast();
  virtual const ZrToken& getSimpleStartTagFast();
  virtual const std::string& getAttributeValueFast();
  virtual const std::string& getLastAttributeValueFast();
  virtual const std::string& getContentByWordFast();
  virtual const ZrToken& getEndTagFast();

  virtual void setFactoryPointer(ZrBaseXmlFactory* factory);
  virtual ZrBaseXmlFactory* factoryPointer() const;
  virtual ZrBoolean registerComponentCreator(const ZrToken& token, Creator creator);

  virtual ZrBoolean openFileTest();
  virtual ZrBoolean closeFileTest();
  virtual void parseHref(const std::string& href, std::string& host, std::string& directory, std::string& file);
  virtual ZrBoolean checkVersion();
  virtual ZrBaseXmlFactory* newFactory() const;

  // All reading settings at once (ZrXmlReadOptions lists them with their values and names the two
  // profiles). The reader hands them to every document it reads, included ones too, and to the HTTP
  // streams it opens. New readers start from the class default; set it before readers are made on other
  // threads. A copy of the reader copies them. The setters below forward to the value.
  const ZrXmlReadOptions& options() const { return m_theOptions; }
  void setOptions(const ZrXmlReadOptions& options);
  static const ZrXmlReadOptions& defaultOptions();
  static void setDefaultOptions(const ZrXmlReadOptions& options);

  // Safety limits for documents that include others. An include that would open more nested included
  // documents than the depth limit, or a document that is already open on the stack (a document that
  // includes itself, directly or through others), is reported and skipped. With HTTP includes switched
  // off, an include that resolves to an HTTP reference is reported and skipped.
  void setMaxIncludeDepth(ZrU32 depth) { setOptions(ZrXmlReadOptions(m_theOptions).setMaxIncludeDepth(depth)); }
  ZrU32 maxIncludeDepth() const { return m_theOptions.maxIncludeDepth(); }
  // The budget of one reader's includes, counted from open(): at most this many included documents
  // (default 10,000) and this many bytes read through them (default 4 GiB). An include past either is
  // reported and skipped, and an included document that runs past the bytes left is cut there with a
  // report, so that documents including each other many times over cannot keep a reader busy for ever.
  // Only regular files and HTTP documents are included: anything else (a device, a FIFO, a directory) is
  // refused without being opened.
  void setMaxIncludedDocuments(ZrU32 count) { setOptions(ZrXmlReadOptions(m_theOptions).setMaxIncludedDocuments(count)); }
  ZrU32 maxIncludedDocuments() const { return m_theOptions.maxIncludedDocuments(); }
  void setMaxIncludedBytes(std::uint64_t bytes) { setOptions(ZrXmlReadOptions(m_theOptions).setMaxIncludedBytes(bytes)); }
  std::uint64_t maxIncludedBytes() const { return m_theOptions.maxIncludedBytes(); }
  static ZrU32 defaultMaxIncludedDocuments() { return defaultOptions().maxIncludedDocuments(); }
  static void setDefaultMaxIncludedDocuments(ZrU32 count);
  static std::uint64_t defaultMaxIncludedBytes() { return defaultOptions().maxIncludedBytes(); }
  static void setDefaultMaxIncludedBytes(std::uint64_t bytes);
  // Include attempts since open(): every include that passed the limits above and was tried, whether
  // its document opened or not (a missing file, a server that does not answer), counts against the
  // included-documents budget.
  ZrU32 includedDocuments() const { return m_theIncludedDocuments; }

  // The budgets of a whole read, counted from construction or open(). Memory: the documents being read
  // may hold at most this many bytes at once (an estimate: their buffers, open elements and namespace
  // declarations; default 1 GiB, 0 for none); an including document lets go of what it has consumed
  // before its include is opened. Time: a read ends after this many milliseconds (default none), and a
  // read that takes a document over HTTP (the opened one or an include) after the HTTP figure (default
  // 30 minutes, 0 for none); each HTTP document is given only the time left. Past either, the budget is
  // reported with file and line and the read stops: every document ends, and readXml() gives the end of
  // input (readStopped() tells).
  void setMaxReadMemory(std::uint64_t bytes) { setOptions(ZrXmlReadOptions(m_theOptions).setMaxReadMemory(bytes)); }
  std::uint64_t maxReadMemory() const { return m_theOptions.maxReadMemory(); }
  static std::uint64_t defaultMaxReadMemory() { return defaultOptions().maxReadMemory(); }
  static void setDefaultMaxReadMemory(std::uint64_t bytes);
  void setMaxReadMilliseconds(std::uint64_t milliseconds) {
    setOptions(ZrXmlReadOptions(m_theOptions).setMaxReadMilliseconds(milliseconds));
  }
  std::uint64_t maxReadMilliseconds() const { return m_theOptions.maxReadMilliseconds(); }
  static std::uint64_t defaultMaxReadMilliseconds() { return defaultOptions().maxReadMilliseconds(); }
  static void setDefaultMaxReadMilliseconds(std::uint64_t milliseconds);
  void setMaxHttpReadMilliseconds(std::uint64_t milliseconds) {
    setOptions(ZrXmlReadOptions(m_theOptions).setMaxHttpReadMilliseconds(milliseconds));
  }
  std::uint64_t maxHttpReadMilliseconds() const { return m_theOptions.maxHttpReadMilliseconds(); }
  static std::uint64_t defaultMaxHttpReadMilliseconds() { return defaultOptions().maxHttpReadMilliseconds(); }
  static void setDefaultMaxHttpReadMilliseconds(std::uint64_t milliseconds);
  bool readStopped() const { return m_theReadStopped; }
  // What the documents being read hold now (the estimate the memory budget is measured by).
  std::uint64_t heldBytes() const;
  void setHttpIncludesAllowed(bool allowed) { setOptions(ZrXmlReadOptions(m_theOptions).setHttpIncludesAllowed(allowed)); }
  bool httpIncludesAllowed() const { return m_theOptions.httpIncludesAllowed(); }
  // A program that must never reach the network (a fuzzer, a sandboxed tool) switches HTTP includes off
  // here once, before any reader is made.
  static bool defaultHttpIncludesAllowed() { return defaultOptions().httpIncludesAllowed(); }
  static void setDefaultHttpIncludesAllowed(bool allowed);
  ZrU32 depth() const { return static_cast<ZrU32>(m_theFileReaders.size()); }

  // Reference expansion and strict mode in every document this reader reads, included ones too (see
  // ZrXmlFileReader::setExpandReferences and setStrict). Set them before reading.
  void setExpandReferences(bool flag);
  bool expandReferences() const { return m_theOptions.expandReferences(); }
  void setStrict(bool flag);
  bool strict() const { return m_theOptions.strict(); }

  // Checked values (off by default): every value whose text is not a whole value of its type is
  // reported and counted as a fault; what is stored stays what the forgiving conversion gives.
  void setCheckValues(bool flag) { setOptions(ZrXmlReadOptions(m_theOptions).setCheckValues(flag)); }
  bool checkValues() const { return m_theOptions.checkValues(); }
  static bool defaultCheckValues() { return defaultOptions().checkValues(); }
  static void setDefaultCheckValues(bool flag);
  // The report of a checked value: the element or attribute, the text, and what it should have been.
  void reportFaultyValue(bool attribute, const std::string& name, const std::string& text, const char* typeName);
  // Portable include references (off by default): a relative reference is joined to the including
  // document's directory with "/" and its "." and ".." resolved, whatever the including document was
  // called. Off, the toolkit's joint applies.
  void setPortableIncludeReferences(bool flag) { setOptions(ZrXmlReadOptions(m_theOptions).setPortableIncludeReferences(flag)); }
  bool portableIncludeReferences() const { return m_theOptions.portableIncludeReferences(); }
  static bool defaultPortableIncludeReferences() { return defaultOptions().portableIncludeReferences(); }
  static void setDefaultPortableIncludeReferences(bool flag);

  // Nesting of objects being read. A compound calls enterObject() before reading its children and,
  // when it returned true, leaveObject() after them; when it returned false the limit was reached, the
  // element has been reported and skipped to its end tag, and the compound reads nothing more.
  void setMaxObjectDepth(ZrU32 depth) { setOptions(ZrXmlReadOptions(m_theOptions).setMaxObjectDepth(depth)); }
  ZrU32 maxObjectDepth() const { return m_theOptions.maxObjectDepth(); }
  ZrBoolean enterObject();
  void leaveObject() {
    if (m_theObjectDepth > 0) --m_theObjectDepth;
  }
  // A token kept for the object being read at the current depth: a compound copies each child's or
  // attribute's name into it, and the copy reuses the token's storage from name to name. Nested objects
  // read at greater depths, so a compound's token stays as it set it while its child reads.
  enum NameSlot { CHILD_NAME = 0, ATTRIBUTE_NAME = 1 };
  ZrToken& nameSlot(NameSlot slot) {
    const std::size_t index = 2 * static_cast<std::size_t>(m_theObjectDepth) + slot;
    while (m_theNameSlots.size() <= index) m_theNameSlots.emplace_back();
    return m_theNameSlots[index];
  }

  // Faults of the document being read: every report that the tokenizer, the reader, included documents,
  // objects and containers print (print types 3 to 5) while this reader is the one reading is counted and
  // recorded, with the document it is in and where reading stood. A report's detail lines printed as
  // messages of their own (beginning with a tab) belong to it and are not counted again. The reader that
  // is reading is the one built on a document, opened or advanced last on the calling thread: readers on
  // other threads keep their own faults. Reports printed after the document was read (by objects, by the
  // documents' end checks in finish() or the destructor), while no other reader has read on the thread
  // since, count here too. open() clears them. Anything that reports a fault without printing it (or
  // prints it elsewhere) counts it through noteFault, the one place every counted fault goes through.
  //
  // At most maxPrintedFaults() faults of one read are printed (default 1000, a read setting); later ones
  // are counted and recorded only, and finish() says in one line how many were left out. The first
  // m_theMaxFaultRecords faults are recorded; a document of millions of faults is counted beyond them, so
  // that the records cannot outgrow the document.
  static const std::size_t m_theMaxFaultRecords = 100000;
  ZrU32 faultCount() const { return m_theFaultCount; }
  const std::string& lastFault() const { return m_theLastFault; }
  const std::vector<ZrXmlFault>& faults() const { return m_theFaults; }
  virtual void noteFault(int printType, const std::string& message);
  void setMaxPrintedFaults(ZrU32 count) { setOptions(ZrXmlReadOptions(m_theOptions).setMaxPrintedFaults(count)); }
  ZrU32 maxPrintedFaults() const { return m_theOptions.maxPrintedFaults(); }
  static ZrU32 defaultMaxPrintedFaults() { return defaultOptions().maxPrintedFaults(); }
  static void setDefaultMaxPrintedFaults(ZrU32 count);

  // Ends the read: closes every open document (their end checks report unclosed elements and unused
  // attributes, recorded here) and says how many faults were not printed. Reading after it reads
  // nothing; the destructor calls it.
  void finish();

  // The file reader of the document being read (null before open), for tools that show where they
  // stand: its open elements, last end tag, and whether its input has run out.
  const ZrXmlFileReader* currentFileReader() const { return top(); }

 private:
  // One open document. The stream of an included document belongs to the reader; it is shared by
  // the reader's copies (a copy goes on reading the same open streams) and released when the last
  // of them lets go of the document. The caller's stream of the opened document is never owned.
  struct OpenDocument {
    OpenDocument(const std::string& filename, std::istream& stream, std::shared_ptr<std::istream> owned)
        : ownedStream(std::move(owned)), reader(filename, stream) {}
    std::shared_ptr<std::istream> ownedStream;  // declared first: the file reader goes before its stream
    ZrXmlFileReader reader;
    bool truncationReported = false;
  };

  void reportTruncation(OpenDocument& document);

  // The file reader on top of the stack, or null. Every query asks for it, so it is kept beside the
  // stack: a copy of the reader starts without it and finds its own on first use, and every push and pop
  // forgets it.
  struct TopReader {
    ZrXmlFileReader* reader = nullptr;
    TopReader() = default;
    TopReader(const TopReader&) {}
    TopReader& operator=(const TopReader&) {
      reader = nullptr;
      return *this;
    }
  };
  ZrXmlFileReader* top() const {
    if (!m_theTop.reader && !m_theFileReaders.empty())
      m_theTop.reader = const_cast<ZrXmlFileReader*>(&m_theFileReaders.back().reader);
    return m_theTop.reader;
  }
  void forgetTop() { m_theTop.reader = nullptr; }
  bool isOrdinaryItem(int mode);
  static const ZrToken& includeToken();
  void followInclude(int currentMode);
  void resolveHref(const std::string& href, std::string& host, std::string& fullName);
  bool mayOpenInclude(const std::string& host, const std::string& fullName);
  void pushInclude(const std::string& host, const std::string& fullName);
  void includeError(const char* what, const std::string& name);
  // Makes this reader the one whose faults the print facility reports to on the calling thread.
  void becomeReadingReader();
  void raiseWatcher();
  // Hears every message printed on the thread while this reader is the one reading; says whether it is
  // printed.
  class FaultWatcher : public Zr::PrintWatcher {
   public:
    explicit FaultWatcher(ZrXmlReader& reader) : m_theReader(&reader) {}
    FaultWatcher(const FaultWatcher&) = delete;
    bool observe(int printType, const std::string& message) override;
   private:
    ZrXmlReader* m_theReader;
  };
  bool takeNoteOf(int printType, const std::string& message);
  void noticeEscapedText();
  bool m_theSayingNotice = false;  // a notice is printed: no fault
  void sayUnprintedFaults();

  std::deque<OpenDocument> m_theFileReaders;  // bottom: the opened document; top: answers every query
  mutable TopReader m_theTop;
  // Whether openFileTest and closeFileTest are this class's own (1) or a derived reader's (0); -1 until
  // the first item is read, when the reader's own class is known. A copy finds out for itself: it may be
  // the base part of a derived reader.
  struct OwnIncludeTests {
    signed char known = -1;
    OwnIncludeTests() = default;
    OwnIncludeTests(const OwnIncludeTests&) {}
    OwnIncludeTests& operator=(const OwnIncludeTests&) { return *this; }  // the reader's class stays
  };
  OwnIncludeTests m_theOwnIncludeTests;
  bool m_theVersionCheckPending;
  bool m_theVersionFlag;
  // Copies share the factory: the last reader holding it deletes it, so no copy ever deletes a factory
  // another still uses. setFactoryPointer on one copy replaces the factory of that copy only.
  std::shared_ptr<ZrBaseXmlFactory> m_theFactory;
  ZrXmlReadOptions m_theOptions;
  void applyReadingOptions(ZrXmlFileReader& reader) const;

  ZrU32 m_theObjectDepth = 0;
  std::deque<ZrToken> m_theNameSlots;  // two per object depth; a deque keeps each where it is
  ZrU32 m_theFaultCount = 0;
  std::string m_theLastFault;
  std::vector<ZrXmlFault> m_theFaults;
  ZrU32 m_theUnprintedFaults = 0;
  bool m_thePrintingReport = true;  // the last report was printed: its detail lines follow it
  // Each reader (a copy too) watches for itself; made on first need, so that a reader that never reads
  // costs nothing.
  struct OwnWatcher {
    std::unique_ptr<FaultWatcher> watcher;
    // The watcher was found innermost on this thread at this epoch of the print facility.
    std::uint64_t epoch = ~std::uint64_t(0);
    pthread_t thread{};
    OwnWatcher() = default;
    OwnWatcher(const OwnWatcher&) {}
    OwnWatcher& operator=(const OwnWatcher&) { return *this; }
  };
  OwnWatcher m_theWatcher;

  std::uint64_t includedBytes() const;
  void startRead(std::istream& stream);
  std::uint64_t readTimeLimit() const;
  std::chrono::steady_clock::time_point deadline() const;
  void applyBudgets();
  bool withinReadBudgets(const std::string& fullName);
  void stopRead();

  std::chrono::steady_clock::time_point m_theReadStart = std::chrono::steady_clock::now();
  bool m_theHttpRead = false;     // a document of this read came over HTTP
  bool m_theReadStopped = false;  // a budget of the read ran out

  ZrU32 m_theIncludedDocuments = 0;       // opened since open()
  std::uint64_t m_theClosedIncludeBytes = 0;  // read from included documents already closed
};

#endif
