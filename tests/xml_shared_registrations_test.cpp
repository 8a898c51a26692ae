// Compounds of one class share their class's registration table only while they register exactly as the
// object it was recorded from; every other object keeps maps of its own. Whichever way an object holds
// its registrations, it reads, writes and compares its own members.
#include <ZrTestDocument.h>
#include <ZrTestSupport.h>
#include <ZrXmlBasicType.h>
#include <ZrXmlCompoundType.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

ZrToken element(const char* name) { return ZrToken("urn:test", name); }

const char* const theDocument = "<v id=\"7\"><a>1</a><b>2</b></v>";

// Registers b only when extended: objects of one class whose registrations differ.
class Varying : public ZrXmlCompoundType {
 public:
  explicit Varying(bool withB = true) : extended(withB) {}
  ZrXmlObject* clone() const override { return new Varying(*this); }
  ZrXmlObject* newObject() const override { return new Varying(extended); }
  ZrBoolean equality(const ZrXmlObject* other) const override {
    const Varying* same = dynamic_cast<const Varying*>(other);
    return same && same->a == a && same->b == b && same->id == id;
  }
  ZrToken token() const override { return element("v"); }
  void registerComponents() override {
    registerAttributeComponent(ZrToken("id"), &id);
    registerComponent(element("a"), &a);
    if (extended) registerComponent(element("b"), &b);
  }

  bool extended;
  ZrXmlBasicType<int> id, a, b;
};

// Registers a member that lives on the heap: its distance from the object differs from object to object.
class Boxed : public ZrXmlCompoundType {
 public:
  ZrXmlObject* clone() const override { return new Boxed(); }
  ZrXmlObject* newObject() const override { return new Boxed(); }
  ZrBoolean equality(const ZrXmlObject* other) const override { return dynamic_cast<const Boxed*>(other) != nullptr; }
  ZrToken token() const override { return element("v"); }
  void registerComponents() override {
    registerAttributeComponent(ZrToken("id"), &id);
    registerComponent(element("a"), a.get());
    registerComponent(element("b"), b.get());
  }

  ZrXmlBasicType<int> id;
  std::unique_ptr<ZrXmlBasicType<int>> a{new ZrXmlBasicType<int>}, b{new ZrXmlBasicType<int>};
};

// Each row reads the document into a fresh object of the kind given, in this order, so that objects
// registering alike and unlike the recorded one follow each other.
TEST(ZrXmlSharedRegistrations, EveryObjectReadsItsOwnMembers) {
  struct Row {
    bool extended;
    int b;             // b as read
    bool badTokenReported;
  };
  const std::vector<Row> rows = {{true, 2, false}, {false, 0, true}, {true, 2, false}, {false, 0, true}};
  std::vector<std::unique_ptr<Varying>> objects;
  for (const Row& row : rows) {
    ZrTest::PrintCapture capture;
    objects.emplace_back(new Varying(row.extended));
    ZrTest::readRoot(theDocument, *objects.back());
    EXPECT_EQ(objects.back()->id.value(), 7);
    EXPECT_EQ(objects.back()->a.value(), 1);
    EXPECT_EQ(objects.back()->b.value(), row.b);
    EXPECT_EQ(capture.contains("Bad token: b"), row.badTokenReported) << capture.all();
  }
  // Reading one object never wrote into another.
  objects[0]->a.setValue(10);
  EXPECT_EQ(objects[2]->a.value(), 1);
}

TEST(ZrXmlSharedRegistrations, MembersOnTheHeapAreFoundForEachObject) {
  Boxed first, second;
  ZrTest::readRoot(theDocument, first);
  ZrTest::readRoot("<v id=\"8\"><a>3</a><b>4</b></v>", second);
  EXPECT_EQ(first.a->value(), 1);
  EXPECT_EQ(first.b->value(), 2);
  EXPECT_EQ(second.id.value(), 8);
  EXPECT_EQ(second.a->value(), 3);
  EXPECT_EQ(second.b->value(), 4);
  EXPECT_EQ(ZrTest::written(second), ZrTest::written(second));  // the writer finds them too
  EXPECT_NE(ZrTest::written(second).find("<a>3</a>"), std::string::npos) << ZrTest::written(second);
}

// The maps handed out point at the asking object's members, and what is done to them stays with it.
TEST(ZrXmlSharedRegistrations, MapsAskedForAreTheObjectsOwn) {
  Varying shared, other;
  ZrTest::readRoot(theDocument, shared);
  ZrTest::readRoot(theDocument, other);
  ZrXmlCompoundType::ComponentMap& components = shared.componentMap();
  ASSERT_EQ(components.size(), 2u);
  EXPECT_EQ(components[element("a")], &shared.a);
  EXPECT_EQ(shared.attributeComponentMap()[ZrToken("id")], &shared.id);

  ZrXmlBasicType<int> extra;
  components[element("c")] = &extra;
  ZrTest::readRoot("<v><c>5</c></v>", shared);
  EXPECT_EQ(extra.value(), 5);
  ZrTest::PrintCapture capture;
  ZrTest::readRoot("<v><c>6</c></v>", other);
  EXPECT_TRUE(capture.contains("Bad token: c")) << capture.all();
  EXPECT_EQ(extra.value(), 5);
}

// Registering after xmlInit adds to what the object holds, as it always did.
TEST(ZrXmlSharedRegistrations, LaterRegistrationsAddToTheObject) {
  Varying object;
  ZrTest::readRoot(theDocument, object);
  ZrXmlBasicType<int> late;
  object.registerComponentReadOnly(element("late"), &late);
  ZrTest::readRoot("<v><late>9</late><a>4</a></v>", object);
  EXPECT_EQ(late.value(), 9);
  EXPECT_EQ(object.a.value(), 4);
  EXPECT_TRUE(object.isReadOnlyComponent(element("late")));
  EXPECT_EQ(ZrTest::written(object).find("late"), std::string::npos) << ZrTest::written(object);
}

