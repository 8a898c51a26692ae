#include <ZrTestSupport.h>
#include <ZrXmlFactory.h>
#include <ZrXmlReader.h>
#include <gtest/gtest.h>

#include <sstream>

namespace {

// The factory never looks into what a creator returns, so distinct addresses stand in for objects.
char theObjectA, theObjectB;
int theCallsOfA = 0;
ZrXmlObject* makeA() {
  ++theCallsOfA;
  return reinterpret_cast<ZrXmlObject*>(&theObjectA);
}
ZrXmlObject* makeB() { return reinterpret_cast<ZrXmlObject*>(&theObjectB); }
ZrXmlObject* objectA() { return reinterpret_cast<ZrXmlObject*>(&theObjectA); }
ZrXmlObject* objectB() { return reinterpret_cast<ZrXmlObject*>(&theObjectB); }

// Counts its deletions, to prove that a factory is deleted exactly once and only when it should be.
struct CountingFactory : ZrXmlFactory {
  explicit CountingFactory(int& deletions) : m_theDeletions(deletions) {}
  ~CountingFactory() override { ++m_theDeletions; }
  int& m_theDeletions;
};

TEST(ZrXmlFactory, CreatesByNameReplacesOnReRegistrationAndIsSilentForUnknownNames) {
  ZrTest::PrintCapture capture;
  ZrXmlFactory factory;
  factory.registerComponentCreator("zeta", makeA);
  factory.registerComponentCreator("alpha", makeA);
  theCallsOfA = 0;
  EXPECT_EQ(factory.newObjectFromToken("alpha"), objectA());
  EXPECT_EQ(theCallsOfA, 1);
  factory.registerComponentCreator("urn:a#zeta", makeB);  // same name in another namespace: same entry
  ASSERT_EQ(factory.creatorMap().size(), 2u);
  EXPECT_EQ(factory.creatorMap().begin()->first.tokenText(), "alpha");
  EXPECT_EQ(factory.newObjectFromToken("zeta"), objectB());
  EXPECT_EQ(factory.newObjectFromToken("link"), nullptr);
  EXPECT_EQ(capture.count(), 0u);
}

TEST(ZrXmlFactory, EqualityComparesTokensAndCreatorsInOrder) {
  auto make = [](std::initializer_list<std::pair<const char*, ZrBaseXmlFactory::Creator>> entries) {
    ZrXmlFactory factory;
    for (const auto& entry : entries) factory.registerComponentCreator(entry.first, entry.second);
    return factory;
  };
  const ZrXmlFactory reference = make({{"a", makeA}, {"b", makeB}});
  const struct {
    ZrXmlFactory other;
    bool equal;
  } rows[] = {
      {make({{"b", makeB}, {"a", makeA}}), true},  // registration order does not matter
      {make({{"a", makeA}}), false},
      {make({{"a", makeA}, {"b", makeA}}), false},
      {make({{"a", makeA}, {"c", makeB}}), false},
      {make({{"a", makeA}, {"urn:x#b", makeB}}), false},  // equality of the keys includes the namespace
  };
  for (const auto& row : rows) EXPECT_EQ(reference == row.other, row.equal);
  EXPECT_TRUE(static_cast<const ZrBaseXmlFactory&>(reference) == static_cast<const ZrBaseXmlFactory&>(rows[1].other));
}

TEST(ZrXmlReaderFactory, RegisterReportsWhetherTheCallCreatedTheFactory) {
  ZrXmlReader reader;
  EXPECT_EQ(reader.factoryPointer(), nullptr);
  EXPECT_TRUE(reader.registerComponentCreator("a", makeA));
  ZrBaseXmlFactory* created = reader.factoryPointer();
  ASSERT_NE(dynamic_cast<ZrXmlFactory*>(created), nullptr);
  EXPECT_FALSE(reader.registerComponentCreator("b", makeB));
  EXPECT_FALSE(reader.registerComponentCreator("a", makeB));
  EXPECT_EQ(reader.factoryPointer(), created);
  EXPECT_EQ(created->newObjectFromToken("a"), objectB());

  std::unique_ptr<ZrBaseXmlFactory> fresh(reader.newFactory());
  EXPECT_NE(fresh.get(), created);
  EXPECT_EQ(fresh->newObjectFromToken("a"), nullptr);

  struct OwnFactoryReader : ZrXmlReader {  // a derived reader supplies its own first factory
    ZrBaseXmlFactory* newFactory() const override {
      ZrXmlFactory* factory = new ZrXmlFactory;
      factory->registerComponentCreator("builtin", makeB);
      return factory;
    }
  } derived;
  EXPECT_TRUE(derived.registerComponentCreator("a", makeA));
  EXPECT_EQ(derived.factoryPointer()->newObjectFromToken("builtin"), objectB());
}

TEST(ZrXmlReaderFactory, SettingTheHeldFactoryAgainKeepsIt) {
  int deletions = 0;
  {
    ZrXmlReader reader;
    CountingFactory* factory = new CountingFactory(deletions);
    reader.setFactoryPointer(factory);
    reader.setFactoryPointer(factory);
    EXPECT_EQ(deletions, 0);
    EXPECT_EQ(reader.factoryPointer(), factory);
    reader.setFactoryPointer(new CountingFactory(deletions));
    EXPECT_EQ(deletions, 1);
    reader.setFactoryPointer(nullptr);
    EXPECT_EQ(deletions, 2);
    reader.setFactoryPointer(new CountingFactory(deletions));
  }
  EXPECT_EQ(deletions, 3);
}

TEST(ZrXmlReaderFactory, CopiesShareTheFactoryAndTheLastOneDeletesIt) {
  int deletions = 0;
  ZrXmlReader* original = new ZrXmlReader;
  original->setFactoryPointer(new CountingFactory(deletions));
  ZrXmlReader copy(*original);
  EXPECT_EQ(copy.factoryPointer(), original->factoryPointer());
  EXPECT_FALSE(copy.registerComponentCreator("a", makeA));  // the copy has a factory already
  EXPECT_EQ(original->factoryPointer()->newObjectFromToken("a"), objectA());
  delete original;
  EXPECT_EQ(deletions, 0);
  EXPECT_EQ(copy.factoryPointer()->newObjectFromToken("a"), objectA());

  ZrXmlReader target;
  target.setFactoryPointer(new CountingFactory(deletions));
  target = copy;  // the target's own factory had no other holder
  EXPECT_EQ(deletions, 1);
  target = target;
  EXPECT_EQ(target.factoryPointer(), copy.factoryPointer());
  copy.setFactoryPointer(nullptr);  // the target still holds the shared one
  EXPECT_EQ(deletions, 1);
  target.setFactoryPointer(nullptr);
  EXPECT_EQ(deletions, 2);
}

TEST(ZrXmlReader, AReaderWithoutADocumentAnswersSafely) {
  ZrXmlReader reader;
  EXPECT_EQ(reader.readXml(), 0);
  EXPECT_TRUE(reader.attributeValue().empty());
  EXPECT_FALSE(reader.nextMatchingEndTag());
}

}  // namespace
