#ifndef ZR_XML_PAIR_TYPE_H
#define ZR_XML_PAIR_TYPE_H

#include <ZrPrint.h>
#include <ZrXmlBasicType.h>
#include <ZrXmlObject.h>
#include <ZrXmlObjectVisitor.h>
#include <ZrXmlReader.h>
#include <ZrXmlSchema.h>
#include <ZrXmlSchemaElementType.h>
#include <ZrXmlVector.h>
#include <ZrXmlWriter.h>

#include <type_traits>
#include <utility>

// Two named members as an XML object:
//   <range><first>0.5</first><second>2</second></range>
// The children may come in either order; a repeated child is read again over the earlier value, and
// a missing one leaves its member as it was. A child of any other name is reported, skipped with its
// whole subtree, and makes read() false while reading goes on.
//
// The members are compiled into the library, and declared extern below, for these pairs
// (B<T> = ZrXmlBasicType<T>):
//   <B<double>, B<double>>, <B<std::string>, B<std::string>>, <B<std::string>, B<unsigned int>>,
//   <B<unsigned int>, B<unsigned int>>, <ZrXmlVector, ZrXmlVector>.
// Any other member types that are ZrXmlObjects instantiate from this header.
template <class F, class S>
class ZrXmlPairType : public ZrXmlObject {
 public:
  static_assert(std::is_base_of<ZrXmlObject, F>::value,
                "ZrXmlPairType<F, S>: the first type F must derive from ZrXmlObject (a value, container or compound class)");
  static_assert(std::is_default_constructible<F>::value && std::is_copy_assignable<F>::value,
                "ZrXmlPairType<F, S>: the first type F must be default constructible and copyable (reading makes new "
                "firsts; a class that derives from ZrXmlObject must override clone, newObject, equality and token)");
  static_assert(std::is_base_of<ZrXmlObject, S>::value,
                "ZrXmlPairType<F, S>: the second type S must derive from ZrXmlObject (a value, container or compound class)");
  static_assert(std::is_default_constructible<S>::value && std::is_copy_assignable<S>::value,
                "ZrXmlPairType<F, S>: the second type S must be default constructible and copyable (reading makes new "
                "seconds; a class that derives from ZrXmlObject must override clone, newObject, equality and token)");

  typedef F FirstType;
  typedef S SecondType;

