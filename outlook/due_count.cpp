#include "outlook/due_count.h"

#include <algorithm>

#include "cards/card_reader.h"
#include "cards/due_rule.h"

namespace tessaro {
namespace {

constexpr int64_t kWeek = 7;
constexpr int64_t kWeeksFrom = 90;

}  // namespace

int64_t DueTimeOf(const CardFile& file, const CardTrace& trace, const LearningParameters& parameters, int64_t now) {
  const int64_t score = CardReader(file).Score(trace.row);
  return trace.newest_known && score != 0 ? DueTime(trace.newest, score, parameters) : now - 1;
}

DueCount::DueCount(const CardFile& file, const DeckOutlook& deck, const LearningParameters& parameters,
                   const LocalDays& days, int64_t horizon)
    : file_(file), deck_(deck), parameters_(parameters) {
  const int64_t today = days.DayOf(deck.now);
  const int64_t width = horizon >= kWeeksFrom ? kWeek : 1;
  spans_.push_back({.kind = DueSpan::Kind::Overdue});
  spans_.push_back({.kind = DueSpan::Kind::Today, .first_day = today});
  ends_.push_back(days.StartOf(today + 1));
  for (int64_t day = 1; day <= horizon; day += width) {
    const int64_t count = std::min(width, horizon - day + 1);
    spans_.push_back({.first_day = today + day, .days = count});
    ends_.push_back(days.StartOf(today + day + count));
  }
  spans_.push_back({.kind = DueSpan::Kind::Later});
}

size_t DueCount::SpanOf(int64_t due) const {
  if (due < deck_.now) return 0;
  return 1 + static_cast<size_t>(std::upper_bound(ends_.begin(), ends_.end(), due) - ends_.begin());
}

bool DueCount::Step(int count) {
  for (; count > 0 && next_ < deck_.answered.size(); --count) Read(deck_.answered[next_++]);
  return next_ < deck_.answered.size();
}

void DueCount::Read(const CardTrace& trace) {
  const int64_t due = DueTimeOf(file_, trace, parameters_, deck_.now);
  if (due >= deck_.now) next_due_ = next_due_ == 0 ? due : std::min(next_due_, due);
  DueSpan& span = spans_[SpanOf(due)];
  span.rows.push_back(trace.row);
  const double recall = RecallAt(trace, deck_.weights, std::max(due, deck_.now));
  span.minutes += deck_.seconds_per_answer / 60 * (1 + (1 - recall) * deck_.repeats_after_miss);
}

}  // namespace tessaro
