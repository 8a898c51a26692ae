#ifndef ZR_XML_OBJECT_H
#define ZR_XML_OBJECT_H

#include <ZrToken.h>
#include <ZrTypes.h>

#include <cstdint>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>

class ZrXmlObjectVisitor;
class ZrXmlReader;
class ZrXmlSchema;
class ZrXmlWriter;

// The root of every class that reads itself from a ZrXmlReader and writes itself to a ZrXmlWriter.
// It holds nothing but a flag word:
//   bit 0 (m_theXmlInitializedBit): xmlInit has run, so the object's components are registered;
//   bit 1 (m_theSpecifiedBit): the object has been given a value (read, copied or assigned).
//
// Registration is lazy and also happens on const objects (writing and schema generation are const),
// so the flag word is mutable and the const operations run xmlInit through ensureXmlInit().
//
// Copying is deliberately asymmetric: a copy is specified but never initialised, so that it registers
// its own members on first use instead of pointing into its source; assignment only marks the target
// specified and keeps its registrations, which already point at its own members.
class ZrXmlObject {
 public:
  static constexpr std::uint8_t m_theXmlInitializedBit = 0x01;
  static constexpr std::uint8_t m_theSpecifiedBit = 0x02;

  // Construction and destruction are inline: arrays of small objects make and drop millions of them.
  ZrXmlObject() : m_theFlags(0) {}
  ZrXmlObject(const ZrXmlObject& other);
  // A move is a copy that may take its source's values, so that containers that grow move their
  // elements instead of copying them; the object made starts as a copy does.
  ZrXmlObject(ZrXmlObject&&) noexcept : m_theFlags(m_theSpecifiedBit) {}
  ZrXmlObject& operator=(const ZrXmlObject& other);
  virtual ~ZrXmlObject() = default;

  // The base holds no value: any two objects compare equal here. Values are compared by equality().
  bool operator==(const ZrXmlObject& other) const;

  virtual void accept(ZrXmlObjectVisitor* visitor) const;
  virtual ZrXmlObject* clone() const = 0;
  virtual ZrBoolean xmlInit();
  virtual ZrBoolean read(ZrXmlReader& reader);
  virtual ZrBoolean readAttribute(ZrXmlReader& reader);
  virtual ZrBoolean write(ZrXmlWriter& writer) const;
  virtual ZrBoolean writeSchema(ZrXmlSchema& schema) const;
  virtual ZrBoolean createSchema(const std::string& filename, const ZrToken& token) const;
  virtual ZrBoolean xmlInitialized() const;
  virtual void setXmlInitialized(ZrBoolean value);
  virtual ZrBoolean specified() const;
  virtual void setSpecified(ZrBoolean value);
  virtual ZrBoolean isBasicType() const;
  virtual ZrBoolean equalsDefault() const;
  virtual ZrBoolean equality(const ZrXmlObject* other) const = 0;
  virtual ZrXmlObject* newObject() const = 0;
  // Returned by value so that a class may build its token on the fly; most return a constant.
  virtual ZrToken token() const = 0;

  std::uint8_t flags() const { return m_theFlags; }

 protected:
  // Runs xmlInit once, also from const operations: registrations are built on first use.
  void ensureXmlInit() const;
  // The flags read() leaves, set without its virtual calls: only for objects whose class keeps the
  // base's xmlInit, xmlInitialized, setXmlInitialized and setSpecified, such as the plain values that
  // containers make by the million while reading.
  void setReadFlags() { m_theFlags = static_cast<std::uint8_t>(m_theFlags | m_theXmlInitializedBit | m_theSpecifiedBit); }
  // What read() of this base does, for a library class Own that keeps the base's xmlInit,
  // xmlInitialized, setXmlInitialized and setSpecified: an object of exactly that class has its flags set
  // at once, without the four virtual calls; an object of a class derived from it, which may override
  // any of them, takes the calls. Type information that is not the very object of Own's (a copy in
  // another library, say) takes the calls too, which is never wrong.
  template <class Own>
  ZrBoolean readBaseOf(ZrXmlReader& reader) {
    if (&typeid(*this) != &typeid(Own)) return ZrXmlObject::read(reader);
    setReadFlags();
    return true;
  }

 private:
  void setFlag(std::uint8_t bit, ZrBoolean value) const;

  mutable std::uint8_t m_theFlags;
};

// Whether E declares an operator== of its own, as the library's value and container types do. A
// compound inherits the one of ZrXmlCompoundType, which compares registrations, not member values.
template <class E, class = void>
struct ZrXmlHasOwnEquality : std::false_type {};
template <class E>
struct ZrXmlHasOwnEquality<E, std::void_t<decltype(static_cast<bool (E::*)(const E&) const>(&E::operator==))>>
    : std::true_type {};

// How the container templates compare their elements: by the element type's own ==, or else by
// equality(), where an application's class compares its members.
template <class E>
bool ZrXmlSameValue(const E& one, const E& other) {
  if constexpr (ZrXmlHasOwnEquality<E>::value) {
    return one == other;
  } else {
    return one.equality(&other);
  }
}

#endif
