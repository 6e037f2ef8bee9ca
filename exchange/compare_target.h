#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/blank_card.h"
#include "exchange/similarity.h"
#include "store/file/card_file.h"

namespace tessaro {

inline constexpr std::string_view kDuplicateMark = "<+++>";

// The open card file as a comparison works on it. What it changes is gathered, seen here at once, and brought into the
// file in one step when it is asked for.
class CompareTarget {
 public:
  // `file` must live longer, and nobody else may change its rows meanwhile.
  explicit CompareTarget(CardFile& file);

  // The row where a walk over the cards ends. Cards that come stand before it, unless a card before the last row has an
  // ID that begins with "#".
  int end() const { return end_; }
  CardSides Sides(int row) const;
  bool IsMarked(int row) const { return IsDuplicateMarked(Sides(row).front); }
  void SetSides(int row, std::string_view front, std::string_view back);
  void Mark(int row) { SetSides(row, std::string(kDuplicateMark).append(Sides(row).front), Sides(row).back); }
  // Gives a card what learning wrote of another.
  void SetStatistics(int row, const CardTexts& texts);
  // Adds a card with the next free number in place of its ID; its row, 0 when there is no number any more.
  int Append(CardTexts texts);
  // False when the card file could not take it: what was gathered is given up.
  [[nodiscard]] bool Commit();

  CardFile& file() { return file_; }
  const CardFile& file() const { return file_; }

 private:
  using Fields = std::map<int, std::string>;  // by column

  int FirstAppended() const { return file_.CardCount() + kFirstCardRow; }

  CardFile& file_;
  int end_;
  bool grows_;  // cards that come are walked over
  std::map<int, Fields> replaced_;
  std::vector<CardTexts> appended_;
};

// The row of the first card from row 2 on whose ID begins with "#"; the number of rows + 1 when there is none.
int EndOfCards(const CardTable& cards);

}  // namespace tessaro
