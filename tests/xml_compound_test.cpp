// Compound objects: registration, the order and selection of what is written, copies, the schema walk.
#include <ZrXmlBasicType.h>
#include <ZrXmlCompoundType.h>
#include <ZrXmlSchema.h>
#include <ZrXmlWriter.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace {

const char* const ns = "urn:test";
ZrToken element(const char* name) { return ZrToken(ns, name); }

class Inner : public ZrXmlCompoundType {
 public:
  ZrXmlObject* clone() const override { return new Inner(*this); }
  ZrXmlObject* newObject() const override { return new Inner(); }
  ZrBoolean equality(const ZrXmlObject* other) const override {
    const Inner* inner = dynamic_cast<const Inner*>(other);
    return inner && inner->n == n;
  }
  ZrToken token() const override { return element("inner"); }
  void registerComponents() override { registerComponent(element("n"), &n); }

  ZrXmlBasicType<int> n;
};

// Registers in an order unlike the token order, with both kinds of read-only registration.
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
    registerAttributeComponent(ZrToken("zz"), &zz);
    registerAttributeComponent(ZrToken("aa"), &aa);
    registerComponentReadOnly(element("legacy"), &alpha);
    registerAttributeComponentReadOnly(ZrToken("old"), &aa);
  }

  ZrXmlBasicType<double> zeta;
  ZrXmlBasicType<int> alpha;
  Inner mid;
  ZrXmlBasicType<std::string> aa, zz;
};

std::string written(const ZrXmlObject& object, bool writeDefaults = true) {
  std::ostringstream out;
  ZrXmlWriter writer("c.xml", out);
  writer.setWriteDefaultDataFlag(writeDefaults);
  writer.writeStartTag(element("root"));
  EXPECT_TRUE(object.write(writer));
  writer.writeEndTag();
  return out.str();
}

bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

TEST(ZrXmlCompoundWrite, AttributesThenChildrenEachInTokenOrder) {
  Outer o;
  o.aa = "a";
  o.zz = "z";
  const std::string text = written(o);
  EXPECT_TRUE(has(text, "aa=\"a\" zz=\"z\">")) << text;
  const auto alpha = text.find("<alpha>"), mid = text.find("<mid>"), zeta = text.find("<zeta>");
  ASSERT_NE(zeta, std::string::npos) << text;
  EXPECT_LT(alpha, mid);
  EXPECT_LT(mid, zeta);
}

TEST(ZrXmlCompoundWrite, ReadOnlyRegistrationsAreNeverWritten) {
  const std::string text = written(Outer());
  EXPECT_FALSE(has(text, "legacy")) << text;
  EXPECT_FALSE(has(text, "old=")) << text;
}

TEST(ZrXmlCompoundWrite, DefaultDataFlagLeavesOutOnlyDefaultStructures) {
  Outer o;
  o.zeta = 1.5;  // the compound as a whole is no longer default
  const std::string without = written(o, false);
  EXPECT_FALSE(has(without, "<mid")) << without;
  EXPECT_TRUE(has(without, "<alpha>0</alpha>")) << "single values are written even when default";
  EXPECT_TRUE(has(without, "aa=\"\"")) << "attributes are always written";
  EXPECT_TRUE(has(written(o, true), "<mid>")) << written(o, true);

  o.mid.n = 4;
  EXPECT_TRUE(has(written(o, false), "<n>4</n>"));

  // A compound that is default as a whole writes nothing at all: its element is nil.
  const std::string nothing = written(Outer(), false);
  EXPECT_TRUE(has(nothing, "xsi:nil=\"true\"/>")) << nothing;
  EXPECT_FALSE(has(nothing, "aa=")) << nothing;
}

TEST(ZrXmlCompoundWrite, ReadOnlyMarksShareOneTableSoTheLastKindWins) {
  struct Shared : Inner {
    void registerComponents() override {
      registerComponentReadOnly(element("both"), &n);
      registerAttributeComponentReadOnly(ZrToken("both"), &n);
    }
  } s;
  s.n = 8;
  const std::string text = written(s);
  EXPECT_TRUE(has(text, "<both>8</both>")) << text;
  EXPECT_FALSE(has(text, "both=")) << text;
}

TEST(ZrXmlCompoundWrite, NullRegistrationsAreSkipped) {
  struct WithNull : Inner {
    void registerComponents() override {
      registerComponent(element("gone"), nullptr);
      registerAttributeComponent(ZrToken("gone"), nullptr);
      Inner::registerComponents();
    }
  } w;
  const std::string text = written(w);
  EXPECT_FALSE(has(text, "gone")) << text;
  EXPECT_TRUE(has(text, "<n>0</n>")) << text;
}

