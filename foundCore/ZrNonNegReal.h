#ifndef ZR_NON_NEG_REAL_H
#define ZR_NON_NEG_REAL_H

// A real number that is never negative (masses, lengths, tolerances). Anything not greater than
// zero, NaN included, is stored as 0.0.
class ZrNonNegReal {
 public:
  ZrNonNegReal() : m_theValue(0.0) {}
  explicit ZrNonNegReal(double value) : m_theValue(clamp(value)) {}

  double value() const { return m_theValue; }
  void setValue(double value) { m_theValue = clamp(value); }
  operator double() const { return m_theValue; }

  bool operator==(const ZrNonNegReal& other) const { return m_theValue == other.m_theValue; }
  bool operator!=(const ZrNonNegReal& other) const { return !(*this == other); }
  bool operator<(const ZrNonNegReal& other) const { return m_theValue < other.m_theValue; }

  static double clamp(double value) { return value > 0.0 ? value : 0.0; }

 private:
  double m_theValue;
};

#endif
