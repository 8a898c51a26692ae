#include <ZrDllLoader.h>
#include <ZrTestSupport.h>
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace {

typedef int (*AnswerFunction)();

// Each test starts from an empty application path and no ZR_PLUGIN_PATH, whatever the shell had.
class ZrDllLoaderTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ZrDllLoader::setSearchPath({});
    ::unsetenv(ZrDllLoader::m_thePluginPathVariable);
  }
  void TearDown() override {
    ZrDllLoader::setSearchPath({});
    ::unsetenv(ZrDllLoader::m_thePluginPathVariable);
  }

  static int answerOf(ZrDllLoader& loader) {
    AnswerFunction answer = reinterpret_cast<AnswerFunction>(loader.getFunction("zrTestPluginAnswer"));
    return answer ? answer() : -1;
  }
};

TEST_F(ZrDllLoaderTest, NamesThatCouldLeaveTheSearchPathAreRefusedWithAReason) {
  ZrDllLoader::addSearchDirectory(ZR_TEST_PLUGIN_DIR_FIRST);
  const struct {
    const char* name;
    const char* reason;
  } rows[] = {
      {"", "empty library name"},
      {"../first/zrTestDllPlugin", "path separator"},
      {"sub\\zrTestDllPlugin", "path separator"},
      {"..zrTestDllPlugin", "\"..\""},
  };
  for (const auto& row : rows) {
    ZrTest::PrintCapture capture;
    ZrDllLoader loader;
    EXPECT_FALSE(loader.loadDll(row.name, ".zrp")) << row.name;
    EXPECT_FALSE(loader.isLoaded());
    ASSERT_EQ(capture.count(), 1u) << row.name;
    EXPECT_EQ(capture.messages()[0].first, Zr::PrintPluginError);
    EXPECT_NE(capture.messages()[0].second.find(row.reason), std::string::npos) << capture.all();
    EXPECT_EQ(capture.messages()[0].second.rfind("ZrDllLoader Error: ", 0), 0u);
  }
}

TEST_F(ZrDllLoaderTest, ANameFoundNowhereFailsSilently) {
  ZrTest::PrintCapture capture;
  ZrDllLoader loader;
  EXPECT_FALSE(loader.loadDll("zrTestDllPlugin", ".zrp"));  // no directory at all
  ZrDllLoader::addSearchDirectory(ZR_TEST_PLUGIN_DIR_FIRST);
  EXPECT_FALSE(loader.loadDll("zrNoSuchPlugin", ".zrp"));
  EXPECT_FALSE(loader.lastError().empty());
  EXPECT_EQ(loader.getFunction("zrTestPluginAnswer"), nullptr);
  EXPECT_EQ(capture.count(), 0u) << capture.all();
}

TEST_F(ZrDllLoaderTest, LoadsFromTheApplicationPathBeforeTheEnvironmentPath) {
  // Empty entries are dropped silently, relative ones with a message: both would move with the working directory.
  ::setenv(ZrDllLoader::m_thePluginPathVariable, "::relative/first:" ZR_TEST_PLUGIN_DIR_SECOND ":", 1);
  ZrTest::PrintCapture capture;
  ZrDllLoader fromEnvironment;
  ASSERT_TRUE(fromEnvironment.loadDll("zrTestDllPlugin", ".zrp")) << fromEnvironment.lastError();
  EXPECT_EQ(answerOf(fromEnvironment), 2);
  ASSERT_EQ(capture.count(), 1u) << capture.all();
  EXPECT_TRUE(capture.contains("relative directory in ZR_PLUGIN_PATH ignored")) << capture.all();

  ZrDllLoader::addSearchDirectory(ZR_TEST_PLUGIN_DIR_FIRST);
  ZrDllLoader fromApplication;
  ASSERT_TRUE(fromApplication.loadDll("zrTestDllPlugin", ".zrp"));
  EXPECT_EQ(answerOf(fromApplication), 1);
  EXPECT_EQ(fromApplication.loadedPath(), ZR_TEST_PLUGIN_DIR_FIRST "/zrTestDllPlugin.zrp");
  capture.clear();
  EXPECT_EQ(fromApplication.getFunction("getCreator"), nullptr);  // a missing entry point is silent here
  EXPECT_EQ(capture.count(), 0u);
}

TEST_F(ZrDllLoaderTest, LibraryStaysLoadedAfterTheLoaderIsGone) {
  ZrDllLoader::addSearchDirectory(ZR_TEST_PLUGIN_DIR_FIRST "/");  // a trailing slash is fine too
  AnswerFunction answer = nullptr;
  {
    ZrDllLoader loader;
    ASSERT_TRUE(loader.loadDll("zrTestDllPlugin", ".zrp"));
    answer = reinterpret_cast<AnswerFunction>(loader.getFunction("zrTestPluginAnswer"));
  }
  void* stillThere = ::dlopen(ZR_TEST_PLUGIN_DIR_FIRST "/zrTestDllPlugin.zrp", RTLD_NOW | RTLD_NOLOAD);
  ASSERT_NE(stillThere, nullptr);
  ::dlclose(stillThere);  // gives back only the reference this check took
  ASSERT_NE(answer, nullptr);
  EXPECT_EQ(answer(), 1);
}

TEST_F(ZrDllLoaderTest, AFileThatIsNoLibraryIsReported) {
  ZrTest::TempDir directory;
  directory.write("fake.zrp", "this is text, not a shared object\n");
  ZrDllLoader::addSearchDirectory(directory.path());
  ZrTest::PrintCapture capture;
  ZrDllLoader loader;
  EXPECT_FALSE(loader.loadDll("fake", ".zrp"));
  ASSERT_EQ(capture.count(), 1u);
  EXPECT_EQ(capture.messages()[0].first, Zr::PrintPluginError);
  EXPECT_TRUE(capture.contains("not loadable")) << capture.all();
}

}  // namespace
