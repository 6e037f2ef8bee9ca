// The repairs of a card file; what can be wrong with it stands in deck_check.cpp.

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "cards/answer_history.h"
#include "cards/card_edit.h"
#include "cards/card_reader.h"
#include "cards/card_writer.h"
#include "cards/deck_check.h"
#include "hypertext/markup.h"

namespace tessaro {
namespace {

// The highest number of any card. That of the card file counts only up to the first "#".
int64_t HighestNumber(const CardFile& file) {
  const CardReader cards(file);
  int64_t highest = 0;
  for (int row = kFirstCardRow; row <= cards.LastCardRow(); ++row) {
    if (!cards.HasEndMark(row)) highest = std::max(highest, LeadingNumber(cards.Id(row)));
  }
  return highest;
}

// A number that no card has; nothing when there is none left that links could lead to.
std::optional<std::string> FreeId(CardFile& file) {
  if (file.highest_id() >= kMaxLinkTarget) return std::nullopt;
  return file.IssueId();
}

std::string LettersAsRead(std::string_view letters) {
  std::string good(letters.substr(0, kHistoryLength));
  good.resize(kHistoryLength, kNotKnownLetter);
  const auto is_none = [](char c) { return c != kKnownLetter && c != kNotKnownLetter; };
  std::replace_if(good.begin(), good.end(), is_none, kNotKnownLetter);
  return good;
}

// The times as the reader of histories takes them, but with the oldest one that it would drop.
AnswerTimes TimesAsRead(std::string_view text) {
  AnswerTimes times{};
  for (int64_t& time : times) {
    const size_t blank = text.find(' ');
    time = std::clamp<int64_t>(LeadingNumber(text.substr(0, blank)), 0, kMostInHistory);
    if (blank == std::string_view::npos) break;
    text.remove_prefix(blank + 1);
  }
  return times;
}

std::string TimesUntil(std::string_view text, int64_t now) {
  AnswerTimes times = TimesAsRead(text);
  for (int64_t& time : times) time = std::min(time, now);
  return TimesAfterAnswer(times);
}

// What the column of the fault, which holds this text, has after the repair; nothing when there is no repair.
std::optional<std::string> Repaired(CardFile& file, DeckFault fault, std::string_view text, int64_t now) {
  switch (fault) {
    case DeckFault::MissingId:
    case DeckFault::DoubleId:
      return FreeId(file);
    case DeckFault::FutureAnswer:
      return TimesUntil(text, now);
    case DeckFault::Letters:
      return LettersAsRead(text);
    case DeckFault::Times:
      return TimesAfterAnswer(TimesAsRead(text));
    case DeckFault::Score:
      return ScoreText(std::clamp<int64_t>(LeadingNumber(text), 0, kMaxScore));
    case DeckFault::TimeLearned:
      return std::to_string(std::clamp<int64_t>(LeadingNumber(text), 0, kMostInHistory));
    case DeckFault::DeadLink:
    case DeckFault::TimeOrder:
    case DeckFault::EmptySide:
    case DeckFault::MissingMedia:
      break;
  }
  return std::nullopt;
}

int ColumnOf(const CardColumns& columns, DeckFault fault) {
  switch (fault) {
    case DeckFault::MissingId:
    case DeckFault::DoubleId:
      return columns.id;
    case DeckFault::Letters:
      return columns.yes_no_row;
    case DeckFault::Score:
      return columns.score;
    case DeckFault::TimeLearned:
      return columns.time_learned;
    default:
      return columns.time_row;
  }
}

using RowTexts = std::map<int, std::string>;  // by column

void AddTo(CardCommand& command, int row, const RowTexts& texts) {
  std::vector<FieldView> fields;
  for (const auto& [column, text] : texts) fields.push_back({column, text});
  command.Replace(row, fields);
}

}  // namespace

int RepairDeck(CardFile& file, const std::vector<DeckFinding>& findings, int64_t now) {
  const int64_t taken = std::min(HighestNumber(file), kMaxLinkTarget);
  while (file.highest_id() < taken) (void)file.IssueId();
  std::map<int, RowTexts> rows;
  int repaired = 0;
  for (const DeckFinding& finding : findings) {
    if (!finding.can_repair || !CardReader(file).IsCardRow(finding.row)) continue;
    const int column = ColumnOf(file.columns(), finding.fault);
    // Of two faults of one text the second repair goes on with what the first made of it.
    const auto place = rows[finding.row].try_emplace(column, file.cards().Peek(column, finding.row)).first;
    const std::optional<std::string> text = Repaired(file, finding.fault, place->second, now);
    if (!text) continue;
    place->second = *text;
    ++repaired;
  }
  CardCommand command;
  for (const auto& [row, texts] : rows) AddTo(command, row, texts);
  CardEdit edit(file);
  if (!edit.Apply(std::move(command))) return 0;
  // A table that they cannot be built of is told when it is saved and opened.
  (void)edit.Finish();
  return repaired;
}

}  // namespace tessaro
