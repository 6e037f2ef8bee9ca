#include "learn/retention.h"

#include <algorithm>

#include "platform/saturating.h"

// The method: the intervals between a card's known answers tend to grow. A line is fitted to them by least squares, and
// its continuation is the time that the card will be remembered next time. Two lines are drawn, one through all
// intervals between known answers and one through those of the current streak; the score is their mean.
namespace tessaro {
namespace {

void Append(IntervalSeries& series, int64_t interval) {
  series.intervals[static_cast<size_t>(series.count)] = interval;
  ++series.count;
}

// An interval that began with a wrong answer does not count, nor does one to an empty slot.
IntervalSeries IntervalsBetweenKnown(const AnswerHistory& history) {
  IntervalSeries series;
  for (size_t i = 0; i + 1 < history.times.size(); ++i) {
    const char letter = history.letters[i];
    if (letter != kKnownLetter && letter != kNotKnownLetter) break;
    if (history.times[i + 1] == 0) break;
    if (letter == kNotKnownLetter || history.letters[i + 1] == kNotKnownLetter) continue;
    const int64_t interval = SaturatingSubtract(history.times[i], history.times[i + 1]);
    if (interval != 0) Append(series, interval);
  }
  return series;
}

IntervalSeries IntervalsOfStreak(const AnswerHistory& history) {
  IntervalSeries series;
  for (size_t i = 0; i + 1 < history.times.size(); ++i) {
    if (history.letters[i + 1] == kNotKnownLetter || history.times[i + 1] == 0) break;
    Append(series, SaturatingSubtract(history.times[i], history.times[i + 1]));
  }
  return series;
}

Trend TrivialTrend(int64_t estimate) {
  Trend trend;
  trend.prediction = static_cast<double>(estimate);
  trend.estimate = estimate;
  return trend;
}

// Results are kept to the second, so the operations stay in this order.
Trend FitLine(const IntervalSeries& series) {
  const double n = series.count;
  double sum_x = 0;
  double sum_y = 0;
  double sum_xx = 0;
  double sum_xy = 0;
  for (int i = 0; i < series.count; ++i) {
    const double x = series.count - i;
    const auto y = static_cast<double>(series.intervals[static_cast<size_t>(i)]);
    sum_x += x;
    sum_y += y;
    sum_xx += x * x;
    sum_xy += x * y;
  }
  if (sum_y == 0) sum_y = 1.0;
  double divisor = sum_xx - sum_x * sum_x / n;
  if (divisor == 0) divisor = 1.0;

  Trend trend;
  trend.trivial = false;
  const double b = (sum_xy - sum_x / n * sum_y) / divisor;
  trend.b = b > 0 ? b : 0;
  trend.a = b > 0 ? (sum_y - trend.b * sum_x) / n : sum_y / n;
  trend.prediction = trend.a + trend.b * (n + 1);
  trend.estimate = Truncate(trend.prediction);
  return trend;
}

Trend TrendOf(const IntervalSeries& series, int64_t estimate_when_empty) {
  if (series.count == 0) return TrivialTrend(estimate_when_empty);
  if (series.count == 1) return TrivialTrend(series.intervals[0]);
  return FitLine(series);
}

int64_t Combine(const Trend& all, const Trend& streak) {
  if (all.trivial) return std::max<int64_t>(all.estimate, 1);
  if (streak.trivial || all.estimate == streak.estimate) return all.estimate;
  return Truncate(static_cast<double>(SaturatingAdd(all.estimate, streak.estimate)) * 0.5);
}

}  // namespace

RetentionForecast ForecastRetention(const AnswerHistory& history, int64_t min_retention) {
  const bool newest_not_known = history.letters[0] == kNotKnownLetter;
  RetentionForecast forecast;
  forecast.all = IntervalsBetweenKnown(history);
  forecast.streak = IntervalsOfStreak(history);
  forecast.all_trend = TrendOf(forecast.all, 1);
  forecast.streak_trend = TrendOf(forecast.streak, newest_not_known ? 0 : 1);

  int64_t score = newest_not_known ? 0 : Combine(forecast.all_trend, forecast.streak_trend);
  if (!newest_not_known) score = std::max(score, min_retention);
  forecast.score = std::clamp<int64_t>(score, 1, kMaxScore);
  return forecast;
}

}  // namespace tessaro
