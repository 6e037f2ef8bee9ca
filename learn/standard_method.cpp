#include "learn/standard_method.h"

#include <algorithm>

namespace tessaro {
namespace {

constexpr int kFirstWidening = 75;
constexpr int kSecondWidening = 100;
constexpr int kMostDraws = 500;
constexpr int kIndexRowMissing = 7;
constexpr int kCardRowMissing = 8;

// Once a step, however often it searches.
void TellExhausted(SelectionContext& run) {
  if (!run.told_exhausted) run.result.Tell(RunMessage::StandardExhausted);
  run.told_exhausted = true;
}

}  // namespace

struct StandardMethod::Search {
  bool told_index_row = false;
  bool told_card_row = false;
};

void StandardMethod::AdjustWidth(SelectionContext& run) {
  const int64_t unknown = run.log.unknown_count();
  if (unknown >= run.parameters.switch_count) run.moment.width = run.parameters.min_width;
  if (unknown < 1 && run.moment.width <= run.parameters.min_width) run.moment.width = run.parameters.max_width;
}

Choice StandardMethod::Next(SelectionContext& run) {
  run.moment.stage = RunStage::BoxSearch;
  run.moment.figures.widened = false;
  const int cards = run.left_out.OthersCount();
  run.moment.width = std::min<int64_t>(run.moment.width, cards);
  run.log.RecountUnknown();
  const bool none_unknown = run.log.unknown_count() == 0;
  Choice choice;
  choice.go_on = true;
  if (run.moment.row_order_on && none_unknown) return choice;
  // Deliberate: from here on the width may exceed the number of cards; the draw is cut instead.
  if (none_unknown) run.moment.width = run.parameters.max_width;
  if (cards > 0) {
    choice = Draw(run);
    choice.go_on = choice.row != 0 || run.moment.row_order_on;
    if (!choice.go_on) TellExhausted(run);
  }
  return choice;
}

Choice StandardMethod::Failed(SelectionContext& run) {
  run.result.Tell(RunMessage::BoxSearchFailed);
  return {};
}

Choice StandardMethod::Draw(SelectionContext& run) {
  Search search;
  for (int draw = 1; draw <= kMostDraws; ++draw) {
    if (draw == kFirstWidening || draw == kSecondWidening) Widen(run);
    const int64_t position = DrawPosition(run);
    run.moment.figures.drawn_position = position - 1;
    const int row = CardAt(run, position, search);
    Choice choice;
    if (row == 0 || !Takes(run, row, choice.marks)) continue;
    choice.row = row;
    return choice;
  }
  return {};
}

void StandardMethod::Widen(SelectionContext& run) {
  if (run.moment.width <= run.parameters.min_width || !run.time_lock) return;
  const int64_t cards = run.left_out.OthersCount();
  run.moment.width = run.moment.width > cards / 2 ? cards : std::min(run.moment.width * 2, cards);
  run.moment.figures.widened = true;
}

int64_t StandardMethod::DrawPosition(SelectionContext& run) {
  int64_t position = kFirstCardRow;
  if (run.moment.width != 0) position += static_cast<int64_t>(run.random.Next()) % run.moment.width;
  return std::clamp<int64_t>(position, kFirstCardRow, run.left_out.OthersCount() + 1);
}

// The card at this position among those that can be chosen; 0 for a defect, which is told once a search.
int StandardMethod::CardAt(SelectionContext& run, int64_t position, Search& search) {
  const LearnIndex& index = run.file.learn_index();
  const auto tell_once = [&](bool& told, int fault) {
    if (!told) run.result.Tell(RunMessage::IndexFault, fault);
    told = true;
    return 0;
  };
  const int64_t index_row = run.left_out.IndexRowAt(position);
  if (index_row > index.RowCount()) return tell_once(search.told_index_row, kIndexRowMissing);
  const int row = index.BoxPos(static_cast<int>(index_row));
  if (row < 1 || row > run.file.cards().RowCount()) return tell_once(search.told_card_row, kCardRowMissing);
  return row;
}

// The tests that read little come first.
bool StandardMethod::Takes(SelectionContext& run, int row, CardMarks& marks) {
  const CardReader& cards = run.cards;
  if (run.log.unknown_count() > 1 && run.IsShownCard(row)) return false;
  if (run.no_new_cards && !cards.WasAnswered(row)) return false;
  if (cards.NewestLetter(row) == kKnownLetter) {
    const DueState due = run.DueStateOf(row);
    if (!due.expired && run.time_lock) return false;
    marks.expired = due.expired;
    marks.no_history = due.beyond_maximum;
  }
  return !run.file.deletion_marks().Has(row);
}

}  // namespace tessaro
