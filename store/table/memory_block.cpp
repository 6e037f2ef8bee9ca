#include "store/table/memory_block.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "platform/large_pages.h"

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace tessaro {
namespace {

// Large blocks are mapped, so that they can grow without being copied; small ones come from the heap.
constexpr size_t kLeastMapped = size_t{1} << 20;

bool IsMapped([[maybe_unused]] size_t size) {
#ifdef __linux__
  return size >= kLeastMapped;
#else
  return false;
#endif
}

char* Allocate(size_t size) {
#ifdef __linux__
  if (IsMapped(size)) {
    void* const memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) return nullptr;
    PreferLargePages(static_cast<char*>(memory), size);
    return static_cast<char*>(memory);
  }
#endif
  return static_cast<char*>(std::calloc(size, 1));
}

void Free(char* data, [[maybe_unused]] size_t size) {
  if (data == nullptr) return;
#ifdef __linux__
  if (IsMapped(size)) {
    munmap(data, size);
    return;
  }
#endif
  std::free(data);
}

// Null when it failed; the memory then is as it was.
char* Grow(char* data, size_t old_size, size_t size) {
#ifdef __linux__
  if (data != nullptr && IsMapped(old_size)) {
    void* const memory = mremap(data, old_size, size, MREMAP_MAYMOVE);
    return memory == MAP_FAILED ? nullptr : static_cast<char*>(memory);
  }
#endif
  char* const memory = Allocate(size);
  if (memory == nullptr || data == nullptr) return memory;
  std::memcpy(memory, data, old_size);
  Free(data, old_size);
  return memory;
}

}  // namespace

MemoryBlock::MemoryBlock(MemoryBlock&& other) noexcept
    : data_(std::exchange(other.data_, nullptr)), room_(std::exchange(other.room_, 0)) {}

MemoryBlock& MemoryBlock::operator=(MemoryBlock&& other) noexcept {
  std::swap(data_, other.data_);
  std::swap(room_, other.room_);
  return *this;
}

MemoryBlock::~MemoryBlock() {
  Free(data_, room_ + kReadableBehind);
}

bool MemoryBlock::Reserve(size_t room) {
  if (data_ != nullptr && room <= room_) return true;
  if (room > PTRDIFF_MAX - kReadableBehind) return false;
  char* const grown = Grow(data_, room_ + kReadableBehind, room + kReadableBehind);
  if (grown == nullptr) return false;
  data_ = grown;
  room_ = room;
  return true;
}

}  // namespace tessaro
