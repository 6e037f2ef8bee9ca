#include "edit/command_stack.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "edit/landmark_settings.h"

namespace tessaro {

CommandStack::CommandStack(CardFile& file, size_t limit)
    : file_(file), watch_(file.watchers(), static_cast<CardWatcher&>(*this)), limit_(limit) {}

void CommandStack::RowsShifted(const RowShift& /*shift*/) {
  ForgetUnlessOwn();
}

void CommandStack::CardsChanged(std::span<const int> /*rows*/, std::span<const int> /*columns*/) {
  ForgetUnlessOwn();
}

void CommandStack::ForgetUnlessOwn() {
  if (applying_) return;
  Forget(undo_);
  Forget(redo_);
  Seal();
}

void CommandStack::Forget(Entries& entries) {
  for (const Entry& entry : entries) bytes_ -= entry.Bytes();
  entries.clear();
}

std::optional<CardEditDone> CommandStack::Apply(CardCommand command) {
  applying_ = true;
  std::optional<CardEditDone> done = CardEdit(file_).Apply(std::move(command));
  applying_ = false;
  return done;
}

void CommandStack::Push(Entry entry) {
  Forget(redo_);
  bytes_ += entry.Bytes();
  undo_.push_back(std::move(entry));
  while (bytes_ > limit_ && !undo_.empty()) {
    bytes_ -= undo_.front().Bytes();
    undo_.pop_front();
    forgotten_ = undo_.empty() ? Forgotten::All : Forgotten::Oldest;
  }
}

CommandStack::Entry CommandStack::NewEntry(EditKind kind, int row) const {
  Entry entry;
  entry.kind = kind;
  entry.row_before = row;
  entry.row_after = row;
  entry.marks = file_.deletion_marks().rows();
  return entry;
}

std::optional<RowShift> CommandStack::Do(EditKind kind, CardCommand command, int row) {
  Seal();
  Entry entry = NewEntry(kind, row);
  entry.landmarks = std::exchange(kept_settings_, std::nullopt);
  std::optional<CardEditDone> done = Apply(std::move(command));
  if (!done) return std::nullopt;
  entry.inverse = std::move(done->inverse);
  if (!entry.inverse.empty()) Push(std::move(entry));
  return std::move(done->shift);
}

bool CommandStack::DoText(int row, const std::vector<FieldView>& fields) {
  // The inverse names both sides, so that it serves for all changes up to the sealing.
  const CardColumns& columns = file_.columns();
  Entry entry = NewEntry(EditKind::Text, row);
  entry.inverse.Replace(row, {{columns.question, file_.cards().Peek(columns.question, row)},
                              {columns.answer, file_.cards().Peek(columns.answer, row)}});
  CardCommand command;
  command.Replace(row, fields);
  const std::optional<CardEditDone> done = Apply(std::move(command));
  if (!done) return false;
  if (done->inverse.empty()) return true;
  std::exchange(text_row_, row) == row ? Forget(redo_) : Push(std::move(entry));
  return true;
}

void CommandStack::DoMarks(const std::vector<int>& rows, int row) {
  Seal();
  Push(NewEntry(EditKind::Mark, row));
  const std::vector<int>& marked = file_.deletion_marks().rows();
  std::vector<int> changed;
  std::set_symmetric_difference(marked.begin(), marked.end(), rows.begin(), rows.end(), std::back_inserter(changed));
  file_.deletion_marks().Exchange(std::move(changed));
}

void CommandStack::SetRowAfter(int row) {
  if (!undo_.empty()) undo_.back().row_after = row;
}

void CommandStack::KeepSettings() {
  kept_settings_ = ReadLandmarks();
}

CommandStack::Landmarks CommandStack::ReadLandmarks() const {
  return {OverviewSetting(file_.settings()), HomeSetting(file_.settings())};
}

void CommandStack::WriteLandmarks(const Landmarks& landmarks) {
  SetOverviewSetting(landmarks.overview, file_.settings());
  SetHomeSetting(landmarks.home, file_.settings());
}

std::optional<CommandStack::Moved> CommandStack::Exchange(Entries& from, Entries& to, bool back) {
  Seal();
  if (from.empty()) return std::nullopt;
  Entry& entry = from.back();
  const size_t bytes = entry.Bytes();
  std::vector<int> marks = file_.deletion_marks().rows();
  std::optional<CardEditDone> done = Apply(entry.inverse);
  if (!done) return std::nullopt;
  entry.inverse = std::move(done->inverse);
  file_.deletion_marks().Exchange(std::exchange(entry.marks, std::move(marks)));
  if (entry.landmarks) {
    const Landmarks now = ReadLandmarks();
    WriteLandmarks(*entry.landmarks);
    entry.landmarks = now;
  }
  const Moved moved{entry.kind, back ? entry.row_before : entry.row_after};
  bytes_ += entry.Bytes() - bytes;
  to.push_back(std::move(entry));
  from.pop_back();
  return moved;
}

std::optional<CommandStack::Moved> CommandStack::Undo() {
  return Exchange(undo_, redo_, true);
}

std::optional<CommandStack::Moved> CommandStack::Redo() {
  return Exchange(redo_, undo_, false);
}

}  // namespace tessaro
