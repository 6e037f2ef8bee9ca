#include "learn/interval_plot.h"

#include <QLocale>
#include <QPainter>
#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

constexpr int kMargin = 8;
constexpr double kPointRadius = 3.5;
constexpr double kForecastRadius = 5;

// The middle tone of each reads on light and dark ground.
const QColor kAllColour(70, 130, 200);
const QColor kStreakColour(210, 130, 40);

QString ShortDurationText(double seconds) {
  constexpr double kMinute = 60;
  constexpr double kHour = 60 * kMinute;
  constexpr double kDay = 24 * kHour;
  const auto text = [&](double unit, QStringView name) {
    return QLocale().toString(seconds / unit, 'g', 3) + name.toString();
  };
  if (seconds >= kDay) return text(kDay, u" Tage");
  if (seconds >= kHour) return text(kHour, u" Std.");
  if (seconds >= kMinute) return text(kMinute, u" Min.");
  return text(1, u" Sek.");
}

}  // namespace

IntervalPlot::IntervalPlot(QWidget* parent) : QWidget(parent) {
  setAccessibleName(u"Abstände zwischen den Antworten mit beiden Geraden"_s);
  setMinimumSize(240, 160);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void IntervalPlot::Show(const std::optional<RetentionForecast>& forecast) {
  forecast_ = forecast;
  update();
}

QPointF IntervalPlot::Scale::Point(double place, double seconds) const {
  const double bounded = std::clamp(seconds, 0.0, longest);
  return {area.left() + area.width() * place / (places + 0.5), area.bottom() - area.height() * bounded / longest};
}

IntervalPlot::Scale IntervalPlot::MakeScale() const {
  Scale scale;
  const int line = fontMetrics().height();
  scale.area = QRectF(rect()).adjusted(kMargin, 2 * kMargin + line, -kMargin, -kMargin - line);
  const IntervalSeries& all = forecast_->all;
  scale.places = all.count + 1;
  double longest = std::max(forecast_->all_trend.prediction, forecast_->streak_trend.prediction);
  for (int i = 0; i < all.count; ++i) {
    longest = std::max(longest, static_cast<double>(all.intervals[static_cast<size_t>(i)]));
  }
  scale.longest = std::max(longest, 1.0);
  return scale;
}

void IntervalPlot::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (!forecast_ || forecast_->all.count == 0) {
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap, u"Noch keine Abstände zwischen gewussten Antworten"_s);
    return;
  }
  const Scale scale = MakeScale();
  PaintAxes(painter, scale);
  PaintSeries(painter, scale, forecast_->all, forecast_->all_trend, kAllColour, Qt::SolidLine);
  PaintSeries(painter, scale, forecast_->streak, forecast_->streak_trend, kStreakColour, Qt::DashLine);
}

void IntervalPlot::PaintAxes(QPainter& painter, const Scale& scale) const {
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawLine(scale.area.bottomLeft(), scale.area.bottomRight());
  painter.drawLine(scale.area.topLeft(), scale.area.bottomLeft());
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawText(QPointF(scale.area.left(), scale.area.top() - kMargin), ShortDurationText(scale.longest));
  const QRectF below(scale.area.left(), scale.area.bottom() + 4, scale.area.width(), fontMetrics().height());
  painter.drawText(below, Qt::AlignLeft, u"älteste"_s);
  painter.drawText(below, Qt::AlignRight, u"Prognose"_s);
  PaintLegend(painter, scale);
}

// Above the points, from the right.
void IntervalPlot::PaintLegend(QPainter& painter, const Scale& scale) const {
  double right = scale.area.right();
  const std::pair<QString, QColor> entries[] = {{u"2. seit dem letzten Fehler"_s, kStreakColour},
                                                {u"1. alle Abstände"_s, kAllColour}};
  for (const auto& [name, colour] : entries) {
    const int width = fontMetrics().horizontalAdvance(name);
    const double base = scale.area.top() - kMargin;
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(QPointF(right - width, base), name);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawEllipse(QPointF(right - width - 2 * kPointRadius - 2, base - fontMetrics().xHeight() / 2.0),
                        kPointRadius, kPointRadius);
    right -= width + 4 * kPointRadius + kMargin;
  }
}

void IntervalPlot::PaintSeries(QPainter& painter, const Scale& scale, const IntervalSeries& series, const Trend& trend,
                               const QColor& colour, Qt::PenStyle style) const {
  if (series.count == 0) return;
  // The newest intervals of both series stand at the same place.
  const double shift = scale.places - 1 - series.count;
  painter.setPen(Qt::NoPen);
  painter.setBrush(colour);
  for (int i = 0; i < series.count; ++i) {
    const auto seconds = static_cast<double>(series.intervals[static_cast<size_t>(i)]);
    painter.drawEllipse(scale.Point(shift + series.count - i, seconds), kPointRadius, kPointRadius);
  }
  painter.setPen(QPen(colour, 2, style));
  painter.setBrush(Qt::NoBrush);
  const QPointF forecast = scale.Point(shift + series.count + 1, trend.prediction);
  if (!trend.trivial) painter.drawLine(scale.Point(shift + 1, trend.a + trend.b), forecast);
  painter.setPen(QPen(colour, 2));
  painter.drawEllipse(forecast, kForecastRadius, kForecastRadius);
}

}  // namespace tessaro
