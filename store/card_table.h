#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaro {

class ReadableFile;
class WritableFile;

// A table of text in memory: named columns, rows of fields, and a cursor that stands on one row. It knows nothing of
// cards. All numbers of rows and columns count from 1. An operation that fails returns false or null and changes
// nothing, unless it says otherwise. A view that a table hands out holds until that field, its row or the table changes.
class CardTable {
 public:
  using Value = std::optional<std::string_view>;  // nullopt: null field

  CardTable();
  ~CardTable();
  CardTable(CardTable&&) noexcept;
  CardTable& operator=(CardTable&&) noexcept;

  void Clear();
  void AddColumn(std::string_view name);
  bool SetColumnType(std::string_view name, std::string_view type);
  Value ColumnName(int i) const;
  int ColumnIndex(std::string_view name) const;
  int ColumnCount() const;
  int RowCount() const;
  int CurrentRow() const;
  bool Bof() const;
  bool Eof() const;
  void AppendRow();
  bool InsertRow(bool after);
  bool DeleteRow();
  bool First();
  bool Last();
  bool Prior();
  bool Next();
  bool GoTo(int row);
  Value FieldByName(std::string_view name) const;
  bool SetFieldByName(std::string_view name, Value value);
  Value Field(int column) const;
  bool SetField(int column, Value value);
  std::string_view FieldAt(int column, int row);
  // The same without moving the cursor: "" when there is no such field or it is null. For loops over many rows.
  std::string_view Peek(int column, int row) const;
  bool Poke(int column, int row, Value value);
  bool SaveRow(int k);
  bool RestoreRow(int k);
  [[nodiscard]] bool LoadFromFile(const std::filesystem::path& path);
  [[nodiscard]] bool SaveToFile(const std::filesystem::path& path);
  // Reads and writes the same format from and to an open file.
  [[nodiscard]] bool LoadFrom(ReadableFile& file);
  [[nodiscard]] bool SaveTo(WritableFile& file);
  void SetNameFromPath(std::string_view path);
  const std::string& TableName() const;
  void SetSeparator(char separator);
  char Separator() const;
  char Quote() const;
};

}  // namespace tessaro
