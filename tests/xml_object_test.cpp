// The object base: its flag rules, lazy initialisation and the comparison with a default object.
#include <ZrTestSupport.h>
#include <ZrXmlObject.h>
#include <ZrXmlReader.h>
#include <ZrXmlWriter.h>
#include <gtest/gtest.h>

#include <sstream>

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

}  // namespace
