#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "store/table/field_text.h"
#include "store/table/memory_block.h"
#include "store/table/packed_fields.h"
#include "store/table/row_order.h"

namespace tessaro {

// A field that was written with escapes; its text without them ends here, counted from that of the row's first such.
struct UnescapedField {
  size_t field = 0;
  size_t end = 0;
  bool operator==(const UnescapedField&) const = default;
};

// A row of the file: its start in the block, the ends of its fields counted from there, and those of them that were
// written with escapes, in order, with the place of their texts in the row's own block of such texts. `as_written`
// tells that its bytes from the start to the last end are just what would be written for it.
struct LoadedRow {
  size_t start = 0;
  std::span<const size_t> ends;
  size_t unescaped_start = 0;
  std::span<const UnescapedField> unescaped;
  bool as_written = false;
};

// The rows of a table without their order. A loaded row is a short record of where its fields lie in the block that the
// file was read into; the first change of a field makes it a changed row, which owns what was changed and still points
// into the block for the rest. Unchanged rows can be written from the block as they were read; a field that was written
// with escapes has its text in a second block. Where many rows change at once, each stays a loaded row: its new texts
// take the place of the old ones, or the row moves to a block of such rows. Where many come, long texts that they have
// in common stand once, in the second block.
//
// A record is a run of 32-bit words: two for the row's place (its start in the block, or the number of the changed row)
// and its kind, then for a loaded row the ends of its fields, counted from the start, two in a word, or one in a word
// where the row is too long for that. Field k begins one byte past the end of field k - 1. A row that is shorter than
// the table has the number of its ends in a word before them. A row with unescaped fields goes on with their number,
// two words for the place of their texts, and for each its number and its end. A row of more than 4 GiB becomes a
// changed row.
//
// Fields count from 0 here; a field that a row does not have is null.
class RowStore {
 public:
  using Value = std::optional<std::string_view>;

  // The block that the file is read into.
  MemoryBlock& block() { return blocks_[RowBlocks::kFile]; }

  // Called once, before the first row: how many fields a row of the file has at most, what parts them, and a guess how
  // large the file is.
  void BeginLoading(int columns, char separator, size_t file_size, bool second_half = false);
  // Text of a field without its escapes, put behind what came before. False when there is no memory.
  bool AddUnescaped(std::string_view text) {
    const MemoryBlock& block = blocks_[unescaped_block_];
    const size_t needed = unescaped_size_ + text.size();
    if (needed > block.room() && !GrowUnescaped(needed)) return false;
    std::copy(text.begin(), text.end(), blocks_[unescaped_block_].data() + unescaped_size_);
    unescaped_size_ = needed;
    return true;
  }
  // The same with this letter in the place of the last byte, a backslash.
  bool AddUnescaped(std::string_view text, char letter) {
    if (!AddUnescaped(text)) return false;
    blocks_[unescaped_block_].data()[unescaped_size_ - 1] = letter;
    return true;
  }
  size_t unescaped_size() const { return unescaped_size_; }
  // Adds a row of the file. A row with fewer ends than columns has null fields at its end. False when the store is
  // full.
  bool AddLoaded(const LoadedRow& loaded, RowHandle& row);

  // Adds all rows of a store into which the second half of the same file was loaded, with the same columns; none may
  // have been changed. Their handles have grown by `added`. False when this store is full.
  bool Append(RowStore&& behind, RowHandle& added);

  // Gives every row one more null field.
  void AddColumn();
  // Adds a row of null fields. False when the store is full.
  bool Add(RowHandle& row);
  // The same with these fields, in ascending order of their columns, which exist; the others may be empty, not null.
  // For many rows: they take less memory than with a Set for each field.
  bool AddFilled(std::span<const FieldView> fields, RowHandle& row);
  void Remove(RowHandle row);

