#include "ZrMotor.h"

ZrMotor::ZrMotor(const std::string& name, float power, long hours, Direction direction)
    : m_theName(name), m_thePower(power), m_theHours(hours), m_theDirection(direction) {}
