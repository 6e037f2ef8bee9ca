#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "store/index/card_ids.h"
#include "store/index/row_sequence.h"
#include "store/table/card_table.h"
#include "store/table/line_end.h"
#include "store/table/row_shift.h"

namespace tessaro {

class Progress;
class WritableFile;

// The learning index: one row per card, sorted by the card's predicted retention time, the worst-known card first.
// Row 1 is a start row and the last row an end row; cards stand between them, so N cards fill rows 2 ... N + 1.
// It is kept as numbers; the text of the .row file is made when it is saved.
class LearnIndex {
 public:
  // Builds the index from the card table as it stands. A card whose score is above that of the end row is left out.
  // False when the card table has a defect: it lacks a column that the index is made of.
  [[nodiscard]] bool Build(const CardTable& cards) { return Build(cards, CardIds(cards)); }
  [[nodiscard]] bool Build(const CardTable& cards, const CardIds& ids, Progress* progress = nullptr);
  // The same where only scores changed since it was built, taken over or followed the rows.
  [[nodiscard]] bool BuildAgain(const CardTable& cards);
  // Takes over a table read from a .row file, if it fits the cards: columns, start and end row as they are written,
  // every card exactly once with its own ID, ascending keys. False leaves the index as it was. Takes the bytes of the
  // file as well, which is faster and gives the same.
  [[nodiscard]] bool Adopt(const CardTable& table, const CardIds& ids);
  [[nodiscard]] bool Adopt(std::string_view text, const CardIds& ids);
  // Whether the cards still stand in the rows in which they stood at Build or Adopt.
  // An index that followed the rows with Shift fits.
  bool Fits(const CardIds& ids) const {
    return built_ && fingerprint_.value_or(ids.fingerprint()) == ids.fingerprint();
  }
  // Writes the text of the .row file; IDs are those of the cards.
  [[nodiscard]] bool SaveTo(WritableFile& file, const CardTable& cards) const { return SaveTo(file, CardIds(cards)); }
  [[nodiscard]] bool SaveTo(WritableFile& file, const CardIds& ids, Progress* progress = nullptr) const;

  // Rows with start and end row; 0 before the first Build or Adopt.
  int RowCount() const { return built_ ? sequence_.size() + 2 : 0; }
  // The card table row that index row `row` points to: -1 for the start row, 999999 for the end row, 0 when there is no
  // such row.
  int BoxPos(int row) const;
  // The key of a row: its score read as a number, -1 and 999999999 for start and end row; 0 when there is no such row.
  int64_t Score(int row) const;
  // The index row of a card table row; 0 when the card is not in the index.
  int RowOfCard(int card_row) const;

  // Gives the card this score, 0 ... kMaxScore, and puts it before the first row whose score is not below it. A card
  // that already is that row stays there; one that is not in the index comes in.
  void Update(int card_row, int64_t score);

  // Rows of the card table were removed or have got new numbers. Cards that were removed leave the index; those that
  // came are not in it until they are put there.
  void Shift(const RowShift& shift);
  // The same as Update for a score as it is written in the card; one above that of the end row leaves the index.
  void Put(int card_row, std::string_view score);

  // How a card stands in the index.
  struct Place {
    int card_row = 0;
    int row = 0;  // index row; 0 = not in the index
    int64_t score = 0;
    std::optional<std::string> odd_score;  // the text of a score that is not written as nine digits
    bool operator==(const Place&) const = default;
  };
  Place PlaceOf(int card_row) const;
  // Reverts later updates of the card: it stands again as PlaceOf said, among equal scores too, provided that all
  // other cards do. Where they do not and the order of the scores forbids the row, the score decides as in Update.
  void Restore(const Place& place);

 private:
  bool BuildOrder(const CardTable& cards, Progress* progress);
  template <typename ReadRows>
  bool AdoptRows(const ReadRows& read_rows, const CardIds& ids, LineEnd line_end);
  int FirstNotBelow(int64_t score) const;
  bool IsInOrder(int position, int64_t score) const;

  bool built_ = false;
  RowSequence sequence_;       // card table rows in index order
  std::vector<int64_t> keys_;  // by card table row
  // The texts of scores that are not written as nine digits, by card table row: a row is saved as it was read.
  std::unordered_map<int, std::string> odd_scores_;
  std::optional<uint64_t> fingerprint_;   // of the IDs in their rows; nothing once it followed a change of them
  LineEnd line_end_ = LineEnd::LineFeed;  // of the file that it was read from
};

}  // namespace tessaro
