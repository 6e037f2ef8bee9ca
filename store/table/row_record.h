#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>

// How the records of a RowStore are made, see there.
namespace tessaro::row_record {

// A handle is the number of a record's first word. A record has two words or more, so rows can be counted by an int.
inline constexpr size_t kMostWords = size_t{1} << 32;
inline constexpr size_t kLeastBlock = 1024;

// What the upper bits of a record's place tell; the rest is a start or a number.
inline constexpr uint64_t kChanged = uint64_t{1} << 63;
inline constexpr uint64_t kAsWritten = uint64_t{1} << 62;
inline constexpr uint64_t kShort = uint64_t{1} << 61;
inline constexpr uint64_t kWide = uint64_t{1} << 60;
inline constexpr uint64_t kUnescaped = uint64_t{1} << 59;
inline constexpr uint64_t kPlaceMask = kUnescaped - 1;
inline constexpr size_t kPlaceWords = 2;

// The unescaped fields of a record: their number, the place of their texts, then two words each.
inline constexpr size_t kUnescapedHead = 1 + kPlaceWords;
inline constexpr size_t kUnescapedWords = 2;

inline constexpr size_t kMostNarrow = std::numeric_limits<uint16_t>::max();
inline constexpr size_t kMostWide = std::numeric_limits<uint32_t>::max();

inline void StorePlace(uint32_t* record, uint64_t place) {
  record[0] = static_cast<uint32_t>(place);
  record[1] = static_cast<uint32_t>(place >> 32);
}

inline uint64_t LoadPlace(const uint32_t* record) {
  return record[0] | (static_cast<uint64_t>(record[1]) << 32);
}

}  // namespace tessaro::row_record
