#pragma once

#include <string_view>

namespace tessaro {

class IniFile;

// The place of a window on the screen, in pixels: the corner of its frame, the size inside of it.
struct KeptPlace {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  bool maximised = false;
};

// What the keys of each window end with.
namespace place_suffix {
inline constexpr std::string_view kMain = "M";
inline constexpr std::string_view kLearning = "L";
inline constexpr std::string_view kStatistics = "D";
inline constexpr std::string_view kTyping = "TT";
inline constexpr std::string_view kTypedAnswer = "V";
inline constexpr std::string_view kChoice = "W";
inline constexpr std::string_view kEditor = "E";
inline constexpr std::string_view kTable = "T";
inline constexpr std::string_view kSearch = "F";
inline constexpr std::string_view kLinks = "HL";
inline constexpr std::string_view kCharacters = "S";
inline constexpr std::string_view kImport = "Imp";
inline constexpr std::string_view kComparison = "Upd";
inline constexpr std::string_view kEvaluation = "A";
inline constexpr std::string_view kForecast = "P";
inline constexpr std::string_view kPrinting = "Prt";
inline constexpr std::string_view kHelp = "Hlp";
}  // namespace place_suffix

// Section "POS", keys "x", "y", "cx", "cy" and "max" with a suffix of the window: "xL" ... "cyL". A key that is missing
// gives the value of `fallback`; numbers beyond any screen are cut.
KeptPlace ReadPlace(const IniFile& settings, std::string_view suffix, const KeptPlace& fallback);
// Whether a corner was kept.
bool HasPlace(const IniFile& settings, std::string_view suffix);
// The place on a screen of that size whose corner is 0, 0: a size beyond the screen's is cut to it, a negative corner
// becomes 0, and a window that would reach beyond the right or lower edge ends there.
KeptPlace PlaceWithin(KeptPlace place, int screen_width, int screen_height);
// "max" comes into the file with the first window that was maximised.
void WritePlace(const KeptPlace& place, std::string_view suffix, IniFile& settings);

}  // namespace tessaro
