#pragma once

#include "learn/checking_pass.h"
#include "learn/learning_run.h"
#include "learn/leitner_method.h"
#include "learn/navigation.h"
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

// The inside of a learning run: its state, and the learning step.
struct LearningRun::State {
  State(CardFile& card_file, const IniFile& program_settings, const Clock& run_clock, Random& random,
        LearningView& run_view);

  // Logs what was said about the card on screen, then finds, classifies and shows the next one. `row` is the card
  // table row for Link and Undone.
  void Step(AnswerCode code, Destination destination, int row = 0);

  // "Known" or "not known" for the card on screen. Without one it just asks for a card.
  void Answer(AnswerCode code);
  // Takes over what someone else changed in the card table.
  void CardsChanged();

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
  bool leitner_on = false;
  bool box_lock = true;

  BackStack back;
  Landmarks landmarks;
  bool answer_window_visible = false;
  bool return_after_answer = false;  // the card was reached by a link beside a visible answer window

  ShownCard card;
  CardMarks marks;  // of the card on screen
  bool answered = false;
  bool ended = false;
  bool first_side = true;
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
};

}  // namespace tessaro
