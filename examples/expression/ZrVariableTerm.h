#ifndef ZR_VARIABLE_TERM_H
#define ZR_VARIABLE_TERM_H

#include "ZrTerm.h"

#include <ZrXmlBasicType.h>

#include <string>

// A named value, given when the formula is evaluated:  <variable name="cycleTime" value="42.5"/>
// The optional "value" attribute is the variable's value when the evaluation gives it none. It is
// written only when it was given (read or set), so a variable without one stays without one.
class ZrVariableTerm : public ZrTerm {
 public:
  ZrVariableTerm() = default;
  explicit ZrVariableTerm(const std::string& name);

  static ZrXmlObject* create() { return new ZrVariableTerm(); }

  ZrXmlObject* clone() const override { return new ZrVariableTerm(*this); }
  ZrXmlObject* newObject() const override { return new ZrVariableTerm(); }
  ZrBoolean equality(const ZrXmlObject* other) const override;
  ZrToken token() const override;
  ZrBoolean writeAttributes(ZrXmlWriter& writer) const override;

  double evaluate(const Bindings& bindings) const override;
  void print(std::ostream& out) const override;

  const std::string& name() const { return m_theName.value(); }
  bool hasDefaultValue() const { return m_theDefaultValue.specified(); }
  void setDefaultValue(double value) { m_theDefaultValue = value; }

 protected:
  void registerComponents() override;

 private:
  ZrXmlBasicType<std::string> m_theName;
  ZrXmlBasicType<double> m_theDefaultValue;
};

#endif
