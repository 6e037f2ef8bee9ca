#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "learn/learning_parameters.h"
#include "platform/clock.h"
#include "platform/random.h"
#include "store/card_file.h"

namespace tessaro {

struct AnswerStatistics;
struct LeitnerBox;
class RowObserver;

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

// One run of learning over the open card file: shows a card, takes the answer, logs it, chooses the next.
class LearningRun {
 public:
  // `program_settings` gives the parameters; the positions that belong to one card file stand in its own settings.
  LearningRun(CardFile& file, const IniFile& program_settings, const Clock& clock, Random& random, LearningView& view);
  ~LearningRun();
  LearningRun(const LearningRun&) = delete;
  LearningRun& operator=(const LearningRun&) = delete;

  // Shows the first card. Call it once, after the options are set.
  void Start();
  // Writes the positions of this run ("CHK"/"rpos", "ROW"/"Pos") into the settings of the card file.
  void KeepPositions();

  // The answer commands. Each does nothing when the card on screen was answered already.
  void Known();
  void NotKnown();
  // Known, with a score of at least that many days.
  void KnownForDays(int days);
  // Takes the last answer of the run back and shows its card again; nothing when there is none, or twice in a row.
  void Undo();
  bool CanUndo() const;

  // `code` is NoRating, or what a question on leaving the card brought: Known or NotKnown.
  void GoHome(AnswerCode code = AnswerCode::NoRating);
  void GoBack(AnswerCode code = AnswerCode::NoRating);
  void GoOverview(AnswerCode code = AnswerCode::NoRating);
  // A click on a link to the card with this number. `code` is one of the three link codes.
  void FollowLink(int64_t id, AnswerCode code = AnswerCode::LinkNoRating);
  bool CanGoBack() const;
  // True while the card on screen was reached by a link, is no navigation card and was not answered: who follows a
  // link, goes back or home from it is asked first whether he knew it.
  bool AsksBeforeLeaving() const;
  // Says whether an answer window (multiple choice, typing training) stands beside the card. A card reached by a link
  // while one does is left to where the link came from as soon as it is answered.
  void SetAnswerWindowVisible(bool visible);

  // Which text is on screen. The first side is the question, or the answer in inverse display or with swapped sides.
  void Turn();
  bool first_side_shown() const;
  // True when the text on screen is the card's Question column.
  bool question_shown() const;
  std::string_view side_text() const;

  // Chooses the next card without an answer.
  void ShowNext();

  // Leitner goes on with the box that was started; nothing happens when there is none.
  void SetMethod(Method method);
  Method method() const;
  // Switches to the Leitner box that the selection of the method prepared. ShowNext or Start shows its first card.
  void StartBox(LeitnerBox box);
  int box() const;  // the chosen box, 0 = none
  // The lock against early advancing: while it is off, the box method marks no card as shown too early. On at first.
  void SetBoxLock(bool on);
  bool box_lock() const;
  void SetNoNewCards(bool on);
  bool no_new_cards() const;
  void SetTimeLock(bool on);
  bool time_lock() const;
  void SetInverse(bool on);  // the back is shown first, and the captions say so
  bool inverse() const;
  void SetSwapped(bool on);  // front and back exchange their roles for the run
  bool swapped() const;
  // Row order goes on at the first card.
  void RestartRowOrder();

  // To be called after cards were edited, added or removed while the run goes on.
  void CardsChanged();
  // Hears of every card row that the run changes. May be null.
  void SetRowObserver(RowObserver* observer);

  const LearningParameters& parameters() const;
  // What led to the last logged score; null before the first answer and after an undo.
  const AnswerStatistics* statistics() const;
  const ShownCard& card() const;
  const RunFigures& figures() const;
  RunStage stage() const;
  bool answered() const;
  bool ended() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace tessaro
