#pragma once

#include <QFontMetricsF>
#include <QRectF>
#include <algorithm>

#include "widgets/plot.h"

class QPainter;

namespace tessaro {

// The things of a plot that can be selected: all of one kind, as places in its content.
struct PlotItems {
  enum class Kind { Bars, Points, Lines };
  explicit PlotItems(const PlotContent& content);

  Kind kind = Kind::Bars;
  std::vector<size_t> places;
};

// Of lines and frames: they grow with the letters.
double LineWidth(const QFontMetricsF& metrics);
// What a list of so many lying bars takes.
double ListHeight(size_t bars, const QFontMetricsF& metrics);

// Where the parts of a plot stand. Painting and clicks ask the same places.
class PlotLayout {
 public:
  // Both must outlive the layout; `room` is in the coordinates of the painter.
  PlotLayout(const PlotContent& content, const QRectF& room, const QFont& font);

  // Whether there is nothing to draw.
  bool empty() const;
  const QRectF& room() const { return room_; }
  const QRectF& area() const { return area_; }
  double y_step() const { return y_step_; }
  double y_bottom() const { return y_bottom_; }
  double y_top() const { return y_top_; }
  double right_top() const { return right_top_; }
  // Where a value stands, and how high it is from the axis.
  QPointF Point(double x, double y) const;
  double Height(double value) const {
    return area_.height() * (std::clamp(value, y_bottom_, y_top_) - y_bottom_) / (y_top_ - y_bottom_);
  }
  // Whether a bar is higher than the plot.
  bool IsCut(size_t bar) const;
  // The place of a bar from the axis to the top, or all of its line in a list, and that of its coloured part.
  QRectF Column(size_t bar) const;
  QRectF Bar(size_t bar) const;
  double Radius(const PlotPoint& point) const;
  // The places of the label and the note of a lying bar.
  QRectF LyingLabel(size_t bar) const;
  QRectF LyingNote(size_t bar) const;
  // Every n-th label of the bars, so that they stand apart.
  size_t LabelStride() const;
  QString YText(double value) const;
  // The selectable thing at a point; -1 for none.
  int ItemAt(const QPointF& point) const;
  // What frames the selected thing.
  QRectF Frame(int item) const;

 private:
  void ScaleUp();
  void MakeList(const QRectF& room);
  double DistanceTo(const PlotItems& items, size_t item, const QPointF& point) const;
  double WidestRightLabel() const;

  const PlotContent& content_;
  QFontMetricsF metrics_;
  QRectF area_;
  QRectF room_;
  double y_step_ = 1;
  double y_bottom_ = 0;
  double y_top_ = 1;
  double right_top_ = 0;
};

// Paints all but the selection.
void PaintPlot(QPainter& painter, const PlotContent& content, const PlotLayout& layout, const QPalette& palette);

}  // namespace tessaro
