#ifndef ZR_XML_POLYMORPHIC_VECTOR_H
#define ZR_XML_POLYMORPHIC_VECTOR_H

#include <ZrPrint.h>
#include <ZrXmlBaseVariableCompoundType.h>
#include <ZrXmlObjectVisitor.h>
#include <ZrXmlReader.h>
#include <ZrXmlUnique.h>
#include <ZrXmlWriter.h>

#include <cstddef>
#include <iterator>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

// A list of objects of several kinds derived from Base, each held by the list and written as an element
// named by its own token(); reading creates each object from its element name through the creators
// registered for that name (and those the plug-ins named in its "addLibraries" element add):
//
//   <devices>
//     <motor name="infeed" power="0.75"/>
//     <sensor name="photoEye"><range>0.2</range></sensor>
//   </devices>
//
// An owner registers the list as one of its members, and one creator per kind, in its
// registerComponents():
//
//   registerComponent(ZrToken(ns, "devices"), &m_theDevices);
//   m_theDevices.registerComponentCreator(ZrMotor::classToken(), ZrXml::create<ZrMotor>);
//   m_theDevices.registerKind<ZrSensor>();   // the same, named by ZrSensor's classToken()
//
// Registering a name again replaces its creator. An element whose name has no creator, whose creator
// makes nothing, or makes an object that is not a Base, is reported with file and line (print type 4,
// so the reader counts it) and skipped with its whole subtree; reading goes on with the next element.
//
// Copies are deep: a copy holds copies of the objects and the same creators, so that it reads as its
// source does.
template <class Base>
class ZrXmlPolymorphicVector : public ZrXmlBaseVariableCompoundType {
  static_assert(std::is_base_of<ZrXmlObject, Base>::value, "ZrXmlPolymorphicVector<Base>: Base must be a ZrXmlObject");

 public:
  typedef std::vector<std::unique_ptr<Base>> Container;

  // Walks the objects as Base& (const Base& for the const form), in order.
  template <class Value, class Position>
  class Iterator {
   public:
    using iterator_category = std::bidirectional_iterator_tag;
    using value_type = Base;
    using difference_type = std::ptrdiff_t;
    using pointer = Value*;
    using reference = Value&;

    Iterator() = default;
    explicit Iterator(Position position) : m_thePosition(position) {}
    reference operator*() const { return **m_thePosition; }
    pointer operator->() const { return m_thePosition->get(); }
    Iterator& operator++() {
      ++m_thePosition;
      return *this;
    }
    Iterator operator++(int) { return Iterator(m_thePosition++); }
    Iterator& operator--() {
      --m_thePosition;
      return *this;
    }
    Iterator operator--(int) { return Iterator(m_thePosition--); }
    bool operator==(const Iterator& other) const { return m_thePosition == other.m_thePosition; }
    bool operator!=(const Iterator& other) const { return m_thePosition != other.m_thePosition; }

   private:
    Position m_thePosition{};
  };
  typedef Iterator<Base, typename Container::iterator> iterator;
  typedef Iterator<const Base, typename Container::const_iterator> const_iterator;

  ZrXmlPolymorphicVector() = default;
  ZrXmlPolymorphicVector(const ZrXmlPolymorphicVector& other);
  ZrXmlPolymorphicVector(ZrXmlPolymorphicVector&& other);
  // Replaces the objects by copies of other's and adds other's creators to this list's.
  ZrXmlPolymorphicVector& operator=(const ZrXmlPolymorphicVector& other);
  ZrXmlPolymorphicVector& operator=(ZrXmlPolymorphicVector&& other);
  ~ZrXmlPolymorphicVector() override = default;

  void accept(ZrXmlObjectVisitor* visitor) const override;
  ZrXmlObject* clone() const override { return new ZrXmlPolymorphicVector(*this); }
  ZrXmlObject* newObject() const override { return new ZrXmlPolymorphicVector(); }
  // The same library list and, position by position, objects of equal value.
  ZrBoolean equality(const ZrXmlObject* other) const override;
  ZrToken token() const override { return classToken(); }
  static ZrToken classToken() { return ZrXml::ns + "polymorphicVectorType"; }
  // Reads the list afresh: the objects held before are dropped, as a vector's are.
  ZrBoolean read(ZrXmlReader& reader) override;
  ZrBoolean write(ZrXmlWriter& writer) const override;
  ZrBoolean readVariableComponent(const ZrToken& token, ZrXmlReader& reader) override;

