#pragma once

#include <cstdint>

namespace tessaro {

// In seconds.
inline constexpr int64_t kMinute = 60;
inline constexpr int64_t kHour = 60 * kMinute;
inline constexpr int64_t kDay = 24 * kHour;

}  // namespace tessaro
