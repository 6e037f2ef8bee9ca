#include "store/text_block.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace tessaro {
namespace {

// Half of the time of loading goes into the first touch of fresh memory; large pages need few such touches. Small
// blocks come from the heap.
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
    madvise(memory, size, MADV_HUGEPAGE);
    return static_cast<char*>(memory);
  }
#endif
  return static_cast<char*>(std::calloc(size, 1));
}

void Free(char* data, [[maybe_unused]] size_t size) {
#ifdef __linux__
  if (IsMapped(size)) {
    munmap(data, size);
    return;
  }
#endif
  std::free(data);
}

}  // namespace

TextBlock::TextBlock(TextBlock&& other) noexcept
    : data_(std::exchange(other.data_, nullptr)), room_(std::exchange(other.room_, 0)) {}

TextBlock& TextBlock::operator=(TextBlock&& other) noexcept {
  std::swap(data_, other.data_);
  std::swap(room_, other.room_);
  return *this;
}

TextBlock::~TextBlock() {
  if (data_ != nullptr) Free(data_, room_ + kReadableBehind);
}

bool TextBlock::Reserve(size_t room, size_t used) {
  if (data_ != nullptr && room <= room_) return true;
  if (room > SIZE_MAX - kReadableBehind) return false;
  char* const fresh = Allocate(room + kReadableBehind);
  if (fresh == nullptr) return false;
  if (data_ != nullptr) {
    std::memcpy(fresh, data_, std::min(used, room_));
    Free(data_, room_ + kReadableBehind);
  }
  data_ = fresh;
  room_ = room;
  return true;
}

}  // namespace tessaro
