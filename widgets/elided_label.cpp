#include "widgets/elided_label.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

namespace tessaro {

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
}

QString ElidedLabel::ShownText() const {
  return fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
}

QSize ElidedLabel::minimumSizeHint() const {
  return {0, QLabel::minimumSizeHint().height()};
}

void ElidedLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setPen(palette().color(foregroundRole()));
  painter.drawText(contentsRect(), static_cast<int>(alignment()) | Qt::TextSingleLine, ShownText());
}

bool ElidedLabel::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip || ShownText() == text()) return QLabel::event(event);
  QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), text().toHtmlEscaped(), this);
  return true;
}

}  // namespace tessaro
