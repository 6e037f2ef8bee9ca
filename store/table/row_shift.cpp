#include "store/table/row_shift.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <utility>

namespace tessaro {
namespace {

// As many as fit a register that every processor of 64 bits has.
constexpr size_t kRowsAtOnce = 4;
using Rows = int32_t __attribute__((vector_size(kRowsAtOnce * sizeof(int32_t))));

Rows AllAre(int32_t row) {
  return Rows{} + row;
}

}  // namespace

RowShift::RowShift(std::vector<int> removed, std::vector<int> inserted)
    : removed_(std::move(removed)), inserted_(std::move(inserted)) {
  if (empty()) return;
  constexpr int kEnd = std::numeric_limits<int>::max();
  int before = 1;
  int now = 1;
  int last_kept = 0;  // its number now
  size_t out = 0;
  size_t in = 0;
  for (bool more = true; more;) {
    if (out < removed_.size() && removed_[out] == before) {
      if (runs_.empty() || !runs_.back().gone) runs_.push_back({before, last_kept, true});
      ++out;
      ++before;
    } else if (in < inserted_.size() && inserted_[in] == now) {
      ++in;
      ++now;
    } else {
      const int until_gone = out < removed_.size() ? removed_[out] - before : kEnd;
      const int until_new = in < inserted_.size() ? inserted_[in] - now : kEnd;
      const int kept = std::min(until_gone, until_new);
      runs_.push_back({before, now, false});
      more = kept < kEnd;
      if (!more) break;
      before += kept;
      now += kept;
      last_kept = now - 1;
    }
  }
}

const RowShift::Run& RowShift::RunOf(int row) const {
  const auto behind =
      std::upper_bound(runs_.begin(), runs_.end(), row, [](int number, const Run& run) { return number < run.first; });
  return *(behind - 1);
}

int RowShift::Map(int row) const {
  if (row < 1) return 0;
  if (runs_.empty()) return row;
  const Run& run = RunOf(row);
  return run.gone ? 0 : run.now + (row - run.first);
}

int RowShift::MapOrBefore(int row) const {
  if (row < 1) return 0;
  if (runs_.empty()) return row;
  const Run& run = RunOf(row);
  return run.gone ? run.now : run.now + (row - run.first);
}

std::optional<RowShift::Tail> RowShift::AsTail() const {
  std::optional<Tail> tail;
  for (const Run& run : runs_) {
    if (run.gone || run.now == run.first) continue;
    if (tail) return std::nullopt;
    tail = Tail{run.first, run.now - run.first};
  }
  // Rows that come and go without a row moving, or behind which rows stay, are no tail.
  return tail && !runs_.back().gone && runs_.back().first == tail->from ? tail : std::nullopt;
}

void MoveRows(std::span<int32_t> rows, RowShift::Tail tail) {
  const Rows from = AllAre(tail.from);
  const Rows by = AllAre(tail.by);
  size_t i = 0;
  for (; i + kRowsAtOnce <= rows.size(); i += kRowsAtOnce) {
    Rows moved;
    std::memcpy(&moved, &rows[i], sizeof moved);
    moved += (moved >= from) & by;
    std::memcpy(&rows[i], &moved, sizeof moved);
  }
  for (; i < rows.size(); ++i) rows[i] += rows[i] >= tail.from ? tail.by : 0;
}

size_t PlaceOfRow(std::span<const int32_t> rows, int32_t row) {
  const Rows wanted = AllAre(row);
  size_t i = 0;
  for (bool found = false; !found && i + kRowsAtOnce <= rows.size();) {
    Rows some;
    std::memcpy(&some, &rows[i], sizeof some);
    const Rows equal = some == wanted;
    std::array<uint64_t, sizeof(Rows) / sizeof(uint64_t)> bits;
    std::memcpy(bits.data(), &equal, sizeof bits);
    found = std::any_of(bits.begin(), bits.end(), [](uint64_t word) { return word != 0; });
    if (!found) i += kRowsAtOnce;
  }
  return static_cast<size_t>(std::find(rows.begin() + static_cast<std::ptrdiff_t>(i), rows.end(), row) - rows.begin());
}

}  // namespace tessaro
