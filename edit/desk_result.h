#pragma once

#include <string>

namespace tessaro {

enum class DeskOutcome {
  Done,
  NoCard,        // there is none to do it to, or none was copied
  NoNumberLeft,  // a new card would get a number that links cannot lead to
  Failed         // the cards are as they were
};

// What became of a card that a command made, cut, marked or changed.
struct DeskResult {
  DeskOutcome outcome = DeskOutcome::NoCard;
  std::string id;
  int position = 0;     // of the card, counted from 1
  bool marked = false;  // by ToggleDeletion
};

enum class StoreOutcome {
  Unchanged,  // nothing was typed
  Saved,
  Moved,  // the card does not stand where it was taken up; nothing is written
  Failed  // there is no such card any more, or it could not be written
};

}  // namespace tessaro
