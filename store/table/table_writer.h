#pragma once

#include <string>
#include <string_view>

#include "store/table/table_content.h"

namespace tessaro {

class WritableFile;
class Progress;

// Writes a table file. Neighbouring rows that are still as they were read go out as one span of the loaded block; all
// others are written field by field.
class TableWriter {
 public:
  // `progress`, which may be null, hears of the fields written.
  TableWriter(WritableFile& file, char separator, const TableContent& content, Progress* progress = nullptr);

  // Writes every row once, in order. False as soon as the file takes no more. A table without columns is an empty file.
  [[nodiscard]] bool Write();

 private:
  void AddHeader();
  bool WriteRow(RowHandle row);
  void AddFields(RowHandle row);
  void AddEscaped(std::string_view text);
  bool WriteSpan();
  bool WriteBuffer();
  void Count();

  WritableFile& file_;
  const char separator_;
  const TableContent& content_;
  Progress* const progress_;
  int64_t counted_ = 0;  // fields
  const std::string_view line_end_;
  const bool spans_fit_;   // rows as read are rows as written
  std::string_view span_;  // rows of the block that are still to be written; the buffer goes before them
  std::string buffer_;
};

}  // namespace tessaro
