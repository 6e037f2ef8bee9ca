#pragma once

#include <utility>
#include <vector>

#include "platform/random.h"

namespace tessaro {

// Gives the numbers of a test, over and over; 0 when there are none.
class ScriptedRandom : public Random {
 public:
  explicit ScriptedRandom(std::vector<uint32_t> numbers_in = {}) : numbers(std::move(numbers_in)) {}
  uint32_t Next() override { return numbers.empty() ? 0 : numbers[draws++ % numbers.size()]; }

  std::vector<uint32_t> numbers;
  size_t draws = 0;
};

}  // namespace tessaro
