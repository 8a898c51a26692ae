#include "ZrConstantTerm.h"

#include "ZrCellNamespace.h"

ZrConstantTerm::ZrConstantTerm(double value) : m_theValue(value) {}

void ZrConstantTerm::registerComponents() { registerAttributeComponent(ZrCell::attribute("value"), &m_theValue); }

ZrBoolean ZrConstantTerm::equality(const ZrXmlObject* other) const {
  const ZrConstantTerm* constant = dynamic_cast<const ZrConstantTerm*>(other);
  return constant && m_theValue == constant->m_theValue;
}

ZrToken ZrConstantTerm::token() const { return ZrCell::element("constant"); }

double ZrConstantTerm::evaluate(const Bindings&) const { return m_theValue.value(); }

void ZrConstantTerm::print(std::ostream& out) const { out << m_theValue.value(); }
