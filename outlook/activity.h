#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "outlook/recall.h"
#include "platform/local_days.h"
#include "store/file/card_file.h"

namespace tessaro {

// What was answered from one local day on, up to the next span of it.
struct ActivitySpan {
  int64_t first_day = 0;  // see LocalDays
  int64_t days = 1;
  int64_t known = 0;
  int64_t missed = 0;
  std::vector<int> rows = {};  // the cards answered, each once
  int64_t answers() const { return known + missed; }
};

enum class ActivityPeriod { Month, Quarter, Year };  // 30 days, 90 days, 53 weeks from Monday to Sunday

// Counts in steps, as OutlookReading does, what was done up to now. Cards answered last later than now are left out.
class ActivityCount {
 public:
  // `file` must live longer.
  ActivityCount(const CardFile& file, int64_t now, const LocalDays& days, ActivityPeriod period);
  // Looks at so many cards; false when all are counted.
  bool Step(int count);
  // The newest span is the last one.
  std::vector<ActivitySpan> Take() { return std::move(spans_); }

 private:
  void Read(int row);

  const CardFile& file_;
  int64_t now_;
  int next_row_;
  int rows_;
  std::vector<ActivitySpan> spans_;
  std::vector<int64_t> starts_;  // of the spans, and the end of the last one
};

// What was answered on the day of `now`. Looks at the newest answer of all cards.
ActivitySpan CountToday(const CardFile& file, int64_t now, const LocalDays& days);

}  // namespace tessaro
