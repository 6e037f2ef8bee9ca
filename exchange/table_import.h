#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/work_observer.h"

// Cards in a table: one a line, its eight columns in the order of a card file, which the lines become.
namespace tessaro {

class WritableFile;

struct TableLayout {
  char separator = '\0';  // becomes that of card files
  char quote = '\0';      // becomes a double quote; double quotes vanish. `separator` counts before both.
};

// Why a line cannot become a card.
enum class LineFault {
  FieldCount,   // not eight fields
  CutEscape,    // ends behind a backslash
  Id,           // not six digits from 000001 to 999990
  DoubleId,     // a line before has the same
  Score,        // not one to nine digits
  TimeLearned,  // not digits, nor empty
  YesNoRow,     // more than 64 letters, or others than "w" and "f"
  TimeRow,      // more than 64 numbers, or no numbers
};

struct TableFault {
  int64_t line = 0;  // counted from 1
  LineFault fault = LineFault::FieldCount;
};

struct TableCheck {
  static constexpr size_t kMostFaults = 10'000;

  bool cancelled = false;
  int64_t lines = 0;
  int64_t cards = 0;  // lines that fit
  int64_t fault_count = 0;
  std::vector<TableFault> faults;  // the first of them
  bool start_row = false;          // the first line is the start row of a card file: it is left out
};

// Reads the lines of a table as rows of a card file, many at once. The text must outlive it.
class TableLines {
 public:
  TableLines(std::string_view text, const TableLayout& layout) : text_(text), layout_(layout) {}

  // Goes to the next line; false at the end.
  bool Next();
  // The line as it stands in a card file, without its line feed. Some bytes behind it may be read, see FindMarks.
  std::string_view row() const { return row_; }
  // Counted from 1.
  int64_t line() const { return line_; }
  // About how far it has come.
  int64_t Position() const { return static_cast<int64_t>(at_); }

 private:
  bool NextPiece();

  std::string_view text_;
  TableLayout layout_;
  size_t at_ = 0;  // behind the piece
  int64_t line_ = 0;
  std::string room_;
  std::string_view piece_;  // what is left of the rows at hand
  std::string_view row_;
};

// A table of so many bytes is looked at by two threads, each of which has a half.
inline constexpr size_t kLeastSplitTable = size_t{1} << 20;

// Looks at all lines. The observer is told the bytes.
TableCheck CheckTable(std::string_view text, const TableLayout& layout, const WorkObserver& observer = {},
                      size_t least_split = kLeastSplitTable);
// Writes a card file of the lines that fit, as `check` of the same text tells: the names of the columns, the start row,
// the cards, the end row. False when the file takes no more or the observer ended it.
[[nodiscard]] bool WriteTable(std::string_view text, const TableLayout& layout, const TableCheck& check,
                              WritableFile& file, const WorkObserver& observer = {});
// The texts of the first cards that CheckTable finds good, in the order of the columns.
std::vector<std::vector<std::string>> FirstCards(std::string_view text, const TableLayout& layout, size_t most);

}  // namespace tessaro
