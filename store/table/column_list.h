#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tessaro {

// The columns of a table: names in their order. They stand in one text, so that a file of nothing but separators costs
// little. Columns count from 0 and must exist.
class ColumnList {
 public:
  // How many there are; a new one comes last; names may repeat.
  int size() const { return static_cast<int>(ends_.size()); }
  void Add(std::string_view name);
  std::string_view Name(int column) const;
  // The first column of this name, -1 when there is none.
  int Find(std::string_view name) const;

 private:
  std::string names_;
  std::vector<size_t> ends_;
};

}  // namespace tessaro
