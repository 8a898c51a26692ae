#ifndef ZR_XML_UNIQUE_H
#define ZR_XML_UNIQUE_H

#include <ZrToken.h>
#include <ZrXmlObject.h>

#include <memory>
#include <type_traits>

// Owning forms of the operations that hand out new objects. clone(), newObject(), creators and
// newObjectFromToken() return plain pointers that the caller owns; these wrap them at once:
//
//   std::unique_ptr<ZrMotor> copy = ZrXml::cloneUnique(motor);
//   std::unique_ptr<ZrDevice> device = ZrXml::makeFromToken<ZrDevice>(*reader.factoryPointer(), token);
//   list.registerComponentCreator(ZrMotor::classToken(), ZrXml::create<ZrMotor>);
namespace ZrXml {

// Keeps object when it is a T, deletes it otherwise; null stays null.
template <class T>
std::unique_ptr<T> ownAs(ZrXmlObject* object) {
  std::unique_ptr<ZrXmlObject> owned(object);
  T* typed = dynamic_cast<T*>(owned.get());
  if (!typed) return nullptr;
  owned.release();
  return std::unique_ptr<T>(typed);
}

// A copy of object, of its dynamic type, held as a T.
template <class T>
std::unique_ptr<T> cloneUnique(const T& object) {
  return ownAs<T>(object.clone());
}

// A new object of object's dynamic type in its default state, held as a T.
template <class T>
std::unique_ptr<T> newUnique(const T& object) {
  return ownAs<T>(object.newObject());
}

// The object that source (a factory or a variable compound) makes for token, held as a T;
// null when source knows no such token or makes something that is not a T.
template <class T = ZrXmlObject, class Source>
std::unique_ptr<T> makeFromToken(const Source& source, const ZrToken& token) {
  return ownAs<T>(source.newObjectFromToken(token));
}

// The creator of T's objects, for registerComponentCreator: a new default T, owned by the caller.
template <class T>
ZrXmlObject* create() {
  static_assert(std::is_base_of<ZrXmlObject, T>::value, "ZrXml::create<T>: T must be a ZrXmlObject");
  return new T();
}

}  // namespace ZrXml

#endif
