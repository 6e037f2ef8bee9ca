#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/side_code_page.h"

namespace tessaro {

class IniFile;

enum class SideName { Front, Back };

// How a card side looks, as the settings of its card file hold it. Colours are 0x00BBGGRR.
struct SideSettings {
  static constexpr int64_t kNoColour = -1;
  static constexpr int64_t kLeastPoints = 1;
  static constexpr int64_t kMostPoints = 400;
  std::string font = "MS Sans Serif";
  int64_t points = 14;       // kLeastPoints ... kMostPoints
  bool fixed_pitch = false;  // where the font is missing, one with letters of equal width stands in for it
  int64_t text = kNoColour;
  int64_t paper = kNoColour;
  bool operator==(const SideSettings&) const = default;
};

// Font from section "FontV" or "FontH" (keys "Name", "Color", "Height", "Size", "Pitch"), paper from "Color" in section
// "ColorV" or "ColorH", text colour from "V" or "H" in section "ClText" or else from the font's "Color". What is
// missing or senseless gets the default.
SideSettings ReadSideSettings(const IniFile& settings, SideName side);
// The size as "Size" and as "Height"; "Charset" stays as it is. A colour kNoColour, and a name that no INI line can
// hold, leave what stands there.
void WriteSideSettings(const SideSettings& look, SideName side, IniFile& settings);
// Removes all that WriteSideSettings writes.
void RemoveSideSettings(SideName side, IniFile& settings);

// The character set of the texts on a side, "Charset" of its font. Numbers that stand for none are Western.
CharacterSet ReadCharacterSet(const IniFile& settings, SideName side);
// Nothing is written where the side has that set already.
void WriteCharacterSet(CharacterSet set, SideName side, IniFile& settings);
// Those that the texts of a card file are written in.
SideCodePages ReadCodePages(const IniFile& settings);
void WriteCodePages(const SideCodePages& pages, IniFile& settings);

// A change of the code pages that also changes the texts, noted until both are on the disk.
struct PendingConversion {
  SideCodePages from;
  SideCodePages to;
  std::string sum;  // of the texts when they are changed
};
std::optional<PendingConversion> ReadPendingConversion(const IniFile& settings);
void WritePendingConversion(const PendingConversion& pending, IniFile& settings);
void RemovePendingConversion(IniFile& settings);

}  // namespace tessaro
