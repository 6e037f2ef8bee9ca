#pragma once

#include <cstdint>

// What a learning run and the window that shows it say to each other.
namespace tessaro {

enum class AnswerCode {
  NotKnown = 0,
  Known = 1,
  NoRating = 2,   // first card of a run, navigation buttons
  ShowAgain = 3,  // after undo
  LinkKnown = 4,  // the three of them given by following a link
  LinkNotKnown = 5,
  LinkNoRating = 6,
};

enum class Method { Standard, RowOrder, Leitner };

// What the status field says about the card on screen.
enum class CardStatus {
  None,
  Tested,         // "Getestet"
  CheckPosition,  // "Check Pos.", with the checking count
  Overlearning,
  NeverShown,         // "Unbearbeitete Karte"
  RepeatAfterError,   // "Wiederholung nach Fehler"
  RepeatMaximumTime,  // "Wiederholung Maximalzeit"
  RetentionUpdate,    // "Behaltenszeit Update"
  Navigation,         // "Navigationskarte"
  RandomChoice,       // "Zufalls-Auswahl"
};

// Which stage of choosing spoke last; the window has a caption for each.
enum class RunStage { None, BoxSearch, Checking, NewCheckingPass, RowOrder, LeitnerBox, Navigation };

// What the run has to tell the user. The window words it.
enum class RunMessage {
  CardTimeInFuture,   // a newest answer later than the clock: the card's statistics were wiped
  StandardExhausted,  // 500 draws without a card
  EndOfFile,          // row order came to the end of the card file
  BoxDone,            // the Leitner box is worked through; ChooseMethod follows
  IndexFault,         // a defect of the learning index, with its number (1, 2, 3, 4, 7, 8, 11, 12)
  IndexUpdateFailed,  // the card's old index row could not be removed
  LoggingFailed,      // an exception while an answer was logged
  BoxSearchFailed,    // an exception in the box search
  CheckingFailed,     // an exception in the checking pass
  RowOrderFailed,     // an exception in the row-order step
};

// What a learning run asks of the window that shows it. Called in the middle of a step: an implementation shows things
// and does not call back into the run.
class LearningView {
 public:
  virtual ~LearningView() = default;
  // The card on screen, its side, or a figure changed: read all anew from the run.
  virtual void Refresh() = 0;
  // `number` is the fault number of IndexFault, else 0.
  virtual void Tell(RunMessage message, int number) = 0;
  // The chosen Leitner box is done: open the selection of the method once the step has returned.
  virtual void ChooseMethod() = 0;
  // The clock went backwards: the run is over.
  virtual void EndRun() = 0;
};

// The figures beside the card.
struct RunFigures {
  int presented = 0;           // cards presented in this run
  int answered = 0;            // answers logged in this run
  int64_t unknown_count = 0;   // cards whose score is 0
  int64_t width = 0;           // selection width R
  int64_t drawn_position = 0;  // position drawn last, 1-based
  int64_t check_count = 0;     // running check position - 1: cards checked from the start of the index
  bool widened = false;        // the width was doubled in the last search: ">>"
};

// The card on screen.
struct ShownCard {
  int row = 0;  // card table row; 0 before the first card
  CardStatus status = CardStatus::None;
  bool navigation = false;
  bool by_link = false;       // reached by a link
  bool newest_known = false;  // newest answer was "known": `score` counts
  int64_t score = 0;          // predicted retention time in seconds
  int64_t last_answer = 0;    // time of the newest answer, seconds since 1970; 0 = never
};

}  // namespace tessaro
