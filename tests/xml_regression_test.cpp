// Replays every input kept in data/regressions/ (inputs that once crashed, hung or leaked under the
// fuzzers) through the tokenizer and the two example models, the way the fuzz targets read them.
#include <ZrFuzzDrivers.h>
#include <ZrTestSupport.h>

#include <gtest/gtest.h>

#include <filesystem>

TEST(XmlRegression, KeptFuzzInputsReadToTheirEnd) {
  ZrTest::PrintCapture quiet;
  ZrFuzz::confineReading();
  std::size_t replayed = 0;
  for (const auto& entry : std::filesystem::directory_iterator(ZR_TEST_DATA_DIR "/regressions")) {
    SCOPED_TRACE(entry.path().filename().string());
    const std::string input = ZrTest::readFile(entry.path().string());
    ZrFuzz::tokenize(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
    ZrFuzz::readModels(input);
    ++replayed;
  }
  EXPECT_GT(replayed, 0u);
}
