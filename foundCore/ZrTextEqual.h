#ifndef ZR_TEXT_EQUAL_H
#define ZR_TEXT_EQUAL_H

#include <cstdint>
#include <cstring>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

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

// Two texts of one size from 17 to 48 bytes (namespace URIs, mostly), compared as two or three 16-byte
// blocks each way, the last overlapping the one before it, with a branch only on the size. Kept out of
// line, as memcmp is, so that the short compares around it stay small enough to inline.
#if defined(__GNUC__)
__attribute__((noinline))
#endif
inline bool blocksEqual(const char* a, const char* b, std::size_t size) {
#if defined(__SSE2__)
  const auto block = [](const char* at) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at)); };
  __m128i same = _mm_and_si128(_mm_cmpeq_epi8(block(a), block(b)),
                               _mm_cmpeq_epi8(block(a + size - 16), block(b + size - 16)));
  if (size > 32) same = _mm_and_si128(same, _mm_cmpeq_epi8(block(a + 16), block(b + 16)));
  return _mm_movemask_epi8(same) == 0xFFFF;
#else
  return std::memcmp(a, b, size) == 0;
#endif
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
  if (size > 16) return size <= 48 ? blocksEqual(a, b, size) : std::memcmp(a, b, size) == 0;
  if (size >= 8) return endWordsEqual<std::uint64_t>(a, b, size);
  if (size >= 4) return endWordsEqual<std::uint32_t>(a, b, size);
  for (std::size_t i = 0; i < size; ++i)
    if (a[i] != b[i]) return false;
  return true;
}

}  // namespace Zr

#endif
