#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tessaro {

// A field of a changed row in 16 bytes: null, bytes of its own, or bytes at a place in the loaded block. The block may
// move, so the place counts from its start.
class FieldText {
 public:
  FieldText() = default;
  FieldText(FieldText&& other) noexcept;
  FieldText& operator=(FieldText&& other) noexcept;
  FieldText(const FieldText&) = delete;
  FieldText& operator=(const FieldText&) = delete;
  ~FieldText();

  static FieldText InBlock(uint64_t start, size_t size);
  static FieldText Own(std::optional<std::string_view> value);

  std::optional<std::string_view> Get(const char* block) const;
  // `value` may be a view of this field.
  void Set(std::optional<std::string_view> value);

 private:
  static constexpr uint64_t kOwned = uint64_t{1} << 63;
  static constexpr uint64_t kInBlock = uint64_t{1} << 62;
  static constexpr uint64_t kSizeMask = kInBlock - 1;

  bool IsOwned() const { return (size_and_kind_ & kOwned) != 0; }
  size_t size() const { return size_and_kind_ & kSizeMask; }
  char* bytes() const { return reinterpret_cast<char*>(static_cast<uintptr_t>(place_)); }

  uint64_t place_ = 0;          // address of the own bytes, or start in the block
  uint64_t size_and_kind_ = 0;  // 0: null
};

}  // namespace tessaro
