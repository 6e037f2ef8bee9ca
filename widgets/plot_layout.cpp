#include "widgets/plot_layout.h"

#include <QLineF>
#include <QLocale>
#include <algorithm>
#include <cmath>

namespace tessaro {
namespace {

constexpr double kMargin = 8;
constexpr double kLargestPoint = 9;  // radius
constexpr double kSmallestPoint = 3.5;
constexpr double kReach = 12;  // a click this far from a point or line still means it
constexpr double kBarWidth = 0.72;
constexpr int kMostSteps = 5;
constexpr double kListPitch = 1.5;      // of the height of letters
constexpr double kWidestPitch = 1.9;    // of a list that has room
constexpr double kMostForLabels = 0.4;  // of the width of a list

double HeightOf(const PlotBar& bar) {
  double height = 0;
  for (const PlotPart& part : bar.parts) height += part.value;
  return height;
}

double LowestOfLines(const PlotContent& content, double highest) {
  double lowest = highest;
  for (const PlotLine& line : content.lines) {
    for (const QPointF& point : line.points) lowest = std::min(lowest, point.y());
  }
  return lowest;
}

double Highest(const PlotContent& content) {
  double highest = 0;
  for (const PlotBar& bar : content.bars) highest = std::max(highest, HeightOf(bar));
  for (const PlotPoint& point : content.points) highest = std::max({highest, point.y, point.high});
  for (const PlotLine& line : content.lines) {
    for (const QPointF& point : line.points) highest = std::max(highest, point.y());
  }
  return highest;
}

double DistanceTo(const QLineF& line, const QPointF& point) {
  const QPointF along = line.p2() - line.p1();
  const double length = QPointF::dotProduct(along, along);
  const double share = length == 0 ? 0 : std::clamp(QPointF::dotProduct(point - line.p1(), along) / length, 0.0, 1.0);
  return QLineF(point, line.p1() + along * share).length();
}

}  // namespace

double RoundStep(double highest, int most, bool whole) {
  const double least = std::max(highest, 1e-9) / most;
  const double power = std::pow(10, std::floor(std::log10(least)));
  double step = power * 10;
  for (const double factor : {5.0, 2.0, 1.0}) {
    if (power * factor >= least * (1 - 1e-9)) step = power * factor;
  }
  return whole ? std::max(step, 1.0) : step;
}

double LineWidth(const QFontMetricsF& metrics) {
  return std::max(metrics.height() / 8, 1.5);
}

double ListHeight(size_t bars, const QFontMetricsF& metrics) {
  return static_cast<double>(bars) * metrics.height() * kListPitch + 2 * kMargin;
}

PlotItems::PlotItems(const PlotContent& content) {
  const auto collect = [&](const auto& things, Kind what) {
    kind = what;
    for (size_t i = 0; i < things.size(); ++i) {
      if (!things[i].text.isEmpty()) places.push_back(i);
    }
    return !places.empty();
  };
  if (collect(content.bars, Kind::Bars) || collect(content.points, Kind::Points)) return;
  collect(content.lines, Kind::Lines);
}

PlotLayout::PlotLayout(const PlotContent& content, const QRectF& room, const QFont& font)
    : content_(content), metrics_(font), room_(room) {
  ScaleUp();
  if (content.lying) {
    MakeList(room);
    return;
  }
  double widest = 0;
  for (double value = y_bottom_; value < y_top_ + y_step_ / 1000; value += y_step_) {
    widest = std::max(widest, metrics_.horizontalAdvance(YText(value)));
  }
  const double right = std::max(kMargin, WidestRightLabel());
  const double top = kMargin + metrics_.height() * (content.legend.empty() ? 1.5 : 2.7);
  area_ = room.adjusted(widest + 2 * kMargin, top, -right, -metrics_.height() - kMargin);
}

void PlotLayout::MakeList(const QRectF& room) {
  double label = 0;
  double note = 0;
  for (const PlotBar& bar : content_.bars) {
    label = std::max(label, metrics_.horizontalAdvance(bar.label));
    note = std::max(note, metrics_.horizontalAdvance(bar.note));
  }
  label = std::min(label, room.width() * kMostForLabels);
  const double height = static_cast<double>(content_.bars.size()) * metrics_.height() * kWidestPitch;
  area_ = room.adjusted(label + 2 * kMargin, kMargin, -note - 2 * kMargin, -kMargin);
  area_.setWidth(std::max(area_.width(), 1.0));
  area_.setHeight(std::clamp(height, 1.0, std::max(area_.height(), 1.0)));
}

QRectF PlotLayout::LyingLabel(size_t bar) const {
  const QRectF line = Column(bar);
  return {kMargin, line.top(), area_.left() - 2 * kMargin, line.height()};
}

QRectF PlotLayout::LyingNote(size_t bar) const {
  const QRectF line = Column(bar);
  return {area_.right() + kMargin, line.top(), line.right() - area_.right() - kMargin, line.height()};
}

void PlotLayout::ScaleUp() {
  const double highest = content_.y_max > 0 ? content_.y_max : Highest(content_);
  const double lowest = content_.from_zero ? 0 : LowestOfLines(content_, highest);
  const double least = lowest > highest / 2 ? lowest : 0;
  y_step_ = content_.y_step > 0 ? content_.y_step : RoundStep(highest - least, kMostSteps, content_.y_text == nullptr);
  y_bottom_ = std::floor(least / y_step_) * y_step_;
  y_top_ = content_.y_max > 0 ? content_.y_max
                              : std::max(std::ceil(highest / y_step_ - 1e-9) * y_step_, y_bottom_ + y_step_);
  for (const PlotBar& bar : content_.bars) right_top_ = std::max(right_top_, bar.mark.value_or(0));
  if (right_top_ == 0) return;
  const double step = RoundStep(right_top_, kMostSteps, true);
  right_top_ = std::ceil(right_top_ / step - 1e-9) * step;
}

double PlotLayout::WidestRightLabel() const {
  double widest = 0;
  if (right_top_ > 0) widest = std::max(metrics_.horizontalAdvance(YText(right_top_)) + 2 * kMargin, 4 * kMargin);
  for (const PlotLine& line : content_.lines) {
    widest = std::max(widest, metrics_.horizontalAdvance(line.label) + 2 * kMargin);
  }
  return widest;
}

bool PlotLayout::empty() const {
  return content_.bars.empty() && content_.points.empty() && content_.lines.empty();
}

QPointF PlotLayout::Point(double x, double y) const {
  const double span = content_.x_max - content_.x_min;
  const double share = span > 0 ? (x - content_.x_min) / span : 0;
  return {area_.left() + area_.width() * share, area_.bottom() - Height(y)};
}

QRectF PlotLayout::Column(size_t bar) const {
  if (content_.lying) {
    const double height = area_.height() / static_cast<double>(content_.bars.size());
    return {room_.left(), area_.top() + height * static_cast<double>(bar), room_.width(), height};
  }
  const double pitch = area_.width() / static_cast<double>(content_.bars.size());
  return {area_.left() + pitch * static_cast<double>(bar), area_.top(), pitch, area_.height()};
}

bool PlotLayout::IsCut(size_t bar) const {
  return !content_.lying && HeightOf(content_.bars[bar]) > y_top_ * (1 + 1e-9);
}

QRectF PlotLayout::Bar(size_t bar) const {
  const QRectF column = Column(bar);
  if (content_.lying) {
    const double gap = column.height() * (1 - kBarWidth) / 2;
    const double width = area_.width() * HeightOf(content_.bars[bar]) / y_top_;
    return {area_.left(), column.top() + gap, width, column.height() - 2 * gap};
  }
  const double gap = column.width() * (1 - kBarWidth) / 2;
  const double height = Height(HeightOf(content_.bars[bar]));
  return {column.left() + gap, column.bottom() - height, column.width() - 2 * gap, height};
}

double PlotLayout::Radius(const PlotPoint& point) const {
  return std::max(kLargestPoint * std::sqrt(point.weight), kSmallestPoint);
}

size_t PlotLayout::LabelStride() const {
  double widest = 0;
  for (const PlotBar& bar : content_.bars) widest = std::max(widest, metrics_.horizontalAdvance(bar.label));
  const double pitch = area_.width() / static_cast<double>(content_.bars.size());
  size_t stride = 1;
  while (pitch * static_cast<double>(stride) < widest + kMargin && stride < content_.bars.size()) stride *= 2;
  return stride;
}

QString PlotLayout::YText(double value) const {
  if (content_.y_text) return content_.y_text(value);
  constexpr QChar kNarrowBlank(0x202F);
  return QLocale().toString(value, 'f', 0).replace(QLocale().groupSeparator(), kNarrowBlank);
}

double PlotLayout::DistanceTo(const PlotItems& items, size_t item, const QPointF& point) const {
  const size_t place = items.places[item];
  if (items.kind == PlotItems::Kind::Bars) {
    const QRectF column = Column(place);
    const bool inside = content_.lying ? point.y() >= column.top() && point.y() < column.bottom()
                                       : point.x() >= column.left() && point.x() < column.right();
    return inside ? 0 : kReach + 1;
  }
  if (items.kind == PlotItems::Kind::Points) {
    const PlotPoint& at = content_.points[place];
    return QLineF(point, Point(at.x, at.y)).length() - Radius(at);
  }
  const std::vector<QPointF>& line = content_.lines[place].points;
  double distance = kReach + 1;
  for (size_t k = 1; k < line.size(); ++k) {
    const QLineF part(Point(line[k - 1].x(), line[k - 1].y()), Point(line[k].x(), line[k].y()));
    distance = std::min(distance, tessaro::DistanceTo(part, point));
  }
  return distance;
}

int PlotLayout::ItemAt(const QPointF& point) const {
  const PlotItems items(content_);
  double nearest = kReach;
  int found = -1;
  for (size_t i = 0; i < items.places.size(); ++i) {
    const double distance = DistanceTo(items, i, point);
    if (distance > nearest) continue;
    nearest = distance;
    found = static_cast<int>(i);
  }
  return found;
}

QRectF PlotLayout::Frame(int item) const {
  constexpr double kAround = 3;
  const PlotItems items(content_);
  const size_t place = items.places[static_cast<size_t>(item)];
  if (items.kind == PlotItems::Kind::Bars && content_.lying) return Column(place).adjusted(kAround, 0, -kAround, 0);
  if (items.kind == PlotItems::Kind::Bars) return Bar(place).adjusted(-kAround, -kAround, kAround, kAround);
  QPointF at;
  double radius = kSmallestPoint;
  if (items.kind == PlotItems::Kind::Points) {
    const PlotPoint& point = content_.points[place];
    at = Point(point.x, point.y);
    radius = Radius(point);
  } else if (!content_.lines[place].points.empty()) {
    const QPointF& last = content_.lines[place].points.back();
    at = Point(last.x(), last.y());
  }
  return QRectF(at, at).adjusted(-radius - kAround, -radius - kAround, radius + kAround, radius + kAround);
}

}  // namespace tessaro
