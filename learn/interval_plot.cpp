#include "learn/interval_plot.h"

#include <QLocale>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

struct DurationUnit {
  double seconds;
  const char16_t* name;
};

DurationUnit UnitFor(double seconds) {
  constexpr DurationUnit kUnits[] = {{86'400, u" Tage"}, {3'600, u" Std."}, {60, u" Min."}};
  for (const DurationUnit& unit : kUnits) {
    if (seconds >= unit.seconds) return unit;
  }
  return {1, u" Sek."};
}

QString ShortDurationText(double seconds) {
  const DurationUnit unit = UnitFor(seconds);
  const QString text = QLocale().toString(seconds / unit.seconds, 'g', 3) + QString::fromUtf16(unit.name);
  return text == u"1 Tage"_s ? u"1 Tag"_s : text;
}

struct SeriesLook {
  PlotRole role;
  Qt::PenStyle style;
  QString name;
};

void AddSeries(const IntervalSeries& series, const Trend& trend, double places, const SeriesLook& look,
               PlotContent& content) {
  if (series.count == 0) return;
  // The newest intervals of both series stand at the same place.
  const double shift = places - 1 - series.count;
  const bool hollow = look.role != PlotRole::Known;
  for (int i = series.count; i-- > 0;) {
    const auto seconds = static_cast<double>(series.intervals[static_cast<size_t>(i)]);
    content.points.push_back({.x = shift + series.count - i,
                              .y = seconds,
                              .weight = 0.15,
                              .role = look.role,
                              .hollow = hollow,
                              .text = u"%1: %2"_s.arg(look.name, ShortDurationText(seconds))});
  }
  const QPointF forecast(shift + series.count + 1, trend.prediction);
  content.points.push_back({.x = forecast.x(),
                            .y = forecast.y(),
                            .weight = 0.4,
                            .role = look.role,
                            .hollow = true,
                            .text = u"%1, Prognose: %2"_s.arg(look.name, ShortDurationText(trend.prediction))});
  if (trend.trivial) return;
  content.lines.push_back(
      {{QPointF(shift + 1, std::max(trend.a + trend.b, 0.0)), forecast}, look.role, look.style, {}, {}});
}

}  // namespace

PlotContent IntervalContent(const std::optional<RetentionForecast>& forecast) {
  PlotContent content;
  content.name = u"Abstände zwischen den Antworten mit beiden Geraden"_s;
  content.empty = u"Noch keine Abstände zwischen gewussten Antworten"_s;
  if (!forecast || forecast->all.count == 0) return content;
  const SeriesLook all = {PlotRole::Known, Qt::SolidLine, u"1. alle Abstände"_s};
  const SeriesLook streak = {PlotRole::NotKnown, Qt::DashLine, u"2. seit dem letzten Fehler"_s};
  content.legend = {{all.name, all.role}, {streak.name, streak.role}};
  const double places = forecast->all.count + 1;
  content.x_max = places + 0.5;
  content.x_ticks = {{1, u"älteste"_s}, {places, u"Prognose"_s}};
  AddSeries(forecast->all, forecast->all_trend, places, all, content);
  AddSeries(forecast->streak, forecast->streak_trend, places, streak, content);
  double longest = 1;
  for (const PlotPoint& point : content.points) longest = std::max(longest, point.y);
  const double unit = UnitFor(longest).seconds;
  content.y_step = unit * RoundStep(longest / unit, 4, false);
  content.y_text = [](double seconds) { return ShortDurationText(seconds); };
  return content;
}

}  // namespace tessaro
