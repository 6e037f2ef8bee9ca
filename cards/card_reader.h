#pragma once

#include <string_view>

#include "cards/answer_history.h"
#include "settings/side_settings.h"
#include "store/file/card_file.h"

namespace tessaro {

// What the rules of learning ask about a card, by its row in the card table. Never moves the table's cursor. Cheap to
// make; a row outside the table reads as empty.
class CardReader {
 public:
  // The file must outlive the reader; after another file was opened in it a new reader is needed.
  explicit CardReader(const CardFile& file)
      : cards_(file.cards()), columns_(file.columns()), marks_(file.deletion_marks()) {}

  // N cards stand in rows 2 ... N + 1, between the marker rows.
  int Count() const { return cards_.RowCount() > 2 ? cards_.RowCount() - 2 : 0; }
  int LastCardRow() const { return Count() + 1; }
  bool IsCardRow(int64_t row) const { return row >= kFirstCardRow && row <= LastCardRow(); }

  // The texts as the table holds them, in the code page; views end with the next change of the table.
  std::string_view Id(int row) const { return cards_.Peek(columns_.id, row); }
  bool HasEndMark(int row) const { return tessaro::HasEndMark(Id(row)); }
  std::string_view Question(int row) const { return cards_.Peek(columns_.question, row); }
  std::string_view Answer(int row) const { return cards_.Peek(columns_.answer, row); }
  std::string_view Side(int row, SideName side) const { return side == SideName::Front ? Question(row) : Answer(row); }
  bool IsNavigation(int row) const { return tessaro::IsNavigation(Question(row)); }
  // Can never be chosen, whatever the method.
  bool IsNeverChosen(int row) const { return tessaro::IsLeftOut(Id(row), Question(row), Answer(row)); }
  // Not asked now: that, or marked to be removed.
  bool IsLeftOut(int row) const { return marks_.Has(row) || IsNeverChosen(row); }

  // The number that the column begins with; 0 without one.
  int64_t Score(int row) const { return LeadingNumber(cards_.Peek(columns_.score, row)); }
  int64_t TimeLearned(int row) const { return LeadingNumber(cards_.Peek(columns_.time_learned, row)); }
  // The Leitner box of a card: below 1 a new card, 1 ... 6 a box.
  int64_t Level(int row) const { return LeadingNumber(cards_.Peek(columns_.topic, row)); }

  // The answers, the newest first: the columns as they stand, both parsed, and what is known of the newest, which costs
  // no parsing of the rest. The time is 0 and the letter '\0' where there is none.
  std::string_view TimeRow(int row) const { return cards_.Peek(columns_.time_row, row); }
  std::string_view YesNoRow(int row) const { return cards_.Peek(columns_.yes_no_row, row); }
  AnswerHistory History(int row) const { return ParseHistory(TimeRow(row), YesNoRow(row)); }
  int64_t NewestTime(int row) const { return tessaro::NewestTime(TimeRow(row)); }
  char NewestLetter(int row) const { return tessaro::NewestLetter(YesNoRow(row)); }
  bool WasAnswered(int row) const { return NewestTime(row) != 0; }

  // True for a card that learning concerns and whose score is 0.
  bool IsUnknown(int row) const { return Score(row) == 0 && !IsNeverChosen(row); }

 private:
  const CardTable& cards_;
  const CardColumns& columns_;
  const DeletionMarks& marks_;
};

}  // namespace tessaro