  // Registers T's creator under T's token: T::classToken() when T declares one, else the token() of
  // a default T.
  template <class T>
  void registerKind();

  std::size_t size() const { return m_theItems.size(); }
  bool empty() const { return m_theItems.empty(); }
  Base& operator[](std::size_t index) { return *m_theItems[index]; }
  const Base& operator[](std::size_t index) const { return *m_theItems[index]; }
  iterator begin() { return iterator(m_theItems.begin()); }
  iterator end() { return iterator(m_theItems.end()); }
  const_iterator begin() const { return const_iterator(m_theItems.begin()); }
  const_iterator end() const { return const_iterator(m_theItems.end()); }
  const Container& container() const { return m_theItems; }

  // Appends item; a null item is not added. Adding marks the list specified.
  void push_back(std::unique_ptr<Base> item);
  // Appends a new T made from arguments and returns it.
  template <class T, class... Arguments>
  T& emplace_back(Arguments&&... arguments);
  // Removes the object at index; false (and nothing removed) past the end.
  bool erase(std::size_t index);
  void clear() { m_theItems.clear(); }

  bool operator==(const ZrXmlPolymorphicVector& other) const { return equality(&other); }
  bool operator!=(const ZrXmlPolymorphicVector& other) const { return !equality(&other); }

 protected:
  // The creators come from the owner (registerComponentCreator, registerKind), not from the list.
  void registerComponentCreators() override {}

 private:
  template <class T, class = void>
  struct HasClassToken : std::false_type {};
  template <class T>
  struct HasClassToken<T, std::void_t<decltype(T::classToken())>> : std::true_type {};

  void copyItems(const Container& items);
  void copyCreators(const ZrXmlPolymorphicVector& other);
  void reportSkipped(const char* fault, const ZrToken& token, ZrXmlReader& reader) const;

  Container m_theItems;
};

template <class Base>
ZrXmlPolymorphicVector<Base>::ZrXmlPolymorphicVector(const ZrXmlPolymorphicVector& other)
    : ZrXmlBaseVariableCompoundType(other) {
  copyCreators(other);
  copyItems(other.m_theItems);
}

template <class Base>
ZrXmlPolymorphicVector<Base>::ZrXmlPolymorphicVector(ZrXmlPolymorphicVector&& other)
    : ZrXmlBaseVariableCompoundType(other), m_theItems(std::move(other.m_theItems)) {
  copyCreators(other);
}

template <class Base>
ZrXmlPolymorphicVector<Base>& ZrXmlPolymorphicVector<Base>::operator=(const ZrXmlPolymorphicVector& other) {
  if (this != &other) {
    ZrXmlBaseVariableCompoundType::operator=(other);
    copyCreators(other);
    copyItems(other.m_theItems);
  }
  return *this;
}

template <class Base>
ZrXmlPolymorphicVector<Base>& ZrXmlPolymorphicVector<Base>::operator=(ZrXmlPolymorphicVector&& other) {
  if (this != &other) {
    ZrXmlBaseVariableCompoundType::operator=(other);
    copyCreators(other);
    m_theItems = std::move(other.m_theItems);
  }
  return *this;
}

template <class Base>
void ZrXmlPolymorphicVector<Base>::copyItems(const Container& items) {
  Container copies;
  copies.reserve(items.size());
  for (const std::unique_ptr<Base>& item : items) {
    std::unique_ptr<Base> copy = ZrXml::cloneUnique<Base>(*item);
    if (copy)
      copies.push_back(std::move(copy));
    else  // a class whose clone() makes another class
      Zr::Print::instance().write(
          Zr::PrintError, "ZrXmlPolymorphicVector Error: the copy of %s is not of the list's kind; not copied.\n",
          item->token().c_str());
  }
  m_theItems = std::move(copies);
}

template <class Base>
void ZrXmlPolymorphicVector<Base>::copyCreators(const ZrXmlPolymorphicVector& other) {
  for (const auto& entry : other.creatorMap()) registerComponentCreator(entry.first, entry.second);
}

