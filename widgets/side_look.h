#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>
#include <cstdint>

#include "settings/side_settings.h"
#include "widgets/htmlview.h"

namespace tessaro {

// A colour as card files store it: 0x00BBGGRR. Negative numbers and larger ones name colours of another system and are
// not valid here: they give `fallback`.
QColor ColourFromNumber(int64_t number, const QColor& fallback);
// The other way; an opacity is lost.
int64_t NumberFromColour(const QColor& colour);

// The same look for a dark desktop: paper of one of the usual light colours becomes dark, the text readable on it.
// Paper of any other colour was chosen by somebody and stays. For the screen alone, never to be stored or printed.
SideLook OnDarkPaper(const SideLook& look);
// On dark paper a colour is made so light that its contrast is at least 4.5 : 1; on any other it stays as it is.
QColor ReadableOn(const QColor& paper, QColor colour);
// From 1 to 21, as readers with weak eyes count it.
double Contrast(const QColor& one, const QColor& other);

// The look of a card side from the settings of its card file. What these leave open gets a readable default.
SideLook LookOf(const SideSettings& look);
SideLook ReadSideLook(const IniFile& settings, SideName side);
// The same as windows of this palette show it, where the settings of the program want dark paper in dark windows.
SideLook LookOnScreen(const IniFile& card_file, const IniFile& program, SideName side, const QPalette& palette);

}  // namespace tessaro
