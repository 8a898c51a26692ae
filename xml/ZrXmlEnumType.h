#ifndef ZR_XML_ENUM_TYPE_H
#define ZR_XML_ENUM_TYPE_H

#include <ZrBaseXmlBasicType.h>
#include <ZrNonNegReal.h>
#include <ZrPrint.h>
#include <ZrXmlObjectVisitor.h>
#include <ZrXmlReader.h>
#include <ZrXmlSchema.h>
#include <ZrXmlWriter.h>

#include <initializer_list>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

// The names an enumeration type gives once for all its objects. An application declares, beside its
// enumeration (in the same namespace, or as a friend inside the class that holds a nested one):
//
//   enum class Direction { forward, reverse };
//   inline ZrXmlEnumNames<Direction> zrXmlEnumNames(Direction) {
//     return {{Direction::forward, "forward"}, {Direction::reverse, "reverse"}};
//   }
//
// Every ZrXmlEnumType<Direction> then uses that table, built once in the program (the function is called
// once, the table kept), and objects neither build nor copy names of their own. The table rules below
// apply to it as it is built.
template <class T>
using ZrXmlEnumNames = std::vector<std::pair<T, std::string>>;

// The table of T's names when T declares zrXmlEnumNames (found by argument-dependent look-up), else none.
template <class T, class = void>
struct ZrXmlEnumTypeNames {
  static constexpr bool present = false;
};
template <class T>
struct ZrXmlEnumTypeNames<T, std::void_t<decltype(zrXmlEnumNames(std::declval<T>()))>> {
  static constexpr bool present = true;
  static const ZrXmlEnumNames<T>& table() {
    static const ZrXmlEnumNames<T> names = withoutRepeatedNames(zrXmlEnumNames(T()));
    return names;
  }

 private:
  static ZrXmlEnumNames<T> withoutRepeatedNames(const ZrXmlEnumNames<T>& given) {
    ZrXmlEnumNames<T> kept;
    for (const auto& entry : given) {
      bool known = false;
      for (const auto& earlier : kept) known = known || earlier.second == entry.second;
      if (!known) kept.push_back(entry);
    }
    return kept;
  }
};

// One value chosen from a table of allowed values, each with a name; the document holds the name.
//
// Table rules: a name may be added once (a second entry with a known name is ignored), while one value
// may have several names, of which the first added is the one written. A value missing from the table
// is written as the table's first name. Reading a name that is not in the table fails and leaves the
// value unchanged. An object whose own table is empty uses its type's names (see ZrXmlEnumNames above),
// when the type gives any; setEnumString() on such an object starts its own table from the type's.
//
// The members are compiled into the library (and declared extern below) for bool, short,
// unsigned short, int, unsigned int, unsigned char and ZrNonNegReal; any other T with == and <, such
// as an application's enum class, instantiates from this header.
template <class T>
class ZrXmlEnumType : public ZrBaseXmlBasicType {
 public:
  typedef std::pair<T, std::string> NamedValue;

  ZrXmlEnumType();
  ZrXmlEnumType(const T& value);  // NOLINT: implicit, like the single-value types
  // Convenience for members: the current value and the table in one go, e.g.
  //   ZrXmlEnumType<int> mode(MANUAL, {{MANUAL, "manual"}, {AUTOMATIC, "automatic"}});
  ZrXmlEnumType(const T& value, std::initializer_list<NamedValue> names);
  ZrXmlEnumType(const ZrXmlEnumType& other);
  ZrXmlEnumType(ZrXmlEnumType&& other) noexcept(std::is_nothrow_move_constructible<T>::value);
  // Copies the value and the name table; marks the target specified.
  ZrXmlEnumType& operator=(const ZrXmlEnumType& other);
  ZrXmlEnumType& operator=(const T& value);
  ~ZrXmlEnumType() override;

  void accept(ZrXmlObjectVisitor* visitor) const override;
  ZrXmlObject* clone() const override;
  ZrBoolean read(ZrXmlReader& reader) override;
  ZrBoolean readAttribute(ZrXmlReader& reader) override;
  ZrBoolean write(ZrXmlWriter& writer) const override;
  ZrBoolean writeSchema(ZrXmlSchema& schema) const override;
  ZrBoolean isBasicType() const override;
  ZrBoolean equality(const ZrXmlObject* other) const override;
  ZrXmlObject* newObject() const override;
  ZrToken token() const override;
  // The result is that of the search: false for a name not in the table, which leaves the value.
  virtual ZrBoolean setValueFromString(const std::string& name);

