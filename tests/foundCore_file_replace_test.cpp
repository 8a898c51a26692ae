// Test label: threads
#include <ZrFileReplace.h>
#include <ZrTestSupport.h>

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <functional>
#include <set>
#include <thread>

namespace {

namespace fs = std::filesystem;

std::set<std::string> namesIn(const std::string& directory) {
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(directory)) names.insert(entry.path().filename().string());
  return names;
}

bool isLink(const std::string& path) { return fs::is_symlink(fs::symlink_status(path)); }

// Runs `attempt` in a child process (so that a changed user or resource limit stays there) and returns
// what it returned, errno in the upper bits: (errno << 1) | success.
int inChild(const std::function<int()>& attempt) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(attempt());
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

int outcome(bool replaced) { return (replaced ? 1 : 0) | (replaced ? 0 : (errno & 0x7f) << 1); }

// What each planted situation must come to: the replace's result, the target's content afterwards, and
// the names the directory holds afterwards (a temporary file never stays).
struct Case {
  const char* name;
  std::function<void(const ZrTest::TempDir&)> plant;
  const char* target;  // relative to the directory
  bool replaced;
  const char* content;  // of the target afterwards; null: not a file
  std::set<std::string> namesAfter;
};

TEST(ZrReplaceFile, PlantedNamesNeverRedirectTheWrite) {
  const std::string text = "<xs:schema/>\n";
  const Case cases[] = {
      {"a new file", [](const ZrTest::TempDir&) {}, "out.xsd", true, "<xs:schema/>\n", {"out.xsd", "victim"}},
      {"an existing file replaced whole",
       [](const ZrTest::TempDir& d) { d.write("out.xsd", "an older and much longer content\n"); }, "out.xsd", true,
       "<xs:schema/>\n", {"out.xsd", "victim"}},
      // The name the temporary file once had, planted as a link to another file.
      {"a link at the old temporary name",
       [](const ZrTest::TempDir& d) { fs::create_symlink(d.file("victim"), d.file("out.xsd.tmp")); }, "out.xsd", true,
       "<xs:schema/>\n", {"out.xsd", "out.xsd.tmp", "victim"}},
      {"a dangling link at the old temporary name",
       [](const ZrTest::TempDir& d) { fs::create_symlink(d.file("nothing"), d.file("out.xsd.tmp")); }, "out.xsd",
       true, "<xs:schema/>\n", {"out.xsd", "out.xsd.tmp", "victim"}},
      // The target itself a link: the link is replaced, what it pointed to stays.
      {"the target a link", [](const ZrTest::TempDir& d) { fs::create_symlink(d.file("victim"), d.file("out.xsd")); },
       "out.xsd", true, "<xs:schema/>\n", {"out.xsd", "victim"}},
      {"the target a directory", [](const ZrTest::TempDir& d) { fs::create_directory(d.file("out.xsd")); }, "out.xsd",
       false, nullptr, {"out.xsd", "victim"}},
      {"a missing directory", [](const ZrTest::TempDir&) {}, "missing/out.xsd", false, nullptr, {"victim"}},
  };
  for (const Case& c : cases) {
    ZrTest::TempDir dir;
    dir.write("victim", "precious\n");
    c.plant(dir);
    const std::string target = dir.file(c.target);
    EXPECT_EQ(ZrReplaceFile(target, text), c.replaced) << c.name;
    EXPECT_EQ(ZrTest::readFile(dir.file("victim")), "precious\n") << c.name;
    if (c.content) {
      EXPECT_FALSE(isLink(target)) << c.name;
      EXPECT_EQ(ZrTest::readFile(target), c.content) << c.name;
    }
    EXPECT_EQ(namesIn(dir.path()), c.namesAfter) << c.name;
  }
}

TEST(ZrReplaceFile, AFailedWriteLeavesTheOldFileAndNothingElse) {
  ZrTest::TempDir dir;
  const std::string target = dir.write("out.txt", "old\n");
  const bool replaced = ZrReplaceFile(target, [](std::FILE* file) {
    std::fputs("half of it", file);
    return false;
  });
  EXPECT_FALSE(replaced);
  EXPECT_EQ(ZrTest::readFile(target), "old\n");
  EXPECT_EQ(namesIn(dir.path()), std::set<std::string>{"out.txt"});
}

// A disk that fills up while writing: the file-size limit makes a write fail as a full disk does.
TEST(ZrReplaceFile, ADiskFullLeavesTheOldFileAndNothingElse) {
  ZrTest::TempDir dir;
  const std::string target = dir.write("out.txt", "old\n");
  const int result = inChild([&target] {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit = {1000, 1000};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    return outcome(ZrReplaceFile(target, std::string(100000, 'x')));
  });
  EXPECT_EQ(result, EFBIG << 1);
  EXPECT_EQ(ZrTest::readFile(target), "old\n");
  EXPECT_EQ(namesIn(dir.path()), std::set<std::string>{"out.txt"});
}

// A directory the user may not write. Root writes everywhere, so as root the attempt is made as nobody.
TEST(ZrReplaceFile, AReadOnlyDirectoryIsRefusedAndLeftAsItWas) {
  ZrTest::TempDir dir;
  const std::string readOnly = dir.file("ro");
  fs::create_directory(readOnly);
  const std::string target = dir.write("ro/out.txt", "old\n");
  ::chmod(dir.path().c_str(), 0755);
  ::chmod(target.c_str(), 0666);
  ::chmod(readOnly.c_str(), 0555);
  const int result = inChild([&target] {
    if (::geteuid() == 0 && (::setgid(65534) != 0 || ::setuid(65534) != 0)) return 0xff;
    return outcome(ZrReplaceFile(target, "new\n"));
  });
  ::chmod(readOnly.c_str(), 0755);
  EXPECT_EQ(result, EACCES << 1);
  EXPECT_EQ(ZrTest::readFile(target), "old\n");
  EXPECT_EQ(namesIn(readOnly), std::set<std::string>{"out.txt"});
}

// Two writers of one file at once never share a temporary file: the file always holds one whole text.
TEST(ZrReplaceFile, ConcurrentWritersEachReplaceTheFileWhole) {
  ZrTest::TempDir dir;
  const std::string target = dir.file("out.txt");
  const std::string texts[2] = {std::string(50000, 'a'), std::string(70000, 'b')};
  bool allReplaced[2] = {true, true};
  auto writer = [&](int which) {
    for (int round = 0; round < 50; ++round) allReplaced[which] &= ZrReplaceFile(target, texts[which]);
  };
  std::thread first(writer, 0), second(writer, 1);
  first.join();
  second.join();
  EXPECT_TRUE(allReplaced[0] && allReplaced[1]);
  const std::string content = ZrTest::readFile(target);
  EXPECT_TRUE(content == texts[0] || content == texts[1]) << content.size();
  EXPECT_EQ(namesIn(dir.path()), std::set<std::string>{"out.txt"});
}

}  // namespace
