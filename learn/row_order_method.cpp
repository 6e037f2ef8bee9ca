#include "learn/row_order_method.h"

#include <algorithm>

#include "settings/keys.h"

namespace tessaro {

Choice RowOrderMethod::Next(SelectionContext& run) {
  run.log.RecountUnknown();
  Choice choice;
  if (!place_.first_step && RepeatsUnknown(run)) {
    choice.go_on = true;
    return choice;
  }
  if (place_.first_step) {
    place_.position = std::max<int64_t>(keys::kRowPosition.Read(run.file.settings()), kFirstCardRow);
    place_.first_step = false;
  }
  run.moment.stage = RunStage::RowOrder;
  for (; run.cards.IsCardRow(place_.position); ++place_.position) {
    const int row = static_cast<int>(place_.position);
    if (run.cards.HasEndMark(row)) break;
    if (!Takes(run, row, choice.marks)) continue;
    ++place_.position;
    choice.row = row;
    return choice;
  }
  EndOfFile(run);
  return {};
}

Choice RowOrderMethod::Failed(SelectionContext& run) {
  place_.position = kFirstCardRow;
  run.result.Tell(RunMessage::RowOrderFailed);
  return {};
}

bool RowOrderMethod::RepeatsUnknown(SelectionContext& run) {
  const int64_t unknown = run.log.unknown_count();
  if (unknown >= run.parameters.switch_count) {
    place_.repeating = true;
    run.moment.width = run.parameters.min_width;
  }
  if (unknown == 0) place_.repeating = false;
  return place_.repeating;
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
  return !run.PassesOver(row);
}

void RowOrderMethod::EndOfFile(SelectionContext& run) {
  Restart(run.file.settings());
  place_.first_step = true;
  run.result.Tell(RunMessage::EndOfFile);
}

void RowOrderMethod::Restart(IniFile& settings) {
  place_.position = kFirstCardRow;
  KeepPosition(settings, kFirstCardRow);
}

void RowOrderMethod::Keep(IniFile& settings) {
  if (!place_.first_step) KeepPosition(settings, place_.position);
}

void RowOrderMethod::PutBack(const RowOrderPlace& before, IniFile& settings) const {
  if (place_.kept != before.kept) keys::kRowPosition.Write(place_.kept.value_or(found_), settings);
}

void RowOrderMethod::Follow(const RowShift& shift, IniFile& settings) {
  const int64_t kept = keys::kRowPosition.Read(settings);
  const int64_t now = MappedOrNext(shift, kept);
  if (now != kept) keys::kRowPosition.Write(now, settings);
  found_ = MappedOrNext(shift, found_);
}

void RowOrderMethod::KeepPosition(IniFile& settings, int64_t row) {
  if (!place_.kept) found_ = keys::kRowPosition.Read(settings);
  keys::kRowPosition.Write(row, settings);
  place_.kept = row;
}

}  // namespace tessaro
