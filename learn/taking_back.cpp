#include <algorithm>
#include <utility>

#include "learn/learning_run.h"

// Taking answers back exactly. Before an answer does anything, the run's moment and the one card that it can change are
// set aside as an AnswerStep. Taking it back exchanges what was set aside for what is there, so the same exchange once
// more gives the answer again, whatever was done in between. What belongs to no answer (turning, navigation, choosing a
// method) goes with the answer before it.
namespace tessaro {

// To be called before anything is done by a command that may carry an answer to the card on screen. Answers to
// navigation cards are never logged and just lead on, so they are no steps of their own.
void LearningRun::BeginStep(Rating rating) {
  const int row = moment_.card.row;
  if (rating != Rating::None && run_.cards.IsCardRow(row) && !run_.cards.IsNavigation(row)) BeginStep(row);
}

// From here on what is done to the card in this row can be taken back.
void LearningRun::BeginStep(int row) {
  steps_.push_back(
      {moment_, row, LearnedColumns(file_, row), file_.learn_index().PlaceOf(row), CardBehind(row), {}, false});
  steps_taken_back_.clear();
}

// The card that follows this one in the index: index rows change when others come and go.
int LearningRun::CardBehind(int row) const {
  const LearnIndex& index = file_.learn_index();
  const int index_row = index.RowOfCard(row);
  return index_row == 0 || index_row + 2 > index.RowCount() ? 0 : index.BoxPos(index_row + 1);
}

// Where the card of a step goes when it is taken out and put back before the card that stood behind it; before those,
// too, that came in between since and have a higher score.
LearnIndex::Place LearningRun::PlaceBefore(const AnswerStep& step) const {
  const LearnIndex& index = file_.learn_index();
  LearnIndex::Place place = step.place;
  if (place.row == 0) return place;
  const int now = index.RowOfCard(step.row);
  const auto row_before = [now](int row) { return row - 1 == now ? row - 2 : row - 1; };
  int behind = step.before == 0 ? index.RowCount() : index.RowOfCard(step.before);
  while (row_before(behind) > 1 && index.Score(row_before(behind)) > place.score) behind = row_before(behind);
  place.row = behind - (now != 0 && now < behind ? 1 : 0);
  return place;
}

StepResult LearningRun::TakeBackAnswer() {
  if (!CanTakeBackAnswer()) return {};
  for (int wanted = 1; wanted > 0 && !steps_.empty(); --wanted) {
    // Before a press of Undo stands the answer that it undid. Without it the next card would come again.
    if (steps_.back().undo) wanted += 2;
    Exchange(steps_.back());
    steps_taken_back_.push_back(std::move(steps_.back()));
    steps_.pop_back();
  }
  return {.drawn_anew = true};
}

StepResult LearningRun::RestoreAnswer() {
  if (!CanRestoreAnswer()) return {};
  Exchange(steps_taken_back_.back());
  steps_.push_back(std::move(steps_taken_back_.back()));
  steps_taken_back_.pop_back();
  return {.drawn_anew = true};
}

// The order that gave way to another one comes back with the step in which that happened. Before the first answer there
// is nothing that could bring it back. What was taken back would go on in a box whose order is no longer there.
void LearningRun::SetAside(BoxOrder order) {
  steps_taken_back_.clear();
  if (!steps_.empty()) steps_.back().orders.push_back(std::move(order));
}

void LearningRun::Exchange(AnswerStep& step) {
  step.columns = writer_.Exchange(step.row, step.columns);
  LearnIndex& index = file_.learn_index();
  const LearnIndex::Place place = PlaceBefore(step);
  step.place = index.PlaceOf(step.row);
  step.before = CardBehind(step.row);
  index.Restore(place);
  left_out_.IndexRowChanged(step.row);
  // From the newest to the oldest, and the other way round the next time.
  std::reverse(step.orders.begin(), step.orders.end());
  for (BoxOrder& order : step.orders) leitner_.SwapOrder(order);
  std::swap(moment_, step.moment);
  row_order_.PutBack(step.moment.row_order, file_.settings());
  GoToCheckCard();
  file_.cards().GoTo(moment_.card.row);
  ++showings_;
}

}  // namespace tessaro
