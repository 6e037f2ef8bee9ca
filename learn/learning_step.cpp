#include <exception>

#include "learn/learning_run.h"
#include "platform/saturating.h"

// The learning step: log the answer to the card on screen, find the next card, classify it, show it.
namespace tessaro {
namespace {

constexpr int kMostSearchesWithoutNewCards = 6;

}  // namespace

// `row` is the card table row for Link and Undone.
void LearningRun::Step(Rating rating, Destination destination, int row) {
  run_.now = clock_.Now();
  run_.shown_row = moment_.card.row;
  run_.told_exhausted = false;
  if (!log_.BeginStep(run_.now)) {
    ended_ = result_.run_ended = true;
    UpdateFigures();
    return;
  }
  if (destination != Destination::Undone) LogShownCard(rating);
  moment_.marks = {};
  const bool box_was_on = moment_.leitner_on;
  const Target target = Find(destination, row);
  // Who just goes somewhere, or begins, is not told how well he knows the card there.
  const bool classify =
      rating != Rating::None || destination == Destination::Link || destination == Destination::Undone;
  Present(target, classify, destination);
  NoteCheckCard();
  result_.drawn_anew = true;
  result_.box_done = box_was_on && !moment_.leitner_on;
}

void LearningRun::LogShownCard(Rating rating) {
  const LogReport report = [&]() -> LogReport {
    try {
      return log_.Log(moment_.card.row, rating, moment_.marks, run_.now);
    } catch (const std::exception&) {
      result_.Tell(RunMessage::LoggingFailed);
      return {};
    }
  }();
  if (report.wiped) result_.Tell(RunMessage::CardTimeInFuture);
  if (report.index_fault) result_.Tell(RunMessage::IndexUpdateFailed);
  NoteAnswer(rating, report);
  if (!report.logged) return;
  left_out_.IndexRowChanged(moment_.card.row);
  StandardMethod::AdjustWidth(run_);
}

void LearningRun::NoteAnswer(Rating rating, const LogReport& report) {
  const int row = moment_.card.row;
  if (rating == Rating::None || !run_.cards.IsCardRow(row) || run_.cards.IsNavigation(row)) return;
  GivenAnswer answer = {.row = row, .rating = rating, .logged = report.logged, .due_in = {}};
  if (report.logged && !report.times_out_of_order && rating == Rating::Known) {
    answer.due_in = SaturatingSubtract(DueTime(run_.now, run_.cards.Score(row), parameters_), run_.now);
  }
  result_.answer = answer;
}

LearningRun::Target LearningRun::Find(Destination destination, int row) {
  moment_.return_after_answer = destination == Destination::Link && answer_window_visible_;
  if (destination != Destination::Method && destination != Destination::Undone) moment_.stage = RunStage::Navigation;
  switch (destination) {
    case Destination::Link:
      return TargetRow(row, false);
    case Destination::Home:
      return TargetRow(landmarks_.HomeRow(file_), true);
    case Destination::Overview:
      return TargetRow(landmarks_.OverviewRow(file_), true);
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
LearningRun::Target LearningRun::TargetRow(int row, bool navigation) {
  Target target;
  target.choice.row = run_.cards.IsCardRow(row) ? row : run_.cards.Count() > 0 ? kFirstCardRow : 0;
  target.navigation = navigation;
  return target;
}

LearningRun::Target LearningRun::GoBackTarget() {
  const int row = static_cast<int>(moment_.back.Pop());
  return row != 0 ? TargetRow(row, false) : TargetRow(landmarks_.HomeRow(file_), true);
}

LearningRun::Target LearningRun::AskMethods() {
  if (moment_.leitner_on) return {AskLeitner()};
  if (moment_.row_order_on) return {AskRowOrder()};
  Target target = AskStandard();
  if (options_.no_new_cards) AvoidNewCards(target);
  return target;
}

LearningRun::Target LearningRun::AskStandard() {
  if (!CheckingPass::IsPending(moment_.figures.presented, parameters_)) return {Ask(standard_)};
  Target target{Ask(checking_)};
  if (target.choice.go_on) {
    // The caption of a pass that begins anew stays for this card.
    const RunStage stage = moment_.stage;
    target.choice = Ask(standard_);
    if (stage == RunStage::NewCheckingPass) moment_.stage = stage;
  } else {
    target.tested = run_.cards.WasAnswered(target.choice.row);
    target.check_position = !target.tested;
  }
  return target;
}

// Each method that asks to go on hands over to the next one; the card chosen last counts.
Choice LearningRun::AskRowOrder() {
  Choice choice = Ask(row_order_);
  if (!choice.go_on) return choice;
  choice = Ask(standard_);
  if (!choice.go_on) return choice;
  const Choice again = Ask(row_order_);
  return again.row != 0 ? again : choice;
}

Choice LearningRun::AskLeitner() {
  const Choice choice = Ask(leitner_);
  if (choice.row == 0) {
    SetAside(leitner_.End());
    moment_.leitner_on = false;
    result_.Tell(RunMessage::BoxDone);
  }
  return choice;
}

// Without a choice the card on screen stays, and may be such a new card itself.
void LearningRun::AvoidNewCards(Target& target) {
  for (int search = 0; search < kMostSearchesWithoutNewCards; ++search) {
    const int row = target.choice.row != 0 ? target.choice.row : moment_.card.row;
    if (row == 0 || run_.cards.WasAnswered(row)) return;
    target = {Ask(standard_)};
  }
}

Choice LearningRun::Ask(SelectionMethod& method) {
  try {
    return method.Next(run_);
  } catch (const std::exception&) {
    return method.Failed(run_);
  }
}

void LearningRun::Present(const Target& target, bool classify, Destination destination) {
  ShownCard& card = moment_.card;
  if (target.choice.row != 0) {
    card = {};
    card.row = target.choice.row;
    card.navigation = target.navigation || run_.cards.IsNavigation(card.row);
    card.by_link = destination == Destination::Link;
    if (!card.navigation && destination != Destination::Undone) ++moment_.figures.presented;
    moment_.marks = target.choice.marks;
    file_.cards().GoTo(card.row);
  } else {
    // The card on screen stays, as a card that the method shows.
    card.by_link = false;
    card.navigation = run_.cards.IsNavigation(card.row);
  }
  card.newest_known = run_.cards.NewestLetter(card.row) == kKnownLetter;
  card.score = run_.cards.Score(card.row);
  card.last_answer = run_.cards.NewestTime(card.row);
  if (classify && !card.navigation) Classify();
  card.status = card.row != 0 ? StatusOf(target) : CardStatus::None;
  moment_.first_side = true;
  moment_.answered = false;
  ++showings_;
  UpdateFigures();
}

void LearningRun::UpdateFigures() {
  moment_.figures.answered = log_.answered();
  moment_.figures.unknown_count = log_.unknown_count();
  moment_.figures.width = moment_.width;
  moment_.figures.check_count = moment_.check_position - 1;
}

void LearningRun::Classify() {
  CardMarks& marks = moment_.marks;
  marks.early = false;
  marks.no_history = false;
  if (!moment_.card.newest_known) return;
  const DueState due = run_.DueStateOf(moment_.card.row);
  marks.expired = marks.expired || due.expired;
  marks.early = !due.expired && (!moment_.leitner_on || options_.box_lock);
  if (due.beyond_maximum) {
    marks.early = false;
    marks.no_history = true;
  }
}

CardStatus LearningRun::StatusOf(const Target& target) const {
  const CardMarks& marks = moment_.marks;
  if (target.tested) return CardStatus::Tested;
  if (target.check_position) return CardStatus::CheckPosition;
  if (marks.early) return CardStatus::Overlearning;
  if (moment_.card.navigation) return CardStatus::Navigation;
  if (moment_.card.last_answer == 0) return CardStatus::NeverShown;
  if (run_.cards.NewestLetter(moment_.card.row) == kNotKnownLetter) return CardStatus::RepeatAfterError;
  if (marks.no_history) return CardStatus::RepeatMaximumTime;
  if (marks.expired) return CardStatus::RetentionUpdate;
  return CardStatus::RandomChoice;
}

}  // namespace tessaro
