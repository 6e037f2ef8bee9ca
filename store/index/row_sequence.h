#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "store/table/row_shift.h"

namespace tessaro {

// Distinct row numbers in an order of their own, which changes one row at a time. It stands in chunks, and each row
// knows its chunk: both the row at a position and the position of a row are found without walking, and moving a row
// touches no more than two chunks. Positions count from 0.
class RowSequence {
 public:
  // Row numbers are small: memory goes with the largest.
  void Assign(const std::vector<int32_t>& rows);
  int size() const { return size_; }
  // The position must exist.
  int32_t At(int position) const;
  // -1 when the row is not in the sequence.
  int PositionOf(int32_t row) const;
  // Puts a row that is not yet in before the one at `position`, which may be the end.
  void Insert(int position, int32_t row);
  void Erase(int position);
  // The rows have got new numbers; those that were removed leave the sequence.
  void Shift(const RowShift& shift);

  template <typename Visit>
  void ForEach(const Visit& visit) const {
    for (const size_t chunk : order_) std::for_each(chunks_[chunk].begin(), chunks_[chunk].end(), visit);
  }

  // The first position whose row is not `below`; the size when all are. Rows that are must stand before all others.
  template <typename Below>
  int FirstNot(const Below& below) const {
    const auto place =
        std::partition_point(order_.begin(), order_.end(), [&](size_t chunk) { return below(chunks_[chunk].back()); });
    if (place == order_.end()) return size_;
    const std::vector<int32_t>& rows = chunks_[*place];
    const auto row = std::partition_point(rows.begin(), rows.end(), below);
    return starts_[static_cast<size_t>(place - order_.begin())] + static_cast<int>(row - rows.begin());
  }

 private:
  // Which chunk in sequence order holds a position; the last one for the end.
  size_t PlaceOf(int position) const;
  void ShiftAll(const RowShift& shift);
  void InsertChunk(size_t place, std::vector<int32_t> rows);
  void Split(size_t place);
  void RenumberFrom(size_t place);

  // A chunk keeps its number when others come before it, so that the rows need not learn new ones.
  std::vector<std::vector<int32_t>> chunks_;  // by chunk number; one that lost all rows stays empty
  std::vector<size_t> order_;                 // chunk numbers in sequence order, none of them empty
  std::vector<int> starts_;                   // beside order_: the position of the first row
  std::vector<size_t> places_;                // by chunk number: where it stands in order_
  std::vector<int32_t> chunk_of_row_;         // by row number; -1 when not in
  int size_ = 0;
};

}  // namespace tessaro
