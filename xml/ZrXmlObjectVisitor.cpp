#include "ZrXmlObjectVisitor.h"

#include "ZrBaseXmlBasicType.h"
#include "ZrXmlBasicType.h"
#include "ZrXmlBaseVariableCompoundType.h"
#include "ZrXmlCompoundType.h"
#include "ZrXmlEnumType.h"
#include "ZrXmlMapType.h"
#include "ZrXmlOrientation.h"
#include "ZrXmlPairType.h"
#include "ZrXmlSetType.h"
#include "ZrXmlVector.h"
#include "ZrXmlVectorType.h"
#include "ZrXmlVectorVector.h"

ZrXmlObjectVisitor::~ZrXmlObjectVisitor() = default;

void ZrXmlObjectVisitor::visit(const ZrXmlObject*) {}

void ZrXmlObjectVisitor::visit(const ZrXmlCompoundType* compound) { visit(static_cast<const ZrXmlObject*>(compound)); }

void ZrXmlObjectVisitor::visit(const ZrXmlBaseVariableCompoundType* compound) {
  visit(static_cast<const ZrXmlObject*>(compound));
}

void ZrXmlObjectVisitor::visit(const ZrBaseXmlBasicType* value) { visit(static_cast<const ZrXmlObject*>(value)); }

// Each value overload forwards to the one for all plain values.
#define ZR_FORWARD_TO_BASIC(Template, T) \
  void ZrXmlObjectVisitor::visit(const Template<T>* value) { visit(static_cast<const ZrBaseXmlBasicType*>(value)); }

ZR_FORWARD_TO_BASIC(ZrXmlBasicType, bool)
ZR_FORWARD_TO_BASIC(ZrXmlBasicType, char)
ZR_FORWARD_TO_BASIC(ZrXmlBasicType, short)
ZR_FORWARD_TO_BASIC(ZrXmlBasicType, unsigned short)
ZR_FORWARD_TO_BASIC(ZrXmlBasicType, int)
ZR_FORWARD_TO_BASIC(ZrXmlBasicType, unsigned int)
ZR_FORWARD_TO_BASIC(ZrXmlBasicType, unsigned char)
ZR_FORWARD_TO_BASIC(ZrXmlBasicType, double)
ZR_FORWARD_TO_BASIC(ZrXmlBasicType, std::string)
ZR_FORWARD_TO_BASIC(ZrXmlBasicType, ZrAngle)
ZR_FORWARD_TO_BASIC(ZrXmlBasicType, ZrNonNegReal)
ZR_FORWARD_TO_BASIC(ZrXmlEnumType, bool)
ZR_FORWARD_TO_BASIC(ZrXmlEnumType, short)
ZR_FORWARD_TO_BASIC(ZrXmlEnumType, unsigned short)
ZR_FORWARD_TO_BASIC(ZrXmlEnumType, int)
ZR_FORWARD_TO_BASIC(ZrXmlEnumType, unsigned int)
ZR_FORWARD_TO_BASIC(ZrXmlEnumType, unsigned char)
ZR_FORWARD_TO_BASIC(ZrXmlEnumType, ZrNonNegReal)

#undef ZR_FORWARD_TO_BASIC

void ZrXmlObjectVisitor::visitContainer(const ZrXmlObject* container, const ElementWalk&) { visit(container); }

void ZrXmlObjectVisitor::visit(const ZrXmlVector* value) { visit(static_cast<const ZrXmlObject*>(value)); }
void ZrXmlObjectVisitor::visit(const ZrXmlOrientation* value) { visit(static_cast<const ZrXmlObject*>(value)); }
void ZrXmlObjectVisitor::visit(const ZrXmlVectorVector* value) { visit(static_cast<const ZrXmlObject*>(value)); }

// Each container overload hands the container on with a walk over its elements.
#define ZR_FORWARD_TO_CONTAINER(...)                                                                    \
  void ZrXmlObjectVisitor::visit(const __VA_ARGS__* container) {                                        \
    visitContainer(container, [container](const ElementFunction& function) { container->forEachElement(function); }); \
  }
#define B(T) ZrXmlBasicType<T>

