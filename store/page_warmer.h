#pragma once

#include <atomic>
#include <cstddef>
#include <thread>

namespace tessaro {

// Has the system provide the pages of fresh memory while another thread reads a file into them, which takes as long as
// the reading itself. It changes no byte; small memory, a single processor or another system get no help.
class PageWarmer {
 public:
  // The memory must stay in its place until Stop or the destructor.
  PageWarmer(char* memory, size_t size);
  PageWarmer(const PageWarmer&) = delete;
  PageWarmer& operator=(const PageWarmer&) = delete;
  ~PageWarmer() { Stop(); }

  // Tells how far the memory has been used. When this thread overtakes the warmer, the warmer goes on some way ahead,
  // so that they never work on the same page.
  void Reached(size_t position) { reached_.store(position, std::memory_order_relaxed); }
  void Stop();

 private:
  void Run(char* memory, size_t size) const;

  std::atomic<bool> stop_ = false;
  std::atomic<size_t> reached_ = 0;
  std::thread thread_;
};

}  // namespace tessaro
