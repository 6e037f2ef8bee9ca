#pragma once

#include <QColor>
#include <QPalette>

namespace tessaro {

enum class Theme { Desktop, Light, Dark };

// Switches the program to a palette of its own, in Qt's Fusion style; Desktop leaves both as the desktop gives them.
void ApplyTheme(Theme theme);
QPalette ThemePalette(Theme theme);

enum class Accent { Known, NotKnown, Notice, Warning };

// A colour for text, lines and icons on the window's background, readable in a light and in a dark palette.
QColor AccentColour(Accent accent, const QPalette& palette);
bool IsDark(const QPalette& palette);

}  // namespace tessaro
