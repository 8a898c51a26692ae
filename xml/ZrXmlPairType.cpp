#include "ZrXmlPairType.h"

#include "ZrPrint.h"
#include "ZrXmlReader.h"
#include "ZrXmlSchema.h"
#include "ZrXmlSchemaElementType.h"
#include "ZrXmlWriter.h"

namespace {
const int startTagMode = 1;
const int emptyElementMode = 3;
}  // namespace

template <class F, class S>
ZrXmlPairType<F, S>::ZrXmlPairType() : m_theFirst(), m_theSecond() {}

template <class F, class S>
ZrXmlPairType<F, S>::ZrXmlPairType(const F& first, const S& second) : m_theFirst(first), m_theSecond(second) {}

template <class F, class S>
ZrXmlPairType<F, S>::ZrXmlPairType(const ZrXmlPairType& other)
    : ZrXmlObject(other), m_theFirst(other.m_theFirst), m_theSecond(other.m_theSecond) {}

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
  if (visitor) visitor->visit(this);
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
  if (!result || reader.mode() == emptyElementMode) return result;
  int mode = reader.readXml();
  while (mode == startTagMode || mode == emptyElementMode) {
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
  return m_theFirst == other.m_theFirst && m_theSecond == other.m_theSecond;
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

template class ZrXmlPairType<ZrXmlBasicType<double>, ZrXmlBasicType<double>>;
template class ZrXmlPairType<ZrXmlBasicType<std::string>, ZrXmlBasicType<std::string>>;
template class ZrXmlPairType<ZrXmlBasicType<std::string>, ZrXmlBasicType<unsigned int>>;
template class ZrXmlPairType<ZrXmlBasicType<unsigned int>, ZrXmlBasicType<unsigned int>>;
template class ZrXmlPairType<ZrXmlVector, ZrXmlVector>;
