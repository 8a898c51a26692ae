#ifndef ZR_XML_SET_TYPE_H
#define ZR_XML_SET_TYPE_H

#include <ZrXmlBasicType.h>
#include <ZrXmlObject.h>
#include <ZrXmlObjectVisitor.h>

#include <set>

// A sorted set of XML objects without duplicates, in the document laid out like a vector: the
// element count in "size", single values as the words of one "group" child, other elements as one
// "element" child each:
//   <stations size="3"><group>4 7 12</group></stations>
// Each element read is inserted by copy, so a duplicate is dropped silently but still counted: the
// count compared with "size" is the number of elements in the document, not in the set.
//
// The members are defined in the library for B<unsigned int> (B<T> = ZrXmlBasicType<T>).
template <class E>
class ZrXmlSetType : public ZrXmlObject {
 public:
  typedef E ElementType;
  typedef std::set<E> SetContainer;

  ZrXmlSetType();
  ZrXmlSetType(const SetContainer& elements);  // NOLINT: implicit, so that members can be initialised from sets
  ZrXmlSetType(const ZrXmlSetType& other);
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

  bool operator==(const ZrXmlSetType& other) const { return m_theElements == other.m_theElements; }
  bool operator!=(const ZrXmlSetType& other) const { return !(*this == other); }

  // Read-only walk for visitors: "element" with each element in ascending order.
  void forEachElement(const ZrXmlObjectVisitor::ElementFunction& function) const;

  static ZrXmlSetType nullObject();

 private:
  void readGroup(ZrXmlReader& reader, E& element, long& count);

  SetContainer m_theElements;
};

extern template class ZrXmlSetType<ZrXmlBasicType<unsigned int>>;

#endif
