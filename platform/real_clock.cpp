#include <chrono>
#include <ctime>

#include "platform/clock.h"

namespace tessaro {

int64_t RealClock::Now() const {
  return static_cast<int64_t>(std::time(nullptr));
}

int64_t RealClock::Milliseconds() const {
  using namespace std::chrono;
  return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

const Clock& SystemClock() {
  static const RealClock clock;
  return clock;
}

}  // namespace tessaro