// Asks for its map while it registers, as a class checking what it registered so far might.
class AskingWhileRegistering : public Varying {
 public:
  void registerComponents() override {
    registerComponent(element("a"), &a);
    registeredBeforeB = componentMap().size();
    registerComponent(element("b"), &b);
  }
  std::size_t registeredBeforeB = 0;
};

TEST(ZrXmlSharedRegistrations, MapsAskedForWhileRegisteringHoldEveryRegistration) {
  for (int round = 0; round < 3; ++round) {
    AskingWhileRegistering object;
    ZrTest::readRoot("<v><a>1</a><b>2</b></v>", object);
    EXPECT_EQ(object.registeredBeforeB, 1u);
    EXPECT_EQ(object.a.value(), 1);
    EXPECT_EQ(object.b.value(), 2);
    EXPECT_EQ(object.componentMap().size(), 2u);
    EXPECT_EQ(object.componentMap()[element("b")], &object.b);
  }
}

// Throws from registerComponents() when told to, after registering one member.
class ThrowingOnce : public Varying {
 public:
  explicit ThrowingOnce(bool failing) : fail(failing) {}
  void registerComponents() override {
    registerComponent(element("a"), &a);
    if (fail) throw std::runtime_error("registration failed");
    registerComponent(element("b"), &b);
  }
  bool fail;
};

// A registration that ends in an exception leaves nothing behind that later registrations would trip on.
TEST(ZrXmlSharedRegistrations, ARegistrationThatThrowsLeavesLaterOnesWhole) {
  ThrowingOnce failing(true);
  EXPECT_THROW(ZrTest::readRoot("<v><a>1</a></v>", failing), std::runtime_error);
  for (int round = 0; round < 2; ++round) {
    ThrowingOnce object(false);
    Varying other;
    ZrTest::readRoot("<v><a>1</a><b>2</b></v>", object);
    ZrTest::readRoot("<v><a>3</a><b>4</b></v>", other);
    EXPECT_EQ(object.a.value(), 1);
    EXPECT_EQ(object.b.value(), 2);
    EXPECT_EQ(other.a.value(), 3);
    EXPECT_EQ(other.b.value(), 4);
  }
}

// Objects holding their registrations either way compare by the tokens registered, as maps did.
TEST(ZrXmlSharedRegistrations, ComparisonDoesNotDependOnWhereRegistrationsAre) {
  Varying shared, withMaps, plain(false);
  ZrTest::readRoot(theDocument, shared);
  ZrTest::readRoot(theDocument, withMaps);
  withMaps.componentMap();
  {
    ZrTest::PrintCapture capture;
    ZrTest::readRoot(theDocument, plain);
  }
  EXPECT_TRUE(shared == withMaps);
  EXPECT_TRUE(withMaps == shared);
  EXPECT_FALSE(shared == plain);
  EXPECT_EQ(ZrTest::written(shared), ZrTest::written(withMaps));
}

// Four children and two attributes: documents may hold them in any order, repeated or mixed with
// unknown ones, whatever order the class registered them in.
class Four : public ZrXmlCompoundType {
 public:
  ZrXmlObject* clone() const override { return new Four(*this); }
  ZrXmlObject* newObject() const override { return new Four(); }
  ZrBoolean equality(const ZrXmlObject* other) const override { return dynamic_cast<const Four*>(other) != nullptr; }
  ZrToken token() const override { return element("f"); }
  void registerComponents() override {
    registerComponent(element("d"), &d);
    registerAttributeComponent(ZrToken("y"), &y);
    registerComponent(element("b"), &b);
    registerComponent(element("c"), &c);
    registerAttributeComponent(ZrToken("x"), &x);
    registerComponent(element("a"), &a);
  }
  std::vector<int> values() const { return {a.value(), b.value(), c.value(), d.value(), x.value(), y.value()}; }

  ZrXmlBasicType<int> a, b, c, d, x, y;
};

TEST(ZrXmlSharedRegistrations, ChildrenInAnyOrderFindTheirMembers) {
  struct Row {
    const char* document;
    std::vector<int> values;  // a, b, c, d, x, y as read
    bool badTokenReported;
  };
  const std::vector<Row> rows = {
      {"<f x='5' y='6'><a>1</a><b>2</b><c>3</c><d>4</d></f>", {1, 2, 3, 4, 5, 6}, false},
      {"<f y='6' x='5'><d>4</d><c>3</c><b>2</b><a>1</a></f>", {1, 2, 3, 4, 5, 6}, false},
      {"<f y='6'><b>2</b><d>4</d><a>1</a><c>3</c></f>", {1, 2, 3, 4, 0, 6}, false},
      {"<f><a>1</a><a>7</a><d>4</d><d>8</d></f>", {7, 0, 0, 8, 0, 0}, false},
      {"<f x='5'><a>1</a><e>9</e><b>2</b><z>9</z></f>", {1, 2, 0, 0, 5, 0}, true},
      {"<f><d>4</d></f>", {0, 0, 0, 4, 0, 0}, false},
  };
  Four reused;
  for (const Row& row : rows) {
    Four fresh;
    ZrTest::PrintCapture capture;
    ZrTest::readRoot(row.document, fresh);
    EXPECT_EQ(fresh.values(), row.values) << row.document;
    EXPECT_EQ(capture.contains("Bad token:"), row.badTokenReported) << row.document << capture.all();
    // One object read again and again starts each look-up where the last document left it.
    reused = Four();
    ZrTest::readRoot(row.document, reused);
    EXPECT_EQ(reused.values(), row.values) << row.document;
  }
}

}  // namespace
