#include <QLocale>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <vector>

#include "widgets/plot_layout.h"

// Draws a plot where its layout says.
namespace tessaro {
namespace {

constexpr double kTickGap = 4;
constexpr double kLegendBox = 10;

class PlotPainter {
 public:
  PlotPainter(QPainter& painter, const PlotContent& content, const PlotLayout& layout, const QPalette& palette)
      : painter_(painter), content_(content), layout_(layout), palette_(palette), metrics_(painter.font()) {
    faint_ = palette.color(QPalette::Text);
    faint_.setAlphaF(0.18F);
    quiet_ = palette.color(QPalette::Text);
    quiet_.setAlphaF(0.78F);
  }

  void Paint() {
    if (content_.lying) return PaintList();
    PaintYAxis();
    PaintXTicks();
    for (size_t i = 0; i < content_.bars.size(); ++i) PaintBar(i);
    PaintBarLabels();
    PaintMarks();
    for (const PlotLine& line : content_.lines) PaintLine(line);
    PaintLineLabels();
    for (const PlotPoint& point : content_.points) PaintPoint(point);
    PaintLegend();
  }

 private:
  // What must not be told by colour alone has a pattern too.
  void Fill(const QRectF& rect, PlotRole role) {
    const QColor colour = PlotColour(role, palette_);
    painter_.setPen(Qt::NoPen);
    if (role == PlotRole::Known) {
      painter_.fillRect(rect, colour);
      return;
    }
    QColor ground = colour;
    ground.setAlphaF(0.22F);
    painter_.fillRect(rect, ground);
    painter_.fillRect(rect, QBrush(colour, role == PlotRole::NotKnown ? Qt::BDiagPattern : Qt::Dense6Pattern));
    painter_.setPen(QPen(colour, 1));
    painter_.setBrush(Qt::NoBrush);
    painter_.drawRect(rect);
  }

  QPen LinePen(PlotRole role, Qt::PenStyle style) const {
    return QPen(PlotColour(role, palette_), LineWidth(metrics_), style, Qt::FlatCap, Qt::RoundJoin);
  }

  void PaintList() {
    for (size_t i = 0; i < content_.bars.size(); ++i) {
      const PlotBar& bar = content_.bars[i];
      painter_.setPen(palette_.color(QPalette::Text));
      const QRectF label = layout_.LyingLabel(i);
      painter_.drawText(label, Qt::AlignLeft | Qt::AlignVCenter,
                        metrics_.elidedText(bar.label, Qt::ElideRight, label.width()));
      painter_.drawText(layout_.LyingNote(i), Qt::AlignLeft | Qt::AlignVCenter, bar.note);
      QRectF place = layout_.Bar(i);
      place.setWidth(std::max(place.width(), 1.0));
      Fill(place, bar.parts.empty() ? PlotRole::Known : bar.parts.front().role);
    }
  }

  void PaintYAxis() {
    const QRectF& area = layout_.area();
    const double end = layout_.y_top() + layout_.y_step() / 1000;
    for (double value = layout_.y_bottom(); value < end; value += layout_.y_step()) {
      const double y = area.bottom() - layout_.Height(value);
      painter_.setPen(QPen(value == layout_.y_bottom() ? quiet_ : faint_, 1));
      painter_.drawLine(QPointF(area.left(), y), QPointF(area.right(), y));
      painter_.setPen(quiet_);
      const QRectF label(0, y - metrics_.height() / 2, area.left() - kTickGap, metrics_.height());
      painter_.drawText(label, Qt::AlignRight | Qt::AlignVCenter, layout_.YText(value));
    }
    const double line = area.top() - metrics_.height() * 1.6;
    painter_.drawText(QRectF(kTickGap, line - kTickGap, area.width(), metrics_.height()), Qt::AlignLeft,
                      content_.y_title);
    if (layout_.right_top() > 0) PaintRightAxis(line);
  }

  void PaintRightAxis(double title_line) {
    const QRectF& area = layout_.area();
    painter_.setPen(quiet_);
    const QRectF title(area.left(), title_line - kTickGap, area.width() + 3 * kTickGap, metrics_.height());
    painter_.drawText(title, Qt::AlignRight, content_.right_title);
    const double step = RoundStep(layout_.right_top(), 5, true);
    for (double value = 0; value <= layout_.right_top() * 1.001; value += step) {
      const double y = area.bottom() - area.height() * value / layout_.right_top();
      const QRectF label(area.right() + kTickGap, y - metrics_.height() / 2, 1000, metrics_.height());
      painter_.drawText(label, Qt::AlignLeft | Qt::AlignVCenter, layout_.YText(value));
    }
  }

  void PaintXTicks() {
    const QRectF& area = layout_.area();
    painter_.setPen(quiet_);
    double free_from = 0;
    for (const PlotTick& tick : content_.x_ticks) {
      const double x = layout_.Point(tick.at, 0).x();
      painter_.drawLine(QPointF(x, area.bottom()), QPointF(x, area.bottom() + kTickGap));
      const double width = metrics_.horizontalAdvance(tick.label);
      const double left = std::clamp(x - width / 2, 0.0, std::max(layout_.room().right() - kTickGap - width, 0.0));
      if (left < free_from) continue;
      free_from = left + width + 2 * kTickGap;
      painter_.drawText(QPointF(left, area.bottom() + kTickGap + metrics_.ascent()), tick.label);
    }
  }

