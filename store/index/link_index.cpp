#include "store/index/link_index.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <functional>
#include <limits>
#include <utility>

#include "platform/progress.h"
#include "store/index/bisection_order.h"
#include "store/index/index_text.h"
#include "store/table/card_columns.h"

namespace tessaro {
namespace {

constexpr int64_t kEndId = 999999;
constexpr int kProgressStep = 100;

constexpr std::array<std::string_view, 2> kColumns = {kId, kBoxPos};
constexpr std::array<std::string_view, 2> kFirstFields = {"-1", "-1"};
constexpr std::array<std::string_view, 2> kLastFields = {"999999", "999999"};

const IndexFrame kFrame = {kColumns, kFirstFields, kLastFields};

}  // namespace

bool LinkIndex::Build(const CardTable& cards, const CardIds& ids, Progress* progress) {
  if (!ids.complete()) return false;
  const int last = cards.RowCount() - 1;
  std::vector<int64_t> keys;
  if (last >= kFirstCardRow) keys.reserve(static_cast<size_t>(last));
  for (int row = last; row >= kFirstCardRow; --row) {
    keys.push_back(ids.number(row) != kNotSixDigits ? ids.number(row) : LeadingNumber(ids.Text(row)));
    if (progress != nullptr && row % kProgressStep == 0) progress->SetPosition(cards.RowCount() - row);
  }
  rows_ = BisectionOrder(keys, kEndId);
  ids_.clear();
  ids_.reserve(rows_.size());
  for (int32_t& entry : rows_) {
    ids_.push_back(keys[static_cast<size_t>(entry)]);
    entry = last - entry;
  }
  line_end_ = LineEnd::LineFeed;
  fingerprint_ = ids.fingerprint();
  built_ = true;
  return true;
}

template <typename ReadRows>
bool LinkIndex::AdoptRows(const ReadRows& read_rows, const CardIds& ids, LineEnd line_end) {
  IndexedRows rows(ids);
  std::vector<int64_t> keys;
  keys.reserve(static_cast<size_t>(ids.RowCount()));
  const bool ascending = read_rows(kFrame, ids, [&](IndexFields fields) {
    const int64_t key = LeadingNumber(fields[0]);
    if (key > kEndId || (!keys.empty() && key < keys.back()) || !rows.Add(fields[1], fields[0])) return false;
    keys.push_back(key);
    return true;
  });
  if (!ascending || !rows.AllFit()) return false;
  ids_ = std::move(keys);
  rows_ = rows.rows();
  line_end_ = line_end;
  fingerprint_ = ids.fingerprint();
  built_ = true;
  return true;
}

bool LinkIndex::Adopt(const CardTable& table, const CardIds& ids) {
  return AdoptRows(std::bind_front(ReadIndexTable, std::cref(table)), ids, table.line_end());
}

bool LinkIndex::Adopt(std::string_view text, const CardIds& ids) {
  return AdoptRows(std::bind_front(ReadIndexText, text), ids, LineEndOf(text));
}

bool LinkIndex::SaveTo(WritableFile& file, const CardTable& cards, Progress* progress) const {
  IndexWriter writer(file, line_end_, progress);
  const int id_column = cards.ColumnIndex(kId);
  writer.Row(kColumns);
  writer.Row(kFirstFields);
  for (const int32_t card_row : rows_) {
    std::array<char, 12> box_pos = {};
    const char* end = std::to_chars(box_pos.data(), box_pos.data() + box_pos.size(), card_row).ptr;
    const std::array<std::string_view, 2> fields = {
        cards.Peek(id_column, card_row), std::string_view(box_pos.data(), static_cast<size_t>(end - box_pos.data()))};
    writer.Row(fields);
  }
  writer.Row(kLastFields);
  return writer.Finish();
}

int LinkIndex::RowOfId(int64_t id) const {
  const auto place = std::lower_bound(ids_.begin(), ids_.end(), id);
  return place != ids_.end() && *place == id ? rows_[static_cast<size_t>(place - ids_.begin())] : 0;
}

}  // namespace tessaro
