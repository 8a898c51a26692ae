#ifndef ZR_XML_OBJECT_VISITOR_H
#define ZR_XML_OBJECT_VISITOR_H

#include <ZrAngle.h>
#include <ZrNonNegReal.h>

#include <ZrToken.h>

#include <functional>
#include <string>
#include <type_traits>

class ZrXmlObject;
class ZrXmlCompoundType;
class ZrXmlBaseVariableCompoundType;
class ZrBaseXmlBasicType;
template <class T>
class ZrXmlBasicType;
template <class T>
class ZrXmlEnumType;
class ZrXmlVector;
class ZrXmlOrientation;
class ZrXmlVectorVector;
template <class E>
class ZrXmlVectorType;
template <class E>
class ZrXmlSetType;
template <class K, class V>
class ZrXmlMapType;
template <class F, class S>
class ZrXmlPairType;

// Walks object trees: each object's accept() calls the visit overload of its own class. Every
// overload's default forwards to the overload of the next more general class:
//   ZrXmlBasicType<T>, ZrXmlEnumType<T>  ->  ZrBaseXmlBasicType  ->  ZrXmlObject
//   ZrXmlCompoundType                    ->  ZrXmlObject
//   ZrXmlBaseVariableCompoundType        ->  ZrXmlObject
//   ZrXmlVector, ZrXmlOrientation, ZrXmlVectorVector  ->  ZrXmlObject
//   ZrXmlVectorType<E>, ZrXmlSetType<E>, ZrXmlMapType<K,V>, ZrXmlPairType<F,S>
//                                        ->  visitContainer(container, walk)  ->  ZrXmlObject
// so a visitor overrides only what it cares about, and a class added to the library later needs one
// new overload that forwards to its base's. visit(const ZrXmlObject*) does nothing.
//
// visitContainer lets a visitor treat every container alike, whatever its element types: walk(f)
// calls f(role, element) for each element, read-only, in document order; role is "element" for the
// entries of vectors and sets, "key" and "value" for each map entry, "first" and "second" for a pair.
// The element-wise values of a vector of vectors are plain ZrVectors, read through vectorContainer().
//
// The overloads name the instantiations compiled into the library. Any other instantiation (a vector of
// an application's own class, a value of float) has no overload of its own and arrives at its generic
// entry: containers at visitContainer with their walk, single values at visit(const ZrBaseXmlBasicType*).
//
// A visitor that overrides some overloads and calls visit() on itself directly should say
// `using ZrXmlObjectVisitor::visit;` so that the other overloads stay visible.
class ZrXmlObjectVisitor {
 public:
  ZrXmlObjectVisitor() = default;
  ZrXmlObjectVisitor(const ZrXmlObjectVisitor&) = default;
  ZrXmlObjectVisitor& operator=(const ZrXmlObjectVisitor&) = default;
  virtual ~ZrXmlObjectVisitor();

  virtual void visit(const ZrXmlObject* object);
  virtual void visit(const ZrXmlCompoundType* compound);
  virtual void visit(const ZrXmlBaseVariableCompoundType* compound);
  virtual void visit(const ZrBaseXmlBasicType* value);

  virtual void visit(const ZrXmlBasicType<bool>* value);
  virtual void visit(const ZrXmlBasicType<char>* value);
  virtual void visit(const ZrXmlBasicType<short>* value);
  virtual void visit(const ZrXmlBasicType<unsigned short>* value);
  virtual void visit(const ZrXmlBasicType<int>* value);
  virtual void visit(const ZrXmlBasicType<unsigned int>* value);
  virtual void visit(const ZrXmlBasicType<unsigned char>* value);
  virtual void visit(const ZrXmlBasicType<double>* value);
  virtual void visit(const ZrXmlBasicType<std::string>* value);
  virtual void visit(const ZrXmlBasicType<ZrAngle>* value);
  virtual void visit(const ZrXmlBasicType<ZrNonNegReal>* value);

