#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaro {

// The table in the plainest form, as a measure for the real one: a list of rows with a remembered place, and a reader
// and a writer that go byte by byte. Rows, columns and answers as CardTable has them.
class NaiveTable {
 public:
  using Value = std::optional<std::string>;
  using Row = std::vector<Value>;

  explicit NaiveTable(char separator) : separator_(1, separator) {}

  std::vector<std::string> columns;
  std::vector<Row> rows;
  int cursor = 0;
  bool bof = true;
  bool eof = true;

  int RowCount() const { return static_cast<int>(rows.size()); }
  bool GoTo(int row) {
    const bool good = row >= 1 && row <= RowCount();
    if (good) cursor = row;
    bof = eof = !good;
    return good;
  }
  bool Last() { return GoTo(RowCount()); }
  bool Prior() { return Step(-1, cursor >= 2, bof, eof); }
  bool Next() { return Step(1, cursor < RowCount(), eof, bof); }

  void Clear() {
    const std::array<Row, 2> kept = spare_;
    *this = NaiveTable(separator_.front());
    spare_ = kept;
  }
  void AddColumn(const std::string& name) {
    columns.push_back(name);
    for (Row& row : rows) row.emplace_back();
  }
  void AppendRow() { rows.emplace_back(columns.size()); }
  bool InsertRow(bool after) {
    if (!Reach()) return false;
    place_ += after ? 1 : 0;
    rows.insert(rows.begin() + place_, Row(columns.size()));
    return true;
  }
  bool DeleteRow() {
    if (!Reach()) return false;
    rows.erase(rows.begin() + place_);
    if (place_ == RowCount()) number_ = 0;
    if (cursor > RowCount()) Last();
    return true;
  }
  Value Field(int column) { return HasField(column) ? Here()[static_cast<size_t>(column) - 1] : std::nullopt; }
  bool SetField(int column, const Value& value) {
    const bool has = HasField(column);
    if (has) Here()[static_cast<size_t>(column) - 1] = value;
    return has;
  }
  bool SaveRow(int k) { return k >= 0 && k < 2 && Reach() && (spare_[static_cast<size_t>(k)] = Here(), true); }
  bool RestoreRow(int k) { return k >= 0 && k < 2 && Reach() && (Here() = spare_[static_cast<size_t>(k)], true); }

  // Into an empty table.
  void Load(std::string text) {
    if (text.find("\r\n") < text.find('\n')) line_end_ = "\r\n";
    // What a file opened as text gives: a carriage return before a line feed is not there.
    for (size_t at = 0; (at = text.find("\r\n", at)) != std::string::npos;) text.erase(at, 1);
    const size_t rows_begin = std::min(text.find('\n'), text.size());
    std::string field;
    for (size_t at = 0; at <= rows_begin && at < text.size(); ++at) {
      if (text[at] != '\n' && text[at] != separator_.front()) {
        field += text[at];
        continue;
      }
      AddColumn(Name(field));
      field.clear();
    }
    for (size_t at = rows_begin + 1; at < text.size();) at = ReadRow(text, at);
  }
  std::string Save() {
    std::string file;
    for (const std::string& name : columns) file += name + (&name == &columns.back() ? line_end_ : separator_);
    for (const Row& row : rows) {
      for (size_t i = 0; i < columns.size(); ++i) {
        if (i < row.size()) file += Escaped(row[i].value_or(""));
        file += i + 1 == columns.size() ? line_end_ : separator_;
      }
    }
    if (!rows.empty()) Last();
    number_ = 0;
    return file;
  }

 private:
  bool Step(int by, bool can, bool& flag, bool& other) {
    if (can && !rows.empty()) return GoTo(cursor + by);
    flag = true;
    if (rows.empty()) other = true;
    return false;
  }
  // Goes to the current row: from the remembered one when that is not behind, else from the head; also when the way
  // would leave the list.
  bool Reach() {
    if (cursor < 1 || cursor > RowCount()) return false;
    place_ = number_ < 1 || cursor < number_ ? cursor - 1 : place_ + cursor - number_;
    if (place_ >= RowCount()) place_ = cursor - 1;
    number_ = cursor;
    return true;
  }
  Row& Here() { return rows[static_cast<size_t>(place_)]; }
  bool HasField(int column) { return Reach() && column >= 1 && column <= static_cast<int>(Here().size()); }

  static std::string Name(std::string name) {
    for (size_t at = 0; at + 1 < name.size(); ++at) {
      const bool feed = name.compare(at, 2, "\\n") == 0;
      if (feed || name.compare(at, 2, "\\\\") == 0) name.replace(at, 2, feed ? "\n" : "\\");
    }
    return name;
  }
  size_t ReadRow(std::string_view text, size_t at) {
    AppendRow();
    Last();
    std::string field;
    size_t number = 0;
    for (; at < text.size(); ++at) {
      if (text[at] == '\\') {
        const char next = at + 1 < text.size() ? text[++at] : '\\';
        field += next == 'n' || next == 'N' ? '\n' : next;
      } else if (text[at] != '\n' && text[at] != separator_.front()) {
        field += text[at];
      } else {
        if (number < columns.size()) rows.back()[number] = field;
        ++number;
        field.clear();
        if (text[at] == '\n') break;
      }
    }
    return at + 1;
  }
  std::string Escaped(std::string_view value) const {
    std::string escaped;
    for (const char c : value) {
      if (c == '\n' || c == '\\' || c == separator_.front()) escaped += '\\';
      escaped += c == '\n' ? 'n' : c;
    }
    return escaped;
  }

  std::string separator_;
  std::string line_end_ = "\n";
  int number_ = 0;  // of the remembered row, 0 for none
  int place_ = 0;   // where that row really stands, counted from 0
  std::array<Row, 2> spare_;
};

}  // namespace tessaro
