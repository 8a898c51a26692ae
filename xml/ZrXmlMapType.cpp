#include "ZrXmlMapType.h"

#include "ZrPrint.h"
#include "ZrXmlReader.h"
#include "ZrXmlSchema.h"
#include "ZrXmlSchemaElementType.h"
#include "ZrXmlWriter.h"

namespace {
const int startTagMode = 1;
const int endTagMode = 2;
const int emptyElementMode = 3;
}  // namespace

template <class K, class V>
ZrXmlMapType<K, V>::ZrXmlMapType() = default;

template <class K, class V>
ZrXmlMapType<K, V>::ZrXmlMapType(const MapContainer& entries) : m_theEntries(entries) {}

template <class K, class V>
ZrXmlMapType<K, V>::ZrXmlMapType(const ZrXmlMapType& other) : ZrXmlObject(other), m_theEntries(other.m_theEntries) {}

template <class K, class V>
ZrXmlMapType<K, V>& ZrXmlMapType<K, V>::operator=(const ZrXmlMapType& other) {
  ZrXmlObject::operator=(other);
  m_theEntries = other.m_theEntries;
  return *this;
}

template <class K, class V>
ZrXmlMapType<K, V>::~ZrXmlMapType() = default;

template <class K, class V>
void ZrXmlMapType<K, V>::accept(ZrXmlObjectVisitor* visitor) const {
  if (visitor) visitor->visit(this);
}

template <class K, class V>
ZrXmlObject* ZrXmlMapType<K, V>::clone() const {
  return new ZrXmlMapType(*this);
}

// The key, like the value, may be an empty element: that is how an empty string is written.
template <class K, class V>
ZrBoolean ZrXmlMapType<K, V>::read(ZrXmlReader& reader) {
  const ZrBoolean result = ZrXmlObject::read(reader);
  m_theEntries.clear();
  if (!result) return result;
  if (reader.mode() == emptyElementMode) return true;
  K key;
  for (int mode = reader.readXml(); mode != endTagMode && mode != 0; mode = reader.readXml()) {
    if (mode != startTagMode || reader.element().tokenText() != ZrXml::ZrElementToken.tokenText())
      return formatError(reader, __PRETTY_FUNCTION__, &reader.element().tokenText());
    mode = reader.readXml();
    if (mode != startTagMode && mode != emptyElementMode) return formatError(reader, __PRETTY_FUNCTION__, nullptr);
    key.read(reader);
    V& value = m_theEntries[key];
    mode = reader.readXml();
    if (mode != startTagMode && mode != emptyElementMode) return formatError(reader, __PRETTY_FUNCTION__, nullptr);
    value.read(reader);
    if (reader.readXml() != endTagMode) return formatError(reader, __PRETTY_FUNCTION__, nullptr);
  }
  return result;
}

template <class K, class V>
ZrBoolean ZrXmlMapType<K, V>::formatError(ZrXmlReader& reader, const char* signature,
                                          const std::string* received) const {
  Zr::PrintStream message = Zr::Print::instance().ostream(Zr::PrintError, signature);
  message << "ZrXmlMapType Error: file not valid.\n\t" << "Key map format not correct.\n\tFile: " << reader.filename()
          << "\n\tLine: " << reader.lineCountOfFile() << '\n';
  if (received)
    message << "\tExpected " << ZrXml::ZrElementToken.tokenText() << " but received " << *received << ".\n";
  return false;
}

template <class K, class V>
ZrBoolean ZrXmlMapType<K, V>::write(ZrXmlWriter& writer) const {
  const ZrBoolean result = ZrXmlObject::write(writer);
  for (const auto& entry : m_theEntries) {
    writer.writeStartTagUsingParentNamespace(ZrXml::ZrElementToken);
    writer.writeStartTagUsingParentNamespace(ZrXml::ZrKeyToken);
    entry.first.write(writer);
    writer.writeEndTag();
    writer.writeStartTagUsingParentNamespace(ZrXml::ZrValueToken);
    entry.second.write(writer);
    writer.writeEndTag();
    writer.writeEndTag();
  }
  return result;
}

template <class K, class V>
ZrBoolean ZrXmlMapType<K, V>::writeSchema(ZrXmlSchema& schema) const {
  const ZrBoolean result = ZrXmlObject::writeSchema(schema);
  const int option = ZrXmlSchemaElementType::XML_STARTTAG_OPTION;
  schema.writeStartTagUsingParentNamespace(ZrXml::ZrElementToken, option);
  schema.writeStartTagUsingParentNamespace(ZrXml::ZrKeyToken, option);
  K().writeSchema(schema);
  schema.writeEndTag();
  schema.writeStartTagUsingParentNamespace(ZrXml::ZrValueToken, option);
  V().writeSchema(schema);
  schema.writeEndTag();
  schema.writeEndTag();
  return result;
}

template <class K, class V>
ZrBoolean ZrXmlMapType<K, V>::equality(const ZrXmlObject* other) const {
  const ZrXmlMapType* map = dynamic_cast<const ZrXmlMapType*>(other);
  return map != nullptr && *this == *map;
}

template <class K, class V>
ZrXmlObject* ZrXmlMapType<K, V>::newObject() const {
  return new ZrXmlMapType();
}

template <class K, class V>
ZrToken ZrXmlMapType<K, V>::token() const {
  return ZrXml::ZrMapTypeToken;
}

template <class K, class V>
const V* ZrXmlMapType<K, V>::find(const K& key) const {
  const auto entry = m_theEntries.find(key);
  return entry == m_theEntries.end() ? nullptr : &entry->second;
}

template <class K, class V>
void ZrXmlMapType<K, V>::forEachElement(const ZrXmlObjectVisitor::ElementFunction& function) const {
  for (const auto& entry : m_theEntries) {
    function(ZrXml::ZrKeyToken, entry.first);
    function(ZrXml::ZrValueToken, entry.second);
  }
}

template <class K, class V>
ZrXmlMapType<K, V> ZrXmlMapType<K, V>::nullObject() {
  return ZrXmlMapType();
}

#define B(T) ZrXmlBasicType<T>
template class ZrXmlMapType<B(std::string), B(bool)>;
template class ZrXmlMapType<B(std::string), B(int)>;
template class ZrXmlMapType<B(std::string), B(unsigned int)>;
template class ZrXmlMapType<B(std::string), B(double)>;
template class ZrXmlMapType<B(std::string), B(std::string)>;
template class ZrXmlMapType<B(std::string), ZrXmlMapType<B(std::string), B(bool)>>;
template class ZrXmlMapType<B(std::string), ZrXmlMapType<B(std::string), B(double)>>;
template class ZrXmlMapType<B(std::string), ZrXmlVectorType<B(double)>>;
template class ZrXmlMapType<B(std::string), ZrXmlVectorType<B(unsigned int)>>;
template class ZrXmlMapType<B(unsigned int), B(std::string)>;
template class ZrXmlMapType<B(unsigned int), B(unsigned int)>;
template class ZrXmlMapType<B(unsigned int), ZrXmlSetType<B(unsigned int)>>;
#undef B
