#include "store/file/card_file.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/other_thread.h"
#include "store/file/card_layout.h"
#include "store/file/cut_save.h"
#include "store/file/file_text.h"

namespace tessaro {
namespace {

namespace fs = std::filesystem;

bool EndsInAny(const fs::path& path, std::string_view one, std::string_view other) {
  const std::string name = path.filename().string();
  return name.ends_with(one) || name.ends_with(other);
}

bool HasBackupType(const fs::path& path) {
  return EndsInAny(path, ".ml~", ".ML~");
}

// The card file that has this backup.
fs::path CardsOfBackup(const fs::path& backup) {
  std::string name = backup.string();
  name.back() = name.ends_with(".ML~") ? 'B' : 'b';
  return name;
}

// The other card file with the same companions, if there is one.
fs::path TwinOf(Disk& disk, const fs::path& cards) {
  const fs::path twin = fs::path(cards).replace_extension(cards.extension() == ".mlb" ? ".MLB" : ".mlb");
  const std::optional<FileState> state = disk.State(twin);
  const std::optional<FileState> own = disk.State(cards);
  // A drive may take both names for that of one file.
  return state && (!own || state->inode != own->inode) ? twin : fs::path();
}

OpenReport Refused(OpenResult result) {
  OpenReport report;
  report.result = result;
  return report;
}

}  // namespace

CardFilePaths PathsFor(const fs::path& cards) {
  const auto with_ending = [&](const char* ending) { return fs::path(cards).replace_extension(ending); };
  std::string backup = cards.string();
  if (!backup.empty()) backup.back() = '~';
  return {cards, with_ending(".row"), with_ending(".idt"), with_ending(".ini"), backup, with_ending(".mlj")};
}

// Card files whose endings differ only in their letters' case share all companions, so they share the lock as well.
fs::path LockPathOf(const fs::path& cards) {
  return cards.parent_path() / ("." + ShortName(cards.stem().string()) + ".mlb.lock");
}

bool HasCardFileType(const fs::path& path) {
  return EndsInAny(path, ".mlb", ".MLB");
}

CardFile::CardFile(Disk& disk, const Clock& clock, UnknownCounter count_unknown)
    : disk_(disk), count_unknown_(count_unknown), journal_(disk, clock) {
  watchers_.Add(deletion_marks_);
}
CardFile::~CardFile() = default;

int CardFile::CardCount() const {
  return std::max(content_.cards.RowCount() - 2, 0);
}

std::string CardFile::IssueId() {
  return IdText(++content_.highest_id);
}

void CardFile::RecountIds() {
  content_.highest_id = CardIds(content_.cards).highest();
}

int CardFile::RowOfId(int64_t id) const {
  if (id <= 0) return 0;  // cards without a number of their own count as 0
  const auto has_id = [&](int row) { return LeadingNumber(content_.cards.Peek(content_.columns.id, row)) == id; };
  const int indexed = content_.link_index.RowOfId(id);
  if (indexed == 0 || has_id(indexed)) return indexed;
  // Cards were moved since the index was built.
  for (int row = kFirstCardRow; row <= CardCount() + 1; ++row) {
    if (has_id(row)) return row;
  }
  return 0;
}

CardFilePaths CardFile::RealPathsFor(const fs::path& cards) const {
  return PathsFor(fs::absolute(disk_.Resolve(cards)).lexically_normal());
}

OpenReport CardFile::Open(const fs::path& path, const StageObserver& observer) {
  OpenReport taken;
  const CardFilePaths paths = RealPathsFor(path);
  if (!HasCardFileType(path) || !HasCardFileType(paths.cards)) return Refused(OpenResult::WrongType);
  if (!disk_.Exists(paths.cards) && !WasCutShort(disk_, paths)) return Refused(OpenResult::CannotOpen);
  std::unique_ptr<FileLock> lock;
  if (!TakeLock(paths, lock, taken)) return taken;
  if (!taken.read_only) taken.cut_save = MendCutSave(disk_, paths);
  CardContent content;
  OpenReport report = LoadCards(paths.cards, observer, content);
  report.cut_save = taken.cut_save;
  if (report.result != OpenResult::Opened) return report;
  report.read_only = taken.read_only;
  LoadIndexes(paths, observer, content, report);
  report.settings_unreadable = content.settings_unreadable = !content.settings.Load(disk_, paths.settings);
  Become(std::move(content), paths, std::move(lock));
  read_only_ = report.read_only;
  if (!read_only_) BeginJournal(report);
  return report;
}

OpenReport CardFile::WriteWithoutLock() {
  OpenReport report;
  if (std::exchange(read_only_, false)) BeginJournal(report);
  return report;
}

OpenReport CardFile::LoadCards(const fs::path& path, const StageObserver& observer, CardContent& content) {
  content.on_disk = disk_.State(path);
  const std::unique_ptr<ReadableFile> file = disk_.Open(path);
  if (file == nullptr) return Refused(OpenResult::CannotOpen);
  Tell(observer, FileStage::LoadCards, file->Size());
  content.cards.SetSeparator(kFieldSeparator);
  content.cards.SetNameFromPath(path.string());
  ContentHash hash;
  if (!content.cards.LoadFrom(*file, &hash, observer.progress)) return Refused(OpenResult::CannotLoad);
  content.stamp = hash.Stamp();
  const CardTableState state = CompleteCards(content.cards);
  if (state == CardTableState::Unusable) return Refused(OpenResult::Unusable);
  content.columns = ColumnsOf(content.cards);
  OpenReport report;
  report.cards = content.cards.RowCount() - 2;
  report.start_missing = state == CardTableState::StartMissing;
  report.end_missing = state == CardTableState::EndMissing;
  if (report.start_missing || report.end_missing) content.damaged.push_back(disk_.Resolve(path));
  return report;
}

void CardFile::LoadIndexes(const CardFilePaths& paths, const StageObserver& observer, CardContent& content,
                           OpenReport& report) {
  // A program that ended between writing the cards and writing their indexes has left its journal. Such an index may
  // look right and yet be that of older scores.
  const bool cut_short = disk_.Exists(paths.journal);
  const auto size = [&](const fs::path& path) { return disk_.State(path).value_or(FileState()).size; };
  const auto read = [&](const fs::path& path) { return cut_short ? std::nullopt : FileText::Read(disk_, path); };
  // Threads read the texts and count while the IDs are collected.
  Tell(observer, FileStage::LoadLearnIndex, size(paths.learn_index));
  std::future reading = std::async(OnOtherThread(), [&] {
    return std::array{read(paths.learn_index), read(paths.link_index)};
  });
  std::future counting = std::async(OnOtherThread(), [&] {
    return count_unknown_ == nullptr ? content.unknown : count_unknown_(content.cards, content.columns);
  });
  const CardIds ids(content.cards);
  content.highest_id = ids.highest();
  const std::array<std::optional<FileText>, 2> texts = reading.get();
  std::future adopting =
      std::async(OnOtherThread(), [&] { return texts[1] && content.link_index.Adopt(texts[1]->view(), ids); });
  const bool learn_adopted = texts[0] && content.learn_index.Adopt(texts[0]->view(), ids);
  const bool learn_good = learn_adopted || BuildLearnIndex(content, ids, observer);
  Tell(observer, FileStage::LoadLinkIndex, size(paths.link_index));
  const bool link_adopted = adopting.get();
  const bool link_good = link_adopted || BuildLinkIndex(content, ids, observer);
  content.unknown = counting.get();
  report.learn_index_rebuilt = !learn_adopted && !cut_short;
  report.link_index_rebuilt = !link_adopted && !cut_short;
  report.index_unfit = (report.learn_index_rebuilt && disk_.Exists(paths.learn_index)) ||
                       (report.link_index_rebuilt && disk_.Exists(paths.link_index));
  if (!link_good) report.index_defect = IndexDefect::LinkIndex;
  if (!learn_good) report.index_defect = IndexDefect::LearnIndex;
}

bool CardFile::CreateNew(const fs::path& path) {
  const CardFilePaths paths = RealPathsFor(path);
  if (!HasCardFileType(path) || !HasCardFileType(paths.cards)) return false;
  std::unique_ptr<FileLock> lock;
  OpenReport report;
  if (!TakeLock(paths, lock, report)) return false;
  CardContent content;
  MakeNewCards(content.cards);
  content.columns = ColumnsOf(content.cards);
  content.highest_id = 1;
  const SaveResult result = WriteFiles(content, paths, {});
  if (result == SaveResult::CardsFailed) return false;
  const bool complete = WriteSettings(content, paths.settings) && result == SaveResult::Saved;
  Become(std::move(content), paths, std::move(lock));
  journal_.Begin(paths_.journal, content_.stamp);
  changed_ = !complete;
  return true;
}

OpenReport CardFile::Restore(const fs::path& path, const StageObserver& observer) {
  if (!HasCardFileType(path) && !HasBackupType(path)) return Refused(OpenResult::WrongType);
  if (!IsOpen()) return HasBackupType(path) ? RestoreAs(CardsOfBackup(path), path, observer) : Open(path, observer);
  CardContent content;
  OpenReport report = LoadCards(path, observer, content);
  if (report.result != OpenResult::Opened) return report;
  const CardIds ids(content.cards);
  content.highest_id = ids.highest();
  report.index_defect = BuildIndexes(content, ids, observer);
  content.settings = std::move(content_.settings);
  content.settings_unreadable = content_.settings_unreadable;
  content.on_disk = content_.on_disk;
  content.damaged.insert(content.damaged.begin(), content_.damaged.begin(), content_.damaged.end());
  content_ = std::move(content);
  TableChanged();
  return report;
}

OpenReport CardFile::RestoreAs(const fs::path& cards, const fs::path& backup, const StageObserver& observer) {
  const CardFilePaths paths = RealPathsFor(cards);
  if (IsOpen() || !HasCardFileType(paths.cards) || !HasBackupType(backup)) return Refused(OpenResult::WrongType);
  OpenReport report;
  std::unique_ptr<FileLock> lock;
  if (!disk_.Exists(backup)) return Refused(OpenResult::CannotOpen);
  if (!TakeLock(paths, lock, report)) return report;
  if (report.read_only) return Refused(OpenResult::NoLock);
  CardContent content;
  report = LoadCards(backup, observer, content);
  if (report.result != OpenResult::Opened) return report;
  const CardIds ids(content.cards);
  content.highest_id = ids.highest();
  report.index_defect = BuildIndexes(content, ids, observer);
  report.settings_unreadable = content.settings_unreadable = !content.settings.Load(disk_, paths.settings);
  content.on_disk = disk_.State(paths.cards);
  const ContentStamp stamp = content.stamp;
  Become(std::move(content), paths, std::move(lock));
  changed_ = true;
  // The restored cards are a change of what lies under the name of the card file.
  const ContentStamp replaced = LastStamp(paths);
  journal_.BeginWithTable(paths.journal, replaced);
  TakeNoteOf(FindForBackup(paths.journal, stamp, replaced), report);
  if (!report.unsaved) TableChanged();
  return report;
}

bool CardFile::TakeLock(const CardFilePaths& paths, std::unique_ptr<FileLock>& lock, OpenReport& report) {
  if (paths.cards == paths_.cards) {
    report.read_only = read_only_;
    return true;
  }
  LockAttempt attempt = disk_.Lock(LockPathOf(paths.cards));
  report.read_only = attempt.lock == nullptr;
  // A program that could not have the lock, or whose lock was taken away, still keeps its journal.
  if (!attempt.held_by_other && !disk_.IsKept(paths.journal)) {
    lock = std::move(attempt.lock);
    return true;
  }
  report.result = OpenResult::InUse;
  report.in_use_by = std::move(attempt.holder);
  report.twin = TwinOf(disk_, paths.cards);
  return false;
}

void CardFile::Become(CardContent content, const CardFilePaths& paths, std::unique_ptr<FileLock> lock) {
  if (paths.cards != paths_.cards) lock_ = std::move(lock);
  journal_.End();
  unsaved_.clear();
  content_ = std::move(content);
  deletion_marks_.Clear();
  paths_ = paths;
  changed_ = false;
  read_only_ = false;
}

bool CardFile::RebuildIndexes(const StageObserver& observer) {
  if (BuildIndexes(content_, CardIds(content_.cards), observer) != IndexDefect::None) return false;
  content_.equal_keys_differ = false;
  watchers_.ForEach([](CardWatcher& watcher) { watcher.IndexesRebuilt(); });
  return true;
}

IndexDefect CardFile::BuildIndexes(CardContent& content, const CardIds& ids, const StageObserver& observer) {
  // Beside the one index another thread builds the other, which counts only if the first is good.
  LinkIndex links;
  std::future built =
      std::async(OnOtherThread(ids.RowCount() >= kWorthAThread), [&] { return links.Build(content.cards, ids); });
  if (!BuildLearnIndex(content, ids, observer)) return IndexDefect::LearnIndex;
  Tell(observer, FileStage::BuildLinkIndex, static_cast<uint64_t>(ids.RowCount()));
  if (!built.get()) return IndexDefect::LinkIndex;
  content.link_index = std::move(links);
  return IndexDefect::None;
}

bool CardFile::BuildLearnIndex(CardContent& content, const CardIds& ids, const StageObserver& observer) {
  Tell(observer, FileStage::BuildLearnIndex, static_cast<uint64_t>(ids.RowCount()));
  return content.learn_index.Build(content.cards, ids, observer.progress);
}

bool CardFile::BuildLinkIndex(CardContent& content, const CardIds& ids, const StageObserver& observer) {
  Tell(observer, FileStage::BuildLinkIndex, static_cast<uint64_t>(ids.RowCount()));
  return content.link_index.Build(content.cards, ids, observer.progress);
}

void CardFile::Close() {
  journal_.End();
  unsaved_.clear();
  content_ = CardContent();
  deletion_marks_.Clear();
  paths_ = CardFilePaths();
  lock_.reset();
  changed_ = false;
  read_only_ = false;
}

}  // namespace tessaro
