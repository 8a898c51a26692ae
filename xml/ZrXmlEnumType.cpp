#include "ZrXmlEnumType.h"

#include "ZrPrint.h"
#include "ZrXmlObjectVisitor.h"
#include "ZrXmlReader.h"
#include "ZrXmlSchema.h"
#include "ZrXmlWriter.h"

#include <typeinfo>

template <class T>
ZrXmlEnumType<T>::ZrXmlEnumType() : m_theValue() {}

template <class T>
ZrXmlEnumType<T>::ZrXmlEnumType(const T& value) : m_theValue(value) {}

template <class T>
ZrXmlEnumType<T>::ZrXmlEnumType(const T& value, std::initializer_list<NamedValue> names) : m_theValue(value) {
  for (const NamedValue& entry : names) setEnumString(entry.first, entry.second);
}

template <class T>
ZrXmlEnumType<T>::ZrXmlEnumType(const ZrXmlEnumType& other)
    : ZrBaseXmlBasicType(other), m_theValue(other.m_theValue), m_theNames(other.m_theNames) {}

template <class T>
ZrXmlEnumType<T>& ZrXmlEnumType<T>::operator=(const ZrXmlEnumType& other) {
  ZrBaseXmlBasicType::operator=(other);
  if (this != &other) {
    m_theValue = other.m_theValue;
    m_theNames = other.m_theNames;
  }
  return *this;
}

template <class T>
ZrXmlEnumType<T>& ZrXmlEnumType<T>::operator=(const T& value) {
  setValue(value);
  return *this;
}

template <class T>
ZrXmlEnumType<T>::~ZrXmlEnumType() = default;

template <class T>
void ZrXmlEnumType<T>::accept(ZrXmlObjectVisitor* visitor) const {
  if (visitor) visitor->visit(this);
}

template <class T>
ZrXmlObject* ZrXmlEnumType<T>::clone() const {
  return new ZrXmlEnumType(*this);
}

template <class T>
ZrBoolean ZrXmlEnumType<T>::read(ZrXmlReader& reader) {
  ZrBoolean result = ZrXmlObject::read(reader);
  if (!result) return result;
  std::string name;
  bool found = elementText(reader, name);
  return readName(reader, found, name, __PRETTY_FUNCTION__);
}

template <class T>
ZrBoolean ZrXmlEnumType<T>::readAttribute(ZrXmlReader& reader) {
  ZrBoolean result = ZrXmlObject::read(reader);
  if (!result) return result;
  if (reader.remainingNumOfAttributes() == 0) return readName(reader, false, std::string(), __PRETTY_FUNCTION__);
  return readName(reader, true, reader.attributeValue(), __PRETTY_FUNCTION__);
}

// Reports missing data under the reading function's signature, then looks the name up: an unknown
// name fails without a message of its own.
template <class T>
ZrBoolean ZrXmlEnumType<T>::readName(ZrXmlReader& reader, bool found, const std::string& name, const char* signature) {
  if (!found) {
    Zr::Print::instance().ostream(Zr::PrintError, signature)
        << "ZrXmlEnumType Error: file not valid.\n\t" << "No data found.\n\tFile: " << reader.filename()
        << "\n\tLine: " << reader.lineCountOfFile() << '\n';
  }
  return findEnumString(name, m_theValue);
}

// The name is passed to the writer as it stands. The schema type of a name is a string; a writer that
// feeds its schema generator is given the table's names as well.
template <class T>
ZrBoolean ZrXmlEnumType<T>::write(ZrXmlWriter& writer) const {
  if (!ZrXmlObject::write(writer)) return false;
  if (writer.schemaWriter()) writeSchema(writer.schema());
  writer.data(enumString());
  return true;
}

// The names of the table are the only texts a document may hold.
template <class T>
ZrBoolean ZrXmlEnumType<T>::writeSchema(ZrXmlSchema& schema) const {
  ZrBoolean result = ZrXmlObject::writeSchema(schema);
  if (!result) return result;
  schema.setType(typeid(std::string));
  for (const NamedValue& entry : m_theNames) schema.addEnumeration(entry.second);
  return result;
}

template <class T>
ZrBoolean ZrXmlEnumType<T>::isBasicType() const {
  return true;
}

template <class T>
ZrBoolean ZrXmlEnumType<T>::equality(const ZrXmlObject* other) const {
  const ZrXmlEnumType* same = dynamic_cast<const ZrXmlEnumType*>(other);
  return same != nullptr && *this == *same;
}

template <class T>
ZrXmlObject* ZrXmlEnumType<T>::newObject() const {
  return new ZrXmlEnumType();
}

template <class T>
ZrToken ZrXmlEnumType<T>::token() const {
  return ZrXml::ZrEnumTypeToken;
}

template <class T>
ZrBoolean ZrXmlEnumType<T>::setValueFromString(const std::string& name) {
  return findEnumString(name, m_theValue);
}

template <class T>
const T& ZrXmlEnumType<T>::value() const {
  return m_theValue;
}

template <class T>
T& ZrXmlEnumType<T>::value() {
  return m_theValue;
}

template <class T>
void ZrXmlEnumType<T>::setValue(const T& value) {
  m_theValue = value;
  setSpecified(true);
}

template <class T>
const std::string& ZrXmlEnumType<T>::enumString() const {
  return enumString(m_theValue);
}

template <class T>
const std::string& ZrXmlEnumType<T>::enumString(const T& value) const {
  static const std::string noName;
  if (m_theNames.empty()) return noName;
  for (const NamedValue& entry : m_theNames)
    if (entry.first == value) return entry.second;
  return m_theNames.front().second;  // deliberately a valid name rather than an empty text
}

template <class T>
void ZrXmlEnumType<T>::setEnumString(const T& value, const std::string& name) {
  for (const NamedValue& entry : m_theNames)
    if (entry.second == name) return;
  m_theNames.emplace_back(value, name);
}

template <class T>
ZrBoolean ZrXmlEnumType<T>::findEnumString(const std::string& name, T& value) {
  for (const NamedValue& entry : m_theNames) {
    if (entry.second == name) {
      value = entry.first;
      return true;
    }
  }
  return false;
}

template <class T>
bool ZrXmlEnumType<T>::operator==(const ZrXmlEnumType& other) const {
  return ZrXmlObject::operator==(other) && m_theValue == other.m_theValue;
}

template <class T>
ZrXmlEnumType<T> ZrXmlEnumType<T>::nullObject() {
  return ZrXmlEnumType();
}

template class ZrXmlEnumType<bool>;
template class ZrXmlEnumType<short>;
template class ZrXmlEnumType<unsigned short>;
template class ZrXmlEnumType<int>;
template class ZrXmlEnumType<unsigned int>;
template class ZrXmlEnumType<unsigned char>;
template class ZrXmlEnumType<ZrNonNegReal>;
