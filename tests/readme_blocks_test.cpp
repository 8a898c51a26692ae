// README.md cannot drift from the library. The line before each fenced block may name what the block is:
//   <!-- program: examples/readme/NAME.cpp -->   the block is lines of that program, which is built and
//                                                run as the test readme.NAME
//   <!-- excerpt: PATH -->                       the block is lines of that source of the example models
//   <!-- commands: exit statuses 1 0 -->         each command of the shell block, run from a directory
//                                                where build/ is this build tree, exits so
// Every C++ block names its source, and shows its lines as they stand there (the whole block indented
// alike is the same block); every shell block that runs the built tool is run.
#include <ZrTestSupport.h>
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {
namespace fs = std::filesystem;

const std::string theSourceDir = ZR_SOURCE_DIR;
const std::string theReadmePrograms = "examples/readme/";

struct Block {
  int line = 0;          // of the opening fence, counted from 1
  std::string language;  // what follows the opening fence
  std::string marker;    // the comment on the line before the fence, without its brackets; empty for none
  std::vector<std::string> lines;
};

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

bool startsWith(const std::string& text, const std::string& prefix) { return text.compare(0, prefix.size(), prefix) == 0; }

bool isBlank(const std::string& line) { return line.find_first_not_of(" \t") == std::string::npos; }

// The marker a line holds when it is an HTML comment of its own: "<!-- program: x.cpp -->" holds
// "program: x.cpp".
std::string markerOf(const std::string& line) {
  const std::string open = "<!-- ", close = " -->";
  if (!startsWith(line, open) || line.size() < open.size() + close.size() ||
      line.compare(line.size() - close.size(), close.size(), close) != 0)
    return std::string();
  return line.substr(open.size(), line.size() - open.size() - close.size());
}

std::vector<Block> fencedBlocks(const std::string& markdown) {
  const std::vector<std::string> lines = linesOf(markdown);
  std::vector<Block> blocks;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (!startsWith(lines[i], "```")) continue;
    Block block;
    block.line = static_cast<int>(i) + 1;
    block.language = lines[i].substr(3);
    if (i > 0) block.marker = markerOf(lines[i - 1]);
    for (++i; i < lines.size() && !startsWith(lines[i], "```"); ++i) block.lines.push_back(lines[i]);
    blocks.push_back(block);
  }
  return blocks;
}

// Whether block stands in source line for line, every line indented by the same blanks more: a block
// lifted out of a function body is still the same block. Blank lines match blank lines.
bool isExcerpt(const std::vector<std::string>& block, const std::vector<std::string>& source) {
  std::size_t first = 0;
  while (first < block.size() && isBlank(block[first])) ++first;
  if (first == block.size()) return false;
  for (std::size_t start = first; start + block.size() <= source.size() + first; ++start) {
    const std::string& anchor = source[start];
    if (anchor.size() < block[first].size()) continue;
    const std::string indent = anchor.substr(0, anchor.size() - block[first].size());
    if (indent.find_first_not_of(' ') != std::string::npos) continue;
    bool same = true;
    for (std::size_t k = 0; k < block.size() && same; ++k) {
      const std::string& line = source[start - first + k];
      same = isBlank(block[k]) ? isBlank(line) : line == indent + block[k];
    }
    if (same) return true;
  }
  return false;
}

// The commands of a shell block: lines continued with a backslash joined, blank lines and comment lines
// left out.
std::vector<std::string> commandsOf(const Block& block) {
  std::vector<std::string> commands;
  std::string pending;
  for (const std::string& line : block.lines) {
    if (pending.empty() && (isBlank(line) || line[line.find_first_not_of(" \t")] == '#')) continue;
    pending += line;
    if (!pending.empty() && pending.back() == '\\') {
      pending.back() = '\n';
      continue;
    }
    commands.push_back(pending);
    pending.clear();
  }
  if (!pending.empty()) commands.push_back(pending);
  return commands;
}

