#pragma once

#include <cstdint>
#include <optional>

#include "cards/card_writer.h"
#include "learn/retention.h"

// What an answer makes of a card, computed from the card's columns alone.
namespace tessaro {

// All that the outcome of an answer depends on.
struct AnswerContext {
  bool known = false;
  int64_t now = 0;            // seconds since 1970
  int64_t spent = 0;          // seconds spent on the card
  int64_t min_retention = 0;  // seconds; 0 = none
  bool keep_history = false;  // the answer changes the score alone, not the history
  AnswerHistory history;
  int64_t score = 0;
  int64_t time_learned = 0;
  int64_t unknown_count = 0;
};

struct AnswerOutcome {
  bool wiped = false;               // the newest answer lay in the future: the card's statistics were deleted first
  bool times_out_of_order = false;  // logging ended after the history; the score stands as it was
  int64_t score = 0;
  int64_t unknown_count = 0;  // never below 0
  AnswerHistory history;
  std::optional<RetentionForecast> forecast;  // for known answers
  CardChange change;
};

AnswerOutcome ComputeAnswer(const AnswerContext& context);

// Takes the newest answer out of a card: history, box level and a placeholder score. `keep_history` as it was when the
// answer was given.
CardChange ComputeUndo(const CardReader& cards, int row, bool keep_history);

}  // namespace tessaro
