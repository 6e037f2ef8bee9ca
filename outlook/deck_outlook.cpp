#include "outlook/deck_outlook.h"

#include <algorithm>

#include "outlook/counted_cards.h"
#include "platform/saturating.h"

namespace tessaro {
namespace {

constexpr double kUsualSeconds = 8;  // for an answer, as long as too few were timed
constexpr int64_t kTimedAnswers = 50;
constexpr double kLeastSeconds = 2;
constexpr double kMostSeconds = 120;
constexpr double kUsualRepeats = 1;
constexpr int kUsualHour = 18;

bool CostsMore(const CardCost& a, const CardCost& b) {
  return a.seconds != b.seconds ? a.seconds > b.seconds : a.row < b.row;
}

int MedianHour(const std::array<int64_t, 24>& by_hour) {
  int64_t all = 0;
  for (const int64_t count : by_hour) all += count;
  if (all == 0) return kUsualHour;
  int hour = 0;
  for (int64_t so_far = by_hour[0]; so_far * 2 < all; so_far += by_hour[static_cast<size_t>(hour)]) ++hour;
  return hour;
}

}  // namespace

double DeckOutlook::FirstSight() const {
  return (static_cast<double>(first_known) + 2) / (static_cast<double>(answered.size()) + 5);
}

const CardTrace* DeckOutlook::TraceOf(int row) const {
  const auto found = std::lower_bound(answered.begin(), answered.end(), row,
                                      [](const CardTrace& trace, int wanted) { return trace.row < wanted; });
  return found != answered.end() && found->row == row ? &*found : nullptr;
}

OutlookReading::OutlookReading(const CardFile& file, int64_t now, const LocalDays& days)
    : file_(file), days_(days), rows_(file.cards().RowCount()), next_row_(kFirstCardRow) {
  deck_.now = now;
  // Growing step by step would copy tens of megabytes within one step.
  deck_.answered.reserve(static_cast<size_t>(std::max(rows_, 0)));
}

bool OutlookReading::Step(int count) {
  if (fit_ != nullptr) return fit_->Step(static_cast<size_t>(count));
  for (; count > 0 && next_row_ < rows_; --count) Read(next_row_++);
  if (next_row_ >= rows_) FinishReading();
  return true;
}

void OutlookReading::Read(int row) {
  CountedCards cards(file_);
  if (!cards.Find(row)) return;
  const AnswerSeries series = cards.Answers();
  if (series.count == 0) {
    deck_.new_rows.push_back(row);
    return;
  }
  if (series.Newest().time > deck_.now) {
    deck_.future_rows.push_back(row);
    return;
  }
  deck_.answered.push_back({TraceOf(series), row});
  samples_.AddCard(series);
  CountAnswers(series);
  CountCost(row, cards.TimeLearned(), series.count);
}

void OutlookReading::CountAnswers(const AnswerSeries& series) {
  deck_.answers += series.count;
  deck_.first_known += series.Oldest().known ? 1 : 0;
  deck_.full_histories += series.count == kHistoryLength ? 1 : 0;
  deck_.newest = std::max(deck_.newest, series.Newest().time);
  int64_t day_end = 0;
  bool missed = false;
  for (const StoredAnswer& answer : series) {
    const int64_t day = days_.DayOf(answer.time);
    const int64_t hour = (answer.time - days_.StartOf(day)) / 3600;
    ++by_hour_[static_cast<size_t>(std::clamp<int64_t>(hour, 0, 23))];
    if (missed && answer.time < day_end) {
      ++repeats_;
      continue;
    }
    missed = !answer.known;
    if (!missed) continue;
    day_end = days_.StartOf(day + 1);
    ++miss_days_;
  }
}

void OutlookReading::CountCost(int row, int64_t seconds, int answers) {
  if (seconds <= 0) return;
  deck_.seconds_learned = SaturatingAdd(deck_.seconds_learned, seconds);
  if (answers < kHistoryLength) {
    timed_seconds_ = SaturatingAdd(timed_seconds_, seconds);
    timed_answers_ += answers;
  }
  const CardCost cost = {row, seconds};
  std::vector<CardCost>& costs = deck_.costs;
  if (costs.size() == DeckOutlook::kCosts) {
    if (!CostsMore(cost, costs.back())) return;
    costs.pop_back();
  }
  costs.insert(std::upper_bound(costs.begin(), costs.end(), cost, CostsMore), cost);
}

void OutlookReading::FinishReading() {
  const double measured =
      static_cast<double>(timed_seconds_) / static_cast<double>(std::max<int64_t>(timed_answers_, 1));
  deck_.seconds_per_answer =
      timed_answers_ < kTimedAnswers ? kUsualSeconds : std::clamp(measured, kLeastSeconds, kMostSeconds);
  deck_.repeats_after_miss =
      miss_days_ == 0 ? kUsualRepeats : static_cast<double>(repeats_) / static_cast<double>(miss_days_);
  deck_.session_hour = MedianHour(by_hour_);
  fit_ = std::make_unique<RecallFit>(samples_.TakeSamples());
}

DeckOutlook OutlookReading::Take() {
  if (fit_ != nullptr) deck_.weights = fit_->weights();
  return std::move(deck_);
}

}  // namespace tessaro
