#include "ZrVector.h"

#include <cmath>

double ZrVector::length() const { return std::sqrt(m_theX * m_theX + m_theY * m_theY + m_theZ * m_theZ); }

bool ZrVector::operator<(const ZrVector& o) const {
  if (m_theX != o.m_theX) return m_theX < o.m_theX;
  if (m_theY != o.m_theY) return m_theY < o.m_theY;
  return m_theZ < o.m_theZ;
}
