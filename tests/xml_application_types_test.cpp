// Templates over an application's own classes (the conveyor-line example: a vector and a map of its
// motor class, a pair of int and string, float, long and enum-class values), and the reader's fault
// count on faulty documents of that model.
#include <ZrCellNamespace.h>
#include <ZrConveyorLine.h>
#include <ZrTestSupport.h>
#include <ZrXmlBaseVariableCompoundType.h>
#include <ZrXmlObjectVisitor.h>
#include <ZrXmlReader.h>
#include <ZrXmlWriter.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

ZrConveyorLine sampleLine() {
  ZrConveyorLine line;
  line.motors().pushBack(ZrMotor("infeed", 0.75f, 1200, ZrMotor::Direction::forward));
  line.motors().pushBack(ZrMotor("outfeed", 1.5f, 80000000000L, ZrMotor::Direction::reverse));
  line.spares().mapContainer()[ZrXmlBasicType<int>(-2)] = ZrMotor("spare", 0.25f, 0, ZrMotor::Direction::reverse);
  line.label() = ZrConveyorLine::Label(3, std::string("Packing"));
  return line;
}

std::string writtenLine(const ZrConveyorLine& line) {
  std::ostringstream out;
  ZrXmlWriter writer("line.xml", out);
  writer.header(ZrConveyorLine::classToken(), ZrCell::uri());
  EXPECT_TRUE(line.write(writer));
  writer.writeEndTag();
  return out.str();
}

// Reads a whole document into line and returns the reader's fault count; the last fault's text goes
// to lastFault.
ZrU32 readLine(const std::string& text, ZrConveyorLine& line, std::string* lastFault = nullptr) {
  std::istringstream in(text);
  ZrXmlReader reader("line.xml", in);
  reader.readXml();
  line.read(reader);
  while (reader.readXml() != 0 && reader.mode() != 5) {
  }
  if (lastFault) *lastFault = reader.lastFault();
  return reader.faultCount();
}

TEST(ApplicationTypes, ConveyorLineRoundTripsThroughItsOwnVectorMapAndPair) {
  const ZrConveyorLine line = sampleLine();
  const std::string text = writtenLine(line);
  ZrConveyorLine back;
  ZrTest::PrintCapture capture;
  EXPECT_EQ(readLine(text, back), 0u) << capture.all();
  ASSERT_EQ(back.motors().size(), 2u) << text;
  EXPECT_EQ(back.motors()[1].hours(), 80000000000L);  // a long beyond int
  EXPECT_FLOAT_EQ(back.motors()[0].power(), 0.75f);
  EXPECT_EQ(back.motors()[1].direction(), ZrMotor::Direction::reverse);
  EXPECT_EQ(back.label().second().value(), "Packing");
  EXPECT_TRUE(back.equality(&line)) << text;
  EXPECT_NE(text.find("direction=\"reverse\""), std::string::npos) << text;
}

// An application's class moves without a word of its own, so arrays of it grow by moving; the object
// moved to registers its own members, not those of the object it came from.
static_assert(std::is_nothrow_move_constructible<ZrMotor>::value, "own classes move");
static_assert(std::is_nothrow_move_constructible<ZrConveyorLine>::value, "containers of own classes move");
// Models hold millions of compounds: one adds to its flags its three map pointers and the shared table's.
static_assert(sizeof(ZrXmlCompoundType) <= sizeof(ZrXmlObject) + 4 * sizeof(void*), "a compound takes no padding word");

TEST(ApplicationTypes, MovedObjectsWriteTheirOwnMembers) {
  const ZrConveyorLine line = sampleLine();
  const std::string expected = writtenLine(line);
  ZrConveyorLine moved = [&] {
    ZrConveyorLine source = sampleLine();
    writtenLine(source);  // registered before it is moved
    return ZrConveyorLine(std::move(source));
  }();  // the source is gone before the object moved to is written
  EXPECT_EQ(writtenLine(moved), expected);

  ZrConveyorLine grown;
  for (int i = 0; i < 100; ++i) {  // growing the array moves the motors already written
    grown.motors().pushBack(ZrMotor("m" + std::to_string(i), 1.0f, i, ZrMotor::Direction::forward));
    if (i % 10 == 0) writtenLine(grown);
  }
  ZrConveyorLine back;
  ZrTest::PrintCapture capture;
  EXPECT_EQ(readLine(writtenLine(grown), back), 0u) << capture.all();
  ASSERT_EQ(back.motors().size(), 100u);
  EXPECT_EQ(back.motors()[99].name(), "m99");
  EXPECT_TRUE(back.equality(&grown));
}

