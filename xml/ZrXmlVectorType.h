#ifndef ZR_XML_VECTOR_TYPE_H
#define ZR_XML_VECTOR_TYPE_H

#include <ZrPrint.h>
#include <ZrXmlBasicType.h>
#include <ZrXmlObject.h>
#include <ZrXmlObjectVisitor.h>
#include <ZrXmlOrientation.h>
#include <ZrXmlPairType.h>
#include <ZrXmlReader.h>
#include <ZrXmlSchema.h>
#include <ZrXmlSchemaElementType.h>
#include <ZrXmlVector.h>
#include <ZrXmlVectorVector.h>
#include <ZrXmlWriter.h>

#include <algorithm>
#include <cstdlib>
#include <initializer_list>
#include <ostream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

class ZrXmlReader;
class ZrXmlWriter;

// Reading and writing steps shared by the vector and set templates, which lay out their elements alike.
namespace ZrXmlContainerLayout {
// Takes every attribute of the start tag the reader stands on and returns the value of "size" (read
// with strtol; 0 when there is none).
long sizeAttribute(ZrXmlReader& reader);
// How many elements of elementBytes each to reserve for an announced size: none for a size below 1,
// and never more than maxBytes worth.
unsigned long reserveCount(long size, unsigned long elementBytes, unsigned long maxBytes);
// Makes room for one more element. Once the reserved room is full, an array whose announced size is
// larger grows to that size rather than doubling past it; no step more than doubles the room, so the
// room never outgrows the elements read by more than plain growth would.
template <class Container>
void makeRoomForOne(Container& elements, long size) {
  if (elements.size() < elements.capacity() || size <= static_cast<long>(elements.size())) return;
  elements.reserve(std::min(static_cast<std::size_t>(size), std::max<std::size_t>(2 * elements.capacity(), 1)));
}
// Called on a "group" start tag, read in groupMode (start or empty element): steps into its content and
// switches the reader to word-by-word reading. Reports "<className> Error: XML parser should be in data
// mode" and returns false when the group holds no content; an empty-element group is not stepped past.
bool enterGroupContent(ZrXmlReader& reader, int groupMode, const char* className);
// Writes one element of a vector or set: single values join the one "group" child, opened before the
// first of them (groupOpen tells; the caller closes it), any other element is its own "element" child.
void writeElement(ZrXmlWriter& writer, const ZrXmlObject& element, bool& groupOpen);
// Describes the layout shared by vectors and sets: the "size" attribute and a "group" or "element"
// child of the element type.
void writeSchemaLayout(ZrXmlSchema& schema, const ZrXmlObject& element);
constexpr ZrU32 documentRootDepth = 1;  // a piecewise document with only its root open

// The single value types, whose elements read a word of a group without a string of their own.
template <class E>
struct isPlainValue : std::false_type {};
template <class T>
struct isPlainValue<ZrXmlBasicType<T>> : std::true_type {};

// Writes a group's reals the short way of ZrXmlVector::RealWriter.
void writeReals(ZrXmlWriter& writer, const std::vector<ZrXmlBasicType<double>>& reals);
}  // namespace ZrXmlContainerLayout

// An ordered array of XML objects. The element count is the "size" attribute; single values are the
// words of one "group" child, any other element is one "element" child:
//   <weights size="3"><group>0.5 1 2</group></weights>
//   <corners size="2"><element x="0" y="0" z="0"/><element x="1" y="0" z="0"/></corners>
// The writer breaks long groups into rows of ten values. Reading takes the group's content word by
// word, so a string element holding white space comes back as several elements (and an empty string
// as none): vectors of strings suit single words.
//
// A count that differs from the "size" attribute is reported as a size warning, and what was read is
// kept. The count reserves room ahead of reading, but never more than m_theMaxReserveBytes, so a
// faulty size cannot make a small document allocate much.
//
// The members are compiled into the library, and declared extern below, for these element types
// (B<T> = ZrXmlBasicType<T>):
//   B<bool>, B<char>, B<short>, B<unsigned short>, B<int>, B<unsigned int>, B<unsigned char>,
//   B<double>, B<std::string>, ZrXmlVector, ZrXmlOrientation, ZrXmlVectorVector,
//   ZrXmlPairType<B<double>, B<double>>, ZrXmlPairType<B<unsigned int>, B<unsigned int>>, and the
//   nested ZrXmlVectorType of B<bool>, B<int>, B<unsigned int>, B<unsigned char>, B<double>,
//   ZrXmlPairType<B<unsigned int>, B<unsigned int>>, ZrXmlVectorVector, ZrXmlVectorType<B<double>> and
//   ZrXmlVectorType<B<unsigned int>>.
// Any other element type that is a ZrXmlObject (an application's own class: a vector
// of motors) instantiates from this header.
template <class E>
class ZrXmlVectorType : public ZrXmlObject {
 public:
  static_assert(std::is_base_of<ZrXmlObject, E>::value,
                "ZrXmlVectorType<E>: the element type E must derive from ZrXmlObject (a value, container or compound class)");
  static_assert(std::is_default_constructible<E>::value && std::is_copy_assignable<E>::value,
                "ZrXmlVectorType<E>: the element type E must be default constructible and copyable (reading makes new "
                "elements; a class that derives from ZrXmlObject must override clone, newObject, equality and token)");

