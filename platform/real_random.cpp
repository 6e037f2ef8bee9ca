#include "platform/random.h"

namespace tessaro {

RealRandom::RealRandom() : generator_(std::random_device{}()) {}

uint32_t RealRandom::Next() {
  return static_cast<uint32_t>(generator_() >> 1);
}

}  // namespace tessaro
