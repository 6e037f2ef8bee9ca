#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/disk.h"
#include "store/file/backup_rule.h"
#include "store/table/content_stamp.h"

namespace tessaro {

// Dated copies of card files, all in one folder that a person can read, too:
//
//   Erste Schritte 3f09c1d2a4b5 2026-11-21 07.13.52 Nr 12 Karten 37.ml~
//
// The name of the card file and a sign of its whole path, the time of the save, the number of the copy, the number of
// cards. The copies of a card file are in the order of their numbers, so a clock set back does no harm. Their ending
// keeps them from being opened, and learned in, by mistake.
struct GenerationName {
  std::string card_file;  // name and sign
  LocalTime saved;
  int64_t number = 0;  // from 1
  int64_t cards = 0;
  bool operator==(const GenerationName&) const = default;
};
std::string FileNameOf(const GenerationName& name);
// Nothing for any name that FileNameOf would not write: such files are none of ours.
std::optional<GenerationName> ReadGenerationName(std::string_view file_name);

class CardTable;
class Progress;

struct Generation {
  GenerationName name;
  std::filesystem::path path;
  uint64_t bytes = 0;
};

struct GenerationSettings {
  bool on = true;
  int64_t most_mb = 1000;  // what the copies of all card files may take together, in 1,000,000 bytes
};

// A card file directly after a save.
struct SavedCards {
  std::filesystem::path path;
  FileState state;
  ContentStamp stamp;  // of what was written
  int64_t cards = 0;
};

enum class GenerationResult {
  Made,
  Overtaken,  // the file is no longer the one that was saved: nothing to copy
  NoRoom,     // it would take the last room on the drive
  Failed,     // not written, or what was read back is not what was saved
};

// The folder of the copies. May be used from any one thread at a time.
class GenerationFolder {
 public:
  // `disk` must live longer. The folder need not exist for looking.
  GenerationFolder(Disk& disk, std::filesystem::path folder) : disk_(disk), folder_(std::move(folder)) {}

  // The copies of this card file, the newest first.
  std::vector<Generation> Of(const std::filesystem::path& card_file) const;

  // Makes a copy (and the folder), reads it back and counts it, and only then gives it its name and lets older ones go:
  // those that GenerationsToKeep does not keep and, over all card files, the oldest while all together take more than
  // `most_mb`. The newest one of a card file always stays. A failure leaves all older copies. `now`: the time of the
  // save.
  GenerationResult Add(const SavedCards& saved, const LocalTime& now, const GenerationSettings& settings);
  // The same for cards as they are in memory, whatever lies under the name of their file. `progress` hears of fields
  // written.
  GenerationResult AddCards(const std::filesystem::path& card_file, CardTable& cards, const LocalTime& now,
                            const GenerationSettings& settings, Progress* progress = nullptr);

 private:
  std::vector<Generation> All() const;
  // Makes the new copy at the path that it is given, and names it.
  using MakeCopy = std::function<GenerationResult(const std::filesystem::path& fresh)>;
  GenerationResult AddBy(const MakeCopy& make, const std::filesystem::path& card_file, int64_t cards,
                         const LocalTime& now, const GenerationSettings& settings);
  GenerationResult CopyTo(const SavedCards& saved, const std::filesystem::path& fresh);
  void LetGo(const std::filesystem::path& card_file, uint64_t most_bytes);

  Disk& disk_;
  std::filesystem::path folder_;
};

}  // namespace tessaro
