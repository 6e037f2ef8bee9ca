#pragma once

#include <array>
#include <string>
#include <vector>

#include "learn/answer_log.h"

// The figures of the single-card statistics as they are shown: widths, decimals with "." and blanks are part of the
// form.
namespace tessaro {

// One answer of the history.
struct HistoryRowText {
  std::string number;    // "%2d", from 1
  std::string letter;    // "w" or "f"
  std::string time;      // "%10ld"
  std::string interval;  // to the next older answer, "%10ld"; 0 where there is none
  std::string days;      // the same for people, "2,75"; empty where there is none
  bool empty = false;    // no answer was given
};

// One interval of a series.
struct SeriesRowText {
  std::string x;         // "%2d"
  std::string interval;  // "%10ld"
};

struct TrendTexts {
  std::vector<SeriesRowText> rows;
  std::string line;        // " y = %.2f + %.2f x"; empty with too few intervals for a line
  std::string prediction;  // " x = %d;     %.2f": the place of the next interval and the forecast for it
};

struct StatisticsTexts {
  std::vector<HistoryRowText> history;
  std::array<TrendTexts, 2> trends;  // over all intervals, and over the current streak; empty after "not known"
  std::string score;                 // "%ld;   %ld:%02ld:%02ld:%02ld"; empty after "not known"
};

StatisticsTexts TextsOf(const AnswerStatistics& statistics);

// The first 35 characters of a side as plain text in one line.
std::string SideTitle(std::string_view side);

}  // namespace tessaro
