#include "learn/learning_run.h"

#include <utility>

#include "platform/saturating.h"
#include "settings/keys.h"

namespace tessaro {

LearningRun::LearningRun(CardFile& file, const IniFile& program_settings, const Clock& clock, Random& random)
    : file_(file), clock_(clock), parameters_(ReadParameters(program_settings)), run_{file_,  parameters_, log_,
                                                                                      random, left_out_,   moment_,
                                                                                      result_} {
  moment_.width = parameters_.max_width;
  moment_.check_position = keys::kCheckPosition.Read(file_.settings());
}

StepResult LearningRun::Start(Destination first) {
  log_.RecountUnknown();
  return Leave(Rating::None, first);
}

void LearningRun::KeepPositions() {
  keys::kCheckPosition.Write(moment_.check_position, file_.settings());
  row_order_.Keep(file_.settings());
}

StepResult LearningRun::Answer(Rating rating, int days) {
  if (moment_.answered || ended_) return {};
  if (moment_.card.row == 0) return ShowNext();
  BeginStep(rating);
  // Set before the step, which takes it back with the next card on screen.
  moment_.answered = true;
  log_.SetMinRetention(days * kSecondsPerDay);
  Step(rating, moment_.return_after_answer ? Destination::Back : Destination::Method);
  log_.SetMinRetention(0);
  return TakeResult();
}

StepResult LearningRun::Leave(Rating rating, Destination destination, int row) {
  if (ended_) return {};
  BeginStep(rating);
  Step(rating, destination, row);
  return TakeResult();
}

StepResult LearningRun::FollowLink(int64_t id, Rating rating) {
  if (ended_) return {};
  BeginStep(rating);
  // The way back leads to the first card with the number of this one.
  moment_.back.Push(file_.RowOfId(LeadingNumber(run_.cards.Id(moment_.card.row))));
  Step(rating, Destination::Link, file_.RowOfId(id));
  return TakeResult();
}

StepResult LearningRun::Undo() {
  const int row = ended_ ? 0 : log_.UndoRow();
  if (row == 0) return {};
  BeginStep(row);
  steps_.back().undo = true;
  log_.Undo();
  Step(Rating::None, Destination::Undone, row);
  return TakeResult();
}

StepResult LearningRun::ShowNextIfNone() {
  return moment_.card.row == 0 ? ShowNext() : StepResult{};
}

bool LearningRun::AsksBeforeLeaving() const {
  return moment_.card.by_link && !moment_.card.navigation && !moment_.answered && !ended_;
}

std::optional<int64_t> LearningRun::DueInIfKnown() const {
  const int64_t now = clock_.Now();
  const std::optional<int64_t> score = log_.ScoreIfKnown(moment_.card.row, moment_.marks, now);
  if (!score || moment_.answered || ended_) return std::nullopt;
  return SaturatingSubtract(DueTime(now, *score, parameters_), now);
}

StepResult LearningRun::Turn() {
  moment_.first_side = !moment_.first_side;
  return {.drawn_anew = true};
}

std::string_view LearningRun::side_text() const {
  return question_shown() ? run_.cards.Question(moment_.card.row) : run_.cards.Answer(moment_.card.row);
}

std::string_view LearningRun::other_side_text() const {
  return question_shown() ? run_.cards.Answer(moment_.card.row) : run_.cards.Question(moment_.card.row);
}

void LearningRun::SetMethod(Method method) {
  if (method == Method::Leitner && moment_.leitner.box == 0) return;
  moment_.leitner_on = method == Method::Leitner;
  if (method != Method::Leitner) moment_.row_order_on = method == Method::RowOrder;
}

Method LearningRun::method() const {
  if (moment_.leitner_on) return Method::Leitner;
  return moment_.row_order_on ? Method::RowOrder : Method::Standard;
}

void LearningRun::StartBox(LeitnerBox box) {
  SetAside(leitner_.Start(std::move(box)));
  SetMethod(Method::Leitner);
}

StepResult LearningRun::Set(bool RunOptions::*option, bool on) {
  options_.*option = on;
  run_.no_new_cards = options_.no_new_cards;
  run_.time_lock = options_.time_lock;
  if (option == &RunOptions::time_lock && !on) moment_.figures.width = moment_.width = parameters_.max_width;
  return {.drawn_anew = option == &RunOptions::inverse || option == &RunOptions::swapped};
}

}  // namespace tessaro
