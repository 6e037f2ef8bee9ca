#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

#include "platform/other_thread.h"

namespace tessaro {

// The turns of threads whose work must be done in its order. They count from 0.
class Turns {
 public:
  // Waits for a turn; false when none comes any more.
  bool Await(int turn) {
    std::unique_lock lock(mutex_);
    passed_.wait(lock, [&] { return over_ || turn_ == turn; });
    return !over_;
  }
  // Ends the turn that it is.
  void Pass() {
    const std::scoped_lock lock(mutex_);
    ++turn_;
    passed_.notify_all();
  }
  // Ends all turns, in or out of one's own.
  void End() {
    const std::scoped_lock lock(mutex_);
    over_ = true;
    passed_.notify_all();
  }

 private:
  std::mutex mutex_;
  std::condition_variable passed_;
  int turn_ = 0;
  bool over_ = false;
};

// Works on pieces that follow one another, with two threads where it is worth it: while the one finishes its piece the
// other prepares the next. `prepare(piece, work)` may be done for two pieces at once and changes nothing but `work`, of
// which each thread has one. `finish(work, on_own)` is done in the order of the pieces, with `on_own` where the thread
// is that of the caller; false ends it all.
template <typename Work, typename Prepare, typename Finish>
void WorkInTurns(int pieces, bool worth_it, const Prepare& prepare, const Finish& finish) {
  Turns turns;
  const auto run = [&](int piece, int step, bool on_own) {
    try {
      for (Work work; piece < pieces; piece += step) {
        prepare(piece, work);
        if (!turns.Await(piece)) return;
        if (!finish(work, on_own)) return turns.End();
        turns.Pass();
      }
    } catch (...) {
      turns.End();  // nobody is to wait for it
      throw;
    }
  };
  std::future other = std::async(OnOtherThread(worth_it), [&] { run(1, 2, false); });
  const bool alone = other.wait_for(std::chrono::seconds(0)) == std::future_status::deferred;
  run(0, alone ? 1 : 2, true);
  if (!alone) other.get();
}

}  // namespace tessaro
