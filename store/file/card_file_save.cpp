// The part of the card file that has to do with saving.

#include <algorithm>
#include <utility>

#include "store/file/card_file.h"
#include "store/file/safe_save.h"

namespace tessaro {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kDamagedEnding = "-beschaedigt-";

bool Copy(Disk& disk, const fs::path& from, const fs::path& to) {
  return ReplaceFile(disk, to, [&](WritableFile& target) {
    const std::unique_ptr<ReadableFile> source = disk.Open(from);
    std::string buffer(size_t{1} << 20U, '\0');
    std::ptrdiff_t count = source == nullptr ? -1 : 1;
    while (count > 0) {
      count = source->Read(buffer.data(), buffer.size());
      if (count > 0 && !target.Write(std::string_view(buffer.data(), static_cast<size_t>(count)))) return false;
    }
    return count == 0;
  });
}

}  // namespace

SaveResult CardFile::Save(const StageObserver& observer) {
  if (!IsOpen()) return SaveResult::CardsFailed;
  if (read_only_) return SaveResult::ReadOnly;
  SaveResult result = WriteFiles(content_, paths_, observer);
  if (result == SaveResult::CardsFailed) return result;
  journal_.Saved(content_.stamp);
  if (!WriteSettings(content_, paths_.settings) && result == SaveResult::Saved) result = SaveResult::SettingsFailed;
  if (result == SaveResult::Saved) changed_ = false;
  return result;
}

SaveResult CardFile::SaveCopy(const fs::path& path, const StageObserver& observer) {
  const CardFilePaths paths = RealPathsFor(path);
  if (paths.cards == paths_.cards) return Save(observer);
  std::unique_ptr<FileLock> lock;
  const std::optional<FileState> on_disk = content_.on_disk;
  const ContentStamp stamp = content_.stamp;
  const SaveResult result = WriteOtherFiles(paths, lock, observer);
  content_.on_disk = on_disk;
  content_.stamp = stamp;
  return result;
}

SaveResult CardFile::SaveAs(const fs::path& path, const StageObserver& observer) {
  const CardFilePaths paths = RealPathsFor(path);
  if (paths.cards == paths_.cards) return Save(observer);
  std::unique_ptr<FileLock> lock;
  SaveResult result = WriteOtherFiles(paths, lock, observer);
  if (result == SaveResult::CardsFailed) return result;
  // The damaged file keeps its name.
  content_.damaged.clear();
  content_.settings_unreadable = false;
  if (!WriteSettings(content_, paths.settings) && result == SaveResult::Saved) result = SaveResult::SettingsFailed;
  journal_.End();
  journal_.Begin(paths.journal, content_.stamp);
  unsaved_.clear();
  paths_ = paths;
  lock_ = std::move(lock);
  read_only_ = false;
  changed_ = result != SaveResult::Saved;
  return result;
}

SaveResult CardFile::WriteOtherFiles(const CardFilePaths& paths, std::unique_ptr<FileLock>& lock,
                                     const StageObserver& observer) {
  OpenReport report;
  if (!IsOpen() || !HasCardFileType(paths.cards) || !TakeLock(paths, lock, report)) return SaveResult::CardsFailed;
  // No journal beside another card file tells of a save that was cut short between its cards and its indexes: an old
  // index would then pass for one of the new cards.
  for (const fs::path& index : {paths.learn_index, paths.link_index}) (void)disk_.Remove(index);
  return WriteFiles(content_, paths, observer);
}

