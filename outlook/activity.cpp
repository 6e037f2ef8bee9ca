#include "outlook/activity.h"

#include <algorithm>

#include "cards/card_reader.h"
#include "outlook/counted_cards.h"

namespace tessaro {
namespace {

constexpr int64_t kWeek = 7;
constexpr int64_t kWeeks = 53;

// Day 0 was a Thursday.
int64_t MondayOf(int64_t day) {
  return day - (day + 3) % kWeek;
}

std::vector<ActivitySpan> SpansUpTo(int64_t today, ActivityPeriod period) {
  std::vector<ActivitySpan> spans;
  const auto add = [&](int64_t first, int64_t count, int64_t days) {
    for (int64_t i = 0; i < count; ++i) spans.push_back({.first_day = first + i * days, .days = days});
  };
  if (period == ActivityPeriod::Year) {
    add(MondayOf(today) - (kWeeks - 1) * kWeek, kWeeks, kWeek);
  } else {
    const int64_t count = period == ActivityPeriod::Month ? 30 : 90;
    add(today - count + 1, count, 1);
  }
  return spans;
}

}  // namespace

ActivityCount::ActivityCount(const CardFile& file, int64_t now, const LocalDays& days, ActivityPeriod period)
    : file_(file),
      now_(now),
      next_row_(kFirstCardRow),
      rows_(file.cards().RowCount()),
      spans_(SpansUpTo(days.DayOf(now), period)) {
  for (const ActivitySpan& span : spans_) starts_.push_back(days.StartOf(span.first_day));
  starts_.push_back(days.StartOf(spans_.back().first_day + spans_.back().days));
}

bool ActivityCount::Step(int count) {
  for (; count > 0 && next_row_ < rows_; --count) Read(next_row_++);
  return next_row_ < rows_;
}

ActivitySpan CountToday(const CardFile& file, int64_t now, const LocalDays& days) {
  const CardReader cards(file);
  ActivitySpan today = {.first_day = days.DayOf(now)};
  const int64_t start = days.StartOf(today.first_day);
  for (int row = kFirstCardRow; row <= cards.LastCardRow(); ++row) {
    // Nearly all cards were answered last on another day.
    if (cards.NewestTime(row) < start) continue;
    const std::optional<AnswerSeries> series = ReadCounted(file, row, now);
    if (!series) continue;
    today.rows.push_back(row);
    for (const StoredAnswer& answer : *series) {
      if (answer.time >= start) ++(answer.known ? today.known : today.missed);
    }
  }
  return today;
}

void ActivityCount::Read(int row) {
  const std::optional<AnswerSeries> series = ReadCounted(file_, row, now_);
  if (!series) return;
  for (const StoredAnswer& answer : *series) {
    const auto after = std::upper_bound(starts_.begin(), starts_.end(), answer.time);
    if (after == starts_.begin() || after == starts_.end()) continue;
    ActivitySpan& span = spans_[static_cast<size_t>(after - starts_.begin() - 1)];
    ++(answer.known ? span.known : span.missed);
    if (span.rows.empty() || span.rows.back() != row) span.rows.push_back(row);
  }
}

}  // namespace tessaro
