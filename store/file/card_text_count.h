#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "store/table/content_stamp.h"

namespace tessaro {

class Disk;

// Counts the rows of a card file's text piece by piece, without keeping it: for copies that must be looked at, but not
// loaded. May run on any thread.
class CardTextCount {
 public:
  // The next bytes of the file.
  void Add(std::string_view bytes);

  // Complete lines after the line of the column names.
  int64_t rows() const { return lines_ > 0 ? lines_ - 1 : 0; }
  // Whether the text ends with the row that ends every card file, line end included.
  bool HasEndRow() const;
  ContentStamp Stamp() const { return hash_.Stamp(); }

 private:
  std::string header_;  // the first line, with its line feed
  std::string tail_;    // the last complete line and what follows it
  int64_t lines_ = 0;
  ContentHash hash_;
};

// Feeds the whole file to `count`. False when it cannot be read.
[[nodiscard]] bool CountFile(Disk& disk, const std::filesystem::path& path, CardTextCount& count);
// The number of cards in a card file or a backup of one; nothing when it cannot be read or its end is missing.
std::optional<int64_t> CountCardsIn(Disk& disk, const std::filesystem::path& path);

}  // namespace tessaro
