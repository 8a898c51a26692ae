#include "ZrFileReplace.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <random>

namespace {

// Enough attempts that only a directory filled with names of this pattern on purpose exhausts them.
const int theNameAttempts = 64;

std::string randomSuffix(std::random_device& random) {
  static const char digits[] = "0123456789abcdef";
  std::string suffix(12, '0');
  std::uint64_t bits = (std::uint64_t(random()) << 32) ^ random();
  for (char& c : suffix) {
    c = digits[bits & 0xf];
    bits >>= 4;
  }
  return suffix;
}

// Creates a file that did not exist, beside path. O_EXCL refuses any existing name, a symbolic link
// (even one to nowhere) included; O_NOFOLLOW says so once more. -1 with errno on failure.
int createTemporary(const std::string& path, std::string& temporary) {
  std::random_device random;
  for (int attempt = 0; attempt < theNameAttempts; ++attempt) {
    temporary = path + "." + randomSuffix(random) + ".tmp";
    const int fd = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
    if (fd >= 0 || errno != EEXIST) return fd;
  }
  errno = EEXIST;
  return -1;
}

bool failAndRemove(const std::string& temporary) {
  const int why = errno ? errno : EIO;
  ::unlink(temporary.c_str());
  errno = why;
  return false;
}

}  // namespace

bool ZrReplaceFile(const std::string& path, const std::function<bool(std::FILE*)>& write) {
  std::string temporary;
  const int fd = createTemporary(path, temporary);
  if (fd < 0) return false;
  std::FILE* file = ::fdopen(fd, "wb");
  if (!file) {
    ::close(fd);
    return failAndRemove(temporary);
  }
  errno = 0;
  bool written = write(file) && std::fflush(file) == 0 && !std::ferror(file);
  // A full disk often shows only when the data reach it; a file renamed before then may come back empty
  // after a crash.
  written = written && ::fsync(fd) == 0;
  const int writeError = errno;
  const bool closed = std::fclose(file) == 0;
  if (!written || !closed) {
    errno = written ? errno : writeError;
    return failAndRemove(temporary);
  }
  if (std::rename(temporary.c_str(), path.c_str()) != 0) return failAndRemove(temporary);
  return true;
}

bool ZrReplaceFile(const std::string& path, const std::string& text) {
  return ZrReplaceFile(path, [&text](std::FILE* file) {
    return std::fwrite(text.data(), 1, text.size(), file) == text.size();
  });
}
