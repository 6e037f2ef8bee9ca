#include "platform/local_days.h"

#include <ctime>

namespace tessaro {

LocalDays::LocalDays() : starts_(kDays, kUnasked) {}

int64_t LocalDays::HourOf(int64_t day, int hour) const {
  if (day < 1 || day >= kDays) return day * kLength + int64_t{hour} * 3600;
  std::tm local = {};
  local.tm_year = 70;
  local.tm_mday = 1 + static_cast<int>(day);
  local.tm_hour = hour;
  local.tm_isdst = -1;
  return std::mktime(&local);
}

}  // namespace tessaro
