#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tessaro {

// How a file seems to be laid out.
struct LayoutGuess {
  bool table = false;  // eight columns a line, else two sides
  char separator = '\0';
  char card_separator = '\0';  // not of a table
  int64_t fitting = 0;         // lines that fit, of those that were looked at
  int64_t lines = 0;
};

// Counts, in the first lines of a text that are not empty, those that fit the usual layouts. Nothing when none of them
// fits more than half of the lines.
std::optional<LayoutGuess> GuessLayout(std::string_view text);

}  // namespace tessaro
