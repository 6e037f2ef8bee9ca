#include <algorithm>
#include <array>
#include <limits>
#include <span>

#include "learn/learning_run.h"

// How a run follows its cards when others come and go, and when texts change. Everything that holds a row is mapped;
// what is held for taking answers back as well.
namespace tessaro {

int64_t MappedOrNext(const RowShift& shift, int64_t row) {
  // Removed rows stand close together, and behind the last row there is none.
  for (int64_t next = row; next > 0 && next <= std::numeric_limits<int>::max(); ++next) {
    if (const int now = shift.Map(static_cast<int>(next)); now != 0) return now;
  }
  return row;
}

void LearningRun::RowsWillShift(const RowShift& shift) {
  if (shift.removed().empty()) return;
  KeepPlacesBeside(shift, steps_);
  KeepPlacesBeside(shift, steps_taken_back_);
  // A card that goes hands the checking position to the one before it.
  const LearnIndex& index = file_.learn_index();
  int row = static_cast<int>(std::min<int64_t>(moment_.check_position, index.RowCount() - 1));
  while (row > 1 && shift.Map(index.BoxPos(row)) == 0) --row;
  if (row < moment_.check_position && moment_.check_card != 0) {
    moment_.check_position = row;
    NoteCheckCard();
  }
}

// A card goes back before the one that stood behind it in the index. Where that one goes, the next one that stays takes
// its place: next in the index of that moment, so the index is led through the steps and back.
void LearningRun::KeepPlacesBeside(const RowShift& shift, std::deque<AnswerStep>& steps) {
  const auto goes = [&shift](int row) { return row != 0 && shift.Map(row) == 0; };
  if (std::ranges::none_of(steps, [&](const AnswerStep& step) { return goes(step.before); })) return;
  LearnIndex& index = file_.learn_index();
  std::vector<LearnIndex::Place> way_back;
  for (auto step = steps.rbegin(); step != steps.rend(); ++step) {
    way_back.push_back(index.PlaceOf(step->row));
    index.Restore(PlaceBefore(*step));
    while (goes(step->before)) step->before = CardBehind(step->before);
  }
  for (; !way_back.empty(); way_back.pop_back()) index.Restore(way_back.back());
}

void LearningRun::RowsShifted(const RowShift& shift) {
  writer_.ForgetCount();
  landmarks_.Forget();
  left_out_.Follow(shift);
  DropStepsThatLose(shift);
  for (AnswerStep& step : steps_) Follow(shift, step);
  for (AnswerStep& step : steps_taken_back_) Follow(shift, step);
  Follow(shift, moment_);
  row_order_.Follow(shift, file_.settings());
  leitner_.Follow(shift);
  GoToCheckCard();
}

void LearningRun::CardsChanged(std::span<const int> rows, std::span<const int> columns) {
  const CardColumns& known = file_.columns();
  const auto changed = [&](int column) { return std::ranges::find(columns, column) != columns.end(); };
  writer_.ForgetCount();
  landmarks_.Forget();
  left_out_.TextsChanged(rows);
  const std::array learned = {known.topic, known.yes_no_row, known.time_row, known.score, known.time_learned};
  if (std::ranges::any_of(learned, changed)) {
    steps_.clear();
    steps_taken_back_.clear();
  }
  if (!changed(known.id)) return GoToCheckCard();
  // It is the same card under another number.
  const auto renumber = [&](RunMoment& moment) {
    auto& last = moment.log.last;
    if (last && std::ranges::binary_search(rows, last->row)) last->id = run_.cards.Id(last->row);
  };
  renumber(moment_);
  for (AnswerStep& step : steps_) renumber(step.moment);
  for (AnswerStep& step : steps_taken_back_) renumber(step.moment);
  GoToCheckCard();
}

void LearningRun::IndexesRebuilt() {
  left_out_.SortByIndex();
  GoToCheckCard();
}

void LearningRun::CardsReplaced() {
  writer_.ForgetCount();
  landmarks_.Forget();
  left_out_.FindAll();
  steps_.clear();
  steps_taken_back_.clear();
  if (!run_.cards.IsCardRow(moment_.card.row)) moment_.card = {};
}

void LearningRun::NoteCheckCard() {
  const LearnIndex& index = file_.learn_index();
  const int64_t position = moment_.check_position;
  moment_.check_card = position > 1 && position < index.RowCount() ? index.BoxPos(static_cast<int>(position)) : 0;
}

// Where that card is gone, or has left the index, the number stays.
void LearningRun::GoToCheckCard() {
  const int row = moment_.check_card == 0 ? 0 : file_.learn_index().RowOfCard(moment_.check_card);
  if (row != 0) moment_.check_position = row;
  moment_.figures.check_count = moment_.check_position - 1;
}

void LearningRun::Follow(const RowShift& shift, RunMoment& moment) const {
  const int shown = shift.Map(moment.card.row);
  if (shown == 0) moment.card = {};
  moment.card.row = shown;
  moment.back.Follow(shift);
  moment.check_card = shift.Map(moment.check_card);
  moment.row_order.position = MappedOrNext(shift, moment.row_order.position);
  if (moment.row_order.kept) moment.row_order.kept = MappedOrNext(shift, *moment.row_order.kept);
  moment.leitner.scan_row = static_cast<int>(MappedOrNext(shift, moment.leitner.scan_row));
  if (moment.log.last) {
    moment.log.last->row = shift.Map(moment.log.last->row);
    if (moment.log.last->row == 0) moment.log.last.reset();
  }
  if (moment.log.statistics) {
    moment.log.statistics->row = shift.Map(moment.log.statistics->row);
    if (moment.log.statistics->row == 0) moment.log.statistics.reset();
  }
}

void LearningRun::Follow(const RowShift& shift, AnswerStep& step) const {
  Follow(shift, step.moment);
  step.row = step.place.card_row = shift.Map(step.row);
  step.before = shift.Map(step.before);
  for (BoxOrder& order : step.orders) LeitnerMethod::Follow(shift, order);
}

// A step whose card is gone cannot be taken back any more, nor one that would show a card that is gone.
bool LearningRun::Loses(const RowShift& shift, const AnswerStep& step) {
  const auto gone = [&shift](int row) { return row != 0 && shift.Map(row) == 0; };
  return gone(step.row) || gone(step.moment.card.row);
}

// With it go all that would have to be taken back, or given again, after it.
void LearningRun::DropStepsThatLose(const RowShift& shift) {
  const auto loses = [&shift](const AnswerStep& step) { return Loses(shift, step); };
  for (std::deque<AnswerStep>* steps : {&steps_, &steps_taken_back_}) {
    const auto last = std::find_if(steps->rbegin(), steps->rend(), loses);
    steps->erase(steps->begin(), last.base());
  }
}

}  // namespace tessaro
