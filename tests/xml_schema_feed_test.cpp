// The writer's schema feed: writing a document with the schema writer flag set describes it, and the
// document validates (xmllint) against what the writer's generator then writes. Repeated elements whose
// instances differ merge into one description, and a long container is described in constant room.
#include <ZrCellNamespace.h>
#include <ZrRobotCellDocument.h>
#include <ZrTestSupport.h>
#include <ZrXmlWriter.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

namespace {

std::string xmllint() { return ZR_XMLLINT; }
bool haveValidator() { return !xmllint().empty() && xmllint().find("NOTFOUND") == std::string::npos; }

bool validates(const std::string& schema, const std::string& document, std::string& report) {
  const std::string log = document + ".log";
  const std::string command = xmllint() + " --noout --schema '" + schema + "' '" + document + "' > '" + log + "' 2>&1";
  const int status = std::system(command.c_str());
  report = ZrTest::readFile(log);
  return status == 0;
}

// A writer whose document is validated against the schema its writing builds: every writer of the
// tests below that are validated goes through here.
void feedSchema(ZrXmlWriter& writer) { writer.setSchemaWriter(true); }

// Records the generator holds: a merged element's own records are released again.
int liveComplexTypes(ZrXmlSchema& schema) {
  int count = 0;
  while (schema.complexType(count)) ++count;
  return count;
}

class SchemaFeed : public ::testing::Test {
 protected:
  // Validators see namespaces: documents are written in the namespace-complete form.
  void SetUp() override {
    if (!haveValidator()) GTEST_SKIP() << "xmllint is not installed";
    ZrXmlWriter::setDefaultNamespaceComplete(true);
  }
  void TearDown() override { ZrXmlWriter::setDefaultNamespaceComplete(false); }

  // Writes robots as repeated "robot" children of a "fleet" root, feeding the writer's generator.
  std::string writeFleet(const std::vector<const ZrRobot*>& robots, ZrXmlWriter& writer, std::ostringstream& out) {
    writer.setSchemaWriter(true);
    writer.setWriteDefaultDataFlag(false);
    writer.header(ZrCell::element("fleet"), ZrCell::uri());
    for (const ZrRobot* robot : robots) {
      writer.writeStartTag(ZrCell::element("robot"));
      robot->write(writer);
      writer.writeEndTag();
    }
    writer.writeEndTag();
    return dir.write("fleet.xml", out.str());
  }

