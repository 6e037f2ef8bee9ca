#pragma once

#include <cstdint>
#include <string_view>

#include "exchange/table_import.h"
#include "exchange/text_cards.h"
#include "exchange/work_observer.h"
#include "platform/disk.h"
#include "store/file/card_file.h"

namespace tessaro {

inline constexpr int kMostTopic = 19;

enum class ImportEnd {
  Done,
  Cancelled,
  NoNumbers,  // more cards than there are free card numbers
  NoCards,    // the table holds none: a card file without cards cannot be opened
  Failed,
};
struct ImportResult {
  ImportEnd end = ImportEnd::Done;
  int64_t cards = 0;
};

// Adds the cards of a text behind the cards of the open file, with new numbers and nothing learned, and builds both
// indexes anew. `check` of the same text found it good. The observer is told the bytes. On anything but Done the cards
// are as they were; where many had been added by then, the file counts as changed all the same.
ImportResult ImportText(CardFile& file, std::string_view text, const TextLayout& layout, const TextCheck& check,
                        int topic, const WorkObserver& observer = {});

// Replaces a card file on the disk by the cards of a table, with the old one as its backup. Its indexes are removed:
// they are those of other cards. On anything but Done the card file is as it was.
ImportResult ReplaceByTable(Disk& disk, const CardFilePaths& paths, std::string_view text, const TableLayout& layout,
                            const TableCheck& check, const WorkObserver& observer = {});

}  // namespace tessaro