  int FieldCount(RowHandle row) const;
  Value Get(RowHandle row, int field) const;
  // The same for several fields of one row, which is found only once. Columns count from 1, as in a table; "" for null.
  void GetAll(RowHandle row, std::span<const int> columns, std::span<std::string_view> values) const;
  // Has the memory of a loaded row brought near: rows lie so far apart that reading them one after the other is mostly
  // waiting.
  void Expect(RowHandle row) const;
  // `value` may be a view into this store. The field must exist.
  void Set(RowHandle row, int field, Value value);
  // Sets several fields, with columns as above, for many rows: a loaded row stays one where that can be. What a row
  // that grows leaves behind is not used again. No text may be a view into this store. False, and nothing set, when the
  // row cannot be written so.
  bool Rewrite(RowHandle row, std::span<const FieldView> fields) { return Rewrite(row, fields, composed_, true); }
  // A row as it will be, its text only from the first changed field on; kept, since many are made one after the other.
  struct ComposedRow {
    std::string text;
    std::vector<size_t> ends;
    size_t unescaped = 0;  // fields that stay so
  };
  // The same, but false as well when the row has no room where it lies. Threads may do it to different rows at once,
  // each with its own `composed`.
  bool RewriteInPlace(RowHandle row, std::span<const FieldView> fields, ComposedRow& composed) {
    return Rewrite(row, fields, composed, false);
  }
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
    const uint32_t* unescaped = nullptr;  // null when the row has no such fields
    bool as_written = false;
    bool changed = false;
    bool wide = false;

    size_t End(size_t field) const;
  };

  uint32_t* Record(RowHandle row) { return reinterpret_cast<uint32_t*>(records_.data()) + row; }
  const uint32_t* Record(RowHandle row) const { return reinterpret_cast<const uint32_t*>(records_.data()) + row; }
  Place Find(RowHandle row) const;
  Value FieldAt(const Place& place, int field) const;
  // The field of a loaded row that was written with escapes; null for any other.
  Value Unescaped(const Place& place, uint32_t field) const;
  // Rewrites a row in which all texts are as long as those there; false when they are not, and nothing is done.
  bool Overwrite(RowHandle row, const Place& place, std::span<const FieldView> fields);
  // Whether a text is written as it stands.
  bool IsPlain(const FieldView& field) const;
  bool Rewrite(RowHandle row, std::span<const FieldView> fields, ComposedRow& composed, bool may_move);
  // The row as it will be with these fields, none of which is before `first`; false when it cannot be such a row.
  bool ComposeRow(const Place& place, size_t first, std::span<const FieldView> fields, ComposedRow& composed) const;
  // Finds the texts that a row to be added has in common with the row added before, which then are shared_; false when
  // there are none.
  bool FindShared(std::span<const FieldView> fields);
  // Writes a row, without its shared texts, and puts the ends of its fields into composed_. Returns its size.
  size_t WriteFields(std::span<const FieldView> fields, bool shares, char* start);
  // Room for so many bytes behind the rows that were rewritten; its place, or nothing without memory.
  std::optional<uint64_t> PlaceOfRewritten(size_t size);
  bool GrowUnescaped(size_t needed);
  uint32_t* AddRecord(size_t words, RowHandle& row);
  static uint32_t* PackEnds(std::span<const size_t> ends, bool wide, uint32_t* words);
  void PackUnescaped(size_t start, std::span<const UnescapedField> fields, uint32_t* words) const;
  // The fields of a loaded row, null ones after the last end.
  ChangedRow FieldsOf(const Place& place) const;
  ChangedRow FieldsOf(const LoadedRow& loaded) const;
  ChangedRow& Change(RowHandle row);
  void MakeChanged(RowHandle row, ChangedRow fields);

  RowBlocks blocks_;
  size_t unescaped_block_ = RowBlocks::kUnescaped;  // where those of this half go
  size_t unescaped_size_ = 0;                       // bytes in it
  MemoryBlock records_;
  size_t words_used_ = 0;
  int columns_ = 0;
  int loaded_columns_ = 0;
  char separator_ = '\0';
  size_t rewritten_size_ = 0;  // bytes in the block of such rows
  ComposedRow composed_;
  // Texts that rows which come have in common stand once, like texts without their escapes.
  struct SharedTexts {
    std::string text;
    std::vector<UnescapedField> fields;
    size_t start = 0;
  };
  SharedTexts shared_;                   // of the row that was added last
  SharedTexts common_;                   // of the row being added
  std::vector<std::string> last_texts_;  // of the row added last, by column, where they are worth it
  std::vector<ChangedRow> changed_;
  std::vector<RowHandle> removed_;  // changed rows that may be used again
};

}  // namespace tessaro
