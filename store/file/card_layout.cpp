#include "store/file/card_layout.h"

#include <string>

#include "store/table/card_columns.h"

namespace tessaro {
namespace {

constexpr std::string_view kFirstQuestion =
    "<index><navigation><font size=\"14\">Index</font><font size=\"12\"><br><br>"
    "z.B. f\xFCr Kurzbeschreibung und Links auf Themen\xFC"
    "bersichten.";

bool IsEmptyRow(const CardTable& cards, int row) {
  for (int column = 1; column <= cards.ColumnCount(); ++column) {
    if (!cards.Peek(column, row).empty()) return false;
  }
  return true;
}

// Column names are written as they are: one with these characters would come back as another, or as two lines.
bool HasOddColumnNames(const CardTable& cards) {
  for (int column = 1; column <= cards.ColumnCount(); ++column) {
    if (cards.ColumnName(column).value_or("").find_first_of("\n\\") != std::string_view::npos) return true;
  }
  return false;
}

}  // namespace

void MakeNewCards(CardTable& cards) {
  cards.Clear();
  cards.SetSeparator(kFieldSeparator);
  for (const std::string_view name : kCardColumns) {
    cards.AddColumn(name);
    cards.SetColumnType(name, "STRING");
  }
  for (int i = 0; i < 3; ++i) cards.AppendRow();
  cards.First();
  cards.SetFieldByName(kId, kStartMark);
  cards.Next();
  cards.SetFieldByName(kId, "000001");
  cards.SetFieldByName(kTopic, "00");
  cards.SetFieldByName(kQuestion, kFirstQuestion);
  cards.SetFieldByName(kAnswer, "-");
  cards.SetFieldByName(kScore, "000000001");
  cards.SetFieldByName(kTimeLearned, "00");
  cards.SetFieldByName(kYesNoRow, BlankYesNoRow());
  cards.SetFieldByName(kTimeRow, BlankTimeRow());
  cards.Next();
  cards.SetFieldByName(kId, kEndMark);
}

CardTableState CompleteCards(CardTable& cards) {
  const CardColumns columns = ColumnsOf(cards);
  if (columns.id == 0 || columns.question == 0 || columns.answer == 0 || HasOddColumnNames(cards)) {
    return CardTableState::Unusable;
  }
  while (cards.Last() && IsEmptyRow(cards, cards.RowCount())) cards.DeleteRow();
  if (cards.RowCount() == 0) return CardTableState::Unusable;
  for (const std::string_view name : kCardColumns) {
    if (cards.ColumnIndex(name) == 0) cards.AddColumn(name);
  }
  CardTableState state = CardTableState::Whole;
  if (cards.Peek(columns.id, 1) != kStartMark) {
    state = CardTableState::StartMissing;
    cards.First();
    cards.InsertRow(false);
    cards.Poke(columns.id, 1, kStartMark);
  }
  if (cards.Peek(columns.id, cards.RowCount()) != kEndMark) {
    state = CardTableState::EndMissing;
    cards.AppendRow();
    cards.Poke(columns.id, cards.RowCount(), kEndMark);
  }
  cards.First();
  return cards.RowCount() > 2 ? state : CardTableState::Unusable;
}

}  // namespace tessaro
