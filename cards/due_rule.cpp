#include "cards/due_rule.h"

#include "platform/saturating.h"

namespace tessaro {

int64_t DueTime(int64_t newest, int64_t score, const LearningParameters& parameters) {
  return SaturatingAdd(newest, Truncate(static_cast<double>(score) * parameters.retention_weight));
}

DueState DueStateAt(int64_t newest, int64_t score, const LearningParameters& parameters, int64_t now) {
  return {DueTime(newest, score, parameters) < now, SaturatingAdd(newest, parameters.max_time) < now};
}

}  // namespace tessaro