// "commands: exit statuses 1 0" gives {1, 0}; a marker of another kind gives nothing.
std::vector<int> exitStatusesOf(const std::string& marker) {
  const std::string kind = "commands: exit statuses ";
  std::vector<int> statuses;
  if (!startsWith(marker, kind)) return statuses;
  std::istringstream in(marker.substr(kind.size()));
  for (int status; in >> status;) statuses.push_back(status);
  return statuses;
}

std::string readme() { return ZrTest::readFile(theSourceDir + "/README.md"); }

std::string where(const Block& block) { return "README.md:" + std::to_string(block.line); }

// ---- The checker's own rules ---------------------------------------------------------------------

TEST(ReadmeBlocks, AnExcerptIsTheSameLinesIndentedAlike) {
  const std::vector<std::string> source = {"int main() {", "  int a = 1;", "", "  return a;", "}"};
  struct Row {
    const char* what;
    std::vector<std::string> block;
    bool excerpt;
  } rows[] = {
      {"lines as they stand", {"int main() {", "  int a = 1;"}, true},
      {"a body lifted out", {"int a = 1;", "", "return a;"}, true},
      {"a blank line first", {"", "return a;"}, true},
      {"a word changed", {"int a = 2;", "", "return a;"}, false},
      {"indented unlike the source", {"int a = 1;", "", "  return a;"}, false},
      {"a line's end only", {"a = 1;"}, false},
      {"a blank line dropped", {"int a = 1;", "return a;"}, false},
      {"running past the end", {"return a;", "}", "int b;"}, false},
      {"nothing but blanks", {"", ""}, false},
  };
  for (const Row& row : rows) EXPECT_EQ(isExcerpt(row.block, source), row.excerpt) << row.what;
}

TEST(ReadmeBlocks, BlocksTakeTheMarkerOfTheLineRightBeforeThem) {
  const std::vector<Block> blocks = fencedBlocks(
      "text\n<!-- program: examples/readme/a.cpp -->\n```cpp\nint a;\n\nint b;\n```\n"
      "<!-- commands: exit statuses 1 0 -->\n\n```sh\nls \\\n  -l   # long\n\n# a comment\necho\n```\n"
      "<!-- not a marker\n```cmake\n```\n");
  ASSERT_EQ(blocks.size(), 3u);
  EXPECT_EQ(blocks[0].line, 3);
  EXPECT_EQ(blocks[0].language, "cpp");
  EXPECT_EQ(blocks[0].marker, "program: examples/readme/a.cpp");
  EXPECT_EQ(blocks[0].lines, (std::vector<std::string>{"int a;", "", "int b;"}));
  EXPECT_EQ(blocks[1].marker, "") << "a blank line parts a marker from its block";
  EXPECT_EQ(commandsOf(blocks[1]), (std::vector<std::string>{"ls \n  -l   # long", "echo"}));
  EXPECT_EQ(blocks[2].marker, "");
  EXPECT_TRUE(blocks[2].lines.empty());
  EXPECT_EQ(exitStatusesOf("commands: exit statuses 1 0"), (std::vector<int>{1, 0}));
  EXPECT_TRUE(exitStatusesOf("program: a.cpp").empty());
}

// ---- README.md ---------------------------------------------------------------------------------

TEST(ReadmeBlocks, EveryCppBlockIsLinesOfTheSourceItsMarkerNames) {
  int checked = 0;
  for (const Block& block : fencedBlocks(readme())) {
    if (block.language != "cpp") continue;
    std::string path;
    if (startsWith(block.marker, "program: ")) {
      path = block.marker.substr(9);
      EXPECT_TRUE(startsWith(path, theReadmePrograms)) << where(block) << ": programs live in " << theReadmePrograms;
    } else if (startsWith(block.marker, "excerpt: ")) {
      path = block.marker.substr(9);
    } else {
      ADD_FAILURE() << where(block) << ": a C++ block without <!-- program: ... --> or <!-- excerpt: ... --> before it";
      continue;
    }
    const fs::path source = fs::path(theSourceDir) / path;
    if (!fs::is_regular_file(source)) {
      ADD_FAILURE() << where(block) << ": " << path << " does not exist";
      continue;
    }
    EXPECT_TRUE(isExcerpt(block.lines, linesOf(ZrTest::readFile(source.string()))))
        << where(block) << ": the block is not lines of " << path << " as they stand there";
    ++checked;
  }
  EXPECT_GT(checked, 0) << "README.md has no C++ block";
}

