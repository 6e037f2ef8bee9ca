#include <exception>

#include "learn/learning_run_state.h"
#include "settings/keys.h"

// The learning step: log the answer to the card on screen, find the next card, classify it, show it.
namespace tessaro {
namespace {

constexpr int kMostSearchesWithoutNewCards = 6;

}  // namespace

Rating RatingOf(AnswerCode code) {
  switch (code) {
    case AnswerCode::NotKnown:
    case AnswerCode::LinkNotKnown:
      return Rating::NotKnown;
    case AnswerCode::Known:
    case AnswerCode::LinkKnown:
      return Rating::Known;
    case AnswerCode::ShowAgain:
      return Rating::ShowAgain;
    default:
      return Rating::None;
  }
}

LearningRun::State::State(CardFile& card_file, const IniFile& program_settings, const Clock& run_clock, Random& random,
                          LearningView& run_view)
    : file(card_file),
      clock(run_clock),
      view(run_view),
      parameters(ReadParameters(program_settings)),
      run{{}, file, parameters, log, random, run_view},
      checking(keys::kCheckPosition.Read(card_file.settings())) {
  run.width = parameters.max_width;
}

void LearningRun::State::Answer(AnswerCode code) {
  if (answered || ended) return;
  if (card.row == 0) {
    Step(AnswerCode::NoRating, Destination::Method);
    return;
  }
  BeginStep(code);
  // Set before the step, which takes it back with the next card on screen.
  answered = true;
  Step(code, return_after_answer ? Destination::Back : Destination::Method);
}

void LearningRun::State::Leave(AnswerCode code, Destination destination) {
  if (ended) return;
  BeginStep(code);
  Step(code, destination);
}

void LearningRun::State::CardsChanged() {
  writer.ForgetCount();
  landmarks.Forget();
  steps.clear();
  steps_taken_back.clear();
  if (!run.cards.IsCardRow(card.row)) card = {};
  view.Refresh();
}

void LearningRun::State::Step(AnswerCode code, Destination destination, int row) {
  run.now = clock.Now();
  run.shown_row = card.row;
  run.told_exhausted = false;
  const Rating rating = RatingOf(code);
  if (!LogShownCard(rating)) {
    ended = true;
    UpdateFigures();
    view.EndRun();
    return;
  }
  marks = {};
  const bool box_was_on = leitner_on;
  const Target target = Find(destination, row);
  Present(target, code != AnswerCode::NoRating, destination);
  view.Refresh();
  if (box_was_on && !leitner_on) view.ChooseMethod();
}

// False when the clock went back.
bool LearningRun::State::LogShownCard(Rating rating) {
  LogReport report;
  try {
    report = log.Log(card.row, rating, marks, run.now);
  } catch (const std::exception&) {
    view.Tell(RunMessage::LoggingFailed, 0);
  }
  if (report.wiped) view.Tell(RunMessage::CardTimeInFuture, 0);
  if (report.index_fault) view.Tell(RunMessage::IndexUpdateFailed, 0);
  if (report.logged) StandardMethod::AdjustWidth(run);
  return report.result != LogResult::ClockWentBack;
}

LearningRun::State::Target LearningRun::State::Find(Destination destination, int row) {
  return_after_answer = destination == Destination::Link && answer_window_visible;
  if (destination != Destination::Method && destination != Destination::Undone) run.stage = RunStage::Navigation;
  switch (destination) {
    case Destination::Link:
      return TargetRow(row, false);
    case Destination::Home:
      return TargetRow(landmarks.HomeRow(file), true);
    case Destination::Overview:
      return TargetRow(landmarks.OverviewRow(file), true);
    case Destination::Back:
      return GoBackTarget();
    case Destination::Undone:
      return TargetRow(row, false);
    case Destination::Method:
      break;
  }
  return AskMethods();
}

// A row that is no card leads to the first card.
LearningRun::State::Target LearningRun::State::TargetRow(int row, bool navigation) {
  Target target;
  target.choice.row = run.cards.IsCardRow(row) ? row : run.cards.Count() > 0 ? kFirstCardRow : 0;
  target.navigation = navigation;
  return target;
}

LearningRun::State::Target LearningRun::State::GoBackTarget() {
  const int64_t id = back.Pop();
  return id != 0 ? TargetRow(file.RowOfId(id), false) : TargetRow(landmarks.HomeRow(file), true);
}

LearningRun::State::Target LearningRun::State::AskMethods() {
  if (leitner_on) return {AskLeitner()};
  if (run.row_order) return {AskRowOrder()};
  Target target = AskStandard();
  if (run.no_new_cards) AvoidNewCards(target);
  return target;
}

LearningRun::State::Target LearningRun::State::AskStandard() {
  if (!CheckingPass::IsPending(run.figures.presented, parameters)) return {Ask(standard)};
  Target target{Ask(checking)};
  if (target.choice.go_on) {
    // The caption of a pass that begins anew stays for this card.
    const RunStage stage = run.stage;
    target.choice = Ask(standard);
    if (stage == RunStage::NewCheckingPass) run.stage = stage;
  } else {
    target.tested = run.cards.WasAnswered(target.choice.row);
    target.check_position = !target.tested;
  }
  return target;
}

// Each method that asks to go on hands over to the next one; the card chosen last counts.
Choice LearningRun::State::AskRowOrder() {
  Choice choice = Ask(row_order);
  if (!choice.go_on) return choice;
  choice = Ask(standard);
  if (!choice.go_on) return choice;
  const Choice again = Ask(row_order);
  return again.row != 0 ? again : choice;
}

Choice LearningRun::State::AskLeitner() {
  const Choice choice = Ask(leitner);
  if (choice.row == 0) {
    SetAside(leitner.End());
    leitner_on = false;
    view.Tell(RunMessage::BoxDone, 0);
  }
  return choice;
}

// Without a choice the card on screen stays, and may be such a new card itself.
void LearningRun::State::AvoidNewCards(Target& target) {
  for (int search = 0; search < kMostSearchesWithoutNewCards; ++search) {
    const int row = target.choice.row != 0 ? target.choice.row : card.row;
    if (row == 0 || run.cards.WasAnswered(row)) return;
    target = {Ask(standard)};
  }
}

Choice LearningRun::State::Ask(SelectionMethod& method) {
  try {
    return method.Next(run);
  } catch (const std::exception&) {
    return method.Failed(run);
  }
}

void LearningRun::State::Present(const Target& target, bool classify, Destination destination) {
  if (target.choice.row != 0) {
    card = {};
    card.row = target.choice.row;
    card.navigation = target.navigation || run.cards.IsNavigation(card.row);
    card.by_link = destination == Destination::Link;
    if (!card.navigation && destination != Destination::Undone) ++run.figures.presented;
    marks = target.choice.marks;
    file.cards().GoTo(card.row);
  } else {
    // The card on screen stays, as a card that the method shows.
    card.by_link = false;
    card.navigation = run.cards.IsNavigation(card.row);
  }
  card.newest_known = run.cards.NewestLetter(card.row) == kKnownLetter;
  card.score = run.cards.Score(card.row);
  card.last_answer = run.cards.NewestTime(card.row);
  if (classify && !card.navigation) Classify();
  card.status = card.row != 0 ? StatusOf(target) : CardStatus::None;
  first_side = true;
  answered = false;
  ++showings;
  UpdateFigures();
}

void LearningRun::State::UpdateFigures() {
  run.figures.answered = log.answered();
  run.figures.unknown_count = log.unknown_count();
  run.figures.width = run.width;
  run.figures.check_count = checking.position() - 1;
}

void LearningRun::State::Classify() {
  marks.early = false;
  marks.no_history = false;
  if (!card.newest_known) return;
  const DueState due = run.DueStateOf(card.row);
  marks.expired = marks.expired || due.expired;
  marks.early = !due.expired && (!leitner_on || box_lock);
  if (due.beyond_maximum) {
    marks.early = false;
    marks.no_history = true;
  }
}

CardStatus LearningRun::State::StatusOf(const Target& target) const {
  if (target.tested) return CardStatus::Tested;
  if (target.check_position) return CardStatus::CheckPosition;
  if (marks.early) return CardStatus::Overlearning;
  if (card.navigation) return CardStatus::Navigation;
  if (card.last_answer == 0) return CardStatus::NeverShown;
  if (run.cards.NewestLetter(card.row) == kNotKnownLetter) return CardStatus::RepeatAfterError;
  if (marks.no_history) return CardStatus::RepeatMaximumTime;
  if (marks.expired) return CardStatus::RetentionUpdate;
  return CardStatus::RandomChoice;
}

}  // namespace tessaro
