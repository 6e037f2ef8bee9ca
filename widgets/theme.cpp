#include "widgets/theme.h"

#include <QApplication>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleOption>
#include <QWidget>

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

struct Tones {
  QRgb window, base, alternate, button, text, disabled, highlight, highlighted_text, link, link_visited;
};

constexpr Tones kLight = {0xFFF4F4F2, 0xFFFFFFFF, 0xFFECECEA, 0xFFFBFBFA, 0xFF1E2023,
                          0xFF8B8E92, 0xFF2F5FA8, 0xFFFFFFFF, 0xFF1F57B0, 0xFF6A3FA0};
constexpr Tones kDark = {0xFF26282B, 0xFF1C1E20, 0xFF2E3134, 0xFF34373B, 0xFFE6E6E3,
                         0xFF84878B, 0xFF3D6FB8, 0xFFFFFFFF, 0xFF86B4F5, 0xFFC3A4F0};

QPalette PaletteOf(const Tones& tones) {
  QPalette palette(QColor(tones.button), QColor(tones.window));
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
    palette.setColor(role, QColor(tones.text));
    palette.setColor(QPalette::Disabled, role, QColor(tones.disabled));
  }
  palette.setColor(QPalette::Base, QColor(tones.base));
  palette.setColor(QPalette::AlternateBase, QColor(tones.alternate));
  palette.setColor(QPalette::ToolTipBase, QColor(tones.button));
  palette.setColor(QPalette::PlaceholderText, QColor(tones.disabled));
  palette.setColor(QPalette::Highlight, QColor(tones.highlight));
  palette.setColor(QPalette::HighlightedText, QColor(tones.highlighted_text));
  palette.setColor(QPalette::Link, QColor(tones.link));
  palette.setColor(QPalette::LinkVisited, QColor(tones.link_visited));
  return palette;
}

// A colour between the window and its text, nearer to the window.
QColor Mixed(const QPalette& palette) {
  constexpr float kStrength = 0.3F;
  const QColor from = palette.color(QPalette::Window);
  const QColor to = palette.color(QPalette::WindowText);
  const auto mixed = [](float a, float b) { return a + kStrength * (b - a); };
  return QColor::fromRgbF(mixed(from.redF(), to.redF()), mixed(from.greenF(), to.greenF()),
                          mixed(from.blueF(), to.blueF()));
}

// Qt's Fusion style with three faults mended: it draws the icon of a selected menu entry in the colour of the others,
// which is dark on dark in a light palette; it puts coloured icons on some buttons of dialogs, beside others without;
// and in a dark palette its empty boxes and rings are hardly to be seen.
class MendedFusion : public QProxyStyle {
 public:
  MendedFusion() : QProxyStyle(u"Fusion"_s) {}

  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override {
    const auto* entry = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    const bool lit = element == CE_MenuItem && entry != nullptr && !entry->icon.isNull() &&
                     option->state.testFlag(State_Selected) && option->state.testFlag(State_Enabled);
    if (!lit) return QProxyStyle::drawControl(element, option, painter, widget);
    const int side = pixelMetric(PM_SmallIconSize, option, widget);
    const QPixmap picture =
        entry->icon.pixmap(QSize(side, side), painter->device()->devicePixelRatioF(), QIcon::Selected);
    QStyleOptionMenuItem changed(*entry);
    changed.icon = QIcon();
    changed.icon.addPixmap(picture, QIcon::Active);
    QProxyStyle::drawControl(element, &changed, painter, widget);
  }

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
    const bool mark = element == PE_IndicatorCheckBox || element == PE_IndicatorRadioButton;
    if (!mark || button == nullptr || !IsDark(option->palette)) {
      return QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
    QStyleOptionButton changed(*button);
    changed.palette.setColor(QPalette::Base, Mixed(option->palette));
    QProxyStyle::drawPrimitive(element, &changed, painter, widget);
  }

  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override {
    return hint == SH_DialogButtonBox_ButtonsHaveIcons ? 0 : QProxyStyle::styleHint(hint, option, widget, data);
  }
};

}  // namespace

QPalette ThemePalette(Theme theme) {
  if (theme == Theme::Desktop) return QApplication::palette();
  return PaletteOf(theme == Theme::Dark ? kDark : kLight);
}

void ApplyTheme(Theme theme) {
  // As the desktop gave them, before anything was switched.
  static const QString desktop_style = QApplication::style()->name();
  const bool desktop = theme == Theme::Desktop;
  const bool fusion = desktop_style == u"fusion";
  // A desktop with a style of its own keeps it.
  if (!desktop || fusion) {
    QApplication::setStyle(new MendedFusion);
  } else if (QApplication::style()->name() != desktop_style) {
    QApplication::setStyle(desktop_style);
  }
  QApplication::setPalette(desktop ? QPalette() : PaletteOf(theme == Theme::Dark ? kDark : kLight));
}

void ApplyTextSize(int percent) {
  static const QFont desktop_font = QApplication::font();
  QFont font = desktop_font;
  font.setPointSizeF(desktop_font.pointSizeF() * percent / 100);
  if (font != QApplication::font()) QApplication::setFont(font);
}

bool IsDark(const QPalette& palette) {
  return palette.color(QPalette::Window).lightness() < 128;
}

QColor AccentColour(Accent accent, const QPalette& palette) {
  const bool dark = IsDark(palette);
  switch (accent) {
    case Accent::Known:
      return QColor(dark ? 0xFF6FCB8Bu : 0xFF19703Au);
    case Accent::NotKnown:
      return QColor(dark ? 0xFFF59A90u : 0xFFAF2A20u);
    case Accent::Notice:
      return QColor(dark ? 0xFF86B4F5u : 0xFF1F57B0u);
    case Accent::Warning:
      break;
  }
  return QColor(dark ? 0xFFF59A90u : 0xFFAF2A20u);
}

QColor PlotColour(PlotRole role, const QPalette& palette) {
  const bool dark = IsDark(palette);
  switch (role) {
    case PlotRole::Known:
      return QColor(dark ? 0xFF56B4E9u : 0xFF0072B2u);
    case PlotRole::NotKnown:
      return QColor(dark ? 0xFFE69F00u : 0xFFD55E00u);
    case PlotRole::New:
      break;
  }
  return QColor(dark ? 0xFF9A9A9Au : 0xFF767676u);
}

void SetAccent(QWidget& text, std::optional<Accent> accent) {
  QPalette colours = text.window()->palette();
  if (accent) colours.setColor(QPalette::WindowText, AccentColour(*accent, colours));
  text.setPalette(colours);
}

void MakeQuiet(QWidget& text) {
  constexpr float kQuiet = 0.7F;  // of the text colour's strength; keeps a contrast above 4.5
  constexpr qreal kSmall = 0.9;
  QPalette palette = text.window()->palette();
  QColor colour = palette.color(QPalette::WindowText);
  colour.setAlphaF(kQuiet);
  palette.setColor(QPalette::WindowText, colour);
  text.setPalette(palette);
  QFont font = text.window()->font();
  font.setPointSizeF(font.pointSizeF() * kSmall);
  text.setFont(font);
}

}  // namespace tessaro
