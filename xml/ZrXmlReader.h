#ifndef ZR_XML_READER_H
#define ZR_XML_READER_H

#include <ZrToken.h>
#include <ZrTypes.h>
#include <ZrXmlFileReader.h>

#include <deque>
#include <istream>
#include <string>

class ZrBaseXmlFactory;
class ZrXmlObject;

// The reader every object reads itself from. It keeps a stack of file readers so that include
// elements (<ZrInclude type="simple" href="..."/>) pull in other files or HTTP references
// transparently, checks each document's root "version" attribute once, and owns the factory through
// which objects are created by element name while reading. Every query goes to the file reader on top.
class ZrXmlReader {
 public:
  typedef ZrXmlObject* (*Creator)();

  static const ZrU32 m_theDefaultMaxIncludeDepth = 64;

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

  // Safety limits for documents that include others.
  void setMaxIncludeDepth(ZrU32 depth) { m_theMaxIncludeDepth = depth; }
  ZrU32 maxIncludeDepth() const { return m_theMaxIncludeDepth; }
  void setHttpIncludesAllowed(bool allowed) { m_theHttpIncludesAllowed = allowed; }
  bool httpIncludesAllowed() const { return m_theHttpIncludesAllowed; }
  ZrU32 depth() const { return static_cast<ZrU32>(m_theFileReaders.size()); }

 private:
  std::deque<ZrXmlFileReader> m_theFileReaders;
  bool m_theVersionCheckPending;
  bool m_theVersionFlag;
  ZrBaseXmlFactory* m_theFactory;
  ZrU32 m_theMaxIncludeDepth;
  bool m_theHttpIncludesAllowed;
};

#endif
