#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace tessaro {

// Calendar days of the machine's time zone, those of 23 and 25 hours too. A day is told by its number since 1970-01-01,
// which is day 0. Beyond the years that people learn in (1970 ... 2106) days are 24 hours of UTC.
class LocalDays {
 public:
  LocalDays();

  // The day that a time (seconds since 1970-01-01 00:00 UTC) lies in.
  int64_t DayOf(int64_t time) const {
    int64_t day = time / kLength - (time % kLength < 0 ? 1 : 0);
    if (day < 2 || day >= kDays - 2) return day;
    while (time >= StartOf(day + 1)) ++day;
    while (time < StartOf(day)) --day;
    return day;
  }
  // The first second of a day.
  int64_t StartOf(int64_t day) const {
    // At both ends a zone's days and those of UTC may not overlap.
    if (day < 1 || day >= kDays) return day * kLength;
    int64_t& start = starts_[static_cast<size_t>(day)];
    if (start == kUnasked) start = HourOf(day, 0);
    return start;
  }
  // The time of that hour on a day, 0 ... 23; of an hour that the day skips, the first second after the gap.
  int64_t HourOf(int64_t day, int hour) const;

 private:
  static constexpr int64_t kLength = 86'400;
  static constexpr int64_t kDays = 50'000;
  static constexpr int64_t kUnasked = std::numeric_limits<int64_t>::min();

  mutable std::vector<int64_t> starts_;  // by day, where they were asked for
};

}  // namespace tessaro
