#pragma once

#include <cstdint>
#include <optional>
#include <vector>

// The values by which a learning run and the window that shows it speak to each other.
namespace tessaro {

// What the learner said about the card on screen, however he said it.
enum class Rating { None, Known, NotKnown };

// What a step leads to.
enum class Destination {
  Method,  // the card that the method chooses
  Link,    // the card that a link names
  Home,
  Overview,
  Back,
  Undone,  // the card whose answer was taken back by Undo
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
  BoxDone,            // the Leitner box is worked through
  IndexFault,         // a defect of the learning index, with its number (1, 2, 3, 4, 7, 8, 11, 12)
  IndexUpdateFailed,  // the card's old index row could not be removed
  LoggingFailed,      // an exception while an answer was logged
  BoxSearchFailed,    // an exception in the box search
  CheckingFailed,     // an exception in the checking pass
  RowOrderFailed,     // an exception in the row-order step
};

struct RunEvent {
  RunMessage message;
  int number = 0;  // the fault number of IndexFault, else 0
  bool operator==(const RunEvent&) const = default;
};

// "Known" or "not known" said of a card.
struct GivenAnswer {
  int row = 0;  // of the card
  Rating rating = Rating::None;
  bool logged = false;            // else it left no trace
  std::optional<int64_t> due_in;  // seconds until the card, now known, is due
};

// What a command to the run came to. Nothing of it was shown yet.
struct StepResult {
  std::vector<RunEvent> events = {};  // to be told to the user, in this order
  std::optional<GivenAnswer> answer = {};
  bool drawn_anew = false;  // the card on screen, or its side, is another one now
  bool box_done = false;    // the chosen Leitner box is worked through: the method is to be chosen anew
  bool run_ended = false;   // the clock went backwards

  void Tell(RunMessage message, int number = 0) { events.push_back({message, number}); }
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
