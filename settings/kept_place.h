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
