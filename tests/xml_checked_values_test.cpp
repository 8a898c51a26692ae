// Checked values: a reader told to check values reports every text that is not a whole value of its type
// (with file and line, counted and recorded as a fault) and stores what the forgiving conversion gives;
// a reader that does not check reads the same documents without a word. Fault records say where each
// fault is, included documents too, and the printing cap keeps a flood of faults off the output.
#include <ZrTestSupport.h>
#include <ZrXmlBasicType.h>
#include <ZrXmlCompoundType.h>
#include <ZrXmlOrientation.h>
#include <ZrXmlReader.h>
#include <ZrXmlVector.h>
#include <ZrXmlVectorType.h>
#include <ZrXmlVectorVector.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

class Belt : public ZrXmlCompoundType {
 public:
  ZrXmlObject* clone() const override { return new Belt(*this); }
  ZrXmlObject* newObject() const override { return new Belt(); }
  ZrBoolean equality(const ZrXmlObject*) const override { return false; }
  ZrToken token() const override { return ZrToken("urn:belt", "belt"); }
  void registerComponents() override {
    registerAttributeComponent(ZrToken("id"), &id);
    registerAttributeComponent(ZrToken("poles"), &poles);
    registerComponent(ZrToken("urn:belt", "speed"), &speed);
    registerComponent(ZrToken("urn:belt", "stations"), &stations);
    registerComponent(ZrToken("urn:belt", "gap"), &gap);
    registerComponent(ZrToken("urn:belt", "running"), &running);
    registerComponent(ZrToken("urn:belt", "incline"), &incline);
    registerComponent(ZrToken("urn:belt", "length"), &length);
    registerComponent(ZrToken("urn:belt", "zones"), &zones);
    registerComponent(ZrToken("urn:belt", "name"), &name);
    registerComponent(ZrToken("urn:belt", "pos"), &pos);
    registerComponent(ZrToken("urn:belt", "turn"), &turn);
    registerComponent(ZrToken("urn:belt", "points"), &points);
  }

  ZrXmlBasicType<unsigned int> id;
  ZrXmlBasicType<int> poles;
  ZrXmlBasicType<double> speed;
  ZrXmlBasicType<int> stations;
  ZrXmlBasicType<short> gap;
  ZrXmlBasicType<bool> running;
  ZrXmlBasicType<ZrAngle> incline;
  ZrXmlBasicType<ZrNonNegReal> length;
  ZrXmlVectorType<ZrXmlBasicType<double>> zones;
  ZrXmlBasicType<std::string> name;
  ZrXmlVector pos;
  ZrXmlOrientation turn;
  ZrXmlVectorVector points;
};

struct Read {
  ZrU32 faults;
  std::vector<ZrXmlFault> records;
  std::string printed;
};

Read readBelt(const std::string& body, bool check, Belt& belt) {
  ZrTest::PrintCapture capture;
  std::istringstream in("<belt" + body + "</belt>");
  ZrXmlReader reader("belt.xml", in);
  reader.setOptions(ZrXmlReadOptions().setCheckValues(check));
  reader.readXml();
  belt.read(reader);
  reader.finish();
  return {reader.faultCount(), reader.faults(), capture.all()};
}

// Each row: the document's body after "<belt", and the text the report quotes (empty: no fault).
struct Row {
  const char* body;
  const char* quoted;
};

const Row theRows[] = {
    {"><speed>fast</speed>", "fast"},
    {"><speed>0.85m/s</speed>", "0.85m/s"},
    {"><stations>99999999999</stations>", "99999999999"},
    {" id=\"-1\">", "-1"},
    {" poles=\"3.7\">", "3.7"},
    {"><gap>70000</gap>", "70000"},
    {"><running>yes</running>", "yes"},
    {"><incline>5deg</incline>", "5deg"},
    {"><length>-2</length>", "-2"},
    {"><zones size=\"3\"><group>1 x 3</group></zones>", "x"},
    {"><zones size=\"three\"><group>1 2 3</group></zones>", "three"},
    {"><pos x=\"1\" y=\"2\" w=\"3\"/>", "3"},
    {"><pos x=\"1\" y=\"a\" z=\"3\"/>", "a"},
    {"><turn q0=\"1\" q1=\"0\" q2=\"0\" q3=\"0x\"/>", "0x"},
    {"><points size=\"1\"><element x=\"1\" y=\"2\" z=\"3.3.3\"/></points>", "3.3.3"},
    {"><points size=\"1\"><element x=\"1\" y=\"2\" z=\"3\" w=\"4\"/></points>", "4"},
    {"><speed>2.5</speed><stations>7</stations><running>1</running>", ""},
    {" id=\"4\" poles=\"-3\"><incline>0.5</incline><length>2</length><name>  any text  </name>", ""},
};

