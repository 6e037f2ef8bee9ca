#include "platform/local_days.h"

#include <ctime>
#include <limits>

namespace tessaro {
namespace {

constexpr int64_t kDay = 86'400;
constexpr int64_t kDays = 50'000;
constexpr int64_t kUnasked = std::numeric_limits<int64_t>::min();

int64_t FloorDays(int64_t time) {
  return time / kDay - (time % kDay < 0 ? 1 : 0);
}

int64_t LocalTime(int64_t day, int hour) {
  std::tm local = {};
  local.tm_year = 70;
  local.tm_mday = 1 + static_cast<int>(day);
  local.tm_hour = hour;
  local.tm_isdst = -1;
  return std::mktime(&local);
}

}  // namespace

LocalDays::LocalDays() : starts_(kDays, kUnasked) {}

int64_t LocalDays::StartOf(int64_t day) const {
  // At both ends a zone's days and those of UTC may not overlap.
  if (day < 1 || day >= kDays) return day * kDay;
  int64_t& start = starts_[static_cast<size_t>(day)];
  if (start == kUnasked) start = LocalTime(day, 0);
  return start;
}

int64_t LocalDays::DayOf(int64_t time) const {
  int64_t day = FloorDays(time);
  if (day < 2 || day >= kDays - 2) return day;
  while (time >= StartOf(day + 1)) ++day;
  while (time < StartOf(day)) --day;
  return day;
}

int64_t LocalDays::HourOf(int64_t day, int hour) const {
  if (day < 1 || day >= kDays) return day * kDay + int64_t{hour} * 3600;
  return LocalTime(day, hour);
}

}  // namespace tessaro
