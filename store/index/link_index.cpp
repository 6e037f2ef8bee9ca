#include "store/index/link_index.h"

#include <algorithm>
#include <array>
#include <functional>
#include <string>
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

constexpr std::array<size_t, 2> kDigits = {6, 0};

const IndexFrame kFrame = {kColumns, kFirstFields, kLastFields, kDigits};

}  // namespace

bool LinkIndex::Build(const CardTable& cards, const CardIds& ids, Progress* progress) {
  if (cards.ColumnIndex(kId) == 0) return false;
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
  const auto add_key = [&](int64_t key) {
    if (key > kEndId || (!keys.empty() && key < keys.back())) return false;
    keys.push_back(key);
    return true;
  };
  const TakeIndexRow take = {
      .numbers = [&](auto numbers) { return add_key(numbers[0]) && rows.Add(numbers[1], numbers[0]); },
      .fields =
          [&](IndexFields fields) { return add_key(LeadingNumber(fields[0])) && rows.Add(fields[1], fields[0]); }};
  if (!read_rows(kFrame, ids, take) || !rows.AllFit()) return false;
  ids_ = std::move(keys);
  rows_ = rows.TakeRows();
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

bool LinkIndex::SaveTo(WritableFile& file, const CardIds& ids, Progress* progress) const {
  IndexWriter writer(file, line_end_, progress);
  writer.Row(kColumns);
  writer.Row(kFirstFields);
  for (const int32_t card_row : rows_) {
    const auto box_pos = static_cast<uint32_t>(card_row);
    if (const uint32_t id = ids.number(card_row); id != kNotSixDigits) {
      writer.NumberRow(std::array{IndexNumber{id, 6}, IndexNumber{box_pos}});
    } else {
      writer.Row(std::array<std::string_view, 2>{ids.Text(card_row), std::to_string(box_pos)});
    }
  }
  writer.Row(kLastFields);
  return writer.Finish();
}

void LinkIndex::Shift(const RowShift& shift) {
  if (!built_ || shift.empty()) return;
  Remove(shift.removed());
  fingerprint_.reset();
  if (const std::optional<RowShift::Tail> tail = shift.AsTail()) return MoveRows(rows_, *tail);
  for (int32_t& row : rows_) row = shift.Map(row);
}

void LinkIndex::Remove(std::span<const int> card_rows) {
  if (!built_ || card_rows.empty()) return;
  fingerprint_.reset();
  if (card_rows.size() == 1) {
    const size_t place = PlaceOfRow(rows_, card_rows.front());
    if (place == rows_.size()) return;
    ids_.erase(ids_.begin() + static_cast<std::ptrdiff_t>(place));
    rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(place));
    return;
  }
  std::vector<bool> gone(static_cast<size_t>(card_rows.back()) + 1);
  for (const int row : card_rows) gone[static_cast<size_t>(row)] = true;
  size_t left = 0;
  for (size_t i = 0; i < rows_.size(); ++i) {
    if (static_cast<size_t>(rows_[i]) < gone.size() && gone[static_cast<size_t>(rows_[i])]) continue;
    ids_[left] = ids_[i];
    rows_[left++] = rows_[i];
  }
  ids_.resize(left);
  rows_.resize(left);
}

void LinkIndex::Put(std::span<const int> card_rows, const CardTable& cards) {
  if (!built_ || card_rows.empty()) return;
  fingerprint_.reset();
  const int id_column = cards.ColumnIndex(kId);
  std::vector<std::pair<int64_t, int32_t>> fresh;
  fresh.reserve(card_rows.size());
  for (const int row : card_rows) {
    const int64_t key = LeadingNumber(cards.Peek(id_column, row));
    if (key <= kEndId) fresh.emplace_back(key, row);
  }
  if (!std::is_sorted(fresh.begin(), fresh.end())) std::sort(fresh.begin(), fresh.end());
  // From the end on, so that each entry moves once.
  size_t old = rows_.size();
  size_t place = old + fresh.size();
  ids_.resize(place);
  rows_.resize(place);
  for (; !fresh.empty(); fresh.pop_back()) {
    const auto [key, row] = fresh.back();
    const auto first = std::lower_bound(ids_.begin(), ids_.begin() + static_cast<std::ptrdiff_t>(old), key);
    const auto behind = static_cast<size_t>(first - ids_.begin());
    std::move_backward(first, ids_.begin() + static_cast<std::ptrdiff_t>(old),
                       ids_.begin() + static_cast<std::ptrdiff_t>(place));
    std::move_backward(rows_.begin() + static_cast<std::ptrdiff_t>(behind),
                       rows_.begin() + static_cast<std::ptrdiff_t>(old),
                       rows_.begin() + static_cast<std::ptrdiff_t>(place));
    place -= old - behind + 1;
    old = behind;
    ids_[place] = key;
    rows_[place] = row;
  }
}

int LinkIndex::RowOfId(int64_t id) const {
  if (id == 0) return 0;
  const auto place = std::lower_bound(ids_.begin(), ids_.end(), id);
  return place != ids_.end() && *place == id ? rows_[static_cast<size_t>(place - ids_.begin())] : 0;
}

}  // namespace tessaro
