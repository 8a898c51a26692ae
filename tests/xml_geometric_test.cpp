// Vectors, orientations and arrays of vectors: attribute reading rules, the fast array path, the text
// dump and the raw binary forms.
#include <ZrTestDocument.h>
#include <ZrTestSupport.h>
#include <ZrXmlOrientation.h>
#include <ZrXmlReader.h>
#include <ZrXmlVector.h>
#include <ZrXmlVectorVector.h>
#include <ZrXmlWriter.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace {

using ZrTest::written;

// Reads the root element of text into object; afterwards the reader must be at the document's end.
template <class Object>
ZrBoolean readRoot(const std::string& text, Object& object) {
  int next = -1;
  const ZrBoolean result = ZrTest::readRoot(text, object, &next);
  EXPECT_EQ(next, 0) << "read did not stop at its own end tag: " << text;
  return result;
}

TEST(ZrXmlVectorRead, AttributeRules) {
  const std::string endTag = "ZrXmlVector Error: file not well formed.\n\tEnd tag needed.\n\tFile: doc.xml\n\tLine: 1";
  struct Case {
    const char* text;
    ZrVector before;
    bool result;
    ZrVector after;
    std::string message;
  } cases[] = {
      {"<v z='3' y='2' x='1'/>", ZrVector(), true, ZrVector(1, 2, 3), ""},
      {"<v x='0' y='0.0' z='0e5'></v>", ZrVector(9, 9, 9), true, ZrVector(), ""},
      // Missing z: counted, reported, the others still taken, z kept.
      {"<v x='1' y='2'/>", ZrVector(9, 9, 9), false, ZrVector(1, 2, 9),
       "ZrXmlVector Warning: 3 attributes needed, but 2 were found.\n\tLine: 1"},
      {"<v x='abc' y='2' z='3'/>", ZrVector(9, 9, 9), false, ZrVector(0, 2, 3), ""},
      {"<v x='1' y='-0' z='3'/>", ZrVector(9, 9, 9), false, ZrVector(1, 0, 3), ""},
      // The test looks at the component of the attribute's position: "b" comes first and x is still 0.
      {"<v b='1' x='5' y='2'/>", ZrVector(), false, ZrVector(5, 2, 0), ""},
      {"<v x='1' y='2' z='3'><w/></v>", ZrVector(), false, ZrVector(1, 2, 3), endTag},
  };
  for (const Case& c : cases) {
    ZrTest::PrintCapture capture;
    ZrXmlVector vector(c.before);
    EXPECT_EQ(ZrTest::readRoot(c.text, vector), c.result) << c.text;
    EXPECT_EQ(vector.value(), c.after) << c.text;
    EXPECT_EQ(capture.count() == 0 ? "" : capture.texts().front(), c.message) << c.text;
  }
}

TEST(ZrXmlOrientationRead, AlwaysTrueAndNormalised) {
  const std::string endTag =
      "ZrXmlOrientation Error: file not well formed.\n\tEnd tag needed.\n\tFile: doc.xml\n\tLine: 1";
  struct Case {
    const char* text;
    ZrOrientation after;
    std::string message;
  } cases[] = {
      {"<o q0='2' q1='0' q2='0' q3='0'/>", ZrOrientation(1, 0, 0, 0), ""},
      {"<o q3='0' q2='0.8' q1='0.6' q0='0'></o>", ZrOrientation(0, 0.6, 0.8, 0), ""},
      {"<o q1='3' q2='4'/>", ZrOrientation(0, 0.6, 0.8, 0), "ZrXmlVector Warning: 4 attributes needed, but 2 were found"},
      // No components: all four zero go to the normalisation, which makes the identity of them.
      {"<o/>", ZrOrientation(), "ZrXmlVector Warning: 4 attributes needed, but 0 were found"},
      {"<o q0='1' q1='0' q2='0' q3='0'><w/></o>", ZrOrientation(), endTag},
  };
  for (const Case& c : cases) {
    ZrTest::PrintCapture capture;
    ZrXmlOrientation orientation(0.5, 0.5, 0.5, 0.5);
    EXPECT_TRUE(ZrTest::readRoot(c.text, orientation)) << c.text;
    for (int i = 0; i < 4; ++i) EXPECT_NEAR(orientation.value().q(i), c.after.q(i), 1e-15) << c.text;
    EXPECT_EQ(capture.count() == 0 ? "" : capture.texts().front(), c.message) << c.text;
  }
}

