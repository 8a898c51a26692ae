#ifndef ZR_XML_MAP_TYPE_H
#define ZR_XML_MAP_TYPE_H

#include <ZrPrint.h>
#include <ZrXmlBasicType.h>
#include <ZrXmlObject.h>
#include <ZrXmlObjectVisitor.h>
#include <ZrXmlReader.h>
#include <ZrXmlSchema.h>
#include <ZrXmlSchemaElementType.h>
#include <ZrXmlSetType.h>
#include <ZrXmlVectorType.h>
#include <ZrXmlWriter.h>

#include <algorithm>
#include <initializer_list>
#include <map>
#include <string>
#include <type_traits>
#include <utility>

// A sorted map of XML objects, one "element" child per entry, each with a "key" and a "value" child,
// in key order; no "size" attribute:
//   <parameters>
//    <element><key>gain</key><value>0.8</value></element>
//   </parameters>
// Only the "element" name is checked when reading; the key and value children are taken by position.
// A key that comes twice reads its later value into the same entry. A fault of that layout is
// reported, stops the reading where it stands (entries read so far stay) and makes read() false:
// a map that could not be read whole is a failed read.
//
// The members are compiled into the library, and declared extern below, for these maps
// (B<T> = ZrXmlBasicType<T>):
//   B<std::string> to B<bool>, B<int>, B<unsigned int>, B<double>, B<std::string>,
//     ZrXmlMapType<B<std::string>, B<bool>>, ZrXmlMapType<B<std::string>, B<double>>,
//     ZrXmlVectorType<B<double>>, ZrXmlVectorType<B<unsigned int>>;
//   B<unsigned int> to B<std::string>, B<unsigned int>, ZrXmlSetType<B<unsigned int>>.
// Any other key and value types that are ZrXmlObjects (the key with <) instantiate
// from this header.
template <class K, class V>
class ZrXmlMapType : public ZrXmlObject {
 public:
  static_assert(std::is_base_of<ZrXmlObject, K>::value,
                "ZrXmlMapType<K, V>: the key type K must derive from ZrXmlObject (a value, container or compound class)");
  static_assert(std::is_default_constructible<K>::value && std::is_copy_assignable<K>::value,
                "ZrXmlMapType<K, V>: the key type K must be default constructible and copyable (reading makes new "
                "keys; a class that derives from ZrXmlObject must override clone, newObject, equality and token)");
  static_assert(std::is_base_of<ZrXmlObject, V>::value,
                "ZrXmlMapType<K, V>: the value type V must derive from ZrXmlObject (a value, container or compound class)");
  static_assert(std::is_default_constructible<V>::value && std::is_copy_assignable<V>::value,
                "ZrXmlMapType<K, V>: the value type V must be default constructible and copyable (reading makes new "
                "values; a class that derives from ZrXmlObject must override clone, newObject, equality and token)");

  typedef K KeyType;
  typedef V ValueType;
  typedef std::map<K, V> MapContainer;

  ZrXmlMapType();
  ZrXmlMapType(const MapContainer& entries);  // NOLINT: implicit, so that members can be initialised from maps
  // The entries made from pairs of plain values (or objects): `m = {{"infeed", 2}, {"outfeed", 1}};`
  // of two pairs with one key, the first is kept.
  typedef std::pair<typename ZrXmlPlainValue<K>::type, typename ZrXmlPlainValue<V>::type> PlainEntry;
  ZrXmlMapType(std::initializer_list<PlainEntry> entries);
  ZrXmlMapType(const ZrXmlMapType& other);
  ZrXmlMapType(ZrXmlMapType&& other) noexcept(std::is_nothrow_move_constructible<MapContainer>::value);
  ZrXmlMapType& operator=(const ZrXmlMapType& other);
  ~ZrXmlMapType() override;

  void accept(ZrXmlObjectVisitor* visitor) const override;
  ZrXmlObject* clone() const override;
  ZrBoolean read(ZrXmlReader& reader) override;
  ZrBoolean write(ZrXmlWriter& writer) const override;
  ZrBoolean writeSchema(ZrXmlSchema& schema) const override;
  ZrBoolean equality(const ZrXmlObject* other) const override;
  ZrXmlObject* newObject() const override;
  ZrToken token() const override;

  const MapContainer& mapContainer() const { return m_theEntries; }
  MapContainer& mapContainer() { return m_theEntries; }
  // The value under key, inserted with a default value when absent.
  V& operator[](const K& key) { return m_theEntries[key]; }
  // The value under key, or null when absent.
  const V* find(const K& key) const;
  // Inserts or replaces the entry.
  void set(const K& key, const V& value) { m_theEntries[key] = value; }
  // False when there was no such key.
  bool erase(const K& key) { return m_theEntries.erase(key) != 0; }
  ZrU32 size() const { return static_cast<ZrU32>(m_theEntries.size()); }
  bool empty() const { return m_theEntries.empty(); }
  void clear() { m_theEntries.clear(); }

