#include <ZrTestSupport.h>
#include <ZrXmlBasicType.h>
#include <ZrXmlCompoundType.h>
#include <ZrXmlReader.h>
#include <gtest/gtest.h>

#include <memory>
#include <sstream>

namespace {

// A tree node: each <n> may hold one <n>, so the document alone decides how deep reading recurses.
class Node : public ZrXmlCompoundType {
 public:
  ZrXmlObject* clone() const override { return new Node(); }
  ZrXmlObject* newObject() const override { return new Node(); }
  ZrBoolean equality(const ZrXmlObject* other) const override { return dynamic_cast<const Node*>(other) != nullptr; }
  ZrToken token() const override { return ZrToken("urn:test", "n"); }

  int depth() const { return m_theChild ? 1 + m_theChild->depth() : 0; }

 protected:
  void registerComponents() override {
    m_theChild.reset(new Node());
    registerComponent(token(), m_theChild.get());
  }

 private:
  std::unique_ptr<Node> m_theChild;
};

std::string nested(int levels) {
  std::string text;
  for (int i = 0; i < levels; ++i) text += "<n>";
  text += "<after/>";
  for (int i = 0; i < levels; ++i) text += "</n>";
  return text + "\n";
}

TEST(ObjectNesting, DeeperThanTheLimitIsReportedSkippedAndReadingGoesOn) {
  ZrTest::PrintCapture capture;
  std::istringstream in("<root>" + nested(60) + "<tail/></root>");
  ZrXmlReader reader("deep.xml", in);
  reader.setMaxObjectDepth(20);
  ASSERT_EQ(reader.readXml(), 1);
  Node root;
  EXPECT_TRUE(root.read(reader));
  EXPECT_TRUE(capture.contains("ZrXmlReader Error: objects nested deeper than 20 levels; element n skipped.\n"
                               "\tFile: deep.xml\n\tLine: 1\n"));
  EXPECT_EQ(capture.count(), 2u) << capture.all();  // the limit, and "Bad token" for <tail/>
  EXPECT_EQ(reader.readXml(), 0);                    // the root's end tag was the compound's last event
  EXPECT_GE(root.depth(), 20);
}

// Far deeper than any stack allows when each level is a call: the limit keeps the recursion bounded.
TEST(ObjectNesting, HundredThousandLevelsEndWithOneReport) {
  ZrTest::PrintCapture capture;
  // as deep as the tokenizer reads: the root, the levels and the innermost <after/> fill its depth limit
  std::istringstream in("<root>" + nested(static_cast<int>(ZrXmlFileReader::defaultMaxDepth()) - 2) + "</root>");
  ZrXmlReader reader("deep.xml", in);
  ASSERT_EQ(reader.readXml(), 1);
  Node root;
  EXPECT_TRUE(root.read(reader));
  EXPECT_EQ(capture.count(), 1u) << capture.all();
  EXPECT_EQ(reader.readXml(), 0);
}

}  // namespace