TEST(ZrXmlCheckedValues, EveryFaultyTextIsReportedOnlyWhenChecked) {
  for (const Row& row : theRows) {
    Belt unchecked, checked;
    const Read quiet = readBelt(row.body, false, unchecked);
    const Read loud = readBelt(row.body, true, checked);
    const ZrU32 expected = *row.quoted ? 1 : 0;
    ASSERT_EQ(loud.faults, quiet.faults + expected) << row.body << "\n" << loud.printed;
    if (!expected) continue;
    EXPECT_NE(loud.printed.find(std::string("\"") + row.quoted + "\""), std::string::npos) << loud.printed;
    EXPECT_EQ(loud.records[0].file, "belt.xml");
    EXPECT_EQ(loud.records[0].line, 1);
    EXPECT_NE(loud.records[0].text.find(row.quoted), std::string::npos);
    // What is stored is what the forgiving conversion stores.
    EXPECT_EQ(checked.speed.value(), unchecked.speed.value());
    EXPECT_EQ(checked.stations.value(), unchecked.stations.value());
    EXPECT_EQ(checked.id.value(), unchecked.id.value());
  }
}

// A point that lacks a component is reported and read by name: the later points keep their values.
TEST(ZrXmlCheckedValues, APointWithoutAComponentShiftsNothing) {
  Belt belt;
  const Read read =
      readBelt("><points size=\"2\"><element x=\"1\" z=\"3\"/><element x=\"4\" y=\"5\" z=\"6\"/></points>", true, belt);
  EXPECT_EQ(read.faults, 1u) << read.printed;
  EXPECT_NE(read.printed.find("Attribute y"), std::string::npos) << read.printed;
  ASSERT_EQ(belt.points.size(), 2u);
  EXPECT_EQ(belt.points.vectorContainer()[0].y(), 0.0);
  EXPECT_EQ(belt.points.vectorContainer()[0].z(), 3.0);
  EXPECT_EQ(belt.points.vectorContainer()[1].x(), 4.0);
  EXPECT_EQ(belt.points.vectorContainer()[1].z(), 6.0);
}

TEST(ZrXmlCheckedValues, CheckedBoolsReadTheSchemaWords) {
  Belt belt;
  EXPECT_EQ(readBelt("><running>true</running>", true, belt).faults, 0u);
  EXPECT_TRUE(belt.running.value());
  EXPECT_EQ(readBelt("><running>false</running>", true, belt).faults, 0u);
  EXPECT_FALSE(belt.running.value());
  EXPECT_EQ(readBelt("><running>true</running>", false, belt).faults, 0u);  // unchecked: the numeric form only
  EXPECT_FALSE(belt.running.value());
}

// A fault in an included document is recorded with that document's name and its own line and column.
TEST(ZrXmlFaultRecords, NameTheDocumentAndPlaceOfEachFault) {
  ZrTest::TempDir dir;
  dir.write("sub.xml", "<!-- the speed -->\n<speed>x</speed>\n");
  const std::string main = dir.write("main.xml", "<belt>\n<ZrInclude type=\"simple\" href=\"sub.xml\"/>\n<gapp/></belt>");
  ZrTest::PrintCapture capture;
  std::ifstream in(main);
  ZrXmlReader reader(main, in);
  reader.setCheckValues(true);
  Belt belt;
  reader.readXml();
  belt.read(reader);
  reader.finish();
  const std::vector<ZrXmlFault>& faults = reader.faults();
  ASSERT_EQ(faults.size(), reader.faultCount()) << capture.all();
  ASSERT_GE(faults.size(), 2u) << capture.all();
  EXPECT_NE(faults[0].file.find("sub.xml"), std::string::npos);
  EXPECT_EQ(faults[0].line, 2);
  EXPECT_EQ(faults[0].column, 17);  // just past "<speed>x</speed>"
  EXPECT_NE(faults.back().file.find("main.xml"), std::string::npos);
  EXPECT_EQ(faults.back().line, 3);
  EXPECT_EQ(reader.lastFault(), faults.back().text);
}

// Past the printing cap faults are counted and recorded, not printed; one line says how many.
TEST(ZrXmlFaultRecords, ThePrintingCapKeepsAFloodOffTheOutput) {
  std::string body = ">";
  for (int i = 0; i < 50; ++i) body += "<unknown/>";
  ZrTest::PrintCapture capture;
  std::istringstream in("<belt" + body + "</belt>");
  ZrXmlReader reader("belt.xml", in);
  reader.setMaxPrintedFaults(10);
  Belt belt;
  reader.readXml();
  belt.read(reader);
  reader.finish();
  EXPECT_EQ(reader.faultCount(), 50u);
  EXPECT_EQ(reader.faults().size(), 50u);
  std::size_t printedReports = 0;
  for (const std::string& text : capture.texts())
    if (text.find("Bad token") != std::string::npos) ++printedReports;
  EXPECT_EQ(printedReports, 10u);
  EXPECT_TRUE(capture.contains("40 further faults were recorded but not printed")) << capture.all();
}

// The end checks of the documents (unclosed elements) are recorded when the read is finished.
TEST(ZrXmlFaultRecords, EndChecksAreRecorded) {
  ZrTest::PrintCapture capture;
  std::istringstream in("<belt><a><b>");
  ZrXmlReader reader("belt.xml", in);
  while (reader.readXml() != 0) {
  }
  const ZrU32 before = reader.faultCount();
  reader.finish();
  EXPECT_GT(reader.faultCount(), before);
  EXPECT_NE(reader.lastFault().find("Some start tags not closed"), std::string::npos) << capture.all();
}

}  // namespace
