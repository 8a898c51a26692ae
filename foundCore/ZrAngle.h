#ifndef ZR_ANGLE_H
#define ZR_ANGLE_H

// A plane angle in radians. The value is stored as given: no wrapping into a range, so that limits
// such as a joint's travel beyond one turn keep their meaning.
class ZrAngle {
 public:
  ZrAngle() : m_theRadians(0.0) {}
  explicit ZrAngle(double radians) : m_theRadians(radians) {}

  double value() const { return m_theRadians; }
  void setValue(double radians) { m_theRadians = radians; }
  double degrees() const;
  static ZrAngle fromDegrees(double degrees);

  bool operator==(const ZrAngle& other) const { return m_theRadians == other.m_theRadians; }
  bool operator!=(const ZrAngle& other) const { return !(*this == other); }
  bool operator<(const ZrAngle& other) const { return m_theRadians < other.m_theRadians; }

 private:
  double m_theRadians;
};

#endif
