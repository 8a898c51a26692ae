#ifndef ZR_ROBOT_CELL_H
#define ZR_ROBOT_CELL_H

#include "ZrRobot.h"

#include <ZrXmlBasicType.h>
#include <ZrXmlCompound.h>
#include <ZrXmlMapType.h>
#include <ZrXmlPairType.h>
#include <ZrXmlSetType.h>
#include <ZrXmlVectorType.h>

#include <string>

// The root of a cell document: a named work cell with its cycle time, its staffing, two robots (one
// loading parts and one welding them), its named process parameters, the stations it serves, its
// shifts and the speed profiles its conveyor runs.
//
//   <robotCell xmlns="http://www.zrtoolkit.org/namespace/cell" version="3.0.0" name="Assembly cell 4">
//     <cycleTime>42.5</cycleTime>
//     <enabled>1</enabled>
//     <loader name="Loader" serial="40117">...</loader>
//     <operators>2</operators>
//     <parameters>
//       <element><key>weldCurrent</key><value>180</value></element>
//     </parameters>
//     <shifts size="1">
//       <element><first>360</first><second>840</second></element>
//     </shifts>
//     <speedProfiles size="1">
//       <element size="3"><group>0 0.5 1</group></element>
//     </speedProfiles>
//     <stations size="3"><group>4 7 12</group></stations>
//     <welder name="Welder" serial="40233">...</welder>
//   </robotCell>
class ZrRobotCell : public ZrXmlCompound<ZrRobotCell> {
 public:
  ZrRobotCell();

  // The root element's token: "robotCell" in the cell namespace.
  static ZrToken classToken();

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

  typedef ZrXmlMapType<ZrXmlBasicType<std::string>, ZrXmlBasicType<double>> Parameters;
  typedef ZrXmlSetType<ZrXmlBasicType<unsigned int>> Stations;
  typedef ZrXmlPairType<ZrXmlBasicType<unsigned int>, ZrXmlBasicType<unsigned int>> Shift;  // minutes after midnight
  typedef ZrXmlVectorType<Shift> Shifts;
  typedef ZrXmlVectorType<ZrXmlVectorType<ZrXmlBasicType<double>>> SpeedProfiles;  // metres per second

  // Process parameters by name (currents in amperes, speeds in metres per second, times in seconds).
  const Parameters& parameters() const { return m_theParameters; }
  Parameters& parameters() { return m_theParameters; }
  // The identifiers of the conveyor stations the cell serves.
  const Stations& stations() const { return m_theStations; }
  Stations& stations() { return m_theStations; }
  const Shifts& shifts() const { return m_theShifts; }
  Shifts& shifts() { return m_theShifts; }
  // Each profile is the conveyor's speed at equal steps through one cycle.
  const SpeedProfiles& speedProfiles() const { return m_theSpeedProfiles; }
  SpeedProfiles& speedProfiles() { return m_theSpeedProfiles; }

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
  Parameters m_theParameters;
  Stations m_theStations;
  Shifts m_theShifts;
  SpeedProfiles m_theSpeedProfiles;
};

#endif
