#include "store/index_text.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "platform/disk.h"
#include "platform/progress.h"
#include "store/card_columns.h"

namespace tessaro {
namespace {

constexpr size_t kHeldBytes = size_t{256} * 1024;

// The fields of one row after the other; what a row lacks is "".
class RowSource {
 public:
  virtual ~RowSource() = default;
  // Called first. Whether the columns have exactly these names.
  virtual bool HasColumns(IndexFields names) = 0;
  // Fills the fields; false behind the last row.
  virtual bool Next(std::span<std::string_view> fields) = 0;
};

class TableSource : public RowSource {
 public:
  explicit TableSource(const CardTable& table) : table_(table) {}

  bool HasColumns(IndexFields names) override {
    if (table_.ColumnCount() != static_cast<int>(names.size())) return false;
    for (size_t i = 0; i < names.size(); ++i) {
      if (table_.ColumnName(static_cast<int>(i) + 1) != names[i]) return false;
    }
    return true;
  }
  bool Next(std::span<std::string_view> fields) override {
    if (row_ >= table_.RowCount()) return false;
    ++row_;
    for (size_t i = 0; i < fields.size(); ++i) fields[i] = table_.Peek(static_cast<int>(i) + 1, row_);
    return true;
  }

 private:
  const CardTable& table_;
  int row_ = 0;
};

// Reads a text without escapes just as a table does.
class PlainTextSource : public RowSource {
 public:
  explicit PlainTextSource(std::string_view text) : text_(text) {}

  bool HasColumns(IndexFields names) override {
    std::string expected;
    for (const std::string_view name : names) (expected += expected.empty() ? "" : "\x0F") += name;
    return text_.find('\n') != std::string_view::npos && NextLine() == expected;
  }
  bool Next(std::span<std::string_view> fields) override {
    if (at_ >= text_.size()) return false;
    std::string_view line = NextLine();
    for (std::string_view& field : fields) {
      // Fields are too short for a vector search to be worth its start.
      const auto separator = static_cast<size_t>(std::find(line.begin(), line.end(), kFieldSeparator) - line.begin());
      // What no separator and no line feed ends is lost.
      field = separator < line.size() || line_has_end_ ? line.substr(0, separator) : std::string_view();
      line.remove_prefix(std::min(separator + 1, line.size()));
    }
    return true;
  }

 private:
  std::string_view NextLine() {
    const size_t feed = text_.find('\n', at_);
    line_has_end_ = feed != std::string_view::npos;
    std::string_view line = text_.substr(at_, std::min(feed, text_.size()) - at_);
    if (line_has_end_ && line.ends_with('\r')) line.remove_suffix(1);
    at_ = line_has_end_ ? feed + 1 : text_.size();
    return line;
  }

  std::string_view text_;
  size_t at_ = 0;
  bool line_has_end_ = false;
};

class TextFile : public ReadableFile {
 public:
  explicit TextFile(std::string_view text) : text_(text) {}
  uint64_t Size() const override { return text_.size(); }
  std::ptrdiff_t Read(char* buffer, size_t size) override {
    const size_t count = text_.copy(buffer, size);
    text_.remove_prefix(count);
    return static_cast<std::ptrdiff_t>(count);
  }

 private:
  std::string_view text_;
};

bool ReadRows(RowSource& source, const IndexFrame& frame, const CardIds& ids, const TakeIndexRow& take) {
  std::vector<std::string_view> fields(frame.columns.size());
  const auto next_is = [&](IndexFields expected) {
    return source.Next(fields) && std::equal(fields.begin(), fields.end(), expected.begin());
  };
  if (!source.HasColumns(frame.columns) || !next_is(frame.first)) return false;
  for (int row = kFirstCardRow; row < ids.RowCount(); ++row) {
    if (!source.Next(fields) || !take(fields)) return false;
  }
  return next_is(frame.last) && !source.Next(fields);
}

}  // namespace

void IndexWriter::Row(IndexFields fields) {
  for (size_t i = 0; i < fields.size(); ++i) {
    if (i > 0) held_ += kFieldSeparator;
    AppendEscaped(fields[i]);
  }
  held_ += '\n';
  Progress().counter += static_cast<int64_t>(fields.size());
  Progress().ShowPosition(Progress().counter);
  if (held_.size() >= kHeldBytes) good_ = Finish();
}

void IndexWriter::AppendEscaped(std::string_view field) {
  for (const char c : field) {
    if (c == '\n') {
      held_ += "\\n";
      continue;
    }
    if (c == '\\' || c == kFieldSeparator) held_ += '\\';
    held_ += c;
  }
}

bool IndexWriter::Finish() {
  good_ = good_ && file_.Write(held_);
  held_.clear();
  return good_;
}

bool ReadIndexTable(const CardTable& table, const IndexFrame& frame, const CardIds& ids, const TakeIndexRow& take) {
  TableSource source(table);
  return ReadRows(source, frame, ids, take);
}

bool ReadIndexText(std::string_view text, const IndexFrame& frame, const CardIds& ids, const TakeIndexRow& take) {
  if (text.find('\\') == std::string_view::npos) {
    Progress().counter += static_cast<int64_t>(text.size());
    if (Progress().display) Progress().ShowPosition(Progress().counter);
    PlainTextSource source(text);
    return ReadRows(source, frame, ids, take);
  }
  // Only odd IDs are written with escapes.
  CardTable table;
  table.SetSeparator(kFieldSeparator);
  TextFile file(text);
  return table.LoadFrom(file) && ReadIndexTable(table, frame, ids, take);
}

IndexedRows::IndexedRows(const CardIds& ids) : ids_(ids) {
  rows_.reserve(static_cast<size_t>(ids.RowCount()));
  numbers_.reserve(static_cast<size_t>(ids.RowCount()));
}

bool IndexedRows::Add(std::string_view text, std::string_view id) {
  int row = 0;
  if (text.empty() || text.front() < '1' || text.front() > '9') return false;
  const std::from_chars_result result = std::from_chars(text.data(), text.data() + text.size(), row);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return false;
  if (row < kFirstCardRow || row >= ids_.RowCount()) return false;
  rows_.push_back(row);
  numbers_.push_back(SixDigits(id));
  return numbers_.back() != kNotSixDigits || ids_.Text(row) == id;
}

bool IndexedRows::AllFit() const {
  std::vector<uint8_t> seen(static_cast<size_t>(ids_.RowCount()) + 1, 0);
  bool fit = true;
  for (size_t i = 0; i < rows_.size(); ++i) {
    uint8_t& times = seen[static_cast<size_t>(rows_[i])];
    fit &= times == 0 && ids_.number(rows_[i]) == numbers_[i];
    times = 1;
  }
  return fit;
}

}  // namespace tessaro
