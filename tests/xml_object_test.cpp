// The object base: its flag rules, lazy initialisation and the default comparison.
#include <ZrTestSupport.h>
#include <ZrXmlObject.h>
#include <ZrXmlWriter.h>
#include <gtest/gtest.h>

#include <memory>
#include <sstream>

namespace {

class Probe : public ZrXmlObject {
 public:
  Probe() { ++live; }
  Probe(const Probe& other) : ZrXmlObject(other), value(other.value) { ++live; }
  Probe& operator=(const Probe& other) = default;
  ~Probe() override { --live; }

  ZrXmlObject* clone() const override { return new Probe(*this); }
  ZrBoolean xmlInit() override {
    ++initCount;
    return ZrXmlObject::xmlInit();
  }
  ZrBoolean equality(const ZrXmlObject* other) const override {
    const Probe* probe = dynamic_cast<const Probe*>(other);
    return probe ? probe->value == value : answerForNull;
  }
  ZrXmlObject* newObject() const override { return giveNoNewObject ? nullptr : new Probe(); }
  ZrToken token() const override { return ZrToken("urn:test", "probe"); }

  static int live;
  int value = 0;
  int initCount = 0;
  bool giveNoNewObject = false;
  bool answerForNull = false;
};
int Probe::live = 0;

Probe initialisedAndSpecified() {
  Probe p;
  p.xmlInit();
  p.setSpecified(true);
  return p;
}

TEST(ZrXmlObject, ConstructionCopyAndAssignmentSettleTheFlagsAsymmetrically) {
  const ZrBoolean F = false, T = true;
  Probe fresh;
  Probe fullSource = initialisedAndSpecified();
  ASSERT_EQ(fullSource.flags(), 0x03);

  Probe assignedToFresh;
  assignedToFresh = fresh;
  Probe assignedToInitialised;
  assignedToInitialised.xmlInit();
  assignedToInitialised = fresh;

  struct Case {
    const char* what;
    const Probe& object;
    ZrBoolean specified, initialised;
  } cases[] = {
      {"default", fresh, F, F},
      {"copy of a fresh object", Probe(fresh), T, F},
      {"copy of an initialised, specified object", Probe(fullSource), T, F},
      {"assigned, target fresh", assignedToFresh, T, F},
      {"assigned, target initialised", assignedToInitialised, T, T},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(c.object.specified(), c.specified) << c.what;
    EXPECT_EQ(c.object.xmlInitialized(), c.initialised) << c.what;
    EXPECT_EQ(c.object.flags() & ~0x03, 0) << c.what << ": the other six bits stay 0";
  }
}

TEST(ZrXmlObject, FlagSettersTouchOnlyTheirOwnBit) {
  Probe p;
  p.setSpecified(true);
  p.setXmlInitialized(true);
  p.setSpecified(false);
  EXPECT_EQ(p.flags(), ZrXmlObject::m_theXmlInitializedBit);
  p.setSpecified(true);
  p.setXmlInitialized(false);
  EXPECT_EQ(p.flags(), ZrXmlObject::m_theSpecifiedBit);
}

TEST(ZrXmlObject, WritingAConstObjectInitialisesItOnce) {
  Probe p;
  const Probe& constant = p;
  std::ostringstream out;
  ZrXmlWriter writer("o.xml", out);
  EXPECT_TRUE(constant.write(writer));
  EXPECT_TRUE(constant.write(writer));
  EXPECT_EQ(p.initCount, 1);
  EXPECT_TRUE(p.xmlInitialized());
  EXPECT_FALSE(p.specified()) << "writing gives no value";
  EXPECT_TRUE(out.str().empty()) << "the base writes nothing";
}

TEST(ZrXmlObject, EqualsDefaultFreesItsFreshObjectAndToleratesNone) {
  const int before = Probe::live;
  {
    Probe p;
    EXPECT_TRUE(p.equalsDefault());
    p.value = 3;
    EXPECT_FALSE(p.equalsDefault());
    EXPECT_EQ(Probe::live, before + 1);

    p.giveNoNewObject = true;
    p.answerForNull = true;
    EXPECT_TRUE(p.equalsDefault()) << "the answer of equality(null) is passed on";
    p.answerForNull = false;
    EXPECT_FALSE(p.equalsDefault());
  }
  EXPECT_EQ(Probe::live, before);
}

TEST(ZrXmlObject, BaseComparisonIsAlwaysTrue) {
  Probe a;
  a.value = 1;
  Probe b;
  b.value = 2;
  struct Other : Probe {};
  Other c;
  EXPECT_TRUE(static_cast<const ZrXmlObject&>(a) == b);
  EXPECT_TRUE(static_cast<const ZrXmlObject&>(a) == c);
  EXPECT_FALSE(a.isBasicType());
}

TEST(ZrXmlObject, CreateSchemaInitialisesTheObjectAndSucceeds) {
  ZrTest::TempDir dir;
  Probe p;
  EXPECT_TRUE(p.createSchema(dir.file("probe.xsd"), p.token()));
  EXPECT_EQ(p.initCount, 1);
}

}  // namespace
