#include "cards/card_edit.h"

#include <algorithm>
#include <array>
#include <functional>
#include <string_view>
#include <utility>

namespace tessaro {
namespace {

PackedFields FirstRows(const PackedFields& fields, size_t rows) {
  PackedFields first;
  PackedReader reader(fields);
  for (size_t i = 0; i < rows && reader.Next(); ++i) first.AddRow(reader.fields());
  return first;
}

}  // namespace

void CardCommand::Remove(int row) {
  edit_.removed.push_back(row);
}

void CardCommand::InsertBehind(int row, const std::vector<FieldView>& fields) {
  edit_.places.push_back(row);
  edit_.inserted.AddRow(fields);
}

void CardCommand::Replace(int row, const std::vector<FieldView>& fields) {
  if (!edit_.replaced.empty() && edit_.replaced.back() == row) return edit_.replacing.AddToLastRow(fields);
  edit_.replaced.push_back(row);
  edit_.replacing.AddRow(fields);
}

std::optional<CardEditDone> CardEdit::Apply(CardCommand command) {
  if (!file_.IsOpen() || !Fits(command.edit_, file_.cards())) return std::nullopt;
  CardEditDone done;
  CardCommand& inverse = done.inverse;
  TableEdit edit = Effective(std::move(command), inverse);
  if (!edit.MovesRows() && edit.replaced.empty()) return done;
  RowShift shift = ShiftOf(edit);
  KeepRemoved(edit, shift, inverse);
  inverse.edit_.removed = shift.inserted();
  for (int& row : inverse.edit_.replaced) row = shift.Map(row);
  if (!file_.Edit(std::move(edit))) return std::nullopt;
  for (size_t i = 0; i < inverse.learned_.size(); ++i) {
    if (inverse.learned_[i] != 0) inverse.learned_[i] = LearnedHash(inverse.edit_.replaced[i]);
  }
  done.shift = std::move(shift);
  return done;
}

std::optional<RowShift> CardEdit::ApplyForGood(CardCommand command) {
  if (command.empty()) return RowShift();
  return file_.Edit(std::move(command.edit_));
}

bool CardEdit::Finish(const StageObserver& observer) {
  return !file_.NeedsRebuild() || file_.RebuildIndexes(observer);
}

TableEdit CardEdit::Effective(CardCommand command, CardCommand& inverse) const {
  TableEdit& edit = command.edit_;
  std::vector<int> replaced;
  replaced.reserve(edit.replaced.size());
  inverse.edit_.replaced.reserve(edit.replaced.size());
  inverse.edit_.replacing.Reserve(edit.replacing.bytes().size());
  // Mostly every field changes something. Only from the first one on that does not are they packed anew.
  std::optional<PackedFields> replacing;
  Change change;
  PackedReader reader(edit.replacing);
  for (size_t i = 0; i < edit.replaced.size(); ++i) {
    const int row = edit.replaced[i];
    file_.cards().Expect(row + CardTable::kAhead);
    reader.Next();
    const bool answered =
        i < command.learned_.size() && command.learned_[i] != 0 && command.learned_[i] != LearnedHash(row);
    Compare(row, reader.fields(), answered, change);
    if (!replacing && change.fresh.size() != reader.fields().size()) replacing = FirstRows(edit.replacing, i);
    if (change.fresh.empty()) continue;
    replaced.push_back(row);
    if (replacing) replacing->AddRow(change.fresh);
    inverse.edit_.replaced.push_back(row);
    inverse.edit_.replacing.AddRow(change.old);
    if (change.learned) inverse.learned_.resize(replaced.size());
    if (change.learned) inverse.learned_.back() = 1;
  }
  edit.replaced = std::move(replaced);
  if (replacing) edit.replacing = *std::move(replacing);
  return std::move(edit);
}

void CardEdit::Compare(int row, const std::vector<FieldView>& fields, bool answered, Change& change) const {
  change.fresh.clear();
  change.old.clear();
  change.learned = false;
  for (const FieldView& field : fields) {
    const std::string_view present = file_.cards().Peek(field.column, row);
    if (present == field.text || (answered && IsLearned(field.column))) continue;
    change.fresh.push_back(field);
    change.old.push_back({field.column, present});
    change.learned = change.learned || IsLearned(field.column);
  }
}

void CardEdit::KeepRemoved(const TableEdit& edit, const RowShift& shift, CardCommand& inverse) const {
  const CardTable& cards = file_.cards();
  std::vector<FieldView> fields;
  for (const int row : edit.removed) {
    fields.clear();
    for (int column = 1; column <= cards.ColumnCount(); ++column) {
      const std::string_view text = cards.Peek(column, row);
      if (!text.empty()) fields.push_back({column, text});
    }
    inverse.InsertBehind(shift.MapOrBefore(row), fields);
  }
}

bool CardEdit::IsLearned(int column) const {
  const CardColumns& columns = file_.columns();
  return column == columns.topic || column == columns.score || column == columns.time_learned ||
         column == columns.yes_no_row || column == columns.time_row;
}

uint64_t CardEdit::LearnedHash(int row) const {
  constexpr uint64_t kFactor = 0x9E3779B97F4A7C15U;
  const CardColumns& columns = file_.columns();
  uint64_t hash = 0;
  for (const int column : {columns.topic, columns.score, columns.time_learned, columns.yes_no_row, columns.time_row}) {
    hash = (hash ^ std::hash<std::string_view>()(file_.cards().Peek(column, row))) * kFactor;
    hash ^= hash >> 29U;
  }
  return hash | 1U;
}

}  // namespace tessaro
