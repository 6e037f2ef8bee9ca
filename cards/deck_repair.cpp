// The repairs of a card file; what can be wrong with it stands in deck_check.cpp.

#include <algorithm>
#include <array>
#include <optional>
#include <string>

#include "cards/answer_history.h"
#include "cards/card_reader.h"
#include "cards/card_writer.h"
#include "cards/deck_check.h"
#include "hypertext/markup.h"

namespace tessaro {
namespace {

// The one place where repairs write cards.
void Write(CardFile& file, int row, int column, const std::string& text) {
  file.cards().Poke(column, row, text);
  file.RowChanged(row, std::array{column});
}

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

// What the column of the fault holds after the repair; nothing when there is no repair.
std::optional<std::string> Repaired(CardFile& file, const DeckFinding& finding, int64_t now) {
  const CardReader cards(file);
  switch (finding.fault) {
    case DeckFault::MissingId:
    case DeckFault::DoubleId:
      return FreeId(file);
    case DeckFault::FutureAnswer:
      return TimesUntil(cards.TimeRow(finding.row), now);
    case DeckFault::Letters:
      return LettersAsRead(cards.YesNoRow(finding.row));
    case DeckFault::Times:
      return TimesAfterAnswer(TimesAsRead(cards.TimeRow(finding.row)));
    case DeckFault::Score:
      return ScoreText(std::clamp<int64_t>(cards.Score(finding.row), 0, kMaxScore));
    case DeckFault::TimeLearned:
      return std::to_string(std::clamp<int64_t>(cards.TimeLearned(finding.row), 0, kMostInHistory));
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

}  // namespace

int RepairDeck(CardFile& file, const std::vector<DeckFinding>& findings, int64_t now) {
  int repaired = 0;
  const int64_t taken = std::min(HighestNumber(file), kMaxLinkTarget);
  while (file.highest_id() < taken) (void)file.IssueId();
  file.BeginManyChanges();
  for (const DeckFinding& finding : findings) {
    if (!finding.can_repair || !CardReader(file).IsCardRow(finding.row)) continue;
    const std::optional<std::string> text = Repaired(file, finding, now);
    if (!text) continue;
    Write(file, finding.row, ColumnOf(file.columns(), finding.fault), *text);
    ++repaired;
  }
  file.EndManyChanges();
  file.RecountIds();
  // A table that they cannot be built of is told when it is saved and opened.
  if (repaired > 0) (void)file.RebuildIndexes();
  return repaired;
}

}  // namespace tessaro
