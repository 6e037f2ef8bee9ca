#include "learn/answer_button.h"

#include <QEvent>
#include <QPainter>
#include <algorithm>

#include "widgets/icons.h"

namespace tessaro {
namespace {

constexpr int kPadding = 16;
constexpr int kGap = 8;
constexpr int kLeastIcon = 20;
constexpr int kRadius = 6;
constexpr int kKeyPadding = 6;
constexpr int kLeastHeight = 48;
constexpr qreal kKeyScale = 0.85;

QColor Mixed(const QColor& from, const QColor& to, qreal part) {
  return QColor::fromRgbF(float(from.redF() + (to.redF() - from.redF()) * part),
                          float(from.greenF() + (to.greenF() - from.greenF()) * part),
                          float(from.blueF() + (to.blueF() - from.blueF()) * part));
}

}  // namespace

AnswerButton::AnswerButton(QWidget* parent) : QPushButton(parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setAttribute(Qt::WA_Hover);
}

void AnswerButton::SetMeaning(std::optional<Accent> accent, std::string_view icon_name) {
  accent_ = accent;
  icon_name_ = icon_name;
  MakeIcon();
}

void AnswerButton::SetKeyText(const QString& key) {
  key_text_ = key;
  updateGeometry();
  update();
}

void AnswerButton::SetNote(const QString& note) {
  note_ = note;
  update();
}

void AnswerButton::KeepRoomFor(const QString& note, const QString& key) {
  widest_note_ = note;
  widest_key_ = key;
  updateGeometry();
}

void AnswerButton::KeepRoomForNote(bool on) {
  if (room_for_note_ == on) return;
  room_for_note_ = on;
  updateGeometry();
}

void AnswerButton::SetProminent(bool prominent) {
  if (prominent_ == prominent) return;
  prominent_ = prominent;
  update();
}

int AnswerButton::IconSide() const {
  return std::max(kLeastIcon, QFontMetrics(font()).height());
}

QColor AnswerButton::OwnColour() const {
  return accent_ ? AccentColour(*accent_, palette()) : palette().color(QPalette::ButtonText);
}

void AnswerButton::MakeIcon() {
  setIcon(Icon(icon_name_, OwnColour()));
}

void AnswerButton::changeEvent(QEvent* event) {
  QPushButton::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && !icon_name_.empty()) MakeIcon();
}

QFont AnswerButton::KeyFont() const {
  QFont small = font();
  small.setPointSizeF(font().pointSizeF() * kKeyScale);
  return small;
}

// With the gap before it.
int AnswerButton::KeyWidth(const QString& key) const {
  return key.isEmpty() ? 0 : kGap + QFontMetrics(KeyFont()).horizontalAdvance(key) + 2 * kKeyPadding;
}

// With the gap behind it.
int AnswerButton::NoteWidth(const QString& note) const {
  return note.isEmpty() ? 0 : QFontMetrics(KeyFont()).horizontalAdvance(note) + kGap;
}

QSize AnswerButton::WithoutKey() const {
  const QFontMetrics metrics(font());
  const int width = kPadding + IconSide() + kGap + metrics.horizontalAdvance(text()) + kPadding;
  return {width, std::max(kLeastHeight, metrics.height() + 2 * kPadding)};
}

QSize AnswerButton::sizeHint() const {
  const int key = std::max(KeyWidth(key_text_), KeyWidth(widest_key_));
  return WithoutKey() + QSize(key + (room_for_note_ ? NoteWidth(widest_note_) : 0), 0);
}

// The key is left out before the name is cut.
QSize AnswerButton::minimumSizeHint() const {
  return WithoutKey() - QSize(kPadding, 0);
}

void AnswerButton::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  PaintFrame(painter);
  PaintContent(painter);
}

void AnswerButton::PaintFrame(QPainter& painter) const {
  const QColor text = palette().color(QPalette::ButtonText);
  QColor face = palette().color(QPalette::Button);
  if (IsDark(palette())) face = Mixed(face, text, 0.06);
  if (isEnabled() && isDown()) face = Mixed(face, text, 0.14);
  if (isEnabled() && underMouse() && !isDown()) face = Mixed(face, text, 0.06);
  const bool strong = prominent_ && isEnabled();
  const QColor strong_colour = accent_ ? OwnColour() : palette().color(QPalette::Highlight);
  const QColor border = strong ? strong_colour : Mixed(face, isEnabled() ? OwnColour() : text, 0.35);
  const qreal width = strong ? 2.0 : 1.0;
  // The focus ring has its room around the frame, so nothing shifts when the focus comes.
  constexpr qreal kRingRoom = 3;
  const qreal inset = kRingRoom + width / 2;
  painter.setPen(QPen(border, width));
  painter.setBrush(face);
  painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), kRadius, kRadius);
  if (!hasFocus()) return;
  painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), kRadius + 2, kRadius + 2);
}

// The note is the first to go where room is short, then the key.
void AnswerButton::PaintContent(QPainter& painter) const {
  const int name = WithoutKey().width();
  const bool with_key = !key_text_.isEmpty() && width() >= name + KeyWidth(key_text_);
  const bool with_note = width() >= name + KeyWidth(key_text_) + NoteWidth(note_);
  const int needed = name + (with_key ? KeyWidth(key_text_) : 0) + (with_note ? NoteWidth(note_) : 0);
  int x = (width() - needed) / 2 + kPadding;
  const QRect icon_place(x, (height() - IconSide()) / 2, IconSide(), IconSide());
  icon().paint(&painter, icon_place, Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
  x += IconSide() + kGap;
  painter.setFont(font());
  painter.setPen(palette().color(QPalette::ButtonText));
  const int text_width = QFontMetrics(font()).horizontalAdvance(text());
  painter.drawText(QRect(x, 0, text_width, height()), Qt::AlignVCenter | Qt::AlignLeft | Qt::TextDontClip, text());
  x += text_width + kGap;
  painter.setFont(KeyFont());
  if (with_note) {
    painter.setPen(isEnabled() ? QuietColour() : palette().color(QPalette::Disabled, QPalette::ButtonText));
    const QRect place(x, 0, NoteWidth(note_), height());
    painter.drawText(place, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextDontClip, note_);
    x += place.width();
  }
  if (with_key) PaintKey(painter, x);
}

void AnswerButton::PaintKey(QPainter& painter, int x) const {
  const int key_height = QFontMetrics(KeyFont()).height() + 4;
  // On the middle of the screen's points, so that its lines are sharp.
  const QPoint key_corner(x, (height() - key_height) / 2);
  const QRectF key_place(QPointF(key_corner) + QPointF(0.5, 0.5), QSizeF(KeyWidth(key_text_) - kGap, key_height));
  painter.setPen(QPen(Mixed(palette().color(QPalette::Button), QuietColour(), 0.5), 1));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(key_place, 3, 3);
  painter.setPen(isEnabled() ? QuietColour() : palette().color(QPalette::Disabled, QPalette::ButtonText));
  painter.drawText(key_place, Qt::AlignCenter, key_text_);
}

QColor AnswerButton::QuietColour() const {
  return Mixed(palette().color(QPalette::Button), palette().color(QPalette::ButtonText), 0.7);
}

}  // namespace tessaro
