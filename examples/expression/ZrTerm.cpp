#include "ZrTerm.h"

#include <sstream>

ZrTerm::ZrTerm() : m_theDepth(0) {}

ZrTerm::ZrTerm(const ZrTerm& other) : ZrBaseExpressionTreeElement(other), m_theDepth(other.m_theDepth) {}

ZrTerm& ZrTerm::operator=(const ZrTerm& other) {
  if (this != &other) {
    ZrBaseExpressionTreeElement::operator=(other);
    m_theDepth = other.m_theDepth;
  }
  return *this;
}

ZrTerm::~ZrTerm() = default;

int ZrTerm::precedence() const { return m_theLeafPrecedence; }

void ZrTerm::adopt(const ZrXmlBaseVariableCompoundType* container, ZrU32 depth) {
  setContainer(container);
  m_theDepth = depth;
}

std::string ZrTerm::text() const {
  std::ostringstream out;
  print(out);
  return out.str();
}
