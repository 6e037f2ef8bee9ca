#include "learn/answer_log.h"

#include "platform/saturating.h"

namespace tessaro {
namespace {

constexpr int64_t kLongestPause = 180;  // seconds; who takes longer was away
constexpr int64_t kTimeWhenAway = 20;   // seconds counted then

}  // namespace

bool AnswerLog::BeginStep(int64_t now) {
  if (previous_step_ && now < *previous_step_) return false;
  previous_step_ = now;
  return true;
}

// A known card that was shown before it was due.
bool AnswerLog::LeavesNoTrace(const CardReader& cards, int row, Rating rating, const CardMarks& marks) {
  return marks.early && rating == Rating::Known && cards.Score(row) > 0 && cards.NewestTime(row) > 0;
}

LogReport AnswerLog::Log(int row, Rating rating, CardMarks& marks, int64_t now) {
  LogReport report;
  const CardReader cards(file_);
  if (cards.IsNavigation(row)) return report;
  if (LeavesNoTrace(cards, row, rating, marks)) {
    marks.early = false;
    return report;
  }
  const int64_t spent = TimeSpent(now);
  if (rating == Rating::None || !cards.IsCardRow(row) || cards.HasEndMark(row)) return report;
  AnswerContext context = ContextOf(row, rating == Rating::Known, marks.no_history, now);
  context.spent = spent;
  WriteAnswer(row, context, report);
  return report;
}

std::optional<int64_t> AnswerLog::ScoreIfKnown(int row, const CardMarks& marks, int64_t now) const {
  const CardReader cards(file_);
  if (!cards.IsCardRow(row) || cards.HasEndMark(row) || cards.IsNavigation(row)) return std::nullopt;
  if (LeavesNoTrace(cards, row, Rating::Known, marks)) return std::nullopt;
  const AnswerOutcome outcome = ComputeAnswer(ContextOf(row, true, marks.no_history, now));
  return outcome.times_out_of_order ? std::nullopt : std::optional(outcome.score);
}

int64_t AnswerLog::TimeSpent(int64_t now) {
  const int64_t pause = state_.previous_answer ? SaturatingSubtract(now, *state_.previous_answer) : 0;
  state_.previous_answer = now;
  return pause > kLongestPause ? kTimeWhenAway : pause;
}

AnswerContext AnswerLog::ContextOf(int row, bool known, bool keep_history, int64_t now) const {
  const CardReader cards(file_);
  AnswerContext context;
  context.known = known;
  context.now = now;
  context.min_retention = min_retention_;
  context.keep_history = keep_history;
  context.history = cards.History(row);
  context.score = cards.Score(row);
  context.time_learned = cards.TimeLearned(row);
  context.unknown_count = state_.unknown_count;
  return context;
}

void AnswerLog::WriteAnswer(int row, const AnswerContext& context, LogReport& report) {
  const CardReader cards(file_);
  AnswerOutcome outcome = ComputeAnswer(context);

  writer_.Write(row, outcome.change);
  state_.last =
      AnswerLogState::LoggedAnswer{row, std::string(cards.Id(row)), context.keep_history, state_.unknown_count};
  // A superfluous variant is none of the unknown cards.
  if (!cards.IsNeverChosen(row)) state_.unknown_count = outcome.unknown_count;
  ++state_.answered;
  report.logged = true;
  report.wiped = outcome.wiped;
  report.times_out_of_order = outcome.times_out_of_order;
  if (report.times_out_of_order) return;
  UpdateIndex(row, outcome.score, report);
  state_.statistics = AnswerStatistics{row, outcome.history, outcome.forecast, outcome.score};
}

void AnswerLog::UpdateIndex(int row, int64_t score, LogReport& report) {
  LearnIndex& index = file_.learn_index();
  report.index_fault = index.RowOfCard(row) == 0;
  index.Update(row, score);
}

int AnswerLog::UndoRow() const {
  return state_.last && CardReader(file_).Id(state_.last->row) == state_.last->id ? state_.last->row : 0;
}

int AnswerLog::Undo() {
  const int row = UndoRow();
  if (row == 0) return 0;
  writer_.Write(row, ComputeUndo(CardReader(file_), row, state_.last->kept_history));
  state_.unknown_count = state_.last->unknown_count;
  --state_.answered;
  state_.last.reset();
  state_.statistics.reset();
  return row;
}

}  // namespace tessaro
