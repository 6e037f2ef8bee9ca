#pragma once

#include <array>
#include <cstdint>

#include "cards/answer_history.h"

namespace tessaro {

// The intervals between answers that count for one line, the newest first. Their x values are count, count - 1 ... 1.
struct IntervalSeries {
  int count = 0;
  std::array<int64_t, kHistoryLength> intervals{};  // seconds
};

// A straight line y = a + b x through a series, and what it gives for the next interval.
struct Trend {
  bool trivial = true;  // too few intervals for a line; `a` and `b` mean nothing
  double a = 0;
  double b = 0;
  double prediction = 0;  // seconds, at x = count + 1
  int64_t estimate = 0;   // the prediction in whole seconds
};

// How long a card will be remembered, with all that led to the figure.
struct RetentionForecast {
  IntervalSeries all;     // every interval between two known answers
  IntervalSeries streak;  // those of the current streak of known answers
  Trend all_trend;
  Trend streak_trend;
  int64_t score = 0;  // predicted retention time, 1 ... kMaxScore seconds
};

// The forecast after a known answer that stands in `history` already. `min_retention` (seconds, 0 = none) bounds the
// score from below when the newest letter is not "f".
RetentionForecast ForecastRetention(const AnswerHistory& history, int64_t min_retention);

}  // namespace tessaro
