#include "store/table/column_list.h"

namespace tessaro {

void ColumnList::Add(std::string_view name) {
  names_ += name;
  ends_.push_back(names_.size());
}

std::string_view ColumnList::Name(int column) const {
  const auto index = static_cast<size_t>(column);
  const size_t start = index == 0 ? 0 : ends_[index - 1];
  return std::string_view(names_).substr(start, ends_[index] - start);
}

int ColumnList::Find(std::string_view name) const {
  for (int column = 0; column < size(); ++column) {
    if (Name(column) == name) return column;
  }
  return -1;
}

}  // namespace tessaro