  bool operator==(const ZrXmlMapType& other) const {
    return std::equal(m_theEntries.begin(), m_theEntries.end(), other.m_theEntries.begin(), other.m_theEntries.end(),
                      [](const auto& one, const auto& another) {
                        return ZrXmlSameValue(one.first, another.first) && ZrXmlSameValue(one.second, another.second);
                      });
  }
  bool operator!=(const ZrXmlMapType& other) const { return !(*this == other); }

  // Read-only walk for visitors: for each entry in key order, "key" with the key, then "value" with
  // the value.
  void forEachElement(const ZrXmlObjectVisitor::ElementFunction& function) const;

  static ZrXmlMapType nullObject();

 private:
  ZrBoolean formatError(ZrXmlReader& reader, const char* signature, const std::string* received) const;

  MapContainer m_theEntries;
};

// Member definitions: any element type instantiates them; the types listed above are compiled into
// the library and declared extern below, so their users do not compile them again.

template <class K, class V>
ZrXmlMapType<K, V>::ZrXmlMapType() = default;

template <class K, class V>
ZrXmlMapType<K, V>::ZrXmlMapType(const MapContainer& entries) : m_theEntries(entries) {}

template <class K, class V>
ZrXmlMapType<K, V>::ZrXmlMapType(std::initializer_list<PlainEntry> entries) {
  for (const PlainEntry& entry : entries) m_theEntries.emplace(K(entry.first), V(entry.second));
}

template <class K, class V>
ZrXmlMapType<K, V>::ZrXmlMapType(const ZrXmlMapType& other) : ZrXmlObject(other), m_theEntries(other.m_theEntries) {}

template <class K, class V>
ZrXmlMapType<K, V>::ZrXmlMapType(ZrXmlMapType&& other) noexcept(std::is_nothrow_move_constructible<MapContainer>::value)
    : ZrXmlObject(std::move(other)), m_theEntries(std::move(other.m_theEntries)) {}

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
  ZrXmlAcceptContainer(this, visitor);
}

template <class K, class V>
ZrXmlObject* ZrXmlMapType<K, V>::clone() const {
  return new ZrXmlMapType(*this);
}

// The key, like the value, may be an empty element: that is how an empty string is written.
template <class K, class V>
ZrBoolean ZrXmlMapType<K, V>::read(ZrXmlReader& reader) {
  const ZrBoolean result = readBaseOf<ZrXmlMapType>(reader);
  m_theEntries.clear();
  if (!result) return result;
  if (reader.mode() == ZrXmlMode::emptyElement) return true;
  K key;
  for (int mode = reader.readXml(); mode != ZrXmlMode::endTag && mode != 0; mode = reader.readXml()) {
    if (mode != ZrXmlMode::startTag || reader.element().tokenText() != ZrXml::ZrElementToken.tokenText())
      return formatError(reader, __PRETTY_FUNCTION__, &reader.element().tokenText());
    mode = reader.readXml();
    if (mode != ZrXmlMode::startTag && mode != ZrXmlMode::emptyElement) return formatError(reader, __PRETTY_FUNCTION__, nullptr);
    key.read(reader);
    V& value = m_theEntries[key];
    mode = reader.readXml();
    if (mode != ZrXmlMode::startTag && mode != ZrXmlMode::emptyElement) return formatError(reader, __PRETTY_FUNCTION__, nullptr);
    value.read(reader);
    if (reader.readXml() != ZrXmlMode::endTag) return formatError(reader, __PRETTY_FUNCTION__, nullptr);
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

extern template class ZrXmlMapType<ZrXmlBasicType<std::string>, ZrXmlBasicType<bool>>;
extern template class ZrXmlMapType<ZrXmlBasicType<std::string>, ZrXmlBasicType<int>>;
extern template class ZrXmlMapType<ZrXmlBasicType<std::string>, ZrXmlBasicType<unsigned int>>;
extern template class ZrXmlMapType<ZrXmlBasicType<std::string>, ZrXmlBasicType<double>>;
extern template class ZrXmlMapType<ZrXmlBasicType<std::string>, ZrXmlBasicType<std::string>>;
extern template class ZrXmlMapType<ZrXmlBasicType<std::string>,
                                   ZrXmlMapType<ZrXmlBasicType<std::string>, ZrXmlBasicType<bool>>>;
extern template class ZrXmlMapType<ZrXmlBasicType<std::string>,
                                   ZrXmlMapType<ZrXmlBasicType<std::string>, ZrXmlBasicType<double>>>;
extern template class ZrXmlMapType<ZrXmlBasicType<std::string>, ZrXmlVectorType<ZrXmlBasicType<double>>>;
extern template class ZrXmlMapType<ZrXmlBasicType<std::string>, ZrXmlVectorType<ZrXmlBasicType<unsigned int>>>;
extern template class ZrXmlMapType<ZrXmlBasicType<unsigned int>, ZrXmlBasicType<std::string>>;
extern template class ZrXmlMapType<ZrXmlBasicType<unsigned int>, ZrXmlBasicType<unsigned int>>;
extern template class ZrXmlMapType<ZrXmlBasicType<unsigned int>, ZrXmlSetType<ZrXmlBasicType<unsigned int>>>;

#endif
