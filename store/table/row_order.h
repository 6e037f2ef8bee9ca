#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace tessaro {

// Names a row in its store, wherever it stands in the table.
using RowHandle = uint32_t;

// The rows of a table in their order. Stands in chunks: a row is found by number without walking, and a row put in or
// taken out moves no more than one chunk. Indexes count from 0 and must exist.
class RowOrder {
 public:
  int size() const { return size_; }
  RowHandle At(int index) const {
    const size_t chunk = ChunkOf(index);
    return chunks_[chunk][static_cast<size_t>(index - starts_[chunk])];
  }
  void Append(RowHandle row);
  // Puts the row before the one at `index`, which may be the end.
  void Insert(int index, RowHandle row);
  void Erase(int index);
  // The same for many at once. Numbers count from 1 and ascend: of rows to be erased as they are, of rows to be
  // inserted as they will be.
  void Erase(std::span<const int> numbers);
  void Insert(std::span<const int> numbers, std::span<const RowHandle> rows);

 private:
  static constexpr size_t kChunkRows = 2048;

  bool Holds(size_t chunk, int index) const {
    return starts_[chunk] <= index && (chunk + 1 == starts_.size() || index < starts_[chunk + 1]);
  }
  size_t ChunkOf(int index) const {
    // Right as long as rows were only appended, so that all chunks but the last are full.
    const size_t guess = std::min(static_cast<size_t>(index) / kChunkRows, starts_.size() - 1);
    return Holds(guess, index) ? guess : FarChunkOf(index, guess);
  }
  size_t FarChunkOf(int index, size_t guess) const;
  void Split(size_t chunk);
  // Takes the rows from `index` on out, which may be the end, and gives them.
  void CutOff(int index, std::vector<RowHandle>& behind);
  void MoveStarts(size_t first_chunk, int by);
  template <typename Visit>
  void ForEach(const Visit& visit) const;

  std::vector<std::vector<RowHandle>> chunks_;
  std::vector<int> starts_;  // per chunk the index of its first row
  int size_ = 0;
};

}  // namespace tessaro
