#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "hypertext/media.h"
#include "platform/disk.h"

namespace tessaro {

// How a card names a file that lies in one of the media folders: relative to it, with backslashes, in 1252 or else in
// the code page of a side.
// Nothing for a file elsewhere or a name that the code page cannot hold.
std::optional<std::string> RelativeMediaName(const MediaFolders& folders, const std::filesystem::path& file);
// How it names any file: by its full path.
std::optional<std::string> FullMediaName(const std::filesystem::path& file);

// The name of a file without its folder, as plain as any tag and directive can hold.
std::string PlainNameOf(const std::filesystem::path& file);
// A name in the folder that no file has: `name`, or with a number before its ending.
std::string FreeName(const Disk& disk, const std::filesystem::path& folder, std::string_view name);
// Copies a file under a name that is free, making the folder. False: no such copy was left there.
[[nodiscard]] bool CopyFile(Disk& disk, const std::filesystem::path& from, const std::filesystem::path& to);
// Writes a new file in one go. False: none is there.
[[nodiscard]] bool WriteNewFile(Disk& disk, const std::filesystem::path& to, std::string_view bytes);

}  // namespace tessaro
