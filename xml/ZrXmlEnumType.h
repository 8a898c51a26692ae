#ifndef ZR_XML_ENUM_TYPE_H
#define ZR_XML_ENUM_TYPE_H

#include <ZrBaseXmlBasicType.h>
#include <ZrNonNegReal.h>

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

// One value chosen from a table of allowed values, each with a name; the document holds the name.
//
// Table rules: a name may be added once (a second entry with a known name is ignored), while one value
// may have several names, of which the first added is the one written. A value missing from the table
// is written as the table's first name. Reading a name that is not in the table fails and leaves the
// value unchanged.
//
// The members are defined in the library for bool, short, unsigned short, int, unsigned int,
// unsigned char and ZrNonNegReal.
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

  // The table in the order of addition.
  const std::vector<NamedValue>& names() const { return m_theNames; }

 private:
  ZrBoolean readName(ZrXmlReader& reader, bool found, const std::string& name, const char* signature);

  T m_theValue;
  // One table of (value, name) pairs, so that a value and its name can never drift apart.
  std::vector<NamedValue> m_theNames;
};

extern template class ZrXmlEnumType<bool>;
extern template class ZrXmlEnumType<short>;
extern template class ZrXmlEnumType<unsigned short>;
extern template class ZrXmlEnumType<int>;
extern template class ZrXmlEnumType<unsigned int>;
extern template class ZrXmlEnumType<unsigned char>;
extern template class ZrXmlEnumType<ZrNonNegReal>;

#endif
