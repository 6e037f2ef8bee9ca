#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

#include "platform/disk.h"
#include "store/file/ini_file.h"
#include "store/index/learn_index.h"
#include "store/index/link_index.h"
#include "store/table/card_columns.h"
#include "store/table/card_table.h"
#include "store/table/content_stamp.h"

namespace tessaro {

// What a card file holds: loaded and replaced as a whole.
struct CardContent {
  CardTable cards;
  CardColumns columns;
  LearnIndex learn_index;
  LinkIndex link_index;
  IniFile settings;
  bool settings_unreadable = false;  // there are settings that we could not read: they are not written over
  int64_t highest_id = 0;
  bool equal_keys_differ = false;              // from their order in indexes that were built anew
  std::optional<int64_t> unknown;              // counted when they were opened, as long as none was changed
  ContentStamp stamp;                          // of the card file as it was read or written last
  std::optional<FileState> on_disk;            // the card file as it was read or written last
  std::vector<std::filesystem::path> damaged;  // files that were read, damaged, and are not yet set aside
};

}  // namespace tessaro
