#pragma once

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

  explicit NaiveTable(char separator) : separator_(separator) {}

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

  void AddColumn(const std::string& name) {
    columns.push_back(name);
    for (Row& row : rows) row.emplace_back();
  }
  void AppendRow() { rows.emplace_back(columns.size()); }
  bool InsertRow(bool after) {
    if (!Reach(cursor)) return false;
    place_ += after ? 1 : 0;
    rows.insert(rows.begin() + place_, Row(columns.size()));
    return true;
  }
  bool DeleteRow() {
    if (!Reach(cursor)) return false;
    rows.erase(rows.begin() + place_);
    if (place_ == RowCount()) number_ = 0;
    if (cursor > RowCount()) Last();
    return true;
  }
  Value Field(int column) {
    return Reach(cursor) && HasField(column) ? Here()[static_cast<size_t>(column) - 1] : std::nullopt;
  }
  bool SetField(int column, const Value& value) {
    return Reach(cursor) && HasField(column) && (Here()[static_cast<size_t>(column) - 1] = value, true);
  }
  bool SaveRow(int k) { return k >= 0 && k < 2 && Reach(cursor) && (spare_[static_cast<size_t>(k)] = Here(), true); }
  bool RestoreRow(int k) { return k >= 0 && k < 2 && Reach(cursor) && (Here() = spare_[static_cast<size_t>(k)], true); }

  void Load(std::string_view file) {
    const std::string text = AsText(file);
    size_t at = ReadHeader(text);
    while (at < text.size()) at = ReadRow(text, at);
  }
  std::string Save() {
    std::string file;
    for (const std::string& name : columns) file += (&name != columns.data() ? Separator() : "") + name;
    file += columns.empty() ? "" : line_end_;
    for (const Row& row : rows) {
      for (size_t i = 0; i < columns.size(); ++i) {
        file += (i > 0 ? Separator() : "") + (i < row.size() ? Escaped(row[i].value_or("")) : "");
      }
      file += columns.empty() ? "" : line_end_;
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
  // Goes from the remembered row when it is not behind, else from the head; also when the way would leave the list.
  bool Reach(int row) {
    if (row < 1 || row > RowCount()) return false;
    place_ = number_ < 1 || row < number_ ? row - 1 : place_ + row - number_;
    if (place_ >= RowCount()) place_ = row - 1;
    number_ = row;
    return true;
  }
  Row& Here() { return rows[static_cast<size_t>(place_)]; }
  bool HasField(int column) { return column >= 1 && column <= static_cast<int>(Here().size()); }
  std::string Separator() const { return std::string(1, separator_); }

  // What a file opened as text gives: a carriage return before a line feed is not there.
  std::string AsText(std::string_view file) {
    std::string text;
    const size_t header = file.find('\n');
    for (size_t i = 0; i < file.size(); ++i) {
      const bool vanishes = file.substr(i).starts_with("\r\n");
      if (vanishes && i + 1 == header) line_end_ = "\r\n";
      if (!vanishes) text += file[i];
    }
    return text;
  }
  size_t ReadHeader(std::string_view text) {
    std::string name;
    for (size_t i = 0; i < text.size(); ++i) {
      if (text[i] == '\n' || text[i] == separator_) AddColumn(Name(name));
      if (text[i] == '\n') return i + 1;
      text[i] == separator_ ? name.clear() : name.push_back(text[i]);
    }
    return text.size();
  }
  std::string Name(std::string_view raw) const {
    std::string name;
    for (size_t i = 0; i < raw.size(); ++i) {
      const char next = i + 1 < raw.size() ? raw[i + 1] : '\0';
      const bool escape = raw[i] == '\\' && i + 1 < raw.size() && (next == 'n' || next == '\\' || next == separator_);
      name += !escape ? raw[i] : next == 'n' ? '\n' : next;
      i += escape ? 1 : 0;
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
      } else if (text[at] == '\n' || text[at] == separator_) {
        if (number < columns.size()) rows.back()[number] = field;
        ++number;
        field.clear();
        if (text[at] == '\n') break;
      } else {
        field += text[at];
      }
    }
    return at + 1;
  }
  std::string Escaped(std::string_view value) const {
    std::string escaped;
    for (const char c : value) {
      if (c == '\n' || c == '\\' || c == separator_) escaped += '\\';
      escaped += c == '\n' ? 'n' : c;
    }
    return escaped;
  }

  char separator_;
  std::string line_end_ = "\n";
  int number_ = 0;  // of the remembered row, 0 for none
  int place_ = 0;   // where that row really stands, counted from 0
  std::array<Row, 2> spare_;
};

}  // namespace tessaro
