#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "cards/navigation.h"
#include "learn/checking_pass.h"
#include "learn/leitner_method.h"
#include "learn/row_order_method.h"
#include "learn/standard_method.h"
#include "platform/clock.h"
#include "store/file/card_watcher.h"

namespace tessaro {

// The learner's own switches. What an answer takes back leaves them alone.
struct RunOptions {
  bool no_new_cards = false;
  bool time_lock = true;
  bool box_lock = true;  // against early advancing: without it the box method marks no card as shown too early
  bool inverse = false;  // the back is shown first, and the captions say so
  bool swapped = false;  // front and back exchange their roles for the run
};

// One run of learning over the open card file: shows a card, takes the answer, logs it, chooses the next. Commands say
// what they came to and show nothing; in a run that has ended they do nothing.
//
// A run goes on when cards come, go or change outside learning (CardEdit): the card on screen, the positions of the
// methods, the way back and what can be taken back mean the same cards as before.
class LearningRun : private CardWatcher {
 public:
  // `program_settings` gives the parameters; the positions that belong to one card file stand in its own settings.
  LearningRun(CardFile& file, const IniFile& program_settings, const Clock& clock, Random& random);
  LearningRun(const LearningRun&) = delete;
  LearningRun& operator=(const LearningRun&) = delete;

  // Shows the first card: that of the method, or another one. Call it once, after the options are set.
  StepResult Start(Destination first = Destination::Method);
  // Writes the positions of this run ("CHK"/"rpos", "ROW"/"Pos") into the settings of the card file.
  void KeepPositions();

  // Answers the card on screen, "known" with a score of at least that many days. Does nothing when it was answered
  // already; without a card it just asks for one.
  StepResult Known(int days = 0) { return Answer(Rating::Known, days); }
  StepResult NotKnown() { return Answer(Rating::NotKnown, 0); }
  // Takes the last answer of the run back and shows its card again; nothing when there is none, or twice in a row.
  StepResult Undo();
  bool CanUndo() const { return !ended_ && log_.CanUndo(); }

  // Takes the last answer of the run back exactly, and with it all that was done since: the card is on screen again as
  // it was when it was answered, and its columns, the learning index, the figures, the way back and the methods with
  // their positions are what they were then. As many answers as were given; a press of Undo counts as one. What the
  // learner set by hand stays: his options. So does the clock: it still may not go back before the latest step. After
  // Undo it goes on from there: what is taken back is the answer before the one that was undone.
  StepResult TakeBackAnswer();
  bool CanTakeBackAnswer() const { return !ended_ && !steps_.empty(); }
  // Gives the answer that was taken back last again, with all that had been done since. Possible until the next answer,
  // and until a box begins or ends.
  StepResult RestoreAnswer();
  bool CanRestoreAnswer() const { return !ended_ && !steps_taken_back_.empty(); }

  // Leaves the card on screen for another one, with what a question on leaving it may have brought.
  StepResult GoHome(Rating rating = Rating::None) { return Leave(rating, Destination::Home); }
  StepResult GoBack(Rating rating = Rating::None) { return Leave(rating, Destination::Back); }
  StepResult GoOverview() { return Leave(Rating::None, Destination::Overview); }
  // A click on a link to the card with this number.
  StepResult FollowLink(int64_t id, Rating rating = Rating::None);
  bool CanGoBack() const { return !moment_.back.Empty(); }
  // True while the card on screen was reached by a link, is no navigation card and was not answered: who follows a
  // link, goes back or home from it is asked first whether he knew it.
  bool AsksBeforeLeaving() const;
  // Says whether an answer window (multiple choice, typing training) stands beside the card. A card reached by a link
  // while one does is left to where the link came from as soon as it is answered.
  void SetAnswerWindowVisible(bool visible) { answer_window_visible_ = visible; }

  // Chooses the next card without an answer; the second only while no card is on screen: after another choice of
  // method or lock one may be found.
  StepResult ShowNext() { return Leave(Rating::None, Destination::Method); }
  StepResult ShowNextIfNone();

  // In how many seconds the card on screen would be due if it was answered "known" now, computed like the answer
  // itself; nothing for a card whose answer leaves no trace.
  std::optional<int64_t> DueInIfKnown() const;

  // Which text is on screen. The first side is the question, or the answer in inverse display or with swapped sides.
  StepResult Turn();
  // True when the text on screen is the card's Question column.
  bool question_shown() const { return moment_.first_side == (options_.inverse == options_.swapped); }
  std::string_view side_text() const;
  std::string_view other_side_text() const;