  typedef E ElementType;
  typedef std::vector<E> VectorContainer;

  // The most room reserved ahead of reading, in bytes of elements, whatever the "size" attribute says.
  static constexpr ZrU32 m_theMaxReserveBytes = 16u << 20;

  ZrXmlVectorType();
  ZrXmlVectorType(const VectorContainer& elements);  // NOLINT: implicit, so that members can be initialised from arrays
  // The elements made from plain values (or objects): `ZrXmlVectorType<ZrXmlBasicType<double>> v = {1.5, 2, 3};`
  ZrXmlVectorType(std::initializer_list<typename ZrXmlPlainValue<E>::type> values);
  ZrXmlVectorType(const ZrXmlVectorType& other);
  ZrXmlVectorType(ZrXmlVectorType&& other) noexcept;
  ZrXmlVectorType& operator=(const ZrXmlVectorType& other);
  ~ZrXmlVectorType() override;

  void accept(ZrXmlObjectVisitor* visitor) const override;
  ZrXmlObject* clone() const override;
  ZrBoolean read(ZrXmlReader& reader) override;
  ZrBoolean write(ZrXmlWriter& writer) const override;
  ZrBoolean writeSchema(ZrXmlSchema& schema) const override;
  ZrBoolean equality(const ZrXmlObject* other) const override;
  ZrXmlObject* newObject() const override;
  ZrToken token() const override;

  virtual void pushBack(const E& element);
  // Out of range, both report (print type 4) and return false, leaving the vector unchanged.
  virtual ZrBoolean erase(ZrU32 index);
  virtual ZrBoolean erase(ZrU32 first, ZrU32 last);  // the half-open range [first, last)
  virtual const VectorContainer& vectorContainer() const;
  virtual VectorContainer& vectorContainer();
  virtual void reserve(ZrU32 count);
  virtual void resize(ZrU32 count);
  virtual void resizeToAtLeast(ZrU32 count);  // grows to count default elements; never shrinks
  virtual void clear();
  virtual void assign(ZrU32 count, const E& element);
  virtual ZrU32 size() const;
  virtual void leftRotate(ZrU32 count);  // count taken modulo the size

  // Piecewise writing of a whole document whose root is this vector, for arrays produced element by
  // element. writeHeaderToStream makes a writer on out (returned through writer; pass a null pointer),
  // writes the document header with the root token and the "size" attribute holding size();
  // writeBodyToStream writes the elements held; appendElementToStream writes one more element that
  // the vector need not hold; writeFooterToStream closes the document and deletes the writer. Header,
  // body and footer give the same bytes as a document written with write(). Elements appended beyond
  // size() are not counted by the "size" attribute, so readers report them as a size warning.
  virtual ZrBoolean writeHeaderToStream(std::ostream& out, ZrXmlWriter*& writer, const std::string& filename,
                                        const ZrToken& token) const;
  virtual ZrBoolean writeBodyToStream(ZrXmlWriter* writer) const;
  virtual ZrBoolean appendElementToStream(ZrXmlWriter* writer, const E& element) const;
  virtual ZrBoolean writeFooterToStream(ZrXmlWriter*& writer) const;
  virtual void append(const ZrXmlVectorType& other);

  const E& operator[](ZrU32 index) const { return m_theElements[index]; }
  E& operator[](ZrU32 index) { return m_theElements[index]; }
  bool empty() const { return m_theElements.empty(); }

  // Equal element by element, with the elements' own ==.
  bool operator==(const ZrXmlVectorType& other) const {
    return std::equal(m_theElements.begin(), m_theElements.end(), other.m_theElements.begin(), other.m_theElements.end(),
                      ZrXmlSameValue<E>);
  }
  bool operator!=(const ZrXmlVectorType& other) const { return !(*this == other); }

  // Read-only walk for visitors: "element" with each element in order.
  void forEachElement(const ZrXmlObjectVisitor::ElementFunction& function) const;

  static ZrXmlVectorType nullObject();

 private:
  void writeElements(ZrXmlWriter& writer, bool closeGroup) const;
  void readGroup(ZrXmlReader& reader, int groupMode, long size, long& count);
  void readElement(ZrXmlReader& reader, long size, long& count);

  VectorContainer m_theElements;
};

// Member definitions: any element type instantiates them; the types listed above are compiled into
// the library and declared extern below, so their users do not compile them again.

template <class E>
ZrXmlVectorType<E>::ZrXmlVectorType() = default;

template <class E>
ZrXmlVectorType<E>::ZrXmlVectorType(const VectorContainer& elements) : m_theElements(elements) {}

