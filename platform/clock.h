#pragma once

#include <cstdint>

namespace tessaro {

// The time of day, and a stopwatch.
class Clock {
 public:
  virtual ~Clock() = default;
  // Whole seconds since 1970-01-01 00:00 UTC. May jump in both directions when the user sets the clock.
  virtual int64_t Now() const = 0;
  // Milliseconds since an arbitrary start; never goes back.
  virtual int64_t Milliseconds() const = 0;
};

class RealClock : public Clock {
 public:
  int64_t Now() const override;
  int64_t Milliseconds() const override;
};

// The machine's own clock.
const Clock& SystemClock();

}  // namespace tessaro
