// Classes written on ZrXmlCompound: round trips, value equality member by member, copies, clones and
// fresh objects, class hierarchies; enumeration names given once per type; initializer lists of plain
// values for containers; the owning forms of clone, newObject and creators.
#include <ZrTestDocument.h>
#include <ZrTestSupport.h>
#include <ZrXmlBasicType.h>
#include <ZrXmlCompound.h>
#include <ZrXmlEnumType.h>
#include <ZrXmlFactory.h>
#include <ZrXmlMapType.h>
#include <ZrXmlSetType.h>
#include <ZrXmlUnique.h>
#include <ZrXmlVector.h>
#include <ZrXmlVectorType.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace {
const char* const ns = "urn:test";

int unitTableCalls = 0;
enum class Unit { bar, pascal, psi };
ZrXmlEnumNames<Unit> zrXmlEnumNames(Unit) {
  ++unitTableCalls;
  // "bar" twice: the second entry is dropped, as setEnumString drops it; pascal has two names.
  return {{Unit::bar, "bar"}, {Unit::pascal, "Pa"}, {Unit::pascal, "pascal"}, {Unit::psi, "bar"}, {Unit::psi, "psi"}};
}

class Gauge : public ZrXmlCompound<Gauge> {
 public:
  static ZrToken classToken() { return ZrToken(ns, "gauge"); }
  ZrXmlBasicType<std::string> name;
  ZrXmlBasicType<double> reading;
  ZrXmlEnumType<Unit> unit;
  ZrXmlVectorType<ZrXmlBasicType<int>> marks;

 protected:
  void registerComponents() override {
    registerAttributeComponent("name", &name);
    registerAttributeComponent("unit", &unit);
    registerComponent(ZrToken(ns, "reading"), &reading);
    registerComponent(ZrToken(ns, "marks"), &marks);
  }
};

// The same members and names as Gauge, in another class.
class Twin : public ZrXmlCompound<Twin> {
 public:
  static ZrToken classToken() { return ZrToken(ns, "gauge"); }
  ZrXmlBasicType<std::string> name;
  ZrXmlBasicType<double> reading;
  ZrXmlEnumType<Unit> unit;
  ZrXmlVectorType<ZrXmlBasicType<int>> marks;

 protected:
  void registerComponents() override {
    registerAttributeComponent("name", &name);
    registerAttributeComponent("unit", &unit);
    registerComponent(ZrToken(ns, "reading"), &reading);
    registerComponent(ZrToken(ns, "marks"), &marks);
  }
};

// An abstract base of a hierarchy: its members are registered by every class below it.
class Instrument : public ZrXmlCompoundType {
 public:
  ZrXmlBasicType<int> serial;

 protected:
  void registerComponents() override { registerAttributeComponent("serial", &serial); }
};

class Meter : public ZrXmlCompound<Meter, Instrument> {
 public:
  static ZrToken classToken() { return ZrToken(ns, "meter"); }
  ZrXmlVector origin;
  Gauge gauge;

 protected:
  void registerComponents() override {
    Instrument::registerComponents();
    registerComponent(ZrToken(ns, "origin"), &origin);
    registerComponent(ZrToken(ns, "gauge"), &gauge);
  }
};

class Panel : public ZrXmlCompound<Panel> {
 public:
  static ZrToken classToken() { return ZrToken(ns, "panel"); }
  ZrXmlVectorType<Gauge> gauges;
  ZrXmlMapType<ZrXmlBasicType<std::string>, Meter> meters;

 protected:
  void registerComponents() override {
    registerComponent(ZrToken(ns, "gauges"), &gauges);
    registerComponent(ZrToken(ns, "meters"), &meters);
  }
};

Gauge sampleGauge(const std::string& name = "inlet") {
  Gauge gauge;
  gauge.name = name;
  gauge.reading = 2.5;
  gauge.unit = Unit::psi;
  gauge.marks = {0, 5, 10};
  return gauge;
}

Meter sampleMeter() {
  Meter meter;
  meter.serial = 17;
  meter.origin = ZrVector(1.0, 2.0, 3.0);
  meter.gauge = sampleGauge("outlet");
  return meter;
}

