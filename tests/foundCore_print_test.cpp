#include <ZrPrint.h>
#include <ZrTestSupport.h>
#include <gtest/gtest.h>

namespace {

TEST(ZrPrint, WriteFormatsOneWholeMessage) {
  ZrTest::PrintCapture capture;
  Zr::Print::instance().write(Zr::PrintError, "Bad token: %s on line %d\n", "robot", 12);
  std::string longText(2000, 'x');
  Zr::Print::instance().write(Zr::PrintSizeWarning, "%s|", longText.c_str());
  ASSERT_EQ(capture.count(), 2u);
  EXPECT_EQ(capture.messages()[0].first, Zr::PrintError);
  EXPECT_EQ(capture.messages()[0].second, "Bad token: robot on line 12\n");
  EXPECT_EQ(capture.messages()[1].second, longText + "|");
}

TEST(ZrPrint, StreamIsHeadedBySignatureAndEmittedOnceAtStatementEnd) {
  ZrTest::PrintCapture capture;
  Zr::Print::instance().ostream(Zr::PrintPluginError, "void f(int)") << "piece " << 1 << ", piece " << 2.5 << std::endl;
  ASSERT_EQ(capture.count(), 1u);
  EXPECT_EQ(capture.messages()[0].first, Zr::PrintPluginError);
  EXPECT_EQ(capture.messages()[0].second, "void f(int)\npiece 1, piece 2.5\n");
}

}  // namespace
