#ifndef ZR_OPERATION_TERM_H
#define ZR_OPERATION_TERM_H

#include "ZrTerm.h"

#include <memory>
#include <vector>

// An operation on any number of operands, which are the element's children:
//
//   <sum>
//     <variable name="cycleTime"/>
//     <constant value="2.5"/>
//   </sum>
//
// What the operation does is described by an Operator, so a new kind of operation (one a plug-in
// library adds, say) needs an Operator and a creator, not a class. The operands are created by element
// name through the formula's factory, so any term kind the formula knows may appear at any depth.
//
// Evaluation folds the operands from the left: a + b + c, a - b - c. Without operands the result is
// the operator's identity (a sum of nothing is 0); a single operand of an operator that is not
// associative is applied to the identity (a difference of x alone is 0 - x, a quotient 1 / x).
class ZrOperationTerm : public ZrTerm {
 public:
  struct Operator {
    const char* name;    // the element name
    const char* symbol;  // its infix symbol
    double identity;
    int precedence;    // higher binds tighter
    bool associative;  // (a op b) op c == a op (b op c): decides the parentheses of printed operands
    double (*apply)(double left, double right);
  };

  static const Operator& sumOperator();
  static const Operator& productOperator();
  static ZrXmlObject* createSum() { return new ZrOperationTerm(sumOperator()); }
  static ZrXmlObject* createProduct() { return new ZrOperationTerm(productOperator()); }

  // The operator must outlive the term: operators are static objects of the code that defines them.
  explicit ZrOperationTerm(const Operator& op);
  // Copies the operands too; the copies stay in the source's formula until adopted by another.
  ZrOperationTerm(const ZrOperationTerm& other);
  ZrOperationTerm& operator=(const ZrOperationTerm& other);
  ~ZrOperationTerm() override;

  ZrXmlObject* clone() const override { return new ZrOperationTerm(*this); }
  ZrXmlObject* newObject() const override { return new ZrOperationTerm(*m_theOperator); }
  ZrBoolean equality(const ZrXmlObject* other) const override;
  ZrToken token() const override;

  // Every child is an operand, created through the formula.
  ZrBoolean readValueFromSpecialToken(const ZrToken& token, ZrXmlReader& reader) override;
  ZrBoolean writeElements(ZrXmlWriter& writer) const override;
  // Operands may be any term the formula knows, in any number.
  ZrBoolean writeSchema(ZrXmlSchema& schema) const override;

  double evaluate(const Bindings& bindings) const override;
  void print(std::ostream& out) const override;
  int precedence() const override { return m_theOperator->precedence; }
  void adopt(const ZrXmlBaseVariableCompoundType* container, ZrU32 depth) override;

  const Operator& op() const { return *m_theOperator; }
  size_t operandCount() const { return m_theOperands.size(); }
  const ZrTerm& operand(size_t index) const { return *m_theOperands[index]; }
  // Takes ownership; a null operand is ignored.
  void addOperand(std::unique_ptr<ZrTerm> operand);

 private:
  void printOperand(std::ostream& out, const ZrTerm& operand, bool rightOfSymbol) const;

  const Operator* m_theOperator;
  std::vector<std::unique_ptr<ZrTerm>> m_theOperands;
};

#endif