template <class E>
ZrXmlVectorType<E>::ZrXmlVectorType(std::initializer_list<typename ZrXmlPlainValue<E>::type> values) {
  m_theElements.reserve(values.size());
  for (const auto& value : values) m_theElements.push_back(E(value));
}

template <class E>
ZrXmlVectorType<E>::ZrXmlVectorType(const ZrXmlVectorType& other) : ZrXmlObject(other), m_theElements(other.m_theElements) {}

template <class E>
ZrXmlVectorType<E>::ZrXmlVectorType(ZrXmlVectorType&& other) noexcept
    : ZrXmlObject(std::move(other)), m_theElements(std::move(other.m_theElements)) {}

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
  ZrXmlAcceptContainer(this, visitor);
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
  const ZrBoolean result = readBaseOf<ZrXmlVectorType>(reader);
  if (!result) return result;
  m_theElements.clear();
  const long size = ZrXmlContainerLayout::sizeAttribute(reader);
  m_theElements.reserve(ZrXmlContainerLayout::reserveCount(size, sizeof(E), m_theMaxReserveBytes));
  if (reader.mode() == ZrXmlMode::emptyElement) return true;
  const bool singleValues = E().isBasicType();
  long count = 0;
  for (int mode = reader.readXml(); mode == ZrXmlMode::startTag || mode == ZrXmlMode::emptyElement; mode = reader.readXml()) {
    if (singleValues && Zr::textEqual(reader.element().tokenText(), ZrXml::ZrGroupToken.tokenText())) {
      readGroup(reader, mode, size, count);
    } else {
      readElement(reader, size, count);
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
void ZrXmlVectorType<E>::readGroup(ZrXmlReader& reader, int groupMode, long size, long& count) {
  if (!ZrXmlContainerLayout::enterGroupContent(reader, groupMode, "ZrXmlVectorType")) return;
  if constexpr (ZrXmlContainerLayout::isPlainValue<E>::value) {
    count += E::readWords(reader, m_theElements);
  } else {
    while (reader.isContentAvailable()) readElement(reader, size, count);
  }
  reader.setContentVectorFlag(false);
}

// Appends one element and lets it read the child (or the next word of a group) the reader stands on.
template <class E>
void ZrXmlVectorType<E>::readElement(ZrXmlReader& reader, long size, long& count) {
  ZrXmlContainerLayout::makeRoomForOne(m_theElements, size);
  m_theElements.emplace_back();
  m_theElements.back().read(reader);
  ++count;
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
    ZrXmlContainerLayout::writeReals(writer, m_theElements);
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
  bool groupOpen = writer->depth() > ZrXmlContainerLayout::documentRootDepth;  // the group is the only child a document's root holds open
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

extern template class ZrXmlVectorType<ZrXmlBasicType<bool>>;
extern template class ZrXmlVectorType<ZrXmlBasicType<char>>;
extern template class ZrXmlVectorType<ZrXmlBasicType<short>>;
extern template class ZrXmlVectorType<ZrXmlBasicType<unsigned short>>;
extern template class ZrXmlVectorType<ZrXmlBasicType<int>>;
extern template class ZrXmlVectorType<ZrXmlBasicType<unsigned int>>;
extern template class ZrXmlVectorType<ZrXmlBasicType<unsigned char>>;
extern template class ZrXmlVectorType<ZrXmlBasicType<double>>;
extern template class ZrXmlVectorType<ZrXmlBasicType<std::string>>;
extern template class ZrXmlVectorType<ZrXmlVector>;
extern template class ZrXmlVectorType<ZrXmlOrientation>;
extern template class ZrXmlVectorType<ZrXmlVectorVector>;
extern template class ZrXmlVectorType<ZrXmlPairType<ZrXmlBasicType<double>, ZrXmlBasicType<double>>>;
extern template class ZrXmlVectorType<ZrXmlPairType<ZrXmlBasicType<unsigned int>, ZrXmlBasicType<unsigned int>>>;
extern template class ZrXmlVectorType<ZrXmlVectorType<ZrXmlBasicType<bool>>>;
extern template class ZrXmlVectorType<ZrXmlVectorType<ZrXmlBasicType<int>>>;
extern template class ZrXmlVectorType<ZrXmlVectorType<ZrXmlBasicType<unsigned int>>>;
extern template class ZrXmlVectorType<ZrXmlVectorType<ZrXmlBasicType<unsigned char>>>;
extern template class ZrXmlVectorType<ZrXmlVectorType<ZrXmlBasicType<double>>>;
extern template class ZrXmlVectorType<
    ZrXmlVectorType<ZrXmlPairType<ZrXmlBasicType<unsigned int>, ZrXmlBasicType<unsigned int>>>>;
extern template class ZrXmlVectorType<ZrXmlVectorType<ZrXmlVectorVector>>;
extern template class ZrXmlVectorType<ZrXmlVectorType<ZrXmlVectorType<ZrXmlBasicType<double>>>>;
extern template class ZrXmlVectorType<ZrXmlVectorType<ZrXmlVectorType<ZrXmlBasicType<unsigned int>>>>;

#endif
