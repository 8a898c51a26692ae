#ifndef ZR_XML_OBJECT_VISITOR_H
#define ZR_XML_OBJECT_VISITOR_H

#include <ZrAngle.h>
#include <ZrNonNegReal.h>

#include <string>

class ZrXmlObject;
class ZrXmlCompoundType;
class ZrBaseXmlBasicType;
template <class T>
class ZrXmlBasicType;
template <class T>
class ZrXmlEnumType;

// Walks object trees: each object's accept() calls the visit overload of its own class. Every
// overload's default forwards to the overload of the next more general class:
//   ZrXmlBasicType<T>, ZrXmlEnumType<T>  ->  ZrBaseXmlBasicType  ->  ZrXmlObject
//   ZrXmlCompoundType                    ->  ZrXmlObject
// so a visitor overrides only what it cares about, and a class added to the library later needs one
// new overload that forwards to its base's. visit(const ZrXmlObject*) does nothing.
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

 protected:
  // Lets every registered component of a compound accept this visitor: attributes first, then
  // elements, each in ascending token order. Null registrations are passed over.
  void visitComponents(const ZrXmlCompoundType* compound);
};

#endif