TEST(ZrXmlCompoundCopy, CopiesAndAssignedObjectsWriteTheirOwnMembers) {
  Outer source;
  source.alpha = 1;
  written(source);  // registers the source's members
  Outer copy(source);
  EXPECT_TRUE(copy.specified());
  EXPECT_FALSE(copy.xmlInitialized());
  copy.alpha = 2;
  EXPECT_TRUE(has(written(copy), "<alpha>2</alpha>"));
  EXPECT_TRUE(has(written(source), "<alpha>1</alpha>"));

  source = copy;
  copy.alpha = 3;
  EXPECT_TRUE(has(written(source), "<alpha>2</alpha>")) << "the target keeps registrations of its own members";
}

TEST(ZrXmlCompoundCompare, EqualWhenTheRegistrationsMatchWhateverTheValues) {
  Outer a, b;
  a.alpha = 1;
  b.alpha = 2;
  EXPECT_TRUE(a == b) << "uninitialised";
  a.xmlInit();
  b.xmlInit();
  EXPECT_TRUE(a == b);
  EXPECT_FALSE(a.equality(&b));

  struct Fewer : Outer {
    void registerComponents() override { registerComponent(element("alpha"), &alpha); }
  } fewer;
  fewer.xmlInit();
  EXPECT_FALSE(a == fewer);
  struct OtherReadOnly : Outer {
    void registerComponents() override {
      Outer::registerComponents();
      registerComponentReadOnly(element("zeta"), &zeta);
    }
  } otherReadOnly;
  otherReadOnly.xmlInit();
  EXPECT_FALSE(a == otherReadOnly);
}

TEST(ZrXmlCompoundWalk, ForEachComponentListsAttributesThenElementsInTokenOrder) {
  const Outer o;
  std::vector<std::string> seen;
  o.forEachComponent([&](const ZrToken& token, const ZrXmlObject*, ZrXmlCompoundType::ComponentKind kind, bool readOnly) {
    seen.push_back(std::string(kind == ZrXmlCompoundType::ATTRIBUTE_COMPONENT ? "@" : "") + token.tokenText() +
                   (readOnly ? "!" : ""));
  });
  EXPECT_EQ(seen, (std::vector<std::string>{"@aa", "@old!", "@zz", "alpha", "legacy!", "mid", "zeta"}));
}

// Records the calls that the schema walk makes.
class RecordingSchema : public ZrXmlSchema {
 public:
  void writeStartTag(const ZrToken& token, int option) override {
    calls.push_back("start " + token.tokenText() + " " + std::to_string(option));
  }
  void setAttributeName(const ZrToken& token) override { calls.push_back("attribute " + token.tokenText()); }
  void setType(const std::type_info& info) override { calls.push_back(std::string("type ") + info.name()); }
  void writeEndTag() override { calls.push_back("end"); }
  void openGroup() override { calls.push_back("group"); }
  void closeGroup() override { calls.push_back("/group"); }
  ZrBoolean isRegistered(const ZrToken& token, const std::string& typeName) override {
    calls.push_back("registered? " + token.tokenText() + " " + typeName);
    return token.tokenText() == registered;
  }
  std::vector<std::string> calls;
  std::string registered;
};

TEST(ZrXmlCompoundSchema, DescribesEveryRegistrationOnceInTokenOrder) {
  const std::string intType = std::string("type ") + typeid(int).name();
  const std::string inner = typeid(Inner).name(), basicInt = typeid(ZrXmlBasicType<int>).name();
  RecordingSchema schema;
  schema.registered = "mid";  // the generator already knows this element's type
  struct Small : Inner {
    void registerComponents() override {
      registerAttributeComponentReadOnly(ZrToken("id"), &n);
      registerComponent(element("mid"), &child);
      registerComponentReadOnly(element("b"), &n);
    }
    Inner child;
  } small;
  EXPECT_TRUE(small.writeSchema(schema));
  const std::vector<std::string> expected = {
      "attribute id", intType,  "group", "start b 1", "registered? b " + basicInt, intType, "end", "start mid 1",
      "registered? mid " + inner, "/group"};
  EXPECT_EQ(schema.calls, expected);
  EXPECT_NE(basicInt[0], '*');
}

}  // namespace