TEST(ReadmeBlocks, EveryReadmeProgramIsShownInTheReadme) {
  std::set<std::string> shown;
  for (const Block& block : fencedBlocks(readme()))
    if (startsWith(block.marker, "program: ")) shown.insert(block.marker.substr(9));
  for (const fs::directory_entry& entry : fs::directory_iterator(fs::path(theSourceDir) / theReadmePrograms)) {
    if (entry.path().extension() != ".cpp") continue;
    const std::string program = theReadmePrograms + entry.path().filename().string();
    EXPECT_EQ(shown.count(program), 1u) << program << " is shown by no block of README.md";
  }
}

// A directory where the README's paths hold: build/ is this build tree, everything else the source's.
class CommandDirectory {
 public:
  CommandDirectory() {
    for (const fs::directory_entry& entry : fs::directory_iterator(theSourceDir)) {
      const std::string name = entry.path().filename().string();
      if (name != "build") fs::create_symlink(entry.path(), fs::path(m_theDir.path()) / name);
    }
    fs::create_directory_symlink(ZR_BINARY_DIR, fs::path(m_theDir.path()) / "build");
  }

  // The command's exit status; its output goes to output.
  int run(const std::string& command, std::string& output) const {
    const std::string log = m_theDir.file("command.log");
    // The command's own comment must not swallow the redirection: a line break ends it.
    const int status = std::system(("cd '" + m_theDir.path() + "' && { " + command + "\n} >'" + log + "' 2>&1").c_str());
    output = ZrTest::readFile(log);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  // A program that is neither there nor installed leaves its block unrun.
  bool hasProgramOf(const std::string& command) const {
    const std::string program = command.substr(0, command.find_first_of(" \n"));
    if (program.find('/') != std::string::npos) return fs::exists(fs::path(m_theDir.path()) / program);
    return std::system(("command -v '" + program + "' >/dev/null 2>&1").c_str()) == 0;
  }

 private:
  ZrTest::TempDir m_theDir;
};

TEST(ReadmeBlocks, ShellBlocksThatRunTheBuiltToolExitAsTheirMarkerSays) {
  const CommandDirectory directory;
  int run = 0;
  std::vector<std::string> unrun;
  for (const Block& block : fencedBlocks(readme())) {
    if (block.language != "sh") continue;
    const std::vector<int> statuses = exitStatusesOf(block.marker);
    const std::vector<std::string> commands = commandsOf(block);
    if (statuses.empty()) {
      for (const std::string& command : commands)
        EXPECT_EQ(command.find("build/tools/zrxml"), std::string::npos)
            << where(block) << ": a block that runs the built tool needs <!-- commands: exit statuses ... -->";
      continue;
    }
    ASSERT_EQ(statuses.size(), commands.size()) << where(block) << ": one exit status per command";
    bool runnable = true;
    for (const std::string& command : commands) runnable = runnable && directory.hasProgramOf(command);
    if (!runnable) {
      unrun.push_back(where(block));
      continue;
    }
    for (std::size_t i = 0; i < commands.size(); ++i) {
      std::string output;
      EXPECT_EQ(directory.run(commands[i], output), statuses[i]) << where(block) << ": " << commands[i] << '\n' << output;
    }
    ++run;
  }
  for (const std::string& block : unrun) RecordProperty("unrun", block + ": a program it runs is missing");
  if (run == 0 && !unrun.empty()) GTEST_SKIP() << "programs missing for every command block, first at " << unrun[0];
}

}  // namespace
