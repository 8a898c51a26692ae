#ifndef ZR_TEST_DOCUMENT_H
#define ZR_TEST_DOCUMENT_H

#include <ZrXmlReader.h>
#include <ZrXmlWriter.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace ZrTest {

// The document that object writes inside <v> (namespace urn:test), as that element's content or, when an
// attribute name is given, as the value of that attribute.
template <class Object>
std::string written(const Object& object, const std::string& attribute = "", bool writeDefaultData = true) {
  std::ostringstream out;
  ZrXmlWriter writer("doc.xml", out);
  writer.setWriteDefaultDataFlag(writeDefaultData);
  writer.writeStartTag(ZrToken("urn:test", "v"));
  if (!attribute.empty()) writer.setAttributeName(ZrToken(attribute));
  EXPECT_TRUE(object.write(writer));
  writer.writeEndTag();
  return out.str();
}

// Reads the first element of a document named "doc.xml" into object (its next attribute when asAttribute),
// hands the event that follows the read to nextMode, and reads the rest of the document away.
template <class Object>
ZrBoolean readRoot(const std::string& text, Object& object, int* nextMode = nullptr, bool asAttribute = false) {
  std::istringstream in(text);
  ZrXmlReader reader("doc.xml", in);
  reader.readXml();
  const ZrBoolean result = asAttribute ? object.readAttribute(reader) : object.read(reader);
  int mode = reader.readXml();
  if (nextMode) *nextMode = mode;
  while (mode != 0 && mode != 5) mode = reader.readXml();
  return result;
}

// A stream message without the function signature line that heads it.
inline std::string withoutSignature(const std::string& message) { return message.substr(message.find('\n') + 1); }

}  // namespace ZrTest

#endif
