#pragma once

#include <QString>
#include <cstdint>
#include <optional>

#include "widgets/count_texts.h"

namespace tessaro {

QString RoundedText(double number);  // to a whole number
// "86 %" of 0.86, or "86,1 %".
QString PercentText(double share, int decimals = 0);
// That of a card; empty without one.
QString RecallText(std::optional<double> recall);
// "12 Sek.", "9 Min.", "38 Std. 12 Min."
QString SpanText(double seconds);
// "eine Antwort", "143 Antworten".
QString AnswersText(int64_t answers);
// A day by its number (see LocalDays): "22.11.", "Mi, 30.11." or "Mi, 30.11.2026".
QString ShortDayText(int64_t day);
QString DayText(int64_t day);
QString FullDayText(int64_t day);

}  // namespace tessaro
