#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/disk.h"
#include "platform/file_lock.h"
#include "store/file/card_content.h"
#include "store/file/card_file_types.h"
#include "store/file/card_journal.h"
#include "store/file/card_watcher.h"
#include "store/file/deletion_marks.h"
#include "store/table/table_edit.h"

namespace tessaro {

// What becomes of the indexes in an edit: they follow at once, or the cards that come are in none of them before they
// are built again (NeedsRebuild), for many edits in a row that only add cards or take them out again.
enum class IndexWork { Follow, Later };

// The card file that is open, or none. It owns the card table with both indexes and the settings of the file. There is
// one in a running program; functions that work on cards take a reference to it.
class CardFile {
 public:
  // Counts the unknown cards, by a rule that the store does not know.
  using UnknownCounter = int64_t (*)(const CardTable& cards, const CardColumns& columns);
  // With `count_unknown` opening a file counts them, on another thread beside the work for the indexes.
  explicit CardFile(Disk& disk = RealDisk(), const Clock& clock = SystemClock(),
                    UnknownCounter count_unknown = nullptr);
  ~CardFile();
  CardFile(const CardFile&) = delete;
  CardFile& operator=(const CardFile&) = delete;

  // The open content; empty when no file is open. What is changed here directly is not journalled: learning writes by
  // CardWriter, all else by CardEdit.
  CardTable& cards() { return content_.cards; }
  const CardTable& cards() const { return content_.cards; }
  LearnIndex& learn_index() { return content_.learn_index; }
  const LearnIndex& learn_index() const { return content_.learn_index; }
  LinkIndex& link_index() { return content_.link_index; }
  IniFile& settings() { return content_.settings; }
  const IniFile& settings() const { return content_.settings; }
  const CardColumns& columns() const { return content_.columns; }

  // Whether a file is open.
  bool IsOpen() const { return !paths_.cards.empty(); }
  const CardFilePaths& paths() const { return paths_; }
  bool changed() const { return changed_; }
  // Nothing is written to the file, its companions or a journal; changes can be saved under another name.
  bool read_only() const { return read_only_; }
  // Whether other programs are kept away from it.
  bool locked() const { return lock_ != nullptr; }
  // The user insists: a file that was opened for reading only is written like any other. Tells what an earlier run
  // could not save (`unsaved`, `put_aside`).
  OpenReport WriteWithoutLock();
  // To be called after every change of a card row, with the columns that changed (none: all of them): the file is
  // changed, and the journal keeps it.
  void RowChanged(int row, std::span<const int> columns = {});
  // The same after rows came, went or moved.
  void TableChanged();
  // Does this to the cards as one change: both indexes follow, the highest number rises where it must, the journal
  // keeps it, and who watches is told. Gives where the rows went. Nothing, and all as it was, when there are no such
  // rows or no room for them. For CardEdit, which knows how to undo it. `old_ids`: see EditChangeOf.
  std::optional<RowShift> Edit(TableEdit edit, PackedFields old_ids = {}, IndexWork index_work = IndexWork::Follow);
  CardWatchers& watchers() { return watchers_; }
  DeletionMarks& deletion_marks() { return deletion_marks_; }
  const DeletionMarks& deletion_marks() const { return deletion_marks_; }
  // Between these, many rows are changed: their records go to the disk in large pieces.
  void BeginManyChanges() { journal_.BeginBatch(); }
  void EndManyChanges() { journal_.EndBatch(content_.cards); }

  // Cards between the marker rows; 0 when nothing is open.
  int CardCount() const;
  // As counted at opening; nothing when that was not done, or a card changed since.
  std::optional<int64_t> unknown_at_opening() const { return content_.unknown; }

  // The highest card number that was ever given in this file; a new card takes the next one.
  int64_t highest_id() const { return content_.highest_id; }
  // The number for a new card, IdText of the highest number + 1, which is raised by that.
  std::string IssueId();
  void RecountIds();
  // The same where the highest one is known, because all cards have just been numbered.
  void SetHighestId(int64_t id) { content_.highest_id = id; }
  // The card table row of the card with this number; 0 when there is none.
  int RowOfId(int64_t id) const;

