#include "cards/figures.h"

#include <algorithm>
#include <array>

#include "cards/answer_history.h"
#include "cards/due_rule.h"
#include "platform/other_thread.h"
#include "platform/saturating.h"

namespace tessaro {
namespace {

constexpr int kRowsAhead = 16;

enum class Column { Id, Question, Answer, TimeRow, Score, YesNoRow };
using Texts = std::array<std::string_view, 6>;

std::string_view Text(const Texts& texts, Column column) {
  return texts[static_cast<size_t>(column)];
}

void CountKnown(int64_t newest, int64_t score, const LearningParameters& parameters, int64_t now,
                CardFigures& figures) {
  ++figures.known;
  const DueState due = DueStateAt(newest, score, parameters, now);
  if (due.IsDue()) ++figures.due;
  if (due.expired) return;
  // At the due second itself a card still waits.
  const int64_t waits = SaturatingAdd(SaturatingSubtract(DueTime(newest, score, parameters), now), 1);
  figures.next_due_in = std::min(waits, figures.next_due_in.value_or(waits));
}

void CountHistory(const Texts& texts, const LearningParameters& parameters, int64_t now, CardFigures& figures) {
  const int64_t newest = NewestTime(Text(texts, Column::TimeRow));
  const int64_t score = LeadingNumber(Text(texts, Column::Score));
  if (newest <= 0) {
    ++figures.never_answered;
  } else if (score <= 0 || NewestLetter(Text(texts, Column::YesNoRow)) != kKnownLetter) {
    ++figures.unknown;
  } else {
    CountKnown(newest, score, parameters, now, figures);
  }
}

// Those of the rows from `begin` up to `end`.
CardFigures FiguresBetween(const CardFile& file, int begin, int end, const LearningParameters& parameters,
                           int64_t now) {
  CardFigures figures;
  const CardColumns& columns = file.columns();
  const std::array read = {columns.id,       columns.question, columns.answer,
                           columns.time_row, columns.score,    columns.yes_no_row};
  Texts texts;
  for (int row = begin; row < end; ++row) {
    file.cards().Expect(row + CardTable::kAhead);
    file.cards().PeekAll(row, read, texts);
    ++figures.cards;
    const std::string_view question = Text(texts, Column::Question);
    if (!IsLeftOut(Text(texts, Column::Id), question, Text(texts, Column::Answer))) {
      ++figures.learnable;
      CountHistory(texts, parameters, now, figures);
    } else if (IsNavigation(question)) {
      ++figures.navigation;
    }
  }
  return figures;
}

CardFigures Sum(const CardFigures& a, const CardFigures& b) {
  CardFigures sum = {.cards = a.cards + b.cards,
                     .navigation = a.navigation + b.navigation,
                     .learnable = a.learnable + b.learnable,
                     .never_answered = a.never_answered + b.never_answered,
                     .known = a.known + b.known,
                     .unknown = a.unknown + b.unknown,
                     .due = a.due + b.due,
                     .next_due_in = a.next_due_in ? a.next_due_in : b.next_due_in};
  if (a.next_due_in && b.next_due_in) sum.next_due_in = std::min(*a.next_due_in, *b.next_due_in);
  return sum;
}

}  // namespace

CardFigures FiguresOf(const CardFile& file, const LearningParameters& parameters, int64_t now) {
  const auto [front, behind] =
      InTwoParts(kFirstCardRow, std::max(kFirstCardRow, file.cards().RowCount()),
                 [&](int first, int end) { return FiguresBetween(file, first, end, parameters, now); });
  return Sum(front, behind);
}

int64_t CountUnknown(const CardTable& cards, const CardColumns& columns) {
  int64_t count = 0;
  const int end = cards.RowCount();
  for (int row = kFirstCardRow; row < end; ++row) {
    // Asking the memory for a text some rows before it is read takes off half of the time.
    __builtin_prefetch(cards.Peek(columns.score, row + kRowsAhead).data());
    if (LeadingNumber(cards.Peek(columns.score, row)) != 0) continue;
    const auto text = [&](int column) { return cards.Peek(column, row); };
    if (!IsLeftOut(text(columns.id), text(columns.question), text(columns.answer))) ++count;
  }
  return count;
}

int64_t CountUnknown(const CardFile& file) {
  const std::optional<int64_t> counted = file.unknown_at_opening();
  return counted ? *counted : CountUnknown(file.cards(), file.columns());
}

}  // namespace tessaro
