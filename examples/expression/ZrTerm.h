#ifndef ZR_TERM_H
#define ZR_TERM_H

#include <ZrBaseExpressionTreeElement.h>

#include <map>
#include <ostream>
#include <string>

// One node of a formula's expression tree: a constant, a variable or an operation on other terms.
// Which kind a node is follows from its element name; its formula (the container) creates it.
//
// A term knows its depth in the tree (the formula's own term is at depth 1). Reading refuses terms
// nested deeper than m_theMaxDepth, so that a hostile document cannot make reading, evaluating,
// printing or destroying a tree recurse without bound.
class ZrTerm : public ZrBaseExpressionTreeElement {
 public:
  typedef std::map<std::string, double> Bindings;  // variable name -> value

  static const ZrU32 m_theMaxDepth = 200;
  // Precedence of terms that never need parentheses: constants and variables.
  static const int m_theLeafPrecedence = 100;

  ZrTerm();
  ZrTerm(const ZrTerm& other);
  ZrTerm& operator=(const ZrTerm& other);
  ~ZrTerm() override;

  // The term's value with the given variable values; NaN, after a message, when a variable has none.
  virtual double evaluate(const Bindings& bindings) const = 0;
  // Writes the term in the usual infix notation, with only the parentheses that precedence needs.
  virtual void print(std::ostream& out) const = 0;
  // How tightly the term binds when it is an operand: higher binds tighter.
  virtual int precedence() const;
  // Points this term, and every term beneath it, at container, this one at the given depth.
  virtual void adopt(const ZrXmlBaseVariableCompoundType* container, ZrU32 depth);

  std::string text() const;  // print() into a string
  ZrU32 depth() const { return m_theDepth; }

 private:
  ZrU32 m_theDepth;
};

#endif