  // Opens a card file in place of the one that is open. Anything but Opened leaves the open file as it was. A symbolic
  // link opens the file that it leads to. Where other programs cannot be kept away the file opens for reading only.
  // A save that was cut short between two renames is finished or taken back first.
  [[nodiscard]] OpenReport Open(const std::filesystem::path& path, const StageObserver& observer = {});
  // Makes a new card file with its one index card, saves it and opens it. An existing file at this path is replaced
  // (its backup is kept as for every save): the caller asks first. False: nothing was opened. Like SaveAs it goes on
  // where other programs cannot be kept away; see locked().
  [[nodiscard]] bool CreateNew(const std::filesystem::path& path);
  // Loads the cards of `path`, a card file or a backup, in place of the open ones and rebuilds both indexes; the open
  // file keeps its own name and is changed. Without an open file it opens `path`, for a backup X.ml~ under the name
  // X.mlb. Anything but Opened leaves everything as it was.
  [[nodiscard]] OpenReport Restore(const std::filesystem::path& path, const StageObserver& observer = {});
  // The same without an open file, for a backup of any name: it is opened as the card file `cards`, which may be
  // missing.
  [[nodiscard]] OpenReport RestoreAs(const std::filesystem::path& cards, const std::filesystem::path& backup,
                                     const StageObserver& observer = {});
  // Saves cards, indexes and settings, and clears the changed flag when all went well. One backup generation is kept
  // beside the file. A failure does not keep the later files from being written; the first one is returned.
  [[nodiscard]] SaveResult Save(const StageObserver& observer = {});
  // Writes cards and indexes under another name; the open file stays the open file and keeps its changed flag. Never
  // writes over a file that another program has open (CardsFailed).
  [[nodiscard]] SaveResult SaveCopy(const std::filesystem::path& path, const StageObserver& observer = {});
  // Saves under another name, which then is the open file, unless CardsFailed is returned.
  [[nodiscard]] SaveResult SaveAs(const std::filesystem::path& path, const StageObserver& observer = {});
  // Writes only the settings of the card file. Like every save it leaves settings alone that could not be read.
  [[nodiscard]] bool SaveSettings();
  // Rebuilds both indexes. False when the card table has a defect: already the learning index cannot be built, and both
  // are as they were.
  [[nodiscard]] bool RebuildIndexes(const StageObserver& observer = {});
  // Whether cards with equal keys may stand in another order than RebuildIndexes would give them, after Edit, or cards
  // are missing that wait for it. What made many cards has the indexes rebuilt when it ends.
  bool NeedsRebuild() const { return content_.equal_keys_differ; }
  // Writes both indexes where they are those of the card file on the disk. As long as that differs from the open cards,
  // nothing is written: the indexes go with the next save.
  [[nodiscard]] SaveResult SaveIndexes(const StageObserver& observer = {});
  // Closes the file; changes that were not saved are given up.
  void Close();

  // After Open reported changes of an earlier run: takes them over into the cards, rebuilds the indexes and marks the
  // file as changed. A change that fits no row ends it; what was before it counts. False: the card table has a defect.
  [[nodiscard]] bool TakeOverUnsaved(const StageObserver& observer = {});
  // ... or keeps them under another name, which is returned; empty when that failed.
  std::filesystem::path PutUnsavedAside();
  // What was put aside for the open file, by name; files that hold no changes are left out.
  std::vector<ChangesPutAside> ListPutAside() const;
  // Takes over such a file, as TakeOverUnsaved does; it stays. False also when it does not fit, or there are changes
  // that are not saved yet: then the cards are as they were.
  [[nodiscard]] bool TakeOverPutAside(const std::filesystem::path& path, const StageObserver& observer = {});
  CardJournal& journal() { return journal_; }

