#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "store/table/field_text.h"
#include "store/table/memory_block.h"
#include "store/table/row_order.h"

namespace tessaro {

// The rows of a table without their order. A loaded row is a short record of where its fields lie in the block that the
// file was read into; the first change of a field makes it a changed row, which owns what was changed and still points
// into the block for the rest.
//
// A record is a run of 32-bit words: two for the row's place (its start in the block, or the number of the changed row)
// and its kind, then for a loaded row the ends of its fields, counted from the start, two in a word, or one in a word
// where the row is too long for that. Field k begins one byte past the end of field k - 1. A row that is shorter than
// the table has the number of its ends in a word before them. A row of more than 4 GiB becomes a changed row.
//
// Fields count from 0 here; a field that a row does not have is null.
class RowStore {
 public:
  using Value = std::optional<std::string_view>;

  MemoryBlock& block() { return block_; }

  // Called once, before the first row: how many fields a row of the file has at most, and a guess how large it is.
  void BeginLoading(int columns, size_t file_size);
  // Adds a row of the file. `ends` counts from `start`; a row with fewer ends than columns has null fields at its end.
  // `as_written` tells that its bytes from the start to the last end are just what would be written for it. False when
  // the store is full.
  bool AddLoaded(size_t start, std::span<const size_t> ends, bool as_written, RowHandle& row);

  // Adds all rows of a store into which another part of the same block was loaded, with the same columns; none may have
  // been changed. Their handles have grown by `added`. False when this store is full.
  bool Append(const RowStore& behind, RowHandle& added);

  // Gives every row one more null field.
  void AddColumn();
  // Adds a row of null fields. False when the store is full.
  bool Add(RowHandle& row);
  void Remove(RowHandle row);

  int FieldCount(RowHandle row) const;
  Value Get(RowHandle row, int field) const;
  // The same for several fields of one row, which is found only once. Columns count from 1, as in a table; "" for null.
  void GetAll(RowHandle row, std::span<const int> columns, std::span<std::string_view> values) const;
  // `value` may be a view into this store. The field must exist.
  void Set(RowHandle row, int field, Value value);
  // Replaces all fields of a row; the row then has as many.
  void SetAll(RowHandle row, std::vector<FieldText> fields);
  // The bytes of a row that is unchanged and was read in just the form that it would be written in.
  Value AsWritten(RowHandle row) const;

 private:
  using ChangedRow = std::vector<FieldText>;
  struct Place {
    uint64_t start = 0;  // in the block, or the number of the changed row
    const uint32_t* ends = nullptr;
    size_t end_count = 0;
    bool as_written = false;
    bool changed = false;
    bool wide = false;

    size_t End(size_t field) const;
  };

  uint32_t* Record(RowHandle row) { return reinterpret_cast<uint32_t*>(records_.data()) + row; }
  const uint32_t* Record(RowHandle row) const { return reinterpret_cast<const uint32_t*>(records_.data()) + row; }
  Place Find(RowHandle row) const;
  Value FieldAt(const Place& place, int field) const;
  uint32_t* AddRecord(size_t words, RowHandle& row);
  static void PackEnds(std::span<const size_t> ends, bool wide, uint32_t* words);
  // The fields of a loaded row, null ones after the last end.
  template <typename EndOf>
  ChangedRow FieldsInBlock(uint64_t start, size_t count, EndOf end_of) const;
  ChangedRow& Change(RowHandle row);
  void MakeChanged(RowHandle row, ChangedRow fields);

  MemoryBlock block_;
  MemoryBlock records_;
  size_t words_used_ = 0;
  int columns_ = 0;
  int loaded_columns_ = 0;
  std::vector<ChangedRow> changed_;
  std::vector<RowHandle> removed_;  // changed rows that may be used again
};

}  // namespace tessaro
