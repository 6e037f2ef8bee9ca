#pragma once

#include <cstdint>
#include <numeric>

#include "store/table/card_table.h"
#include "tests/store/naive_table.h"
#include "tests/support/memory_disk.h"

namespace tessaro {

// A file in memory that is read in pieces of at most `piece` bytes and tells any size. Where it splits, it can be read
// by two.
class TextFile : public ReadableFile {
 public:
  TextFile(std::string_view text, size_t piece, uint64_t told_size, bool splits = false)
      : whole_(text), text_(text), piece_(piece), size_(told_size), splits_(splits) {}
  uint64_t Size() const override { return size_; }
  std::ptrdiff_t Read(char* buffer, size_t size) override {
    const size_t count = text_.copy(buffer, std::min(size, piece_));
    text_.remove_prefix(count);
    return static_cast<std::ptrdiff_t>(count);
  }
  std::unique_ptr<ReadableFile> ReadFrom(uint64_t offset) override {
    if (!splits_) return nullptr;
    return std::make_unique<TextFile>(whole_.substr(std::min(offset, uint64_t{whole_.size()})), piece_, size_);
  }

 private:
  std::string_view whole_;
  std::string_view text_;
  size_t piece_;
  uint64_t size_;
  bool splits_;
};

// The table and its plain model, which are told the same and must answer the same.
class TableTwins {
 public:
  explicit TableTwins(char separator) : naive_(separator) { table_.SetSeparator(separator); }

  bool Load(std::string_view text, size_t piece, uint64_t told_size) {
    TextFile file(text, piece, told_size);
    naive_.Load(std::string(text));
    return table_.LoadFrom(file) && SameContent();
  }

  // True when both answered the same and stand on the same row.
  bool Do(uint8_t operation, int argument) {
    return kOperations[operation % std::size(kOperations)](table_, naive_, argument) &&
           table_.CurrentRow() == naive_.cursor && table_.Bof() == naive_.bof && table_.Eof() == naive_.eof &&
           table_.RowCount() == naive_.RowCount();
  }

  bool SameContent() const {
    std::vector<std::string> names;
    for (int i = 1; i <= table_.ColumnCount(); ++i) names.emplace_back(table_.ColumnName(i).value_or(""));
    if (names != naive_.columns || table_.RowCount() != naive_.RowCount()) return false;
    for (int number = 1; number <= naive_.RowCount(); ++number) {
      const NaiveTable::Row& row = naive_.rows[static_cast<size_t>(number) - 1];
      std::vector<int> columns(row.size());
      std::iota(columns.begin(), columns.end(), 1);
      std::vector<std::string_view> texts(row.size());
      table_.PeekAll(number, columns, texts);
      for (size_t i = 0; i < row.size(); ++i) {
        if (table_.Peek(columns[i], number) != row[i].value_or("") || texts[i] != row[i].value_or("")) return false;
      }
    }
    return true;
  }

  bool SameFile() {
    MemoryDisk disk;
    return table_.SaveTo(*disk.Create("file")) && disk.Content("file") == naive_.Save() &&
           table_.CurrentRow() == naive_.cursor;
  }

 private:
  using Operation = bool (*)(CardTable& a, NaiveTable& b, int n);

  // g++ 12 takes a temporary null for a text that was never set when it builds with sanitizers.
  static inline const NaiveTable::Value kNull;

  static bool Set(CardTable& a, NaiveTable& b, int column, const NaiveTable::Value& value) {
    return a.SetField(column, value) == b.SetField(column, value);
  }
  // The value is a view of a part of the table itself.
  static bool Copy(CardTable& a, NaiveTable& b, int n) {
    const CardTable::Value value = a.Field(1 + n / 5 % 3);
    if (!value) return Set(a, b, n % 5, kNull);
    const std::string_view part = value->substr(std::min(static_cast<size_t>(n / 15), value->size()));
    const std::string copy(part);
    return a.SetField(n % 5, part) == b.SetField(n % 5, copy);
  }

  // Texts that are as long as those there or longer, some with marks that a file escapes.
  static bool SetSeveral(CardTable& a, NaiveTable& b, int n) {
    const std::string texts[] = {std::string(static_cast<size_t>(n % 3), 'x'), n % 4 == 0 ? "a;\\" : std::to_string(n)};
    const int row = 1 + n % 7;
    const FieldView fields[] = {{1 + n % 2, texts[0]}, {3 + n % 2, texts[1]}};
    PackedFields packed;
    packed.AddRow({std::begin(fields), std::end(fields)});
    a.PokeRows(std::span(&row, 1), packed);
    for (const FieldView& field : fields) {
      if (row > b.RowCount() || field.column > static_cast<int>(b.rows[static_cast<size_t>(row) - 1].size())) continue;
      b.rows[static_cast<size_t>(row) - 1][static_cast<size_t>(field.column) - 1] = field.text;
    }
    return true;
  }

  static constexpr Operation kOperations[] = {
      [](CardTable& a, NaiveTable& b, int) { return a.AppendRow(), b.AppendRow(), true; },
      [](CardTable& a, NaiveTable& b, int) { return a.InsertRow(false) == b.InsertRow(false); },
      [](CardTable& a, NaiveTable& b, int) { return a.InsertRow(true) == b.InsertRow(true); },
      [](CardTable& a, NaiveTable& b, int) { return a.DeleteRow() == b.DeleteRow(); },
      [](CardTable& a, NaiveTable& b, int) { return a.First() == b.GoTo(1); },
      [](CardTable& a, NaiveTable& b, int) { return a.Last() == b.Last(); },
      [](CardTable& a, NaiveTable& b, int) { return a.Prior() == b.Prior(); },
      [](CardTable& a, NaiveTable& b, int) { return a.Next() == b.Next(); },
      [](CardTable& a, NaiveTable& b, int n) { return a.GoTo(n) == b.GoTo(n); },
      [](CardTable& a, NaiveTable& b, int n) {
        return Set(a, b, n % 5, std::string(static_cast<size_t>(n / 16), static_cast<char>(n)));
      },
      [](CardTable& a, NaiveTable& b, int n) { return Set(a, b, n % 5, kNull); },
      [](CardTable& a, NaiveTable& b, int n) { return Set(a, b, n % 5, "a\\;\n\r" + std::to_string(n)); },
      [](CardTable& a, NaiveTable& b, int n) { return a.Field(n % 5) == b.Field(n % 5); },
      [](CardTable& a, NaiveTable& b, int n) {
        return a.FieldAt(n % 5, n / 5) == (b.GoTo(n / 5) ? b.Field(n % 5).value_or("") : "");
      },
      [](CardTable& a, NaiveTable& b, int n) { return a.SaveRow(n % 3) == b.SaveRow(n % 3); },
      [](CardTable& a, NaiveTable& b, int n) { return a.RestoreRow(n % 3) == b.RestoreRow(n % 3); },
      [](CardTable& a, NaiveTable& b, int n) { return n > 4 || (a.AddColumn("x"), b.AddColumn("x"), true); },
      Copy,
      SetSeveral,
      [](CardTable& a, NaiveTable& b, int n) { return n > 0 || (a.Clear(), b.Clear(), true); },
  };

  CardTable table_;
  NaiveTable naive_;
};

}  // namespace tessaro