  // Leitner goes on with the box that was started; nothing happens when there is none.
  void SetMethod(Method method);
  Method method() const;
  // Switches to the Leitner box that the selection of the method prepared. ShowNext or Start shows its first card.
  void StartBox(LeitnerBox box);
  // Row order goes on at the first card.
  void RestartRowOrder() { row_order_.Restart(file_.settings()); }
  StepResult Set(bool RunOptions::*option, bool on);

  // To be called when other cards have taken the place of all cards of the file. Answers before can be taken back no
  // more.
  void CardsReplaced();

  const RunOptions& options() const { return options_; }
  const LearningParameters& parameters() const { return parameters_; }
  // The card on screen, the figures beside it, and all else that an answer may change.
  const RunMoment& moment() const { return moment_; }
  const ShownCard& card() const { return moment_.card; }
  const RunFigures& figures() const { return moment_.figures; }
  bool ended() const { return ended_; }
  // How often a card came on screen; counts on whatever is taken back.
  int showings() const { return showings_; }

 private:
  // An answer with all that was done after it, up to the next answer. Holds what stood there before it; while it is
  // taken back, what stood there after it.
  struct AnswerStep {
    RunMoment moment;
    int row = 0;         // of the card: an answer changes one card
    CardChange columns;  // all that learning writes
    LearnIndex::Place place;
    int before = 0;                // the card that stood behind it in the index, 0 = none; goes before place.row
    std::vector<BoxOrder> orders;  // those that gave way to another one, one after the other
    bool undo = false;             // a press of Undo
  };
  // The next card with what is known of it by the way it was found.
  struct Target {
    Choice choice;
    bool navigation = false;      // shown as a navigation card whatever it holds
    bool tested = false;          // taken by the checking pass because its time has come
    bool check_position = false;  // taken by the checking pass as a new card
  };

  StepResult Answer(Rating rating, int days);
  StepResult Leave(Rating rating, Destination destination, int row = 0);
  void Step(Rating rating, Destination destination, int row = 0);
  void LogShownCard(Rating rating);
  void NoteAnswer(Rating rating, const LogReport& report);
  Target Find(Destination destination, int row);
  Target TargetRow(int row, bool navigation);
  Target GoBackTarget();
  Target AskMethods();
  Target AskStandard();
  Choice AskRowOrder();
  Choice AskLeitner();
  void AvoidNewCards(Target& target);
  Choice Ask(SelectionMethod& method);
  void Present(const Target& target, bool classify, Destination destination);
  void UpdateFigures();
  void Classify();
  CardStatus StatusOf(const Target& target) const;
  StepResult TakeResult() { return std::exchange(result_, {}); }

  void RowsWillShift(const RowShift& shift) override;
  void RowsShifted(const RowShift& shift) override;
  void CardsChanged(std::span<const int> rows, std::span<const int> columns) override;
  void IndexesRebuilt() override;
  void NoteCheckCard();
  void GoToCheckCard();
  void Follow(const RowShift& shift, RunMoment& moment) const;
  void Follow(const RowShift& shift, AnswerStep& step) const;
  static bool Loses(const RowShift& shift, const AnswerStep& step);
  void DropStepsThatLose(const RowShift& shift);
  void KeepPlacesBeside(const RowShift& shift, std::deque<AnswerStep>& steps);

  void BeginStep(int row);
  void BeginStep(Rating rating);
  int CardBehind(int row) const;
  LearnIndex::Place PlaceBefore(const AnswerStep& step) const;
  void SetAside(BoxOrder order);
  void Exchange(AnswerStep& step);

  CardFile& file_;
  const Clock& clock_;
  const LearningParameters parameters_;
  RunOptions options_;
  RunMoment moment_;
  StepResult result_;  // of the running command
  CardWriter writer_{file_};
  AnswerLog log_{file_, writer_, moment_.log};
  LeftOutCards left_out_{file_};
  SelectionContext run_;

  StandardMethod standard_;
  CheckingPass checking_;
  RowOrderMethod row_order_{moment_.row_order};
  LeitnerMethod leitner_{moment_.leitner};
  Landmarks landmarks_;

  // The last one is the newest answer, or the one taken back last.
  std::deque<AnswerStep> steps_;
  std::deque<AnswerStep> steps_taken_back_;
  bool answer_window_visible_ = false;
  bool ended_ = false;
  int showings_ = 0;
  CardWatch watch_{file_.watchers(), *this};
};

}  // namespace tessaro
