#include "ZrXmlSetType.h"

#include "ZrPrint.h"
#include "ZrXmlReader.h"
#include "ZrXmlSchema.h"
#include "ZrXmlSchemaElementType.h"
#include "ZrXmlVectorType.h"
#include "ZrXmlWriter.h"

namespace {
const int startTagMode = 1;
const int emptyElementMode = 3;
}  // namespace

template <class E>
ZrXmlSetType<E>::ZrXmlSetType() = default;

template <class E>
ZrXmlSetType<E>::ZrXmlSetType(const SetContainer& elements) : m_theElements(elements) {}

template <class E>
ZrXmlSetType<E>::ZrXmlSetType(const ZrXmlSetType& other) : ZrXmlObject(other), m_theElements(other.m_theElements) {}

template <class E>
ZrXmlSetType<E>& ZrXmlSetType<E>::operator=(const ZrXmlSetType& other) {
  ZrXmlObject::operator=(other);
  m_theElements = other.m_theElements;
  return *this;
}

template <class E>
ZrXmlSetType<E>::~ZrXmlSetType() = default;

template <class E>
void ZrXmlSetType<E>::accept(ZrXmlObjectVisitor* visitor) const {
  if (visitor) visitor->visit(this);
}

template <class E>
ZrXmlObject* ZrXmlSetType<E>::clone() const {
  return new ZrXmlSetType(*this);
}

// Like the vector's reading, with one reusable element whose copies are inserted.
template <class E>
ZrBoolean ZrXmlSetType<E>::read(ZrXmlReader& reader) {
  const ZrBoolean result = ZrXmlObject::read(reader);
  if (!result) return result;
  m_theElements.clear();
  const long size = ZrXmlContainerLayout::sizeAttribute(reader);
  if (reader.mode() == emptyElementMode) return true;
  E element;
  const bool singleValues = element.isBasicType();
  long count = 0;
  for (int mode = reader.readXml(); mode == startTagMode || mode == emptyElementMode; mode = reader.readXml()) {
    if (singleValues && reader.element().tokenText() == ZrXml::ZrGroupToken.tokenText()) {
      readGroup(reader, element, count);
    } else {
      element.read(reader);
      m_theElements.insert(element);
      ++count;
    }
  }
  if (count != size)
    Zr::Print::instance().ostream(Zr::PrintSizeWarning, __PRETTY_FUNCTION__)
        << "ZrXmlSetType Error: " << "set size not equal to attribute value -- " << size << ", actual -- " << count
        << "\nFilename: " << reader.filename() << ", Line count: " << reader.lineCountOfFile() << '\n';
  return result;
}

template <class E>
void ZrXmlSetType<E>::readGroup(ZrXmlReader& reader, E& element, long& count) {
  if (!ZrXmlContainerLayout::enterGroupContent(reader, "ZrXmlSetType")) return;
  while (reader.isContentAvailable()) {
    element.read(reader);
    m_theElements.insert(element);
    ++count;
  }
  reader.setContentVectorFlag(false);
}

template <class E>
ZrBoolean ZrXmlSetType<E>::write(ZrXmlWriter& writer) const {
  const ZrBoolean result = ZrXmlObject::write(writer);
  writer.setAttributeName(ZrXml::ZrCountToken);
  ZrXmlBasicType<unsigned int>(size()).write(writer);
  bool groupOpen = false;
  for (const E& element : m_theElements) ZrXmlContainerLayout::writeElement(writer, element, groupOpen);
  if (groupOpen) writer.writeEndTag();
  return result;
}

template <class E>
ZrBoolean ZrXmlSetType<E>::writeSchema(ZrXmlSchema& schema) const {
  const ZrBoolean result = ZrXmlObject::writeSchema(schema);
  ZrXmlContainerLayout::writeSchemaLayout(schema, E());
  return result;
}

template <class E>
ZrBoolean ZrXmlSetType<E>::equality(const ZrXmlObject* other) const {
  const ZrXmlSetType* set = dynamic_cast<const ZrXmlSetType*>(other);
  return set != nullptr && *this == *set;
}

template <class E>
ZrXmlObject* ZrXmlSetType<E>::newObject() const {
  return new ZrXmlSetType();
}

template <class E>
ZrToken ZrXmlSetType<E>::token() const {
  return ZrXml::ZrSetTypeToken;
}

template <class E>
void ZrXmlSetType<E>::forEachElement(const ZrXmlObjectVisitor::ElementFunction& function) const {
  for (const E& element : m_theElements) function(ZrXml::ZrElementToken, element);
}

template <class E>
ZrXmlSetType<E> ZrXmlSetType<E>::nullObject() {
  return ZrXmlSetType();
}

template class ZrXmlSetType<ZrXmlBasicType<unsigned int>>;
