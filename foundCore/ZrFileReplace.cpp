#include "ZrFileReplace.h"

#include <cerrno>
#include <cstdio>

bool ZrReplaceFile(const std::string& path, const std::string& text) {
  const std::string temporary = path + ".tmp";
  std::FILE* file = std::fopen(temporary.c_str(), "wb");
  if (!file) return false;
  const bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
  const bool closed = std::fclose(file) == 0;  // a full disk often shows only when the buffer is flushed
  if (written && closed && std::rename(temporary.c_str(), path.c_str()) == 0) return true;
  const int why = errno;
  std::remove(temporary.c_str());
  errno = why;
  return false;
}
