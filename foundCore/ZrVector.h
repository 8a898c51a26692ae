#ifndef ZR_VECTOR_H
#define ZR_VECTOR_H

// A vector of three real components.
class ZrVector {
 public:
  ZrVector() : m_theX(0.0), m_theY(0.0), m_theZ(0.0) {}
  ZrVector(double x, double y, double z) : m_theX(x), m_theY(y), m_theZ(z) {}

  double x() const { return m_theX; }
  double y() const { return m_theY; }
  double z() const { return m_theZ; }
  void setX(double x) { m_theX = x; }
  void setY(double y) { m_theY = y; }
  void setZ(double z) { m_theZ = z; }
  void set(double x, double y, double z) {
    m_theX = x;
    m_theY = y;
    m_theZ = z;
  }
  double operator[](int i) const { return i == 0 ? m_theX : (i == 1 ? m_theY : m_theZ); }

  double length() const;
  ZrVector operator+(const ZrVector& o) const { return ZrVector(m_theX + o.m_theX, m_theY + o.m_theY, m_theZ + o.m_theZ); }
  ZrVector operator-(const ZrVector& o) const { return ZrVector(m_theX - o.m_theX, m_theY - o.m_theY, m_theZ - o.m_theZ); }
  ZrVector operator*(double s) const { return ZrVector(m_theX * s, m_theY * s, m_theZ * s); }

  bool operator==(const ZrVector& o) const { return m_theX == o.m_theX && m_theY == o.m_theY && m_theZ == o.m_theZ; }
  bool operator!=(const ZrVector& o) const { return !(*this == o); }
  // Lexicographic, so that vectors can be keys of ordered containers.
  bool operator<(const ZrVector& o) const;

 private:
  double m_theX, m_theY, m_theZ;
};

#endif
