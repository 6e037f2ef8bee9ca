#include "store/table/table_edit.h"

#include <algorithm>

#include "store/table/card_table.h"

namespace tessaro {
namespace {

// From so many rows on memory counts more than that what a row leaves behind is not used again.
constexpr size_t kManyRows = 100;

bool AreCards(const std::vector<int>& rows, const CardTable& table) {
  const auto not_ascending = [](int row, int next) { return row >= next; };
  return std::adjacent_find(rows.begin(), rows.end(), not_ascending) == rows.end() &&
         (rows.empty() || (rows.front() > 1 && rows.back() < table.RowCount()));
}

bool ArePlaces(const std::vector<int>& places, const CardTable& table) {
  return std::is_sorted(places.begin(), places.end()) &&
         (places.empty() || (places.front() >= 1 && places.back() < table.RowCount()));
}

bool ShareNone(const std::vector<int>& a, const std::vector<int>& b) {
  auto next = a.begin();
  return std::none_of(b.begin(), b.end(), [&](int row) {
    next = std::lower_bound(next, a.end(), row);
    return next != a.end() && *next == row;
  });
}

bool HasColumns(const CardTable& table, const PackedFields& fields) {
  return fields.columns().empty() || fields.columns().back() <= table.ColumnCount();
}

}  // namespace

size_t TableEdit::MemoryBytes() const {
  return sizeof(TableEdit) + sizeof(int) * (removed.capacity() + places.capacity() + replaced.capacity()) +
         inserted.bytes().capacity() + replacing.bytes().capacity();
}

bool Fits(const TableEdit& edit, const CardTable& table) {
  const bool leaves_some =
      table.RowCount() - 2 + static_cast<int>(edit.places.size()) > static_cast<int>(edit.removed.size());
  return leaves_some && AreCards(edit.removed, table) && AreCards(edit.replaced, table) &&
         ShareNone(edit.removed, edit.replaced) && ArePlaces(edit.places, table) &&
         edit.inserted.rows() == edit.places.size() && edit.replacing.rows() == edit.replaced.size() &&
         HasColumns(table, edit.inserted) && HasColumns(table, edit.replacing);
}

std::vector<int> InsertedRows(const TableEdit& edit) {
  std::vector<int> rows;
  rows.reserve(edit.places.size());
  size_t gone = 0;
  for (const int place : edit.places) {
    while (gone < edit.removed.size() && edit.removed[gone] <= place) ++gone;
    rows.push_back(place - static_cast<int>(gone) + static_cast<int>(rows.size()) + 1);
  }
  return rows;
}

bool Perform(const TableEdit& edit, const RowShift& shift, CardTable& table) {
  // What can fail comes first: the rows that come are made before others go.
  const bool many_come = shift.inserted().size() >= kManyRows;
  if (!(many_come ? table.ShiftRows(shift, edit.inserted) : table.ShiftRows(shift))) return false;
  if (!many_come) {
    PackedReader inserted(edit.inserted);
    for (const int row : shift.inserted()) {
      inserted.Next();
      for (const FieldView& field : inserted.fields()) table.Poke(field.column, row, field.text);
    }
  }
  if (edit.replaced.size() >= kManyRows) {
    std::vector<int> moved;
    for (size_t i = 0; i < edit.replaced.size() && !shift.empty(); ++i) moved.push_back(shift.Map(edit.replaced[i]));
    table.PokeRows(shift.empty() ? edit.replaced : moved, edit.replacing);
    return true;
  }
  PackedReader replacing(edit.replacing);
  for (const int row : edit.replaced) {
    replacing.Next();
    for (const FieldView& field : replacing.fields()) table.Poke(field.column, shift.Map(row), field.text);
  }
  return true;
}

}  // namespace tessaro
