#ifndef ZR_ROBOT_H
#define ZR_ROBOT_H

#include "ZrJoint.h"

#include <ZrXmlBasicType.h>
#include <ZrXmlCompound.h>
#include <ZrXmlEnumType.h>
#include <ZrXmlOrientation.h>
#include <ZrXmlPairType.h>
#include <ZrXmlVector.h>
#include <ZrXmlVectorVector.h>

#include <string>

// A named robot of the cell: its operating mode, masses, scheduling priority, three arm joints, where
// it stands, how its tool is turned, the path it was taught and the box it may reach into.
//
//   <loader name="Loader" serial="40117">
//     <base x="0" y="-1.2" z="0.4"/>
//     <elbow axis="y">...</elbow>
//     <mass>145.5</mass>
//     <mode>automatic</mode>
//     <path size="2">
//       <element x="0.5" y="0" z="1"/>
//       <element x="0.5" y="0.25" z="0.8"/>
//     </path>
//     <tool q0="0.5" q1="0.5" q2="0.5" q3="0.5"/>
//     <workspace><first x="-1" y="-1" z="0"/><second x="1" y="1" z="2"/></workspace>
//     ...
//   </loader>
//
// Older documents called the mass "weight": that name is still read (into the same member) but never
// written, which is what a read-only registration is for.
class ZrRobot : public ZrXmlCompound<ZrRobot> {
 public:
  enum OperatingMode { MANUAL = 0, AUTOMATIC = 1, MAINTENANCE = 2 };

  ZrRobot();
  ZrRobot(const std::string& name, unsigned serial);

  // "robot" names a robot saved as a document of its own; in a cell it is named by its role (loader, welder).
  static ZrToken classToken();

  const std::string& name() const { return m_theName.value(); }
  unsigned serial() const { return m_theSerial.value(); }
  OperatingMode mode() const { return static_cast<OperatingMode>(m_theMode.value()); }
  void setMode(OperatingMode mode) { m_theMode = mode; }
  double mass() const { return m_theMass.value(); }        // kilograms, never negative
  void setMass(double kilograms) { m_theMass = ZrNonNegReal(kilograms); }
  double payload() const { return m_thePayload.value(); }  // kilograms, never negative
  void setPayload(double kilograms) { m_thePayload = ZrNonNegReal(kilograms); }
  unsigned priority() const { return m_thePriority.value(); }
  void setPriority(unsigned char priority) { m_thePriority = priority; }
  ZrJoint& shoulder() { return m_theShoulder; }
  ZrJoint& elbow() { return m_theElbow; }
  ZrJoint& wrist() { return m_theWrist; }
  const ZrJoint& shoulder() const { return m_theShoulder; }
  const ZrJoint& elbow() const { return m_theElbow; }
  const ZrJoint& wrist() const { return m_theWrist; }
  const ZrVector& base() const { return m_theBase.value(); }  // metres, in the cell's frame
  void setBase(const ZrVector& position) { m_theBase = position; }
  const ZrOrientation& tool() const { return m_theTool.value(); }
  void setTool(const ZrOrientation& orientation) { m_theTool = orientation; }
  // The taught path of the tool centre, point by point, in metres.
  const ZrXmlVectorVector& path() const { return m_thePath; }
  ZrXmlVectorVector& path() { return m_thePath; }
  // The box the robot may reach into: its lowest and its highest corner.
  const ZrXmlPairType<ZrXmlVector, ZrXmlVector>& workspace() const { return m_theWorkspace; }
  void setWorkspace(const ZrVector& lowest, const ZrVector& highest) { m_theWorkspace = {lowest, highest}; }

 protected:
  void registerComponents() override;

 private:
  ZrXmlBasicType<std::string> m_theName;
  ZrXmlBasicType<unsigned int> m_theSerial;
  ZrXmlEnumType<int> m_theMode;
  ZrXmlBasicType<ZrNonNegReal> m_theMass;
  ZrXmlBasicType<ZrNonNegReal> m_thePayload;
  ZrXmlBasicType<unsigned char> m_thePriority;
  ZrJoint m_theShoulder;
  ZrJoint m_theElbow;
  ZrJoint m_theWrist;
  ZrXmlVector m_theBase;
  ZrXmlOrientation m_theTool;
  ZrXmlVectorVector m_thePath;
  ZrXmlPairType<ZrXmlVector, ZrXmlVector> m_theWorkspace;
};

#endif
