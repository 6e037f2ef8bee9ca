#pragma once

#include <cstddef>
#include <vector>

#include "store/table/packed_fields.h"
#include "store/table/row_shift.h"

namespace tessaro {

class CardTable;

// What is to be done to the rows of a table in one step. All rows are those before it, ascending.
struct TableEdit {
  std::vector<int> removed;   // rows that go
  std::vector<int> places;    // for each row that comes the one behind which it comes; several may have the same
  PackedFields inserted;      // beside places: the fields of these rows; others are null
  std::vector<int> replaced;  // rows, none of them removed, of which fields change
  PackedFields replacing;     // beside replaced: the new fields

  bool operator==(const TableEdit&) const = default;
  bool MovesRows() const { return !removed.empty() || !places.empty(); }
  // Memory that it holds.
  size_t MemoryBytes() const;
};

// Whether it can be done to these rows, of which the first and the last stay as they are. Between them at least one
// must be left, since a card file without cards cannot be opened.
bool Fits(const TableEdit& edit, const CardTable& table);

// The numbers that the rows which come will have.
std::vector<int> InsertedRows(const TableEdit& edit);
inline RowShift ShiftOf(const TableEdit& edit) {
  return {edit.removed, InsertedRows(edit)};
}

// Does it to a table that it fits. False, with the rows as they were, when the table cannot take so many.
[[nodiscard]] bool Perform(const TableEdit& edit, const RowShift& shift, CardTable& table);

}  // namespace tessaro
