#ifndef ZR_XML_FILE_READER_H
#define ZR_XML_FILE_READER_H

#include <ZrToken.h>
#include <ZrTypes.h>
#include <ZrXmlReadOptions.h>
#include <ZrXmlSpareStack.h>

#include <boost/scoped_array.hpp>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <istream>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

// The library's own non-validating XML tokenizer: reads one document from a stream in blocks and, on
// each readXml(), advances by one event. Modes (returned by readXml() and mode()):
//   0 nothing read yet or end of input, 1 start tag, 2 end tag, 3 empty-element tag,
//   4 content together with the end tag that follows it, 5 error mode.
// Faults are printed in the frame "ZrXmlFileReader Error: %s\n\tFile: %s\n\tLine: %d\n" and reading goes on.
//
// Reading. The stream is read in blocks of 16383 bytes into a block array and appended to the read
// buffer; a block is cut at its first NUL byte (reported once per block). Scans search the buffer with
// memchr from where the previous search stopped, so a tag, comment or text run spanning many blocks costs
// time linear in its size; the consumed front of the buffer is dropped once per block read. A single
// tag, comment or text run longer than defaultMaxTokenSize() is reported and ends reading, so bad input
// cannot grow memory without bound. Line feeds are counted when a line number is needed (a message, a
// block read that drops the consumed front), over what was consumed since the last count. A UTF-8 byte-order
// mark at the very start is skipped; a UTF-16 document is reported once and not read (strict mode reads it,
// see setStrict).
//
// Decisions of this implementation:
//  - Comments and declarations are skipped in a loop, and text on both sides of a comment inside an
//    element joins into one content: '<v>1 2<!-- c --> 3</v>' gives content "1 2 3" and mode 4.
//  - A white-space-only tag ('< >') starts a search for the innermost element's end tag; a second such
//    tag met during that search is reported and skipped instead of starting a nested search.
//  - nextMatchingEndTag() and getChildrenAsString() skip nested elements of the same name whole: they stop
//    at the end tag that closes the element they started on (or at an end tag of that name which closed
//    nothing, as in '<a><b></a>').
//  - nextWord() skips leading white space, takes the characters up to the next white space and removes
//    the word together with the white space after it; wordCount() counts such words.
//  - The prefix of a namespace declaration is what follows "xmlns" and one ':' ("" for "xmlns").
//  - contentByWord() and content() in vector mode take words from an offset into the content instead of
//    erasing them from its front; content() otherwise returns what remains of the content.
//  - getChildrenAsString() rebuilds the children from events: names without their prefixes, namespace
//    declarations left out, attributes in name order as name="value", content trimmed.
//
// The fast path (getAttributeValueFast() and its siblings) reads straight from the read buffer, for long
// uniform arrays such as <path size="2"><element x="1" y="2" z="3"/>...</path> read after readXml() has
// returned the start tag of <path>. Its rules:
//  - Between tags it skips white space, comments and declarations ('<!...>' other than comments included),
//    counting line feeds. It enters the next start tag ('<name'); it stops, consuming nothing, at text and
//    at an end tag, except an end tag of an element that the fast path itself left open.
//  - getAttributeValueFast() returns the next attribute value in document order, entering the next start
//    tag when the current one has no more attributes; names are not compared, but namespace declarations
//    and "xsi:" attributes are passed over. After a value, when no further attribute follows, the rest of
//    the tag is consumed: "/>" closes the element; after ">" an end tag of the same element that follows
//    (after white space or comments) is consumed as well, otherwise the element is pushed on the
//    open-element stack so that readXml() later meets its end tag consistently. It returns an empty string
//    when no value is left before text, an end tag or the end of input.
//  - getLastAttributeValueFast() is getAttributeValueFast() followed by skipping the rest of the tag.
//  - getComplexStartTagFast() enters the next start tag and returns its name; its attributes follow through
//    getAttributeValueFast(). getSimpleStartTagFast() returns the next start tag's name and consumes the
//    whole tag, pushing the element when it is not empty, so its content can be read word by word.
//  - getContentByWordFast() returns the next white-space-separated word of text (empty at a tag).
//  - getEndTagFast() skips what is left (attributes, text, comments) up to the next end tag, consumes it
//    like readXml() would (popping the element it closes) and returns its name; after a start tag that
//    closed itself with "/>" it returns that element's name without reading. It stops, returning the
//    null token, at a start tag or the end of input.
//  - Quoted values may contain '>' on this path. readXml() first finishes a tag that the fast path left
//    half read, and mode() is not changed by the fast path.
class ZrXmlWellFormednessChecker;
class ZrXmlEncodingTranscoder;

