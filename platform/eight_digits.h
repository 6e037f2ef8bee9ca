#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace tessaro {

// Reads eight digits at once: the bytes are digits, then pairs, then fours, each joined in one multiplication. False,
// and `number` as it was, when one of the bytes is no digit, and on a machine whose bytes go the other way round.
inline bool ReadEightDigits(const char* text, uint64_t& number) {
  if constexpr (std::endian::native != std::endian::little) return false;
  uint64_t bytes = 0;
  std::memcpy(&bytes, text, sizeof(bytes));
  const uint64_t digits = bytes - 0x3030303030303030U;
  if (((digits | (bytes + 0x4646464646464646U)) & 0x8080808080808080U) != 0) return false;
  const uint64_t pairs = (digits * 10 + (digits >> 8)) & 0x00FF00FF00FF00FFU;
  const uint64_t fours = (pairs * 100 + (pairs >> 16)) & 0x0000FFFF0000FFFFU;
  number = (fours * 10000 + (fours >> 32)) & 0xFFFFFFFFU;
  return true;
}

}  // namespace tessaro
