#pragma once

#include <algorithm>
#include <utility>
#include <vector>

#include "store/file/card_watcher.h"

namespace tessaro {

// The cards that the user has marked to be removed. They stand in the table until that is done; learning and search
// pass them over. Kept in memory only, and along with the rows.
class DeletionMarks : public CardWatcher {
 public:
  bool Has(int row) const { return !rows_.empty() && std::binary_search(rows_.begin(), rows_.end(), row); }
  // Ascending.
  const std::vector<int>& rows() const { return rows_; }
  void Clear() { rows_.clear(); }
  // Puts other marks, ascending, in their place, and gives what was marked.
  std::vector<int> Exchange(std::vector<int> rows) { return std::exchange(rows_, std::move(rows)); }

  void RowsShifted(const RowShift& shift) override {
    for (int& row : rows_) row = shift.Map(row);
    std::erase(rows_, 0);
  }

 private:
  std::vector<int> rows_;
};

}  // namespace tessaro
