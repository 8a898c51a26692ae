// Compound objects: what is written and in which order, what is read and what is skipped, copies,
// the comparison and the schema walk.
#include <ZrTestDocument.h>
#include <ZrTestRecordingSchema.h>
#include <ZrTestSupport.h>
#include <ZrXmlBasicType.h>
#include <ZrXmlCompoundType.h>
#include <ZrXmlEnumType.h>
#include <ZrXmlReader.h>
#include <ZrXmlWriter.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace {

ZrToken element(const char* name) { return ZrToken("urn:test", name); }

class Inner : public ZrXmlCompoundType {
 public:
  ZrXmlObject* clone() const override { return new Inner(*this); }
  ZrXmlObject* newObject() const override { return new Inner(); }
  ZrBoolean equality(const ZrXmlObject* other) const override {
    const Inner* inner = dynamic_cast<const Inner*>(other);
    return inner && inner->n == n && inner->kind == kind;
  }
  ZrToken token() const override { return element("inner"); }
  void registerComponents() override {
    ++registrations;
    registerComponent(element("n"), &n);
    registerAttributeComponent(ZrToken("kind"), &kind);
  }

  ZrXmlBasicType<int> n;
  ZrXmlEnumType<int> kind{0, {{0, "plain"}, {1, "fancy"}}};
  int registrations = 0;
};

// Registers in an order unlike the token order, with read-only and null registrations.
class Outer : public ZrXmlCompoundType {
 public:
  ZrXmlObject* clone() const override { return new Outer(*this); }
  ZrXmlObject* newObject() const override { return new Outer(); }
  ZrBoolean equality(const ZrXmlObject* other) const override {
    const Outer* outer = dynamic_cast<const Outer*>(other);
    return outer && outer->zeta == zeta && outer->alpha == alpha && outer->mid.equality(&mid) && outer->aa == aa &&
           outer->zz == zz;
  }
  ZrToken token() const override { return element("outer"); }
  void registerComponents() override {
    registerComponent(element("zeta"), &zeta);
    registerComponent(element("mid"), &mid);
    registerComponent(element("alpha"), &alpha);
    registerComponent(element("ignored"), nullptr);
    registerComponentReadOnly(element("legacy"), &alpha);
    registerAttributeComponent(ZrToken("zz"), &zz);
    registerAttributeComponent(ZrToken("aa"), &aa);
    registerAttributeComponentReadOnly(ZrToken("old"), &aa);
  }

  ZrXmlBasicType<double> zeta{-1.0};
  ZrXmlBasicType<int> alpha{-1};
  Inner mid;
  ZrXmlBasicType<std::string> aa, zz;
};

using ZrTest::readRoot;
using ZrTest::written;

bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

TEST(ZrXmlCompoundWrite, AttributesThenChildrenInTokenOrderWithoutReadOnlyOrNullOnes) {
  Outer o;
  o.aa = "a";
  EXPECT_EQ(written(o), "<v aa=\"a\" zz=\"\">\n <alpha>-1</alpha>\n <mid kind=\"plain\">\n  <n>0</n>\n </mid>\n"
                        " <zeta>-1</zeta>\n</v>\n");
}

TEST(ZrXmlCompoundWrite, DefaultDataFlagLeavesOutOnlyDefaultStructures) {
  Outer o;
  o.zeta = 1.5;  // the compound as a whole is no longer default
  // single values and attributes are written even when default; the default structure <mid> is not
  EXPECT_EQ(written(o, "", false), "<v aa=\"\" zz=\"\">\n <alpha>-1</alpha>\n <zeta>1.5</zeta>\n</v>\n");
  o.mid.n = 4;
  EXPECT_EQ(written(o, "", false),
            "<v aa=\"\" zz=\"\">\n <alpha>-1</alpha>\n <mid kind=\"plain\">\n  <n>4</n>\n </mid>\n <zeta>1.5</zeta>\n</v>\n");
  EXPECT_EQ(written(Outer(), "", false), "<v xsi:nil=\"true\"/>\n");  // default as a whole: a nil element
}