Panel samplePanel() {
  Panel panel;
  panel.gauges = {sampleGauge("a"), sampleGauge("b")};
  panel.meters.mapContainer()[std::string("east")] = sampleMeter();
  return panel;
}

template <class T>
T sample();
template <>
Gauge sample<Gauge>() {
  return sampleGauge();
}
template <>
Meter sample<Meter>() {
  return sampleMeter();
}
template <>
Panel sample<Panel>() {
  return samplePanel();
}

template <class T>
class CompoundHelper : public ::testing::Test {};
using HelperClasses = ::testing::Types<Gauge, Meter, Panel>;
TYPED_TEST_SUITE(CompoundHelper, HelperClasses);

TYPED_TEST(CompoundHelper, RoundTripsAndComparesByValue) {
  const TypeParam original = sample<TypeParam>();
  const std::string text = ZrTest::written(original);
  TypeParam back;
  ZrTest::PrintCapture capture;
  EXPECT_TRUE(ZrTest::readRoot(text, back));
  EXPECT_EQ(capture.count(), 0u) << capture.all();
  EXPECT_TRUE(back == original) << text;
  EXPECT_FALSE(back != original);
  EXPECT_FALSE(TypeParam() == original);
  EXPECT_EQ(ZrTest::written(back), text);
}

TYPED_TEST(CompoundHelper, CopiesClonesAndFreshObjectsAreOfTheClass) {
  const TypeParam original = sample<TypeParam>();
  const TypeParam copy(original);
  EXPECT_TRUE(copy == original);
  std::unique_ptr<TypeParam> clone = ZrXml::cloneUnique(original);
  ASSERT_TRUE(clone);
  EXPECT_TRUE(*clone == original);
  EXPECT_EQ(ZrTest::written(*clone), ZrTest::written(original));  // the clone writes its own members
  std::unique_ptr<TypeParam> fresh = ZrXml::newUnique(original);
  ASSERT_TRUE(fresh);
  EXPECT_TRUE(*fresh == TypeParam());
  EXPECT_TRUE(fresh->equalsDefault());
  EXPECT_FALSE(original.equalsDefault());
  EXPECT_EQ(original.token(), TypeParam::classToken());
}

// Each row changes one member (an attribute, an element, a member of the base class, a member of a
// nested compound, an element of a container): the object no longer equals the sample.
TEST(CompoundHelper, EveryRegisteredMemberTakesPartInEquality) {
  const std::vector<std::pair<const char*, std::function<void(Meter&)>>> rows = {
      {"serial, registered by the base class", [](Meter& meter) { meter.serial = 18; }},
      {"origin, a point", [](Meter& meter) { meter.origin = ZrVector(1.0, 2.0, 3.5); }},
      {"the nested gauge's name attribute", [](Meter& meter) { meter.gauge.name = "other"; }},
      {"the nested gauge's enumeration", [](Meter& meter) { meter.gauge.unit = Unit::bar; }},
      {"the nested gauge's reading", [](Meter& meter) { meter.gauge.reading = 2.50001; }},
      {"one mark of the nested gauge", [](Meter& meter) { meter.gauge.marks.vectorContainer()[2] = 11; }},
      {"a mark more", [](Meter& meter) { meter.gauge.marks.pushBack(15); }},
  };
  const Meter original = sampleMeter();
  for (const auto& row : rows) {
    Meter changed = sampleMeter();
    row.second(changed);
    EXPECT_FALSE(changed == original) << row.first;
    EXPECT_FALSE(original.equality(&changed)) << row.first;
  }
}

TEST(CompoundHelper, OtherClassesAndNullAreNeverEqual) {
  const Gauge gauge = sampleGauge();
  Twin twin;
  twin.name = gauge.name;
  twin.reading = gauge.reading;
  twin.unit = gauge.unit;
  twin.marks = gauge.marks;
  EXPECT_EQ(ZrTest::written(twin), ZrTest::written(gauge));  // the same document,
  EXPECT_FALSE(gauge.equality(&twin));                       // yet another class
  EXPECT_FALSE(gauge.equality(nullptr));
  // A value that never equals itself makes the object unequal to itself, as a hand-written comparison does.
  Gauge unknown = sampleGauge();
  unknown.reading = std::nan("");
  EXPECT_FALSE(unknown == unknown);
}

