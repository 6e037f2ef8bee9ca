#pragma once

#include <optional>

#include "learn/learning_run.h"
#include "learn/leitner_method.h"

namespace tessaro {

// What the learner chose: a method of the automatic kind, or a Leitner box to work through.
struct MethodChoice {
  Method method = Method::Standard;
  LeitnerBox box = {};                          // for Method::Leitner
  std::optional<bool> box_lock = std::nullopt;  // the lock against early advancing; nothing = as it was
};

}  // namespace tessaro