class ZrXmlFileReader {
 public:
  enum DEFAULT_NAMESPACE_OPTION { ELEMENT_NAMESPACE = 0, ATTRIBUTE_NAMESPACE = 1 };

  struct ElementStruct {
    ZrToken element;                                // name, prefix removed
    // The name of the last end tag that closed an element at this depth. Kept on the entry, which stays
    // as a spare when popped, because the names at one depth come round again: most end tags then find
    // their name already there.
    ZrToken endTag;
    // prefix ("" for the default) -> URI, the declarations this element's own tag added; those in force
    // on it (its ancestors' as well) are namespacesInForce(its index)
    std::map<std::string, std::string> namespaces;
  };

  static const ZrToken m_theNullToken;
  static const std::string m_theNullString;
  static const std::string m_schemaInstanceNamespace;

  ZrXmlFileReader();
  ZrXmlFileReader(const std::string& filename, std::istream& stream);
  ZrXmlFileReader(const ZrXmlFileReader& other);
  ZrXmlFileReader& operator=(const ZrXmlFileReader& other);
  virtual ~ZrXmlFileReader();

  virtual int readXml();
  virtual int mode() const { return m_theMode; }
  virtual const ZrToken& element() const {
    return m_theElementStack.empty() ? m_theNullToken : m_theElementStack.back().element;
  }
  virtual const ZrToken& attributeName() const;
  virtual const ZrToken& attributeName(const ZrToken& name) const;
  virtual const std::string& attributeValue();
  virtual const std::string& attributeValue(const ZrToken& name);
  virtual ZrU32 numOfAttributes() const { return m_theNumOfAttributes; }
  virtual ZrU32 remainingNumOfAttributes() const { return m_theUnreadAttributes; }
  // The start tag the last event read carried xsi:nil="true" (or "1"). The reader hands out no xsi:
  // attribute, so this is how a nil element is told from an empty one.
  bool nilElement() const { return m_theNilElement; }
  virtual std::string content() const;
  virtual std::string contentByWord() const;
  // contentByWord() without the copy: the view stays valid until the next readXml(). Empty once no
  // word is left, since a word is never empty.
  std::string_view nextContentWord() const;
  virtual ZrU32 contentCount() const;
  virtual ZrBoolean isContentAvailable() const { return m_theContentOffset < m_theContent.size(); }
  virtual void setContentVectorFlag(bool flag);
  virtual const std::string& filename();
  // The current line; past the largest int it stays at the largest int (messages print the whole count).
  virtual int lineCountOfFile() const;
  std::int64_t lineCount() const;
  // Where reading stands on its line: 1 for the line's first byte, counted in bytes.
  std::int64_t columnOfFile() const;
  // The bytes read and not yet dropped: at a document's first element, its first block.
  std::string_view bufferedText() const { return m_theReadBuffer; }
  virtual ZrBoolean nextMatchingEndTag();
  virtual std::string getChildrenAsString();
  virtual std::istream* stream() const;
  virtual void close();

  // The fast path: reads straight from the buffer, for long uniform arrays (see the implementation notes).
  virtual const ZrToken& getComplexStartTagFast();
  virtual const ZrToken& getSimpleStartTagFast();
  virtual const std::string& getAttributeValueFast();
  virtual const std::string& getLastAttributeValueFast();
  virtual const std::string& getContentByWordFast();
  virtual const ZrToken& getEndTagFast();

