// The generator's own rules: an element type is registered once per namespace and reused, children are
// described in the order given (the writer's token order), enumerations keep their own tables, a class
// that leads back to itself ends, and faulty call sequences are reported without harm.
#include <ZrCellNamespace.h>
#include <ZrRobotCell.h>
#include <ZrTestSupport.h>
#include <ZrXmlCompoundType.h>
#include <ZrXmlEnumType.h>
#include <ZrXmlSchema.h>
#include <ZrXmlSchemaElementType.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

size_t occurrences(const std::string& text, const std::string& fragment) {
  size_t count = 0;
  for (size_t at = text.find(fragment); at != std::string::npos; at = text.find(fragment, at + 1)) ++count;
  return count;
}

std::string describe(const ZrXmlObject& root) {
  ZrXmlSchema schema;
  schema.writeStartTag(root.token(), ZrXmlSchemaElementType::XML_STARTTAG_OPTION);
  root.writeSchema(schema);
  schema.writeEndTag();
  return schema.fileText(root.token().namespaceText(), "doc.xml");
}

TEST(ZrXmlSchemaGenerator, AClassIsDescribedOncePerNamespaceAndItsChildrenInTokenOrder) {
  const std::string text = describe(ZrRobotCell());
  EXPECT_EQ(occurrences(text, "<xs:complexType name=\"ZrRobot\">"), 1u) << text;
  EXPECT_EQ(occurrences(text, "type=\"cell:ZrRobot\""), 2u) << "loader and welder";
  EXPECT_EQ(occurrences(text, "type=\"cell:ZrJoint\""), 3u) << "shoulder, elbow, wrist";
  size_t previous = 0;
  for (const char* name : {"elbow", "mass", "mode", "payload", "priority", "shoulder", "weight", "wrist"}) {
    const size_t at = text.find(std::string("<xs:element name=\"") + name + "\"");
    ASSERT_NE(at, std::string::npos) << name;
    EXPECT_GT(at, previous) << name << " out of order";
    previous = at;
  }
}

TEST(ZrXmlSchemaGenerator, EnumerationsOfOneClassKeepTheirOwnTables) {
  struct Lamp : ZrXmlCompoundType {
    Lamp() : colour(0, {{0, "red"}, {1, "green"}}), state(0, {{0, "off"}, {1, "on"}}) {}
    ZrXmlObject* clone() const override { return new Lamp(*this); }
    ZrXmlObject* newObject() const override { return new Lamp(); }
    ZrBoolean equality(const ZrXmlObject*) const override { return true; }
    ZrToken token() const override { return ZrCell::element("lamp"); }
    void registerComponents() override {
      registerComponent(ZrCell::element("colour"), &colour);
      registerAttributeComponent(ZrToken("state"), &state);
    }
    ZrXmlEnumType<int> colour, state;
  };
  const std::string text = describe(Lamp());
  for (const char* name : {"red", "green", "off", "on"})
    EXPECT_EQ(occurrences(text, std::string("<xs:enumeration value=\"") + name + "\"/>"), 1u) << name << text;
}

// Each link registers a next link of its own class, made on first use: describing it must end.
struct Chain : ZrXmlCompoundType {
  ZrXmlObject* clone() const override { return new Chain(); }
  ZrXmlObject* newObject() const override { return new Chain(); }
  ZrBoolean equality(const ZrXmlObject*) const override { return true; }
  ZrToken token() const override { return ZrCell::element("chain"); }
  void registerComponents() override {
    next.reset(new Chain());
    registerComponent(ZrCell::element("next"), next.get());
  }
  std::unique_ptr<Chain> next;
};

TEST(ZrXmlSchemaGenerator, AClassWhoseMembersLeadBackToItEndsAtItsOwnType) {
  const std::string text = describe(Chain());
  const std::string name = ZrXmlSchema::typeNameOf(typeid(Chain).name());
  EXPECT_EQ(name, "anonymous_namespace.Chain");
  EXPECT_EQ(occurrences(text, "<xs:complexType name=\"" + name + "\">"), 1u) << text;
  EXPECT_EQ(occurrences(text, "type=\"cell:" + name + "\""), 2u) << "the root's next and the type's own next";
}

TEST(ZrXmlSchemaGenerator, FaultyCallSequencesAreReportedAndDescribeNothingWrong) {
  ZrTest::PrintCapture capture;
  ZrTest::TempDir dir;
  struct Script {
    const char* what;
    void (*calls)(ZrXmlSchema&);
    bool writes;
    const char* message;
  };
  const Script scripts[] = {
      {"end tag first", [](ZrXmlSchema& s) { s.writeEndTag(); }, false, "end tag without an open element"},
      {"value outside", [](ZrXmlSchema& s) { s.setType(typeid(int)); }, false, "outside any element"},
      {"group closed twice",
       [](ZrXmlSchema& s) {
         s.writeStartTag(ZrCell::element("r"), 1);
         s.closeGroup();
         s.writeEndTag();
       },
       true, "group closed but none open"},
      {"element left open", [](ZrXmlSchema& s) { s.writeStartTag(ZrCell::element("r"), 1); }, false, "still open"},
      {"nesting without end",
       [](ZrXmlSchema& s) {
         for (ZrU32 i = 0; i < ZrXmlSchema::m_theMaxDepth + 50; ++i) s.writeStartTag(ZrCell::element("d"), 1);
         for (ZrU32 i = 0; i < ZrXmlSchema::m_theMaxDepth + 50; ++i) s.writeEndTag();
       },
       true, "nested deeper than 256 levels"},
  };
  for (const Script& script : scripts) {
    capture.clear();
    ZrXmlSchema schema;
    script.calls(schema);
    EXPECT_EQ(schema.write(dir.file("doc.xml")), script.writes) << script.what;
    EXPECT_TRUE(capture.contains(script.message)) << script.what << ": " << capture.all();
    EXPECT_EQ(occurrences(capture.all(), script.message), 1u) << script.what;
  }
}

}  // namespace
