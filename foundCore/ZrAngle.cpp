#include "ZrAngle.h"

namespace {
const double thePi = 3.14159265358979323846;
}

double ZrAngle::degrees() const { return m_theRadians * 180.0 / thePi; }

ZrAngle ZrAngle::fromDegrees(double degrees) { return ZrAngle(degrees * thePi / 180.0); }
