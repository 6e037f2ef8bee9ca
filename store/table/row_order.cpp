#include "store/table/row_order.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace tessaro {
namespace {

constexpr size_t kNear = 8;  // chunks that are looked at one after the other
// More rows than these are put in or taken out by making the order anew.
constexpr size_t kFewRows = 500;

}  // namespace

size_t RowOrder::FarChunkOf(int index, size_t guess) const {
  // A chunk that was parted moves those behind it by one.
  for (size_t next = guess; next < guess + kNear && next < starts_.size(); ++next) {
    if (Holds(next, index)) return next;
  }
  return static_cast<size_t>(std::upper_bound(starts_.begin(), starts_.end(), index) - starts_.begin()) - 1;
}

void RowOrder::Append(RowHandle row) {
  if (chunks_.empty() || chunks_.back().size() == kChunkRows) {
    starts_.push_back(size_);
    chunks_.emplace_back();
    if (chunks_.size() > 1) chunks_.back().reserve(kChunkRows);
  }
  chunks_.back().push_back(row);
  ++size_;
}

void RowOrder::Insert(int index, RowHandle row) {
  if (index == size_) return Append(row);
  size_t chunk = ChunkOf(index);
  if (chunks_[chunk].size() == kChunkRows) {
    Split(chunk);
    if (index >= starts_[chunk + 1]) ++chunk;
  }
  chunks_[chunk].insert(chunks_[chunk].begin() + (index - starts_[chunk]), row);
  MoveStarts(chunk + 1, 1);
  ++size_;
}

void RowOrder::Erase(int index) {
  const size_t chunk = ChunkOf(index);
  chunks_[chunk].erase(chunks_[chunk].begin() + (index - starts_[chunk]));
  MoveStarts(chunk + 1, -1);
  --size_;
  if (!chunks_[chunk].empty()) return;
  chunks_.erase(chunks_.begin() + static_cast<std::ptrdiff_t>(chunk));
  starts_.erase(starts_.begin() + static_cast<std::ptrdiff_t>(chunk));
}

template <typename Visit>
void RowOrder::ForEach(const Visit& visit) const {
  for (const std::vector<RowHandle>& chunk : chunks_) std::for_each(chunk.begin(), chunk.end(), visit);
}

void RowOrder::Erase(std::span<const int> numbers) {
  if (numbers.size() <= kFewRows) {
    for (auto number = numbers.rbegin(); number != numbers.rend(); ++number) Erase(*number - 1);
    return;
  }
  RowOrder left;
  auto gone = numbers.begin();
  int number = 0;
  ForEach([&](RowHandle row) {
    ++number;
    if (gone != numbers.end() && *gone == number) {
      ++gone;
    } else {
      left.Append(row);
    }
  });
  *this = std::move(left);
}

void RowOrder::Insert(std::span<const int> numbers, std::span<const RowHandle> rows) {
  if (numbers.size() <= kFewRows) {
    for (size_t i = 0; i < numbers.size(); ++i) Insert(numbers[i] - 1, rows[i]);
    return;
  }
  // The rows before the first one that comes stay where they are.
  std::vector<RowHandle> behind;
  CutOff(numbers.front() - 1, behind);
  size_t next = 0;
  const auto append_new = [&] {
    while (next < rows.size() && numbers[next] == size_ + 1) Append(rows[next++]);
  };
  for (const RowHandle row : behind) {
    append_new();
    Append(row);
  }
  append_new();
}

void RowOrder::CutOff(int index, std::vector<RowHandle>& behind) {
  if (index == size_) return;
  const size_t first = ChunkOf(index);
  std::vector<RowHandle>& cut = chunks_[first];
  const auto from = cut.begin() + (index - starts_[first]);
  behind.assign(from, cut.end());
  cut.erase(from, cut.end());
  for (size_t chunk = first + 1; chunk < chunks_.size(); ++chunk) {
    behind.insert(behind.end(), chunks_[chunk].begin(), chunks_[chunk].end());
  }
  chunks_.resize(first + (cut.empty() ? 0 : 1));
  starts_.resize(chunks_.size());
  size_ = index;
}

void RowOrder::Split(size_t chunk) {
  const auto next = static_cast<std::ptrdiff_t>(chunk) + 1;
  chunks_.emplace(chunks_.begin() + next);
  std::vector<RowHandle>& front = chunks_[chunk];
  std::vector<RowHandle>& back = chunks_[chunk + 1];
  const auto middle = front.begin() + static_cast<std::ptrdiff_t>(front.size() / 2);
  back.reserve(kChunkRows);
  back.assign(middle, front.end());
  front.erase(middle, front.end());
  starts_.insert(starts_.begin() + next, starts_[chunk] + static_cast<int>(front.size()));
}

void RowOrder::MoveStarts(size_t first_chunk, int by) {
  for (size_t i = first_chunk; i < starts_.size(); ++i) starts_[i] += by;
}

}  // namespace tessaro
