#pragma once

#include <cstdint>
#include <vector>

#include "outlook/deck_outlook.h"
#include "settings/learning_parameters.h"

namespace tessaro {

// Cards that come due together, and the time that they will take.
struct DueSpan {
  enum class Kind { Overdue, Today, Days, Later };
  Kind kind = Kind::Days;
  int64_t first_day = 0;  // see LocalDays; of Days, and the day of Today
  int64_t days = 1;
  double minutes = 0;
  std::vector<int> rows = {};
};

// When a card is due: the time of the due rule, and before `now` for one that was not known or has no retention time.
int64_t DueTimeOf(const CardFile& file, const CardTrace& trace, const LearningParameters& parameters, int64_t now);

// Counts in steps, as OutlookReading does, which cards come due when. Every answered card is in one span.
class DueCount {
 public:
  // For 7, 30, 90 or 365 days after today, from 90 on in spans of a week. `file` and `deck` must live longer.
  DueCount(const CardFile& file, const DeckOutlook& deck, const LearningParameters& parameters, const LocalDays& days,
           int64_t horizon);
  // Looks at so many cards; false when all are counted.
  bool Step(int count);
  // Overdue, today, the spans, later.
  std::vector<DueSpan> Take() { return std::move(spans_); }
  // The first due time that has not come yet; 0 = none.
  int64_t next_due() const { return next_due_; }

 private:
  void Read(const CardTrace& trace);
  size_t SpanOf(int64_t due) const;

  const CardFile& file_;
  const DeckOutlook& deck_;
  LearningParameters parameters_;
  std::vector<DueSpan> spans_;
  std::vector<int64_t> ends_;  // of today, and of the spans after it
  size_t next_ = 0;
  int64_t next_due_ = 0;
};

}  // namespace tessaro
