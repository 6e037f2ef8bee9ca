#pragma once

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>

#include "platform/disk.h"
#include "store/card_table.h"
#include "tests/store/naive_table.h"

namespace tessaro {

// A file in memory that is read in pieces of at most `piece` bytes and tells any size.
class TextFile : public ReadableFile {
 public:
  TextFile(std::string_view text, size_t piece, uint64_t told_size) : text_(text), piece_(piece), size_(told_size) {}
  uint64_t Size() const override { return size_; }
  std::ptrdiff_t Read(char* buffer, size_t size) override {
    const size_t count = text_.copy(buffer, std::min(size, piece_));
    text_.remove_prefix(count);
    return static_cast<std::ptrdiff_t>(count);
  }

 private:
  std::string_view text_;
  size_t piece_;
  uint64_t size_;
};

class StringFile : public WritableFile {
 public:
  bool Write(std::string_view bytes) override {
    text += bytes;
    return true;
  }
  bool Flush() override { return true; }
  bool Close() override { return true; }

  std::string text;
};

// The table and its plain model, which are told the same and must answer the same.
class TableTwins {
 public:
  explicit TableTwins(char separator) : naive_(separator) { table_.SetSeparator(separator); }

  bool Load(std::string_view text, size_t piece, uint64_t told_size) {
    TextFile file(text, piece, told_size);
    naive_.Load(text);
    return table_.LoadFrom(file) && SameContent();
  }

  // True when both answered the same and stand on the same row.
  bool Do(uint8_t operation, uint8_t argument) {
    return Answer(operation, argument) && table_.CurrentRow() == naive_.cursor && table_.Bof() == naive_.bof &&
           table_.Eof() == naive_.eof && table_.RowCount() == naive_.RowCount();
  }

  bool SameContent() const {
    if (table_.RowCount() != naive_.RowCount() || table_.ColumnCount() != static_cast<int>(naive_.columns.size())) {
      return false;
    }
    for (int i = 1; i <= table_.ColumnCount(); ++i) {
      if (table_.ColumnName(i) != naive_.columns[static_cast<size_t>(i) - 1]) return false;
    }
    int number = 0;
    for (const NaiveTable::Row& row : naive_.rows) {
      ++number;
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
    StringFile file;
    return table_.SaveTo(file) && file.text == naive_.Save() && table_.CurrentRow() == naive_.cursor;
  }

 private:
  static bool Same(CardTable::Value a, const NaiveTable::Value& b) {
    return a.has_value() == b.has_value() && a.value_or("") == b.value_or("");
  }

  bool Answer(uint8_t operation, uint8_t argument) {
    const int column = argument % 5;
    switch (operation % 18) {
      case 0:
        return table_.AppendRow(), naive_.AppendRow(), true;
      case 1:
        return table_.InsertRow(false) == naive_.InsertRow(false);
      case 2:
        return table_.InsertRow(true) == naive_.InsertRow(true);
      case 3:
        return table_.DeleteRow() == naive_.DeleteRow();
      case 4:
        return table_.First() == naive_.GoTo(1);
      case 5:
        return table_.Last() == naive_.Last();
      case 6:
        return table_.Prior() == naive_.Prior();
      case 7:
        return table_.Next() == naive_.Next();
      case 8:
        return table_.GoTo(argument) == naive_.GoTo(argument);
      case 9:
        return SetBoth(column, std::string(argument / 16, static_cast<char>(argument)));
      case 10:
        return SetBoth(column, std::nullopt);
      case 11:
        return SetBoth(column, "a\\;\n\r" + std::to_string(argument));
      case 12:
        return Same(table_.Field(column), naive_.Field(column));
      case 13:
        return ReadAt(column, argument / 5);
      case 14:
        return table_.SaveRow(argument % 3) == naive_.SaveRow(argument % 3);
      case 15:
        return table_.RestoreRow(argument % 3) == naive_.RestoreRow(argument % 3);
      case 16:
        return argument > 4 || (table_.AddColumn("x"), naive_.AddColumn("x"), true);
      // A value that is a view of a part of the table itself.
      default:
        return CopyBoth(column, 1 + argument / 5 % 3, argument / 15);
    }
  }
  bool SetBoth(int column, const NaiveTable::Value& value) {
    return table_.SetField(column, value) == naive_.SetField(column, value);
  }
  bool CopyBoth(int column, int from, size_t part) {
    const CardTable::Value value = table_.Field(from);
    const std::string copy(value.value_or(""));
    const size_t start = std::min(part, copy.size());
    if (!value) return table_.SetField(column, value) == naive_.SetField(column, std::nullopt);
    return table_.SetField(column, value->substr(start)) == naive_.SetField(column, copy.substr(start));
  }
  bool ReadAt(int column, int row) {
    const std::string read(table_.FieldAt(column, row));
    return read == (naive_.GoTo(row) ? naive_.Field(column).value_or("") : "");
  }

  CardTable table_;
  NaiveTable naive_;
};

}  // namespace tessaro
