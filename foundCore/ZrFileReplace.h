#ifndef ZR_FILE_REPLACE_H
#define ZR_FILE_REPLACE_H

#include <string>

// Writes text as the whole content of the file at path, or leaves the file as it was: the text goes to
// a temporary file beside it (path + ".tmp"), which is renamed into place only when every byte was
// written and the file closed without error. A failed write (a full disk, a directory that cannot be
// written) leaves no truncated file behind and removes the temporary one. False on failure, with errno
// telling why.
bool ZrReplaceFile(const std::string& path, const std::string& text);

#endif
