#pragma once

#include <filesystem>
#include <functional>

#include "platform/disk.h"

namespace tessaro {

// Puts the content of a file; false when a write failed.
using FileWriter = std::function<bool(WritableFile& file)>;

// Replaces the file by what `write` puts, or creates it. A power cut or a failure at any step leaves the old or the new
// file, whole; the new one is written beside it and counts only when it is complete on the disk. Where `path` is a
// symbolic link, the file it leads to is replaced. With a `backup` path the old file is kept under that name, in place
// of an older backup. False: the old file and the old backup are as they were.
[[nodiscard]] bool ReplaceFile(Disk& disk, const std::filesystem::path& path, const FileWriter& write);
[[nodiscard]] bool ReplaceFile(Disk& disk, const std::filesystem::path& path, const FileWriter& write,
                               const std::filesystem::path& backup);

}  // namespace tessaro
