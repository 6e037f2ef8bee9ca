#pragma once

#include <optional>

#include "cards/card_reader.h"
#include "outlook/recall.h"

namespace tessaro {

// True for a card that evaluation and forecast are about: no navigation card, none marked as a duplicate, none with "#"
// in the ID.
inline bool IsCounted(const CardReader& cards, int row) {
  constexpr int kRowsAhead = 16;
  __builtin_prefetch(cards.TimeRow(row + kRowsAhead).data());
  return !cards.HasEndMark(row) && !cards.IsLeftOut(row);
}

// The answers of a counted card, at least one and the newest not later than now; nothing of any other card.
inline std::optional<AnswerSeries> ReadCounted(const CardFile& file, int row, int64_t now) {
  const CardReader cards(file);
  if (!IsCounted(cards, row)) return std::nullopt;
  const AnswerSeries series = ReadAnswers(cards.TimeRow(row), cards.YesNoRow(row));
  if (series.count == 0 || series.Newest().time > now) return std::nullopt;
  return series;
}

}  // namespace tessaro
