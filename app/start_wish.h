#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tessaro {

// What a start of the program asks for.
struct StartWish {
  enum class Deed : char { Nothing, Learn, NewFile };
  std::filesystem::path card_file = {};  // to be opened; empty = none
  Deed deed = Deed::Nothing;             // with the file, or the one opened last

  bool empty() const { return card_file.empty() && deed == Deed::Nothing; }
  bool operator==(const StartWish&) const = default;
};

// As one start says it to the program that is running: a path, a letter for the deed, and at the end a zero byte, which
// is in no path.
std::string ToBytes(const StartWish& wish);
// Nothing for what is no whole wish.
std::optional<StartWish> ToStartWish(std::string_view bytes);

}  // namespace tessaro
