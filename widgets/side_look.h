#pragma once

#include <QColor>
#include <QFont>
#include <cstdint>

#include "store/file/ini_file.h"
#include "widgets/htmlview.h"

namespace tessaro {

enum class SideName { Front, Back };

// A colour as card files store it: 0x00BBGGRR. Negative numbers and larger ones name colours of another system and are
// not valid here: they give `fallback`.
QColor ColourFromNumber(int64_t number, const QColor& fallback);

// The look of a card side from the settings of its card file: font from section "FontV" or "FontH" (keys "Name",
// "Color", "Height", "Size", "Pitch"), paper from "Color" in section "ColorV" or "ColorH", text colour from
// "V" or "H" in section "ClText" or else from the font's "Color". What is missing or senseless gets a readable default.
SideLook ReadSideLook(const IniFile& settings, SideName side);

}  // namespace tessaro
