#pragma once

#include <QColor>
#include <QFont>
#include <cstdint>

#include "settings/side_settings.h"
#include "widgets/htmlview.h"

namespace tessaro {

// A colour as card files store it: 0x00BBGGRR. Negative numbers and larger ones name colours of another system and are
// not valid here: they give `fallback`.
QColor ColourFromNumber(int64_t number, const QColor& fallback);

int64_t NumberFromColour(const QColor& colour);

// The look of a card side from the settings of its card file. What these leave open gets a readable default.
SideLook LookOf(const SideSettings& look);
SideLook ReadSideLook(const IniFile& settings, SideName side);

}  // namespace tessaro
