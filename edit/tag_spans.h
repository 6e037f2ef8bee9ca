#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace tessaro {

// A tag in the text of a side, from its "<" to its ">". A "<" that opens no tag is text.
struct TagSpan {
  size_t begin = 0;
  size_t length = 0;
  bool link = false;
  int64_t target = 0;  // of a link; 0 leads to nothing
  bool operator==(const TagSpan&) const = default;
};
std::vector<TagSpan> FindTags(std::string_view side);

}  // namespace tessaro
