#include "ZrOrientation.h"

#include <cmath>

void ZrOrientation::set(double q0, double q1, double q2, double q3) {
  m_theQ[0] = q0;
  m_theQ[1] = q1;
  m_theQ[2] = q2;
  m_theQ[3] = q3;
}

double ZrOrientation::norm() const {
  return std::sqrt(m_theQ[0] * m_theQ[0] + m_theQ[1] * m_theQ[1] + m_theQ[2] * m_theQ[2] + m_theQ[3] * m_theQ[3]);
}

void ZrOrientation::normalize() {
  double n = norm();
  if (!(n > 0.0) || !std::isfinite(n)) {
    set(1.0, 0.0, 0.0, 0.0);
    return;
  }
  for (double& q : m_theQ) q /= n;
}

bool ZrOrientation::operator==(const ZrOrientation& o) const {
  for (int i = 0; i < 4; ++i)
    if (m_theQ[i] != o.m_theQ[i]) return false;
  return true;
}

bool ZrOrientation::operator<(const ZrOrientation& o) const {
  for (int i = 0; i < 4; ++i)
    if (m_theQ[i] != o.m_theQ[i]) return m_theQ[i] < o.m_theQ[i];
  return false;
}