TEST(ZrXmlGeometricWrite, ComponentsAreAttributes) {
  EXPECT_EQ(written(ZrXmlVector(1.5, -2, 0)), "<v x=\"1.5\" y=\"-2\" z=\"0\"/>\n");
  EXPECT_EQ(written(ZrXmlOrientation(1, 0, 0, 0)),
            "<v q0=\"1\" q1=\"0\" q2=\"0\" q3=\"0\"/>\n");
  EXPECT_EQ(written(ZrXmlVectorVector({ZrVector(1, 2, 3)})),
            "<v size=\"1\">\n <element x=\"1\" y=\"2\" z=\"3\"/>\n</v>\n");
}

// A size that promises more than the document holds gives the entries that are there, reported.
TEST(ZrXmlVectorVectorRead, AnnouncedSizeIsBoundedByTheDocument) {
  struct Case {
    const char* text;
    ZrU32 entries;
    bool warned;
  } cases[] = {
      {"<p size='5'><element x='1' y='2' z='3'/></p>", 1, true},
      {"<p size='99999999999'><element x='1' y='2' z='3'/></p>", 1, true},
      {"<p size='2'/>", 0, true},
      {"<p size='-4'></p>", 0, false},
      {"<p size='1'><element x='1' y='2' z='3'/><element x='4' y='5' z='6'/></p>", 1, false},
      {"<p><element x='1' y='2' z='3'/></p>", 0, false},
  };
  for (const Case& c : cases) {
    ZrTest::PrintCapture capture;
    ZrXmlVectorVector path({ZrVector(9, 9, 9)});
    EXPECT_TRUE(readRoot(c.text, path)) << c.text;
    EXPECT_EQ(path.size(), c.entries) << c.text;
    EXPECT_EQ(capture.contains("ZrXmlVectorVector Warning: array size not equal to attribute value"), c.warned)
        << c.text << capture.all();
  }
}

TEST(ZrXmlVectorVectorDump, TextFormat) {
  ZrTest::TempDir dir;
  const std::string path = dir.file("pts.txt");
  ASSERT_TRUE(ZrXmlVector::dump(ZrXmlVectorVector({ZrVector(1, 2, 3), ZrVector(-0.5, 0, 1e-20)}), path.c_str()));
  EXPECT_EQ(ZrTest::readFile(path),
            "pts=[...\n"
            "1.0000000000000000e+00 2.0000000000000000e+00 3.0000000000000000e+00 \n"
            "-5.0000000000000000e-01 0.0000000000000000e+00 9.9999999999999995e-21 \n"
            "]\n");
  EXPECT_FALSE(ZrXmlVector::dump(ZrXmlVectorVector(), dir.file("missing/pts.txt").c_str()));
}

TEST(ZrXmlGeometricBinary, RawComponentsRoundTripExactly) {
  std::stringstream bytes;
  ZrXmlVector(0.1, -1e300, 3).writeBin(bytes);
  ZrXmlOrientation(0.1, 0.2, 0.3, 0.4).writeBin(bytes);
  EXPECT_EQ(bytes.str().size(), 24u + 32u);
  ZrXmlVector vector;
  ZrXmlOrientation orientation;
  EXPECT_TRUE(vector.readBin(bytes));
  EXPECT_TRUE(orientation.readBin(bytes));
  EXPECT_EQ(vector.value(), ZrVector(0.1, -1e300, 3));
  EXPECT_EQ(orientation.value(), ZrOrientation(0.1, 0.2, 0.3, 0.4));  // stored as read, not normalised
  // At the end of the stream nothing is there: the components become zero, and the result stays true.
  EXPECT_TRUE(vector.readBin(bytes));
  EXPECT_EQ(vector.value(), ZrVector());
}

}  // namespace
