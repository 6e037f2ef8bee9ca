#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "store/table/memory_block.h"

namespace tessaro {

// What the rows of a loaded file point into. Blocks may move, so a place is the number of the block in the upper bits
// and the distance from its start in the others.
class RowBlocks {
 public:
  static constexpr size_t kFile = 0;       // the file, as it is written
  static constexpr size_t kUnescaped = 1;  // the fields of it that were written with escapes, without them
  static constexpr size_t kUnescapedOfSecondHalf = 2;
  static constexpr size_t kRewritten = 3;  // rows that came or changed with many others
  static constexpr int kPlaceBits = 56;

  MemoryBlock& operator[](size_t block) { return blocks_[block]; }
  // A place from its two parts, and the byte there. `start` is below 2 to the 56th.
  static uint64_t PlaceIn(size_t block, uint64_t start) { return uint64_t{block} << kPlaceBits | start; }
  const char* At(uint64_t place) const { return blocks_[place >> kPlaceBits].data() + StartOf(place); }
  char* At(uint64_t place) { return blocks_[place >> kPlaceBits].data() + StartOf(place); }

 private:
  static uint64_t StartOf(uint64_t place) { return place & ((uint64_t{1} << kPlaceBits) - 1); }

  std::array<MemoryBlock, 4> blocks_;
};

// A field of a changed row in 16 bytes: null, bytes of its own, or bytes at a place in the loaded blocks. A few bytes,
// such as an ID, need no memory beside it.
class FieldText {
 public:
  FieldText() = default;
  FieldText(FieldText&& other) noexcept;
  FieldText& operator=(FieldText&& other) noexcept;
  FieldText(const FieldText&) = delete;
  FieldText& operator=(const FieldText&) = delete;
  ~FieldText();

  // Text of `size` bytes at a place in the blocks; nothing is copied.
  static FieldText InBlock(uint64_t place, size_t size);
  // A copy of the value; nothing is null.
  static FieldText Own(std::optional<std::string_view> value);

  // The text, valid until it is set again or the blocks move; nothing when null.
  std::optional<std::string_view> Get(const RowBlocks& blocks) const;
  // `value` may be a view of this field.
  void Set(std::optional<std::string_view> value);

 private:
  static constexpr uint64_t kOwned = uint64_t{1} << 63;
  static constexpr uint64_t kInBlock = uint64_t{1} << 62;
  static constexpr uint64_t kSizeMask = kInBlock - 1;

  bool IsOwned() const { return (size_and_kind_ & kOwned) != 0; }
  bool IsOutside() const { return IsOwned() && size() > sizeof(place_); }
  size_t size() const { return size_and_kind_ & kSizeMask; }
  char* Outside() const { return reinterpret_cast<char*>(static_cast<uintptr_t>(place_)); }
  const char* bytes() const { return IsOutside() ? Outside() : reinterpret_cast<const char*>(&place_); }
  char* bytes() { return IsOutside() ? Outside() : reinterpret_cast<char*>(&place_); }

  uint64_t place_ = 0;          // own bytes or their address, or a place in the blocks
  uint64_t size_and_kind_ = 0;  // 0: null
};

}  // namespace tessaro
