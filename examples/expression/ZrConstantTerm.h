#ifndef ZR_CONSTANT_TERM_H
#define ZR_CONSTANT_TERM_H

#include "ZrTerm.h"

#include <ZrXmlBasicType.h>

// A number:  <constant value="3600"/>
class ZrConstantTerm : public ZrTerm {
 public:
  ZrConstantTerm() = default;
  explicit ZrConstantTerm(double value);

  static ZrXmlObject* create() { return new ZrConstantTerm(); }

  ZrXmlObject* clone() const override { return new ZrConstantTerm(*this); }
  ZrXmlObject* newObject() const override { return new ZrConstantTerm(); }
  ZrBoolean equality(const ZrXmlObject* other) const override;
  ZrToken token() const override;

  double evaluate(const Bindings& bindings) const override;
  void print(std::ostream& out) const override;

  double value() const { return m_theValue.value(); }

 protected:
  void registerComponents() override;

 private:
  ZrXmlBasicType<double> m_theValue;
};

#endif