  virtual const T& value() const;
  virtual T& value();
  // Giving a value marks the object specified.
  virtual void setValue(const T& value);
  // The name written for the current value (see the table rules above). An empty table has no names:
  // the result is then the empty string.
  virtual const std::string& enumString() const;
  virtual const std::string& enumString(const T& value) const;
  virtual void setEnumString(const T& value, const std::string& name);
  // On an exact (case-sensitive) match stores the name's value and returns true; otherwise false
  // and value is untouched.
  virtual ZrBoolean findEnumString(const std::string& name, T& value);

  operator const T&() const { return m_theValue; }
  // Compares the current values only; the tables are not compared.
  bool operator==(const ZrXmlEnumType& other) const;
  bool operator!=(const ZrXmlEnumType& other) const { return !(*this == other); }
  bool operator<(const ZrXmlEnumType& other) const { return m_theValue < other.m_theValue; }

  static ZrXmlEnumType nullObject();

  // The table in the order of addition: the object's own, or its type's.
  const std::vector<NamedValue>& names() const { return table(); }

 private:
  const std::vector<NamedValue>& table() const {
    if constexpr (ZrXmlEnumTypeNames<T>::present) {
      if (m_theNames.empty()) return ZrXmlEnumTypeNames<T>::table();
    }
    return m_theNames;
  }

  ZrBoolean readName(ZrXmlReader& reader, bool found, const std::string& name, const char* signature);

  T m_theValue;
  // One table of (value, name) pairs, so that a value and its name can never drift apart.
  std::vector<NamedValue> m_theNames;
};

// Member definitions: any element type instantiates them; the types listed above are compiled into
// the library and declared extern below, so their users do not compile them again.

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
ZrXmlEnumType<T>::ZrXmlEnumType(ZrXmlEnumType&& other) noexcept(std::is_nothrow_move_constructible<T>::value)
    : ZrBaseXmlBasicType(std::move(other)),
      m_theValue(std::move(other.m_theValue)),
      m_theNames(std::move(other.m_theNames)) {}

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
  ZrXmlAcceptValue(this, visitor);
}

template <class T>
ZrXmlObject* ZrXmlEnumType<T>::clone() const {
  return new ZrXmlEnumType(*this);
}

template <class T>
ZrBoolean ZrXmlEnumType<T>::read(ZrXmlReader& reader) {
  ZrBoolean result = readBaseOf<ZrXmlEnumType>(reader);
  if (!result) return result;
  std::string name;
  bool found = elementText(reader, name);
  return readName(reader, found, name, __PRETTY_FUNCTION__);
}

template <class T>
ZrBoolean ZrXmlEnumType<T>::readAttribute(ZrXmlReader& reader) {
  ZrBoolean result = readBaseOf<ZrXmlEnumType>(reader);
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
  const ZrBoolean known = findEnumString(name, m_theValue);
  if (found && !known && reader.checkValues())
    reader.reportFaultyValue(false, reader.element().tokenText(), name, "enumeration (a name of its table)");
  return known;
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
  for (const NamedValue& entry : table()) schema.addEnumeration(entry.second);
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
  const std::vector<NamedValue>& names = table();
  if (names.empty()) return noName;
  for (const NamedValue& entry : names)
    if (entry.first == value) return entry.second;
  return names.front().second;  // deliberately a valid name rather than an empty text
}

template <class T>
void ZrXmlEnumType<T>::setEnumString(const T& value, const std::string& name) {
  if (m_theNames.empty()) m_theNames = table();
  for (const NamedValue& entry : m_theNames)
    if (entry.second == name) return;
  m_theNames.emplace_back(value, name);
}

template <class T>
ZrBoolean ZrXmlEnumType<T>::findEnumString(const std::string& name, T& value) {
  for (const NamedValue& entry : table()) {
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

extern template class ZrXmlEnumType<bool>;
extern template class ZrXmlEnumType<short>;
extern template class ZrXmlEnumType<unsigned short>;
extern template class ZrXmlEnumType<int>;
extern template class ZrXmlEnumType<unsigned int>;
extern template class ZrXmlEnumType<unsigned char>;
extern template class ZrXmlEnumType<ZrNonNegReal>;

#endif
