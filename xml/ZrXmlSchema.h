#ifndef ZR_XML_SCHEMA_H
#define ZR_XML_SCHEMA_H

#include <ZrToken.h>
#include <ZrTypes.h>

#include <string>
#include <typeinfo>

// Builds a description of a document's elements and types from the same calls that the writer
// receives, and writes it as XML Schema text. Start-tag options: 1 for an element of a sequence,
// 0 for an element of a choice (the children of a variable compound).
class ZrXmlSchema {
 public:
  ZrXmlSchema();
  ZrXmlSchema(const ZrXmlSchema& other);
  ZrXmlSchema& operator=(const ZrXmlSchema& other);
  virtual ~ZrXmlSchema();

  virtual void writeStartTag(const ZrToken& token, int option);
  virtual void writeStartTagUsingParentNamespace(const ZrToken& token, int option);
  virtual void setAttributeName(const ZrToken& token);
  virtual void setType(const std::type_info& info);
  virtual void writeEndTag();
  virtual void openGroup();
  virtual void closeGroup();
  virtual ZrBoolean isRegistered(const ZrToken& token, const std::string& typeName);
  virtual ZrBoolean write(std::string filename);
};

#endif
