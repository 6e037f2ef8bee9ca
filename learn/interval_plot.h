#pragma once

#include <optional>

#include "learn/retention.h"
#include "widgets/plot.h"

namespace tessaro {

// The intervals between answers from the oldest to the newest, the two lines through them and the points that they
// foretell. A streak's points stand under the newest of all intervals. Without a forecast the plot is empty.
PlotContent IntervalContent(const std::optional<RetentionForecast>& forecast);

}  // namespace tessaro