  virtual int nextEvent();
  virtual int tagType(std::string& tag);
  virtual ZrBoolean parseElementAndAttributes(std::string& text);
  virtual void swapNamespacePrefixWithUri(ZrToken& token, DEFAULT_NAMESPACE_OPTION option) const;
  virtual std::string nextWord(std::string& text) const;
  virtual ZrU32 wordCount(const std::string& text) const;
  virtual std::string nextQuotedToken(std::string& text) const;
  virtual ZrBoolean getLineWithLineCount(std::string& out, char delimiter, bool skip);
  virtual ZrBoolean isComment(std::string& tag);
  virtual void stripWhiteSpaceFromBounds(std::string& text) const;
  virtual void stripLeadingWhiteSpace(std::string& text) const;
  virtual void stripTrailingWhiteSpace(std::string& text) const;
  virtual void stripLeadingSlash(std::string& text) const;
  virtual void stripTrailingSlash(std::string& text) const;
  virtual void stripQuotes(std::string& text) const;
  virtual ZrBoolean isWhiteSpace(std::string& text) const;
  virtual void warnMessage(const char* what) const;

  // Read-only view of the open elements, innermost last.
  const ZrXmlSpareStack<ElementStruct>& openElements() const { return m_theElementStack; }
  // The namespace declarations in force on the open element at index (0 the outermost): its own and its
  // ancestors', a prefix keeping the first URI declared for it. Built on request.
  std::map<std::string, std::string> namespacesInForce(std::size_t index) const;
  const ZrToken& endTag() const {
    return m_theEndTagDepth ? m_theElementStack.entryAt(m_theEndTagDepth - 1).endTag : m_theEndTag;
  }
  // True once the stream is exhausted and every byte of the buffer has been consumed. readXml() can
  // return 0 before that after some faults; a caller that wants the whole document reads on until then.
  bool atEndOfInput() const;

  // Reference expansion, off by default: documents are read as the toolkit writes them, where '&' is an
  // ordinary character. With it on, content and attribute values (on both reading paths) have the five
  // predefined entities (&lt; &gt; &amp; &apos; &quot;) and decimal and hexadecimal character references
  // expanded; code points up to 255 become one byte, higher ones UTF-8. A reference that is unknown, names
  // no XML character, lacks its ';', or a '&' followed by no name is reported in the tokenizer's frame
  // and kept as literal text. Pairs with ZrXmlWriter::setEscapeMarkup.
  bool expandReferences() const { return m_theOptions.expandReferences(); }
  void setExpandReferences(bool flag) { m_theOptions.setExpandReferences(flag); }
  static bool defaultExpandReferences();
  static void setDefaultExpandReferences(bool flag);

  // Strict mode, off by default: the forgiving tokenizer described above, plus a fault report (in the
  // same frame, naming the rule broken) wherever the document is not well-formed XML 1.0 with namespaces
  // (ZrXmlWellFormednessChecker lists the rules). Strict mode also expands references as above, reads a
  // '>' inside quoted attribute values and comments as text, delivers CDATA sections as content, and
  // accepts mixed content. It applies the document's encoding: a byte-order mark or '<' next to a NUL
  // byte tells UTF-16 (either byte order), otherwise the XML declaration's encoding is taken, UTF-8 when
  // there is none; UTF-16, ISO-8859-1 and US-ASCII are decoded here, any other encoding the C library's
  // iconv knows through iconv, and an unknown one is reported and the document read as UTF-8. Content
  // and values are then handed out in UTF-8 (references to code points up to 255 still give one byte).
  // A document type declaration's internal subset is checked, and its internal general entities are
  // expanded where they are referred to (their text, as text; external entities are never fetched), up to
  // maxEntityExpansion() bytes. Events are those of the forgiving mode for every document well-formed
  // in both and written in UTF-8. The fast path is not checked. Set it before reading.
  bool strict() const { return m_theChecker != nullptr; }
  void setStrict(bool flag);