  virtual void visit(const ZrXmlEnumType<bool>* value);
  virtual void visit(const ZrXmlEnumType<short>* value);
  virtual void visit(const ZrXmlEnumType<unsigned short>* value);
  virtual void visit(const ZrXmlEnumType<int>* value);
  virtual void visit(const ZrXmlEnumType<unsigned int>* value);
  virtual void visit(const ZrXmlEnumType<unsigned char>* value);
  virtual void visit(const ZrXmlEnumType<ZrNonNegReal>* value);

  typedef std::function<void(const ZrToken& role, const ZrXmlObject& element)> ElementFunction;
  typedef std::function<void(const ElementFunction& function)> ElementWalk;
  virtual void visitContainer(const ZrXmlObject* container, const ElementWalk& walk);

  virtual void visit(const ZrXmlVector* value);
  virtual void visit(const ZrXmlOrientation* value);
  virtual void visit(const ZrXmlVectorVector* value);

  virtual void visit(const ZrXmlVectorType<ZrXmlBasicType<bool>>* container);
  virtual void visit(const ZrXmlVectorType<ZrXmlBasicType<char>>* container);
  virtual void visit(const ZrXmlVectorType<ZrXmlBasicType<short>>* container);
  virtual void visit(const ZrXmlVectorType<ZrXmlBasicType<unsigned short>>* container);
  virtual void visit(const ZrXmlVectorType<ZrXmlBasicType<int>>* container);
  virtual void visit(const ZrXmlVectorType<ZrXmlBasicType<unsigned int>>* container);
  virtual void visit(const ZrXmlVectorType<ZrXmlBasicType<unsigned char>>* container);
  virtual void visit(const ZrXmlVectorType<ZrXmlBasicType<double>>* container);
  virtual void visit(const ZrXmlVectorType<ZrXmlBasicType<std::string>>* container);
  virtual void visit(const ZrXmlVectorType<ZrXmlVector>* container);
  virtual void visit(const ZrXmlVectorType<ZrXmlOrientation>* container);
  virtual void visit(const ZrXmlVectorType<ZrXmlVectorVector>* container);
  virtual void visit(const ZrXmlVectorType<ZrXmlPairType<ZrXmlBasicType<double>, ZrXmlBasicType<double>>>* container);
  virtual void visit(
      const ZrXmlVectorType<ZrXmlPairType<ZrXmlBasicType<unsigned int>, ZrXmlBasicType<unsigned int>>>* container);
  virtual void visit(const ZrXmlVectorType<ZrXmlVectorType<ZrXmlBasicType<bool>>>* container);
  virtual void visit(const ZrXmlVectorType<ZrXmlVectorType<ZrXmlBasicType<int>>>* container);
  virtual void visit(const ZrXmlVectorType<ZrXmlVectorType<ZrXmlBasicType<unsigned int>>>* container);
  virtual void visit(const ZrXmlVectorType<ZrXmlVectorType<ZrXmlBasicType<unsigned char>>>* container);
  virtual void visit(const ZrXmlVectorType<ZrXmlVectorType<ZrXmlBasicType<double>>>* container);
  virtual void visit(const ZrXmlVectorType<
                     ZrXmlVectorType<ZrXmlPairType<ZrXmlBasicType<unsigned int>, ZrXmlBasicType<unsigned int>>>>* container);
  virtual void visit(const ZrXmlVectorType<ZrXmlVectorType<ZrXmlVectorVector>>* container);
  virtual void visit(const ZrXmlVectorType<ZrXmlVectorType<ZrXmlVectorType<ZrXmlBasicType<double>>>>* container);
  virtual void visit(const ZrXmlVectorType<ZrXmlVectorType<ZrXmlVectorType<ZrXmlBasicType<unsigned int>>>>* container);

  virtual void visit(const ZrXmlSetType<ZrXmlBasicType<unsigned int>>* container);

