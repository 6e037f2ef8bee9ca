#pragma once

#include <cstdint>
#include <optional>

#include "cards/navigation.h"
#include "learn/answer_log.h"
#include "learn/run_values.h"
#include "store/table/row_shift.h"

// All of a run that its steps change, beside the cards themselves. The methods and the log borrow their places from it,
// so that taking an answer back puts one value back.
namespace tessaro {

// The row now of the card that a walk would look at next: that in `row`, or the next one that is still there.
int64_t MappedOrNext(const RowShift& shift, int64_t row);

// Where the walk in row order stands.
struct RowOrderPlace {
  int64_t position = kFirstCardRow;  // the card row to look at next
  bool first_step = true;
  bool repeating = false;       // unknown cards are repeated before the walk goes on
  std::optional<int64_t> kept;  // the position that this run wrote into the settings last
};

// Where the work on a Leitner box stands, without the order of the cards.
struct LeitnerPlace {
  int box = 0;                   // 0 = none
  int64_t quota = 0;             // new cards still to be taken
  int scan_row = kFirstCardRow;  // where the search for new cards goes on
  size_t order_place = 0;        // the place of the order to look at next
};

struct RunMoment {
  // The card on screen, and how the learner came to it.
  ShownCard card;
  CardMarks marks;
  bool answered = false;
  bool first_side = true;
  bool return_after_answer = false;  // the card was reached by a link beside a visible answer window
  BackStack back;

  // How the next one is chosen.
  bool leitner_on = false;
  bool row_order_on = false;
  int64_t width = 0;           // the selection width R
  int64_t check_position = 1;  // the index row that the checking pass looked at last
  int check_card = 0;          // the card that stands there; 0 = none
  RowOrderPlace row_order;
  LeitnerPlace leitner;

  RunFigures figures;
  RunStage stage = RunStage::None;
  AnswerLogState log;
};

}  // namespace tessaro
