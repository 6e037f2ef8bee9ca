#include "exchange/table_import.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <functional>
#include <numeric>
#include <optional>
#include <utility>

#include "exchange/card_frame.h"
#include "platform/disk.h"
#include "platform/turns.h"
#include "store/table/card_columns.h"
#include "store/table/table_scan.h"

namespace tessaro {
namespace {

// So much is made rows at once: it stays in the processor's cache.
constexpr size_t kPiece = size_t{64} * 1024;
constexpr size_t kBufferSize = size_t{256} * 1024;
constexpr uint32_t kMostCardNumber = 999'990;
constexpr size_t kColumns = kCardColumns.size();
constexpr char kEscape = '\\';

bool IsDigit(char c) {
  return static_cast<uint8_t>(c - '0') <= 9;
}

bool AreDigits(std::string_view text) {
  return std::all_of(text.begin(), text.end(), IsDigit);
}

// These two look at all bytes, since nearly all texts are right, and gather what they find in bytes: several are looked
// at at once.
bool AreLetters(std::string_view text) {
  if (text.size() > kHistoryLength) return false;
  uint8_t others = 0;
  for (const char c : text) others = static_cast<uint8_t>(others | (c != 'w' && c != 'f' ? 1 : 0));
  return others == 0;
}

// Numbers with blanks between or behind them.
bool AreTimes(std::string_view text) {
  constexpr size_t kCounted = 128;  // at once, so that a byte holds the number
  const auto digit = [](char c) { return static_cast<unsigned>(IsDigit(c)); };
  const auto other = [&](char c) { return ~digit(c) & static_cast<unsigned>(c != ' '); };
  if (text.empty()) return true;
  size_t numbers = digit(text.front());
  auto others = static_cast<uint8_t>(other(text.front()));
  for (size_t from = 1; from < text.size(); from += kCounted) {
    const char* const at = text.data() + from;
    const char* const before = at - 1;
    const size_t count = std::min(kCounted, text.size() - from);
    uint8_t begun = 0;
    for (size_t i = 0; i < count; ++i) {
      others = static_cast<uint8_t>(others | other(at[i]));
      begun = static_cast<uint8_t>(begun + (digit(at[i]) & ~digit(before[i])));
    }
    numbers += begun;
  }
  return others == 0 && numbers <= kHistoryLength;
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

// The fields of a row with just the separators of a card and no escapes, as nearly all are.
bool SplitPlain(std::string_view row, RowFields& fields) {
  constexpr size_t kMostScanned = 4096;
  std::array<uint32_t, kMostScanned + kScanWidth> marks;
  if (row.size() > kMostScanned) return false;
  const size_t count = FindMarks(row.data(), row.size(), kFieldSeparator, marks.data());
  if (count != kColumns - 1) return false;
  size_t from = 0;
  for (size_t i = 0; i < count; ++i) {
    if (row[marks[i]] != kFieldSeparator) return false;
    fields.field[i] = row.substr(from, marks[i] - from);
    from = marks[i] + 1;
  }
  fields.field[count] = row.substr(from);
  fields.count = kColumns;
  return true;
}

// The row must be one of TableLines.
RowFields Split(std::string_view row) {
  RowFields fields;
  if (SplitPlain(row, fields)) return fields;
  fields = {};
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
    if (!DigitsOnly(score)) return LineFault::Score;
    if (!AreDigits(time_learned)) return LineFault::TimeLearned;
    if (!AreLetters(yes_no_row)) return LineFault::YesNoRow;
    if (!AreTimes(time_row)) return LineFault::TimeRow;
    uint64_t& taken = taken_[number / kBits];
    const uint64_t bit = uint64_t{1} << number % kBits;
    if ((taken & bit) != 0) return LineFault::DoubleId;
    taken |= bit;
    return std::nullopt;
  }
  // Whether this one and another, which looked at other lines, both found a line with the same number.
  bool SharesNumber(const Judge& other) const {
    return std::inner_product(taken_.begin(), taken_.end(), other.taken_.begin(), uint64_t{0}, std::bit_or<>(),
                              std::bit_and<>()) != 0;
  }

 private:
  static constexpr uint32_t kBits = 64;
  std::vector<uint64_t> taken_ = std::vector<uint64_t>(kMostCardNumber / kBits + 1);
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

// Looks at a part of a table, the first one or the rest, and asks before each line whether to go on, with the bytes
// that it has looked at.
template <typename GoOn>
TableCheck CheckPart(TableLines lines, bool is_first, Judge& judge, const GoOn& go_on) {
  TableCheck check;
  int64_t asked_at = -1;
  while (lines.Next()) {
    check.lines = lines.line();
    if (lines.Position() != asked_at && !go_on(lines.Position())) {
      check.cancelled = true;
      break;
    }
    asked_at = lines.Position();
    if (is_first && IsStartRow(lines)) {
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

// Adds what was found in the part behind.
void Append(TableCheck& check, const TableCheck& behind) {
  for (const TableFault& fault : behind.faults) {
    if (check.faults.size() == TableCheck::kMostFaults) break;
    check.faults.push_back({check.lines + fault.line, fault.fault});
  }
  check.cancelled = behind.cancelled;
  check.lines += behind.lines;
  check.cards += behind.cards;
  check.fault_count += behind.fault_count;
}

bool HasLines(const TableLayout& layout) {
  return layout.separator != '\n' && layout.quote != '\n';
}

// Where the second half of a table begins; its end where it is looked at in one go.
size_t SecondHalfOf(std::string_view text, const TableLayout& layout, size_t least_split) {
  if (text.size() < least_split || !HasLines(layout)) return text.size();
  const size_t line_feed = text.find('\n', text.size() / 2);
  return line_feed == std::string_view::npos ? text.size() : line_feed + 1;
}

// Makes lines of a table rows, which then stand in `room` with some bytes behind them.
std::string_view MakeRows(std::string_view lines, const TableLayout& layout, std::string& room) {
  if (room.size() < lines.size() + kScanWidth) room.resize(lines.size() + kScanWidth);
  const bool drops_quotes = layout.separator != '"' && lines.find('"') != std::string_view::npos;
  const auto converted = [layout](char c) {
    return c == layout.separator ? kFieldSeparator : c == layout.quote ? '"' : c;
  };
  char* end = room.data() + lines.size();
  if (drops_quotes) {
    end = std::remove_copy(lines.begin(), lines.end(), room.data(), '"');
    std::transform(room.data(), end, room.data(), converted);
  } else {
    std::transform(lines.begin(), lines.end(), room.data(), converted);
  }
  return {room.data(), static_cast<size_t>(end - room.data())};
}

// Where those pieces of a table begin that are made rows at once, and its end.
std::vector<size_t> PieceStarts(std::string_view text, const TableLayout& layout) {
  std::vector<size_t> starts = {0};
  while (starts.back() < text.size()) {
    const size_t least = starts.back() + (HasLines(layout) ? kBufferSize : text.size());
    const size_t line_feed = text.find('\n', std::min(least, text.size()));
    starts.push_back(line_feed == std::string_view::npos ? text.size() : line_feed + 1);
  }
  return starts;
}

// Writes all lines of a table in which all fit.
bool WriteAllRows(std::string_view text, const TableLayout& layout, bool drops_first, WorkWatch& watch,
                  WritableFile& file) {
  struct Rows {
    std::string room;
    std::string_view rows;
    int64_t position = 0;
  };
  const std::vector<size_t> starts = PieceStarts(text, layout);
  bool good = true;
  bool ends = true;  // with a line feed
  const auto convert = [&](int piece, Rows& work) {
    const auto i = static_cast<size_t>(piece);
    work.rows = MakeRows(text.substr(starts[i], starts[i + 1] - starts[i]), layout, work.room);
    work.position = static_cast<int64_t>(starts[i + 1]);
    if (i == 0 && drops_first) work.rows.remove_prefix(std::min(work.rows.find('\n'), work.rows.size() - 1) + 1);
  };
  const auto write = [&](const Rows& work, bool on_own) {
    ends = work.rows.empty() || work.rows.back() == '\n';
    good = (!on_own || watch.GoOn(work.position)) && file.Write(work.rows);
    return good;
  };
  WorkInTurns<Rows>(static_cast<int>(starts.size()) - 1, text.size() >= kLeastSplitTable, convert, write);
  return good && (ends || file.Write("\n"));
}

// Writes the lines that fit.
bool WriteRows(TableLines lines, WorkWatch& watch, WritableFile& file) {
  Judge judge;
  std::string buffer;
  while (lines.Next()) {
    if (!watch.GoOn(lines.Position())) return false;
    if (IsStartRow(lines) || judge.Look(lines.row())) continue;
    buffer += lines.row();
    buffer += '\n';
    if (buffer.size() < kBufferSize) continue;
    if (!file.Write(buffer)) return false;
    buffer.clear();
  }
  return file.Write(buffer);
}

}  // namespace

bool TableLines::NextPiece() {
  if (at_ == text_.size()) return false;
  const std::string_view rest = text_.substr(at_);
  size_t size = std::min(HasLines(layout_) ? kPiece : rest.size(), rest.size());
  if (size < rest.size()) {
    const size_t last_end = rest.rfind('\n', size - 1);
    size = std::min(last_end != std::string_view::npos ? last_end : rest.find('\n', size), rest.size() - 1) + 1;
  }
  piece_ = MakeRows(rest.substr(0, size), layout_, room_);
  at_ += size;
  return true;
}

bool TableLines::Next() {
  if (piece_.empty() && !NextPiece()) return false;
  const size_t end = std::min(piece_.find('\n'), piece_.size());
  row_ = piece_.substr(0, end);
  piece_.remove_prefix(std::min(end + 1, piece_.size()));
  ++line_;
  return true;
}

TableCheck CheckTable(std::string_view text, const TableLayout& layout, const WorkObserver& observer,
                      size_t least_split) {
  const size_t middle = SecondHalfOf(text, layout, least_split);
  const TableLines second(text.substr(middle), layout);
  std::atomic<int64_t> done_behind = 0;
  std::atomic<bool> ended = false;
  Judge judge_behind;
  std::future checked_behind = std::async(OnOtherThread(middle < text.size()), [&] {
    return CheckPart(second, false, judge_behind, [&](int64_t done) {
      done_behind.store(done, std::memory_order_relaxed);
      return !ended.load(std::memory_order_relaxed);
    });
  });
  WorkWatch watch(observer, kTellEveryBytes);
  Judge judge;
  TableCheck check = CheckPart(TableLines(text.substr(0, middle), layout), true, judge, [&](int64_t done) {
    return watch.GoOn(done + done_behind.load(std::memory_order_relaxed));
  });
  ended = check.cancelled;
  TableCheck behind = checked_behind.get();
  if (check.cancelled) return check;
  // Which of two lines with the same number comes first is known by looking at them one after the other.
  if (judge.SharesNumber(judge_behind)) {
    behind =
        CheckPart(second, false, judge, [&](int64_t done) { return watch.GoOn(static_cast<int64_t>(middle) + done); });
  }
  Append(check, behind);
  return check;
}

bool WriteTable(std::string_view text, const TableLayout& layout, const TableCheck& check, WritableFile& file,
                const WorkObserver& observer) {
  WorkWatch watch(observer, kTellEveryBytes);
  if (!file.Write(CardFileHead())) return false;
  const bool written = check.fault_count == 0 ? WriteAllRows(text, layout, check.start_row, watch, file)
                                              : WriteRows(TableLines(text, layout), watch, file);
  if (!written) return false;
  std::string end;
  AppendFrameRow(end, kEndMark);
  return file.Write(end);
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
