// The object base: its flag rules, lazy initialisation and the comparison with a default object.
#include <ZrTestDocument.h>
#include <ZrTestSupport.h>
#include <ZrXmlBasicType.h>
#include <ZrXmlObject.h>
#include <ZrXmlReader.h>
#include <ZrXmlVectorType.h>
#include <ZrXmlWriter.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace {

class Probe : public ZrXmlObject {
 public:
  Probe() { ++live; }
  Probe(const Probe& other) : ZrXmlObject(other), value(other.value) { ++live; }
  Probe& operator=(const Probe& other) = default;
  ~Probe() override { --live; }

  ZrXmlObject* clone() const override { return new Probe(*this); }
  ZrBoolean xmlInit() override { return ++initCount, ZrXmlObject::xmlInit(); }
  ZrBoolean equality(const ZrXmlObject* other) const override {
    const Probe* probe = dynamic_cast<const Probe*>(other);
    return probe ? probe->value == value : answerForNull;
  }
  ZrXmlObject* newObject() const override { return giveNoNewObject ? nullptr : new Probe(); }
  ZrToken token() const override { return ZrToken("urn:test", "probe"); }

  static int live;
  int value = 0, initCount = 0;
  bool giveNoNewObject = false, answerForNull = false;
};
int Probe::live = 0;

TEST(ZrXmlObject, ConstructionCopyAndAssignmentSettleTheFlagsAsymmetrically) {
  Probe fresh, full;
  full.xmlInit();
  full.setSpecified(true);
  Probe assignedToFresh, assignedToInitialised;
  assignedToFresh = fresh;
  assignedToInitialised.xmlInit();
  assignedToInitialised = fresh;
  struct Case {
    const char* what;
    const Probe& object;
    int flags;  // initialised 0x01, specified 0x02
  } cases[] = {
      {"default", fresh, 0x00},
      {"copy of a fresh object", Probe(fresh), 0x02},
      {"copy of an initialised, specified object", Probe(full), 0x02},
      {"assigned, target fresh", assignedToFresh, 0x02},
      {"assigned, target initialised", assignedToInitialised, 0x03},
  };
  for (const Case& c : cases) EXPECT_EQ(c.object.flags(), c.flags) << c.what;
}

TEST(ZrXmlObject, InitialisesOnceWhetherWrittenAsConstOrRead) {
  Probe p;
  const Probe& constant = p;
  std::ostringstream out;
  ZrXmlWriter writer("o.xml", out);
  EXPECT_TRUE(constant.write(writer));
  EXPECT_FALSE(p.specified()) << "writing gives no value";
  std::istringstream in("<probe/>");
  ZrXmlReader reader("o.xml", in);
  reader.readXml();
  EXPECT_TRUE(p.read(reader));
  EXPECT_EQ(p.initCount, 1);
  EXPECT_EQ(p.flags(), 0x03);
  EXPECT_EQ(reader.mode(), 3) << "the base consumes nothing";
}

TEST(ZrXmlObject, EqualsDefaultFreesItsFreshObjectAndToleratesNone) {
  const int before = Probe::live;
  {
    Probe p;
    EXPECT_TRUE(p.equalsDefault());
    p.value = 3;
    EXPECT_FALSE(p.equalsDefault());
    p.giveNoNewObject = true;
    p.answerForNull = true;
    EXPECT_TRUE(p.equalsDefault()) << "the answer of equality(null) is passed on";
  }
  EXPECT_EQ(Probe::live, before);
}

// Every flag operation read() goes through, counted: a class derived from a library value or container
// may override them, and reading must still call them.
template <class Value>
class Counting : public Value {
 public:
  ZrXmlObject* clone() const override { return new Counting(*this); }
  ZrBoolean xmlInit() override { return calls += "init ", Value::xmlInit(); }
  ZrBoolean xmlInitialized() const override { return calls += "initialized? ", Value::xmlInitialized(); }
  void setXmlInitialized(ZrBoolean value) override {
    calls += "setInitialized ";
    Value::setXmlInitialized(value);
  }
  void setSpecified(ZrBoolean value) override {
    calls += "setSpecified ";
    Value::setSpecified(value);
  }
  mutable std::string calls;
};

TEST(ZrXmlObject, ReadingCallsTheFlagOperationsOfDerivedValuesAndSetsTheFlagsOfPlainOnes) {
  const std::string firstRead = "initialized? init setInitialized setSpecified ";
  const std::string laterRead = "initialized? setSpecified ";
  const auto check = [&](auto& plain, auto& derived, const char* document, bool asAttribute) {
    for (int round = 0; round < 2; ++round) {
      derived.calls.clear();
      EXPECT_TRUE(ZrTest::readRoot(document, plain, nullptr, asAttribute)) << document;
      EXPECT_TRUE(ZrTest::readRoot(document, derived, nullptr, asAttribute)) << document;
      EXPECT_EQ(derived.calls, round == 0 ? firstRead : laterRead) << document;
      EXPECT_TRUE(plain.xmlInitialized() && plain.specified()) << document;
      EXPECT_TRUE(derived.xmlInitialized() && derived.specified()) << document;
      EXPECT_TRUE(plain == derived) << document;
    }
  };
  {
    ZrXmlBasicType<int> plain;
    Counting<ZrXmlBasicType<int>> derived;
    check(plain, derived, "<v>7</v>", false);
    EXPECT_EQ(derived.value(), 7);
  }
  {
    ZrXmlBasicType<int> plain;
    Counting<ZrXmlBasicType<int>> derived;
    check(plain, derived, "<v a='8'/>", true);
    EXPECT_EQ(derived.value(), 8);
  }
  {
    ZrXmlVectorType<ZrXmlBasicType<int>> plain;
    Counting<ZrXmlVectorType<ZrXmlBasicType<int>>> derived;
    check(plain, derived, "<v size='2'><group>1 2</group></v>", false);
    EXPECT_EQ(derived.size(), 2u);
  }
}

}  // namespace
