#ifndef ZR_FORMULA_H
#define ZR_FORMULA_H

#include "ZrTerm.h"

#include <ZrXmlBaseVariableCompoundType.h>

#include <memory>

// A formula: one expression tree whose terms are created by element name. It knows constants,
// variables, sums and products; the plug-in libraries named in its "addLibraries" element can add
// more kinds of term (the shipped zrExpressionExtras library adds differences and quotients).
//
//   <formula xmlns="http://www.zrtoolkit.org/namespace/cell" version="3.0.0">
//     <addLibraries size="1"><group>zrExpressionExtras</group></addLibraries>
//     <quotient>
//       <constant value="3600"/>
//       <variable name="cycleTime" value="42.5"/>
//     </quotient>
//   </formula>
//
// A formula holds one term; further top-level terms are reported and skipped.
class ZrFormula : public ZrXmlBaseVariableCompoundType {
 public:
  ZrFormula();
  // The copy holds a copy of the tree, whose terms belong to the copy.
  ZrFormula(const ZrFormula& other);
  ZrFormula& operator=(const ZrFormula& other);
  ~ZrFormula() override;

  // The root element's token: "formula" in the cell namespace.
  static ZrToken rootToken();

  ZrXmlObject* clone() const override { return new ZrFormula(*this); }
  ZrXmlObject* newObject() const override { return new ZrFormula(); }
  ZrBoolean equality(const ZrXmlObject* other) const override;
  ZrToken token() const override { return rootToken(); }

  ZrBoolean readVariableComponent(const ZrToken& token, ZrXmlReader& reader) override;
  ZrBoolean write(ZrXmlWriter& writer) const override;

  const ZrTerm* term() const { return m_theTerm.get(); }
  void setTerm(std::unique_ptr<ZrTerm> term);
  // The value of the tree; NaN, after a message, for a formula without a term.
  double evaluate(const ZrTerm::Bindings& bindings) const;
  // The tree in infix notation; empty for a formula without a term.
  std::string text() const;

 protected:
  void registerComponentCreators() override;

 private:
  std::unique_ptr<ZrTerm> m_theTerm;
};

#endif
