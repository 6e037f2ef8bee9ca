#pragma once

#include <string_view>

#include "platform/side_code_page.h"

namespace tessaro {

// The card on screen, as an answer window has to know it.
struct CardOnScreen {
  int row = 0;                 // card table row; 0 = none
  bool navigation = false;     // shown, but never asked
  bool first_side = true;      // the side that comes first is on screen; false: the one to be known
  bool sides_swapped = false;  // the back comes first: the side to be known is the question
  bool open = false;           // an answer to it would be logged: the run goes on, and it was not answered yet
  CodePage first_page = {};    // of the side that comes first, and of the one to be known
  CodePage second_page = {};
};

// What the windows in which the learner answers ask of the learning window.
class LearningCommands {
 public:
  virtual ~LearningCommands() = default;

  virtual CardOnScreen Card() const = 0;
  // The markup of the side that comes first, and of the side to be known; empty without a card. Valid until cards
  // change.
  virtual std::string_view FirstSide() const = 0;
  virtual std::string_view SecondSide() const = 0;

  // As if the learner had pressed the button of the learning window: may be refused with a message.
  virtual void Known() = 0;
  virtual void NotKnown() = 0;
  // What typing training came to. The same, but for the refusal by which that training keeps the learner from the
  // buttons.
  virtual void TypingDone(bool known) = 0;
  // Shows the side to be known; nothing happens when it is on screen.
  virtual void ShowAnswer() = 0;
};

}  // namespace tessaro
