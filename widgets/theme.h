#pragma once

#include <QColor>
#include <QPalette>
#include <optional>

class QWidget;

namespace tessaro {

enum class Theme { Desktop, Light, Dark };

// Switches the program to a palette of its own, in Qt's Fusion style; Desktop leaves both as the desktop gives them,
// but for small faults of the Fusion style, where that is the desktop's.
void ApplyTheme(Theme theme);
// The text of windows, in percent of the desktop's.
void ApplyTextSize(int percent);
QPalette ThemePalette(Theme theme);

enum class Accent { Known, NotKnown, Notice, Warning };

// A colour for text, lines and icons on the window's background, readable in a light and in a dark palette.
QColor AccentColour(Accent accent, const QPalette& palette);
// What a bar, line or point of a plot stands for.
enum class PlotRole { Known, NotKnown, New };
// Its colour on the palette's base. The pairs are told apart by the common colour blindnesses too; what is drawn never
// differs by colour alone.
QColor PlotColour(PlotRole role, const QPalette& palette);
// Text in one of these colours, or back in that of its surroundings.
void SetAccent(QWidget& text, std::optional<Accent> accent);
// Small and quiet beside what it explains: hints and the captions of figures. Its window's font and palette count.
void MakeQuiet(QWidget& text);
bool IsDark(const QPalette& palette);

}  // namespace tessaro
