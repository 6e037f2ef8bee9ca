#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

// Whole numbers that stay at their bounds instead of overflowing: histories come from files and may hold anything.
namespace tessaro {

// The exact result, else the nearest number that can be held.
inline int64_t SaturatingAdd(int64_t a, int64_t b) {
  int64_t sum = 0;
  if (!__builtin_add_overflow(a, b, &sum)) return sum;
  return b < 0 ? std::numeric_limits<int64_t>::min() : std::numeric_limits<int64_t>::max();
}

// As SaturatingAdd.
inline int64_t SaturatingSubtract(int64_t a, int64_t b) {
  int64_t difference = 0;
  if (!__builtin_sub_overflow(a, b, &difference)) return difference;
  return b > 0 ? std::numeric_limits<int64_t>::min() : std::numeric_limits<int64_t>::max();
}

// As SaturatingAdd.
inline int64_t SaturatingMultiply(int64_t a, int64_t b) {
  int64_t product = 0;
  if (!__builtin_mul_overflow(a, b, &product)) return product;
  return (a < 0) != (b < 0) ? std::numeric_limits<int64_t>::min() : std::numeric_limits<int64_t>::max();
}

// Toward zero; 0 for what is no number.
inline int64_t Truncate(double value) {
  constexpr double kBound = 9223372036854775808.0;  // 2 to the 63rd
  if (value >= kBound) return std::numeric_limits<int64_t>::max();
  if (value < -kBound) return std::numeric_limits<int64_t>::min();
  return std::isnan(value) ? 0 : static_cast<int64_t>(value);
}

}  // namespace tessaro
