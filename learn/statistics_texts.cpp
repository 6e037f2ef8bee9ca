#include "learn/statistics_texts.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "hypertext/plain_text.h"
#include "platform/saturating.h"
#include "settings/decimal_text.h"
#include "settings/learning_parameters.h"

namespace tessaro {
namespace {

constexpr size_t kTitleLetters = 35;

template <typename... Values>
std::string Format(const char* form, Values... values) {
  std::array<char, 400> text;  // a double may need 310 digits
  const int length = std::snprintf(text.data(), text.size(), form, values...);
  return {text.data(), length > 0 ? static_cast<size_t>(length) : 0};
}

// With two decimals below ten days, where they tell something.
std::string DaysText(int64_t seconds) {
  if (seconds == 0) return {};
  const double days = static_cast<double>(seconds) / kSecondsPerDay;
  if (days > 0 && days < 0.005) return "< 0,01";
  return WithComma(Format(std::abs(days) < 10 ? "%.2f" : "%.0f", days));
}

std::vector<HistoryRowText> HistoryRows(const AnswerHistory& history) {
  std::vector<HistoryRowText> rows;
  for (size_t i = 0; i < history.times.size(); ++i) {
    const int64_t older = i + 1 < history.times.size() ? history.times[i + 1] : 0;
    const int64_t interval = older == 0 ? 0 : SaturatingSubtract(history.times[i], older);
    rows.push_back({Format("%2d", static_cast<int>(i + 1)), std::string(1, history.letters[i]),
                    Format("%10lld", static_cast<long long>(history.times[i])),
                    Format("%10lld", static_cast<long long>(interval)), DaysText(interval), history.times[i] == 0});
  }
  return rows;
}

TrendTexts TextsOfTrend(const IntervalSeries& series, const Trend& trend) {
  TrendTexts texts;
  for (int i = 0; i < series.count; ++i) {
    texts.rows.push_back({Format("%2d", series.count - i),
                          Format("%10lld", static_cast<long long>(series.intervals[static_cast<size_t>(i)]))});
  }
  if (!trend.trivial) texts.line = Format(" y = %.2f + %.2f x", trend.a, trend.b);
  texts.prediction = Format(" x = %d;     %.2f", series.count + 1, trend.prediction);
  return texts;
}

std::string ScoreWithTime(int64_t score) {
  const auto part = [&](int64_t unit, int64_t units) { return static_cast<long long>(score / unit % units); };
  return Format("%lld;   %lld:%02lld:%02lld:%02lld", static_cast<long long>(score),
                static_cast<long long>(score / kSecondsPerDay), part(3600, 24), part(60, 60), part(1, 60));
}

}  // namespace

StatisticsTexts TextsOf(const AnswerStatistics& statistics) {
  StatisticsTexts texts;
  texts.history = HistoryRows(statistics.history);
  if (!statistics.forecast) return texts;
  const RetentionForecast& forecast = *statistics.forecast;
  texts.trends = {TextsOfTrend(forecast.all, forecast.all_trend), TextsOfTrend(forecast.streak, forecast.streak_trend)};
  texts.score = ScoreWithTime(statistics.score);
  return texts;
}

std::string SideTitle(std::string_view side) {
  std::string title = PlainBeginning(side).substr(0, kTitleLetters);
  std::replace(title.begin(), title.end(), '\n', ' ');
  return title;
}

}  // namespace tessaro