  // What the card file on the disk was when it was read or written last.
  const std::optional<FileState>& on_disk() const { return content_.on_disk; }
  const ContentStamp& stamp() const { return content_.stamp; }
  // True when another program has written the file on disk since it was opened or saved last.
  bool ChangedOnDisk() const;
  // Clamps `bytes_per_card` to 300 ... 2000 (the clamped value replaces it) and estimates the space of a save.
  SpaceEstimate EstimateSpace(int64_t& bytes_per_card, const std::filesystem::path& target) const;

 private:
  // Of the file that symbolic links lead to: whatever name it was called by, a file has one set of companions.
  CardFilePaths RealPathsFor(const std::filesystem::path& cards) const;
  OpenReport LoadCards(const std::filesystem::path& path, const StageObserver& observer, CardContent& content);
  void LoadIndexes(const CardFilePaths& paths, const StageObserver& observer, CardContent& content, OpenReport& report);
  // A defect leaves that index as it was and ends the work.
  static IndexDefect BuildIndexes(CardContent& content, const CardIds& ids, const StageObserver& observer);
  static bool BuildLearnIndex(CardContent& content, const CardIds& ids, const StageObserver& observer);
  static bool BuildLinkIndex(CardContent& content, const CardIds& ids, const StageObserver& observer);
  // True when the learning index was built anew.
  bool FollowInIndexes(const TableEdit& edit, const RowShift& shift);
  void LeaveOutOfIndexes(const RowShift& shift);
  void RaiseHighestId(int64_t id);
  void TellOfChanges(const TableEdit& edit, const RowShift& shift) const;
  // Takes the lock of a card file unless it is that of the open one; it may be that none can be had. False: another
  // program, or this one, has the file or one that shares its companions; `report` says who.
  bool TakeLock(const CardFilePaths& paths, std::unique_ptr<FileLock>& lock, OpenReport& report);
  // The content takes the place of the open one, whose unsaved changes are given up.
  void Become(CardContent content, const CardFilePaths& paths, std::unique_ptr<FileLock> lock);
  // The stamp of what lies under the name of the card file, else of what the last save kept of it.
  ContentStamp LastStamp(const CardFilePaths& paths) const;
  // What a journal holds for cards of a backup that take the place of what has the stamp `replaced`.
  CardJournal::Found FindForBackup(const std::filesystem::path& journal, const ContentStamp& backup,
                                   const ContentStamp& replaced) const;
  void TakeNoteOf(CardJournal::Found found, OpenReport& report);
  void BeginJournal(OpenReport& report);

  SaveResult WriteFiles(CardContent& content, const CardFilePaths& paths, const StageObserver& observer);
  // The same for the open content under the names of another card file, whose lock it takes.
  SaveResult WriteOtherFiles(const CardFilePaths& paths, std::unique_ptr<FileLock>& lock,
                             const StageObserver& observer);
  SaveResult WriteIndexes(const CardContent& content, const CardIds& ids, const CardFilePaths& paths,
                          const StageObserver& observer);
  template <typename Index>
  bool WriteIndex(const std::filesystem::path& path, const CardIds& ids, const Index& index, Progress* progress);
  // Puts by the damaged files that a save under these names would lose.
  bool KeepDamaged(CardContent& content, const CardFilePaths& paths);
  bool PutBy(const std::filesystem::path& damaged, const std::filesystem::path& cards);
  bool WriteSettings(const CardContent& content, const std::filesystem::path& path);

  Disk& disk_;
  UnknownCounter count_unknown_;
  CardContent content_;
  CardFilePaths paths_;  // all empty when nothing is open
  std::unique_ptr<FileLock> lock_;
  CardJournal journal_;
  std::vector<JournalRecord> unsaved_;  // found on opening and neither taken over nor put aside yet
  CardWatchers watchers_;
  DeletionMarks deletion_marks_;
  bool changed_ = false;
  bool read_only_ = false;
};

}  // namespace tessaro
