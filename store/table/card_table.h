#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "store/table/line_end.h"
#include "store/table/packed_fields.h"

namespace tessaro {

class ContentHash;
class Progress;
class ReadableFile;
class RowShift;
class WritableFile;

// A table of text in memory: named columns, rows of fields, and a cursor that stands on one row. It knows nothing of
// cards. All numbers of rows and columns count from 1. An operation that fails returns false or null and changes
// nothing, unless it says otherwise. A view that a table hands out holds until that field, its row or the table
// changes.
class CardTable {
 public:
  using Value = std::optional<std::string_view>;  // nullopt: null field

  CardTable();
  ~CardTable();
  CardTable(CardTable&&) noexcept;
  CardTable& operator=(CardTable&&) noexcept;

  // Drops all columns, types and rows. The cursor is 0, both flags are set; separator, quote and table name stay.
  void Clear();
  // Adds a column at the end; every row gets a null field for it.
  void AddColumn(std::string_view name);
  // The types of columns mean nothing here, and nobody asks for them. False when there is no such column.
  bool SetColumnType(std::string_view name, std::string_view type);
  Value ColumnName(int i) const;
  // The first column with exactly this name, 0 when there is none.
  int ColumnIndex(std::string_view name) const;
  int ColumnCount() const;
  int RowCount() const;
  // The row that the cursor stands on; 0 before the first move.
  int CurrentRow() const;
  bool Bof() const;
  bool Eof() const;

  // Adds a row of null fields at the end; the cursor stays.
  void AppendRow();
  // Inserts a row of null fields before or after the cursor row; false when there is none. The cursor keeps its number.
  // After InsertRow(false) that is the new row. Deliberate: after InsertRow(true) the cursor number reads as the new
  // row too, and every higher number as the row after the one it should be, until a row before it is read. Only reading
  // and setting of fields counts, moves of the cursor do not; a number that would so lie past the last row ends this
  // as well. Peek and Poke take the true numbers, and a save writes every row once.
  bool InsertRow(bool after);
  // Takes out the rows that a shift removes and puts in others where it inserts some: rows of null fields, or with
  // `fields` for each of them its fields, in ascending order of columns, which exist. The cursor keeps its
  // number, or goes to the last row when there is none of that number. False, and all as it was, when the table cannot
  // hold so many rows.
  [[nodiscard]] bool ShiftRows(const RowShift& shift, const PackedFields& fields = {});
  // Deletes the cursor row. The cursor keeps its number, or goes to the last row when there is none of that number.
  bool DeleteRow();

  // A move that succeeds clears both flags. One that fails leaves the cursor where it is and sets flags: Prior sets
  // Bof, Next sets Eof, GoTo both; in an empty table every move sets both.
  bool First();
  bool Last();
  bool Prior();
  bool Next();
  bool GoTo(int row);

  // Fields of the cursor row; null, or false, when there is no cursor row or no such column.
  Value FieldByName(std::string_view name) const;
  bool SetFieldByName(std::string_view name, Value value);
  Value Field(int column) const;
  // `value` may be a view of a field of this table.
  bool SetField(int column, Value value);
  // Moves the cursor as GoTo does and reads there: "" when there is no such row or field or the field is null.
  std::string_view FieldAt(int column, int row);
  // The same without moving the cursor: "" when there is no such field or it is null. For loops over many rows.
  std::string_view Peek(int column, int row) const;
  // Peeks at several columns of one row, which is found only once.
  void PeekAll(int row, std::span<const int> columns, std::span<std::string_view> values) const;
  // For loops that peek at all rows: the texts of this row will soon be asked for. Any number is right.
  void Expect(int row) const;
  // How far ahead such a loop tells it.
  static constexpr int kAhead = 12;
  bool Poke(int column, int row, Value value);
  // Pokes at several columns of each of many rows, both in ascending order; `fields` stand beside the rows. What does
  // not exist is passed over. Takes less memory and time than a Poke for each.
  void PokeRows(std::span<const int> rows, const PackedFields& fields);

  // Copies the cursor row to spare row 0 or 1, and back: the cursor row then has as many fields as the spare row.
  bool SaveRow(int k);
  bool RestoreRow(int k);

  // Reads a file in place of what the table holds, with the table's separator, and takes the table's name from the
  // path. The cursor then stands on the last row. Missing fields of short lines are null, what is too much is dropped,
  // and so is what stands after the last separator of a last line without a line feed. A carriage return before a line
  // feed vanishes. False when the file could not be opened or reading broke off: the table is as it was.
  [[nodiscard]] bool LoadFromFile(const std::filesystem::path& path);
  // Writes a file, with the line ends that the table was read with; the cursor then stands on the last row. The file is
  // replaced as a whole, after everything was written beside it, and on a failure it is as it was. Does not wait for
  // the disk. Anything but a plain file, a device for example, is written directly.
  [[nodiscard]] bool SaveToFile(const std::filesystem::path& path);
  // Read and write the same format from and to an open file, from its start. `hash` takes all bytes of the file;
  // `progress` hears of characters read and fields written. SaveTo neither flushes nor closes it; after a failure the
  // file holds the beginning.
  [[nodiscard]] bool LoadFrom(ReadableFile& file, ContentHash* hash = nullptr, Progress* progress = nullptr);
  [[nodiscard]] bool SaveTo(WritableFile& file, Progress* progress = nullptr);
  // The name is the text before the last "." of the path, from the last ":", "\" or "/" before that point on.
  // Deliberate: a point in a folder's name counts like any other.
  void SetNameFromPath(std::string_view path);
  const std::string& TableName() const;
  // ";" in a new table. Any byte, though a backslash or line feed parts no fields when read.
  void SetSeparator(char separator);
  char Separator() const;
  char Quote() const;
  // Of the file that it was read from; a line feed in a new table.
  LineEnd line_end() const;

 private:
  struct State;

  // The true number of the row that reads as number `row` by now, 0 when there is none; see InsertRow.
  int Reach(int row) const;
  bool MoveTo(int row);
  void PokeMoving(int row, std::span<const FieldView> fields);
  bool Write(const std::filesystem::path& path);
  bool Replace(const std::filesystem::path& path);

  // Null only in a table that was moved from; that one can be assigned to or destroyed.
  std::unique_ptr<State> state_;
};

}  // namespace tessaro
