#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace tessaro {

// Where the rows of a table went when rows were removed and others came in, in one step. Rows count from 1.
class RowShift {
 public:
  // Nothing moves.
  RowShift() = default;
  // `removed`: rows as they counted before; `inserted`: rows as they count afterwards. Both ascending, none twice.
  RowShift(std::vector<int> removed, std::vector<int> inserted);

  bool empty() const { return removed_.empty() && inserted_.empty(); }
  // What number a row has now; 0 for one that was removed, and for 0 and below.
  int Map(int row) const;
  // The same, but for a removed row the number of the last row before it that stayed; 0 when there is none.
  int MapOrBefore(int row) const;

  const std::vector<int>& removed() const { return removed_; }
  const std::vector<int>& inserted() const { return inserted_; }

  // For shifts in which all rows up to some place stay and all from there on move alike, as after a single card came or
  // went.
  struct Tail {
    int from = 0;  // first row that moves
    int by = 0;
  };
  std::optional<Tail> AsTail() const;

  // Goes from run to run of rows that stay neighbours: visit(first row before, first row now, rows). `rows` is the
  // number of rows before.
  template <typename Visit>
  void ForEachRun(int rows, const Visit& visit) const {
    for (size_t i = 0; i < runs_.size() && runs_[i].first <= rows; ++i) {
      const int end = i + 1 < runs_.size() && runs_[i + 1].first <= rows ? runs_[i + 1].first : rows + 1;
      if (!runs_[i].gone) visit(runs_[i].first, runs_[i].now, end - runs_[i].first);
    }
    if (runs_.empty()) visit(1, 1, rows);
  }

 private:
  struct Run {
    int first = 0;  // row before
    int now = 0;    // its number now; of removed rows that of the last one before them that stayed
    bool gone = false;
  };
  const Run& RunOf(int row) const;

  std::vector<int> removed_;
  std::vector<int> inserted_;
  std::vector<Run> runs_;  // none: nothing moves; else the first begins with row 1
};

// Gives rows their new numbers.
void MoveRows(std::span<int32_t> rows, RowShift::Tail tail);

// The place of a row among them; their number when it is not there.
size_t PlaceOfRow(std::span<const int32_t> rows, int32_t row);

// Moves values that are kept by row number, with one for the number 0; rows that come get `fresh`.
template <typename T>
void MoveByRow(std::vector<T>& by_row, const RowShift& shift, T fresh) {
  const std::optional<RowShift::Tail> tail = shift.AsTail();
  if (tail) {
    const auto at = [&](int row) {
      return by_row.begin() + static_cast<std::ptrdiff_t>(std::min(static_cast<size_t>(row), by_row.size()));
    };
    if (tail->by > 0 && at(tail->from) != by_row.end()) {
      by_row.insert(at(tail->from), static_cast<size_t>(tail->by), fresh);
    } else if (tail->by < 0) {
      by_row.erase(at(tail->from + tail->by), at(tail->from));
    }
    for (const int row : shift.inserted()) {
      if (at(row) != by_row.end()) *at(row) = fresh;
    }
    return;
  }
  std::vector<T> moved(by_row.size() + shift.inserted().size(), fresh);
  shift.ForEachRun(static_cast<int>(by_row.size()) - 1, [&](int before, int now, int rows) {
    std::copy_n(by_row.begin() + before, rows, moved.begin() + now);
  });
  by_row = std::move(moved);
}

}  // namespace tessaro
