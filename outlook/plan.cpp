#include "outlook/plan.h"

#include <algorithm>
#include <utility>

#include "outlook/counted_cards.h"

namespace tessaro {
namespace {

constexpr int kMostLearned = 20'000;  // index rows that are learned
constexpr int64_t kMostDates = 60;
constexpr int64_t kCatchUpDays = 90;

std::vector<int64_t> DatesUpTo(int64_t last) {
  std::vector<int64_t> dates;
  const int64_t step = last / kMostDates + 1;
  for (int64_t day = 0; day < last; day += step) dates.push_back(day);
  dates.push_back(last);
  return dates;
}

// The cards of the first index rows that may be learned, by row.
std::vector<int> LearnedRows(const CardFile& file, const DeckOutlook& deck) {
  const LearnIndex& index = file.learn_index();
  const CardReader cards(file);
  std::vector<int> rows;
  const int end = std::min(index.RowCount() - 1, kMostLearned + 1);
  for (int place = kFirstCardRow; place <= end; ++place) {
    const int row = index.BoxPos(place);
    const bool is_new = std::binary_search(deck.new_rows.begin(), deck.new_rows.end(), row);
    if (is_new || deck.TraceOf(row) != nullptr) rows.push_back(row);
  }
  std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  return rows;
}

}  // namespace

Plan::Plan(const CardFile& file, const DeckOutlook& deck, const IniFile& program_settings, const LocalDays& days,
           const PlanWish& wish)
    : file_(file), deck_(deck), settings_(program_settings), days_(days), wish_(wish), today_(days.DayOf(deck.now)) {
  learned_rows_ = LearnedRows(file, deck);
  for (const CardTrace& trace : deck.answered) {
    if (!std::binary_search(learned_rows_.begin(), learned_rows_.end(), trace.row)) others_.push_back(&trace);
  }
  report_.days = DatesUpTo(std::max<int64_t>(wish.last_day - today_, 0));
  report_.partial = static_cast<int64_t>(learned_rows_.size()) < deck.counted();
  minutes_ = {0, wish.minutes / 2, wish.minutes, wish.minutes * 2};
}

Plan Plan::CatchUp(const CardFile& file, const DeckOutlook& deck, const IniFile& program_settings,
                   const LocalDays& days, double minutes) {
  const int64_t today = days.DayOf(deck.now);
  Plan plan(file, deck, program_settings, days, {today + kCatchUpDays, minutes, 0});
  plan.only_catching_up_ = true;
  plan.minutes_ = {minutes / 2, minutes, minutes * 2};
  plan.BeginCurve();
  return plan;
}

Plan::Plan(Plan&&) noexcept = default;
Plan::~Plan() = default;

int64_t Plan::TimeOf(int64_t day) const {
  return day == 0 ? deck_.now : std::max(days_.HourOf(today_ + day, deck_.session_hour), deck_.now);
}

bool Plan::Step(int count) {
  switch (stage_) {
    case Stage::Forgetting:
      if (!ForgetSome(count)) BeginCurve();
      break;
    case Stage::Evaluating:
      if (!EvaluateSome(count)) EndDate();
      break;
    case Stage::Learning:
      if (!LearnSome(count)) EndDay();
      break;
    case Stage::Done:
      break;
  }
  return stage_ != Stage::Done;
}

PlanReport Plan::Take() {
  return std::move(report_);
}

// What happens to the cards that are never learned is the same in all curves.
bool Plan::ForgetSome(int count) {
  const int64_t time = TimeOf(report_.days[date_]);
  const bool last = date_ + 1 == report_.days.size();
  for (; count > 0 && next_ < others_.size(); --count, ++next_) {
    const double recall = RecallAt(*others_[next_], deck_.weights, time);
    sum_ += recall;
    if (last && recall < PlanReport::kWeak) others_weak_.push_back(others_[next_]->row);
  }
  if (next_ < others_.size()) return true;
  others_known_.push_back(std::exchange(sum_, 0));
  next_ = 0;
  return ++date_ < report_.days.size();
}

void Plan::BeginCurve() {
  const double minutes = minutes_[report_.curves.size()];
  report_.curves.push_back({.minutes = minutes, .known = {}, .weak_rows = others_weak_});
  session_ = std::make_unique<PlanSession>(file_, deck_, settings_, learned_rows_);
  date_ = 0;
  day_ = 0;
  stage_ = Stage::Evaluating;
  if (only_catching_up_) BeginDay();
}

bool Plan::EvaluateSome(int count) {
  const int64_t time = TimeOf(report_.days[date_]);
  const bool last = date_ + 1 == report_.days.size();
  const std::vector<MemoryTrace>& traces = session_->traces();
  for (; count > 0 && next_ < traces.size(); --count, ++next_) {
    if (traces[next_].answers == 0) continue;
    const double recall = RecallAt(traces[next_], deck_.weights, time);
    sum_ += recall;
    if (last && recall < PlanReport::kWeak) report_.curves.back().weak_rows.push_back(learned_rows_[next_]);
  }
  if (next_ < traces.size()) return true;
  report_.curves.back().known.push_back(std::exchange(sum_, 0) + others_known_[date_]);
  next_ = 0;
  return false;
}

void Plan::EndDate() {
  if (++date_ == report_.days.size()) return EndCurve();
  if (report_.curves.back().minutes > 0) return BeginDay();
  day_ = report_.days[date_];
}

void Plan::BeginDay() {
  session_->Begin(TimeOf(day_), report_.curves.back().minutes, wish_.new_cards);
  stage_ = Stage::Learning;
}

bool Plan::LearnSome(int count) {
  for (; count > 0; --count) {
    if (!session_->Answer()) return false;
  }
  return true;
}

void Plan::EndDay() {
  PlanCurve& curve = report_.curves.back();
  ++day_;
  if (only_catching_up_) {
    if (session_->CaughtUp()) curve.caught_up = day_;
    return curve.caught_up > 0 || day_ == kCatchUpDays ? EndCurve() : BeginDay();
  }
  if (day_ < report_.days[date_]) return BeginDay();
  stage_ = Stage::Evaluating;
}

void Plan::EndCurve() {
  std::sort(report_.curves.back().weak_rows.begin(), report_.curves.back().weak_rows.end());
  session_.reset();
  stage_ = Stage::Done;
  if (report_.curves.size() < minutes_.size()) BeginCurve();
}

}  // namespace tessaro
