#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/side_code_page.h"

namespace tessaro {

class Disk;

// Where the media files of a card file are looked for.
struct MediaFolders {
  std::filesystem::path folder;       // the card file's own folder; empty = none
  std::filesystem::path alternative;  // tried when the file is not in `folder`; empty = none
  SideCodePages pages = {};           // names may be written in those of the sides, or in 1252 as all other text is
  bool operator==(const MediaFolders&) const = default;
};

// Those of a card file. `media_folder` is a setting in code page 1252; an absolute path stands for itself.
MediaFolders FoldersOf(const std::filesystem::path& card_file, std::string_view media_folder,
                       const SideCodePages& pages = {});

// Finds the files that cards name. Backslashes separate folders, letter case does not count, bytes are a code page.
// What it learned of a folder it keeps, so that a side with many pictures is quick.
class MediaFinder {
 public:
  // `disk` must live longer.
  MediaFinder(const Disk& disk, const MediaFolders& folders);
  // Nothing when there is no such file. A name that is spelled exactly like a file means that file.
  std::optional<std::filesystem::path> Find(std::string_view name);
  // Looks at the disk anew from now on.
  void Forget();

 private:
  using Names = std::map<std::string, std::string>;  // by lower case, in the code page where it can hold the name
  struct Folder {
    Names files;
    Names folders;
  };

  // The name as UTF-8.
  std::optional<std::filesystem::path> FindUtf8(std::string_view name);
  std::optional<std::filesystem::path> FindIn(std::filesystem::path folder, const std::vector<std::string_view>& parts);
  const Folder& NamesIn(const std::filesystem::path& folder);

  const Disk* disk_;
  MediaFolders folders_;
  std::map<std::string, Folder> known_;
};

// One search with a MediaFinder of its own.
std::optional<std::filesystem::path> FindMedia(const Disk& disk, const MediaFolders& folders, std::string_view name);

enum class MediaKind { Picture, Video, Sound, Text };

// A media directive of a side, such as "#SHOW:bild.bmp+".
struct MediaDirective {
  std::string name;         // as written, without the marker
  bool text_first = false;  // the card's text is shown first, the file on request
};

// The first directive of this kind on the side, if it has one that applies.
std::optional<MediaDirective> FindDirective(std::string_view side, MediaKind kind);

}  // namespace tessaro
