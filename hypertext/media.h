#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tessaro {

class Disk;

// Where the media files of a card file are looked for.
struct MediaFolders {
  std::filesystem::path folder;        // the card file's own folder
  std::filesystem::path alternative;   // tried when the file is not in `folder`; empty = none
};

// The file that a card names. Backslashes separate folders, letter case does not count, bytes are code page 1252.
// Nothing when there is no such file.
std::optional<std::filesystem::path> FindMedia(const Disk& disk, const MediaFolders& folders, std::string_view name);

enum class MediaKind { Picture, Video, Sound, Text };

// A media directive of a side, such as "#SHOW:bild.bmp+".
struct MediaDirective {
  std::string name;          // as written, without the marker
  bool text_first = false;   // the card's text is shown first, the file on request
};

// The first directive of this kind on the side, if it has one that applies.
std::optional<MediaDirective> FindDirective(std::string_view side, MediaKind kind);

}  // namespace tessaro
