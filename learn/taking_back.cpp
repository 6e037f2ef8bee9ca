#include <algorithm>
#include <utility>

#include "learn/learning_run_state.h"

// Taking answers back exactly. Before an answer does anything, the run's own values and the one card that it can change
// are set aside as an AnswerStep. Taking it back exchanges what was set aside for what is there, so the same exchange
// once more gives the answer again, whatever was done in between. What belongs to no answer (turning, navigation,
// choosing a method) goes with the answer before it.
namespace tessaro {

// Answers to navigation cards are never logged and just lead on, so they are no steps of their own.
void LearningRun::State::BeginStep(AnswerCode code) {
  const Rating rating = RatingOf(code);
  if (rating != Rating::Known && rating != Rating::NotKnown) return;
  if (run.cards.IsCardRow(card.row) && !run.cards.IsNavigation(card.row)) BeginStep(card.row);
}

void LearningRun::State::BeginStep(int row) {
  steps.push_back({Moment(), row, LearnedColumns(file, row), file.learn_index().PlaceOf(row), {}});
  steps_taken_back.clear();
}

void LearningRun::State::TakeBack() {
  Exchange(steps.back());
  steps_taken_back.push_back(std::move(steps.back()));
  steps.pop_back();
  view.Refresh();
}

void LearningRun::State::Restore() {
  Exchange(steps_taken_back.back());
  steps.push_back(std::move(steps_taken_back.back()));
  steps_taken_back.pop_back();
  view.Refresh();
}

// Before the first answer there is nothing that could bring it back. What was taken back would go on in a box whose
// order is no longer there.
void LearningRun::State::SetAside(BoxOrder order) {
  steps_taken_back.clear();
  if (!steps.empty()) steps.back().orders.push_back(std::move(order));
}

RunMoment LearningRun::State::Moment() const {
  return {*this, run, log.state(), checking.position(), row_order.place(), leitner.place()};
}

void LearningRun::State::SetMoment(const RunMoment& moment) {
  static_cast<RunScene&>(*this) = moment.scene;
  static_cast<SelectionState&>(run) = moment.selection;
  log.SetState(moment.log);
  checking.SetPosition(moment.check_position);
  row_order.SetPlace(moment.row_order, file.settings());
  leitner.SetPlace(moment.leitner);
  file.cards().GoTo(card.row);
}

void LearningRun::State::Exchange(AnswerStep& step) {
  const RunMoment moment = std::exchange(step.moment, Moment());
  step.columns = writer.Exchange(step.row, step.columns);
  LearnIndex& index = file.learn_index();
  const LearnIndex::Place place = std::exchange(step.place, index.PlaceOf(step.row));
  index.Restore(place);
  // From the newest to the oldest, and the other way round the next time.
  std::reverse(step.orders.begin(), step.orders.end());
  for (BoxOrder& order : step.orders) leitner.SwapOrder(order);
  SetMoment(moment);
  ++showings;
}

}  // namespace tessaro
