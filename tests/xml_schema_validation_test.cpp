// Generated schemas against an independent validator (xmllint): documents that the library writes
// validate, with the default-data flag on and off, and documents with a deliberate fault do not. The
// models are both examples and a station that holds the container kinds the examples lack and a member
// of another namespace, so that its schema imports a second file.
#include <ZrCellNamespace.h>
#include <ZrDllLoader.h>
#include <ZrFormulaDocument.h>
#include <ZrRobotCellDocument.h>
#include <ZrTestSupport.h>
#include <ZrXmlCompoundType.h>
#include <ZrXmlEnumType.h>
#include <ZrXmlMapType.h>
#include <ZrXmlPairType.h>
#include <ZrXmlVector.h>
#include <ZrXmlVectorType.h>
#include <ZrXmlWriter.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

namespace {

const std::string thePlant = "http://example.org/ns/plant";
ZrToken plant(const char* name) { return ZrToken(thePlant, name); }
ZrToken attribute(const char* name) { return ZrToken(std::string(), name); }

template <class T>
using B = ZrXmlBasicType<T>;

class Station : public ZrXmlCompoundType {
 public:
  Station() : m_kind(1, {{1, "press"}, {2, "weld"}}) {}
  ZrXmlObject* clone() const override { return new Station(*this); }
  ZrXmlObject* newObject() const override { return new Station(); }
  ZrBoolean equality(const ZrXmlObject*) const override { return false; }  // a root is always written
  ZrToken token() const override { return plant("station"); }

  void fill() {
    m_label = std::string("Press line");
    m_kind = 2;
    m_letter = 'q';
    for (double d : {1.5, -2.0, 3e8}) m_readings.pushBack(d);
    m_flags.pushBack(true);
    m_flags.pushBack(false);
    m_series.mapContainer()[std::string("t")].pushBack(0.25);
    m_range.setFirst(-1.0);
    m_range.setSecond(1.0);
    m_points.pushBack(ZrXmlVector(4.0, 5.0, 6.0));
    ZrXmlVectorType<B<unsigned int>> row;
    row.pushBack(1u);
    row.pushBack(2u);
    m_grid.pushBack(row);
    m_robot = ZrRobot("Helper", 99);
    m_robot.setMode(ZrRobot::MAINTENANCE);
  }

 protected:
  void registerComponents() override {
    registerAttributeComponent(attribute("label"), &m_label);
    registerAttributeComponent(attribute("kind"), &m_kind);
    registerComponent(plant("readings"), &m_readings);
    registerComponent(plant("flags"), &m_flags);
    registerComponent(plant("series"), &m_series);
    registerComponent(plant("range"), &m_range);
    registerComponent(plant("points"), &m_points);
    registerComponent(plant("grid"), &m_grid);
    registerComponent(plant("spare"), &m_spare);
    registerComponent(plant("letter"), &m_letter);
    registerComponent(ZrCell::element("robot"), &m_robot);
  }

