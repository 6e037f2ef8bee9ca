#pragma once

#include <string>
#include <string_view>

#include "store/file/ini_file.h"

// The numbers of the cards that commands lead to, as the card file's settings keep them.
namespace tessaro {

// Keeps one of them in memory, as text of a card's ID; an empty one is kept no longer.
inline void SetLandmark(std::string_view key, std::string_view id, IniFile& settings) {
  if (id.empty()) return settings.Remove("HTML", key);
  settings.SetString("HTML", key, id);
}

// The card where the overview in row order begins; empty: none is kept.
inline std::string OverviewSetting(const IniFile& settings) {
  return settings.GetString("HTML", "Vis");
}
inline void SetOverviewSetting(std::string_view id, IniFile& settings) {
  SetLandmark("Vis", id, settings);
}

// The home card as the last renumbering found it; empty: none is kept.
inline std::string HomeSetting(const IniFile& settings) {
  return settings.GetString("HTML", "HOME");
}
inline void SetHomeSetting(std::string_view id, IniFile& settings) {
  SetLandmark("HOME", id, settings);
}

}  // namespace tessaro
