#include "ZrVariableTerm.h"

#include "ZrCellNamespace.h"

#include <ZrPrint.h>
#include <ZrXmlWriter.h>

#include <limits>

ZrVariableTerm::ZrVariableTerm(const std::string& name) : m_theName(name) {}

void ZrVariableTerm::registerComponents() {
  registerAttributeComponent(ZrCell::attribute("name"), &m_theName);
  registerAttributeComponent(ZrCell::attribute("value"), &m_theDefaultValue);
}

ZrBoolean ZrVariableTerm::writeAttributes(ZrXmlWriter& writer) const {
  const ZrBoolean result = ZrXmlObject::write(writer);
  writer.setAttributeName(ZrCell::attribute("name"));
  m_theName.write(writer);
  if (hasDefaultValue()) {
    writer.setAttributeName(ZrCell::attribute("value"));
    m_theDefaultValue.write(writer);
  }
  return result;
}

ZrBoolean ZrVariableTerm::equality(const ZrXmlObject* other) const {
  const ZrVariableTerm* variable = dynamic_cast<const ZrVariableTerm*>(other);
  return variable && m_theName == variable->m_theName && hasDefaultValue() == variable->hasDefaultValue() &&
         (!hasDefaultValue() || m_theDefaultValue == variable->m_theDefaultValue);
}

ZrToken ZrVariableTerm::token() const { return ZrCell::element("variable"); }

double ZrVariableTerm::evaluate(const Bindings& bindings) const {
  Bindings::const_iterator bound = bindings.find(name());
  if (bound != bindings.end()) return bound->second;
  if (hasDefaultValue()) return m_theDefaultValue.value();
  Zr::Print::instance().write(Zr::PrintError, "ZrVariableTerm Error: variable %s has no value.\n", name().c_str());
  return std::numeric_limits<double>::quiet_NaN();
}

void ZrVariableTerm::print(std::ostream& out) const { out << name(); }
