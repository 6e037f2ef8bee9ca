#include "exchange/table_import.h"

#include <algorithm>
#include <array>
#include <optional>

#include "exchange/card_frame.h"
#include "platform/disk.h"
#include "store/table/card_columns.h"

namespace tessaro {
namespace {

constexpr size_t kBufferSize = size_t{256} * 1024;
constexpr uint32_t kMostCardNumber = 999'990;
constexpr size_t kColumns = kCardColumns.size();
constexpr size_t kScoreDigits = 9;
constexpr char kEscape = '\\';

bool AreDigits(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool AreLetters(std::string_view text) {
  constexpr size_t kMost = kHistoryLength;
  return text.size() <= kMost && std::all_of(text.begin(), text.end(), [](char c) { return c == 'w' || c == 'f'; });
}

// Numbers with blanks between or behind them.
bool AreTimes(std::string_view text) {
  int numbers = 0;
  bool in_number = false;
  for (const char c : text) {
    const bool digit = c >= '0' && c <= '9';
    if (!digit && c != ' ') return false;
    numbers += digit && !in_number ? 1 : 0;
    in_number = digit;
  }
  return numbers <= kHistoryLength;
}

// The fields of a row as they stand in it, escapes and all.
struct RowFields {
  std::array<std::string_view, kColumns> field;
  size_t count = 0;
  bool cut = false;  // the row ends behind a backslash

  void Add(std::string_view text) {
    if (count < kColumns) field[count] = text;
    ++count;
  }
};

RowFields Split(std::string_view row) {
  RowFields fields;
  const bool escapes = row.find(kEscape) != std::string_view::npos;
  size_t from = 0;
  size_t at = 0;
  while (at < row.size()) {
    if (!escapes) at = std::min(row.find(kFieldSeparator, at), row.size());
    if (at < row.size() && row[at] == kFieldSeparator) {
      fields.Add(row.substr(from, at - from));
      from = at + 1;
    } else if (at < row.size() && row[at] == kEscape) {
      fields.cut = ++at == row.size();
    }
    ++at;
  }
  fields.Add(row.substr(from));
  return fields;
}

// Decides about lines one after the other and remembers the numbers of those that fit.
class Judge {
 public:
  std::optional<LineFault> Look(std::string_view row) {
    const RowFields fields = Split(row);
    if (fields.cut) return LineFault::CutEscape;
    if (fields.count != kColumns) return LineFault::FieldCount;
    const auto& [id, topic, question, answer, score, time_learned, yes_no_row, time_row] = fields.field;
    const uint32_t number = id.size() == 6 ? DigitsOnly(id).value_or(0) : 0;
    if (number < 1 || number > kMostCardNumber) return LineFault::Id;
    if (score.empty() || score.size() > kScoreDigits || !AreDigits(score)) return LineFault::Score;
    if (!AreDigits(time_learned)) return LineFault::TimeLearned;
    if (!AreLetters(yes_no_row)) return LineFault::YesNoRow;
    if (!AreTimes(time_row)) return LineFault::TimeRow;
    if (taken_[number]) return LineFault::DoubleId;
    taken_[number] = true;
    return std::nullopt;
  }

 private:
  std::vector<bool> taken_ = std::vector<bool>(kMostCardNumber + 1);
};

bool IsStartRow(const TableLines& lines) {
  return lines.line() == 1 && Split(lines.row()).field[0] == kStartMark;
}

// The texts of a row without their escapes.
std::vector<std::string> TextsOf(std::string_view row) {
  const RowFields fields = Split(row);
  std::vector<std::string> texts;
  for (size_t i = 0; i < std::min(fields.count, kColumns); ++i) {
    std::string text;
    for (size_t at = 0; at < fields.field[i].size(); ++at) {
      char c = fields.field[i][at];
      if (c == kEscape && at + 1 < fields.field[i].size()) {
        c = fields.field[i][++at];
        if (c == 'n' || c == 'N') c = '\n';
      }
      text += c;
    }
    texts.push_back(std::move(text));
  }
  return texts;
}

}  // namespace

bool TableLines::Next() {
  if (at_ == text_.size()) return false;
  const bool has_lines = layout_.separator != '\n' && layout_.quote != '\n';
  const size_t end = has_lines ? std::min(text_.find('\n', at_), text_.size()) : text_.size();
  const std::string_view line = text_.substr(at_, end - at_);
  if (room_.size() < line.size()) room_.resize(line.size());
  const bool drops_quotes = layout_.separator != '"' && line.find('"') != std::string_view::npos;
  char* const row_end = drops_quotes ? std::remove_copy(line.begin(), line.end(), room_.data(), '"')
                                     : std::copy(line.begin(), line.end(), room_.data());
  std::transform(room_.data(), row_end, room_.data(), [layout = layout_](char c) {
    return c == layout.separator ? kFieldSeparator : c == layout.quote ? '"' : c;
  });
  row_ = {room_.data(), static_cast<size_t>(row_end - room_.data())};
  at_ = std::min(end + 1, text_.size());
  ++line_;
  return true;
}

TableCheck CheckTable(std::string_view text, const TableLayout& layout, const WorkObserver& observer) {
  TableCheck check;
  Judge judge;
  WorkWatch watch(observer, kTellEveryBytes);
  for (TableLines lines(text, layout); lines.Next();) {
    check.lines = lines.line();
    if (!watch.GoOn(lines.Position())) {
      check.cancelled = true;
      break;
    }
    if (IsStartRow(lines)) {
      check.start_row = true;
    } else if (const std::optional<LineFault> fault = judge.Look(lines.row())) {
      if (check.fault_count++ < static_cast<int64_t>(TableCheck::kMostFaults)) {
        check.faults.push_back({lines.line(), *fault});
      }
    } else {
      ++check.cards;
    }
  }
  return check;
}

bool WriteTable(std::string_view text, const TableLayout& layout, const TableCheck& check, WritableFile& file,
                const WorkObserver& observer) {
  Judge judge;
  WorkWatch watch(observer, kTellEveryBytes);
  std::string buffer = CardFileHead();
  for (TableLines lines(text, layout); lines.Next();) {
    if (!watch.GoOn(lines.Position())) return false;
    if (IsStartRow(lines) || (check.fault_count > 0 && judge.Look(lines.row()))) continue;
    buffer += lines.row();
    buffer += '\n';
    if (buffer.size() < kBufferSize) continue;
    if (!file.Write(buffer)) return false;
    buffer.clear();
  }
  AppendFrameRow(buffer, kEndMark);
  return file.Write(buffer);
}

std::vector<std::vector<std::string>> FirstCards(std::string_view text, const TableLayout& layout, size_t most) {
  std::vector<std::vector<std::string>> cards;
  Judge judge;
  for (TableLines lines(text, layout); cards.size() < most && lines.Next();) {
    if (!IsStartRow(lines) && !judge.Look(lines.row())) cards.push_back(TextsOf(lines.row()));
  }
  return cards;
}

}  // namespace tessaro
