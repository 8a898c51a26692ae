#ifndef ZR_CONVEYOR_LINE_H
#define ZR_CONVEYOR_LINE_H

#include "ZrMotor.h"

#include <ZrXmlBasicType.h>
#include <ZrXmlCompound.h>
#include <ZrXmlMapType.h>
#include <ZrXmlPairType.h>
#include <ZrXmlVectorType.h>

#include <string>

// A conveyor line: its drive motors in order along the line, the spare motors on the shelf by slot
// number, and its label (line number and name). Containers of the application's own class:
//
//   <conveyorLine xmlns="http://www.zrtoolkit.org/namespace/cell">
//     <label><first>3</first><second>Packing</second></label>
//     <motors size="2">
//       <element name="infeed" direction="forward"><hours>1200</hours><power>0.75</power></element>
//       <element name="outfeed" direction="reverse"><hours>800</hours><power>1.1</power></element>
//     </motors>
//     <spares>
//       <element><key>1</key><value name="spare" direction="forward">...</value></element>
//     </spares>
//   </conveyorLine>
class ZrConveyorLine : public ZrXmlCompound<ZrConveyorLine> {
 public:
  typedef ZrXmlVectorType<ZrMotor> Motors;                    // <motors size="2"><element name="infeed" ...>
  typedef ZrXmlMapType<ZrXmlBasicType<int>, ZrMotor> Spares;  // <spares><element><key>1</key><value ...>
  typedef ZrXmlPairType<ZrXmlBasicType<int>, ZrXmlBasicType<std::string>> Label;  // number and name

  static ZrToken classToken() { return ZrCell::element("conveyorLine"); }

  Motors& motors() { return m_theMotors; }
  const Motors& motors() const { return m_theMotors; }
  Spares& spares() { return m_theSpares; }
  const Spares& spares() const { return m_theSpares; }
  Label& label() { return m_theLabel; }
  const Label& label() const { return m_theLabel; }

 protected:
  void registerComponents() override {
    registerComponent(ZrCell::element("motors"), &m_theMotors);
    registerComponent(ZrCell::element("spares"), &m_theSpares);
    registerComponent(ZrCell::element("label"), &m_theLabel);
  }

 private:
  Motors m_theMotors;
  Spares m_theSpares;
  Label m_theLabel;
};

#endif
