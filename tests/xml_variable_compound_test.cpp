// The variable compound's own rules: children by element name, the library list in documents, what
// copies and assignments keep, lazy creators and the schema walk over them.
#include <ZrTestDocument.h>
#include <ZrTestRecordingSchema.h>
#include <ZrTestSupport.h>
#include <ZrXmlBaseVariableCompoundType.h>
#include <ZrXmlReader.h>
#include <ZrXmlWriter.h>
#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <typeinfo>
#include <vector>

namespace {

int theLiveLeaves = 0;

// A child class that counts its live instances and reads nothing.
class Leaf : public ZrXmlObject {
 public:
  Leaf() { ++theLiveLeaves; }
  Leaf(const Leaf& other) : ZrXmlObject(other) { ++theLiveLeaves; }
  ~Leaf() override { --theLiveLeaves; }
  ZrXmlObject* clone() const override { return new Leaf(*this); }
  ZrXmlObject* newObject() const override { return new Leaf; }
  ZrBoolean equality(const ZrXmlObject* other) const override { return dynamic_cast<const Leaf*>(other) != nullptr; }
  ZrToken token() const override { return "urn:zr:test#leaf"; }
  ZrBoolean read(ZrXmlReader& reader) override {
    reader.nextMatchingEndTag();
    return ZrXmlObject::read(reader);
  }
};
ZrXmlObject* createLeaf() { return new Leaf; }

// Knows "leaf" and "twig" (both leaves); remembers the tokens of the children it took.
class Box : public ZrXmlBaseVariableCompoundType {
 public:
  ZrXmlObject* clone() const override { return new Box(*this); }
  ZrXmlObject* newObject() const override { return new Box; }
  ZrBoolean equality(const ZrXmlObject*) const override { return true; }
  ZrToken token() const override { return "urn:zr:test#box"; }
  void registerComponentCreators() override {
    registerComponentCreator("urn:zr:test#twig", createLeaf);
    registerComponentCreator("urn:zr:test#leaf", createLeaf);
  }
  ZrBoolean readVariableComponent(const ZrToken& token, ZrXmlReader& reader) override {
    if (readLibraryList(token, reader)) return true;
    std::unique_ptr<ZrXmlObject> child(newObjectFromToken(token));
    if (!child) return false;
    child->read(reader);
    taken.push_back(token.tokenText());
    return true;
  }
  std::vector<std::string> taken;
};

Box::LibraryList libraries(std::initializer_list<const char*> names) {
  Box::LibraryList list;
  for (const char* name : names) list.pushBack(std::string(name));
  return list;
}

TEST(ZrXmlBaseVariableCompoundType, UnknownChildrenAreReportedAndSkippedWithTheirSubtrees) {
  ZrTest::PrintCapture capture;
  std::istringstream in(
      "<box xmlns=\"urn:zr:test\">\n"
      "  <leaf/>\n"
      "  <mystery a=\"1\"><leaf/><leaf>text</leaf></mystery><mystery b=\"2\"/>\n"
      "  <twig><leaf/></twig>\n"
      "</box>\n<after/>\n");
  ZrXmlReader reader("box.xml", in);
  ASSERT_EQ(reader.readXml(), 1);
  Box box;
  EXPECT_TRUE(box.read(reader));
  EXPECT_EQ(box.taken, (std::vector<std::string>{"leaf", "twig"}));
  EXPECT_EQ(capture.all(), "Bad token: #mystery on line 3\nBad token: #mystery on line 3\n");
  EXPECT_EQ(capture.messages()[0].first, Zr::PrintError);
  EXPECT_EQ(reader.readXml(), 3) << "the box's end tag was consumed, nothing after it";
  EXPECT_EQ(reader.element().tokenText(), "after");

  Box emptyBox;
  int next = 0;
  EXPECT_TRUE(ZrTest::readRoot("<box/><after/>", emptyBox, &next));
  EXPECT_TRUE(emptyBox.specified());
  EXPECT_EQ(next, 3);
}

TEST(ZrXmlBaseVariableCompoundType, TheLibraryListIsWrittenOnlyWhenItHoldsNamesAndReadsBack) {
  Box box;
  EXPECT_EQ(ZrTest::written(box).find("addLibraries"), std::string::npos);

  box.setAddLibraries(libraries({"zrNoSuchPluginA", "zrNoSuchPluginB"}));
  const std::string text = ZrTest::written(box);
  EXPECT_EQ(text, "<v>\n <addLibraries size=\"2\">\n  <group>zrNoSuchPluginA zrNoSuchPluginB</group>\n </addLibraries>\n</v>\n")
      << "in the parent's namespace";
  Box again;
  ZrTest::PrintCapture capture;  // neither library is on the search path: passed over silently
  ASSERT_TRUE(ZrTest::readRoot(text, again));
  EXPECT_TRUE(again.addLibraries().equality(&box.addLibraries()));
  EXPECT_EQ(capture.all(), "");
}

TEST(ZrXmlBaseVariableCompoundType, CopiesTakeTheListButRegisterTheirOwnCreators) {
  Box source;
  source.setAddLibraries(libraries({"zrSomePlugin"}));
  source.registerComponentCreator("urn:zr:test#extra", createLeaf);  // as a plug-in would
  ASSERT_EQ(source.creatorMap().size(), 1u) << "the registration did not start the lazy one";
  std::unique_ptr<ZrXmlObject>(source.newObjectFromToken("leaf"));
  EXPECT_EQ(source.creatorMap().size(), 3u);

  Box copy(source);
  EXPECT_TRUE(copy.specified());
  EXPECT_FALSE(copy.xmlInitialized());
  EXPECT_TRUE(copy.creatorMap().empty());
  EXPECT_EQ(copy.addLibraries().size(), 1u);
  std::unique_ptr<ZrXmlObject> made(copy.newObjectFromToken("twig"));
  EXPECT_NE(made, nullptr);
  EXPECT_TRUE(copy.xmlInitialized());
  EXPECT_EQ(copy.creatorMap().count("extra"), 0u);

  Box target;
  target.registerComponentCreator("urn:zr:test#own", createLeaf);
  target = source;
  EXPECT_EQ(target.addLibraries().size(), 1u);
  EXPECT_EQ(target.creatorMap().count("own"), 1u) << "assignment keeps the target's factory";
  EXPECT_EQ(target.creatorMap().count("extra"), 0u);
  EXPECT_TRUE(target.specified());
}

TEST(ZrXmlBaseVariableCompoundType, SchemaDescribesTheListAndEachCreatorInTokenOrder) {
  struct Bare : Box {
    void registerComponentCreators() override {}
  } bare;
  ZrTest::RecordingSchema nothing;
  EXPECT_TRUE(bare.writeSchema(nothing));
  EXPECT_TRUE(nothing.calls.empty());

  Box box;
  ZrTest::RecordingSchema schema("twig");
  EXPECT_TRUE(box.writeSchema(schema));
  const std::string leafType = typeid(Leaf).name();
  const std::vector<std::string>& calls = schema.calls;
  ASSERT_GE(calls.size(), 3u);
  EXPECT_EQ(calls[0], "group");
  EXPECT_EQ(calls[1], "parent addLibraries 0");
  const std::vector<std::string> tail = {"end", "start leaf 0", "registered? leaf " + leafType, "end", "start twig 0",
                                         "registered? twig " + leafType, "/group"};
  ASSERT_GE(calls.size(), tail.size() + 2);
  EXPECT_EQ(std::vector<std::string>(calls.end() - static_cast<long>(tail.size()), calls.end()), tail);
  EXPECT_EQ(theLiveLeaves, 0) << "the sample objects are deleted";
}

}  // namespace