  // All reading settings at once (ZrXmlReadOptions lists them); a new file reader starts from the
  // reader's class default, ZrXmlReader::defaultOptions(), and the reader hands each document its own.
  // The class-wide accessors here forward to that default.
  const ZrXmlReadOptions& options() const { return m_theOptions; }
  void setOptions(const ZrXmlReadOptions& options);
  static bool defaultStrict();
  static void setDefaultStrict(bool flag);

  // The most bytes that entity references may bring into one document in strict mode, nested entities
  // counted at every level (default 1,000,000). A reference past it is reported once and kept as written,
  // as are all later ones, so that a few declarations that refer to each other many times over ("billion
  // laughs") cannot grow memory or time without bound.
  std::uint64_t maxEntityExpansion() const { return m_theOptions.maxEntityExpansion(); }
  void setMaxEntityExpansion(std::uint64_t bytes) { m_theOptions.setMaxEntityExpansion(bytes); }
  static std::uint64_t defaultMaxEntityExpansion();
  static void setDefaultMaxEntityExpansion(std::uint64_t bytes);

  // The deepest nesting read: a start tag that would open one element more than this is reported in the
  // tokenizer's frame and reading stops there, so that a document's nesting alone (an endless
  // "<a><a>...") cannot grow the open-element stack without bound. Default 100,000 levels, well above
  // any real document.
  std::size_t maxDepth() const { return m_theOptions.maxElementDepth(); }
  void setMaxDepth(std::size_t levels) { m_theOptions.setMaxElementDepth(levels); }
  static std::size_t defaultMaxDepth();
  static void setDefaultMaxDepth(std::size_t levels);

  // The most bytes read from the stream (0, the default, for no limit): past it the document is reported
  // as too long and reading stops. The reader gives each included document what is left of its budget.
  std::uint64_t maxBytes() const { return m_theMaxBytes; }
  void setMaxBytes(std::uint64_t bytes) { m_theMaxBytes = bytes; }
  std::uint64_t bytesRead() const { return m_theBytesRead; }

  // Budgets of a whole read, which the reader shares out among the documents it reads (ZrXmlReader's
  // setMaxReadMemory and setMaxReadMilliseconds); none by default. Memory: what this reader holds
  // (heldBytes()) together with heldElsewhere, what the documents that include it hold, may not pass
  // maxBytes. Time: nothing more is read after the deadline. Past either, the budget is reported in the
  // tokenizer's frame, naming the whole read's figure, and reading stops: budgetExhausted() says so.
  void setMemoryBudget(std::uint64_t maxBytes, std::uint64_t heldElsewhere) {
    m_theMaxHeldBytes = maxBytes;
    m_theHeldElsewhere = heldElsewhere;
  }
  void setTimeBudget(std::chrono::steady_clock::time_point deadline, std::uint64_t milliseconds) {
    m_theDeadline = deadline;
    m_theMaxReadMilliseconds = milliseconds;
  }
  bool budgetExhausted() const { return m_theBudgetExhausted; }
  // An estimate of the memory this reader holds, in bytes: its buffers, its open-element entries (as many
  // as the deepest nesting read so far: they are kept for reuse) and the namespace declarations in force.
  std::uint64_t heldBytes() const;
  // Lets go of what was read and consumed: the consumed front of the read buffer, the content, the last
  // value. The reader calls it on an including document before the included one is opened, so that a
  // chain of documents holds no more than its unread input and open elements.
  void releaseConsumed();
  // Ends reading here, in silence: the rest of the input is not read, the open elements are let go (so
  // they are not reported), and readXml() gives the end of input. The reader does so to every document
  // when a budget of the whole read runs out.
  void abandon();

  // Where reading goes on when this document is left before its end: the including document's name and
  // the line of its include element (set by the reader for an included document). A white-space-only
  // tag whose search for the end tag leaves elements open gives the end of input (mode 0), and an
  // included document ends there; its report then says that the rest of the document was skipped, from
  // which line, and where reading goes on.
  void setResumePoint(const std::string& filename, std::int64_t line) {
    m_theResumeFilename = filename;
    m_theResumeLine = line;
  }