  ZrTest::PrintCapture capture;
  ZrTest::TempDir dir;
};

TEST_F(SchemaFeed, TheRobotCellValidatesAgainstTheSchemaItsWritingBuilt) {
  ZrRobotCell cell;
  ASSERT_TRUE(ZrRobotCellDocument::readFile(ZrRobotCellDocument::samplePath(), cell));
  const std::string schema = dir.file(ZrXmlWriter::schemaFileName("cell.xml", ZrCell::uri()));
  for (bool defaultData : {true, false}) {
    std::ostringstream out;
    ZrXmlWriter writer(dir.file("cell.xml"), out);
    writer.setSchemaWriter(true);
    writer.setWriteDefaultDataFlag(defaultData);
    writer.header(ZrRobotCell::classToken(), ZrCell::uri());
    cell.write(writer);
    writer.writeEndTag();
    ASSERT_TRUE(writer.schema().write(dir.file("cell.xml")));
    const std::string text = out.str();
    std::string report;
    EXPECT_TRUE(validates(schema, dir.write("cell.xml", text), report)) << report << ZrTest::readFile(schema);

  }
  EXPECT_EQ(capture.all(), "");
}

// The first robot is nil, the second leaves its structured members out, the third holds a path and a
// workspace that the first description lacks.
TEST_F(SchemaFeed, RepeatedElementsThatDifferMergeIntoOneDescriptionInConstantRoom) {
  ZrRobot nil;
  ZrRobot plain("Helper", 99);
  plain.setMode(ZrRobot::MAINTENANCE);
  ZrRobot taught("Mover", 7);
  taught.path().pushBack(ZrVector(0.5, 0.5, 0.0));
  taught.setWorkspace(ZrVector(-1, -1, 0), ZrVector(1, 1, 2));

  std::ostringstream out;
  ZrXmlWriter writer(dir.file("fleet.xml"), out);
  const std::string document = writeFleet({&nil, &plain, &taught, &plain}, writer, out);
  ASSERT_TRUE(writer.schema().write(dir.file("fleet.xml")));
  const std::string schema = dir.file(ZrXmlWriter::schemaFileName("fleet.xml", ZrCell::uri()));
  std::string report;
  EXPECT_TRUE(validates(schema, document, report)) << report << ZrTest::readFile(schema) << out.str();

  std::ostringstream longOut;
  ZrXmlWriter longWriter(dir.file("fleet.xml"), longOut);
  writeFleet(std::vector<const ZrRobot*>(500, &taught), longWriter, longOut);
  std::ostringstream shortOut;
  ZrXmlWriter shortWriter(dir.file("fleet.xml"), shortOut);
  writeFleet({&taught}, shortWriter, shortOut);
  EXPECT_EQ(liveComplexTypes(longWriter.schema()), liveComplexTypes(shortWriter.schema()));

  ZrXmlWriter unfed;  // the flag is off by default: nothing reaches the generator
  unfed.header(ZrCell::element("fleet"), ZrCell::uri());
  unfed.writeEndTag();
  EXPECT_TRUE(unfed.schema().rootElements().empty());
  EXPECT_EQ(capture.all(), "");
}

// A polymorphic list: photoEye, diverter, photoEye. One sequence cannot admit the second photoEye after
// the diverter; the children are described as a repeated choice instead, so both orders validate.
TEST_F(SchemaFeed, SiblingsWrittenInVaryingOrderValidate) {
  std::ostringstream out;
  ZrXmlWriter writer(dir.file("line.xml"), out);
  feedSchema(writer);
  writer.header(ZrCell::element("line"), ZrCell::uri());
  writer.writeStartTag(ZrCell::element("devices"));
  for (const char* kind : {"photoEye", "diverter", "photoEye", "photoEye", "diverter"}) {
    writer.writeStartTag(ZrCell::element(kind));
    writer.setAttributeName(ZrToken("serial"));
    ZrXmlBasicType<unsigned int>(7u).write(writer);
    writer.writeEndTag();
  }
  writer.writeEndTag();
  writer.writeEndTag();
  ASSERT_TRUE(writer.schema().write(dir.file("line.xml")));
  const std::string schema = dir.file(ZrXmlWriter::schemaFileName("line.xml", ZrCell::uri()));
  std::string report;
  EXPECT_TRUE(validates(schema, dir.write("line.xml", out.str()), report)) << report << ZrTest::readFile(schema);
  EXPECT_EQ(capture.all(), "");
}

TEST(SchemaFileName, PortableNamesServeUrnNamespaces) {
  struct Row {
    const char* xmlNamespace;
    const char* documentRule;
    const char* portable;
  };
  const Row rows[] = {
      {"http://www.zrtoolkit.org/namespace/cell", "line.cell.xsd", "line.cell.xsd"},
      {"urn:x", "line.urn:x.xsd", "line.x.xsd"},
      {"urn:zr:conveyor line", "line.urn:zr:conveyor line.xsd", "line.conveyor_line.xsd"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(ZrXmlWriter::schemaFileName("/data/line.xml", row.xmlNamespace), row.documentRule);
    EXPECT_EQ(ZrXmlWriter::schemaFileName("/data/line.xml", row.xmlNamespace, true), row.portable);
  }
}

// With portable names, a document in a URN namespace pairs with a schema file that a validator finds.
TEST_F(SchemaFeed, UrnNamespaceDocumentValidatesWithPortableNames) {
  std::ostringstream out;
  ZrXmlWriter writer(dir.file("line.xml"), out);
  feedSchema(writer);
  writer.setPortableSchemaFileNames(true);
  writer.header(ZrToken("urn:x", "line"), "urn:x");
  writer.writeStartTag(ZrToken("urn:x", "speed"));
  ZrXmlBasicType<double>(1.5).write(writer);
  writer.writeEndTag();
  writer.writeEndTag();
  ASSERT_TRUE(writer.schema().write(dir.file("line.xml")));
  EXPECT_NE(out.str().find("line.x.xsd"), std::string::npos) << out.str();
  std::string report;
  EXPECT_TRUE(validates(dir.file("line.x.xsd"), dir.write("line.xml", out.str()), report)) << report;
  EXPECT_EQ(capture.all(), "");
}

}  // namespace
