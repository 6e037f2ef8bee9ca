#pragma once

#include <random>
#include <utility>
#include <vector>

#include "platform/clock.h"
#include "platform/random.h"

namespace tessaro {

inline constexpr int64_t kNow = 1'700'000'000;

// A clock that a test sets.
class FixedClock : public Clock {
 public:
  explicit FixedClock(int64_t now_in = kNow) : now(now_in) {}
  int64_t Now() const override { return now; }
  int64_t Milliseconds() const override { return milliseconds; }

  int64_t now;
  int64_t milliseconds = 5'000'000;  // of some moment or other
};

// Gives the numbers of a test, over and over; 0 when there are none.
class ScriptedRandom : public Random {
 public:
  explicit ScriptedRandom(std::vector<uint32_t> numbers_in = {}) : numbers(std::move(numbers_in)) {}
  // Any numbers, as many as no test needs before they come again.
  explicit ScriptedRandom(std::mt19937& chance) : numbers(997) {
    for (uint32_t& number : numbers) number = static_cast<uint32_t>(chance()) >> 1U;
  }
  uint32_t Next() override { return numbers.empty() ? 0 : numbers[draws++ % numbers.size()]; }

  std::vector<uint32_t> numbers;
  size_t draws = 0;
};

}  // namespace tessaro
