#include "store/page_warmer.h"

#include <algorithm>
#include <cstdint>
#include <system_error>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace tessaro {
namespace {

constexpr size_t kLargePage = size_t{2} << 20;
constexpr size_t kLead = 8 * kLargePage;
// Below, starting a thread costs more than it saves.
constexpr size_t kLeastSize = size_t{16} << 20;

}  // namespace

PageWarmer::PageWarmer([[maybe_unused]] char* memory, [[maybe_unused]] size_t size) {
#ifdef MADV_POPULATE_WRITE
  if (size < kLeastSize || std::thread::hardware_concurrency() < 2) return;
  try {
    thread_ = std::thread([this, memory, size] { Run(memory, size); });
  } catch (const std::system_error&) {
    // No thread to be had: reading goes on without help.
  }
#endif
}

void PageWarmer::Stop() {
  stop_ = true;
  if (thread_.joinable()) thread_.join();
}

void PageWarmer::Run([[maybe_unused]] char* memory, [[maybe_unused]] size_t size) const {
#ifdef MADV_POPULATE_WRITE
  const size_t first = kLargePage - reinterpret_cast<uintptr_t>(memory) % kLargePage;
  for (size_t done = first; done < size && !stop_; done += kLargePage) {
    const size_t reached = reached_.load(std::memory_order_relaxed);
    if (reached > done) done += (reached - done) / kLargePage * kLargePage + kLead;
    if (done >= size || madvise(memory + done, std::min(kLargePage, size - done), MADV_POPULATE_WRITE) != 0) return;
  }
#endif
}

}  // namespace tessaro
