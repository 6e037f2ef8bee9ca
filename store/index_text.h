#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "store/card_ids.h"
#include "store/card_table.h"

// What the two index files have in common: the row of a card table as decimal text in one column, a start row, an end
// row, and the text format of all tables.
namespace tessaro {

inline constexpr std::string_view kBoxPos = "BoxPos";
inline constexpr int kStartBoxPos = -1;
inline constexpr int kEndBoxPos = 999999;

// The fields of one index row in the order of the columns.
using IndexFields = std::span<const std::string_view>;

// Takes the rows of an index one after the other, the column names first.
class IndexSink {
 public:
  virtual ~IndexSink() = default;
  virtual void Row(IndexFields fields) = 0;
};

// Writes the rows as the text of a table file.
class IndexFileSink : public IndexSink {
 public:
  explicit IndexFileSink(WritableFile& file) : file_(file) {}
  void Row(IndexFields fields) override;
  // Writes what is still held back. False when anything could not be written.
  [[nodiscard]] bool Finish();

 private:
  void AppendEscaped(std::string_view field);

  WritableFile& file_;
  std::string held_;
  bool good_ = true;
};

// Makes a table of the rows.
class IndexTableSink : public IndexSink {
 public:
  explicit IndexTableSink(CardTable& table) : table_(table) {}
  void Row(IndexFields fields) override;

 private:
  CardTable& table_;
};

// Checks that an index table has exactly these columns, a row for each card and two more, and these first and last
// rows.
bool HasIndexFrame(const CardTable& table, const CardIds& ids, IndexFields columns, IndexFields first,
                   IndexFields last);

// Reads the card rows that an index names, and sees to it that each card comes once and with its own ID.
class BoxPosReader {
 public:
  explicit BoxPosReader(const CardIds& ids) : ids_(ids), seen_(static_cast<size_t>(ids.RowCount()) + 1, false) {}
  // The card table row in this text; 0 unless it is written as the program writes it, is that of a card which has this
  // ID, and has not come before.
  int Read(std::string_view text, std::string_view id);

 private:
  const CardIds& ids_;
  std::vector<bool> seen_;
};

}  // namespace tessaro
