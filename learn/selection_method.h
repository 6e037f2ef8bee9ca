#pragma once

#include "cards/card_reader.h"
#include "cards/due_rule.h"
#include "learn/answer_log.h"
#include "learn/left_out_cards.h"
#include "learn/run_moment.h"
#include "platform/random.h"
#include "settings/learning_parameters.h"

namespace tessaro {

// What the methods of one run share: what they choose from, what they go by, and what they tell.
struct SelectionContext {
  CardFile& file;
  const LearningParameters& parameters;
  AnswerLog& log;
  Random& random;
  const LeftOutCards& left_out;
  RunMoment& moment;   // a method reads and writes its own part, the width and the figures
  StepResult& result;  // of the running step

  CardReader cards{file};
  int64_t now = 0;    // of the running step
  int shown_row = 0;  // the card on screen; 0 = none yet
  bool no_new_cards = false;
  bool time_lock = true;
  bool told_exhausted = false;  // in the running step

  // Cards are told apart by their ID text, so a duplicate of the card on screen counts as that card.
  bool IsShownCard(int row) const { return shown_row != 0 && cards.Id(row) == cards.Id(shown_row); }
  // Not asked now: never, or while it is marked to be removed.
  bool PassesOver(int row) const { return left_out.Has(row) || file.deletion_marks().Has(row); }
  DueState DueStateOf(int row) const { return DueStateAt(cards.NewestTime(row), cards.Score(row), parameters, now); }
};

// What a method came to.
struct Choice {
  int row = 0;         // the card to show; 0 = none
  bool go_on = false;  // asks for the method that comes after this one
  CardMarks marks;
};

// A way of choosing the next card. Its position is part of the run's moment.
class SelectionMethod {
 public:
  virtual ~SelectionMethod() = default;
  virtual Choice Next(SelectionContext& run) = 0;
  // Called instead of a result when Next broke off by an exception; tells the user and tidies up.
  virtual Choice Failed(SelectionContext& run) = 0;
};

}  // namespace tessaro
