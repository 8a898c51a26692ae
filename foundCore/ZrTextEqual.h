#ifndef ZR_TEXT_EQUAL_H
#define ZR_TEXT_EQUAL_H

#include <cstdint>
#include <cstring>
#include <string_view>

namespace Zr {

// The first and the last word of two texts of one size, at least a word long, compared at once.
template <class Word>
inline bool endWordsEqual(const char* a, const char* b, std::size_t size) {
  Word a0, a1, b0, b1;
  std::memcpy(&a0, a, sizeof(Word));
  std::memcpy(&b0, b, sizeof(Word));
  std::memcpy(&a1, a + size - sizeof(Word), sizeof(Word));
  std::memcpy(&b1, b + size - sizeof(Word), sizeof(Word));
  return ((a0 ^ b0) | (a1 ^ b1)) == 0;
}

// Whether two texts are equal, for the short names (element, attribute and member names) that readers
// compare many times per object. Up to 16 bytes are compared as two overlapping words each way, without a
// call to memcmp and without looking past either text; longer texts go to memcmp.
#if defined(__GNUC__)
__attribute__((always_inline))
#endif
inline bool textEqual(std::string_view one, std::string_view other) {
  const std::size_t size = one.size();
  if (size != other.size()) return false;
  const char* a = one.data();
  const char* b = other.data();
  if (size > 16) return std::memcmp(a, b, size) == 0;
  if (size >= 8) return endWordsEqual<std::uint64_t>(a, b, size);
  if (size >= 4) return endWordsEqual<std::uint32_t>(a, b, size);
  for (std::size_t i = 0; i < size; ++i)
    if (a[i] != b[i]) return false;
  return true;
}

}  // namespace Zr

#endif
