#include "store/file/file_text.h"

#include <algorithm>

namespace tessaro {

std::optional<FileText> FileText::Read(Disk& disk, const std::filesystem::path& path) {
  const std::unique_ptr<ReadableFile> file = disk.Open(path);
  if (file == nullptr) return std::nullopt;
  FileText text;
  for (;;) {
    // A byte more than announced, so that the end of an unchanged file is found without making room again.
    if (text.size_ == text.block_.room()) {
      const uint64_t room = std::max<uint64_t>(2 * text.size_, file->Size() + 1);
      if (room > kMostWhole || !text.block_.Reserve(room)) return std::nullopt;
    }
    const std::ptrdiff_t count = file->Read(text.block_.data() + text.size_, text.block_.room() - text.size_);
    if (count < 0) return std::nullopt;
    if (count == 0) return text;
    text.size_ += static_cast<size_t>(count);
  }
}

}  // namespace tessaro
