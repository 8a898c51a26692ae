#ifndef ZR_XML_SET_TYPE_H
#define ZR_XML_SET_TYPE_H

#include <ZrPrint.h>
#include <ZrXmlBasicType.h>
#include <ZrXmlObject.h>
#include <ZrXmlObjectVisitor.h>
#include <ZrXmlReader.h>
#include <ZrXmlSchema.h>
#include <ZrXmlSchemaElementType.h>
#include <ZrXmlVectorType.h>
#include <ZrXmlWriter.h>

#include <algorithm>
#include <initializer_list>
#include <set>
#include <type_traits>
#include <utility>

// A sorted set of XML objects without duplicates, in the document laid out like a vector: the
// element count in "size", single values as the words of one "group" child, other elements as one
// "element" child each:
//   <stations size="3"><group>4 7 12</group></stations>
// Each element read is inserted by copy, so a duplicate is dropped silently but still counted: the
// count compared with "size" is the number of elements in the document, not in the set.
//
// The members are compiled into the library (and declared extern below) for B<unsigned int>
// (B<T> = ZrXmlBasicType<T>); any other element type that is a ZrXmlObject with < instantiates from this
// header.
template <class E>
class ZrXmlSetType : public ZrXmlObject {
 public:
  static_assert(std::is_base_of<ZrXmlObject, E>::value,
                "ZrXmlSetType<E>: the element type E must derive from ZrXmlObject (a value, container or compound class)");
  static_assert(std::is_default_constructible<E>::value && std::is_copy_assignable<E>::value,
                "ZrXmlSetType<E>: the element type E must be default constructible and copyable (reading makes new "
                "elements; a class that derives from ZrXmlObject must override clone, newObject, equality and token)");

  typedef E ElementType;
  typedef std::set<E> SetContainer;

  ZrXmlSetType();
  ZrXmlSetType(const SetContainer& elements);  // NOLINT: implicit, so that members can be initialised from sets
  // The elements made from plain values (or objects); a repeated value is kept once.
  ZrXmlSetType(std::initializer_list<typename ZrXmlPlainValue<E>::type> values);
  ZrXmlSetType(const ZrXmlSetType& other);
  ZrXmlSetType(ZrXmlSetType&& other) noexcept(std::is_nothrow_move_constructible<SetContainer>::value);
  ZrXmlSetType& operator=(const ZrXmlSetType& other);
  ~ZrXmlSetType() override;

  void accept(ZrXmlObjectVisitor* visitor) const override;
  ZrXmlObject* clone() const override;
  ZrBoolean read(ZrXmlReader& reader) override;
  ZrBoolean write(ZrXmlWriter& writer) const override;
  ZrBoolean writeSchema(ZrXmlSchema& schema) const override;
  ZrBoolean equality(const ZrXmlObject* other) const override;
  ZrXmlObject* newObject() const override;
  ZrToken token() const override;

  const SetContainer& setContainer() const { return m_theElements; }
  SetContainer& setContainer() { return m_theElements; }
  // False when an equal element was already there.
  bool insert(const E& element) { return m_theElements.insert(element).second; }
  // False when no equal element was there.
  bool erase(const E& element) { return m_theElements.erase(element) != 0; }
  bool contains(const E& element) const { return m_theElements.count(element) != 0; }
  ZrU32 size() const { return static_cast<ZrU32>(m_theElements.size()); }
  bool empty() const { return m_theElements.empty(); }
  void clear() { m_theElements.clear(); }

  bool operator==(const ZrXmlSetType& other) const {
    return std::equal(m_theElements.begin(), m_theElements.end(), other.m_theElements.begin(), other.m_theElements.end(),
                      ZrXmlSameValue<E>);
  }
  bool operator!=(const ZrXmlSetType& other) const { return !(*this == other); }

  // Read-only walk for visitors: "element" with each element in ascending order.
  void forEachElement(const ZrXmlObjectVisitor::ElementFunction& function) const;

  static ZrXmlSetType nullObject();

 private:
  void readGroup(ZrXmlReader& reader, int groupMode, E& element, long& count);

  SetContainer m_theElements;
};

// Member definitions: any element type instantiates them; the types listed above are compiled into
// the library and declared extern below, so their users do not compile them again.

template <class E>
ZrXmlSetType<E>::ZrXmlSetType() = default;

template <class E>
ZrXmlSetType<E>::ZrXmlSetType(const SetContainer& elements) : m_theElements(elements) {}

template <class E>
ZrXmlSetType<E>::ZrXmlSetType(std::initializer_list<typename ZrXmlPlainValue<E>::type> values) {
  for (const auto& value : values) m_theElements.insert(E(value));
}

template <class E>
ZrXmlSetType<E>::ZrXmlSetType(const ZrXmlSetType& other) : ZrXmlObject(other), m_theElements(other.m_theElements) {}

template <class E>
ZrXmlSetType<E>::ZrXmlSetType(ZrXmlSetType&& other) noexcept(std::is_nothrow_move_constructible<SetContainer>::value)
    : ZrXmlObject(std::move(other)), m_theElements(std::move(other.m_theElements)) {}

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
  ZrXmlAcceptContainer(this, visitor);
}

template <class E>
ZrXmlObject* ZrXmlSetType<E>::clone() const {
  return new ZrXmlSetType(*this);
}

// Like the vector's reading, with one reusable element whose copies are inserted.
template <class E>
ZrBoolean ZrXmlSetType<E>::read(ZrXmlReader& reader) {
  const ZrBoolean result = readBaseOf<ZrXmlSetType>(reader);
  if (!result) return result;
  m_theElements.clear();
  const long size = ZrXmlContainerLayout::sizeAttribute(reader);
  if (reader.mode() == ZrXmlMode::emptyElement) return true;
  E element;
  const bool singleValues = element.isBasicType();
  long count = 0;
  for (int mode = reader.readXml(); mode == ZrXmlMode::startTag || mode == ZrXmlMode::emptyElement; mode = reader.readXml()) {
    if (singleValues && Zr::textEqual(reader.element().tokenText(), ZrXml::ZrGroupToken.tokenText())) {
      readGroup(reader, mode, element, count);
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
void ZrXmlSetType<E>::readGroup(ZrXmlReader& reader, int groupMode, E& element, long& count) {
  if (!ZrXmlContainerLayout::enterGroupContent(reader, groupMode, "ZrXmlSetType")) return;
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

extern template class ZrXmlSetType<ZrXmlBasicType<unsigned int>>;

#endif
