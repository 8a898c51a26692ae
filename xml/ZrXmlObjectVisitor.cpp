#include "ZrXmlObjectVisitor.h"

#include "ZrBaseXmlBasicType.h"
#include "ZrXmlBasicType.h"
#include "ZrXmlCompoundType.h"
#include "ZrXmlEnumType.h"

ZrXmlObjectVisitor::~ZrXmlObjectVisitor() = default;

void ZrXmlObjectVisitor::visit(const ZrXmlObject*) {}

void ZrXmlObjectVisitor::visit(const ZrXmlCompoundType* compound) { visit(static_cast<const ZrXmlObject*>(compound)); }

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

void ZrXmlObjectVisitor::visitComponents(const ZrXmlCompoundType* compound) {
  if (!compound) return;
  compound->forEachComponent([this](const ZrToken&, const ZrXmlObject* component, ZrXmlCompoundType::ComponentKind,
                                    bool) {
    if (component) component->accept(this);
  });
}
