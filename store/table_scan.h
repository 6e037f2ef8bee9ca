#pragma once

#include <cstddef>
#include <cstdint>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace tessaro {

inline constexpr size_t kScanWidth = 64;

// A bit for each of the 64 bytes at `text`, the first byte lowest: set for a separator, a backslash or a line feed.
inline uint64_t FindMarks(const char* text, char separator) {
  uint64_t marks = 0;
#ifdef __SSE2__
  const __m128i separators = _mm_set1_epi8(separator);
  const __m128i backslashes = _mm_set1_epi8('\\');
  const __m128i line_feeds = _mm_set1_epi8('\n');
  for (size_t i = 0; i < kScanWidth; i += sizeof(__m128i)) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + i));
    const __m128i found =
        _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(bytes, separators), _mm_cmpeq_epi8(bytes, backslashes)),
                     _mm_cmpeq_epi8(bytes, line_feeds));
    marks |= static_cast<uint64_t>(static_cast<uint32_t>(_mm_movemask_epi8(found))) << i;
  }
#else
  for (size_t i = 0; i < kScanWidth; ++i) {
    const bool found = text[i] == separator || text[i] == '\\' || text[i] == '\n';
    marks |= static_cast<uint64_t>(found) << i;
  }
#endif
  return marks;
}

}  // namespace tessaro
