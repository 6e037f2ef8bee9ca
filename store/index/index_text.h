#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "store/index/card_ids.h"
#include "store/table/card_table.h"
#include "store/table/line_end.h"

// What the two index files have in common. Each is a table in the text format of all tables: column names, a start row,
// a row for each card, an end row. One column holds the row of the card table as decimal text.
namespace tessaro {

class Progress;
class WritableFile;

inline constexpr std::string_view kBoxPos = "BoxPos";
inline constexpr int kStartBoxPos = -1;
inline constexpr int kEndBoxPos = 999999;

// The fields of one index row in the order of the columns.
using IndexFields = std::span<const std::string_view>;

struct IndexFrame {
  IndexFields columns;
  IndexFields first;
  IndexFields last;
  // How many digits a number of each column has where it is as the program writes it; 0: as many as it needs, up to 9.
  std::span<const size_t> digits;
};

// A number below 1,000,000,000 with at least so many digits.
struct IndexNumber {
  uint32_t value = 0;
  int least_digits = 1;
};

// Writes the rows as the text of a table file, the column names first. `progress`, which may be null, hears of the
// fields.
class IndexWriter {
 public:
  IndexWriter(WritableFile& file, LineEnd line_end, Progress* progress)
      : file_(file), progress_(progress), line_end_(line_end == LineEnd::CrLf ? "\r\n" : "\n") {}
  void Row(IndexFields fields);
  // The same for a row of nothing but numbers, as nearly all are.
  void NumberRow(std::span<const IndexNumber> numbers);
  // Writes what is still held back. False when anything could not be written.
  [[nodiscard]] bool Finish();

 private:
  void AppendEscaped(std::string_view field);
  void EndRow(size_t fields);

  WritableFile& file_;
  Progress* const progress_;
  int64_t counted_ = 0;  // fields
  const std::string_view line_end_;
  std::string held_;
  bool good_ = true;
};

// Take the row of a card, one of them for each row; false when it does not fit.
struct TakeIndexRow {
  std::function<bool(std::span<const uint32_t> numbers)> numbers;  // where it has just the digits of the frame
  std::function<bool(IndexFields fields)> fields;
};

// Reads an index that was loaded as a table. False unless it has exactly this frame and a row for each of the cards in
// it, all of which were taken.
bool ReadIndexTable(const CardTable& table, const IndexFrame& frame, const CardIds& ids, const TakeIndexRow& take);
// The same from the text of the file, without making a table of it.
bool ReadIndexText(std::string_view text, const IndexFrame& frame, const CardIds& ids, const TakeIndexRow& take);

// The line end of a table file, which is that of its first line.
LineEnd LineEndOf(std::string_view text);

// Reads the card rows that an index names. Whether they fit is decided for all of them together: a look at the cards in
// the order of an index is one far apart from the last, and many such looks at once take a fraction of the time.
class IndexedRows {
 public:
  explicit IndexedRows(const CardIds& ids);
  // Adds the row in this text. False unless it is written as the program writes it and is that of a card.
  bool Add(std::string_view text, std::string_view id);
  // The same from numbers; the ID is one of six digits.
  bool Add(uint32_t row, uint32_t id);
  // Whether no row came twice and each card has the ID that it was added with.
  bool AllFit() const;
  // In the order in which they were added.
  const std::vector<int32_t>& rows() const { return rows_; }
  std::vector<int32_t> TakeRows() { return std::move(rows_); }

 private:
  const CardIds& ids_;
  std::vector<int32_t> rows_;
  std::vector<uint32_t> numbers_;  // beside rows_: the number of the ID
};

}  // namespace tessaro
