#include "cards/card_edit.h"

#include <algorithm>
#include <array>
#include <functional>
#include <string_view>
#include <utility>

#include "store/table/packed_parts.h"

namespace tessaro {
namespace {

PackedFields RowsFrom(const PackedFields& fields, const PackedFields::Place& from, size_t rows) {
  PackedFields taken;
  PackedReader reader(fields, from);
  for (size_t i = 0; i < rows && reader.Next(); ++i) taken.AddRow(reader.fields());
  return taken;
}

template <typename T>
void Append(std::vector<T>& all, const std::vector<T>& more) {
  all.insert(all.end(), more.begin(), more.end());
}

}  // namespace

void CardCommand::Remove(int row) {
  edit_.removed.push_back(row);
}

void CardCommand::InsertBehind(int row, std::span<const FieldView> fields) {
  edit_.places.push_back(row);
  edit_.inserted.AddRow(fields);
}

void CardCommand::Replace(int row, std::span<const FieldView> fields) {
  if (!edit_.replaced.empty() && edit_.replaced.back() == row) return edit_.replacing.AddToLastRow(fields);
  edit_.replaced.push_back(row);
  edit_.replacing.AddRow(fields);
}

void CardCommand::ReserveReplaced(size_t rows) {
  edit_.replaced.reserve(rows);
  edit_.replacing.Reserve(PackedFields::kCountedRow * rows);
}

void CardCommand::AppendReplaced(CardCommand behind) {
  Append(edit_.replaced, behind.edit_.replaced);
  edit_.replacing.Append(std::move(behind.edit_.replacing));
}

std::optional<CardEditDone> CardEdit::Apply(CardCommand command, IndexWork index_work) {
  if (!file_.IsOpen() || !Fits(command.edit_, file_.cards())) return std::nullopt;
  CardEditDone done;
  CardCommand& inverse = done.inverse;
  PackedFields old_ids;
  TableEdit edit = Effective(std::move(command), inverse, old_ids);
  if (!edit.MovesRows() && edit.replaced.empty()) return done;
  RowShift shift = ShiftOf(edit);
  KeepRemoved(edit, shift, inverse);
  inverse.edit_.removed = shift.inserted();
  for (int& row : inverse.edit_.replaced) row = shift.Map(row);
  if (!file_.Edit(std::move(edit), std::move(old_ids), index_work)) return std::nullopt;
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

TableEdit CardEdit::Effective(CardCommand command, CardCommand& inverse, PackedFields& old_ids) const {
  TableEdit& edit = command.edit_;
  const size_t count = edit.replaced.size();
  const PackedFields::Place middle = edit.replacing.Middle();
  auto [front, behind] = ReadInTwoParts(
      edit.replacing, [&](const PackedFields::Place& from, size_t end) { return EffectivePart(command, from, end); });
  if (front.fresh || behind.fresh) {
    if (!front.fresh) front.fresh = RowsFrom(edit.replacing, {}, middle.row);
    front.fresh->Append(behind.fresh ? *std::move(behind.fresh) : RowsFrom(edit.replacing, middle, count));
    edit.replacing = *std::move(front.fresh);
  }
  if (!behind.learned.empty()) front.learned.resize(front.rows.size());
  Append(front.learned, behind.learned);
  Append(front.rows, behind.rows);
  front.old.Append(std::move(behind.old));
  old_ids = std::move(front.old_ids);
  old_ids.Append(std::move(behind.old_ids));
  edit.replaced = front.rows;
  inverse.edit_.replaced = std::move(front.rows);
  inverse.edit_.replacing = std::move(front.old);
  inverse.learned_ = std::move(front.learned);
  return std::move(edit);
}

CardEdit::Part CardEdit::EffectivePart(const CardCommand& command, const PackedFields::Place& from, size_t end) const {
  const TableEdit& edit = command.edit_;
  Part part;
  part.rows.reserve(edit.replaced.size() - from.row);
  part.old.Reserve(edit.replacing.bytes().size() - from.start);
  part.old_ids.Reserve(PackedFields::kCountedRow * (edit.replaced.size() - from.row));
  Change change;
  PackedReader reader(edit.replacing, from);
  for (size_t i = from.row; i < end; ++i) {
    const int row = edit.replaced[i];
    file_.cards().Expect(row + CardTable::kAhead);
    reader.Next();
    const bool answered =
        i < command.learned_.size() && command.learned_[i] != 0 && command.learned_[i] != LearnedHash(row);
    Compare(row, reader.fields(), answered, change);
    if (!part.fresh && change.fresh.size() != reader.fields().size()) {
      part.fresh = RowsFrom(edit.replacing, from, i - from.row);
    }
    if (change.fresh.empty()) continue;
    part.rows.push_back(row);
    if (part.fresh) part.fresh->AddRow(change.fresh);
    part.old.AddRow(change.old);
    AddOldId(file_.cards().Peek(file_.columns().id, row), part.old_ids);
    if (change.learned) part.learned.resize(part.rows.size());
    if (change.learned) part.learned.back() = 1;
  }
  return part;
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
