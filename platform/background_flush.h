#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace tessaro {

// Brings what was written to a file to the disk on a thread of its own, within a second and many writes at a time, so
// that whoever writes never waits for the disk.
class BackgroundFlush {
 public:
  BackgroundFlush();
  // Flushes what is still to be flushed.
  ~BackgroundFlush();
  BackgroundFlush(const BackgroundFlush&) = delete;
  BackgroundFlush& operator=(const BackgroundFlush&) = delete;

  // `flush` returns false when the disk did not take everything. It is called on the thread until another is set;
  // setting waits for a flush that is under way. Null: nothing is flushed.
  void SetFlush(std::function<bool()> flush);
  // Something was written since the last flush. Does not wait.
  void Written();
  // True once after a flush that failed.
  bool TakeFailure() { return failed_.exchange(false); }

 private:
  void Work();
  void FlushNow();

  std::mutex flush_mutex_;  // held while flushing
  std::function<bool()> flush_;
  std::mutex mutex_;
  std::condition_variable wake_;
  bool written_ = false;
  bool stop_ = false;
  std::atomic<bool> failed_ = false;
  std::thread thread_;
};

}  // namespace tessaro
