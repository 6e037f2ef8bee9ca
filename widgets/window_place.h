#pragma once

#include <string_view>

class QWidget;

namespace tessaro {

class IniFile;

// Places of windows stand in section "POS" under "x", "y", "cx" and "cy" with a suffix of the window: "xL" ... "cyL".
// x and y are the frame's corner on the screen, cx and cy the size inside the frame, in pixels.

// Brings the window back to its kept place, moved and shrunk so that it is on a screen whole. Without a kept place it
// keeps its size and stands over the middle of the active window; without one of those, where the desktop puts it.
void RestoreWindowPlace(QWidget& window, const IniFile& settings, std::string_view suffix);
// The same for a window beside the work in its parent: at first it stands over the lower right corner of that, where it
// hides the least.
void RestorePlaceAside(QWidget& window, const IniFile& settings, std::string_view suffix);
// Keeps the place; of a maximised window the place it goes back to, and that it was maximised ("maxL").
void KeepWindowPlace(const QWidget& window, IniFile& settings, std::string_view suffix);

// Enlarges a window that has not been shown yet as far as its texts and controls need it in the fonts of now.
void GrowToContent(QWidget& window);

}  // namespace tessaro
