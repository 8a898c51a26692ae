// Container faults and operations: size mismatches, map and pair format errors, erase bounds, and
// piecewise stream writing.
#include <ZrTestDocument.h>
#include <ZrTestSupport.h>
#include <ZrXmlCompoundType.h>
#include <ZrXmlMapType.h>
#include <ZrXmlPairType.h>
#include <ZrXmlReader.h>
#include <ZrXmlSetType.h>
#include <ZrXmlVectorType.h>
#include <ZrXmlVectorVector.h>
#include <ZrXmlWriter.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <sstream>
#include <string>

namespace {

#define B(T) ZrXmlBasicType<T>

using ZrTest::readRoot;
using ZrTest::withoutSignature;

std::vector<unsigned> values(const ZrXmlVectorType<B(unsigned int)>& vector) {
  std::vector<unsigned> result;
  for (const auto& element : vector.vectorContainer()) result.push_back(element.value());
  return result;
}

TEST(ZrXmlContainerSize, MismatchIsAWarningAndKeepsWhatWasRead) {
  struct Case {
    const char* text;
    std::vector<unsigned> read;
    const char* warning;  // empty when none
  } cases[] = {
      {"<v size='3'><group>1 2\n 3</group></v>", {1, 2, 3}, ""},
      {"<v/>", {}, ""},
      {"<v size='3'><group>1 2</group></v>", {1, 2},
       "ZrXmlVectorType Error: array size not equal to attribute value -- 3, actual -- 2\n"
       "Filename: doc.xml, Line count: 1\n"},
      // Without "size" the expected count is 0; "element" children are read whatever their names.
      {"<v>\n<element>4</element>\n<e>5</e>\n</v>", {4, 5},
       "ZrXmlVectorType Error: array size not equal to attribute value -- 0, actual -- 2\n"
       "Filename: doc.xml, Line count: 4\n"},
      {"<v size='1'><group>1</group><group>2 3</group></v>", {1, 2, 3},
       "ZrXmlVectorType Error: array size not equal to attribute value -- 1, actual -- 3\n"
       "Filename: doc.xml, Line count: 1\n"},
      // Other attributes are taken and passed over; of two "size" attributes the first one counts.
      {"<v a='7' size='2' z='9'><group>1 2</group></v>", {1, 2}, ""},
      {"<v p:size='2' size='5'><group>1 2</group></v>", {1, 2}, ""},
      {"<v size='x' p:size='2'><group>1 2</group></v>", {1, 2},
       "ZrXmlVectorType Error: array size not equal to attribute value -- 0, actual -- 2\n"
       "Filename: doc.xml, Line count: 1\n"},
  };
  for (const Case& c : cases) {
    ZrTest::PrintCapture capture;
    ZrXmlVectorType<B(unsigned int)> vector({9u});
    EXPECT_TRUE(readRoot(c.text, vector)) << c.text;
    EXPECT_EQ(values(vector), c.read) << c.text;
    ASSERT_EQ(capture.count(), *c.warning ? 1u : 0u) << c.text << capture.all();
    if (*c.warning) {
      EXPECT_EQ(capture.messages()[0].first, Zr::PrintSizeWarning);
      EXPECT_EQ(withoutSignature(capture.texts()[0]), c.warning);
    }
  }
}

// A group's words are read in one pass; every element must still end up as its own read() leaves it:
// the value of its text form (strtod's answer where the fast conversion declines), both flags set.
// An element of about a kilobyte, so that the room reserved ahead of reading ends after some
// thousands of elements.
class WideElement : public ZrXmlCompoundType {
 public:
  ZrXmlObject* clone() const override { return new WideElement(*this); }
  ZrXmlObject* newObject() const override { return new WideElement(); }
  ZrBoolean equality(const ZrXmlObject* other) const override { return dynamic_cast<const WideElement*>(other); }
  ZrToken token() const override { return ZrToken("wide"); }

 protected:
  void registerComponents() override {}