  // A block cut by a NUL byte is reported; after this many reports the document is taken to be no text
  // (a device, a binary file) and reading stops.
  static const unsigned m_theMaxNulReports = 100;

  // The longest single tag, comment or text run that is read before reading stops with a report.
  std::size_t maxTokenSize() const { return m_theOptions.maxTokenSize(); }
  void setMaxTokenSize(std::size_t bytes) { m_theOptions.setMaxTokenSize(bytes); }
  static std::size_t defaultMaxTokenSize();
  static void setDefaultMaxTokenSize(std::size_t bytes);

 protected:
  std::istream* m_theStream;
  std::string m_theFilename;
  // Closed elements' entries are kept for the next elements opened, so going up and down allocates nothing.
  ZrXmlSpareStack<ElementStruct> m_theElementStack;
  ZrU32 m_theNumOfAttributes;
  mutable std::string m_theContent;
  mutable std::size_t m_theContentOffset;  // words before it were taken by contentByWord()
  ZrBoolean m_theContentVectorFlag;
  int m_theMode;
  // 64 bits: a document may hold more lines than an int counts. Up to date for the buffer's bytes before
  // m_theLineCountedTo; lineCount() counts the rest of what was consumed.
  mutable std::int64_t m_theLineCount;
  mutable std::size_t m_theLineCountedTo = 0;
  std::int64_t m_theColumnBase = 0;  // bytes of the current line dropped from the buffer's front
  ZrToken m_theEndTag;  // the last end tag, unless it closed an element: then on the entry at this depth
  std::size_t m_theEndTagDepth = 0;
  void setEndTag(const ZrToken& name) {
    m_theEndTag = name;
    m_theEndTagDepth = 0;
  }
  ZrToken m_theWorkToken;  // the element name while a start tag is parsed
  std::string m_theValueBuffer;
  std::string m_theReadBuffer;
  std::size_t m_theReadIndex;  // next unread character; equal to the buffer's size when all is consumed
  ZrToken m_theAttributeName;  // the attribute key while a start tag is parsed
  boost::scoped_array<char> m_theBlock;  // the raw read area; a copy gets a block of its own

 private:
  static const std::size_t npos = static_cast<std::size_t>(-1);

  ZrXmlFileReader(const std::string& filename, std::istream* stream);
  void copyFrom(const ZrXmlFileReader& other);

  // Buffer and scanning.
  bool readBlock();
  bool checkDocumentStart(std::size_t count, std::size_t& skipped);
  std::size_t findChar(char c, std::size_t from);
  std::size_t findCharSoon(char c, std::size_t from);
  bool ensureAvailable(std::size_t count);
  void consumeTo(std::size_t position);
  bool skipWhile(unsigned char charClass);
  void readUntil(unsigned char charClass, std::string& out);

  void expandReferencesIn(std::string& text, bool inAttribute = false) const;
  bool expandEntity(std::string_view name, bool inAttribute, std::string& out) const;
  bool expanding() const { return m_theOptions.expandReferences() || m_theChecker; }
  bool mayOpenElement();
  void stopReading();
  void keepColumnOfDroppedFront();
  void reportSkippedRest() const;
  bool withinMemoryBudget();
  bool withinTimeBudget();

  // Strict mode.
  void chooseEncoding(std::size_t count, std::size_t& skipped, bool utf16);
  void confirmUtf16Declaration();
  void transcodeBlock(const char* bytes, std::size_t count, bool last);
  void checkCharactersRead();
  // Whether the read buffer's characters [begin, end) may hold a ']': those not checked yet may.
  bool mayHoldBracket(std::size_t begin, std::size_t end) const {
    return begin < m_theBracketsBefore || end > m_theCheckedTo;
  }
  void warnMessageAtOffset(const char* what, std::size_t offset) const;
  std::size_t strictTagEnd(std::size_t close);
  int readCleanStartTag(std::size_t close);
  bool checkStrictMarkup(std::string_view tag, bool atDocumentStart, bool& contentRead);
  void addCdataSection(std::string_view text, bool& contentRead);
  void checkReferences(std::string_view text);

