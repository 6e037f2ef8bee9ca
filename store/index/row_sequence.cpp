#include "store/index/row_sequence.h"

#include <numeric>
#include <utility>

namespace tessaro {
namespace {

constexpr size_t kFill = 1024;  // rows a chunk is made with; it is split at twice as many

}  // namespace

void RowSequence::Assign(const std::vector<int32_t>& rows) {
  *this = RowSequence();
  for (size_t begin = 0; begin < rows.size(); begin += kFill) {
    const auto first = rows.begin() + static_cast<std::ptrdiff_t>(begin);
    const auto count = static_cast<std::ptrdiff_t>(std::min(kFill, rows.size() - begin));
    places_.push_back(order_.size());
    order_.push_back(chunks_.size());
    starts_.push_back(static_cast<int>(begin));
    chunks_.emplace_back(first, first + count);
  }
  if (!rows.empty()) chunk_of_row_.resize(static_cast<size_t>(*std::max_element(rows.begin(), rows.end())) + 1, -1);
  for (size_t i = 0; i < rows.size(); ++i)
    chunk_of_row_[static_cast<size_t>(rows[i])] = static_cast<int32_t>(i / kFill);
  size_ = static_cast<int>(rows.size());
}

int32_t RowSequence::At(int position) const {
  const size_t place = PlaceOf(position);
  return chunks_[order_[place]][static_cast<size_t>(position - starts_[place])];
}

int RowSequence::PositionOf(int32_t row) const {
  const auto index = static_cast<size_t>(row);
  if (row < 0 || index >= chunk_of_row_.size() || chunk_of_row_[index] < 0) return -1;
  const auto chunk = static_cast<size_t>(chunk_of_row_[index]);
  const std::vector<int32_t>& rows = chunks_[chunk];
  return starts_[places_[chunk]] + static_cast<int>(std::find(rows.begin(), rows.end(), row) - rows.begin());
}

void RowSequence::Insert(int position, int32_t row) {
  if (order_.empty()) InsertChunk(0, {});
  size_t place = PlaceOf(position);
  if (chunks_[order_[place]].size() >= 2 * kFill) {
    Split(place);
    place = PlaceOf(position);
  }
  std::vector<int32_t>& rows = chunks_[order_[place]];
  rows.insert(rows.begin() + (position - starts_[place]), row);
  const auto index = static_cast<size_t>(row);
  if (index >= chunk_of_row_.size()) chunk_of_row_.resize(index + 1, -1);
  chunk_of_row_[index] = static_cast<int32_t>(order_[place]);
  for (size_t i = place + 1; i < starts_.size(); ++i) ++starts_[i];
  ++size_;
}

void RowSequence::Erase(int position) {
  const size_t place = PlaceOf(position);
  std::vector<int32_t>& rows = chunks_[order_[place]];
  const auto row = rows.begin() + (position - starts_[place]);
  chunk_of_row_[static_cast<size_t>(*row)] = -1;
  rows.erase(row);
  for (size_t i = place + 1; i < starts_.size(); ++i) --starts_[i];
  --size_;
  if (!rows.empty()) return;
  order_.erase(order_.begin() + static_cast<std::ptrdiff_t>(place));
  starts_.erase(starts_.begin() + static_cast<std::ptrdiff_t>(place));
  RenumberFrom(place);
}

void RowSequence::Shift(const RowShift& shift) {
  const std::optional<RowShift::Tail> tail = shift.AsTail();
  if (!tail || shift.removed().size() > kFill) return ShiftAll(shift);
  for (const int row : shift.removed()) {
    if (const int position = PositionOf(row); position >= 0) Erase(position);
  }
  for (std::vector<int32_t>& rows : chunks_) MoveRows(rows, *tail);
  MoveByRow(chunk_of_row_, shift, -1);
}

void RowSequence::ShiftAll(const RowShift& shift) {
  std::vector<int32_t> now(chunk_of_row_.size(), 0);
  shift.ForEachRun(static_cast<int>(now.size()) - 1, [&](int before, int first_now, int rows) {
    std::iota(now.begin() + before, now.begin() + before + rows, first_now);
  });
  std::vector<int32_t> left;
  left.reserve(static_cast<size_t>(size_));
  ForEach([&](int32_t row) {
    if (now[static_cast<size_t>(row)] != 0) left.push_back(now[static_cast<size_t>(row)]);
  });
  Assign(left);
}

size_t RowSequence::PlaceOf(int position) const {
  const auto behind = std::upper_bound(starts_.begin() + 1, starts_.end(), position);
  return static_cast<size_t>(behind - starts_.begin()) - 1;
}

void RowSequence::InsertChunk(size_t place, std::vector<int32_t> rows) {
  const auto offset = static_cast<std::ptrdiff_t>(place);
  order_.insert(order_.begin() + offset, chunks_.size());
  starts_.insert(starts_.begin() + offset, 0);
  if (place > 0) starts_[place] = starts_[place - 1] + static_cast<int>(chunks_[order_[place - 1]].size());
  chunks_.push_back(std::move(rows));
  places_.push_back(place);
  RenumberFrom(place);
}

void RowSequence::Split(size_t place) {
  std::vector<int32_t>& rows = chunks_[order_[place]];
  const auto half = rows.begin() + static_cast<std::ptrdiff_t>(rows.size() / 2);
  std::vector<int32_t> upper(half, rows.end());
  rows.erase(half, rows.end());
  for (const int32_t row : upper) chunk_of_row_[static_cast<size_t>(row)] = static_cast<int32_t>(chunks_.size());
  InsertChunk(place + 1, std::move(upper));
}

void RowSequence::RenumberFrom(size_t place) {
  for (size_t i = place; i < order_.size(); ++i) places_[order_[i]] = i;
}

}  // namespace tessaro
