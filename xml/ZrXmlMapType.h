#ifndef ZR_XML_MAP_TYPE_H
#define ZR_XML_MAP_TYPE_H

#include <ZrXmlBasicType.h>
#include <ZrXmlObject.h>
#include <ZrXmlObjectVisitor.h>
#include <ZrXmlSetType.h>
#include <ZrXmlVectorType.h>

#include <map>
#include <string>

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
// The members are defined in the library for exactly these maps (B<T> = ZrXmlBasicType<T>):
//   B<std::string> to B<bool>, B<int>, B<unsigned int>, B<double>, B<std::string>,
//     ZrXmlMapType<B<std::string>, B<bool>>, ZrXmlMapType<B<std::string>, B<double>>,
//     ZrXmlVectorType<B<double>>, ZrXmlVectorType<B<unsigned int>>;
//   B<unsigned int> to B<std::string>, B<unsigned int>, ZrXmlSetType<B<unsigned int>>.
template <class K, class V>
class ZrXmlMapType : public ZrXmlObject {
 public:
  typedef K KeyType;
  typedef V ValueType;
  typedef std::map<K, V> MapContainer;

  ZrXmlMapType();
  ZrXmlMapType(const MapContainer& entries);  // NOLINT: implicit, so that members can be initialised from maps
  ZrXmlMapType(const ZrXmlMapType& other);
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

  bool operator==(const ZrXmlMapType& other) const { return m_theEntries == other.m_theEntries; }
  bool operator!=(const ZrXmlMapType& other) const { return !(*this == other); }

  // Read-only walk for visitors: for each entry in key order, "key" with the key, then "value" with
  // the value.
  void forEachElement(const ZrXmlObjectVisitor::ElementFunction& function) const;

  static ZrXmlMapType nullObject();

 private:
  ZrBoolean formatError(ZrXmlReader& reader, const char* signature, const std::string* received) const;

  MapContainer m_theEntries;
};

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
