#ifndef ZR_BASE_XML_BASIC_TYPE_H
#define ZR_BASE_XML_BASIC_TYPE_H

#include <ZrXmlObject.h>

#include <string>

// Groups the leaf value types (single values and enumerations), so that a visitor or a caller can
// treat "any plain value" alike. It adds no state and no virtual operation of its own.
class ZrBaseXmlBasicType : public ZrXmlObject {
 public:
  ZrBaseXmlBasicType() = default;
  ZrBaseXmlBasicType(const ZrBaseXmlBasicType&) = default;
  ZrBaseXmlBasicType(ZrBaseXmlBasicType&&) noexcept = default;
  ZrBaseXmlBasicType& operator=(const ZrBaseXmlBasicType&) = default;
  ~ZrBaseXmlBasicType() override = default;

  void accept(ZrXmlObjectVisitor* visitor) const override;

 protected:
  // Fetches the text of the element the reader stands on, by the reader's mode: an empty-element tag
  // gives the empty text, content gives the content, and a start tag is followed by one more step,
  // whose content or end tag gives the text. Anything else means the element holds no data: the
  // result is false and the text is empty.
  static bool elementText(ZrXmlReader& reader, std::string& text);
};

template <class T>
class ZrXmlBasicType;
template <class T>
class ZrXmlEnumType;

// What a container's initializer list holds for element type E: the plain value of a single-value
// type (T for ZrXmlBasicType<T> and ZrXmlEnumType<T>), so that `zoneLengths = {1.5, 2, 3}` or
// `names = {"infeed", "outfeed"}` read as they would for a std::vector; E itself for any other type.
template <class E>
struct ZrXmlPlainValue {
  typedef E type;
};
template <class T>
struct ZrXmlPlainValue<ZrXmlBasicType<T>> {
  typedef T type;
};
template <class T>
struct ZrXmlPlainValue<ZrXmlEnumType<T>> {
  typedef T type;
};

#endif
