#ifndef ZR_XML_VECTOR_VECTOR_H
#define ZR_XML_VECTOR_VECTOR_H

#include <ZrVector.h>
#include <ZrXmlObject.h>

#include <vector>

// An array of three-component vectors, written compactly as one "element" child per vector with its
// components as attributes, and the count in the "size" attribute:
//   <path size="2">
//    <element x="0" y="0" z="0"/>
//    <element x="1" y="0.5" z="0"/>
//   </path>
// Reading goes through the reader's fast path, which takes attribute values in document order
// without comparing names: the size is the first remaining attribute of the start tag, and each
// entry's x, y and z are the next three values. Comments and line breaks between the entries are
// passed over.
//
// The reader trusts that layout, with three bounds so that a faulty document cannot make it allocate
// or loop beyond the document's own size: the array holds only the entries the document actually
// has (reading stops at the first entry without any value and reports the shortfall), room is
// reserved for at most m_theMaxReserve entries ahead of reading, and entries beyond the announced size
// are skipped up to the array's end tag.
class ZrXmlVectorVector : public ZrXmlObject {
 public:
  typedef std::vector<ZrVector> VectorContainer;

  // The most entries reserved ahead of reading, whatever the document announces.
  static constexpr ZrU32 m_theMaxReserve = 1u << 20;

  ZrXmlVectorVector() = default;
  ZrXmlVectorVector(const VectorContainer& vectors);  // NOLINT: implicit, so that members can be initialised from arrays
  ZrXmlVectorVector(const ZrXmlVectorVector& other) = default;
  ZrXmlVectorVector(ZrXmlVectorVector&& other) noexcept = default;
  ZrXmlVectorVector& operator=(const ZrXmlVectorVector& other) = default;
  ~ZrXmlVectorVector() override;

  void accept(ZrXmlObjectVisitor* visitor) const override;
  ZrXmlObject* clone() const override;
  ZrBoolean read(ZrXmlReader& reader) override;
  ZrBoolean write(ZrXmlWriter& writer) const override;
  ZrBoolean writeSchema(ZrXmlSchema& schema) const override;
  ZrBoolean equality(const ZrXmlObject* other) const override;
  ZrXmlObject* newObject() const override;
  ZrToken token() const override;

  ZrU32 size() const { return static_cast<ZrU32>(m_theVectors.size()); }
  const ZrVector& operator[](ZrU32 index) const { return m_theVectors[index]; }
  ZrVector& operator[](ZrU32 index) { return m_theVectors[index]; }
  void reserve(ZrU32 count) { m_theVectors.reserve(count); }
  void resize(ZrU32 count) { m_theVectors.resize(count); }
  void assign(ZrU32 count, const ZrVector& vector) { m_theVectors.assign(count, vector); }
  void pushBack(const ZrVector& vector) { m_theVectors.push_back(vector); }
  void clear() { m_theVectors.clear(); }
  // Rotates the entries left by count places (count taken modulo the size).
  void leftRotate(ZrU32 count);
  const VectorContainer& vectorContainer() const { return m_theVectors; }
  VectorContainer& vectorContainer() { return m_theVectors; }

  bool operator==(const ZrXmlVectorVector& other) const { return m_theVectors == other.m_theVectors; }
  bool operator!=(const ZrXmlVectorVector& other) const { return !(*this == other); }

  static ZrXmlVectorVector nullObject();
  static const ZrToken& classToken();

 private:
  void readCheckedPoints(ZrXmlReader& reader);
  VectorContainer m_theVectors;
};

#endif
