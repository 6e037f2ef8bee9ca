#include "widgets/plot.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QToolTip>
#include <cmath>
#include <utility>

#include "widgets/plot_layout.h"

namespace tessaro {
namespace {

// A plain widget would be passed over as something that only holds others.
QAccessibleInterface* ChartInterface(const QString& class_name, QObject* object) {
  if (class_name != QLatin1String(Plot::staticMetaObject.className())) return nullptr;
  return new QAccessibleWidget(qobject_cast<QWidget*>(object), QAccessible::Chart);
}

}  // namespace

Plot::Plot(QWidget* parent) : QWidget(parent) {
  QAccessible::installFactory(ChartInterface);  // once, however often it is called
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void Plot::Show(PlotContent content) {
  const int before = Count();
  content_ = std::move(content);
  setAccessibleName(content_.name);
  if (Count() != before || selected_ >= Count()) selected_ = -1;
  setAccessibleDescription(TextOf(selected_));
  updateGeometry();
  update();
  Q_EMIT SelectionChanged(selected_);
}

int Plot::Count() const {
  return static_cast<int>(PlotItems(content_).places.size());
}

QString Plot::TextOf(int item) const {
  const PlotItems items(content_);
  if (item < 0 || item >= static_cast<int>(items.places.size())) return {};
  const size_t place = items.places[static_cast<size_t>(item)];
  switch (items.kind) {
    case PlotItems::Kind::Bars:
      return content_.bars[place].text;
    case PlotItems::Kind::Points:
      return content_.points[place].text;
    case PlotItems::Kind::Lines:
      break;
  }
  return content_.lines[place].text;
}

void Plot::Select(int item) {
  if (item < 0 || item >= Count() || item == selected_) return;
  selected_ = item;
  setAccessibleDescription(TextOf(item));
  QAccessibleEvent news(this, QAccessible::DescriptionChanged);
  QAccessible::updateAccessibility(&news);
  update();
  Q_EMIT SelectionChanged(item);
}

QRect Plot::FrameOf(int item) const {
  return PlotLayout(content_, rect(), font()).Frame(item).toAlignedRect();
}

QSize Plot::minimumSizeHint() const {
  constexpr QSize kLeast(240, 160);
  if (!content_.lying) return kLeast;
  return kLeast.expandedTo({0, static_cast<int>(std::ceil(ListHeight(content_.bars.size(), QFontMetricsF(font()))))});
}

int Plot::ItemAt(const QPointF& point) const {
  return PlotLayout(content_, rect(), font()).ItemAt(point);
}

void Plot::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillRect(rect(), palette().color(QPalette::Base));
  const PlotLayout layout(content_, rect(), font());
  if (layout.empty()) {
    painter.setPen(palette().color(QPalette::Text));
    const int margin = fontMetrics().height();
    painter.drawText(rect().adjusted(margin, 0, -margin, 0), Qt::AlignCenter | Qt::TextWordWrap, content_.empty);
    return;
  }
  PaintPlot(painter, content_, layout, palette());
  if (selected_ < 0) return;
  const QColor frame = hasFocus() ? palette().color(QPalette::Text) : palette().color(QPalette::Mid);
  painter.setPen(QPen(frame, LineWidth(QFontMetricsF(font()))));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(layout.Frame(selected_), 2, 2);
}

void Plot::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Up:
      if (!content_.lying) return QWidget::keyPressEvent(event);
      [[fallthrough]];
    case Qt::Key_Left:
      return Select(selected_ <= 0 ? 0 : selected_ - 1);
    case Qt::Key_Down:
      if (!content_.lying) return QWidget::keyPressEvent(event);
      [[fallthrough]];
    case Qt::Key_Right:
      return Select(selected_ + 1);
    case Qt::Key_Home:
      return Select(0);
    case Qt::Key_End:
      return Select(Count() - 1);
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (selected_ >= 0) Q_EMIT Chosen(selected_);
      return;
    default:
      QWidget::keyPressEvent(event);
  }
}

void Plot::mousePressEvent(QMouseEvent* event) {
  const int item = ItemAt(event->position());
  if (event->button() != Qt::LeftButton || item < 0) return QWidget::mousePressEvent(event);
  Select(item);
  Q_EMIT Chosen(item);
}

// Who comes by the keyboard finds something selected.
void Plot::focusInEvent(QFocusEvent* event) {
  QWidget::focusInEvent(event);
  if (selected_ < 0 && event->reason() != Qt::MouseFocusReason) Select(0);
  update();
}

bool Plot::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  const auto* help = static_cast<QHelpEvent*>(event);
  QToolTip::showText(help->globalPos(), TextOf(ItemAt(help->pos())), this);
  return true;
}

}  // namespace tessaro
