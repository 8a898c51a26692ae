// ZrXmlPolymorphicVector: objects of several kinds read by element name, written in order, copied
// deeply, compared by value; elements it cannot read (unknown kinds, creators that make nothing or the
// wrong kind) reported with file and line, counted, and skipped.
#include <ZrTestDocument.h>
#include <ZrTestSupport.h>
#include <ZrXmlBasicType.h>
#include <ZrXmlCompound.h>
#include <ZrXmlObjectVisitor.h>
#include <ZrXmlPolymorphicVector.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace {
const char* const ns = "urn:test";

class Shape : public ZrXmlCompoundType {
 public:
  ZrXmlBasicType<int> id;

 protected:
  void registerComponents() override { registerAttributeComponent("id", &id); }
};

class Circle : public ZrXmlCompound<Circle, Shape> {
 public:
  static ZrToken classToken() { return ZrToken(ns, "circle"); }
  ZrXmlBasicType<double> radius;

 protected:
  void registerComponents() override {
    Shape::registerComponents();
    registerComponent(ZrToken(ns, "radius"), &radius);
  }
};

class Square : public ZrXmlCompound<Square, Shape> {
 public:
  static ZrToken classToken() { return ZrToken(ns, "square"); }
  ZrXmlBasicType<double> side;

 protected:
  void registerComponents() override {
    Shape::registerComponents();
    registerComponent(ZrToken(ns, "side"), &side);
  }
};

// Not a shape.
class Caption : public ZrXmlCompound<Caption> {
 public:
  static ZrToken classToken() { return ZrToken(ns, "caption"); }

 protected:
  void registerComponents() override {}
};

ZrXmlObject* makeNothing() { return nullptr; }
ZrXmlObject* makeLargeCircle() {
  Circle* circle = new Circle();
  circle->radius = 99.0;
  return circle;
}

class Drawing : public ZrXmlCompound<Drawing> {
 public:
  static ZrToken classToken() { return ZrToken(ns, "drawing"); }
  ZrXmlPolymorphicVector<Shape> shapes;

 protected:
  void registerComponents() override {
    registerComponent(ZrToken(ns, "shapes"), &shapes);
    shapes.registerKind<Circle>();
    shapes.registerComponentCreator(Square::classToken(), ZrXml::create<Square>);
    shapes.registerComponentCreator(ZrToken(ns, "nothing"), makeNothing);
    shapes.registerComponentCreator(Caption::classToken(), ZrXml::create<Caption>);
  }
};

Drawing sampleDrawing() {
  Drawing drawing;
  drawing.shapes.emplace_back<Circle>().radius = 1.5;
  Square& square = drawing.shapes.emplace_back<Square>();
  square.id = 2;
  square.side = 3.0;
  drawing.shapes.emplace_back<Circle>().id = 3;
  return drawing;
}

// The element names of the list's objects, in order.
std::string kinds(const ZrXmlPolymorphicVector<Shape>& shapes) {
  std::string names;
  for (const Shape& shape : shapes) names += (names.empty() ? "" : " ") + shape.token().tokenText();
  return names;
}

// Reads text into drawing and returns the reader's fault count.
ZrU32 readDrawing(const std::string& text, Drawing& drawing) {
  std::istringstream in(text);
  ZrXmlReader reader("doc.xml", in);
  reader.readXml();
  drawing.read(reader);
  while (reader.readXml() > 0 && reader.mode() != 5) {
  }
  return reader.faultCount();
}

TEST(PolymorphicVector, ReadsAndWritesEachObjectUnderItsOwnName) {
  const Drawing drawing = sampleDrawing();
  const std::string text = ZrTest::written(drawing);
  EXPECT_NE(text.find("<square id=\"2\">"), std::string::npos) << text;
  Drawing back;
  ZrTest::PrintCapture capture;
  EXPECT_EQ(readDrawing(text, back), 0u) << capture.all();
  EXPECT_EQ(kinds(back.shapes), "circle square circle") << text;
  ASSERT_EQ(back.shapes.size(), 3u);
  EXPECT_EQ(dynamic_cast<const Square&>(back.shapes[1]).side.value(), 3.0);
  EXPECT_TRUE(back == drawing);
  EXPECT_EQ(ZrTest::written(back), text);
}

TEST(PolymorphicVector, EqualityGoesByPositionKindAndValue) {
  const Drawing drawing = sampleDrawing();
  Drawing reordered = sampleDrawing();
  reordered.shapes.erase(0);
  reordered.shapes.emplace_back<Circle>().radius = 1.5;
  EXPECT_FALSE(reordered == drawing);
  Drawing shorter = sampleDrawing();
  EXPECT_TRUE(shorter.shapes.erase(2));
  EXPECT_FALSE(shorter.shapes.erase(2));  // past the end: nothing removed
  EXPECT_FALSE(shorter == drawing);
  Drawing changed = sampleDrawing();
  dynamic_cast<Circle&>(changed.shapes[2]).radius = 0.5;
  EXPECT_FALSE(changed == drawing);
  Drawing other = sampleDrawing();
  other.shapes.push_back(nullptr);  // not added
  EXPECT_TRUE(other == drawing);
}