ZR_FORWARD_TO_CONTAINER(ZrXmlVectorType<B(bool)>)
ZR_FORWARD_TO_CONTAINER(ZrXmlVectorType<B(char)>)
ZR_FORWARD_TO_CONTAINER(ZrXmlVectorType<B(short)>)
ZR_FORWARD_TO_CONTAINER(ZrXmlVectorType<B(unsigned short)>)
ZR_FORWARD_TO_CONTAINER(ZrXmlVectorType<B(int)>)
ZR_FORWARD_TO_CONTAINER(ZrXmlVectorType<B(unsigned int)>)
ZR_FORWARD_TO_CONTAINER(ZrXmlVectorType<B(unsigned char)>)
ZR_FORWARD_TO_CONTAINER(ZrXmlVectorType<B(double)>)
ZR_FORWARD_TO_CONTAINER(ZrXmlVectorType<B(std::string)>)
ZR_FORWARD_TO_CONTAINER(ZrXmlVectorType<ZrXmlVector>)
ZR_FORWARD_TO_CONTAINER(ZrXmlVectorType<ZrXmlOrientation>)
ZR_FORWARD_TO_CONTAINER(ZrXmlVectorType<ZrXmlVectorVector>)
ZR_FORWARD_TO_CONTAINER(ZrXmlVectorType<ZrXmlPairType<B(double), B(double)>>)
ZR_FORWARD_TO_CONTAINER(ZrXmlVectorType<ZrXmlPairType<B(unsigned int), B(unsigned int)>>)
ZR_FORWARD_TO_CONTAINER(ZrXmlVectorType<ZrXmlVectorType<B(bool)>>)
ZR_FORWARD_TO_CONTAINER(ZrXmlVectorType<ZrXmlVectorType<B(int)>>)
ZR_FORWARD_TO_CONTAINER(ZrXmlVectorType<ZrXmlVectorType<B(unsigned int)>>)
ZR_FORWARD_TO_CONTAINER(ZrXmlVectorType<ZrXmlVectorType<B(unsigned char)>>)
ZR_FORWARD_TO_CONTAINER(ZrXmlVectorType<ZrXmlVectorType<B(double)>>)
ZR_FORWARD_TO_CONTAINER(ZrXmlVectorType<ZrXmlVectorType<ZrXmlPairType<B(unsigned int), B(unsigned int)>>>)
ZR_FORWARD_TO_CONTAINER(ZrXmlVectorType<ZrXmlVectorType<ZrXmlVectorVector>>)
ZR_FORWARD_TO_CONTAINER(ZrXmlVectorType<ZrXmlVectorType<ZrXmlVectorType<B(double)>>>)
ZR_FORWARD_TO_CONTAINER(ZrXmlVectorType<ZrXmlVectorType<ZrXmlVectorType<B(unsigned int)>>>)
ZR_FORWARD_TO_CONTAINER(ZrXmlSetType<B(unsigned int)>)
ZR_FORWARD_TO_CONTAINER(ZrXmlMapType<B(std::string), B(bool)>)
ZR_FORWARD_TO_CONTAINER(ZrXmlMapType<B(std::string), B(int)>)
ZR_FORWARD_TO_CONTAINER(ZrXmlMapType<B(std::string), B(unsigned int)>)
ZR_FORWARD_TO_CONTAINER(ZrXmlMapType<B(std::string), B(double)>)
ZR_FORWARD_TO_CONTAINER(ZrXmlMapType<B(std::string), B(std::string)>)
ZR_FORWARD_TO_CONTAINER(ZrXmlMapType<B(std::string), ZrXmlMapType<B(std::string), B(bool)>>)
ZR_FORWARD_TO_CONTAINER(ZrXmlMapType<B(std::string), ZrXmlMapType<B(std::string), B(double)>>)
ZR_FORWARD_TO_CONTAINER(ZrXmlMapType<B(std::string), ZrXmlVectorType<B(double)>>)
ZR_FORWARD_TO_CONTAINER(ZrXmlMapType<B(std::string), ZrXmlVectorType<B(unsigned int)>>)
ZR_FORWARD_TO_CONTAINER(ZrXmlMapType<B(unsigned int), B(std::string)>)
ZR_FORWARD_TO_CONTAINER(ZrXmlMapType<B(unsigned int), B(unsigned int)>)
ZR_FORWARD_TO_CONTAINER(ZrXmlMapType<B(unsigned int), ZrXmlSetType<B(unsigned int)>>)
ZR_FORWARD_TO_CONTAINER(ZrXmlPairType<B(double), B(double)>)
ZR_FORWARD_TO_CONTAINER(ZrXmlPairType<B(std::string), B(std::string)>)
ZR_FORWARD_TO_CONTAINER(ZrXmlPairType<B(std::string), B(unsigned int)>)
ZR_FORWARD_TO_CONTAINER(ZrXmlPairType<B(unsigned int), B(unsigned int)>)
ZR_FORWARD_TO_CONTAINER(ZrXmlPairType<ZrXmlVector, ZrXmlVector>)

#undef B
#undef ZR_FORWARD_TO_CONTAINER

void ZrXmlObjectVisitor::visitComponents(const ZrXmlCompoundType* compound) {
  if (!compound) return;
  compound->forEachComponent([this](const ZrToken&, const ZrXmlObject* component, ZrXmlCompoundType::ComponentKind,
                                    bool) {
    if (component) component->accept(this);
  });
}