 private:
  ZrXmlBasicType<std::string> m_theParts[20];
};

// The size attribute reserves room ahead of reading only up to a bound, whatever it says; past that
// room the array grows to the announced size, and never to more than twice the elements read.
TEST(ZrXmlVectorRead, AnnouncedSizeBoundsTheRoomAndEndsTheGrowth) {
  const std::size_t reservable = (16u << 20) / sizeof(WideElement);
  const std::size_t beyond = reservable + reservable / 2;
  struct Row {
    const char* name;
    std::string size;
    std::size_t elements;
    std::size_t leastRoom, mostRoom;
  } rows[] = {
      {"announced, within the bound", "40", 40, 40, 40},
      {"announced past the bound", std::to_string(beyond), beyond, beyond, beyond},
      {"hostile size, few elements", "4000000000", 3, 3, reservable},
      {"hostile size, many elements", "4000000000", beyond, beyond, 2 * reservable},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    std::string text = "<v size='" + row.size + "'>";
    for (std::size_t i = 0; i < row.elements; ++i) text += "<element/>";
    text += "</v>";
    ZrTest::PrintCapture capture;  // the hostile sizes are reported as mismatches
    ZrXmlVectorType<WideElement> vector;
    readRoot(text, vector);
    EXPECT_EQ(vector.size(), row.elements);
    EXPECT_GE(vector.vectorContainer().capacity(), row.leastRoom);
    EXPECT_LE(vector.vectorContainer().capacity(), row.mostRoom);
  }
}

TEST(ZrXmlVectorRead, GroupWordsHoldWhatReadGives) {
  const std::uint8_t readFlags = ZrXmlObject::m_theXmlInitializedBit | ZrXmlObject::m_theSpecifiedBit;
  ZrXmlVectorType<B(double)> reals;
  ASSERT_TRUE(readRoot("<v size='4'><group>\n 1.5 -2e3\t0x10<!-- c --> 7 </group></v>", reals));
  const double expected[] = {1.5, -2000.0, 16.0, 7.0};
  ASSERT_EQ(reals.size(), 4u);
  for (ZrU32 i = 0; i < reals.size(); ++i) {
    EXPECT_EQ(reals[i].value(), expected[i]) << i;
    EXPECT_EQ(reals[i].flags(), readFlags) << i;
  }
  ZrXmlVectorType<B(std::string)> words;
  ASSERT_TRUE(readRoot("<v size='2'><group>a\n  bc</group></v>", words));
  ASSERT_EQ(words.size(), 2u);
  EXPECT_EQ(words[0].value(), "a");
  EXPECT_EQ(words[1].value(), "bc");
  EXPECT_EQ(words[1].flags(), readFlags);
}

TEST(ZrXmlContainerSize, EmptyGroupIsNotInDataMode) {
  ZrTest::PrintCapture capture;
  ZrXmlVectorType<B(double)> vector;
  EXPECT_TRUE(readRoot("<v size='1'><group></group></v>", vector));
  EXPECT_EQ(vector.size(), 0u);
  ASSERT_EQ(capture.count(), 2u) << capture.all();
  EXPECT_EQ(capture.texts()[0], "ZrXmlVectorType Error: XML parser should be in data mode\n");
  EXPECT_EQ(capture.messages()[1].first, Zr::PrintSizeWarning);
}

// Duplicates are dropped but counted, so the count compared with "size" is the document's.
TEST(ZrXmlContainerSize, SetCountsDuplicates) {
  struct Case {
    const char* text;
    std::set<unsigned> held;
    const char* warning;
  } cases[] = {
      {"<s size='3'><group>3 1 3</group></s>", {1, 3}, ""},
      {"<s size='2'><group>3 1 3</group></s>", {1, 3},
       "ZrXmlSetType Error: set size not equal to attribute value -- 2, actual -- 3\nFilename: doc.xml, Line count: 1\n"},
      {"<s size='2'><element>5</element><element>5</element></s>", {5}, ""},
  };
  for (const Case& c : cases) {
    ZrTest::PrintCapture capture;
    ZrXmlSetType<B(unsigned int)> set;
    EXPECT_TRUE(readRoot(c.text, set)) << c.text;
    std::set<unsigned> held;
    for (const auto& element : set.setContainer()) held.insert(element.value());
    EXPECT_EQ(held, c.held) << c.text;
    EXPECT_EQ(capture.count() ? withoutSignature(capture.texts()[0]) : "", c.warning) << c.text;
  }
}

TEST(ZrXmlMapRead, FormatFaultsStopTheReadAndKeepEarlierEntries) {
  const std::string fault = "ZrXmlMapType Error: file not valid.\n\tKey map format not correct.\n\tFile: doc.xml\n\tLine: 1\n";
  const char* entryA = "<element><key>a</key><value>1</value></element>";
  struct Case {
    std::string text;
    bool result;
    std::map<std::string, int> held;
    std::string message;
  } cases[] = {
      {std::string("<m>") + entryA + "<element><key>b</key><value/></element></m>", true, {{"a", 1}, {"b", 0}}, ""},
      {std::string("<m>") + entryA + "<element><key>a</key><value>2</value></element></m>", true, {{"a", 2}}, ""},
      {std::string("<m>") + entryA + "<entry><key>b</key><value>2</value></entry></m>", false, {{"a", 1}},
       fault + "\tExpected element but received entry.\n"},
      {"<m><element>text</element></m>", false, {}, fault},
      {"<m><element><key>a</key></element></m>", false, {{"a", 0}}, fault},
      {"<m><element><key>a</key><value>3</value><extra/></element></m>", false, {{"a", 3}}, fault},
      {"<m/>", true, {}, ""},
  };
  for (const Case& c : cases) {
    ZrTest::PrintCapture capture;
    ZrXmlMapType<B(std::string), B(int)> map({{std::string("old"), 9}});
    EXPECT_EQ(readRoot(c.text, map), c.result) << c.text;
    std::map<std::string, int> held;
    for (const auto& entry : map.mapContainer()) held[entry.first.value()] = entry.second.value();
    EXPECT_EQ(held, c.held) << c.text;
    EXPECT_EQ(capture.count() ? withoutSignature(capture.texts()[0]) : "", c.message) << c.text;
  }
}

TEST(ZrXmlPairRead, ChildrenInAnyOrderAndUnknownOnesSkipped) {
  struct Case {
    const char* text;
    bool result;
    double first, second;
    size_t messages;
  } cases[] = {
      {"<p><second>2</second><first>1</first></p>", true, 1, 2, 0},
      {"<p><second>2</second></p>", true, -1, 2, 0},
      {"<p><first>1</first><first>3</first></p>", true, 3, -2, 0},
      {"<p><third><deep>5</deep></third><second>2</second></p>", false, -1, 2, 2},
      {"<p/>", true, -1, -2, 0},
  };
  for (const Case& c : cases) {
    ZrTest::PrintCapture capture;
    ZrXmlPairType<B(double), B(double)> pair(-1.0, -2.0);
    EXPECT_EQ(readRoot(c.text, pair), c.result) << c.text;
    EXPECT_EQ(pair.first().value(), c.first) << c.text;
    EXPECT_EQ(pair.second().value(), c.second) << c.text;
    ASSERT_EQ(capture.count(), c.messages) << c.text << capture.all();
    if (c.messages) {
      EXPECT_EQ(withoutSignature(capture.texts()[0]),
                "ZrXmlPairType Error: file not valid.\n\tFormat not correct.\n\tFile: doc.xml\n\tLine: 1\n");
      EXPECT_EQ(withoutSignature(capture.texts()[1]), "\tExpected first or second but received third.\n");
    }
  }
}

TEST(ZrXmlVectorErase, BoundsAndMessages) {
  struct Case {
    ZrU32 first, last;  // last == ~0u: erase(first) alone
    bool result;
    std::vector<unsigned> left;
    const char* message;
  } cases[] = {
      {5, ~0u, false, {0, 1, 2, 3, 4}, "ZrXmlVectorType<ElementType>::erase(): index (5) exceeds vector size (5).\n"},
      {4, ~0u, true, {0, 1, 2, 3}, ""},
      {2, 2, true, {0, 1, 2, 3, 4}, ""},
      {1, 3, true, {0, 3, 4}, ""},
      {0, 5, true, {}, ""},
      {3, 2, false, {0, 1, 2, 3, 4}, "first (3) is bigger than last (2).\n"},
      {1, 6, false, {0, 1, 2, 3, 4}, "index (6) exceeds vector size ( 5).\n"},
  };
  for (const Case& c : cases) {
    ZrTest::PrintCapture capture;
    ZrXmlVectorType<B(unsigned int)> vector({0u, 1u, 2u, 3u, 4u});
    EXPECT_EQ(c.last == ~0u ? vector.erase(c.first) : vector.erase(c.first, c.last), c.result) << c.first;
    EXPECT_EQ(values(vector), c.left) << c.first << " " << c.last;
    EXPECT_EQ(capture.count() ? withoutSignature(capture.texts()[0]) : "", c.message) << c.first << " " << c.last;
    if (capture.count()) {
      EXPECT_EQ(capture.messages()[0].first, Zr::PrintError);
    }
  }
}

TEST(ZrXmlVectorOperations, RotateGrowAppend) {
  ZrXmlVectorType<B(unsigned int)> vector({0u, 1u, 2u, 3u});
  vector.leftRotate(5);
  EXPECT_EQ(values(vector), std::vector<unsigned>({1, 2, 3, 0}));
  vector.resizeToAtLeast(2);
  EXPECT_EQ(vector.size(), 4u);
  vector.resizeToAtLeast(6);
  vector.append(ZrXmlVectorType<B(unsigned int)>({7u}));
  EXPECT_EQ(values(vector), std::vector<unsigned>({1, 2, 3, 0, 0, 0, 7}));
}

// A document written with write() and one written piecewise.
template <class E>
void expectSameBytes(const ZrXmlVectorType<E>& vector) {
  const ZrToken root("urn:test", "array");
  std::ostringstream whole;
  ZrXmlWriter writer("array.xml", whole);
  writer.header(root, root.namespaceText());
  vector.write(writer);
  writer.writeEndTag();

  std::ostringstream pieces;
  ZrXmlWriter* pieceWriter = nullptr;
  EXPECT_TRUE(vector.writeHeaderToStream(pieces, pieceWriter, "array.xml", root));
  EXPECT_TRUE(vector.writeBodyToStream(pieceWriter));
  EXPECT_TRUE(vector.writeFooterToStream(pieceWriter));
  EXPECT_EQ(pieceWriter, nullptr);
  EXPECT_EQ(pieces.str(), whole.str());
}

TEST(ZrXmlVectorStream, PiecewiseWritingGivesTheSameBytes) {
  expectSameBytes(ZrXmlVectorType<B(double)>());
  expectSameBytes(ZrXmlVectorType<B(double)>({1.5, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
  expectSameBytes(ZrXmlVectorType<ZrXmlVector>({ZrXmlVector(1, 2, 3), ZrXmlVector(4, 5, 6)}));
}

// Elements appended as they are produced join the values of the body, in the same group.
TEST(ZrXmlVectorStream, AppendedElementsJoinTheBody) {
  std::ostringstream out;
  ZrXmlWriter* writer = nullptr;
  const ZrXmlVectorType<B(int)> vector({1, 2});
  vector.writeHeaderToStream(out, writer, "a.xml", ZrToken("urn:test", "a"));
  vector.writeBodyToStream(writer);
  vector.appendElementToStream(writer, 3);
  vector.writeFooterToStream(writer);
  EXPECT_EQ(out.str(), "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<a xmlns:xsi=\"http://www.w3.org/2001/"
                       "XMLSchema-instance\"\n  xsi:schemaLocation=\"urn:test\n  a.urn:test.xsd\" size=\"2\">\n"
                       " <group>1 2 3</group>\n</a>\n");
  EXPECT_FALSE(vector.writeBodyToStream(nullptr));
}

// Faulty documents are reported, never crash, and leave every container readable by its parent.
TEST(ZrXmlContainerFaults, MalformedDocumentsEndTheRead) {
  const char* texts[] = {
      "<c size='7'><group>1 2",          "<c><element><key>",          "<c size='x'><group/><group>3</group></c>",
      "<c><group><x/></group></c>",      "<c><first/><second>",        "<c size='-5'><element/></c>",
      "<c><element><key/><value/></element></c>", "<c><element x='1' y='2' z='3'>", "<c><<>></c>",
  };
  for (const char* text : texts) {
    ZrTest::PrintCapture capture;
    ZrXmlVectorType<ZrXmlVectorType<B(double)>> nested;
    ZrXmlVectorType<B(std::string)> words;
    ZrXmlSetType<B(unsigned int)> set;
    ZrXmlMapType<B(std::string), ZrXmlVectorType<B(double)>> map;
    ZrXmlPairType<ZrXmlVector, ZrXmlVector> pair;
    ZrXmlVectorVector path;
    readRoot(text, nested);
    readRoot(text, words);
    readRoot(text, set);
    readRoot(text, map);
    readRoot(text, pair);
    readRoot(text, path);
  }
}

// Reals in arrays and vectors take a short way around the writer's stream; the text must be the
// stream's own, at its default state, at a raised precision, and (through the stream) in other states.
TEST(ZrXmlRealText, RealsAreWrittenAsTheStreamWritesThem) {
  const std::vector<double> reals = {0.0, -0.0, 0.1, -1.5, 1e-5, 1.23456789e21, 123456.5, 1234567.0, 5e-324,
                                     1.0 / 3.0, std::numeric_limits<double>::infinity(), std::nan("")};
  const std::function<void(std::ostringstream&)> states[] = {
      [](std::ostringstream&) {},
      [](std::ostringstream& stream) { stream.precision(17); },
      [](std::ostringstream& stream) { stream.setf(std::ios_base::fixed, std::ios_base::floatfield); },
      [](std::ostringstream& stream) { stream.setf(std::ios_base::showpos); },
  };
  const ZrToken root("urn:test", "r"), point("urn:test", "p"), array("urn:test", "a");
  for (const auto& state : states) {
    std::ostringstream viaObjects, viaStream;
    ZrXmlWriter objects("a.xml", viaObjects), stream("a.xml", viaStream);
    for (ZrXmlWriter* writer : {&objects, &stream}) {
      state(writer->valueStream());
      writer->writeStartTag(root);
    }
    ZrXmlVectorType<ZrXmlBasicType<double>> values;
    for (double real : reals) {
      values.pushBack(real);
      objects.writeStartTag(point);
      ZrXmlVector(real, -real, real * 2).write(objects);
      objects.writeEndTag();
      stream.writeStartTag(point);
      const std::pair<ZrToken, double> components[] = {
          {ZrXml::ZrVectorXToken, real}, {ZrXml::ZrVectorYToken, -real}, {ZrXml::ZrVectorZToken, real * 2}};
      for (const auto& component : components) {
        stream.setAttributeName(component.first);
        stream << component.second;
      }
      stream.writeEndTag();
    }
    objects.writeStartTag(array);
    values.write(objects);
    stream.writeStartTag(array);
    stream.setAttributeName(ZrXml::ZrCountToken);
    stream << static_cast<unsigned int>(reals.size());
    stream.writeStartTagUsingParentNamespace(ZrXml::ZrGroupToken);
    for (double real : reals) stream << real;
    stream.writeEndTag();
    for (ZrXmlWriter* writer : {&objects, &stream, &objects, &stream}) writer->writeEndTag();
    EXPECT_EQ(viaObjects.str(), viaStream.str());
  }
}

#undef B

}  // namespace
