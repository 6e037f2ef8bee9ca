#include "outlook/plan.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "outlook/due_count.h"
#include "platform/other_thread.h"

namespace tessaro {
namespace {

constexpr int kMostLearned = 20'000;  // index rows that are learned
constexpr int64_t kMostDates = 60;
constexpr int64_t kCatchUpDays = 90;
constexpr int kCardsForAnAnswer = 20;  // to look at them takes as long

std::vector<int64_t> DatesUpTo(int64_t last) {
  std::vector<int64_t> dates;
  const int64_t step = last / kMostDates + 1;
  for (int64_t day = 0; day < last; day += step) dates.push_back(day);
  dates.push_back(last);
  return dates;
}

// The cards of the first index rows.
std::vector<int> ChosenRows(const LearnIndex& index) {
  std::vector<int> rows;
  const int end = std::min(index.RowCount() - 1, kMostLearned + 1);
  for (int place = kFirstCardRow; place <= end; ++place) rows.push_back(index.BoxPos(place));
  std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  return rows;
}

}  // namespace

Plan::Plan(const CardFile& file, const DeckOutlook& deck, const IniFile& program_settings, const LocalDays& days,
           const PlanWish& wish)
    : file_(file),
      deck_(deck),
      settings_(program_settings),
      days_(days),
      wish_(wish),
      today_(days.DayOf(deck.now)),
      parameters_(ReadParameters(program_settings)),
      chosen_rows_(ChosenRows(file.learn_index())) {
  report_.days = DatesUpTo(std::max<int64_t>(wish.last_day - today_, 0));
  minutes_ = {0, wish.minutes / 2, wish.minutes, wish.minutes * 2};
}

Plan Plan::CatchUp(const CardFile& file, const DeckOutlook& deck, const IniFile& program_settings,
                   const LocalDays& days, double minutes) {
  const int64_t today = days.DayOf(deck.now);
  Plan plan(file, deck, program_settings, days, {today + kCatchUpDays, minutes, 0});
  plan.only_catching_up_ = true;
  plan.minutes_ = {minutes / 2, minutes, minutes * 2};
  return plan;
}

Plan::Plan(Plan&&) noexcept = default;
Plan::~Plan() = default;

int64_t Plan::TimeOf(int64_t day) const {
  return day == 0 ? deck_.now : std::max(days_.HourOf(today_ + day, deck_.session_hour), deck_.now);
}

bool Plan::Step(int count) {
  switch (stage_) {
    case Stage::Copying:
      if (!CopySome(count)) EndCopy();
      break;
    case Stage::Parting:
      if (!PartSome(count * kCardsForAnAnswer)) EndParting();
      break;
    case Stage::Forgetting:
      if (!ForgetSome(count * kCardsForAnAnswer)) BeginCurve();
      break;
    case Stage::Evaluating:
      if (!EvaluateSome(count * kCardsForAnAnswer)) EndDate();
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

bool Plan::CopySome(int count) {
  for (; count > 0 && next_ < chosen_rows_.size(); --count) CopyCard(chosen_rows_[next_++]);
  return next_ < chosen_rows_.size();
}

void Plan::CopyCard(int row) {
  const CardTrace* trace = deck_.TraceOf(row);
  if (trace == nullptr) {
    if (std::binary_search(deck_.new_rows.begin(), deck_.new_rows.end(), row)) start_->new_rows.push_back(row);
    return;
  }
  if (DueTimeOf(file_, *trace, parameters_, deck_.now) < deck_.now) start_->overdue.push_back(start_->rows.size());
  start_->rows.push_back(row);
  start_->traces.push_back(*trace);
  copy_.Add(CardReader(file_), row);
}

void Plan::EndCopy() {
  start_->text = copy_.Take();
  ReadNextDeck();
  report_.partial = static_cast<int64_t>(start_->rows.size() + start_->new_rows.size()) < deck_.counted();
  next_ = 0;
  // To catch up concerns only what is learned.
  stage_ = Stage::Parting;
  if (only_catching_up_ || !report_.partial) EndParting();
}

// Those that are learned from those that only forget; both lists go by row.
bool Plan::PartSome(int count) {
  for (; count > 0 && next_ < deck_.answered.size(); --count) {
    const CardTrace& trace = deck_.answered[next_++];
    while (passed_ < start_->rows.size() && start_->rows[passed_] < trace.row) ++passed_;
    if (passed_ == start_->rows.size() || start_->rows[passed_] != trace.row) others_.push_back(&trace);
  }
  return next_ < deck_.answered.size();
}

void Plan::EndParting() {
  next_ = 0;
  GoToDate(0);
  stage_ = Stage::Forgetting;
  if (only_catching_up_) BeginCurve();
}

void Plan::GoToDate(size_t date) {
  date_ = date;
  if (date < report_.days.size()) time_ = TimeOf(report_.days[date]);
}

// What happens to the cards that are never learned is the same in all curves.
bool Plan::ForgetSome(int count) {
  const bool last = date_ + 1 == report_.days.size();
  for (; count > 0 && next_ < others_.size(); --count, ++next_) {
    const double recall = RecallAt(*others_[next_], deck_.weights, time_);
    sum_ += recall;
    if (last && recall < PlanReport::kWeak) others_weak_.push_back(others_[next_]->row);
  }
  if (next_ < others_.size()) return true;
  others_known_.push_back(std::exchange(sum_, 0));
  next_ = 0;
  GoToDate(date_ + 1);
  return date_ < report_.days.size();
}

// A deck of 20,000 cards takes longer to read than windows may wait.
void Plan::ReadNextDeck() {
  next_deck_ = std::async(OnOtherThread(), [&text = start_->text] { return std::make_unique<CopiedDeck>(text); });
}

void Plan::BeginCurve() {
  const double minutes = minutes_[report_.curves.size()];
  report_.curves.push_back({.minutes = minutes, .known = {}, .weak_rows = {}});
  session_ = std::make_unique<PlanSession>(*start_, next_deck_.get(), deck_, settings_);
  if (report_.curves.size() < minutes_.size()) ReadNextDeck();
  GoToDate(0);
  day_ = 0;
  stage_ = Stage::Evaluating;
  if (only_catching_up_) BeginDay();
}

bool Plan::EvaluateSome(int count) {
  const bool last = date_ + 1 == report_.days.size();
  const std::vector<MemoryTrace>& traces = session_->traces();
  for (; count > 0 && next_ < traces.size(); --count, ++next_) {
    if (traces[next_].answers == 0) continue;
    const double recall = RecallAt(traces[next_], deck_.weights, time_);
    sum_ += recall;
    if (last && recall < PlanReport::kWeak) report_.curves.back().weak_rows.push_back(session_->RowOf(next_));
  }
  if (next_ < traces.size()) return true;
  report_.curves.back().known.push_back(std::exchange(sum_, 0) + others_known_[date_]);
  next_ = 0;
  return false;
}

void Plan::EndDate() {
  GoToDate(date_ + 1);
  if (date_ == report_.days.size()) return EndCurve();
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
  std::vector<int>& weak = report_.curves.back().weak_rows;
  // New cards stand behind the others.
  std::sort(weak.begin(), weak.end());
  const auto own = static_cast<std::ptrdiff_t>(weak.size());
  weak.insert(weak.end(), others_weak_.begin(), others_weak_.end());
  std::inplace_merge(weak.begin(), weak.begin() + own, weak.end());
  session_.reset();
  stage_ = Stage::Done;
  if (report_.curves.size() < minutes_.size()) BeginCurve();
}

}  // namespace tessaro