  // Events.
  void skipCommentRest(char lastChar, std::string* text);
  bool skipCommentOrDeclaration(std::string_view tag, std::string* text);
  int classifyTag(std::string_view tag);
  void checkEndTagStrictly(std::string_view tag);
  int readEndTag(std::string_view tag);
  bool parseStartTag(std::string_view text);
  void declareNamespace(std::string_view name, std::string_view uri);
  void startAttributes();
  void takeAttribute(std::string_view name, std::size_t localOffset, std::string_view value,
                     bool mayHoldReferences = true, bool distinct = false);
  // mayHoldReferences false: the caller saw no '&' in the value, which need not be looked at again.
  // distinct: the caller knows the tag's local names to differ, which need not be compared again.
  void addAttribute(std::string_view name, std::size_t localOffset, std::string_view value,
                    bool mayHoldReferences = true, bool distinct = false);
  std::string_view expandedAttributeValue(std::string_view value);
  void holdAttribute(std::string_view name, std::size_t localOffset, std::string_view value);
  void pushElement();
  void popElement();
  void withdrawDeclarations(std::map<std::string, std::string>& declarations);
  void clearAttributes();
  void keepAttributesOutOfBuffer();
  void rebaseAttributes(const ZrXmlFileReader& other);
  void buildAttributeOrder() const;
  std::size_t firstUnreadAttribute() const;
  std::size_t findUnreadAttribute(const ZrToken& name) const;
  const ZrToken& attributeToken(std::size_t index) const;
  const std::string& takeAttributeValue(std::size_t index);
  bool closesElement(const ZrToken& target, std::size_t depth) const;
  void warnFormatted(const char* format, ...) const
#if defined(__GNUC__)
      __attribute__((format(printf, 2, 3)))
#endif
      ;

  // The fast path.
  void beginFast();
  bool fastEnterStartTag();
  bool fastSkipMarkup();
  bool fastReadAttribute(bool& passedOver);
  void fastFinishTag(bool closeEmptyPair);
  bool fastCloseEndTag(bool onlyIfNamed);

