#include "ZrXmlVectorType.h"

#include "ZrPrint.h"
#include "ZrXmlReader.h"
#include "ZrXmlSchema.h"
#include "ZrXmlSchemaElementType.h"
#include "ZrXmlWriter.h"

#include <algorithm>
#include <cstdlib>
#include <type_traits>

namespace {
// The single value types, whose elements read a word of a group without a string of their own.
template <class E>
struct isPlainValue : std::false_type {};
template <class T>
struct isPlainValue<ZrXmlBasicType<T>> : std::true_type {};

const int startTagMode = 1;
const int emptyElementMode = 3;
const int contentMode = 4;
const ZrU32 documentRootDepth = 1;  // a piecewise document with only its root open

// Reals go the short way of ZrXmlVector::RealWriter, each after the base write that ZrXmlBasicType's
// own write begins with.
// The elements are exactly ZrXmlBasicType<double>, which keeps the base's xmlInitialized(), so the
// flag is tested directly and the base write (which only initialises) is called for new elements only.
void writeReals(ZrXmlWriter& writer, const std::vector<ZrXmlBasicType<double>>& reals) {
  ZrXmlVector::RealWriter realWriter(writer);
  for (const ZrXmlBasicType<double>& real : reals) {
    if (!(real.flags() & ZrXmlObject::m_theXmlInitializedBit)) real.ZrXmlObject::write(writer);
    realWriter.write(real.value());
  }
}

}  // namespace

long ZrXmlContainerLayout::sizeAttribute(ZrXmlReader& reader) {
  long size = 0;
  for (ZrU32 remaining = reader.remainingNumOfAttributes(); remaining != 0; --remaining) {
    const bool isSize = reader.attributeName().tokenText() == ZrXml::ZrCountToken.tokenText();
    const std::string& value = reader.attributeValue();
    if (isSize) size = std::strtol(value.c_str(), nullptr, 10);
  }
  return size;
}

unsigned long ZrXmlContainerLayout::reserveCount(long size, unsigned long elementBytes, unsigned long maxBytes) {
  if (size <= 0 || elementBytes == 0) return 0;
  return std::min(static_cast<unsigned long>(size), maxBytes / elementBytes);
}

bool ZrXmlContainerLayout::enterGroupContent(ZrXmlReader& reader, const char* className) {
  if (reader.mode() != emptyElementMode && reader.readXml() == contentMode) {
    reader.setContentVectorFlag(true);
    return true;
  }
  Zr::Print::instance().write(Zr::PrintError, "%s Error: XML parser should be in data mode\n", className);
  return false;
}

