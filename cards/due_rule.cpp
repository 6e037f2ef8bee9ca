#include "cards/due_rule.h"

#include <algorithm>

#include "platform/saturating.h"

namespace tessaro {

int64_t DueTime(int64_t newest, int64_t score, const LearningParameters& parameters) {
  return SaturatingAdd(newest, Truncate(static_cast<double>(score) * parameters.retention_weight));
}

DueState DueStateAt(int64_t newest, int64_t score, const LearningParameters& parameters, int64_t now) {
  return {DueTime(newest, score, parameters) < now, SaturatingAdd(newest, parameters.max_time) < now};
}

std::optional<int64_t> SecondsUntilNextDue(const CardFile& file, const LearningParameters& parameters, int64_t now) {
  const CardReader cards(file);
  std::optional<int64_t> first;
  for (int row = kFirstCardRow; row <= cards.LastCardRow(); ++row) {
    if (cards.NewestLetter(row) != kKnownLetter) continue;
    const int64_t due = DueTime(cards.NewestTime(row), cards.Score(row), parameters);
    if (due < now || (first && due >= *first) || cards.IsNavigation(row) || cards.HasEndMark(row)) continue;
    first = due;
  }
  // At the due second itself a card still waits.
  if (first) *first = SaturatingAdd(SaturatingSubtract(*first, now), 1);
  return first;
}

}  // namespace tessaro
