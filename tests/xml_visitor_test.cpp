// Visiting object trees: every class reaches its own overload, defaults forward to more general ones.
#include <ZrTestSupport.h>
#include <ZrXmlBasicType.h>
#include <ZrXmlCompoundType.h>
#include <ZrXmlEnumType.h>
#include <ZrXmlValueListVisitor.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace {

// One member of every value type the visitor knows, each written differently from the others.
class AllValues : public ZrXmlCompoundType {
 public:
  ZrXmlObject* clone() const override { return new AllValues(*this); }
  ZrXmlObject* newObject() const override { return new AllValues(); }
  ZrBoolean equality(const ZrXmlObject* other) const override { return other == this; }
  ZrToken token() const override { return ZrToken("urn:test", "all"); }
  void registerComponents() override {  // elements "a" to "r" in the order of the members below
    ZrXmlObject* const members[] = {&b,    &c,    &s,  &us, &i,   &u,  &uc, &d,   &str,
                                    &angle, &mass, &eb, &es, &eus, &ei, &eu, &euc, &enn};
    char name = 'a';
    for (ZrXmlObject* member : members) registerComponent(ZrToken(std::string(1, name++)), member);
    registerAttributeComponent(ZrToken("z"), &str);
  }

  ZrXmlBasicType<bool> b{true};
  ZrXmlBasicType<char> c{'c'};
  ZrXmlBasicType<short> s{short(-3)};
  ZrXmlBasicType<unsigned short> us{(unsigned short)4};
  ZrXmlBasicType<int> i{-5};
  ZrXmlBasicType<unsigned int> u{6u};
  ZrXmlBasicType<unsigned char> uc{(unsigned char)7};
  ZrXmlBasicType<double> d{8.5};
  ZrXmlBasicType<std::string> str{std::string("nine")};
  ZrXmlBasicType<ZrAngle> angle{ZrAngle(1.25)};
  ZrXmlBasicType<ZrNonNegReal> mass{ZrNonNegReal(11)};
  ZrXmlEnumType<bool> eb{true, {{false, "no"}, {true, "yes"}}};
  ZrXmlEnumType<short> es{short(2), {{short(2), "es"}}};
  ZrXmlEnumType<unsigned short> eus{(unsigned short)2, {{(unsigned short)2, "eus"}}};
  ZrXmlEnumType<int> ei{2, {{2, "ei"}}};
  ZrXmlEnumType<unsigned int> eu{2u, {{2u, "eu"}}};
  ZrXmlEnumType<unsigned char> euc{(unsigned char)2, {{(unsigned char)2, "euc"}}};
  ZrXmlEnumType<ZrNonNegReal> enn{ZrNonNegReal(2), {{ZrNonNegReal(2), "enn"}}};
};

TEST(ZrXmlValueListVisitor, EveryValueTypeReachesItsOwnOverload) {
  std::ostringstream out;
  ZrXmlValueListVisitor(out, "all").list(AllValues());
  EXPECT_EQ(out.str(),
            "all/@z = nine\nall/a = 1\nall/b = c\nall/c = -3\nall/d = 4\nall/e = -5\nall/f = 6\nall/g = 7\n"
            "all/h = 8.5\nall/i = nine\nall/j = 1.25\nall/k = 11\nall/l = yes\nall/m = es\nall/n = eus\n"
            "all/o = ei\nall/p = eu\nall/q = euc\nall/r = enn\n");
}

// Overrides only the two most general overloads: everything else must forward to them.
struct CountingVisitor : ZrXmlObjectVisitor {
  using ZrXmlObjectVisitor::visit;
  void visit(const ZrXmlObject*) override { ++objects; }
  void visit(const ZrBaseXmlBasicType*) override { ++values; }
  void visit(const ZrXmlCompoundType* compound) override {
    ++compounds;
    visitComponents(compound);
  }
  int objects = 0, values = 0, compounds = 0;
};

TEST(ZrXmlObjectVisitor, DefaultsForwardToTheMoreGeneralOverload) {
  CountingVisitor counter;
  AllValues().accept(&counter);
  EXPECT_EQ(counter.compounds, 1);
  EXPECT_EQ(counter.values, 19);  // 18 elements and one attribute
  EXPECT_EQ(counter.objects, 0);
}

TEST(ZrXmlValueListVisitor, SelfRegisteringCompoundIsCutOffWithAMessage) {
  struct Loop : AllValues {
    void registerComponents() override { registerComponent(ZrToken("again"), this); }
  } loop;
  ZrTest::PrintCapture capture;
  std::ostringstream out;
  ZrXmlValueListVisitor(out, "loop").list(loop);
  ASSERT_EQ(capture.count(), 1u);
  EXPECT_TRUE(capture.contains("nesting deeper than 256 levels")) << capture.all();
}

}  // namespace
