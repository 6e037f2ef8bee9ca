#pragma once

#include <cstddef>

namespace tessaro {

// The bytes of a loaded file, in one piece of memory. Room that is never written costs no memory.
class TextBlock {
 public:
  // So many bytes behind the room may be read (not written), so that a scan can look at whole groups of bytes.
  static constexpr size_t kReadableBehind = 64;

  TextBlock() = default;
  TextBlock(TextBlock&& other) noexcept;
  TextBlock& operator=(TextBlock&& other) noexcept;
  ~TextBlock();

  char* data() { return data_; }
  const char* data() const { return data_; }
  size_t room() const { return room_; }

  // Makes room for at least `room` bytes and keeps the first `used` ones; the block may move. False when there is not
  // so much memory: the block is as it was.
  [[nodiscard]] bool Reserve(size_t room, size_t used);

 private:
  char* data_ = nullptr;
  size_t room_ = 0;
};

}  // namespace tessaro