TEST(PolymorphicVector, CopiesAreDeepAndReadAsTheirSourceDoes) {
  ZrXmlPolymorphicVector<Shape> shapes;
  shapes.registerKind<Circle>();
  shapes.emplace_back<Circle>().radius = 1.0;
  ZrXmlPolymorphicVector<Shape> copy(shapes);
  dynamic_cast<Circle&>(copy[0]).radius = 2.0;
  EXPECT_EQ(dynamic_cast<const Circle&>(shapes[0]).radius.value(), 1.0);
  EXPECT_FALSE(copy == shapes);

  ZrXmlPolymorphicVector<Shape> moved(std::move(copy));
  ZrXmlPolymorphicVector<Shape> assigned;
  assigned = moved;
  for (ZrXmlPolymorphicVector<Shape>* list : {&moved, &assigned}) {
    ZrTest::PrintCapture capture;
    EXPECT_TRUE(ZrTest::readRoot("<v xmlns='urn:test'><circle><radius>4</radius></circle></v>", *list));
    EXPECT_EQ(capture.count(), 0u) << capture.all();
    ASSERT_EQ(list->size(), 1u);
    EXPECT_EQ(dynamic_cast<const Circle&>((*list)[0]).radius.value(), 4.0);
  }
}

TEST(PolymorphicVector, AKindRegisteredAgainTakesTheLaterCreator) {
  ZrXmlPolymorphicVector<Shape> shapes;
  shapes.registerKind<Circle>();
  shapes.registerComponentCreator(Circle::classToken(), makeLargeCircle);
  shapes.registerKind<Square>();
  shapes.registerKind<Square>();
  EXPECT_EQ(shapes.creatorMap().size(), 2u);
  ZrTest::readRoot("<v xmlns='urn:test'><circle/><square/></v>", shapes);
  ASSERT_EQ(kinds(shapes), "circle square");
  EXPECT_EQ(dynamic_cast<const Circle&>(shapes[0]).radius.value(), 99.0);
}

// Each row puts one element the list cannot read between a circle and a square, on line 4: it is
// reported once, with the file and its line, and skipped with its content; both neighbours are read.
TEST(PolymorphicVector, ElementsItCannotReadAreReportedCountedAndSkipped) {
  struct Row {
    const char* element;
    const char* fault;
  };
  const std::vector<Row> rows = {
      {"<triangle id='9'><corner x='1'/></triangle>", "unknown kind: triangle"},
      {"<triangle/>", "unknown kind: triangle"},
      {"<group><circle id='5'/></group>", "unknown kind: group"},
      {"<nothing id='7'><radius>1</radius></nothing>", "its creator made no object: nothing"},
      {"<caption>text</caption>", "the object made is not of the list's kind: caption"},
  };
  for (const Row& row : rows) {
    const std::string text = std::string("<drawing xmlns='urn:test'>\n<shapes>\n<circle id='1'/>\n") + row.element +
                             "\n<square id='2'/>\n</shapes>\n</drawing>\n";
    Drawing drawing;
    ZrTest::PrintCapture capture;
    EXPECT_EQ(readDrawing(text, drawing), 1u) << row.element << "\n" << capture.all();
    EXPECT_EQ(kinds(drawing.shapes), "circle square") << row.element;
    ASSERT_EQ(capture.count(), 1u) << capture.all();
    const std::string message = capture.texts()[0];
    EXPECT_NE(message.find(std::string("ZrXmlPolymorphicVector Error: ") + row.fault + "; element skipped."),
              std::string::npos)
        << message;
    EXPECT_NE(message.find("\n\tFile: doc.xml\n\tLine: 4\n"), std::string::npos) << message;
  }
}

TEST(PolymorphicVector, AnEmptyListIsLeftOutOfDocumentsWithoutDefaults) {
  Drawing drawing;
  EXPECT_EQ(ZrTest::written(drawing, "", false).find("shapes"), std::string::npos);
  EXPECT_NE(ZrTest::written(sampleDrawing(), "", false).find("<shapes>"), std::string::npos);
  Drawing back = sampleDrawing();
  EXPECT_EQ(readDrawing("<drawing xmlns='urn:test'><shapes/></drawing>", back), 0u);
  EXPECT_TRUE(back.shapes.empty());  // read afresh
}

class RoleVisitor : public ZrXmlObjectVisitor {
 public:
  using ZrXmlObjectVisitor::visit;
  void visitContainer(const ZrXmlObject*, const ElementWalk& walk) override {
    walk([this](const ZrToken& role, const ZrXmlObject& element) {
      roles += role.tokenText() + (dynamic_cast<const Shape*>(&element) ? " " : "? ");
    });
  }
  std::string roles;
};

TEST(PolymorphicVector, VisitorsWalkTheObjectsByTheirNames) {
  const Drawing drawing = sampleDrawing();
  RoleVisitor visitor;
  drawing.shapes.accept(&visitor);
  EXPECT_EQ(visitor.roles, "circle square circle ");
}

}  // namespace
