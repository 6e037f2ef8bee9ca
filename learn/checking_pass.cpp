#include "learn/checking_pass.h"

namespace tessaro {
namespace {

constexpr int kEndRow = 999999;  // what the end row of the index points to
constexpr int kBadCardRow = 2;   // fault: the index row points to no card
constexpr int kNoIndexRow = 3;   // fault: the index broke off without its end row

}  // namespace

bool CheckingPass::IsPending(int presented, const LearningParameters& parameters) {
  return parameters.check_every > 0 && (presented + 1) % parameters.check_every == 0;
}

Choice CheckingPass::Next(SelectionContext& run) {
  run.stage = RunStage::Checking;
  // A kept position may come from a time when the file had more cards.
  if (position_ < 1 || position_ >= run.file.learn_index().RowCount()) position_ = 1;
  Choice choice;
  for (int64_t looked_at = 0; looked_at < run.parameters.check_run; ++looked_at) {
    const RowResult result = LookAt(run, choice);
    if (result == RowResult::Take) return choice;
    if (result == RowResult::EndPass) break;
  }
  choice = {};
  choice.go_on = true;
  return choice;
}

Choice CheckingPass::Failed(SelectionContext& run) {
  run.view.Tell(RunMessage::CheckingFailed, 0);
  Choice choice;
  choice.go_on = true;
  return choice;
}

// Advances first and then reads, so the position always is the row looked at last.
CheckingPass::RowResult CheckingPass::LookAt(SelectionContext& run, Choice& choice) {
  const LearnIndex& index = run.file.learn_index();
  ++position_;
  if (position_ > index.RowCount()) {
    run.view.Tell(RunMessage::IndexFault, kNoIndexRow);
    return RowResult::EndPass;
  }
  const int row = index.BoxPos(static_cast<int>(position_));
  if (row == kEndRow) {
    position_ = 1;
    run.stage = RunStage::NewCheckingPass;
    return RowResult::EndPass;
  }
  if (!run.cards.IsCardRow(row)) {
    run.view.Tell(RunMessage::IndexFault, kBadCardRow);
    return RowResult::EndPass;
  }
  if (!MustRepeat(run, row, choice.marks)) return RowResult::PassOver;
  choice.row = row;
  return RowResult::Take;
}

// The tests that read little come first. A card answered wrong is passed over: the draw takes care of it.
bool CheckingPass::MustRepeat(SelectionContext& run, int row, CardMarks& marks) {
  const CardReader& cards = run.cards;
  marks = {};
  if (!cards.WasAnswered(row)) {
    if (run.no_new_cards) return false;
  } else {
    if (cards.NewestLetter(row) != kKnownLetter) return false;
    const DueState due = run.DueStateOf(row);
    if (!due.expired && !due.beyond_maximum) return false;
    marks.expired = due.expired;
    marks.no_history = due.beyond_maximum;
  }
  return !cards.HasEndMark(row) && !run.IsShownCard(row) && !run.cards.IsLeftOut(row);
}

}  // namespace tessaro
