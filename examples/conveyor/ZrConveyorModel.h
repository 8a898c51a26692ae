#ifndef ZR_CONVEYOR_MODEL_H
#define ZR_CONVEYOR_MODEL_H

// A conveyor line in seven classes, written on the class helper (ZrXmlCompound) and the polymorphic
// list (ZrXmlPolymorphicVector): belt segments, stations by name, a label, and devices of three kinds.
// Members are public, as in a plain data model; each class names its members once, in
// registerComponents(), and the helper gives it copying, comparison and its element name.
//
//   <conveyor xmlns="http://www.zrtoolkit.org/namespace/cell" version="3.0.0">
//     <devices>
//       <motor name="infeed" direction="forward"><position x="0" y="0" z="0.4"/><power>0.75</power></motor>
//       <photoSensor name="eye1"><position x="2" y="0.3" z="0.5"/><range>0.8</range></photoSensor>
//       <diverter name="gate" side="left"><angle>30</angle><position x="4" y="0" z="0.4"/></diverter>
//     </devices>
//     <label><first>3</first><second>Packing</second></label>
//     <segments size="1">
//       <element id="1"><end x="4" y="0" z="0"/><length>4</length><speed>0.5</speed>
//         <start x="0" y="0" z="0"/><zoneLengths size="2"><group>1.5 2.5</group></zoneLengths></element>
//     </segments>
//     <stations><element><key>packing</key><value><cycleTime>42.5</cycleTime>...</value></element></stations>
//   </conveyor>
#include "ZrCellNamespace.h"

#include <ZrXmlBasicType.h>
#include <ZrXmlCompound.h>
#include <ZrXmlEnumType.h>
#include <ZrXmlMapType.h>
#include <ZrXmlPairType.h>
#include <ZrXmlPolymorphicVector.h>
#include <ZrXmlVector.h>
#include <ZrXmlVectorType.h>

#include <string>

namespace ZrConveyor {
using ZrCell::attribute;
using ZrCell::element;

enum class Direction { forward, reverse };
inline ZrXmlEnumNames<Direction> zrXmlEnumNames(Direction) {
  return {{Direction::forward, "forward"}, {Direction::reverse, "reverse"}};
}
enum class Side { left, right };
inline ZrXmlEnumNames<Side> zrXmlEnumNames(Side) { return {{Side::left, "left"}, {Side::right, "right"}}; }

// What every device has: a name and a place on the line. The kinds below add their own members.
class Device : public ZrXmlCompoundType {
 public:
  ZrXmlBasicType<std::string> name;
  ZrXmlVector position;

 protected:
  void registerComponents() override {
    registerAttributeComponent(attribute("name"), &name);
    registerComponent(element("position"), &position);
  }
};

class Motor : public ZrXmlCompound<Motor, Device> {
 public:
  static ZrToken classToken() { return element("motor"); }
  ZrXmlBasicType<double> power;  // kW
  ZrXmlEnumType<Direction> direction;

 protected:
  void registerComponents() override {
    Device::registerComponents();
    registerAttributeComponent(attribute("direction"), &direction);
    registerComponent(element("power"), &power);
  }
};

class PhotoSensor : public ZrXmlCompound<PhotoSensor, Device> {
 public:
  static ZrToken classToken() { return element("photoSensor"); }
  ZrXmlBasicType<double> range;      // m
  ZrXmlBasicType<int> responseTime;  // ms

 protected:
  void registerComponents() override {
    Device::registerComponents();
    registerComponent(element("range"), &range);
    registerComponent(element("responseTime"), &responseTime);
  }
};

class Diverter : public ZrXmlCompound<Diverter, Device> {
 public:
  static ZrToken classToken() { return element("diverter"); }
  ZrXmlEnumType<Side> side;
  ZrXmlBasicType<double> angle;  // degrees

 protected:
  void registerComponents() override {
    Device::registerComponents();
    registerAttributeComponent(attribute("side"), &side);
    registerComponent(element("angle"), &angle);
  }
};

class BeltSegment : public ZrXmlCompound<BeltSegment> {
 public:
  static ZrToken classToken() { return element("segment"); }
  ZrXmlBasicType<int> id;
  ZrXmlBasicType<double> length, speed;  // m, m/s
  ZrXmlVector start, end;
  ZrXmlVectorType<ZrXmlBasicType<double>> zoneLengths;

 protected:
  void registerComponents() override {
    registerAttributeComponent(attribute("id"), &id);
    registerComponent(element("length"), &length);
    registerComponent(element("speed"), &speed);
    registerComponent(element("start"), &start);
    registerComponent(element("end"), &end);
    registerComponent(element("zoneLengths"), &zoneLengths);
  }
};

class Station : public ZrXmlCompound<Station> {
 public:
  static ZrToken classToken() { return element("station"); }
  ZrXmlVector position;
  ZrXmlBasicType<double> cycleTime;  // s
  ZrXmlVectorType<ZrXmlBasicType<std::string>> tools;

 protected:
  void registerComponents() override {
    registerComponent(element("position"), &position);
    registerComponent(element("cycleTime"), &cycleTime);
    registerComponent(element("tools"), &tools);
  }
};

class Line : public ZrXmlCompound<Line> {
 public:
  static ZrToken classToken() { return element("conveyor"); }
  ZrXmlPairType<ZrXmlBasicType<int>, ZrXmlBasicType<std::string>> label;  // number and name
  ZrXmlVectorType<BeltSegment> segments;
  ZrXmlMapType<ZrXmlBasicType<std::string>, Station> stations;
  ZrXmlPolymorphicVector<Device> devices;

 protected:
  void registerComponents() override {
    registerComponent(element("label"), &label);
    registerComponent(element("segments"), &segments);
    registerComponent(element("stations"), &stations);
    registerComponent(element("devices"), &devices);
    devices.registerKind<Motor>();
    devices.registerKind<PhotoSensor>();
    devices.registerKind<Diverter>();
  }
};
}  // namespace ZrConveyor

#endif
