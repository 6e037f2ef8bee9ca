#include "store/index/index_text.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "platform/memory_file.h"
#include "platform/progress.h"
#include "store/table/card_columns.h"

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
  // Takes the next row if it can be read as numbers of so many digits; else it is still the next one.
  virtual bool NextNumbers(std::span<const size_t> digits, std::span<uint32_t> numbers) = 0;
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
  bool NextNumbers(std::span<const size_t> /*digits*/, std::span<uint32_t> /*numbers*/) override { return false; }
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
      start_ = expected.size() + line_end.size();
      return true;
    }
    return false;
  }
  bool NextNumbers(std::span<const size_t> digits, std::span<uint32_t> numbers) override {
    const char* at = text_.data() + start_;
    const char* const end = text_.data() + text_.size();
    for (size_t i = 0; i < digits.size(); ++i) {
      const char* const first = at;
      uint32_t number = 0;
      for (; at != end && *at >= '0' && *at <= '9'; ++at) number = number * 10 + static_cast<uint32_t>(*at - '0');
      const auto count = static_cast<size_t>(at - first);
      const bool as_written =
          digits[i] > 0 ? count == digits[i] : count > 0 && count <= kMostRowDigits && *first != '0';
      if (i + 1 == digits.size() && at != end && *at == '\r') ++at;
      if (!as_written || at == end || *at++ != (i + 1 < digits.size() ? kFieldSeparator : '\n')) return false;
      numbers[i] = number;
    }
    start_ = static_cast<size_t>(at - text_.data());
    return true;
  }
  bool Next(std::span<std::string_view> fields) override {
    if (start_ >= text_.size()) return false;
    const size_t line_feed = text_.find('\n', start_);
    const bool ended = line_feed != std::string_view::npos;
    std::string_view line = text_.substr(start_, ended ? line_feed - start_ : line_feed);
    start_ = ended ? line_feed + 1 : text_.size();
    for (std::string_view& field : fields) {
      const size_t separator = line.find(kFieldSeparator);
      field = line.substr(0, separator);
      line = separator == std::string_view::npos ? std::string_view() : line.substr(separator + 1);
      if (separator != std::string_view::npos) continue;
      // What no separator and no line feed ends is lost.
      if (!ended) field = {};
      if (field.ends_with('\r')) field.remove_suffix(1);
    }
    return true;
  }

 private:
  std::string_view text_;
  size_t start_ = 0;  // of the next row
};

bool ReadRows(RowSource& source, const IndexFrame& frame, const CardIds& ids, const TakeIndexRow& take) {
  std::vector<std::string_view> fields(frame.columns.size());
  const auto next_is = [&](IndexFields expected) {
    return source.Next(fields) && std::equal(fields.begin(), fields.end(), expected.begin());
  };
  if (!source.HasColumns(frame.columns) || !next_is(frame.first)) return false;
  std::vector<uint32_t> numbers(frame.digits.size());
  for (int row = kFirstCardRow; row < ids.RowCount(); ++row) {
    const bool taken =
        source.NextNumbers(frame.digits, numbers) ? take.numbers(numbers) : source.Next(fields) && take.fields(fields);
    if (!taken) return false;
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
  return row && Add(*row, SixDigits(id)) && (numbers_.back() != kNotSixDigits || ids_.Text(rows_.back()) == id);
}

bool IndexedRows::Add(uint32_t row, uint32_t id) {
  if (row < kFirstCardRow || static_cast<int>(row) >= ids_.RowCount()) return false;
  rows_.push_back(static_cast<int32_t>(row));
  numbers_.push_back(id);
  return true;
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