  void PaintBar(size_t bar) {
    const QRectF whole = layout_.Bar(bar);
    QRectF part = whole;
    part.setTop(part.bottom());
    for (const PlotPart& piece : content_.bars[bar].parts) {
      const double height = std::min(layout_.Height(piece.value), part.top() - whole.top());
      part = QRectF(part.left(), part.top() - height, part.width(), height);
      // One card beside thousands is still to be seen.
      if (piece.value > 0 && part.height() < 1) part.setTop(part.bottom() - 1);
      if (piece.value > 0) Fill(part, piece.role);
    }
    if (layout_.IsCut(bar)) PaintCut(whole);
  }

  // A slanting gap says that a bar goes on.
  void PaintCut(const QRectF& bar) {
    const double slant = metrics_.height() / 3;
    const QPointF left(bar.left() - 2, bar.top() + metrics_.height() + slant);
    const QPointF right(bar.right() + 2, left.y() - slant);
    painter_.setPen(QPen(palette_.color(QPalette::Base), 2 * LineWidth(metrics_), Qt::SolidLine, Qt::FlatCap));
    painter_.drawLine(left, right);
  }

  void PaintBarLabels() {
    if (content_.bars.empty()) return;
    painter_.setPen(quiet_);
    const size_t stride = layout_.LabelStride();
    for (size_t i = 0; i < content_.bars.size(); i += stride) {
      const QRectF column = layout_.Column(i);
      const double width = column.width() * static_cast<double>(stride);
      QRectF label(column.center().x() - width / 2, column.bottom() + kTickGap, width, metrics_.height());
      if (label.left() < 0) label.moveLeft(0);
      painter_.drawText(label, Qt::AlignHCenter, content_.bars[i].label);
    }
  }

  void PaintMarks() {
    if (layout_.right_top() <= 0) return;
    const QRectF& area = layout_.area();
    const double half = std::clamp(layout_.Column(0).width() / 4, 2.0, 5.0);
    painter_.setPen(QPen(palette_.color(QPalette::Base), 1));
    painter_.setBrush(palette_.color(QPalette::Text));
    for (size_t i = 0; i < content_.bars.size(); ++i) {
      if (!content_.bars[i].mark) continue;
      const QPointF at(layout_.Column(i).center().x(),
                       area.bottom() - area.height() * *content_.bars[i].mark / layout_.right_top());
      const QPointF diamond[] = {at + QPointF(-half, 0), at + QPointF(0, -half), at + QPointF(half, 0),
                                 at + QPointF(0, half)};
      painter_.drawPolygon(diamond, std::size(diamond));
    }
  }

  void PaintLine(const PlotLine& line) {
    if (line.points.empty()) return;
    QPainterPath path(layout_.Point(line.points.front().x(), line.points.front().y()));
    for (const QPointF& point : line.points) path.lineTo(layout_.Point(point.x(), point.y()));
    const bool leads_only = line.text.isEmpty() && line.label.isEmpty() && line.role == PlotRole::New;
    painter_.setPen(leads_only ? QPen(faint_, 1) : LinePen(line.role, line.style));
    painter_.setBrush(Qt::NoBrush);
    painter_.drawPath(path);
  }

  // Beside the ends of the lines; those that would stand on each other give way downward, from the top on.
  void PaintLineLabels() {
    std::vector<const PlotLine*> lines;
    for (const PlotLine& line : content_.lines) {
      if (!line.label.isEmpty() && !line.points.empty()) lines.push_back(&line);
    }
    const auto end_of = [&](const PlotLine* line) {
      return layout_.Point(line->points.back().x(), line->points.back().y());
    };
    std::stable_sort(lines.begin(), lines.end(),
                     [&](const PlotLine* a, const PlotLine* b) { return end_of(a).y() < end_of(b).y(); });
    double free_from = -1e9;
    for (const PlotLine* line : lines) {
      const QPointF end = end_of(line);
      const double base = std::max(end.y() + metrics_.ascent() / 2 - 1, free_from);
      free_from = base + metrics_.height();
      painter_.setPen(palette_.color(QPalette::Text));
      painter_.drawText(QPointF(end.x() + 2 * kTickGap, base), line->label);
    }
  }

  void PaintPoint(const PlotPoint& point) {
    const QColor colour = PlotColour(point.role, palette_);
    painter_.setPen(QPen(colour, LineWidth(metrics_) * (point.hollow ? 1 : 0.75)));
    if (point.low != point.high) {
      const QPointF low = layout_.Point(point.x, point.low);
      const QPointF high = layout_.Point(point.x, point.high);
      painter_.drawLine(low, high);
      for (const QPointF& end : {low, high}) painter_.drawLine(end - QPointF(4, 0), end + QPointF(4, 0));
    }
    painter_.setBrush(point.hollow ? QBrush(Qt::NoBrush) : QBrush(colour));
    const double radius = layout_.Radius(point);
    painter_.drawEllipse(layout_.Point(point.x, point.y), radius, radius);
  }

  void PaintLegend() {
    double right = layout_.area().right();
    const double base = kTickGap + metrics_.ascent();
    for (auto entry = content_.legend.rbegin(); entry != content_.legend.rend(); ++entry) {
      right -= metrics_.horizontalAdvance(entry->text);
      painter_.setPen(palette_.color(QPalette::Text));
      painter_.drawText(QPointF(right, base), entry->text);
      right -= kLegendBox + kTickGap;
      Fill(QRectF(right, base - kLegendBox + 1, kLegendBox, kLegendBox), entry->role);
      right -= 4 * kTickGap;
    }
  }

  QPainter& painter_;
  const PlotContent& content_;
  const PlotLayout& layout_;
  const QPalette& palette_;
  QFontMetricsF metrics_;
  QColor faint_;
  QColor quiet_;
};

}  // namespace

void PaintPlot(QPainter& painter, const PlotContent& content, const PlotLayout& layout, const QPalette& palette) {
  PlotPainter(painter, content, layout, palette).Paint();
}

}  // namespace tessaro
