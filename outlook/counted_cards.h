#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "outlook/recall.h"
#include "store/file/card_file.h"

namespace tessaro {

// The cards that evaluation and forecast are about: no navigation cards, none marked as duplicates, none with "#" in
// the ID. Reads them row by row, best in the order of the table.
class CountedCards {
 public:
  // The file must outlive it; after another file was opened in it a new one is needed.
  explicit CountedCards(const CardFile& file)
      : file_(file),
        columns_({file.columns().id, file.columns().question, file.columns().answer, file.columns().time_row,
                  file.columns().yes_no_row, file.columns().time_learned}) {}

  // Goes to a row; false when its card is none of those.
  bool Find(int row) {
    file_.cards().Expect(row + CardTable::kAhead);
    file_.cards().PeekAll(row, columns_, texts_);
    return !IsLeftOut(texts_[0], texts_[1], texts_[2]) && !file_.deletion_marks().Has(row);
  }
  // Of the card that was found.
  AnswerSeries Answers() const { return ReadAnswers(texts_[3], texts_[4]); }
  int64_t TimeLearned() const { return LeadingNumber(texts_[5]); }

 private:
  const CardFile& file_;
  std::array<int, 6> columns_;
  std::array<std::string_view, 6> texts_;
};

// The answers of a counted card, at least one and the newest not later than now; nothing of any other card.
inline std::optional<AnswerSeries> ReadCounted(const CardFile& file, int row, int64_t now) {
  CountedCards cards(file);
  if (!cards.Find(row)) return std::nullopt;
  std::optional<AnswerSeries> series(cards.Answers());
  if (series->count == 0 || series->Newest().time > now) return std::nullopt;
  return series;
}

}  // namespace tessaro
