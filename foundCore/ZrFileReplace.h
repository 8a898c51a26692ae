#ifndef ZR_FILE_REPLACE_H
#define ZR_FILE_REPLACE_H

#include <cstdio>
#include <functional>
#include <string>

// Writes text as the whole content of the file at path, or leaves the file as it was. The text goes to
// a temporary file in the same directory, created new and exclusively under a name nobody can foresee
// (path, a dot, twelve random hexadecimal digits, ".tmp"; never an existing name, never through a
// symbolic link), and is renamed into place only when every byte was written, flushed to the disk and
// the file closed without error. A failed write (a full disk, a directory that cannot be written, a
// target that is a directory) leaves no truncated file and no temporary file behind. A symbolic link at
// path itself is replaced by the file, its target left alone. The file gets the permissions a new file
// gets (0666 less the umask). False on failure, with errno telling why.
bool ZrReplaceFile(const std::string& path, const std::string& text);

// The same, with the content written by `write` into the open temporary file; `write` returns false
// when it could not write everything, and nothing is left behind then either.
bool ZrReplaceFile(const std::string& path, const std::function<bool(std::FILE*)>& write);

#endif
