#pragma once

#include <cstdint>
#include <functional>

namespace tessaro {

// Told now and then how far long work has come, in the unit that the work names; answers false to end it. An empty one
// lets it run.
using WorkObserver = std::function<bool(int64_t done)>;

// Steps in which work that counts bytes or cards tells how far it has come.
inline constexpr int64_t kTellEveryBytes = int64_t{1} << 16;
inline constexpr int64_t kTellEveryCards = 1000;

// Asks an observer only once in a while, since it looks at the clock.
class WorkWatch {
 public:
  // Asks when `done` has grown by `step`.
  WorkWatch(const WorkObserver& observer, int64_t step) : observer_(observer), step_(step), next_(step) {}

  // False when the work is to end.
  bool GoOn(int64_t done) {
    if (done < next_ || !observer_) return true;
    next_ = done + step_;
    return observer_(done);
  }

 private:
  const WorkObserver& observer_;
  int64_t step_;
  int64_t next_;
};

}  // namespace tessaro
