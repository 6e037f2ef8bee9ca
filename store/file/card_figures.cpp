#include "store/file/card_figures.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tessaro {
namespace {

// Times beyond this, some hundred million years, come only from broken files; sums with them stay in range.
constexpr int64_t kMostSeconds = int64_t{1} << 52;

constexpr int kRowsAhead = 16;

bool IsLearnable(std::string_view id, std::string_view question) {
  return id.find('#') == std::string_view::npos && !IsNavigation(question);
}

bool IsDue(int64_t newest, int64_t score, const DueTerms& terms) {
  const double span = std::trunc(static_cast<double>(score) * terms.retention_weight);
  const int64_t retained =
      span >= 0 && span < static_cast<double>(kMostSeconds) ? static_cast<int64_t>(span) : kMostSeconds;
  const int64_t start = std::min(newest, kMostSeconds);
  return start + retained < terms.now || start + std::min(terms.max_time, kMostSeconds) < terms.now;
}

void CountHistory(std::string_view time_row, std::string_view score_text, std::string_view yes_no_row,
                  const DueTerms& terms, CardFigures& figures) {
  const int64_t newest = LeadingNumber(time_row);
  if (newest <= 0) {
    ++figures.never_answered;
    return;
  }
  const int64_t score = LeadingNumber(score_text);
  if (score <= 0 || !yes_no_row.starts_with('w')) {
    ++figures.unknown;
    return;
  }
  ++figures.known;
  if (IsDue(newest, score, terms)) ++figures.due;
}

}  // namespace

CardFigures FiguresOf(const CardTable& cards, const CardColumns& columns, const DueTerms& terms) {
  CardFigures figures;
  const std::array read = {columns.id, columns.question, columns.time_row, columns.score, columns.yes_no_row};
  std::array<std::string_view, read.size()> texts;
  const int end = cards.RowCount();
  for (int row = kFirstCardRow; row < end; ++row) {
    cards.PeekAll(row, read, texts);
    const auto& [id, question, time_row, score, yes_no_row] = texts;
    ++figures.cards;
    if (!IsLearnable(id, question)) continue;
    ++figures.learnable;
    CountHistory(time_row, score, yes_no_row, terms, figures);
  }
  return figures;
}

int64_t CountUnknown(const CardTable& cards, const CardColumns& columns) {
  int64_t count = 0;
  const int end = cards.RowCount();
  for (int row = kFirstCardRow; row < end; ++row) {
    // Asking the memory for a text some rows before it is read takes off half of the time.
    __builtin_prefetch(cards.Peek(columns.score, row + kRowsAhead).data());
    if (LeadingNumber(cards.Peek(columns.score, row)) != 0) continue;
    if (IsLearnable(cards.Peek(columns.id, row), cards.Peek(columns.question, row))) ++count;
  }
  return count;
}

}  // namespace tessaro
