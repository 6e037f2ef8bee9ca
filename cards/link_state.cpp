#include "cards/link_state.h"

#include "cards/card_reader.h"
#include "cards/due_rule.h"

namespace tessaro {

LinkState LinkStateOf(const CardFile& file, int64_t id, const LearningParameters& parameters, int64_t now) {
  const int row = file.RowOfId(id);
  const CardReader cards(file);
  if (row == 0 || cards.IsNavigation(row)) return LinkState::NeverLearned;
  const int64_t newest = cards.NewestTime(row);
  if (cards.NewestLetter(row) != kKnownLetter) return newest != 0 ? LinkState::DueOrWrong : LinkState::NeverLearned;
  const DueState due = DueStateAt(newest, cards.Score(row), parameters, now);
  return due.IsDue() ? LinkState::DueOrWrong : LinkState::KnownNotDue;
}

ColourClass LinkColour(const CardFile& file, int64_t id, const LearningParameters& parameters, int64_t now) {
  switch (LinkStateOf(file, id, parameters, now)) {
    case LinkState::KnownNotDue:
      return ColourClass::Green;
    case LinkState::DueOrWrong:
      return ColourClass::Red;
    case LinkState::NeverLearned:
      break;
  }
  return ColourClass::Blue;
}

}  // namespace tessaro
