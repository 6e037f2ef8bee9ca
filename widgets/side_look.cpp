#include "widgets/side_look.h"

#include <QStringList>

#include "widgets/text.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

constexpr int64_t kLargestColour = 0xFFFFFF;
constexpr QColor kPaper(0xFD, 0xFC, 0xF8);
constexpr QColor kInk(0x1C, 0x1C, 0x1C);

// The bitmap font of old card files is on no machine of today: a plain sans serif stands in for it.
void SubstituteDefaultFont() {
  const QString name = FromBytes(SideSettings().font);
  if (!QFont::substitutes(name).isEmpty()) return;
  QFont::insertSubstitutions(name, {u"Liberation Sans"_s, u"Arimo"_s, u"Noto Sans"_s, u"DejaVu Sans"_s});
}

QFont Font(const SideSettings& look) {
  SubstituteDefaultFont();
  QFont font(FromBytes(look.font), static_cast<int>(look.points));
  font.setStyleHint(QFont::SansSerif);
  if (look.fixed_pitch) {
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

int64_t NumberFromColour(const QColor& colour) {
  return colour.red() | (colour.green() << 8) | (colour.blue() << 16);
}

SideLook LookOf(const SideSettings& look) {
  return {.font = Font(look), .text = ColourFromNumber(look.text, kInk), .paper = ColourFromNumber(look.paper, kPaper)};
}

SideLook ReadSideLook(const IniFile& settings, SideName side) {
  return LookOf(ReadSideSettings(settings, side));
}

}  // namespace tessaro