 private:
  B<std::string> m_label;
  ZrXmlEnumType<int> m_kind;
  B<char> m_letter;
  ZrXmlVectorType<B<double>> m_readings;
  ZrXmlVectorType<B<bool>> m_flags;
  ZrXmlMapType<B<std::string>, ZrXmlVectorType<B<double>>> m_series;
  ZrXmlPairType<B<double>, B<double>> m_range;
  ZrXmlVectorType<ZrXmlVector> m_points;
  ZrXmlVectorType<ZrXmlVectorType<B<unsigned int>>> m_grid;
  ZrXmlVectorType<B<int>> m_spare;
  ZrRobot m_robot;
};

std::string xmllint() { return ZR_XMLLINT; }
bool haveValidator() { return xmllint().find("NOTFOUND") == std::string::npos && !xmllint().empty(); }

// Validates the document; the validator's report is kept for failure messages.
bool validates(const std::string& schema, const std::string& document, std::string& report) {
  const std::string log = document + ".log";
  const std::string command = xmllint() + " --noout --schema '" + schema + "' '" + document + "' > '" + log + "' 2>&1";
  const int status = std::system(command.c_str());
  report = ZrTest::readFile(log);
  return status == 0;
}

// Writes root as a whole document named name in dir, as the example documents do.
std::string writeDocument(const ZrTest::TempDir& dir, const std::string& name, const ZrXmlObject& root,
                          const std::string& rootNamespace, bool writeDefaultData) {
  std::ostringstream out;
  ZrXmlWriter writer(dir.file(name), out);
  writer.setWriteDefaultDataFlag(writeDefaultData);
  writer.header(root.token(), rootNamespace);
  root.write(writer);
  writer.writeEndTag();
  return dir.write(name, out.str());
}

// The schema file of a document name, as the document's xsi:schemaLocation names it.
std::string schemaOf(const ZrTest::TempDir& dir, const std::string& documentName, const std::string& ns) {
  return dir.file(ZrXmlWriter::schemaFileName(documentName, ns));
}

class SchemaValidation : public ::testing::Test {
 protected:
  // Validators see namespaces: documents are written in the standard profile (namespace-complete, UTF-8,
  // lossless reals, escaped text), which any XML tool reads.
  void SetUp() override {
    if (!haveValidator()) GTEST_SKIP() << "xmllint is not installed";
    ZrXmlWriter::setDefaultOptions(ZrXmlWriteOptions::standard());
  }
  void TearDown() override { ZrXmlWriter::setDefaultOptions(ZrXmlWriteOptions::toolkit()); }
  ZrTest::PrintCapture capture;
  ZrTest::TempDir dir;
};

TEST_F(SchemaValidation, WrittenDocumentsOfEveryModelValidateWithDefaultDataOnAndOff) {
  ZrRobotCell sampleCell;
  ASSERT_TRUE(ZrRobotCellDocument::readFile(ZrRobotCellDocument::samplePath(), sampleCell));
  ZrDllLoader::addSearchDirectory(ZR_PLUGIN_BUILD_DIR);
  ZrFormula sampleFormula;  // names the plug-in, whose terms the schema then describes too
  ASSERT_TRUE(ZrFormulaDocument::readFile(ZrFormulaDocument::samplePath(), sampleFormula));
  ASSERT_EQ(sampleFormula.creatorMap().size(), 6u) << "the plug-in's terms are known";
  Station filledStation;
  filledStation.fill();

  struct Model {
    const char* name;
    const ZrXmlObject& filled;
    const ZrXmlObject& empty;
    std::string rootNamespace;
  };
  const ZrRobotCell emptyCell;
  const ZrFormula emptyFormula;
  const Station emptyStation;
  const Model models[] = {{"robotCell", sampleCell, emptyCell, ZrCell::uri()},
                          {"formula", sampleFormula, emptyFormula, ZrCell::uri()},
                          {"station", filledStation, emptyStation, thePlant}};
  for (const Model& model : models) {
    const std::string base = model.name;
    ASSERT_TRUE(model.filled.createSchema(dir.file(base + ".xml"), model.filled.token()));
    const std::string schema = schemaOf(dir, base + ".xml", model.rootNamespace);
    for (const ZrXmlObject* root : {&model.filled, &model.empty}) {
      for (bool defaultData : {true, false}) {
        const std::string name = base + (root == &model.filled ? "Filled" : "Empty") + (defaultData ? "On" : "Off");
        const std::string document = writeDocument(dir, name + ".xml", *root, model.rootNamespace, defaultData);
        std::string report;
        EXPECT_TRUE(validates(schema, document, report)) << name << "\n" << report << ZrTest::readFile(document);
      }
    }
  }
  EXPECT_EQ(capture.all(), "");
}

TEST_F(SchemaValidation, DocumentsWithADeliberateFaultFailValidation) {
  ZrRobotCell cell;
  ASSERT_TRUE(ZrRobotCellDocument::readFile(ZrRobotCellDocument::samplePath(), cell));
  Station station;
  station.fill();
  ASSERT_TRUE(cell.createSchema(dir.file("cell.xml"), cell.token()));
  ASSERT_TRUE(station.createSchema(dir.file("station.xml"), station.token()));
  const std::string cellText = ZrTest::readFile(writeDocument(dir, "cell.xml", cell, ZrCell::uri(), true));
  const std::string stationText = ZrTest::readFile(writeDocument(dir, "station.xml", station, thePlant, true));

  struct Fault {
    const char* what;
    bool inStation;
    const char* from;
    const char* to;
  };
  const Fault faults[] = {
      {"enumeration name not in the table", false, "<mode>automatic</mode>", "<mode>turbo</mode>"},
      {"unknown child element", false, "<cycleTime>", "<bogus>1</bogus><cycleTime>"},
      {"letters in a number", false, "<cycleTime>42.5<", "<cycleTime>4x2.5<"},
      {"letters in an attribute number", false, "serial=\"40117\"", "serial=\"4O117\""},
      {"two characters for a char", false, "axis=\"z\"", "axis=\"zz\""},
      {"letters in a list of numbers", true, ">1.5 -2 3e+08<", ">1.5 -2 3e+O8<"},
      {"enumerated attribute not in the table", true, "kind=\"weld\"", "kind=\"paint\""},
      {"missing required element of a pair", true, "<second>1</second>", ""},
      {"unknown element in the other namespace", true, "<cell:mode>maintenance</cell:mode>",
       "<cell:mood>maintenance</cell:mood>"},
      {"children out of token order", false, "<cycleTime>42.5</cycleTime>\n <enabled>1</enabled>",
       "<enabled>1</enabled>\n <cycleTime>42.5</cycleTime>"},
  };
  for (const Fault& fault : faults) {
    std::string text = fault.inStation ? stationText : cellText;
    const size_t at = text.find(fault.from);
    ASSERT_NE(at, std::string::npos) << fault.what << "\n" << text;
    text.replace(at, std::string(fault.from).size(), fault.to);
    const std::string name = fault.inStation ? "station.xml" : "cell.xml";
    const std::string document = dir.write("faulty." + name, text);
    std::string report;
    EXPECT_FALSE(validates(schemaOf(dir, name, fault.inStation ? thePlant : ZrCell::uri()), document, report))
        << fault.what << "\n" << text;
    EXPECT_NE(report.find("fails to validate"), std::string::npos) << fault.what << "\n" << report;
  }
}

}  // namespace
