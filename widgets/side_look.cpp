#include "widgets/side_look.h"

#include <QStringList>
#include <algorithm>
#include <cmath>

#include "settings/keys.h"
#include "widgets/text.h"
#include "widgets/theme.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

constexpr int64_t kLargestColour = 0xFFFFFF;
constexpr QColor kPaper(0xFD, 0xFC, 0xF8);
constexpr QColor kInk(0x1C, 0x1C, 0x1C);
constexpr QColor kDarkPaper(0x1E, 0x20, 0x22);
constexpr QColor kDarkInk(0xE4, 0xE3, 0xDF);
constexpr int kHalfLight = 128;  // of the lightness of a colour
constexpr double kGlare = 0.05;  // the light that a screen reflects

// From 0, black, to 1, white, as the eye weighs the colours.
double Luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

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

double Contrast(const QColor& one, const QColor& other) {
  const double a = Luminance(one) + kGlare;
  const double b = Luminance(other) + kGlare;
  return std::max(a, b) / std::min(a, b);
}

QColor ReadableOn(const QColor& paper, QColor colour) {
  constexpr double kReadable = 4.5;
  constexpr int kStep = 8;
  if (paper.lightness() >= kHalfLight) return colour;
  while (Contrast(paper, colour) < kReadable && colour != Qt::white) {
    const auto lighter = [](int part) { return std::min(part + kStep, 255); };
    colour.setRgb(lighter(colour.red()), lighter(colour.green()), lighter(colour.blue()));
  }
  return colour;
}

SideLook OnDarkPaper(const SideLook& look) {
  if (look.paper != kPaper && look.paper != QColor(Qt::white)) return look;
  const bool usual = look.text == kInk || look.text == QColor(Qt::black);
  return {.font = look.font,
          .text = usual ? kDarkInk : ReadableOn(kDarkPaper, look.text),
          .paper = kDarkPaper,
          .page = look.page};
}

SideLook LookOf(const SideSettings& look) {
  return {.font = Font(look), .text = ColourFromNumber(look.text, kInk), .paper = ColourFromNumber(look.paper, kPaper)};
}

SideLook ReadSideLook(const IniFile& settings, SideName side) {
  SideLook look = LookOf(ReadSideSettings(settings, side));
  look.page = CodePage(ReadCharacterSet(settings, side));
  return look;
}

SideLook LookOnScreen(const IniFile& card_file, const IniFile& program, SideName side, const QPalette& palette) {
  const SideLook look = ReadSideLook(card_file, side);
  return IsDark(palette) && !keys::kWhitePaper.Read(program) ? OnDarkPaper(look) : look;
}

}  // namespace tessaro
