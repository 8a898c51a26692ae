#ifndef ZR_ORIENTATION_H
#define ZR_ORIENTATION_H

// An orientation as a quaternion q0 + q1 i + q2 j + q3 k, q0 being the scalar part.
// The default is the identity (1, 0, 0, 0).
class ZrOrientation {
 public:
  ZrOrientation() : m_theQ{1.0, 0.0, 0.0, 0.0} {}
  ZrOrientation(double q0, double q1, double q2, double q3) : m_theQ{q0, q1, q2, q3} {}

  double q0() const { return m_theQ[0]; }
  double q1() const { return m_theQ[1]; }
  double q2() const { return m_theQ[2]; }
  double q3() const { return m_theQ[3]; }
  double q(int i) const { return m_theQ[i]; }
  void set(double q0, double q1, double q2, double q3);

  // Scales the quaternion to unit length. A quaternion of zero length (or not finite) names no
  // orientation at all; it becomes the identity, the orientation of an object nobody has turned.
  void normalize();
  double norm() const;

  bool operator==(const ZrOrientation& o) const;
  bool operator!=(const ZrOrientation& o) const { return !(*this == o); }
  bool operator<(const ZrOrientation& o) const;

 private:
  double m_theQ[4];
};

#endif
