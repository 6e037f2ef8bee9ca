#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string_view>

#include "platform/disk.h"
#include "store/table/memory_block.h"

namespace tessaro {

// A file read whole, as ReadFile does, into one block. A large one takes a fraction of the time that a string takes,
// whose memory is filled twice and by small pages.
class FileText {
 public:
  // Nothing when the file cannot be read, is larger than kMostWhole or than the memory.
  static std::optional<FileText> Read(Disk& disk, const std::filesystem::path& path);

  std::string_view view() const { return {block_.data(), size_}; }

 private:
  MemoryBlock block_;
  size_t size_ = 0;
};

}  // namespace tessaro
