#include "ZrTestSupport.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace ZrTest {

PrintCapture::PrintCapture() {
  Zr::Print::instance().setSink(
      [this](int printType, const std::string& message) { m_theMessages.emplace_back(printType, message); });
}

PrintCapture::~PrintCapture() { Zr::Print::instance().resetSink(); }

std::vector<std::string> PrintCapture::texts() const {
  std::vector<std::string> result;
  for (const auto& message : m_theMessages) result.push_back(message.second);
  return result;
}

std::string PrintCapture::all() const {
  std::string result;
  for (const auto& message : m_theMessages) result += message.second;
  return result;
}

bool PrintCapture::contains(const std::string& fragment) const { return all().find(fragment) != std::string::npos; }

TempDir::TempDir() {
  std::string pattern = (std::filesystem::temp_directory_path() / "zrxml-test-XXXXXX").string();
  if (!mkdtemp(pattern.data())) throw std::runtime_error("cannot create a temporary directory");
  m_thePath = pattern;
}

TempDir::~TempDir() {
  std::error_code ignored;
  std::filesystem::remove_all(m_thePath, ignored);
}

std::string TempDir::write(const std::string& name, const std::string& content) const {
  std::string full = file(name);
  std::filesystem::create_directories(std::filesystem::path(full).parent_path());
  std::ofstream out(full, std::ios::binary);
  out << content;
  return full;
}

std::string readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

}  // namespace ZrTest