TEST(ZrXmlCompoundRead, ReadsWhatWasWritten) {
  Outer o;
  o.aa = "a b";
  o.zeta = 0.25;
  o.alpha = 12;
  o.mid.n = -3;
  o.mid.kind = 1;
  for (bool writeDefaults : {true, false}) {
    Outer back;
    ZrTest::PrintCapture capture;
    EXPECT_TRUE(readRoot(written(o, "", writeDefaults), back));
    EXPECT_EQ(capture.all(), "");
    EXPECT_TRUE(back.equality(&o)) << written(o, "", writeDefaults);
    EXPECT_TRUE(back.mid.specified());
  }
}

TEST(ZrXmlCompoundRead, UnknownChildrenAndAttributesAreReportedAndSkipped) {
  struct Case {
    const char* text;
    const char* messages;
  } cases[] = {
      {"<root>\n<bogus a='1'><deep><zeta>7</zeta></deep></bogus>\n<zeta>2.5</zeta></root>", "Bad token: bogus on line 2\n"},
      {"<root b1='1' aa='a' b2='2'><zeta>2.5</zeta></root>",
       "Bad attribute token: b1 on line 1\nBad attribute token: b2 on line 1\n"},
      {"<root><ignored><x/></ignored><zeta>2.5</zeta></root>", ""},  // known, deliberately not kept
  };
  for (const Case& c : cases) {
    Outer o;
    ZrTest::PrintCapture capture;
    EXPECT_TRUE(readRoot(c.text, o)) << c.text;
    EXPECT_EQ(capture.all(), c.messages) << c.text;
    EXPECT_EQ(o.zeta.value(), 2.5) << c.text << ": reading goes on after the unknown item";
  }
}

TEST(ZrXmlCompoundRead, EmptyElementReadsNothingFurtherAndMissingChildrenKeepTheirValues) {
  Outer o;
  int next = 0;
  EXPECT_TRUE(readRoot("<root/><after/>", o, &next));
  EXPECT_EQ(next, 3) << "nothing after the empty element was read";
  EXPECT_FALSE(o.alpha.specified());

  EXPECT_TRUE(readRoot("<root><legacy>9</legacy></root>", o));
  EXPECT_EQ(o.alpha.value(), 9) << "a read-only name is read";
  EXPECT_EQ(o.zeta.value(), -1.0);
}

TEST(ZrXmlCompoundCopy, CopiesRegisterTheirOwnMembersAndAssignmentKeepsTheTargets) {
  Outer source;
  source.mid.n = 1;
  written(source);
  readRoot("<i><n>1</n></i>", source.mid);
  EXPECT_EQ(source.mid.registrations, 1) << "registered once";
  Outer copy(source);
  EXPECT_FALSE(copy.xmlInitialized());
  copy.mid.n = 2;
  EXPECT_TRUE(has(written(copy), "<n>2</n>"));
  EXPECT_TRUE(has(written(source), "<n>1</n>"));

  source = copy;
  copy.mid.n = 3;
  EXPECT_TRUE(has(written(source), "<n>2</n>")) << "the target's registrations point at its own members";
}

TEST(ZrXmlCompoundCompare, EqualWhenTheRegistrationsMatchWhateverTheValues) {
  Outer a, b;
  a.alpha = 1;
  EXPECT_TRUE(a == b) << "uninitialised";
  a.xmlInit();
  b.xmlInit();
  EXPECT_TRUE(a == b);
  struct OtherReadOnly : Outer {
    void registerComponents() override {
      Outer::registerComponents();
      registerComponentReadOnly(element("zeta"), &zeta);
    }
  } otherReadOnly;
  otherReadOnly.xmlInit();
  EXPECT_FALSE(a == otherReadOnly);
}

TEST(ZrXmlCompoundSchema, DescribesEveryRegistrationInTokenOrderReadOnlyOnesToo) {
  const std::string intType = std::string("type ") + typeid(int).name();
  const std::string inner = typeid(Inner).name(), basicInt = typeid(ZrXmlBasicType<int>).name();
  struct Small : Inner {
    void registerComponents() override {
      registerAttributeComponentReadOnly(ZrToken("id"), &n);
      registerComponent(element("mid"), &child);
      registerComponentReadOnly(element("b"), &n);
    }
    Inner child;
  } small;
  ZrTest::RecordingSchema schema("mid");
  EXPECT_TRUE(small.writeSchema(schema));
  const std::vector<std::string> expected = {
      "attribute id", intType,  "group", "start b 1", "registered? b " + basicInt, intType, "end", "start mid 1",
      "registered? mid " + inner, "/group"};
  EXPECT_EQ(schema.calls, expected);
}

}  // namespace
