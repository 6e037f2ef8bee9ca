#pragma once

#include <cstdint>
#include <vector>

namespace tessaro {

// Calendar days of the machine's time zone, those of 23 and 25 hours too. A day is told by its number since 1970-01-01,
// which is day 0. Beyond the years that people learn in (1970 ... 2106) days are 24 hours of UTC.
class LocalDays {
 public:
  LocalDays();

  // The day that a time (seconds since 1970-01-01 00:00 UTC) lies in.
  int64_t DayOf(int64_t time) const;
  // The first second of a day.
  int64_t StartOf(int64_t day) const;
  // The time of that hour on a day, 0 ... 23; of an hour that the day skips, the first second after the gap.
  int64_t HourOf(int64_t day, int hour) const;

 private:
  mutable std::vector<int64_t> starts_;  // by day, where they were asked for
};

}  // namespace tessaro
