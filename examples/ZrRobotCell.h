#ifndef ZR_ROBOT_CELL_H
#define ZR_ROBOT_CELL_H

#include "ZrRobot.h"

#include <ZrXmlBasicType.h>
#include <ZrXmlCompoundType.h>

#include <string>

// The root of a cell document: a named work cell with its cycle time, its staffing and two robots,
// one loading parts and one welding them.
//
//   <robotCell xmlns="http://www.zrtoolkit.org/namespace/cell" version="3.0.0" name="Assembly cell 4">
//     <cycleTime>42.5</cycleTime>
//     <enabled>1</enabled>
//     <loader name="Loader" serial="40117">...</loader>
//     <operators>2</operators>
//     <welder name="Welder" serial="40233">...</welder>
//   </robotCell>
class ZrRobotCell : public ZrXmlCompoundType {
 public:
  ZrRobotCell();

  // The root element's token: "robotCell" in the cell namespace.
  static ZrToken rootToken();

  ZrXmlObject* clone() const override { return new ZrRobotCell(*this); }
  ZrXmlObject* newObject() const override { return new ZrRobotCell(); }
  ZrBoolean equality(const ZrXmlObject* other) const override;
  ZrToken token() const override { return rootToken(); }

  const std::string& name() const { return m_theName.value(); }
  void setName(const std::string& name) { m_theName = name; }
  const std::string& version() const { return m_theVersion.value(); }
  double cycleTime() const { return m_theCycleTime.value(); }  // seconds
  void setCycleTime(double seconds) { m_theCycleTime = seconds; }
  bool enabled() const { return m_theEnabled.value(); }
  void setEnabled(bool enabled) { m_theEnabled = enabled; }
  unsigned short operators() const { return m_theOperators.value(); }
  void setOperators(unsigned short count) { m_theOperators = count; }
  ZrRobot& loader() { return m_theLoader; }
  ZrRobot& welder() { return m_theWelder; }
  const ZrRobot& loader() const { return m_theLoader; }
  const ZrRobot& welder() const { return m_theWelder; }

 protected:
  void registerComponents() override;

 private:
  ZrXmlBasicType<std::string> m_theVersion;
  ZrXmlBasicType<std::string> m_theName;
  ZrXmlBasicType<double> m_theCycleTime;
  ZrXmlBasicType<bool> m_theEnabled;
  ZrXmlBasicType<unsigned short> m_theOperators;
  ZrRobot m_theLoader;
  ZrRobot m_theWelder;
};

#endif
