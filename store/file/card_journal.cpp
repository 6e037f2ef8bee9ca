#include "store/file/card_journal.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/memory_file.h"
#include "store/table/card_table.h"

namespace tessaro {
namespace {

namespace fs = std::filesystem;

constexpr size_t kBatchSize = size_t{1} << 20U;

}  // namespace

std::string BeginOfAsideName(const fs::path& journal) {
  return ShortName(journal.stem().string()) + "-Antworten-";
}

void CardJournal::FlushInBackground() {
  background_ = std::make_unique<BackgroundFlush>();
}

void CardJournal::Begin(const fs::path& path, const ContentStamp& base) {
  Close();
  path_ = path;
  ours_ = false;
  told_ = false;
  Saved(base);
}

void CardJournal::BeginWithTable(const fs::path& path, const ContentStamp& base) {
  Begin(path, base);
  whole_table_ = true;
}

void CardJournal::End() {
  Close();
  if (ours_) (void)disk_.Remove(path_);
  path_.clear();
}

CardJournal::Found CardJournal::Find(const fs::path& path, const ContentStamp& stamp) const {
  Found found;
  found.exists = disk_.Exists(path);
  if (!found.exists) return found;
  const std::optional<std::string> text = ReadFile(disk_, path);
  std::optional<JournalContents> contents = text ? ParseJournal(*text) : std::nullopt;
  if (!contents) return found;
  std::optional<std::vector<JournalRecord>> changes = ChangesSince(std::move(*contents), stamp);
  found.fits = changes.has_value();
  if (changes) found.changes = std::move(*changes);
  return found;
}

fs::path CardJournal::PutAside(const fs::path& path) {
  const std::string begin = BeginOfAsideName(path);
  int number = 1;
  fs::path aside;
  do {
    aside = path.parent_path() / (begin + std::to_string(number++) + path.extension().string());
  } while (disk_.Exists(aside));
  return disk_.Rename(path, aside) ? aside : fs::path();
}

void CardJournal::RowChanged(CardTable& cards, int row, std::span<const int> columns) {
  if (path_.empty()) return;
  rows_.push_back(row);
  if (batch_ && failing_) return;
  if (file_ == nullptr) return Noted(WriteAnew(cards));
  gathered_ += JournalText(RowRecord(cards, row, columns));
  if (!batch_ || gathered_.size() >= kBatchSize) Noted(Push(cards));
}

bool CardJournal::PutEdit(const EditChange& change) {
  if (path_.empty()) return true;
  const bool first = rows_.empty() && !whole_table_;
  // Rows that were changed before have other numbers now.
  whole_table_ = whole_table_ || change.edit.MovesRows();
  rows_.insert(rows_.end(), change.edit.replaced.begin(), change.edit.replaced.end());
  if ((batch_ && failing_) || (file_ == nullptr && !first)) return false;
  const PiecedText record = JournalPieces(clock_.Now(), change);
  const bool is_short = record.size() < kBatchSize;
  std::string before = file_ == nullptr ? Beginning() : std::exchange(gathered_, std::string());
  if (is_short) before += record.Joined();
  if (batch_ && file_ != nullptr && before.size() < kBatchSize && is_short) {
    gathered_ = std::move(before);
    return true;
  }
  std::vector<std::string_view> pieces = is_short ? std::vector<std::string_view>() : record.pieces();
  pieces.insert(pieces.begin(), before);
  return file_ == nullptr ? BeginFile(pieces) : Put(pieces);
}

void CardJournal::EditDone(CardTable& cards, bool put) {
  if (path_.empty()) return;
  Noted(put || (!(batch_ && failing_) && WriteAnew(cards)));
}

void CardJournal::Noted(bool kept) {
  failing_ = !kept;
  if (!kept) Close();
  const bool told = std::exchange(told_, !kept);
  if (!kept && !told && tell_failure_) tell_failure_();
}

void CardJournal::TableChanged(CardTable& cards) {
  if (path_.empty()) return;
  whole_table_ = true;
  if (file_ == nullptr) return Noted(WriteAnew(cards));
  gathered_ += JournalText(TableRecord(cards));
  Noted(Push(cards));
}

void CardJournal::Written(const ContentStamp& stamp) {
  written_.push_back(stamp);
  const std::string text = JournalText({clock_.Now(), SavePoint{stamp}});
  if (file_ == nullptr || Put(std::array{std::string_view(text)})) return;
  // The save tells whether the disk works; if it does not, the next change writes the journal anew.
  Close();
}

void CardJournal::Saved(const ContentStamp& stamp) {
  Close();
  base_ = stamp;
  written_.clear();
  rows_.clear();
  whole_table_ = false;
  failing_ = false;
  if (ours_) ours_ = !disk_.Remove(path_);
}

void CardJournal::Adopt(CardTable& cards, std::vector<int> rows, bool whole_table) {
  rows_ = std::move(rows);
  whole_table_ = whole_table_ || whole_table;
  ours_ = true;
  Noted(WriteAnew(cards));
}

void CardJournal::EndBatch(CardTable& cards) {
  batch_ = false;
  if (failing_ && (whole_table_ || !rows_.empty())) return Noted(WriteAnew(cards));
  if (!gathered_.empty()) Noted(Push(cards));
}

bool CardJournal::Flush() {
  return file_ == nullptr || (file_->Flush() && disk_.FlushFolder(path_.parent_path()));
}

JournalRecord CardJournal::RowRecord(const CardTable& cards, int row, std::span<const int> columns) const {
  RowChange change;
  change.row = static_cast<uint32_t>(row);
  const auto add = [&](int column) {
    change.fields.push_back({static_cast<uint32_t>(column), std::string(cards.Peek(column, row))});
  };
  for (const int column : columns) add(column);
  for (int column = 1; columns.empty() && column <= cards.ColumnCount(); ++column) add(column);
  return {clock_.Now(), std::move(change)};
}

JournalRecord CardJournal::TableRecord(CardTable& cards) const {
  // Writing the table moves its cursor.
  const int row = cards.CurrentRow();
  MemoryWriter file;
  (void)cards.SaveTo(file);
  cards.GoTo(row);
  return {clock_.Now(), TableChange{file.TakeText()}};
}

std::string CardJournal::Beginning() const {
  std::string text = JournalHead(base_);
  for (const ContentStamp& stamp : written_) text += JournalText({clock_.Now(), SavePoint{stamp}});
  return text;
}

std::string CardJournal::AllChanges(CardTable& cards) {
  std::string text = Beginning();
  if (whole_table_) return text += JournalText(TableRecord(cards));
  std::sort(rows_.begin(), rows_.end());
  rows_.erase(std::unique(rows_.begin(), rows_.end()), rows_.end());
  for (const int row : rows_) text += JournalText(RowRecord(cards, row, {}));
  return text;
}

bool CardJournal::Push(CardTable& cards) {
  const bool put = Put(std::array{std::string_view(gathered_)}) || WriteAnew(cards);
  gathered_.clear();
  return put;
}

bool CardJournal::WriteAnew(CardTable& cards) {
  const std::string text = AllChanges(cards);
  return BeginFile(std::array{std::string_view(text)});
}

bool CardJournal::WritePieces(std::span<const std::string_view> pieces) {
  for (const std::string_view piece : pieces) {
    if (!file_->Write(piece)) return false;
    size_ += piece.size();
  }
  return true;
}

bool CardJournal::Put(std::span<const std::string_view> pieces) {
  if (background_ != nullptr && background_->TakeFailure()) return false;
  if (!WritePieces(pieces)) return false;
  const std::optional<FileState> state = disk_.State(path_);
  if (!state || state->size != size_) return false;
  if (background_ != nullptr) background_->Written();
  return true;
}

bool CardJournal::BeginFile(std::span<const std::string_view> pieces) {
  Close();
  const bool exists = disk_.Exists(path_);
  if (exists && !ours_ && PutAside(path_).empty()) return false;
  const fs::path fresh = BesideName(path_);
  file_ = disk_.Create(fresh);
  if (file_ == nullptr) return false;
  file_->KeepOthersAway();
  size_ = 0;
  // What replaces a good journal has to be on the disk before; a first record may wait like all others.
  const bool written = WritePieces(pieces) && (!exists || file_->Flush());
  const std::optional<FileState> state = disk_.State(fresh);
  if (!written || !state || state->size != size_ || !disk_.Rename(fresh, path_)) {
    (void)disk_.Remove(fresh);
    return false;
  }
  ours_ = true;
  if (background_ == nullptr) return true;
  background_->SetFlush([file = file_.get(), disk = &disk_, folder = path_.parent_path()] {
    return file->Flush() && disk->FlushFolder(folder);
  });
  background_->Written();
  return true;
}

void CardJournal::Close() {
  if (background_ != nullptr) {
    background_->SetFlush(nullptr);
    (void)background_->TakeFailure();
  }
  file_.reset();
  gathered_.clear();
}

}  // namespace tessaro
