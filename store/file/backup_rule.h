#pragma once

#include <tuple>
#include <vector>

namespace tessaro {

// A moment as the clock on the wall shows it: what a person understands by "that day".
struct LocalTime {
  int year = 1970;
  int month = 1;  // 1 ... 12
  int day = 1;    // 1 ... 31
  int hour = 0;
  int minute = 0;
  int second = 0;
  bool operator==(const LocalTime&) const = default;
  bool operator<(const LocalTime& other) const {
    return std::tie(year, month, day, hour, minute, second) <
           std::tie(other.year, other.month, other.day, other.hour, other.minute, other.second);
  }
};

// Which of the dated copies of a card file are kept: those of the last 10 saves, the last one of each of the last 10
// days on which there was a save, and the last one of each of the last 10 such weeks (from Monday on).
//
// `saves` is in the order in which they were made, the newest first, whatever their times say; the answer stands beside
// it. Days and weeks without a save do not count, and the present time is not asked for: a clock that was wrong for one
// save thus costs at most a place among the days, and a long pause nothing. The newest copy is always kept.
std::vector<bool> GenerationsToKeep(const std::vector<LocalTime>& saves);

}  // namespace tessaro
