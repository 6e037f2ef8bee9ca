#include "store/file/backup_rule.h"

#include <chrono>
#include <cstdint>
#include <set>

namespace tessaro {
namespace {

constexpr size_t kSaves = 10;
constexpr size_t kDays = 10;
constexpr size_t kWeeks = 10;
constexpr int kDaysInWeek = 7;
constexpr int kMondayShift = 3;  // 1970-01-01 was a Thursday

int64_t DayNumber(const LocalTime& time) {
  const std::chrono::year_month_day date(std::chrono::year(time.year),
                                         std::chrono::month(static_cast<unsigned>(time.month)),
                                         std::chrono::day(static_cast<unsigned>(time.day)));
  return std::chrono::sys_days(date).time_since_epoch().count();
}

int64_t WeekNumber(int64_t day) {
  const int64_t shifted = day + kMondayShift;
  return shifted >= 0 ? shifted / kDaysInWeek : (shifted + 1) / kDaysInWeek - 1;
}

// True for the first of its kind, as long as there are not too many kinds.
bool IsFirst(std::set<int64_t>& seen, int64_t kind, size_t most) {
  return seen.size() < most && seen.insert(kind).second;
}

}  // namespace

std::vector<bool> GenerationsToKeep(const std::vector<LocalTime>& saves) {
  std::vector<bool> keep;
  std::set<int64_t> days;
  std::set<int64_t> weeks;
  for (const LocalTime& save : saves) {
    const int64_t day = DayNumber(save);
    const bool of_day = IsFirst(days, day, kDays);
    const bool of_week = IsFirst(weeks, WeekNumber(day), kWeeks);
    keep.push_back(keep.size() < kSaves || of_day || of_week);
  }
  return keep;
}

}  // namespace tessaro
