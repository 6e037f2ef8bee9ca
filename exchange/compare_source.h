#pragma once

#include <filesystem>

#include "platform/disk.h"
#include "store/file/card_file.h"

namespace tessaro {

enum class SourceLoad {
  Loaded,
  Internal,  // the open card file itself, which stands as it is on the disk
  CannotOpen,
  WrongType,
  CannotLoad,
  NoCards,
  TargetChanged,    // the open card file itself, but with changes that are not saved
  NotIdentical,     // the open card file itself, but another program has written it
  OtherCharacters,  // its texts have characters that the code pages of the open one lack
};

// Reads the cards of another card file to compare them with the open one, in whose code pages they then are. Only
// Loaded changes `cards`.
SourceLoad LoadSource(Disk& disk, const CardFile& file, const std::filesystem::path& path, CardTable& cards);

}  // namespace tessaro
