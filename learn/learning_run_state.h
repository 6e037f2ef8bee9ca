#pragma once

#include <deque>
#include <vector>

#include "cards/navigation.h"
#include "learn/checking_pass.h"
#include "learn/learning_run.h"
#include "learn/leitner_method.h"
#include "learn/row_order_method.h"
#include "learn/standard_method.h"

namespace tessaro {

// What a step leads to.
enum class Destination {
  Method,  // the card that the method chooses
  Link,    // the card that a link names
  Home,
  Overview,
  Back,
  Undone,  // the card whose answer was taken back
};

Rating RatingOf(AnswerCode code);

// The card on screen, and how the learner came to it.
struct RunScene {
  ShownCard card;
  CardMarks marks;
  bool answered = false;
  bool first_side = true;
  bool return_after_answer = false;  // the card was reached by a link beside a visible answer window
  bool leitner_on = false;
  BackStack back;
};

// All of a run that its steps change, beside the cards themselves. A member that is missing here is not taken back.
struct RunMoment {
  RunScene scene;
  SelectionState selection;
  AnswerLogState log;
  int64_t check_position = 1;
  RowOrderMethod::Place row_order;
  LeitnerMethod::Place leitner;
};

// An answer with all that was done after it, up to the next answer. Holds what stood there before it; while it is
// taken back, what stood there after it.
struct AnswerStep {
  RunMoment moment;
  int row = 0;         // of the card: an answer changes one card
  CardChange columns;  // all that learning writes
  LearnIndex::Place place;
  std::vector<BoxOrder> orders;  // those that gave way to another one, one after the other
};

// The inside of a learning run: its state, and the learning step.
struct LearningRun::State : RunScene {
  State(CardFile& card_file, const IniFile& program_settings, const Clock& run_clock, Random& random,
        LearningView& run_view);

  // Logs what was said about the card on screen, then finds, classifies and shows the next one. `row` is the card
  // table row for Link and Undone.
  void Step(AnswerCode code, Destination destination, int row = 0);

  // "Known" or "not known" for the card on screen. Without one it just asks for a card.
  void Answer(AnswerCode code);
  // Goes from the card on screen to another one, perhaps with an answer.
  void Leave(AnswerCode code, Destination destination);
  // Takes over what someone else changed in the card table.
  void CardsChanged();

  // To be called before anything is done about an answer: from here on it can be taken back. `row` is the card's.
  void BeginStep(int row);
  // The same for a command that may carry an answer to the card on screen.
  void BeginStep(AnswerCode code);
  // Takes the last step back, or gives the one taken back last again.
  void TakeBack();
  void Restore();
  // The order that gave way to another one; it comes back with the step in which that happened.
  void SetAside(BoxOrder order);

  CardFile& file;
  const Clock& clock;
  LearningView& view;
  LearningParameters parameters;
  CardWriter writer{file};
  AnswerLog log{file, writer};
  SelectionContext run;

  StandardMethod standard;
  CheckingPass checking;
  RowOrderMethod row_order;
  LeitnerMethod leitner;
  bool box_lock = true;

  // The last one is the newest answer, or the one taken back last.
  std::deque<AnswerStep> steps;
  std::deque<AnswerStep> steps_taken_back;

  Landmarks landmarks;
  bool answer_window_visible = false;
  int showings = 0;

  bool ended = false;
  bool inverse = false;
  bool swapped = false;

 private:
  // The next card with what is known of it by the way it was found.
  struct Target {
    Choice choice;
    bool navigation = false;      // shown as a navigation card whatever it holds
    bool tested = false;          // taken by the checking pass because its time has come
    bool check_position = false;  // taken by the checking pass as a new card
  };

  bool LogShownCard(Rating rating);
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

  RunMoment Moment() const;
  void SetMoment(const RunMoment& moment);
  void Exchange(AnswerStep& step);
};

}  // namespace tessaro
