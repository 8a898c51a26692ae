#ifndef ZR_XML_FILE_READER_H
#define ZR_XML_FILE_READER_H

#include <ZrToken.h>
#include <ZrTypes.h>

#include <boost/scoped_array.hpp>
#include <deque>
#include <istream>
#include <map>
#include <string>

// The library's own non-validating XML tokenizer: reads one document from a stream in blocks and, on
// each readXml(), advances by one event. Modes (returned by readXml() and mode()):
//   0 nothing read yet or end of input, 1 start tag, 2 end tag, 3 empty-element tag,
//   4 content together with the end tag that follows it, 5 error mode.
// Faults are printed in the frame "ZrXmlFileReader Error: %s\n\tFile: %s\n\tLine: %d\n" and reading goes on.
class ZrXmlFileReader {
 public:
  enum DEFAULT_NAMESPACE_OPTION { ELEMENT_NAMESPACE = 0, ATTRIBUTE_NAMESPACE = 1 };

  struct ElementStruct {
    ZrToken element;                                // name, prefix removed
    std::map<std::string, std::string> namespaces;  // prefix ("" for the default) -> URI, inherited plus own
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
  virtual ZrU32 contentCount() const;
  virtual ZrBoolean isContentAvailable() const;
  virtual void setContentVectorFlag(bool flag);
  virtual const std::string& filename();
  virtual int lineCountOfFile() const;
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
  const std::deque<ElementStruct>& openElements() const { return m_theElementStack; }
  const ZrToken& endTag() const { return m_theEndTag; }

 protected:
  // The members below are the tokenizer's state; the implementation may add private helpers.
  std::istream* m_theStream;
  std::string m_theFilename;
  std::deque<ElementStruct> m_theElementStack;
  std::map<ZrToken, std::string> m_theAttributes;
  ZrU32 m_theNumOfAttributes;
  mutable std::string m_theContent;  // contentByWord() takes words off its front
  ZrBoolean m_theContentVectorFlag;
  int m_theMode;
  int m_theLineCount;
  ZrToken m_theEndTag;
  ZrToken m_theWorkToken;
  std::string m_theValueBuffer;
  std::string m_theReadBuffer;
  ZrU32 m_theReadIndex;  // next unread character; all ones when the buffer is exhausted
  ZrToken m_theAttributeName;
  ZrToken m_theAttributeValue;
  std::string m_theNamespacePrefix;
  boost::scoped_array<char> m_theBlock;  // the raw read area; a copy gets a block of its own
};

#endif
