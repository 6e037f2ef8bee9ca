#include "answer/verdict_field.h"

#include <QFontMetrics>
#include <QLineEdit>
#include <QPalette>

#include "widgets/theme.h"

namespace tessaro {
namespace {

constexpr const char* kVerdict = "verdict";

struct Colours {
  QColor ground;
  QColor letters;
};

Colours ColoursOf(Verdict verdict, const QPalette& palette) {
  constexpr QRgb kInk = 0xFF1C1C1C;
  switch (verdict) {
    case Verdict::Plain:
      break;
    case Verdict::Bar:
      return {palette.color(QPalette::Button), QColor(IsDark(palette) ? 0xFF3DDC6Bu : 0xFF00A03Cu)};
    case Verdict::White:
      return {QColor(Qt::white), QColor(kInk)};
    case Verdict::Yellow:
      return {QColor(0xFFFFE75Cu), QColor(kInk)};
    case Verdict::Orange:
      return {QColor(0xFFFFB04Du), QColor(kInk)};
    case Verdict::Red:
      return {QColor(0xFFC62828u), QColor(Qt::white)};
  }
  return {palette.color(QPalette::Button), palette.color(QPalette::WindowText)};
}

// Rather small letters than a text that is cut, as long as they can be read.
void FitLetters(const QLineEdit& field, QFont& font) {
  constexpr int kEdges = 14;  // of a line edit, beside its text
  constexpr int kSteps = 10;  // to three quarters of their size
  constexpr double kStep = 0.97;
  const auto fits = [&] { return QFontMetrics(font).horizontalAdvance(field.text()) <= field.width() - kEdges; };
  for (int i = 0; i < kSteps && !fits(); ++i) font.setPointSizeF(font.pointSizeF() * kStep);
}

}  // namespace

void DressVerdict(QLineEdit& field) {
  if (!field.property(kVerdict).isValid()) return;
  const auto verdict = static_cast<Verdict>(field.property(kVerdict).toInt());
  QPalette palette = field.window()->palette();
  const Colours colours = ColoursOf(verdict, palette);
  palette.setColor(QPalette::Base, colours.ground);
  palette.setColor(QPalette::Text, colours.letters);
  field.setPalette(palette);
  QFont font = field.parentWidget()->font();
  // The bar has a block for every letter of a full line.
  if (verdict == Verdict::Bar) {
    font.setStretch(QFont::UltraCondensed);
    font.setPointSizeF(font.pointSizeF() * 0.6);
  }
  FitLetters(field, font);
  field.setFont(font);
}

void ShowVerdict(QLineEdit& field, const QString& text, Verdict verdict) {
  field.setProperty(kVerdict, static_cast<int>(verdict));
  field.setText(text);
  DressVerdict(field);
  field.setCursorPosition(0);
  // Where the field is too narrow for it.
  field.setToolTip(verdict == Verdict::Bar ? QString() : text);
}

void DressVerdictFields(QWidget& window) {
  for (auto* field : window.findChildren<QLineEdit*>()) {
    DressVerdict(*field);
  }
}

}  // namespace tessaro