  ZrXmlPairType();
  ZrXmlPairType(const F& first, const S& second);
  ZrXmlPairType(const ZrXmlPairType& other);
  ZrXmlPairType(ZrXmlPairType&& other) noexcept(std::is_nothrow_move_constructible<F>::value &&
                                                std::is_nothrow_move_constructible<S>::value);
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

// Member definitions: any element type instantiates them; the types listed above are compiled into
// the library and declared extern below, so their users do not compile them again.

template <class F, class S>
ZrXmlPairType<F, S>::ZrXmlPairType() : m_theFirst(), m_theSecond() {}

template <class F, class S>
ZrXmlPairType<F, S>::ZrXmlPairType(const F& first, const S& second) : m_theFirst(first), m_theSecond(second) {}

template <class F, class S>
ZrXmlPairType<F, S>::ZrXmlPairType(const ZrXmlPairType& other)
    : ZrXmlObject(other), m_theFirst(other.m_theFirst), m_theSecond(other.m_theSecond) {}

template <class F, class S>
ZrXmlPairType<F, S>::ZrXmlPairType(ZrXmlPairType&& other) noexcept(std::is_nothrow_move_constructible<F>::value &&
                                                                   std::is_nothrow_move_constructible<S>::value)
    : ZrXmlObject(std::move(other)), m_theFirst(std::move(other.m_theFirst)), m_theSecond(std::move(other.m_theSecond)) {}

template <class F, class S>
ZrXmlPairType<F, S>& ZrXmlPairType<F, S>::operator=(const ZrXmlPairType& other) {
  ZrXmlObject::operator=(other);
  m_theFirst = other.m_theFirst;
  m_theSecond = other.m_theSecond;
  return *this;
}

template <class F, class S>
ZrXmlPairType<F, S>::~ZrXmlPairType() = default;

template <class F, class S>
void ZrXmlPairType<F, S>::accept(ZrXmlObjectVisitor* visitor) const {
  ZrXmlAcceptContainer(this, visitor);
}

template <class F, class S>
ZrXmlObject* ZrXmlPairType<F, S>::clone() const {
  return new ZrXmlPairType(*this);
}

// An unknown child is skipped whole, so that the pair goes on with its next child and ends on its own
// end tag whatever the unknown child held.
template <class F, class S>
ZrBoolean ZrXmlPairType<F, S>::read(ZrXmlReader& reader) {
  ZrBoolean result = ZrXmlObject::read(reader);
  if (!result || reader.mode() == ZrXmlMode::emptyElement) return result;
  int mode = reader.readXml();
  while (mode == ZrXmlMode::startTag || mode == ZrXmlMode::emptyElement) {
    const std::string& name = reader.element().tokenText();
    if (name == ZrXml::ZrFirstToken.tokenText()) {
      m_theFirst.xmlInit();
      m_theFirst.read(reader);
    } else if (name == ZrXml::ZrSecondToken.tokenText()) {
      m_theSecond.xmlInit();
      m_theSecond.read(reader);
    } else {
      Zr::Print::instance().ostream(Zr::PrintError, __PRETTY_FUNCTION__)
          << "ZrXmlPairType Error: file not valid.\n\tFormat not correct.\n\tFile: " << reader.filename()
          << "\n\tLine: " << reader.lineCountOfFile() << '\n';
      Zr::Print::instance().ostream(Zr::PrintError, __PRETTY_FUNCTION__)
          << "\tExpected " << ZrXml::ZrFirstToken.tokenText() << " or " << ZrXml::ZrSecondToken.tokenText()
          << " but received " << name << ".\n";
      reader.nextMatchingEndTag();
      result = false;
    }
    mode = reader.readXml();
  }
  return result;
}

template <class F, class S>
ZrBoolean ZrXmlPairType<F, S>::write(ZrXmlWriter& writer) const {
  const ZrBoolean result = ZrXmlObject::write(writer);
  writer.writeStartTagUsingParentNamespace(ZrXml::ZrFirstToken);
  m_theFirst.write(writer);
  writer.writeEndTag();
  writer.writeStartTagUsingParentNamespace(ZrXml::ZrSecondToken);
  m_theSecond.write(writer);
  writer.writeEndTag();
  return result;
}

template <class F, class S>
ZrBoolean ZrXmlPairType<F, S>::writeSchema(ZrXmlSchema& schema) const {
  const ZrBoolean result = ZrXmlObject::writeSchema(schema);
  schema.writeStartTagUsingParentNamespace(ZrXml::ZrFirstToken, ZrXmlSchemaElementType::XML_STARTTAG_OPTION);
  m_theFirst.writeSchema(schema);
  schema.writeEndTag();
  schema.writeStartTagUsingParentNamespace(ZrXml::ZrSecondToken, ZrXmlSchemaElementType::XML_STARTTAG_OPTION);
  m_theSecond.writeSchema(schema);
  schema.writeEndTag();
  return result;
}

template <class F, class S>
ZrBoolean ZrXmlPairType<F, S>::equality(const ZrXmlObject* other) const {
  const ZrXmlPairType* pair = dynamic_cast<const ZrXmlPairType*>(other);
  return pair != nullptr && *this == *pair;
}

template <class F, class S>
ZrXmlObject* ZrXmlPairType<F, S>::newObject() const {
  return new ZrXmlPairType();
}

template <class F, class S>
ZrToken ZrXmlPairType<F, S>::token() const {
  return ZrXml::ZrPairTypeToken;
}

template <class F, class S>
bool ZrXmlPairType<F, S>::operator==(const ZrXmlPairType& other) const {
  return ZrXmlSameValue(m_theFirst, other.m_theFirst) && ZrXmlSameValue(m_theSecond, other.m_theSecond);
}

template <class F, class S>
bool ZrXmlPairType<F, S>::operator<(const ZrXmlPairType& other) const {
  if (m_theFirst < other.m_theFirst) return true;
  if (other.m_theFirst < m_theFirst) return false;
  return m_theSecond < other.m_theSecond;
}

template <class F, class S>
void ZrXmlPairType<F, S>::forEachElement(const ZrXmlObjectVisitor::ElementFunction& function) const {
  function(ZrXml::ZrFirstToken, m_theFirst);
  function(ZrXml::ZrSecondToken, m_theSecond);
}

template <class F, class S>
ZrXmlPairType<F, S> ZrXmlPairType<F, S>::nullObject() {
  return ZrXmlPairType(F::nullObject(), S::nullObject());
}

extern template class ZrXmlPairType<ZrXmlBasicType<double>, ZrXmlBasicType<double>>;
extern template class ZrXmlPairType<ZrXmlBasicType<std::string>, ZrXmlBasicType<std::string>>;
extern template class ZrXmlPairType<ZrXmlBasicType<std::string>, ZrXmlBasicType<unsigned int>>;
extern template class ZrXmlPairType<ZrXmlBasicType<unsigned int>, ZrXmlBasicType<unsigned int>>;
extern template class ZrXmlPairType<ZrXmlVector, ZrXmlVector>;

#endif
