#ifndef ZR_TEXT_ASSIGN_H
#define ZR_TEXT_ASSIGN_H

#include <cstring>
#include <string>
#include <string_view>

namespace Zr {

// Puts a text into a string that is kept for its capacity (a reader's value buffer, the names of one
// depth). std::string::assign goes through a general replace that costs several times the copy of a short
// text; here a text that fits is copied in place, and only one that does not fit is assigned as usual.
// The text must not lie inside the string.
inline void assignText(std::string& to, std::string_view text) {
  const std::size_t held = to.size();
  if (text.size() <= held) {
    if (!text.empty()) std::memcpy(&to[0], text.data(), text.size());
    if (text.size() != held) to.resize(text.size());  // shortening only sets the length
  } else if (text.size() <= to.capacity()) {
    if (held != 0) std::memcpy(&to[0], text.data(), held);
    to.append(text.data() + held, text.size() - held);  // within the capacity: a copy and a length
  } else {
    to.assign(text.data(), text.size());
  }
}

}  // namespace Zr

#endif