// A member held outside the object (here behind a pointer) has no twin at the same place in the other
// object; a class derived further registers more than the helper's class. Both are compared by walking
// both objects' registrations.
class Remote : public ZrXmlCompound<Remote> {
 public:
  static ZrToken classToken() { return ZrToken(ns, "remote"); }
  Remote() : value(std::make_unique<ZrXmlBasicType<int>>()) {}
  Remote(const Remote& other) : ZrXmlCompound(other), value(std::make_unique<ZrXmlBasicType<int>>(*other.value)) {}
  std::unique_ptr<ZrXmlBasicType<int>> value;

 protected:
  void registerComponents() override { registerComponent(ZrToken(ns, "value"), value.get()); }
};

class TaggedGauge : public Gauge {
 public:
  ZrXmlBasicType<std::string> tag;

 protected:
  void registerComponents() override {
    Gauge::registerComponents();
    registerAttributeComponent("tag", &tag);
  }
};

TEST(CompoundHelper, MembersOutsideTheObjectAndFurtherClassesAreComparedToo) {
  Remote one, two;
  *one.value = 4;
  *two.value = 4;
  EXPECT_TRUE(one == two);
  *two.value = 5;
  EXPECT_FALSE(one == two);
  EXPECT_TRUE(Remote(two) == two);

  TaggedGauge first, second;
  first.tag = "north";
  second.tag = "north";
  EXPECT_TRUE(first.equality(&second));
  second.tag = "south";
  EXPECT_FALSE(first.equality(&second));
  EXPECT_FALSE(first.equality(&static_cast<const Gauge&>(sampleGauge())));
}

// The base class's operator== compares registrations, as it always has; the helper's compares values.
TEST(CompoundHelper, ValueComparisonBesideTheRegistrationComparison) {
  Gauge one = sampleGauge("one"), two = sampleGauge("two");
  ZrTest::written(one);
  ZrTest::written(two);  // both registered
  EXPECT_TRUE(static_cast<const ZrXmlCompoundType&>(one) == static_cast<const ZrXmlCompoundType&>(two));
  EXPECT_FALSE(one == two);
  // Containers of the class compare their elements by value too.
  ZrXmlVectorType<Gauge> left = {one}, right = {two};
  EXPECT_FALSE(left == right);
}

// With the default-data flag off, a member still holding its default state is left out: equalsDefault
// asks the helper's newObject and equality.
TEST(CompoundHelper, DefaultMembersAreLeftOutWhenAsked) {
  Meter meter = sampleMeter();
  meter.gauge = Gauge();
  const std::string text = ZrTest::written(meter, "", false);
  EXPECT_EQ(text.find("gauge"), std::string::npos) << text;
  EXPECT_NE(text.find("origin"), std::string::npos) << text;
}

TEST(EnumTypeNames, OneTableServesEveryObjectOfTheType) {
  ZrXmlEnumType<Unit> one(Unit::pascal), two;
  EXPECT_EQ(&one.names(), &two.names());
  EXPECT_EQ(one.enumString(), "Pa");  // the first of its names
  EXPECT_EQ(one.names().size(), 4u);  // the repeated "bar" dropped
  Unit value = Unit::bar;
  EXPECT_TRUE(one.findEnumString("pascal", value));
  EXPECT_EQ(value, Unit::pascal);
  EXPECT_FALSE(one.findEnumString("psi ", value));
  // Many objects, read and copied: the table is built once in the program.
  std::vector<Gauge> gauges(100, sampleGauge());
  for (Gauge& gauge : gauges) ZrTest::readRoot(ZrTest::written(gauge), gauge);
  EXPECT_EQ(unitTableCalls, 1);
}

// An enumeration nested in a class gives its names through a friend of the class.
class Valve {
 public:
  enum class State { open, shut };
  friend ZrXmlEnumNames<State> zrXmlEnumNames(State) { return {{State::open, "open"}, {State::shut, "shut"}}; }
};

