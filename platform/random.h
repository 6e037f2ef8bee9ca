#pragma once

#include <cstdint>
#include <random>

namespace tessaro {

// A source of chance. The rules take remainders of what it gives.
class Random {
 public:
  virtual ~Random() = default;
  // A number in 0 ... 2^31 - 1, all equally likely.
  virtual uint32_t Next() = 0;
};

class RealRandom : public Random {
 public:
  RealRandom();
  uint32_t Next() override;

 private:
  std::mt19937 generator_;
};

}  // namespace tessaro