SaveResult CardFile::WriteFiles(CardContent& content, const CardFilePaths& paths, const StageObserver& observer) {
  Tell(observer, FileStage::SaveCards, 0);
  if (!KeepDamaged(content, paths)) return SaveResult::CardsFailed;
  const auto write = [&](WritableFile& file) {
    StampingWriter stamped(file);
    if (!content.cards.SaveTo(stamped, observer.progress)) return false;
    content.stamp = stamped.Stamp();
    if (&content == &content_) journal_.Written(content.stamp);
    return true;
  };
  if (!ReplaceFile(disk_, paths.cards, write, paths.backup)) return SaveResult::CardsFailed;
  content.on_disk = disk_.State(paths.cards);
  const CardIds ids(content.cards);
  // An index that no longer fits would be refused when the file is opened. If it cannot be built it is saved as it is.
  if (!content.learn_index.Fits(ids) || !content.link_index.Fits(ids)) (void)BuildIndexes(content, ids, {});
  return WriteIndexes(content, ids, paths, observer);
}

SaveResult CardFile::SaveIndexes(const StageObserver& observer) {
  if (!IsOpen() || read_only_ || changed_ || ChangedOnDisk()) return SaveResult::Saved;
  return WriteIndexes(content_, CardIds(content_.cards), paths_, observer);
}

SaveResult CardFile::WriteIndexes(const CardContent& content, const CardIds& ids, const CardFilePaths& paths,
                                  const StageObserver& observer) {
  Tell(observer, FileStage::SaveLearnIndex, 0);
  const bool learn_saved = WriteIndex(paths.learn_index, ids, content.learn_index, observer.progress);
  Tell(observer, FileStage::SaveLinkIndex, 0);
  const bool link_saved = WriteIndex(paths.link_index, ids, content.link_index, observer.progress);
  if (!learn_saved) return SaveResult::LearnIndexFailed;
  return link_saved ? SaveResult::Saved : SaveResult::LinkIndexFailed;
}

template <typename Index>
bool CardFile::WriteIndex(const fs::path& path, const CardIds& ids, const Index& index, Progress* progress) {
  if (ReplaceFile(disk_, path, [&](WritableFile& file) { return index.SaveTo(file, ids, progress); })) return true;
  // The old index may look right and yet be that of older scores.
  (void)disk_.Remove(path);
  return false;
}

bool CardFile::KeepDamaged(CardContent& content, const CardFilePaths& paths) {
  bool kept = true;
  std::erase_if(content.damaged, [&](const fs::path& damaged) {
    if (damaged != paths.cards && damaged != paths.backup) return false;
    const bool put_by = PutBy(damaged, paths.cards);
    kept = kept && put_by;
    return put_by;
  });
  return kept;
}

bool CardFile::PutBy(const fs::path& damaged, const fs::path& cards) {
  const std::string begin = ShortName(cards.stem().string()) + std::string(kDamagedEnding);
  int number = 1;
  fs::path kept;
  do {
    kept = cards.parent_path() / (begin + std::to_string(number++) + ".mlb");
  } while (disk_.Exists(kept));
  return !disk_.Exists(damaged) || disk_.Link(damaged, kept) || Copy(disk_, damaged, kept);
}

bool CardFile::SaveSettings() {
  return IsOpen() && (read_only_ || WriteSettings(content_, paths_.settings));
}

bool CardFile::WriteSettings(const CardContent& content, const fs::path& path) {
  if (content.settings_unreadable) return true;
  if (content.settings.Text().empty() && !disk_.Exists(path)) return true;
  return content.settings.Save(disk_, path);
}

bool CardFile::ChangedOnDisk() const {
  if (!IsOpen()) return false;
  const std::optional<FileState> state = disk_.State(paths_.cards);
  return state && state != content_.on_disk;
}

SpaceEstimate CardFile::EstimateSpace(int64_t& bytes_per_card, const fs::path& target) const {
  constexpr int64_t kLeast = 300;
  constexpr int64_t kMost = 2000;
  constexpr int64_t kReservePercent = 20;
  bytes_per_card = std::clamp(bytes_per_card, kLeast, kMost);
  const int64_t cards = bytes_per_card * CardCount();
  return {static_cast<uint64_t>(cards + cards * kReservePercent / 100), disk_.FreeBytes(target.parent_path())};
}

}  // namespace tessaro
