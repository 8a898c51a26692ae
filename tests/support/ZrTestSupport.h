#ifndef ZR_TEST_SUPPORT_H
#define ZR_TEST_SUPPORT_H

#include <ZrPrint.h>

#include <string>
#include <utility>
#include <vector>

namespace ZrTest {

// Collects every message printed while it lives, instead of letting it reach standard error.
class PrintCapture {
 public:
  PrintCapture();
  ~PrintCapture();
  PrintCapture(const PrintCapture&) = delete;
  PrintCapture& operator=(const PrintCapture&) = delete;

  const std::vector<std::pair<int, std::string>>& messages() const { return m_theMessages; }
  std::vector<std::string> texts() const;
  std::string all() const;  // every message text, concatenated
  size_t count() const { return m_theMessages.size(); }
  bool contains(const std::string& fragment) const;
  void clear() { m_theMessages.clear(); }

 private:
  std::vector<std::pair<int, std::string>> m_theMessages;
};

// A fresh directory under the system's temporary area, removed with everything in it at the end.
class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::string& path() const { return m_thePath; }
  std::string file(const std::string& name) const { return m_thePath + "/" + name; }
  std::string write(const std::string& name, const std::string& content) const;  // returns the full path

 private:
  std::string m_thePath;
};

std::string readFile(const std::string& path);

}  // namespace ZrTest

#endif
