// The formula example with the shipped zrExpressionExtras plug-in: reading, printing, evaluating,
// writing back, and documents that nest too deep or name terms nobody knows.
#include <ZrDllLoader.h>
#include <ZrFormulaDocument.h>
#include <ZrOperationTerm.h>
#include <ZrTestSupport.h>
#include <ZrVariableTerm.h>
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

namespace {

class ZrFormulaExample : public ::testing::Test {
 protected:
  void SetUp() override { ZrDllLoader::setSearchPath({ZR_PLUGIN_BUILD_DIR}); }
  void TearDown() override { ZrDllLoader::setSearchPath({}); }

  // A formula document around body, naming the plug-in.
  static std::string document(const std::string& body) {
    return "<formula xmlns=\"http://www.zrtoolkit.org/namespace/cell\">\n"
           "<addLibraries size=\"1\"><group>zrExpressionExtras</group></addLibraries>\n" +
           body + "\n</formula>\n";
  }
  static bool read(const std::string& text, ZrFormula& formula) {
    std::istringstream in(text);
    return ZrFormulaDocument::read(in, "formula.xml", formula);
  }
};

TEST_F(ZrFormulaExample, TheSampleReadsPrintsEvaluatesAndWritesBackEqual) {
  ZrTest::PrintCapture capture;
  ZrFormula sample;
  ASSERT_TRUE(ZrFormulaDocument::readFile(ZrFormulaDocument::samplePath(), sample));
  EXPECT_EQ(sample.text(), "3600 * operators / (cycleTime + 2.5)");
  EXPECT_DOUBLE_EQ(sample.evaluate({}), 160.0);
  EXPECT_DOUBLE_EQ(sample.evaluate({{"operators", 3}, {"cycleTime", 57.5}}), 180.0);

  std::ostringstream out;
  ASSERT_TRUE(ZrFormulaDocument::write(sample, out, "formula.xml"));
  EXPECT_LT(out.str().find("addLibraries"), out.str().find("quotient")) << "libraries come before their terms";
  ZrFormula again;
  ASSERT_TRUE(read(out.str(), again));
  EXPECT_TRUE(again.equality(&sample)) << out.str();
  EXPECT_EQ(capture.all(), "");
}

TEST_F(ZrFormulaExample, PrintsOnlyTheParenthesesThatPrecedenceNeeds) {
  const struct {
    const char* body;
    const char* text;
    double value;
  } rows[] = {
      {"<difference><variable name='a' value='5'/><sum><constant value='1'/><constant value='2'/></sum></difference>",
       "a - (1 + 2)", 2},
      {"<difference><difference><constant value='9'/><constant value='4'/></difference><constant value='2'/>"
       "</difference>",
       "9 - 4 - 2", 3},
      {"<product><sum><constant value='1'/><constant value='2'/></sum><constant value='3'/></product>", "(1 + 2) * 3",
       9},
      {"<difference><variable name='x' value='4'/></difference>", "0 - x", -4},
      {"<sum/>", "0", 0},
  };
  for (const auto& row : rows) {
    ZrTest::PrintCapture capture;
    ZrFormula formula;
    ASSERT_TRUE(read(document(row.body), formula));
    EXPECT_EQ(formula.text(), row.text);
    EXPECT_DOUBLE_EQ(formula.evaluate({}), row.value) << row.text;
    EXPECT_EQ(capture.all(), "") << row.text;
  }
}

TEST_F(ZrFormulaExample, UnknownTermsAndExtraTopLevelTermsAreReportedAndSkipped) {
  ZrTest::PrintCapture capture;
  ZrFormula formula;
  ASSERT_TRUE(read(document("<sum>\n<constant value='1'/>\n<cosine unit='rad'><constant value='0'/></cosine>\n"
                            "<constant value='2'/>\n</sum>\n<constant value='7'/>"),
                   formula));
  EXPECT_EQ(formula.text(), "1 + 2");
  EXPECT_TRUE(capture.contains("Bad token: cosine on line 5\n")) << capture.all();
  EXPECT_TRUE(capture.contains("a formula holds one term; constant skipped.")) << capture.all();
  EXPECT_EQ(capture.count(), 2u) << capture.all();

  ZrDllLoader::setSearchPath({});  // without the plug-in its terms are unknown
  capture.clear();
  ZrFormula withoutPlugin;
  ASSERT_TRUE(read(document("<quotient><constant value='1'/></quotient>"), withoutPlugin));
  EXPECT_EQ(withoutPlugin.term(), nullptr);
  EXPECT_TRUE(capture.contains("Bad token: #quotient on line 3\n")) << capture.all();
  EXPECT_TRUE(std::isnan(withoutPlugin.evaluate({})));
  EXPECT_TRUE(std::isnan(ZrFormula().evaluate({})) && std::isnan(ZrVariableTerm("free").evaluate({})));
}

TEST_F(ZrFormulaExample, NestingBeyondTheLimitIsCutAndReported) {
  const int levels = 5000;
  std::string body;
  for (int i = 0; i < levels; ++i) body += "<sum><constant value='1'/>";
  for (int i = 0; i < levels; ++i) body += "</sum>";
  ZrTest::PrintCapture capture;
  ZrFormula formula;
  ASSERT_TRUE(read(document(body), formula));
  // The sum at the deepest level keeps no operand: its constant and its sum would lie beyond it.
  EXPECT_EQ(capture.count(), 2u) << capture.all();
  EXPECT_TRUE(capture.contains("nested deeper than 200 levels; constant skipped.")) << capture.all();
  EXPECT_TRUE(capture.contains("nested deeper than 200 levels; sum skipped.")) << capture.all();
  EXPECT_DOUBLE_EQ(formula.evaluate({}), ZrTerm::m_theMaxDepth - 1.0);
}

TEST_F(ZrFormulaExample, ACopyOwnsItsTreeAndOutlivesItsSource) {
  std::unique_ptr<ZrFormula> source(new ZrFormula);
  ASSERT_TRUE(read(document("<difference><constant value='8'/><variable name='y'/></difference>"), *source));
  ZrFormula copy(*source);
  ZrFormula assigned;
  assigned = *source;
  source.reset();
  for (const ZrFormula* formula : {&copy, &assigned}) {
    ASSERT_NE(formula->term(), nullptr);
    const auto& operation = dynamic_cast<const ZrOperationTerm&>(*formula->term());
    EXPECT_EQ(operation.operand(1).container(), formula);
    EXPECT_DOUBLE_EQ(formula->evaluate({{"y", 3}}), 5.0);
  }
}

}  // namespace
