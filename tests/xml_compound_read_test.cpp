// Reading compounds: attributes then children, unknown ones reported and skipped, and round trips.
#include <ZrTestSupport.h>
#include <ZrXmlBasicType.h>
#include <ZrXmlCompoundType.h>
#include <ZrXmlEnumType.h>
#include <ZrXmlReader.h>
#include <ZrXmlWriter.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

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
    registerAttributeComponent(ZrToken("aa"), &aa);
    registerAttributeComponent(ZrToken("zz"), &zz);
  }

  ZrXmlBasicType<double> zeta{-1.0};
  ZrXmlBasicType<int> alpha{-1};
  Inner mid;
  ZrXmlBasicType<std::string> aa, zz;
};

// Reads the document's root element into object; returns the read's result and what was printed.
ZrBoolean readRoot(const std::string& text, ZrXmlObject& object, std::string* messages = nullptr, int* modeAfter = nullptr) {
  ZrTest::PrintCapture capture;
  std::istringstream in(text);
  ZrXmlReader reader("c.xml", in);
  reader.readXml();
  const ZrBoolean result = object.read(reader);
  if (messages) *messages = capture.all();
  if (modeAfter) *modeAfter = reader.mode();
  return result;
}

TEST(ZrXmlCompoundRead, ReadsAttributesChildrenAndNestedCompounds) {
  Outer o;
  std::string messages;
  EXPECT_TRUE(readRoot("<root zz='z' aa='a'>\n<zeta>2.5</zeta>\n<mid kind='fancy'><n>4</n></mid><alpha>3</alpha></root>", o,
                       &messages));
  EXPECT_EQ(messages, "");
  EXPECT_EQ(o.aa.value(), "a");
  EXPECT_EQ(o.zz.value(), "z");
  EXPECT_EQ(o.zeta.value(), 2.5);
  EXPECT_EQ(o.alpha.value(), 3);
  EXPECT_EQ(o.mid.n.value(), 4);
  EXPECT_EQ(o.mid.kind.value(), 1);
  EXPECT_TRUE(o.specified());
  EXPECT_TRUE(o.mid.specified());
}

TEST(ZrXmlCompoundRead, UnknownChildrenAndAttributesAreReportedAndSkipped) {
  struct Case {
    const char* text;
    const char* messages;
  } cases[] = {
      {"<root>\n<bogus a='1'><deep><zeta>7</zeta></deep></bogus>\n<zeta>2.5</zeta></root>", "Bad token: bogus on line 2\n"},
      {"<root><bogus/><zeta>2.5</zeta></root>", "Bad token: bogus on line 1\n"},
      {"<root aa='a' bad='1' zz='z'><zeta>2.5</zeta></root>", "Bad attribute token: bad on line 1\n"},
      {"<root b1='1' b2='2' zz='z'><zeta>2.5</zeta></root>",
       "Bad attribute token: b1 on line 1\nBad attribute token: b2 on line 1\n"},
      // A registration without an object skips its element without a report.
      {"<root><ignored><x/></ignored><zeta>2.5</zeta></root>", ""},
  };
  for (const Case& c : cases) {
    Outer o;
    std::string messages;
    EXPECT_TRUE(readRoot(c.text, o, &messages)) << c.text;
    EXPECT_EQ(messages, c.messages) << c.text;
    EXPECT_EQ(o.zeta.value(), 2.5) << c.text << ": reading goes on after the unknown item";
  }
}

TEST(ZrXmlCompoundRead, EmptyElementReadsNothingFurtherAndMissingChildrenKeepTheirValues) {
  Outer o;
  int mode = 0;
  EXPECT_TRUE(readRoot("<root/><after/>", o, nullptr, &mode));
  EXPECT_EQ(mode, 3) << "the reader still stands on the empty element";
  EXPECT_EQ(o.alpha.value(), -1);
  EXPECT_FALSE(o.alpha.specified());

  EXPECT_TRUE(readRoot("<root><legacy>9</legacy></root>", o));
  EXPECT_EQ(o.alpha.value(), 9) << "a read-only name is read";
  EXPECT_EQ(o.zeta.value(), -1.0);
}

TEST(ZrXmlCompoundRead, RegistersOnceAndACopyRegistersItsOwn) {
  Inner inner;
  readRoot("<i><n>1</n></i>", inner);
  readRoot("<i><n>2</n></i>", inner);
  EXPECT_EQ(inner.registrations, 1);
  Inner copy(inner);
  copy.registrations = 0;
  readRoot("<i><n>3</n></i>", copy);
  EXPECT_EQ(copy.registrations, 1);
  EXPECT_EQ(copy.n.value(), 3);
  EXPECT_EQ(inner.n.value(), 2);
}

TEST(ZrXmlCompoundRead, WrittenDocumentsReadBackEqual) {
  Outer o;
  o.aa = "a b";
  o.zeta = 0.25;
  o.alpha = 12;
  o.mid.n = -3;
  o.mid.kind = 1;
  for (bool writeDefaults : {true, false}) {
    std::ostringstream out;
    ZrXmlWriter writer("c.xml", out);
    writer.setWriteDefaultDataFlag(writeDefaults);
    writer.writeStartTag(element("root"));
    o.write(writer);
    writer.writeEndTag();
    Outer back;
    std::string messages;
    EXPECT_TRUE(readRoot(out.str(), back, &messages));
    EXPECT_EQ(messages, "") << out.str();
    EXPECT_TRUE(back.equality(&o)) << out.str();
  }
}

}  // namespace
