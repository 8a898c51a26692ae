#ifndef ZR_TEXT_EQUAL_H
#define ZR_TEXT_EQUAL_H

#include <cstdint>
#include <cstring>
#include <string_view>

namespace Zr {

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
  if (size >= 8) {
    std::uint64_t a0, a1, b0, b1;
    std::memcpy(&a0, a, 8);
    std::memcpy(&b0, b, 8);
    std::memcpy(&a1, a + size - 8, 8);
    std::memcpy(&b1, b + size - 8, 8);
    return ((a0 ^ b0) | (a1 ^ b1)) == 0;
  }
  if (size >= 4) {
    std::uint32_t a0, a1, b0, b1;
    std::memcpy(&a0, a, 4);
    std::memcpy(&b0, b, 4);
    std::memcpy(&a1, a + size - 4, 4);
    std::memcpy(&b1, b + size - 4, 4);
    return ((a0 ^ b0) | (a1 ^ b1)) == 0;
  }
  for (std::size_t i = 0; i < size; ++i)
    if (a[i] != b[i]) return false;
  return true;
}

}  // namespace Zr

#endif
