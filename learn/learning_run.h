#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "learn/learning_view.h"
#include "platform/clock.h"
#include "platform/random.h"
#include "settings/learning_parameters.h"
#include "store/file/card_file.h"

namespace tessaro {

struct AnswerStatistics;
struct LeitnerBox;

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

  // Takes the last answer of the run back exactly, and with it all that was done since: the card is on screen again as
  // it was when it was answered, and its columns, the learning index, the figures, the way back and the methods with
  // their positions are what they were then. As many answers as were given; a press of Undo counts as one. What the
  // learner set by hand stays: time lock, no new cards, lock of the boxes, the order of the sides. So does the clock:
  // it still may not go back before the latest step.
  void TakeBackAnswer();
  bool CanTakeBackAnswer() const;
  // Gives the answer that was taken back last again, with all that had been done since. Possible until the next answer,
  // and until a box begins or ends.
  void RestoreAnswer();
  bool CanRestoreAnswer() const;

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

  // True while the card on screen is such a card.
  bool ReturnsAfterAnswer() const;

  // Which text is on screen. The first side is the question, or the answer in inverse display or with swapped sides.
  void Turn();
  bool first_side_shown() const;
  // True when the text on screen is the card's Question column.
  bool question_shown() const;
  std::string_view side_text() const;

  // Chooses the next card without an answer.
  void ShowNext();
  // The same only while no card is on screen: after another choice of method or lock one may be found.
  void ShowNextIfNone();

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

  // To be called after cards were edited, added or removed while the run goes on. Answers before can be taken back no
  // more.
  void CardsChanged();

  const LearningParameters& parameters() const;
  // What led to the last logged score; null before the first answer and after an undo.
  const AnswerStatistics* statistics() const;
  const ShownCard& card() const;
  const RunFigures& figures() const;
  RunStage stage() const;
  bool answered() const;
  // How often a card came on screen in this run; counts on whatever is taken back.
  int showings() const;
  bool ended() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace tessaro
