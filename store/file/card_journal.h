#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/background_flush.h"
#include "platform/clock.h"
#include "platform/disk.h"
#include "store/file/journal.h"

namespace tessaro {

class CardTable;

// What the names of the journals begin with, before a number, that were put aside from this path.
std::string BeginOfAsideName(const std::filesystem::path& journal);

// Keeps the journal of the open card file: what changed since the last save stands on the disk the moment it happens.
// There is a journal file only while there are unsaved changes. When the disk fails, the next change tries to write
// anew all that changed, so a journal is always whole or missing.
class CardJournal {
 public:
  CardJournal(Disk& disk, const Clock& clock) : disk_(disk), clock_(clock) {}

  // Called once when changes cannot be kept, and again only after they could be kept in between. It must not change
  // cards.
  void SetFailureObserver(std::function<void()> observer) { tell_failure_ = std::move(observer); }
  // From now on a thread brings records to the disk; else only Flush does.
  void FlushInBackground();

  // The journal that is to be kept from now on, for a card file with this content; it has no changes yet. A file with
  // that name is not touched before the first change, which then puts it aside (see PutAside).
  void Begin(const std::filesystem::path& path, const ContentStamp& base);
  // The same for cards that differ from that content as a whole.
  void BeginWithTable(const std::filesystem::path& path, const ContentStamp& base);
  // Ends without a trace: the changes were given up.
  void End();

  // What stands at `path` for a card file of this stamp.
  struct Found {
    bool exists = false;
    bool fits = false;                   // it tells of this state of the card file
    std::vector<JournalRecord> changes;  // what the card file lacks; see ChangesSince
  };
  Found Find(const std::filesystem::path& path, const ContentStamp& stamp) const;
  // Gives the journal file at `path` another name, "X-Antworten-1.mlj" or a higher number, and returns that; empty when
  // there is none or it failed.
  std::filesystem::path PutAside(const std::filesystem::path& path);

  // The fields of one row changed; no columns: all of them.
  void RowChanged(CardTable& cards, int row, std::span<const int> columns);
  // Rows are to come, go or change in one step. May be called on another thread, beside the change itself; what it
  // returns, whether the record is in the journal, is for EditDone.
  bool PutEdit(const EditChange& change);
  // The step is over. The journal is written anew unless it holds the record of what was done: `put` is also false when
  // the step itself failed.
  void EditDone(CardTable& cards, bool put);
  // The rows were all replaced.
  void TableChanged(CardTable& cards);
  // The cards were written to a file that has this stamp and will be moved into its place.
  void Written(const ContentStamp& stamp);
  // It is in its place: no change is unsaved.
  void Saved(const ContentStamp& stamp);
  // Takes these rows, or the whole table, as unsaved too and writes a journal of them in place of the one at the path.
  void Adopt(CardTable& cards, std::vector<int> rows, bool whole_table);

  // Between these the records are gathered and written in large pieces.
  void BeginBatch() { batch_ = true; }
  void EndBatch(CardTable& cards);
  // True while there are changes that could not be kept.
  bool failing() const { return failing_; }
  // Waits until all records are on the disk; true also when there are none.
  bool Flush();

 private:
  JournalRecord RowRecord(const CardTable& cards, int row, std::span<const int> columns) const;
  JournalRecord TableRecord(CardTable& cards) const;
  // All changes are kept now, or could not be.
  void Noted(bool kept);
  // The head, and that what was written since may be there as well: a save that failed may have replaced the cards.
  std::string Beginning() const;
  std::string AllChanges(CardTable& cards);
  bool Push(CardTable& cards);
  bool WritePieces(std::span<const std::string_view> pieces);
  bool Put(std::span<const std::string_view> pieces);
  // Begins the journal file again with all changes, ...
  bool WriteAnew(CardTable& cards);
  // ... or with this text, in pieces.
  bool BeginFile(std::span<const std::string_view> pieces);
  void Close();

  Disk& disk_;
  const Clock& clock_;
  std::function<void()> tell_failure_;
  std::filesystem::path path_;  // empty: no journal is kept
  ContentStamp base_;
  std::vector<ContentStamp> written_;   // since then, by saves that failed
  std::unique_ptr<WritableFile> file_;  // null before the first change, and after a failure
  uint64_t size_ = 0;                   // bytes written to it
  bool ours_ = false;                   // the file at the path was written by this journal
  std::vector<int> rows_;               // changed since the last save; may hold a row several times
  bool whole_table_ = false;            // the changed rows do not tell all that changed since the last save
  bool batch_ = false;
  std::string gathered_;
  bool failing_ = false;
  bool told_ = false;                            // since a record was written last
  std::unique_ptr<BackgroundFlush> background_;  // last, so that its thread ends first
};

}  // namespace tessaro
