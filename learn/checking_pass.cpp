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
  run.moment.stage = RunStage::Checking;
  // A kept position may come from a time when the file had more cards.
  int64_t& position = run.moment.check_position;
  if (position < 1 || position >= run.file.learn_index().RowCount()) position = 1;
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
  run.result.Tell(RunMessage::CheckingFailed);
  Choice choice;
  choice.go_on = true;
  return choice;
}

// Advances first and then reads, so the position always is the row looked at last.
CheckingPass::RowResult CheckingPass::LookAt(SelectionContext& run, Choice& choice) {
  const LearnIndex& index = run.file.learn_index();
  int64_t& position = run.moment.check_position;
  ++position;
  if (position > index.RowCount()) {
    run.result.Tell(RunMessage::IndexFault, kNoIndexRow);
    return RowResult::EndPass;
  }
  const int row = index.BoxPos(static_cast<int>(position));
  if (row == kEndRow) {
    position = 1;
    run.moment.stage = RunStage::NewCheckingPass;
    return RowResult::EndPass;
  }
  if (!run.cards.IsCardRow(row)) {
    run.result.Tell(RunMessage::IndexFault, kBadCardRow);
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
    if (!due.IsDue()) return false;
    marks.expired = due.expired;
    marks.no_history = due.beyond_maximum;
  }
  return !run.PassesOver(row) && !run.IsShownCard(row);
}

}  // namespace tessaro
