#ifndef ZR_XML_VECTOR_TYPE_H
#define ZR_XML_VECTOR_TYPE_H

#include <ZrXmlBasicType.h>
#include <ZrXmlObject.h>
#include <ZrXmlObjectVisitor.h>
#include <ZrXmlOrientation.h>
#include <ZrXmlPairType.h>
#include <ZrXmlVector.h>
#include <ZrXmlVectorVector.h>

#include <ostream>
#include <string>
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
// Called on a "group" start tag: steps into its content and switches the reader to word-by-word
// reading. Reports "<className> Error: XML parser should be in data mode" and returns false when the
// group holds no content; an empty-element group is not stepped past.
bool enterGroupContent(ZrXmlReader& reader, const char* className);
// Writes one element of a vector or set: single values join the one "group" child, opened before the
// first of them (groupOpen tells; the caller closes it), any other element is its own "element" child.
void writeElement(ZrXmlWriter& writer, const ZrXmlObject& element, bool& groupOpen);
// Describes the layout shared by vectors and sets: the "size" attribute and a "group" or "element"
// child of the element type.
void writeSchemaLayout(ZrXmlSchema& schema, const ZrXmlObject& element);
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
// The members are defined in the library for exactly these element types (B<T> = ZrXmlBasicType<T>):
//   B<bool>, B<char>, B<short>, B<unsigned short>, B<int>, B<unsigned int>, B<unsigned char>,
//   B<double>, B<std::string>, ZrXmlVector, ZrXmlOrientation, ZrXmlVectorVector,
//   ZrXmlPairType<B<double>, B<double>>, ZrXmlPairType<B<unsigned int>, B<unsigned int>>, and the
//   nested ZrXmlVectorType of B<bool>, B<int>, B<unsigned int>, B<unsigned char>, B<double>,
//   ZrXmlPairType<B<unsigned int>, B<unsigned int>>, ZrXmlVectorVector, ZrXmlVectorType<B<double>> and
//   ZrXmlVectorType<B<unsigned int>>.
template <class E>
class ZrXmlVectorType : public ZrXmlObject {
 public:
  typedef E ElementType;
  typedef std::vector<E> VectorContainer;

  // The most room reserved ahead of reading, in bytes of elements, whatever the "size" attribute says.
  static constexpr ZrU32 m_theMaxReserveBytes = 16u << 20;

  ZrXmlVectorType();
  ZrXmlVectorType(const VectorContainer& elements);  // NOLINT: implicit, so that members can be initialised from arrays
  ZrXmlVectorType(const ZrXmlVectorType& other);
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
  bool operator==(const ZrXmlVectorType& other) const { return m_theElements == other.m_theElements; }
  bool operator!=(const ZrXmlVectorType& other) const { return !(*this == other); }

  // Read-only walk for visitors: "element" with each element in order.
  void forEachElement(const ZrXmlObjectVisitor::ElementFunction& function) const;

  static ZrXmlVectorType nullObject();

 private:
  void writeElements(ZrXmlWriter& writer, bool closeGroup) const;
  void readGroup(ZrXmlReader& reader, long& count);

  VectorContainer m_theElements;
};

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