// Compounds inherit an == that compares registrations only: containers must compare their members.
TEST(ApplicationTypes, ContainersCompareOwnClassesByTheirMembers) {
  const ZrConveyorLine line = sampleLine();
  ZrConveyorLine changed = sampleLine();
  changed.motors()[0] = ZrMotor("infeed", 0.75f, 1201, ZrMotor::Direction::forward);
  EXPECT_FALSE(changed.motors() == line.motors());
  changed = sampleLine();
  changed.spares().mapContainer().begin()->second = ZrMotor("spare", 0.5f, 0, ZrMotor::Direction::reverse);
  EXPECT_FALSE(changed.spares() == line.spares());
  EXPECT_TRUE(sampleLine().equality(&line));
}

// Instantiations the library does not hold have no visit overload of their own: containers arrive at
// visitContainer with their walk, single values at the overload for all single values.
TEST(ApplicationTypes, VisitorTakesOtherInstantiationsThroughTheGenericEntries) {
  struct Counter : ZrXmlObjectVisitor {
    using ZrXmlObjectVisitor::visit;
    int containers = 0, elements = 0, values = 0;
    void visitContainer(const ZrXmlObject*, const ElementWalk& walk) override {
      ++containers;
      walk([this](const ZrToken&, const ZrXmlObject&) { ++elements; });
    }
    void visit(const ZrBaseXmlBasicType*) override { ++values; }
  } counter;
  const ZrConveyorLine line = sampleLine();
  line.motors().accept(&counter);
  line.spares().accept(&counter);
  line.label().accept(&counter);
  ZrXmlBasicType<float>(1.0f).accept(&counter);
  EXPECT_EQ(counter.containers, 3);
  EXPECT_EQ(counter.elements, 2 + 2 + 2);  // two motors, one key and value, first and second
  EXPECT_EQ(counter.values, 1);
}

struct FaultRow {
  const char* name;
  const char* body;  // inside the conveyorLine root
  ZrU32 faults;
  const char* lastFault;  // a fragment of the last counted report
  size_t motorsKept;
};

const char* const theLineStart = "<conveyorLine xmlns=\"http://www.zrtoolkit.org/namespace/cell\">\n";

TEST(ApplicationTypes, FaultCountTellsWhetherAReadWentWell) {
  const FaultRow rows[] = {
      {"clean", "<motors size=\"1\"><element name=\"a\"><hours>3</hours></element></motors>", 0, "", 1},
      {"size disagrees with the elements",
       "<motors size=\"3\">\n<element name=\"a\"/>\n<element name=\"b\"/>\n</motors>", 1,
       "array size not equal to attribute value -- 3, actual -- 2\nFilename: line.xml, Line count: 5", 2},
      // The map stops at its fault, leaving its parent in the middle of the entry.
      {"map entry without its key", "<motors size=\"1\"><element/></motors>\n<spares>\n<element><value/></element>\n</spares>",
       1, "Key map format not correct.\n\tFile: line.xml\n\tLine: 4", 1},
      {"unknown child", "<belts/>\n<motors size=\"1\"><element/></motors>", 1, "Bad token", 1},
      {"well-formedness fault", "<motors size=\"1\"><element name=a/></motors>", 1, "Missing quotes", 1},
      {"two faults", "<belts/><motors size=\"2\"><element/></motors>", 2, "array size not equal", 1},
  };
  for (const FaultRow& row : rows) {
    SCOPED_TRACE(row.name);
    ZrTest::PrintCapture capture;
    ZrConveyorLine line;
    std::string lastFault;
    const std::string text = std::string(theLineStart) + row.body + "\n</conveyorLine>\n";
    EXPECT_EQ(readLine(text, line, &lastFault), row.faults) << capture.all();
    EXPECT_NE(lastFault.find(row.lastFault), std::string::npos) << lastFault;
    EXPECT_EQ(line.motors().size(), row.motorsKept);  // reading goes on past each fault
  }
}

// Of two readers alive at once, the one reading counts; open() starts a fresh count.
TEST(ApplicationTypes, FaultsCountOnTheReaderThatIsReading) {
  ZrTest::PrintCapture capture;
  std::istringstream faulty("<a><b x=1/></a>"), clean("<a><b/></a>");
  ZrXmlReader faultyReader("faulty.xml", faulty);
  ZrXmlReader cleanReader("clean.xml", clean);
  while (cleanReader.readXml() != 0) {
  }
  while (faultyReader.readXml() != 0 && faultyReader.mode() != 5) {
  }
  EXPECT_EQ(cleanReader.faultCount(), 0u);
  EXPECT_EQ(faultyReader.faultCount(), 1u);
  std::istringstream again("<a/>");
  faultyReader.open("again.xml", again);
  EXPECT_EQ(faultyReader.faultCount(), 0u);
  EXPECT_TRUE(faultyReader.lastFault().empty());
}

}  // namespace
