#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tessaro {

// FindMarks may read this many bytes past the end of the text, and write this many places past those that it found.
inline constexpr size_t kScanWidth = 64;

// Writes where in the text the separators, backslashes and line feeds are, in ascending order, and returns how many.
// `text` has less than 4 GiB; `places` has room for `size` + kScanWidth numbers.
// Best is the fastest way that the processor has; all give the same.
enum class ScanPath { Best, Sse2, Plain };
size_t FindMarks(const char* text, size_t size, char separator, uint32_t* places, ScanPath path = ScanPath::Best);

// Where the first of these marks is; the size of the text when there is none. Reads nothing past its end.
size_t FindFirstMark(std::string_view text, char separator);

}  // namespace tessaro
