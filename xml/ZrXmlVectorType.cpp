#include "ZrXmlVectorType.h"

#include "ZrPrint.h"
#include "ZrXmlReader.h"
#include "ZrXmlSchema.h"
#include "ZrXmlSchemaElementType.h"
#include "ZrXmlWriter.h"

#include <algorithm>
#include <cstdlib>
#include <type_traits>

// Reals go the short way of ZrXmlVector::RealWriter, each after the base write that ZrXmlBasicType's
// own write begins with.
// The elements are exactly ZrXmlBasicType<double>, which keeps the base's xmlInitialized(), so the
// flag is tested directly and the base write (which only initialises) is called for new elements only.
void ZrXmlContainerLayout::writeReals(ZrXmlWriter& writer, const std::vector<ZrXmlBasicType<double>>& reals) {
  ZrXmlVector::RealWriter realWriter(writer);
  for (const ZrXmlBasicType<double>& real : reals) {
    if (!(real.flags() & ZrXmlObject::m_theXmlInitializedBit)) real.ZrXmlObject::write(writer);
    realWriter.write(real.value());
  }
}


// A tag holds one attribute per token text (the first of a name is kept), so "size" is taken by name,
// with no token made for it; whatever else the tag carries is taken and passed over.
long ZrXmlContainerLayout::sizeAttribute(ZrXmlReader& reader) {
  const ZrU32 before = reader.remainingNumOfAttributes();
  if (before == 0) return 0;
  long size = 0;
  const std::string& value = reader.attributeValue(ZrXml::ZrCountToken);
  const ZrU32 after = reader.remainingNumOfAttributes();
  if (after != before) {
    const char* first = value.c_str();
    const char* end = nullptr;
    size = ZrSTRING2LONG(first, &end);
    const bool count = end != first && size >= 0 && end == first + value.size();
    if (!count && reader.checkValues()) reader.reportFaultyValue(true, "size", value, "count of elements");
  }
  for (ZrU32 remaining = after; remaining != 0; --remaining) reader.attributeValue();
  return size;
}

unsigned long ZrXmlContainerLayout::reserveCount(long size, unsigned long elementBytes, unsigned long maxBytes) {
  if (size <= 0 || elementBytes == 0) return 0;
  return std::min(static_cast<unsigned long>(size), maxBytes / elementBytes);
}

bool ZrXmlContainerLayout::enterGroupContent(ZrXmlReader& reader, int groupMode, const char* className) {
  if (groupMode != ZrXmlMode::emptyElement && reader.readXml() == ZrXmlMode::content) {
    reader.setContentVectorFlag(true);
    return true;
  }
  Zr::Print::instance().write(Zr::PrintError, "%s Error: XML parser should be in data mode\n", className);
  return false;
}

// A string that is empty or holds white space is no word of a group: with escaped markup, whose documents
// read back exactly, it is written as an element of its own, which readers take entry for entry.
bool isWordless(const ZrXmlObject& element) {
  const ZrXmlBasicType<std::string>* text = dynamic_cast<const ZrXmlBasicType<std::string>*>(&element);
  return text && (text->value().empty() || text->value().find_first_of(" \t\n\r") != std::string::npos);
}

void ZrXmlContainerLayout::writeElement(ZrXmlWriter& writer, const ZrXmlObject& element, bool& groupOpen) {
  if (element.isBasicType() && !(writer.escapeMarkup() && isWordless(element))) {
    if (!groupOpen) writer.writeStartTagUsingParentNamespace(ZrXml::ZrGroupToken);
    groupOpen = true;
    element.write(writer);
    return;
  }
  if (groupOpen) {
    writer.writeEndTag();  // the words so far; later words open a group of their own
    groupOpen = false;
  }
  writer.writeStartTagUsingParentNamespace(ZrXml::ZrElementToken);
  element.write(writer);
  writer.writeEndTag();
}

void ZrXmlContainerLayout::writeSchemaLayout(ZrXmlSchema& schema, const ZrXmlObject& element) {
  schema.setAttributeName(ZrXml::ZrCountToken);
  schema.setType(typeid(unsigned int));
  schema.writeStartTagUsingParentNamespace(element.isBasicType() ? ZrXml::ZrGroupToken : ZrXml::ZrElementToken,
                                           ZrXmlSchemaElementType::XML_STARTTAG_OPTION);
  element.writeSchema(schema);
  schema.writeEndTag();
}

#define B(T) ZrXmlBasicType<T>
template class ZrXmlVectorType<B(bool)>;
template class ZrXmlVectorType<B(char)>;
template class ZrXmlVectorType<B(short)>;
template class ZrXmlVectorType<B(unsigned short)>;
template class ZrXmlVectorType<B(int)>;
template class ZrXmlVectorType<B(unsigned int)>;
template class ZrXmlVectorType<B(unsigned char)>;
template class ZrXmlVectorType<B(double)>;
template class ZrXmlVectorType<B(std::string)>;
template class ZrXmlVectorType<ZrXmlVector>;
template class ZrXmlVectorType<ZrXmlOrientation>;
template class ZrXmlVectorType<ZrXmlVectorVector>;
template class ZrXmlVectorType<ZrXmlPairType<B(double), B(double)>>;
template class ZrXmlVectorType<ZrXmlPairType<B(unsigned int), B(unsigned int)>>;
template class ZrXmlVectorType<ZrXmlVectorType<B(bool)>>;
template class ZrXmlVectorType<ZrXmlVectorType<B(int)>>;
template class ZrXmlVectorType<ZrXmlVectorType<B(unsigned int)>>;
template class ZrXmlVectorType<ZrXmlVectorType<B(unsigned char)>>;
template class ZrXmlVectorType<ZrXmlVectorType<B(double)>>;
template class ZrXmlVectorType<ZrXmlVectorType<ZrXmlPairType<B(unsigned int), B(unsigned int)>>>;
template class ZrXmlVectorType<ZrXmlVectorType<ZrXmlVectorVector>>;
template class ZrXmlVectorType<ZrXmlVectorType<ZrXmlVectorType<B(double)>>>;
template class ZrXmlVectorType<ZrXmlVectorType<ZrXmlVectorType<B(unsigned int)>>>;
#undef B
