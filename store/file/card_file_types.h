#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "platform/file_lock.h"
#include "platform/progress.h"

// What opening and saving a card file say about it.
namespace tessaro {

// The companions of X.mlb: the same drive, folder and name with another ending.
struct CardFilePaths {
  std::filesystem::path cards;        // X.mlb
  std::filesystem::path learn_index;  // X.row
  std::filesystem::path link_index;   // X.idt
  std::filesystem::path settings;     // X.ini
  std::filesystem::path backup;       // X.ml~
  std::filesystem::path journal;      // X.mlj
};
CardFilePaths PathsFor(const std::filesystem::path& cards);
// The sign that a program has the card file open, see Disk::Lock.
std::filesystem::path LockPathOf(const std::filesystem::path& cards);

// True for a path that ends in exactly ".mlb" or ".MLB"; a mixed-case ending is deliberately refused.
bool HasCardFileType(const std::filesystem::path& path);

// What happens, as it happens, for the status line.
enum class FileStage {
  LoadCards,
  LoadLearnIndex,
  LoadLinkIndex,
  BuildLearnIndex,
  BuildLinkIndex,
  SaveCards,
  SaveLearnIndex,
  SaveLinkIndex
};
// `size` is that of the file to be loaded in bytes, the number of table rows when building, 0 when saving.
// `progress`, which may be null, hears how far the stage has come.
struct StageObserver {
  std::function<void(FileStage stage, uint64_t size)> begun;
  Progress* progress = nullptr;
};
inline void Tell(const StageObserver& observer, FileStage stage, uint64_t size) {
  if (observer.begun) observer.begun(stage, size);
}

// What became of a save that was cut short between two renames, so that no file had the name of the card file.
enum class CutSave {
  None,
  Finished,  // the new file was whole and got its name
  TakenBack  // the file before it got its name again
};

enum class OpenResult {
  Opened,
  WrongType,   // the name does not end in .mlb or .MLB
  CannotOpen,  // no such file, or not readable
  CannotLoad,  // reading broke off
  Unusable,    // no cards in it, or not a card file
  InUse,       // another running program has it open
  NoLock,      // another program could not be kept away from it
};
// Changes that an earlier run of the program could not save before it ended.
struct UnsavedChanges {
  int cards = 0;             // that were changed one by one, that came or went
  bool whole_table = false;  // before that, the cards were replaced as a whole
  int64_t first = 0;         // when, seconds since 1970
  int64_t last = 0;
};

// Such changes in a file of their own, because they were not wanted or belong to another state of the card file.
struct ChangesPutAside {
  std::filesystem::path path;
  UnsavedChanges changes;
  bool fit = false;  // to the card file as it was read or written last
};

// The index that could not be built because of a defect of the card table; of two the first.
enum class IndexDefect { None, LearnIndex, LinkIndex };

struct OpenReport {
  OpenResult result = OpenResult::Opened;
  bool learn_index_rebuilt = false;  // its file is missing or does not fit
  bool link_index_rebuilt = false;
  bool index_unfit = false;  // one of these files is there and does not fit
  IndexDefect index_defect = IndexDefect::None;
  bool settings_unreadable = false;  // there are settings that could not be read: no save writes over them
  bool start_missing = false;        // the file lacks its first row; `cards` cards were read
  bool end_missing = false;          // it broke off before its end row
  int cards = 0;
  std::optional<UnsavedChanges> unsaved;  // the caller asks whether to take them over
  std::filesystem::path put_aside;        // changes of another state of the file were found and now have this name
  LockHolder in_use_by;                   // for InUse
  std::filesystem::path twin;             // for InUse: the file that shares its companions, if there is one
  bool read_only = false;                 // another program could not be kept away from it; see WriteWithoutLock
  CutSave cut_save = CutSave::None;
};

// ReadOnly: nothing was written, see CardFile::read_only.
enum class SaveResult { Saved, ReadOnly, CardsFailed, LearnIndexFailed, LinkIndexFailed, SettingsFailed };

struct SpaceEstimate {
  uint64_t needed = 0;           // bytes: cards times the clamped bytes-per-card estimate, plus 20 %
  std::optional<uint64_t> free;  // bytes free on the target drive; nothing when it cannot be told
  bool Enough() const { return !free || needed <= *free; }
};

}  // namespace tessaro
