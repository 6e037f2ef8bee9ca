#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "platform/disk.h"

namespace tessaro {

// Reads a text as if it were a file. The text must outlive it.
class MemoryReader : public ReadableFile {
 public:
  explicit MemoryReader(std::string_view text) : rest_(text), size_(text.size()) {}
  uint64_t Size() const override { return size_; }
  std::ptrdiff_t Read(char* buffer, size_t size) override {
    const size_t count = rest_.copy(buffer, size);
    rest_.remove_prefix(count);
    return static_cast<std::ptrdiff_t>(count);
  }

 private:
  std::string_view rest_;
  size_t size_;
};

// Keeps what is written to it.
class MemoryWriter : public WritableFile {
 public:
  bool Write(std::string_view bytes) override {
    text_ += bytes;
    return true;
  }
  bool Flush() override { return true; }
  bool Close() override { return true; }
  std::string TakeText() { return std::move(text_); }

 private:
  std::string text_;
};

}  // namespace tessaro
