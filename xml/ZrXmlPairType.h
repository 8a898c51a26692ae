#ifndef ZR_XML_PAIR_TYPE_H
#define ZR_XML_PAIR_TYPE_H

#include <ZrXmlBasicType.h>
#include <ZrXmlObject.h>
#include <ZrXmlObjectVisitor.h>
#include <ZrXmlVector.h>

// Two named members as an XML object:
//   <range><first>0.5</first><second>2</second></range>
// The children may come in either order; a repeated child is read again over the earlier value, and
// a missing one leaves its member as it was. A child of any other name is reported, skipped with its
// whole subtree, and makes read() false while reading goes on.
//
// The members are defined in the library for exactly these pairs (B<T> = ZrXmlBasicType<T>):
//   <B<double>, B<double>>, <B<std::string>, B<std::string>>, <B<std::string>, B<unsigned int>>,
//   <B<unsigned int>, B<unsigned int>>, <ZrXmlVector, ZrXmlVector>.
template <class F, class S>
class ZrXmlPairType : public ZrXmlObject {
 public:
  typedef F FirstType;
  typedef S SecondType;

  ZrXmlPairType();
  ZrXmlPairType(const F& first, const S& second);
  ZrXmlPairType(const ZrXmlPairType& other);
  ZrXmlPairType& operator=(const ZrXmlPairType& other);
  ~ZrXmlPairType() override;

  void accept(ZrXmlObjectVisitor* visitor) const override;
  ZrXmlObject* clone() const override;
  ZrBoolean read(ZrXmlReader& reader) override;
  ZrBoolean write(ZrXmlWriter& writer) const override;
  ZrBoolean writeSchema(ZrXmlSchema& schema) const override;
  ZrBoolean equality(const ZrXmlObject* other) const override;
  ZrXmlObject* newObject() const override;
  ZrToken token() const override;

  const F& first() const { return m_theFirst; }
  F& first() { return m_theFirst; }
  const S& second() const { return m_theSecond; }
  S& second() { return m_theSecond; }
  void setFirst(const F& first) { m_theFirst = first; }
  void setSecond(const S& second) { m_theSecond = second; }

  bool operator==(const ZrXmlPairType& other) const;
  bool operator!=(const ZrXmlPairType& other) const { return !(*this == other); }
  // Orders by first, then by second, so that pairs can be sorted and kept in sets.
  bool operator<(const ZrXmlPairType& other) const;

  // Read-only walk for visitors: "first" with the first member, then "second" with the second.
  void forEachElement(const ZrXmlObjectVisitor::ElementFunction& function) const;

  static ZrXmlPairType nullObject();

 private:
  F m_theFirst;
  S m_theSecond;
};

extern template class ZrXmlPairType<ZrXmlBasicType<double>, ZrXmlBasicType<double>>;
extern template class ZrXmlPairType<ZrXmlBasicType<std::string>, ZrXmlBasicType<std::string>>;
extern template class ZrXmlPairType<ZrXmlBasicType<std::string>, ZrXmlBasicType<unsigned int>>;
extern template class ZrXmlPairType<ZrXmlBasicType<unsigned int>, ZrXmlBasicType<unsigned int>>;
extern template class ZrXmlPairType<ZrXmlVector, ZrXmlVector>;

#endif
