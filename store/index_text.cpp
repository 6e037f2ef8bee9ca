#include "store/index_text.h"

#include <algorithm>
#include <charconv>

#include "platform/disk.h"
#include "platform/progress.h"
#include "store/card_columns.h"

namespace tessaro {
namespace {

constexpr size_t kHeldBytes = size_t{256} * 1024;

bool RowIs(const CardTable& table, int row, IndexFields fields) {
  for (size_t i = 0; i < fields.size(); ++i) {
    if (table.Peek(static_cast<int>(i) + 1, row) != fields[i]) return false;
  }
  return true;
}

}  // namespace

void IndexFileSink::Row(IndexFields fields) {
  for (size_t i = 0; i < fields.size(); ++i) {
    if (i > 0) held_ += kFieldSeparator;
    AppendEscaped(fields[i]);
  }
  held_ += '\n';
  Progress().counter += static_cast<int64_t>(fields.size());
  Progress().ShowPosition(Progress().counter);
  if (held_.size() >= kHeldBytes) good_ = Finish();
}

void IndexFileSink::AppendEscaped(std::string_view field) {
  for (const char c : field) {
    if (c == '\n') {
      held_ += "\\n";
      continue;
    }
    if (c == '\\' || c == kFieldSeparator) held_ += '\\';
    held_ += c;
  }
}

bool IndexFileSink::Finish() {
  good_ = good_ && file_.Write(held_);
  held_.clear();
  return good_;
}

void IndexTableSink::Row(IndexFields fields) {
  if (table_.ColumnCount() == 0) {
    for (const std::string_view name : fields) table_.AddColumn(name);
    table_.SetSeparator(kFieldSeparator);
    return;
  }
  table_.AppendRow();
  table_.Last();
  for (size_t i = 0; i < fields.size(); ++i) table_.SetField(static_cast<int>(i) + 1, fields[i]);
}

bool HasIndexFrame(const CardTable& table, const CardIds& ids, IndexFields columns, IndexFields first,
                   IndexFields last) {
  if (table.ColumnCount() != static_cast<int>(columns.size())) return false;
  for (size_t i = 0; i < columns.size(); ++i) {
    if (table.ColumnName(static_cast<int>(i) + 1) != columns[i]) return false;
  }
  return table.RowCount() == std::max(ids.RowCount(), 2) && RowIs(table, 1, first) &&
         RowIs(table, table.RowCount(), last);
}

int BoxPosReader::Read(std::string_view text, std::string_view id) {
  int row = 0;
  if (text.empty() || text.front() < '1' || text.front() > '9') return 0;
  const std::from_chars_result result = std::from_chars(text.data(), text.data() + text.size(), row);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return 0;
  if (row < kFirstCardRow || row >= ids_.RowCount() || seen_[static_cast<size_t>(row)]) return 0;
  if (!ids_.Has(row, id)) return 0;
  seen_[static_cast<size_t>(row)] = true;
  return row;
}

}  // namespace tessaro