  virtual void visit(const ZrXmlMapType<ZrXmlBasicType<std::string>, ZrXmlBasicType<bool>>* container);
  virtual void visit(const ZrXmlMapType<ZrXmlBasicType<std::string>, ZrXmlBasicType<int>>* container);
  virtual void visit(const ZrXmlMapType<ZrXmlBasicType<std::string>, ZrXmlBasicType<unsigned int>>* container);
  virtual void visit(const ZrXmlMapType<ZrXmlBasicType<std::string>, ZrXmlBasicType<double>>* container);
  virtual void visit(const ZrXmlMapType<ZrXmlBasicType<std::string>, ZrXmlBasicType<std::string>>* container);
  virtual void visit(const ZrXmlMapType<ZrXmlBasicType<std::string>,
                                        ZrXmlMapType<ZrXmlBasicType<std::string>, ZrXmlBasicType<bool>>>* container);
  virtual void visit(const ZrXmlMapType<ZrXmlBasicType<std::string>,
                                        ZrXmlMapType<ZrXmlBasicType<std::string>, ZrXmlBasicType<double>>>* container);
  virtual void visit(const ZrXmlMapType<ZrXmlBasicType<std::string>, ZrXmlVectorType<ZrXmlBasicType<double>>>* container);
  virtual void visit(
      const ZrXmlMapType<ZrXmlBasicType<std::string>, ZrXmlVectorType<ZrXmlBasicType<unsigned int>>>* container);
  virtual void visit(const ZrXmlMapType<ZrXmlBasicType<unsigned int>, ZrXmlBasicType<std::string>>* container);
  virtual void visit(const ZrXmlMapType<ZrXmlBasicType<unsigned int>, ZrXmlBasicType<unsigned int>>* container);
  virtual void visit(
      const ZrXmlMapType<ZrXmlBasicType<unsigned int>, ZrXmlSetType<ZrXmlBasicType<unsigned int>>>* container);

  virtual void visit(const ZrXmlPairType<ZrXmlBasicType<double>, ZrXmlBasicType<double>>* container);
  virtual void visit(const ZrXmlPairType<ZrXmlBasicType<std::string>, ZrXmlBasicType<std::string>>* container);
  virtual void visit(const ZrXmlPairType<ZrXmlBasicType<std::string>, ZrXmlBasicType<unsigned int>>* container);
  virtual void visit(const ZrXmlPairType<ZrXmlBasicType<unsigned int>, ZrXmlBasicType<unsigned int>>* container);
  virtual void visit(const ZrXmlPairType<ZrXmlVector, ZrXmlVector>* container);

 protected:
  // Lets every registered component of a compound accept this visitor: attributes first, then
  // elements, each in ascending token order. Null registrations are passed over.
  void visitComponents(const ZrXmlCompoundType* compound);
};

// True when ZrXmlObjectVisitor has a visit overload for exactly T; accept() then calls it, and otherwise
// the generic entry of T's kind.
template <class T, class = void>
struct ZrXmlHasOwnVisit : std::false_type {};
template <class T>
struct ZrXmlHasOwnVisit<
    T, std::void_t<decltype(static_cast<void (ZrXmlObjectVisitor::*)(const T*)>(&ZrXmlObjectVisitor::visit))>>
    : std::true_type {};

// accept() of the container templates: the container's own overload, or visitContainer with the walk.
template <class Container>
void ZrXmlAcceptContainer(const Container* container, ZrXmlObjectVisitor* visitor) {
  if (!visitor) return;
  if constexpr (ZrXmlHasOwnVisit<Container>::value) {
    visitor->visit(container);
  } else {
    visitor->visitContainer(container, [container](const ZrXmlObjectVisitor::ElementFunction& function) {
      container->forEachElement(function);
    });
  }
}

// accept() of the single value templates: the value's own overload, or the one for all single values.
template <class Value>
void ZrXmlAcceptValue(const Value* value, ZrXmlObjectVisitor* visitor) {
  if (!visitor) return;
  if constexpr (ZrXmlHasOwnVisit<Value>::value) {
    visitor->visit(value);
  } else {
    visitor->visit(static_cast<const ZrBaseXmlBasicType*>(value));
  }
}

#endif
