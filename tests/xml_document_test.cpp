// One-call load and save: every bad input is a clear result with fault records, nothing thrown; a saved
// document loads back; a save that fails leaves the file as it was and nothing beside it.
#include <ZrTestSupport.h>
#include <ZrXmlBasicType.h>
#include <ZrXmlCompoundType.h>
#include <ZrXmlDocument.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>

namespace {

class Motor : public ZrXmlCompoundType {
 public:
  ZrXmlObject* clone() const override { return new Motor(*this); }
  ZrXmlObject* newObject() const override { return new Motor(); }
  ZrBoolean equality(const ZrXmlObject*) const override { return false; }
  ZrToken token() const override { return ZrToken("urn:motor", "motor"); }
  void registerComponents() override {
    registerAttributeComponent(ZrToken("name"), &name);
    registerComponent(ZrToken("urn:motor", "power"), &power);
  }
  ZrXmlBasicType<std::string> name;
  ZrXmlBasicType<double> power;
};

TEST(ZrXmlDocument, EveryBadInputIsAClearResult) {
  ZrTest::TempDir dir;
  std::filesystem::create_directory(dir.file("aDirectory"));
  struct Row {
    const char* name;
    const char* content;  // null: the file is not written
    bool rootRead;
    const char* fault;    // a fragment of the first fault's text; empty for none
  };
  const Row rows[] = {
      {"missing.xml", nullptr, false, "cannot open the document"},
      {"aDirectory", nullptr, false, "it is a directory"},
      {"empty.xml", "", false, "no root element found"},
      {"blank.xml", "  \n", false, "no root element found"},
      {"other.xml", "<pump/>", false, "the root element is pump, not motor"},
      {"truncated.xml", "<motor name=\"m\"><power>2", true, "file not well formed"},
      {"faulty.xml", "<motor><torque>1</torque></motor>", true, "Bad token: torque"},
      {"emptyRoot.xml", "<motor/>", true, ""},
      {"good.xml", "<?xml version=\"1.0\"?>\n<motor name=\"m\"><power>2.5</power></motor>\n", true, ""},
  };
  for (const Row& row : rows) {
    if (row.content) dir.write(row.name, row.content);
    ZrTest::PrintCapture capture;
    Motor motor;
    const ZrXmlReadResult result = ZrXml::load(dir.file(row.name), motor);
    EXPECT_EQ(result.rootRead(), row.rootRead) << row.name << capture.all();
    const bool clean = *row.fault == '\0';
    EXPECT_EQ(result.ok(), clean) << row.name << capture.all();
    EXPECT_EQ(result.faultCount(), result.faults().size()) << row.name;
    if (clean) {
      EXPECT_EQ(capture.count(), 0u) << row.name << capture.all();
      continue;
    }
    bool named = false;
    for (const ZrXmlFault& fault : result.faults()) {
      named = named || fault.text.find(row.fault) != std::string::npos;
      EXPECT_EQ(fault.file, dir.file(row.name)) << row.name;
    }
    EXPECT_TRUE(named) << row.name << capture.all();
  }
}

// The end of a document cut short is reported while the root is read; reading on after the root must
// not take that end for a second document, one without a root.
TEST(ZrXmlDocument, ADocumentCutShortIsReportedOnce) {
  for (const char* text : {"<motor name=\"m\"><power>2</power>", "<motor><power>2</power>\n<pow", "<motor>\n"}) {
    std::istringstream in(text);
    ZrTest::PrintCapture capture;
    Motor motor;
    const ZrXmlReadResult result = ZrXml::load(in, "cut.xml", motor);
    EXPECT_TRUE(result.rootRead()) << text;
    EXPECT_NE(result.faultCount(), 0u) << text;
    EXPECT_FALSE(capture.contains("must begin with start tag")) << text << '\n' << capture.all();
  }
}

TEST(ZrXmlDocument, ASavedDocumentLoadsBackWithEitherProfile) {
  ZrTest::TempDir dir;
  for (const bool standard : {false, true}) {
    Motor motor;
    motor.name = standard ? "R&D <drive>" : "drive";  // the toolkit's form writes text as it stands
    motor.power = 0.1 + 0.2;
    const std::string path = dir.file("motor.xml");
    const ZrXmlWriteOptions writing = standard ? ZrXmlWriteOptions::standard() : ZrXmlWriteOptions::toolkit();
    const ZrXmlReadOptions reading = standard ? ZrXmlReadOptions::standard() : ZrXmlReadOptions::toolkit();
    ASSERT_TRUE(ZrXml::save(path, motor, writing));
    Motor back;
    ZrTest::PrintCapture capture;
    const ZrXmlReadResult result = ZrXml::load(path, back, reading);
    EXPECT_TRUE(result.ok()) << capture.all();
    EXPECT_EQ(back.name.value(), motor.name.value());
    if (standard) {
      EXPECT_EQ(back.power.value(), motor.power.value());
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), {}), 1) << "no temporary left";
  }
}

// The target is a directory: the rename fails after the whole document was written beside it.
TEST(ZrXmlDocument, AFailedSaveLeavesNothingBehind) {
  ZrTest::TempDir dir;
  std::filesystem::create_directory(dir.file("motor.xml"));
  dir.write("motor.xml/inside", "precious");
  ZrTest::PrintCapture capture;
  EXPECT_FALSE(ZrXml::save(dir.file("motor.xml"), Motor()));
  EXPECT_EQ(ZrTest::readFile(dir.file("motor.xml/inside")), "precious");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), {}), 1) << "no temporary left";
  EXPECT_TRUE(capture.contains("cannot write the document")) << capture.all();
}

TEST(ZrXmlDocument, SavingIntoADirectoryThatIsMissingFails) {
  ZrTest::TempDir dir;
  ZrTest::PrintCapture capture;
  EXPECT_FALSE(ZrXml::save(dir.file("no/such/motor.xml"), Motor()));
  EXPECT_TRUE(capture.contains("cannot write the document")) << capture.all();
}

TEST(ZrXmlDocument, StreamsLoadAndSaveAlike) {
  Motor motor;
  motor.name = "m";
  std::ostringstream out;
  ASSERT_TRUE(ZrXml::save(out, "motor.xml", motor));
  std::istringstream in(out.str());
  Motor back;
  EXPECT_TRUE(ZrXml::load(in, "motor.xml", back).ok());
  EXPECT_EQ(back.name.value(), "m");
}

}  // namespace
