#include "store/table/table_scan.h"

#include <algorithm>
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

bool IsMark(char byte, char separator) {
  return byte == separator || byte == '\\' || byte == '\n';
}

size_t FindMarksPlain(const char* text, size_t size, char separator, uint32_t* places) {
  uint32_t* next = places;
  for (size_t start = 0; start < size; start += kScanWidth) {
    uint64_t found = 0;
    for (size_t i = 0; i < kScanWidth; ++i) {
      found |= static_cast<uint64_t>(IsMark(text[start + i], separator)) << i;
    }
    next = AddPlaces(found, start, size, next);
  }
  return static_cast<size_t>(next - places);
}

#ifdef TESSARO_SSE2

// A bit for each of 16 bytes.
uint32_t MarksOf16(const char* text, char separator) {
  const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
  const __m128i equal = _mm_or_si128(
      _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(separator)), _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\\'))),
      _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\n')));
  return static_cast<uint32_t>(_mm_movemask_epi8(equal));
}

size_t FindMarksSse2(const char* text, size_t size, char separator, uint32_t* places) {
  uint32_t* next = places;
  for (size_t start = 0; start < size; start += kScanWidth) {
    uint64_t found = 0;
    for (size_t i = 0; i < kScanWidth; i += sizeof(__m128i)) {
      found |= static_cast<uint64_t>(MarksOf16(text + start + i, separator)) << i;
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

#endif

}  // namespace

size_t FindMarks(const char* text, size_t size, char separator, uint32_t* places, [[maybe_unused]] ScanPath path) {
#ifdef TESSARO_SSE2
  static const bool has_avx2 = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi");
  if (path == ScanPath::Best && has_avx2) return FindMarksAvx2(text, size, separator, places);
  if (path != ScanPath::Plain) return FindMarksSse2(text, size, separator, places);
#endif
  return FindMarksPlain(text, size, separator, places);
}

size_t FindFirstMark(std::string_view text, char separator) {
#ifdef TESSARO_SSE2
  constexpr size_t kStep = sizeof(__m128i);
  if (text.size() >= kStep) {
    for (size_t at = 0;; at += kStep) {
      // The last step goes over some bytes twice.
      at = std::min(at, text.size() - kStep);
      const uint32_t found = MarksOf16(text.data() + at, separator);
      if (found != 0) return at + static_cast<size_t>(std::countr_zero(found));
      if (at + kStep == text.size()) return text.size();
    }
  }
#endif
  size_t at = 0;
  while (at < text.size() && !IsMark(text[at], separator)) ++at;
  return at;
}

}  // namespace tessaro
