#pragma once

#include "platform/clock.h"

namespace tessaro {

// A clock that a test sets.
class FixedClock : public Clock {
 public:
  explicit FixedClock(int64_t now_in = 1'700'000'000) : now(now_in) {}
  int64_t Now() const override { return now; }
  int64_t Milliseconds() const override { return milliseconds; }

  int64_t now;
  int64_t milliseconds = 0;
};

}  // namespace tessaro
