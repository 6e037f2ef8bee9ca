#include "store/table_scan.h"

#include <bit>

// x86 processors of 64 bits have SSE2; most have AVX2, which is asked for at run time.
#ifdef __SSE2__
#include <immintrin.h>
#define TESSARO_SSE2 1
#define TESSARO_AVX2 __attribute__((target("avx2,bmi,popcnt")))
#endif

namespace tessaro {
namespace {

// Takes a bit for each of the 64 bytes at `start`, the first byte lowest. Most have few marks: the first four places
// are written without asking whether there are so many, since a wrong guess of the processor costs more than writing.
__attribute__((always_inline)) inline uint32_t* AddPlaces(uint64_t bits, size_t start, size_t size, uint32_t* places) {
  constexpr int kUnasked = 4;
  if (size - start < kScanWidth) bits &= (uint64_t{1} << (size - start)) - 1;
  const auto offset = static_cast<uint32_t>(start);
  const int count = std::popcount(bits);
  for (int i = 0; i < kUnasked; ++i) {
    places[i] = offset + static_cast<uint32_t>(std::countr_zero(bits));
    bits &= bits - 1;
  }
  for (int i = kUnasked; i < count; ++i) {
    places[i] = offset + static_cast<uint32_t>(std::countr_zero(bits));
    bits &= bits - 1;
  }
  return places + count;
}

#ifdef TESSARO_SSE2

size_t FindMarksSse2(const char* text, size_t size, char separator, uint32_t* places) {
  const __m128i separators = _mm_set1_epi8(separator);
  const __m128i backslashes = _mm_set1_epi8('\\');
  const __m128i line_feeds = _mm_set1_epi8('\n');
  uint32_t* next = places;
  for (size_t start = 0; start < size; start += kScanWidth) {
    uint64_t found = 0;
    for (size_t i = 0; i < kScanWidth; i += sizeof(__m128i)) {
      const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + start + i));
      const __m128i equal =
          _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(bytes, separators), _mm_cmpeq_epi8(bytes, backslashes)),
                       _mm_cmpeq_epi8(bytes, line_feeds));
      found |= static_cast<uint64_t>(static_cast<uint32_t>(_mm_movemask_epi8(equal))) << i;
    }
    next = AddPlaces(found, start, size, next);
  }
  return static_cast<size_t>(next - places);
}

TESSARO_AVX2 size_t FindMarksAvx2(const char* text, size_t size, char separator, uint32_t* places) {
  const __m256i separators = _mm256_set1_epi8(separator);
  const __m256i backslashes = _mm256_set1_epi8('\\');
  const __m256i line_feeds = _mm256_set1_epi8('\n');
  uint32_t* next = places;
  for (size_t start = 0; start < size; start += kScanWidth) {
    uint64_t found = 0;
    for (size_t i = 0; i < kScanWidth; i += sizeof(__m256i)) {
      const __m256i bytes = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(text + start + i));
      const __m256i equal =
          _mm256_or_si256(_mm256_or_si256(_mm256_cmpeq_epi8(bytes, separators), _mm256_cmpeq_epi8(bytes, backslashes)),
                          _mm256_cmpeq_epi8(bytes, line_feeds));
      found |= static_cast<uint64_t>(static_cast<uint32_t>(_mm256_movemask_epi8(equal))) << i;
    }
    next = AddPlaces(found, start, size, next);
  }
  return static_cast<size_t>(next - places);
}

#else

size_t FindMarksPortable(const char* text, size_t size, char separator, uint32_t* places) {
  uint32_t* next = places;
  for (size_t start = 0; start < size; start += kScanWidth) {
    uint64_t found = 0;
    for (size_t i = 0; i < kScanWidth; ++i) {
      const char byte = text[start + i];
      found |= static_cast<uint64_t>(byte == separator || byte == '\\' || byte == '\n') << i;
    }
    next = AddPlaces(found, start, size, next);
  }
  return static_cast<size_t>(next - places);
}

#endif

}  // namespace

size_t FindMarks(const char* text, size_t size, char separator, uint32_t* places) {
#ifdef TESSARO_SSE2
  static const bool has_avx2 = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi");
  return has_avx2 ? FindMarksAvx2(text, size, separator, places) : FindMarksSse2(text, size, separator, places);
#else
  return FindMarksPortable(text, size, separator, places);
#endif
}

}  // namespace tessaro
