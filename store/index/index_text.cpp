#include "store/index/index_text.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "platform/memory_file.h"
#include "platform/progress.h"
#include "store/table/card_columns.h"
#include "store/table/table_scan.h"

namespace tessaro {
namespace {

constexpr size_t kHeldBytes = size_t{256} * 1024;
constexpr size_t kMostRowDigits = 9;
constexpr size_t kMostDigits = 10;

// The fields of one row after the other; what a row lacks is "".
class RowSource {
 public:
  virtual ~RowSource() = default;
  // Called first. Whether the columns have exactly these names.
  virtual bool HasColumns(IndexFields names) = 0;
  // Fills the fields; false after the last row.
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
    for (const std::string_view line_end : {"\n", "\r\n"}) {
      if (!text_.starts_with(expected + std::string(line_end))) continue;
      start_ = piece_end_ = expected.size() + line_end.size();
      return true;
    }
    return false;
  }
  bool Next(std::span<std::string_view> fields) override {
    if (start_ >= text_.size()) return false;
    size_t count = 0;
    bool line_ended = false;
    while (!line_ended && FindMark()) {
      const size_t mark = piece_ + marks_[next_++];
      line_ended = text_[mark] == '\n';
      const bool has_return = line_ended && mark > start_ && text_[mark - 1] == '\r';
      if (count < fields.size()) fields[count++] = text_.substr(start_, mark - start_ - (has_return ? 1 : 0));
      start_ = mark + 1;
    }
    // What no separator and no line feed ends is lost.
    if (!line_ended) start_ = text_.size();
    std::fill(fields.begin() + static_cast<std::ptrdiff_t>(count), fields.end(), std::string_view());
    return true;
  }

 private:
  // Whether there is a next mark. Looks for those of the next piece when all of this one have been taken.
  bool FindMark() {
    while (next_ == count_ && piece_end_ < text_.size()) {
      piece_ = piece_end_;
      const std::string_view piece = text_.substr(piece_, kPiece);
      piece_end_ += piece.size();
      const bool readable_behind = text_.size() - piece_end_ >= kScanWidth;
      if (!readable_behind) piece.copy(last_.data(), piece.size());
      count_ = FindMarks(readable_behind ? piece.data() : last_.data(), piece.size(), kFieldSeparator, marks_.data());
      next_ = 0;
    }
    return next_ < count_;
  }

  static constexpr size_t kPiece = 4096;

  std::string_view text_;
  size_t start_ = 0;  // of the next field
  size_t piece_ = 0;
  size_t piece_end_ = 0;
  std::array<uint32_t, kPiece + kScanWidth> marks_ = {};  // of the piece, counted from its start
  size_t next_ = 0;
  size_t count_ = 0;
  std::array<char, kPiece + kScanWidth> last_ = {};  // a piece with nothing readable past its end
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
  EndRow(fields.size());
}

void IndexWriter::NumberRow(std::span<const IndexNumber> numbers) {
  for (size_t i = 0; i < numbers.size(); ++i) {
    if (i > 0) held_ += kFieldSeparator;
    std::array<char, kMostDigits> digits = {};
    size_t first = digits.size();
    const size_t latest = digits.size() - static_cast<size_t>(numbers[i].least_digits);
    for (uint32_t rest = numbers[i].value; rest > 0 || first > latest; rest /= 10) {
      digits[--first] = static_cast<char>('0' + rest % 10);
    }
    held_.append(digits.data() + first, digits.size() - first);
  }
  EndRow(numbers.size());
}

void IndexWriter::EndRow(size_t fields) {
  held_ += line_end_;
  counted_ += static_cast<int64_t>(fields);
  if (progress_ != nullptr) progress_->SetPosition(counted_);
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
    PlainTextSource source(text);
    return ReadRows(source, frame, ids, take);
  }
  // Only odd IDs are written with escapes.
  CardTable table;
  table.SetSeparator(kFieldSeparator);
  MemoryReader file(text);
  return table.LoadFrom(file) && ReadIndexTable(table, frame, ids, take);
}

LineEnd LineEndOf(std::string_view text) {
  return text.substr(0, text.find('\n')).ends_with('\r') ? LineEnd::CrLf : LineEnd::LineFeed;
}

IndexedRows::IndexedRows(const CardIds& ids) : ids_(ids) {
  rows_.reserve(static_cast<size_t>(ids.RowCount()));
  numbers_.reserve(static_cast<size_t>(ids.RowCount()));
}

bool IndexedRows::Add(std::string_view text, std::string_view id) {
  if (text.size() > kMostRowDigits || text.starts_with('0')) return false;
  const std::optional<uint32_t> row = DigitsOnly(text);
  if (!row || *row < kFirstCardRow || static_cast<int>(*row) >= ids_.RowCount()) return false;
  rows_.push_back(static_cast<int32_t>(*row));
  numbers_.push_back(SixDigits(id));
  return numbers_.back() != kNotSixDigits || ids_.Text(rows_.back()) == id;
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