  // The attributes of the current start tag, in document order, a name's later duplicates left out. Names
  // and values view the read buffer where the tag was read, so parsing a tag copies nothing; before the
  // buffer changes, what is still unread is copied into m_theAttributeText. The order by token text, which
  // the accessors hand attributes out in, and each attribute's ZrToken are built only when asked for.
  // Entries are kept from tag to tag (only the first m_theAttributeCount are in use), so their tokens'
  // strings are reused.
  struct AttributeEntry {
    std::string_view name;         // as written, prefix included
    std::string_view value;        // as written, or with its references expanded
    std::size_t localOffset = 0;   // where the token text (no namespace part, no prefix) begins in name
    ZrToken token;                 // built on first request
    bool tokenBuilt = false;
    bool taken = false;            // handed out by attributeValue()
    std::string_view local() const { return std::string_view(name.data() + localOffset, name.size() - localOffset); }
  };
  mutable std::vector<AttributeEntry> m_theAttributeEntries;
  std::size_t m_theAttributeCount = 0;
  ZrU32 m_theUnreadAttributes = 0;
  bool m_theNilElement = false;  // the tag's xsi:nil said true
  mutable std::vector<std::uint32_t> m_theAttributeOrder;  // entry indexes by token text, when built
  mutable bool m_theAttributeOrderBuilt = false;
  mutable std::size_t m_theFirstUnreadInOrder = 0;  // every entry before it in the order was taken
  bool m_theAttributesViewBuffer = false;  // some unread name or value views the read buffer
  std::string m_theAttributeText;          // names and values that no longer view the read buffer
  std::unordered_set<std::string_view> m_theAttributeLocals;  // duplicate check of tags with many attributes
  // The namespace declarations in force, outermost first, each with the depth of the element that
  // declared it; a prefix is in force once, with the first URI declared for it. Declarations come and go
  // with their elements, so closing an element takes its own off the top, and popped entries keep their
  // strings for the next: a document that declares a namespace on every record allocates nothing for it
  // once warmed up. A look-up goes along the few in force, or past theFewBindings through an index by
  // prefix, so that it costs the same however many are in force.
  struct NamespaceBinding {
    std::string prefix;
    std::string uri;
    std::size_t depth;
  };
  ZrXmlSpareStack<NamespaceBinding> m_theNamespacesInForce;
  std::unordered_map<std::string, std::size_t> m_theBindingIndex;  // prefix -> position, when indexed
  bool m_theBindingsIndexed = false;
  std::size_t boundPosition(std::string_view prefix);  // of the prefix's binding; npos for none
  void bindNamespace(std::string_view prefix, std::string_view uri);
  // The map nodes of withdrawn declarations, kept for the next ones. Not copied with the reader.
  std::vector<std::map<std::string, std::string>::node_type> m_theSpareDeclarations;
  std::string m_thePrefixKey;  // the prefix looked up in the index, kept for its capacity
  bool m_theStreamExhausted;
  bool m_theSearchingEndTag;    // inside the search that a white-space-only tag started
  bool m_theLastEndTagPopped;   // the last end tag closed the innermost element
  bool m_theFastActive;         // the fast path has read since the last readXml()
  bool m_theFastInTag;          // the fast path stands inside a start tag, after its name or a value
  bool m_theFastSelfClosed;     // the last start tag entered by the fast path ended with "/>"
  std::size_t m_theFastBaseDepth;  // stack depth when the fast path began; it closes only deeper elements
  ZrToken m_theFastElement;     // name of the start tag the fast path entered last
  std::string m_theFastName;    // attribute name being read by the fast path
  ZrXmlReadOptions m_theOptions;  // what this reader reads by; set through setOptions and the setters
  std::uint64_t m_theMaxBytes = 0;
  std::uint64_t m_theBytesRead = 0;
  unsigned m_theNulReports = 0;
  bool m_theStartRead;            // the document's first block was read and its encoding looked at
  bool m_theUnsupportedEncoding;  // the document is UTF-16: reported once, nothing read
  bool m_theMarkupSeen;           // a '<' was read: an XML declaration can no longer come
  std::unique_ptr<ZrXmlWellFormednessChecker> m_theChecker;  // in strict mode only
  std::string m_theScratch;       // passed-over text whose references strict mode checks
  bool m_theTagSuspect = true;    // the tag read last may hold '<'
  std::string m_theResumeFilename;  // the including document, for an included one
  std::int64_t m_theResumeLine = 0;
  std::uint64_t m_theMaxHeldBytes = 0;  // 0: no memory budget
  std::uint64_t m_theHeldElsewhere = 0;
  std::chrono::steady_clock::time_point m_theDeadline{};  // the epoch: no time budget
  std::uint64_t m_theMaxReadMilliseconds = 0;
  bool m_theBudgetExhausted = false;
  bool m_theFreshEntry = false;      // the element pushed last made a new stack entry
  std::uint64_t m_theEntryBytes = 0;        // the stack's entries, with their names when first pushed
  std::uint64_t m_theDeclarationBytes = 0;  // the namespace declarations in force

  std::unique_ptr<ZrXmlEncodingTranscoder> m_theTranscoder;  // strict mode, a document not in UTF-8
  std::string m_theTranscoded;    // a block in UTF-8, on its way into the read buffer
  bool m_theUtf16Unconfirmed = false;  // a UTF-16 document whose declaration is still to be compared
  std::size_t m_theCheckedTo = 0;  // the read buffer's characters before it were checked (strict mode)
  // The checked characters from this offset of the read buffer on hold no ']' (strict mode).
  std::size_t m_theBracketsBefore = 0;
  mutable std::uint64_t m_theExpandedBytes = 0;
  mutable bool m_theExpansionStopped = false;
  mutable std::string m_theExpansion;  // text whose references grew it while they were expanded

};

#endif