// Each object is one element of the visitor's container walk, its role the element's name.
template <class Base>
void ZrXmlPolymorphicVector<Base>::accept(ZrXmlObjectVisitor* visitor) const {
  if (!visitor) return;
  visitor->visitContainer(this, [this](const ZrXmlObjectVisitor::ElementFunction& function) {
    for (const std::unique_ptr<Base>& item : m_theItems) function(item->token(), *item);
  });
}

template <class Base>
ZrBoolean ZrXmlPolymorphicVector<Base>::equality(const ZrXmlObject* other) const {
  const ZrXmlPolymorphicVector* same = dynamic_cast<const ZrXmlPolymorphicVector*>(other);
  if (!same || same->m_theItems.size() != m_theItems.size()) return false;
  if (!addLibraries().equality(&same->addLibraries())) return false;
  for (std::size_t index = 0; index < m_theItems.size(); ++index)
    if (!m_theItems[index]->equality(same->m_theItems[index].get())) return false;
  return true;
}

template <class Base>
ZrBoolean ZrXmlPolymorphicVector<Base>::read(ZrXmlReader& reader) {
  m_theItems.clear();
  return ZrXmlBaseVariableCompoundType::read(reader);
}

// The library list first (its libraries provide creators for the elements after it), then one element
// per object, named by the object.
template <class Base>
ZrBoolean ZrXmlPolymorphicVector<Base>::write(ZrXmlWriter& writer) const {
  const ZrBoolean result = ZrXmlBaseVariableCompoundType::write(writer);
  for (const std::unique_ptr<Base>& item : m_theItems) {
    writer.writeStartTag(item->token());
    item->write(writer);
    writer.writeEndTag();
  }
  return result;
}

// Every child is taken: what cannot be read is reported here, with the file, and skipped.
template <class Base>
ZrBoolean ZrXmlPolymorphicVector<Base>::readVariableComponent(const ZrToken& token, ZrXmlReader& reader) {
  if (readLibraryList(token, reader)) return true;
  std::unique_ptr<ZrXmlObject> created(newObjectFromToken(token));
  Base* item = dynamic_cast<Base*>(created.get());
  if (!item) {
    if (created)
      reportSkipped("the object made is not of the list's kind", token, reader);
    else if (creatorMap().count(token) != 0)
      reportSkipped("its creator made no object", token, reader);
    else
      reportSkipped("unknown kind", token, reader);
    skipElement(reader);
    return true;
  }
  created.release();
  std::unique_ptr<Base> owned(item);
  owned->read(reader);
  m_theItems.push_back(std::move(owned));
  return true;
}

template <class Base>
void ZrXmlPolymorphicVector<Base>::reportSkipped(const char* fault, const ZrToken& token, ZrXmlReader& reader) const {
  Zr::Print::instance().write(Zr::PrintError,
                              "ZrXmlPolymorphicVector Error: %s: %s; element skipped.\n\tFile: %s\n\tLine: %d\n", fault,
                              token.c_str(), reader.filename().c_str(), reader.lineCountOfFile());
}

template <class Base>
template <class T>
void ZrXmlPolymorphicVector<Base>::registerKind() {
  static_assert(std::is_base_of<Base, T>::value,
                "ZrXmlPolymorphicVector<Base>::registerKind<T>: T must derive from Base");
  if constexpr (HasClassToken<T>::value)
    registerComponentCreator(T::classToken(), ZrXml::create<T>);
  else
    registerComponentCreator(T().token(), ZrXml::create<T>);
}

template <class Base>
void ZrXmlPolymorphicVector<Base>::push_back(std::unique_ptr<Base> item) {
  if (!item) return;
  m_theItems.push_back(std::move(item));
  setSpecified(true);
}

template <class Base>
template <class T, class... Arguments>
T& ZrXmlPolymorphicVector<Base>::emplace_back(Arguments&&... arguments) {
  static_assert(std::is_base_of<Base, T>::value,
                "ZrXmlPolymorphicVector<Base>::emplace_back<T>: T must derive from Base");
  T* item = new T(std::forward<Arguments>(arguments)...);
  push_back(std::unique_ptr<Base>(item));
  return *item;
}

template <class Base>
bool ZrXmlPolymorphicVector<Base>::erase(std::size_t index) {
  if (index >= m_theItems.size()) return false;
  m_theItems.erase(m_theItems.begin() + static_cast<std::ptrdiff_t>(index));
  return true;
}

#endif
