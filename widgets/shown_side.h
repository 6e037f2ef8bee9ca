#pragma once

#include <string>
#include <string_view>

namespace tessaro {

// What of a side is laid out: all of it, or of one of more than a megabyte its beginning with a note.
inline std::string ShownSide(std::string_view side) {
  constexpr size_t kMostShown = 1 << 20;
  std::string shown(side.substr(0, kMostShown));
  if (side.size() > kMostShown) shown += "<br><br>[Hier abgeschnitten: Die Seite ist zu lang.]";
  return shown;
}

}  // namespace tessaro
