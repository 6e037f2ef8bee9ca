#pragma once

#include <QWidget>
#include <optional>

#include "learn/retention.h"

namespace tessaro {

// Draws the intervals between answers from the oldest to the newest, the two lines through them and the points that
// they foretell. A streak's points stand under the newest of all intervals.
class IntervalPlot : public QWidget {
  Q_OBJECT

 public:
  explicit IntervalPlot(QWidget* parent = nullptr);
  // Without a forecast the plot is empty.
  void Show(const std::optional<RetentionForecast>& forecast);
  QSize sizeHint() const override { return {320, 240}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  // From the interval's place (1 = the oldest shown) and its length to a point of the widget.
  struct Scale {
    QRectF area;
    double places = 1;
    double longest = 1;
    QPointF Point(double place, double seconds) const;
  };
  Scale MakeScale() const;
  void PaintAxes(QPainter& painter, const Scale& scale) const;
  void PaintLegend(QPainter& painter, const Scale& scale) const;
  void PaintSeries(QPainter& painter, const Scale& scale, const IntervalSeries& series, const Trend& trend,
                   const QColor& colour, Qt::PenStyle style) const;

  std::optional<RetentionForecast> forecast_;
};

}  // namespace tessaro
