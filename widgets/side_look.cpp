#include "widgets/side_look.h"

#include <QStringList>
#include <algorithm>
#include <string>

#include "widgets/text.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

constexpr int64_t kLargestColour = 0xFFFFFF;
constexpr int64_t kSmallestPoints = 1;
constexpr int64_t kLargestPoints = 400;
constexpr int kDefaultPoints = 14;
// Heights are stored in pixels of a screen with 96 dots to the inch.
constexpr int64_t kPointsPerInch = 72;
constexpr int64_t kDotsPerInch = 96;
constexpr int64_t kFixedPitch = 2;
constexpr QColor kPaper(0xFD, 0xFC, 0xF8);
constexpr QColor kInk(0x1C, 0x1C, 0x1C);
constexpr std::string_view kDefaultName = "MS Sans Serif";

struct Sections {
  const char* font;
  const char* paper;
  const char* text_key;
};
Sections SectionsOf(SideName side) {
  return side == SideName::Front ? Sections{"FontV", "ColorV", "V"} : Sections{"FontH", "ColorH", "H"};
}

// The bitmap font of old card files is on no machine of today: a plain sans serif stands in for it.
void SubstituteDefaultFont() {
  const QString name = FromBytes(kDefaultName);
  if (!QFont::substitutes(name).isEmpty()) return;
  QFont::insertSubstitutions(name, {u"Liberation Sans"_s, u"Arimo"_s, u"Noto Sans"_s, u"DejaVu Sans"_s});
}

int Points(const IniFile& settings, const char* section) {
  const int64_t size = settings.GetInt(section, "Size", 0);
  if (size > 0) return static_cast<int>(std::clamp(size, kSmallestPoints, kLargestPoints));
  // A negative height is that of the letters alone, which is what a point size means; a positive one holds the space
  // between lines too and is taken the same. Bounded first, so that no stored number overflows the arithmetic.
  constexpr int64_t kBound = kLargestPoints * kDotsPerInch;
  const int64_t height = std::clamp(settings.GetInt(section, "Height", 0), -kBound, kBound);
  if (height == 0) return kDefaultPoints;
  const int64_t points = (height < 0 ? -height : height) * kPointsPerInch / kDotsPerInch;
  return static_cast<int>(std::clamp(points, kSmallestPoints, kLargestPoints));
}

QFont Font(const IniFile& settings, const char* section) {
  SubstituteDefaultFont();
  std::string name = settings.GetString(section, "Name", kDefaultName);
  if (name.empty()) name = kDefaultName;
  QFont font(FromBytes(name), Points(settings, section));
  font.setStyleHint(QFont::SansSerif);
  if (settings.GetInt(section, "Pitch", 0) == kFixedPitch) {
    font.setStyleHint(QFont::TypeWriter);
    font.setFixedPitch(true);
  }
  return font;
}

}  // namespace

QColor ColourFromNumber(int64_t number, const QColor& fallback) {
  if (number < 0 || number > kLargestColour) return fallback;
  const int colour = static_cast<int>(number);
  return {colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF};
}

SideLook ReadSideLook(const IniFile& settings, SideName side) {
  const Sections sections = SectionsOf(side);
  const QColor font_colour = ColourFromNumber(settings.GetInt(sections.font, "Color", -1), kInk);
  return {.font = Font(settings, sections.font),
          .text = ColourFromNumber(settings.GetInt("ClText", sections.text_key, -1), font_colour),
          .paper = ColourFromNumber(settings.GetInt(sections.paper, "Color", -1), kPaper)};
}

}  // namespace tessaro