void ZrXmlContainerLayout::writeElement(ZrXmlWriter& writer, const ZrXmlObject& element, bool& groupOpen) {
  if (element.isBasicType()) {
    if (!groupOpen) writer.writeStartTagUsingParentNamespace(ZrXml::ZrGroupToken);
    groupOpen = true;
    element.write(writer);
    return;
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

template <class E>
ZrXmlVectorType<E>::ZrXmlVectorType() = default;

template <class E>
ZrXmlVectorType<E>::ZrXmlVectorType(const VectorContainer& elements) : m_theElements(elements) {}

template <class E>
ZrXmlVectorType<E>::ZrXmlVectorType(const ZrXmlVectorType& other) : ZrXmlObject(other), m_theElements(other.m_theElements) {}

template <class E>
ZrXmlVectorType<E>& ZrXmlVectorType<E>::operator=(const ZrXmlVectorType& other) {
  ZrXmlObject::operator=(other);
  m_theElements = other.m_theElements;
  return *this;
}

template <class E>
ZrXmlVectorType<E>::~ZrXmlVectorType() = default;

template <class E>
void ZrXmlVectorType<E>::accept(ZrXmlObjectVisitor* visitor) const {
  if (visitor) visitor->visit(this);
}

template <class E>
ZrXmlObject* ZrXmlVectorType<E>::clone() const {
  return new ZrXmlVectorType(*this);
}

// Children are taken until the vector's end tag; their names are not compared, except that "group"
// holds the words of single values. For other element types a "group" child is read as one element,
// since only single values take one word each.
template <class E>
ZrBoolean ZrXmlVectorType<E>::read(ZrXmlReader& reader) {
  const ZrBoolean result = ZrXmlObject::read(reader);
  if (!result) return result;
  m_theElements.clear();
  const long size = ZrXmlContainerLayout::sizeAttribute(reader);
  m_theElements.reserve(ZrXmlContainerLayout::reserveCount(size, sizeof(E), m_theMaxReserveBytes));
  if (reader.mode() == emptyElementMode) return true;
  const bool singleValues = E().isBasicType();
  long count = 0;
  for (int mode = reader.readXml(); mode == startTagMode || mode == emptyElementMode; mode = reader.readXml()) {
    if (singleValues && reader.element().tokenText() == ZrXml::ZrGroupToken.tokenText()) {
      readGroup(reader, count);
    } else {
      m_theElements.emplace_back();
      m_theElements.back().read(reader);
      ++count;
    }
  }
  if (count != size)
    Zr::Print::instance().ostream(Zr::PrintSizeWarning, __PRETTY_FUNCTION__)
        << "ZrXmlVectorType Error: array size not equal to attribute value -- " << size << ", actual -- " << count
        << "\nFilename: " << reader.filename() << ", Line count: " << reader.lineCountOfFile() << '\n';
  return result;
}

// Each single value takes the next word of the group's content. The plain value types read the whole
// group in one call (a string per word and a virtual read per element cost more than the number
// itself); each element ends up as its read() would leave it.
template <class E>
void ZrXmlVectorType<E>::readGroup(ZrXmlReader& reader, long& count) {
  if (!ZrXmlContainerLayout::enterGroupContent(reader, "ZrXmlVectorType")) return;
  if constexpr (isPlainValue<E>::value) {
    count += E::readWords(reader, m_theElements);
  } else {
    while (reader.isContentAvailable()) {
      m_theElements.emplace_back();
      m_theElements.back().read(reader);
      ++count;
    }
  }
  reader.setContentVectorFlag(false);
}

template <class E>
ZrBoolean ZrXmlVectorType<E>::write(ZrXmlWriter& writer) const {
  const ZrBoolean result = ZrXmlObject::write(writer);
  writer.setAttributeName(ZrXml::ZrCountToken);
  ZrXmlBasicType<unsigned int>(size()).write(writer);
  writeElements(writer, true);
  return result;
}

template <class E>
void ZrXmlVectorType<E>::writeElements(ZrXmlWriter& writer, bool closeGroup) const {
  if constexpr (std::is_same<E, ZrXmlBasicType<double>>::value) {
    if (m_theElements.empty()) return;
    writer.writeStartTagUsingParentNamespace(ZrXml::ZrGroupToken);
    writeReals(writer, m_theElements);
    if (closeGroup) writer.writeEndTag();
    return;
  }
  bool groupOpen = false;
  for (const E& element : m_theElements) ZrXmlContainerLayout::writeElement(writer, element, groupOpen);
  if (groupOpen && closeGroup) writer.writeEndTag();
}


template <class E>
ZrBoolean ZrXmlVectorType<E>::writeSchema(ZrXmlSchema& schema) const {
  const ZrBoolean result = ZrXmlObject::writeSchema(schema);
  ZrXmlContainerLayout::writeSchemaLayout(schema, E());
  return result;
}

template <class E>
ZrBoolean ZrXmlVectorType<E>::equality(const ZrXmlObject* other) const {
  const ZrXmlVectorType* vector = dynamic_cast<const ZrXmlVectorType*>(other);
  return vector != nullptr && *this == *vector;
}

template <class E>
ZrXmlObject* ZrXmlVectorType<E>::newObject() const {
  return new ZrXmlVectorType();
}

template <class E>
ZrToken ZrXmlVectorType<E>::token() const {
  return ZrXml::ZrVectorTypeToken;
}

template <class E>
void ZrXmlVectorType<E>::pushBack(const E& element) {
  m_theElements.push_back(element);
}

template <class E>
ZrBoolean ZrXmlVectorType<E>::erase(ZrU32 index) {
  if (index >= size()) {
    Zr::Print::instance().ostream(Zr::PrintError, __PRETTY_FUNCTION__)
        << "ZrXmlVectorType<ElementType>::erase(): index (" << index << ") exceeds vector size (" << size() << ").\n";
    return false;
  }
  m_theElements.erase(m_theElements.begin() + index);
  return true;
}

// The blank after the parenthesis in the size message is part of its established text.
template <class E>
ZrBoolean ZrXmlVectorType<E>::erase(ZrU32 first, ZrU32 last) {
  if (last > size()) {
    Zr::Print::instance().ostream(Zr::PrintError, __PRETTY_FUNCTION__)
        << "index (" << last << ") exceeds vector size ( " << size() << ").\n";
    return false;
  }
  if (first > last) {
    Zr::Print::instance().ostream(Zr::PrintError, __PRETTY_FUNCTION__)
        << "first (" << first << ") is bigger than last (" << last << ").\n";
    return false;
  }
  m_theElements.erase(m_theElements.begin() + first, m_theElements.begin() + last);
  return true;
}

template <class E>
const typename ZrXmlVectorType<E>::VectorContainer& ZrXmlVectorType<E>::vectorContainer() const {
  return m_theElements;
}

template <class E>
typename ZrXmlVectorType<E>::VectorContainer& ZrXmlVectorType<E>::vectorContainer() {
  return m_theElements;
}

template <class E>
void ZrXmlVectorType<E>::reserve(ZrU32 count) {
  m_theElements.reserve(count);
}

template <class E>
void ZrXmlVectorType<E>::resize(ZrU32 count) {
  m_theElements.resize(count);
}

template <class E>
void ZrXmlVectorType<E>::resizeToAtLeast(ZrU32 count) {
  if (m_theElements.size() < count) m_theElements.resize(count);
}

template <class E>
void ZrXmlVectorType<E>::clear() {
  m_theElements.clear();
}

template <class E>
void ZrXmlVectorType<E>::assign(ZrU32 count, const E& element) {
  m_theElements.assign(count, element);
}

template <class E>
ZrU32 ZrXmlVectorType<E>::size() const {
  return static_cast<ZrU32>(m_theElements.size());
}

template <class E>
void ZrXmlVectorType<E>::leftRotate(ZrU32 count) {
  if (m_theElements.empty()) return;
  std::rotate(m_theElements.begin(), m_theElements.begin() + count % m_theElements.size(), m_theElements.end());
}

template <class E>
ZrBoolean ZrXmlVectorType<E>::writeHeaderToStream(std::ostream& out, ZrXmlWriter*& writer, const std::string& filename,
                                                  const ZrToken& token) const {
  writer = new ZrXmlWriter(filename, out);
  writer->header(token, token.namespaceText());
  const ZrBoolean result = ZrXmlObject::write(*writer);
  writer->setAttributeName(ZrXml::ZrCountToken);
  ZrXmlBasicType<unsigned int>(size()).write(*writer);
  return result;
}

// The group of single values stays open: appended values join it, and the footer closes it.
template <class E>
ZrBoolean ZrXmlVectorType<E>::writeBodyToStream(ZrXmlWriter* writer) const {
  if (!writer) return false;
  writeElements(*writer, false);
  return true;
}

template <class E>
ZrBoolean ZrXmlVectorType<E>::appendElementToStream(ZrXmlWriter* writer, const E& element) const {
  if (!writer) return false;
  bool groupOpen = writer->depth() > documentRootDepth;  // the group is the only child a document's root holds open
  ZrXmlContainerLayout::writeElement(*writer, element, groupOpen);
  return true;
}

template <class E>
ZrBoolean ZrXmlVectorType<E>::writeFooterToStream(ZrXmlWriter*& writer) const {
  if (!writer) return false;
  while (writer->depth() != 0) writer->writeEndTag();  // an open group, then the root
  delete writer;
  writer = nullptr;
  return true;
}

template <class E>
void ZrXmlVectorType<E>::append(const ZrXmlVectorType& other) {
  m_theElements.insert(m_theElements.end(), other.m_theElements.begin(), other.m_theElements.end());
}

template <class E>
void ZrXmlVectorType<E>::forEachElement(const ZrXmlObjectVisitor::ElementFunction& function) const {
  for (const E& element : m_theElements) function(ZrXml::ZrElementToken, element);
}

template <class E>
ZrXmlVectorType<E> ZrXmlVectorType<E>::nullObject() {
  return ZrXmlVectorType();
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
