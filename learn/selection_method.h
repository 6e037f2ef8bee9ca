#pragma once

#include "cards/card_reader.h"
#include "cards/due_rule.h"
#include "learn/answer_log.h"
#include "learn/learning_view.h"
#include "platform/random.h"
#include "settings/learning_parameters.h"

namespace tessaro {

// What the methods come to share in the course of a run.
struct SelectionState {
  bool row_order = false;
  int64_t width = 0;   // the selection width R
  RunFigures figures;  // a method fills in what it has to show
  RunStage stage = RunStage::None;
};

// What the methods of one run share: what they choose from, what they go by, and what they tell.
struct SelectionContext : SelectionState {
  CardFile& file;
  const LearningParameters& parameters;
  AnswerLog& log;
  Random& random;
  LearningView& view;

  CardReader cards{file};
  int64_t now = 0;    // of the running step
  int shown_row = 0;  // the card on screen; 0 = none yet
  bool no_new_cards = false;
  bool time_lock = true;
  bool told_exhausted = false;  // in the running step

  // Cards are told apart by their ID text, so a duplicate of the card on screen counts as that card.
  bool IsShownCard(int row) const { return shown_row != 0 && cards.Id(row) == cards.Id(shown_row); }
  DueState DueStateOf(int row) const { return DueStateAt(cards.NewestTime(row), cards.Score(row), parameters, now); }
};

// What a method came to.
struct Choice {
  int row = 0;         // the card to show; 0 = none
  bool go_on = false;  // asks for the method that comes after this one
  CardMarks marks;
};

// A way of choosing the next card. There is one object per run, which keeps the method's own position.
class SelectionMethod {
 public:
  virtual ~SelectionMethod() = default;
  virtual Choice Next(SelectionContext& run) = 0;
  // Called instead of a result when Next broke off by an exception; tells the user and tidies up.
  virtual Choice Failed(SelectionContext& run) = 0;
};

}  // namespace tessaro
