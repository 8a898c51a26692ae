#include "ZrOperationTerm.h"

#include "ZrCellNamespace.h"

#include <ZrPrint.h>
#include <ZrXmlBaseVariableCompoundType.h>
#include <ZrXmlReader.h>
#include <ZrXmlSchema.h>
#include <ZrXmlWriter.h>

namespace {
double add(double left, double right) { return left + right; }
double multiply(double left, double right) { return left * right; }

const ZrOperationTerm::Operator theSum = {"sum", "+", 0.0, 1, true, add};
const ZrOperationTerm::Operator theProduct = {"product", "*", 1.0, 2, true, multiply};
}  // namespace

const ZrOperationTerm::Operator& ZrOperationTerm::sumOperator() { return theSum; }
const ZrOperationTerm::Operator& ZrOperationTerm::productOperator() { return theProduct; }

ZrOperationTerm::ZrOperationTerm(const Operator& op) : m_theOperator(&op) {}

ZrOperationTerm::ZrOperationTerm(const ZrOperationTerm& other) : ZrTerm(other), m_theOperator(other.m_theOperator) {
  m_theOperands.reserve(other.m_theOperands.size());
  for (const auto& operand : other.m_theOperands)
    m_theOperands.emplace_back(static_cast<ZrTerm*>(operand->clone()));
}

ZrOperationTerm& ZrOperationTerm::operator=(const ZrOperationTerm& other) {
  if (this != &other) {
    ZrOperationTerm copy(other);
    ZrTerm::operator=(other);
    m_theOperator = other.m_theOperator;
    m_theOperands.swap(copy.m_theOperands);
  }
  return *this;
}

ZrOperationTerm::~ZrOperationTerm() = default;

ZrBoolean ZrOperationTerm::equality(const ZrXmlObject* other) const {
  const ZrOperationTerm* operation = dynamic_cast<const ZrOperationTerm*>(other);
  if (!operation || token() != operation->token() || m_theOperands.size() != operation->m_theOperands.size())
    return false;
  for (size_t i = 0; i < m_theOperands.size(); ++i)
    if (!m_theOperands[i]->equality(operation->m_theOperands[i].get())) return false;
  return true;
}

ZrToken ZrOperationTerm::token() const { return ZrCell::element(m_theOperator->name); }

void ZrOperationTerm::addOperand(std::unique_ptr<ZrTerm> operand) {
  if (!operand) return;
  operand->adopt(container(), depth() + 1);
  m_theOperands.push_back(std::move(operand));
}

// Returning false makes the compound skip the child's subtree; the child's attributes are dropped
// here, since the compound's skipping leaves them.
ZrBoolean ZrOperationTerm::readValueFromSpecialToken(const ZrToken& childToken, ZrXmlReader& reader) {
  if (depth() >= m_theMaxDepth) {
    ZrXmlBaseVariableCompoundType::dropAttributes(reader);
    Zr::Print::instance().write(Zr::PrintError,
                                "ZrOperationTerm Error: terms nested deeper than %u levels; %s skipped.\n\tFile: "
                                "%s\n\tLine: %d\n",
                                m_theMaxDepth, childToken.c_str(), reader.filename().c_str(), reader.lineCountOfFile());
    return false;
  }
  std::unique_ptr<ZrXmlObject> created(container() ? container()->newObjectFromToken(childToken) : nullptr);
  ZrTerm* term = dynamic_cast<ZrTerm*>(created.get());
  if (!term) {
    ZrXmlBaseVariableCompoundType::dropAttributes(reader);
    return ZrTerm::readValueFromSpecialToken(childToken, reader);
  }
  created.release();
  addOperand(std::unique_ptr<ZrTerm>(term));
  term->read(reader);
  return true;
}

ZrBoolean ZrOperationTerm::writeElements(ZrXmlWriter& writer) const {
  for (const auto& operand : m_theOperands) {
    writer.writeStartTag(operand->token());
    operand->write(writer);
    writer.writeEndTag();
  }
  return true;
}

// The schema describes the formula's terms once, as a choice; an operation's children repeat it.
ZrBoolean ZrOperationTerm::writeSchema(ZrXmlSchema& schema) const {
  const ZrBoolean result = ZrTerm::writeSchema(schema);
  schema.repeatEnclosingChoice();
  return result;
}

double ZrOperationTerm::evaluate(const Bindings& bindings) const {
  const Operator& op = *m_theOperator;
  if (m_theOperands.empty()) return op.identity;
  if (m_theOperands.size() == 1 && !op.associative) return op.apply(op.identity, m_theOperands[0]->evaluate(bindings));
  double result = m_theOperands[0]->evaluate(bindings);
  for (size_t i = 1; i < m_theOperands.size(); ++i) result = op.apply(result, m_theOperands[i]->evaluate(bindings));
  return result;
}

void ZrOperationTerm::print(std::ostream& out) const {
  const Operator& op = *m_theOperator;
  if (m_theOperands.empty()) {
    out << op.identity;
    return;
  }
  if (m_theOperands.size() == 1 && !op.associative) {
    out << op.identity << ' ' << op.symbol << ' ';
    printOperand(out, *m_theOperands[0], true);
    return;
  }
  for (size_t i = 0; i < m_theOperands.size(); ++i) {
    if (i != 0) out << ' ' << op.symbol << ' ';
    printOperand(out, *m_theOperands[i], i != 0);
  }
}

// An operand binding less tightly needs parentheses; so does one of equal binding right of the symbol
// of an operator that is not associative: a - (b - c), a / (b * c).
void ZrOperationTerm::printOperand(std::ostream& out, const ZrTerm& operand, bool rightOfSymbol) const {
  const int mine = precedence();
  const int theirs = operand.precedence();
  const bool parenthesize = theirs < mine || (rightOfSymbol && !m_theOperator->associative && theirs == mine);
  if (parenthesize) out << '(';
  operand.print(out);
  if (parenthesize) out << ')';
}

void ZrOperationTerm::adopt(const ZrXmlBaseVariableCompoundType* owner, ZrU32 newDepth) {
  ZrTerm::adopt(owner, newDepth);
  for (auto& operand : m_theOperands) operand->adopt(owner, newDepth + 1);
}