TEST(EnumTypeNames, ANestedEnumerationNamesItsValuesThroughAFriend) {
  ZrXmlEnumType<Valve::State> state(Valve::State::shut);
  EXPECT_EQ(state.enumString(), "shut");
  EXPECT_TRUE(state.setValueFromString("open"));
  EXPECT_EQ(state.value(), Valve::State::open);
}

TEST(EnumTypeNames, AnObjectsOwnNameStartsFromTheTypesAndStaysItsOwn) {
  ZrXmlEnumType<Unit> own(Unit::psi), other(Unit::psi);
  own.setEnumString(Unit::psi, "lbf/in2");
  EXPECT_EQ(own.names().size(), 5u);
  EXPECT_EQ(other.names().size(), 4u);
  EXPECT_EQ(own.enumString(), "psi");  // the type's name still comes first
  EXPECT_TRUE(own.setValueFromString("lbf/in2"));
  EXPECT_FALSE(other.setValueFromString("lbf/in2"));
  const std::string text = ZrTest::written(ZrXmlEnumType<Unit>(Unit::pascal));
  ZrXmlEnumType<Unit> back;
  EXPECT_TRUE(ZrTest::readRoot(text, back)) << text;
  EXPECT_EQ(back.value(), Unit::pascal);
}

TEST(ContainerInitializerLists, PlainValuesAndObjects) {
  ZrXmlVectorType<ZrXmlBasicType<double>> lengths = {1.5, 2, 3};
  ASSERT_EQ(lengths.size(), 3u);
  EXPECT_EQ(lengths.vectorContainer()[1].value(), 2.0);
  EXPECT_FALSE(lengths.specified());
  lengths = {4.5};
  EXPECT_EQ(lengths.size(), 1u);
  EXPECT_TRUE(lengths.specified());

  const ZrXmlVectorType<ZrXmlBasicType<std::string>> names = {"infeed", "outfeed"};
  EXPECT_EQ(names.vectorContainer()[1].value(), "outfeed");
  const ZrXmlVectorType<ZrXmlEnumType<Unit>> units = {Unit::psi, Unit::bar};
  EXPECT_NE(ZrTest::written(units).find("psi bar"), std::string::npos) << ZrTest::written(units);

  const ZrXmlSetType<ZrXmlBasicType<unsigned int>> slots = {3u, 1u, 3u};
  EXPECT_EQ(slots.setContainer().size(), 2u);

  const ZrXmlMapType<ZrXmlBasicType<std::string>, ZrXmlBasicType<int>> counts = {{"a", 1}, {"b", 2}, {"a", 3}};
  ASSERT_EQ(counts.mapContainer().size(), 2u);
  EXPECT_EQ(counts.mapContainer().at(std::string("a")).value(), 1);  // the first of one key is kept
  const ZrXmlMapType<ZrXmlBasicType<int>, Gauge> gauges = {{1, sampleGauge()}};
  EXPECT_TRUE(gauges.mapContainer().at(1) == sampleGauge());
}

TEST(OwningForms, FactoriesHandOutOwnedObjectsOfTheKindAsked) {
  ZrXmlFactory factory;
  factory.registerComponentCreator(ZrToken(ns, "gauge"), ZrXml::create<Gauge>);
  std::unique_ptr<Gauge> gauge = ZrXml::makeFromToken<Gauge>(factory, ZrToken(ns, "gauge"));
  ASSERT_TRUE(gauge);
  EXPECT_TRUE(*gauge == Gauge());
  EXPECT_TRUE(ZrXml::makeFromToken(factory, ZrToken(ns, "gauge")));
  EXPECT_FALSE(ZrXml::makeFromToken<Meter>(factory, ZrToken(ns, "gauge")));  // made, not a Meter: deleted
  EXPECT_FALSE(ZrXml::makeFromToken(factory, ZrToken(ns, "meter")));
  const ZrXmlObject& asObject = sampleMeter();
  std::unique_ptr<ZrXmlObject> clone = ZrXml::cloneUnique(asObject);
  ASSERT_TRUE(dynamic_cast<Meter*>(clone.get()));
  EXPECT_TRUE(clone->equality(&asObject));
}

}  // namespace
