#include "ZrBaseExpressionTreeElement.h"

ZrBaseExpressionTreeElement::ZrBaseExpressionTreeElement() : m_theContainer(nullptr) {}

ZrBaseExpressionTreeElement::ZrBaseExpressionTreeElement(const ZrXmlBaseVariableCompoundType* container)
    : m_theContainer(container) {}

ZrBaseExpressionTreeElement::ZrBaseExpressionTreeElement(const ZrBaseExpressionTreeElement& other)
    : ZrXmlCompoundType(other), m_theContainer(other.m_theContainer) {}

ZrBaseExpressionTreeElement& ZrBaseExpressionTreeElement::operator=(const ZrBaseExpressionTreeElement& other) {
  if (this != &other) {
    ZrXmlCompoundType::operator=(other);
    m_theContainer = other.m_theContainer;
  }
  return *this;
}

ZrBaseExpressionTreeElement::~ZrBaseExpressionTreeElement() = default;

bool ZrBaseExpressionTreeElement::operator==(const ZrBaseExpressionTreeElement& other) const {
  return ZrXmlCompoundType::operator==(other) && (m_theContainer == nullptr) == (other.m_theContainer == nullptr);
}

void ZrBaseExpressionTreeElement::registerComponents() {}

const ZrXmlBaseVariableCompoundType* ZrBaseExpressionTreeElement::container() const { return m_theContainer; }

void ZrBaseExpressionTreeElement::setContainer(const ZrXmlBaseVariableCompoundType* container) {
  m_theContainer = container;
}
