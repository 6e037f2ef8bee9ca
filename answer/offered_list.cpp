#include "answer/offered_list.h"

#include <QPainter>
#include <QStyleOptionButton>
#include <QVBoxLayout>
#include <algorithm>

#include "widgets/icons.h"
#include "widgets/text.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

constexpr int kPadding = 8;
constexpr int kLeastHeight = 26;

QChar LetterOf(size_t place) {
  return QChar(u'A' + static_cast<char16_t>(place));
}

}  // namespace

OfferedButton::OfferedButton(QChar letter, QWidget* parent) : QPushButton(parent), letter_(letter) {
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  setAttribute(Qt::WA_Hover);
}

void OfferedButton::SetAnswer(const QString& answer) {
  answer_ = answer;
  setAccessibleName(u"%1: %2"_s.arg(QString(letter_), answer));
  const QString digit = QString::number(letter_.unicode() - u'A' + 1);
  // The answer must not be taken for markup.
  setToolTip(u"<p>%1</p>Taste %2 oder %3"_s.arg(answer.toHtmlEscaped(), QString(letter_), digit));
  SetVerdict(std::nullopt);
}

void OfferedButton::SetVerdict(std::optional<Accent> verdict) {
  verdict_ = verdict;
  update();
}

QSize OfferedButton::sizeHint() const {
  return {kPadding, std::max(kLeastHeight, fontMetrics().height() + kPadding)};
}

QSize OfferedButton::minimumSizeHint() const {
  return sizeHint();
}

void OfferedButton::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  QStyleOptionButton option;
  initStyleOption(&option);
  style()->drawControl(QStyle::CE_PushButtonBevel, &option, &painter, this);
  if (option.state & QStyle::State_HasFocus) {
    QStyleOptionFocusRect focus;
    focus.QStyleOption::operator=(option);
    focus.rect = style()->subElementRect(QStyle::SE_PushButtonFocusRect, &option, this);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
  }
  const QPalette::ColorGroup group = isEnabled() ? QPalette::Active : QPalette::Disabled;
  painter.setPen(verdict_ ? AccentColour(*verdict_, palette()) : palette().color(group, QPalette::ButtonText));
  QRect place = rect().adjusted(kPadding, 0, -kPadding, 0);
  QFont bold = font();
  bold.setBold(true);
  painter.setFont(bold);
  painter.drawText(place, Qt::AlignVCenter | Qt::AlignLeft, letter_);
  place.setLeft(place.left() + QFontMetrics(bold).horizontalAdvance(u'W') + kPadding);
  painter.setFont(font());
  const int side = fontMetrics().height();
  if (verdict_) {
    const QRect icon(place.right() - side, (height() - side) / 2, side, side);
    Icon(*verdict_ == Accent::Known ? "known" : "not-known", painter.pen().color()).paint(&painter, icon);
    place.setRight(icon.left() - kPadding);
  }
  painter.drawText(place, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                   fontMetrics().elidedText(answer_, Qt::ElideRight, place.width()));
}

OfferedList::OfferedList(QWidget* parent) : QWidget(parent) {
  auto* lines = new QVBoxLayout(this);
  lines->setContentsMargins(0, 0, 0, 0);
  lines->setSpacing(2);
  for (size_t i = 0; i < buttons_.size(); ++i) {
    buttons_[i] = new OfferedButton(LetterOf(i), this);
    buttons_[i]->setObjectName(u"ButtonAntwort%1"_s.arg(LetterOf(i)));
    lines->addWidget(buttons_[i]);
    connect(buttons_[i], &QAbstractButton::clicked, this, [this, i] { Q_EMIT Chosen(i); });
  }
}

void OfferedList::Offer(const OfferedAnswers& offered, CodePage page) {
  count_ = offered.texts.size();
  for (size_t i = 0; i < buttons_.size(); ++i) {
    buttons_[i]->setVisible(i < count_);
    if (i < count_) buttons_[i]->SetAnswer(FromBytes(offered.texts[i], page));
  }
}

void OfferedList::Mark(size_t chosen, size_t right) {
  buttons_[chosen]->SetVerdict(Accent::NotKnown);
  buttons_[right]->SetVerdict(Accent::Known);
}

QPushButton* OfferedList::ButtonOf(const QString& key) const {
  for (size_t i = 0; i < count_; ++i) {
    if (key == LetterOf(i) || key == QString::number(i + 1)) return buttons_[i];
  }
  return nullptr;
}

void OfferedList::MoveFocus(bool down) {
  const auto focused =
      std::find_if(buttons_.begin(), buttons_.end(), [](const auto* button) { return button->hasFocus(); });
  const auto at = static_cast<size_t>(focused - buttons_.begin());
  const size_t next = focused == buttons_.end() ? (down ? 0 : count_ - 1) : (at + (down ? 1 : count_ - 1)) % count_;
  buttons_[next]->setFocus(Qt::TabFocusReason);
}

QString OfferedList::LastLetter() const {
  return LetterOf(count_ - 1);
}

}  // namespace tessaro
