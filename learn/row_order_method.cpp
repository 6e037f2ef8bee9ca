#include "learn/row_order_method.h"

#include <algorithm>

namespace tessaro {
namespace {

constexpr std::string_view kSection = "ROW";
constexpr std::string_view kKey = "Pos";

}  // namespace

Choice RowOrderMethod::Next(SelectionContext& run) {
  run.log.RecountUnknown();
  Choice choice;
  if (!first_step_ && RepeatsUnknown(run)) {
    choice.go_on = true;
    return choice;
  }
  if (first_step_) {
    position_ = std::max<int64_t>(run.file.settings().GetInt(kSection, kKey, kFirstCardRow), kFirstCardRow);
    first_step_ = false;
  }
  run.stage = RunStage::RowOrder;
  for (; run.cards.IsCardRow(position_); ++position_) {
    const int row = static_cast<int>(position_);
    if (run.cards.HasEndMark(row)) break;
    if (!Takes(run, row, choice.marks)) continue;
    ++position_;
    choice.row = row;
    return choice;
  }
  EndOfFile(run);
  return {};
}

Choice RowOrderMethod::Failed(SelectionContext& run) {
  position_ = kFirstCardRow;
  run.view.Tell(RunMessage::RowOrderFailed, 0);
  return {};
}

bool RowOrderMethod::RepeatsUnknown(SelectionContext& run) {
  const int64_t unknown = run.log.unknown_count();
  if (unknown >= run.parameters.switch_count) {
    repeating_ = true;
    run.width = run.parameters.min_width;
  }
  if (unknown == 0) repeating_ = false;
  return repeating_;
}

bool RowOrderMethod::Takes(SelectionContext& run, int row, CardMarks& marks) {
  marks = {};
  if (run.IsShownCard(row)) return false;
  if (run.cards.NewestLetter(row) == kKnownLetter) {
    const DueState due = run.DueStateOf(row);
    if (!due.expired && run.time_lock) return false;
    marks.expired = due.expired;
    marks.no_history = due.beyond_maximum;
  }
  return !run.IsLeftOut(row);
}

void RowOrderMethod::EndOfFile(SelectionContext& run) {
  Restart(run.file.settings());
  first_step_ = true;
  run.view.Tell(RunMessage::EndOfFile, 0);
}

void RowOrderMethod::Restart(IniFile& settings) {
  position_ = kFirstCardRow;
  KeepPosition(settings, kFirstCardRow);
}

void RowOrderMethod::Keep(IniFile& settings) const {
  if (!first_step_) KeepPosition(settings, position_);
}

void RowOrderMethod::KeepPosition(IniFile& settings, int64_t row) {
  settings.SetInt(kSection, kKey, row);
}

}  // namespace tessaro
