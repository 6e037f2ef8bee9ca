#pragma once

#include <cstddef>

namespace tessaro {

// One piece of memory that can grow. Room that is never touched costs nothing, so a guess may be generous.
class MemoryBlock {
 public:
  // This many bytes past the room may be read (not written), so that a scan can look at whole groups of bytes.
  static constexpr size_t kReadableBehind = 64;

  MemoryBlock() = default;
  MemoryBlock(MemoryBlock&& other) noexcept;
  MemoryBlock& operator=(MemoryBlock&& other) noexcept;
  ~MemoryBlock();

  char* data() { return data_; }
  const char* data() const { return data_; }
  size_t room() const { return room_; }

  // Makes room for at least `room` bytes and keeps what there is; the block may move. False when there is not so much
  // memory: the block is as it was.
  [[nodiscard]] bool Reserve(size_t room);

 private:
  char* data_ = nullptr;
  size_t room_ = 0;
};

}  // namespace tessaro
