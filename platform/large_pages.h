#pragma once

#include <cstddef>
#include <cstdint>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace tessaro {

// Tells the system that all of this memory, none of which was touched yet, will be filled. Half of the time of filling
// fresh memory may go into its first touch; large pages need few such touches.
inline void PreferLargePages([[maybe_unused]] char* memory, [[maybe_unused]] size_t size) {
#ifdef __linux__
  constexpr size_t kWorthIt = size_t{4} << 20;
  constexpr uintptr_t kSmallPage = 4096;
  if (size < kWorthIt) return;
  const auto start = reinterpret_cast<uintptr_t>(memory);
  const uintptr_t offset = (kSmallPage - start % kSmallPage) % kSmallPage;
  (void)madvise(memory + offset, (size - offset) / kSmallPage * kSmallPage, MADV_HUGEPAGE);
#endif
}

}  // namespace tessaro
