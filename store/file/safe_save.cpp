#include "store/file/safe_save.h"

#include <cstdint>
#include <memory>

namespace tessaro {
namespace {

namespace fs = std::filesystem;

// Counts what passes through, to compare it with what the disk then says.
class CountingFile : public WritableFile {
 public:
  explicit CountingFile(WritableFile& file) : file_(file) {}
  bool Write(std::string_view bytes) override {
    count_ += bytes.size();
    return file_.Write(bytes);
  }
  bool Flush() override { return file_.Flush(); }
  bool Close() override { return file_.Close(); }
  uint64_t count() const { return count_; }

 private:
  WritableFile& file_;
  uint64_t count_ = 0;
};

bool WriteWhole(Disk& disk, const fs::path& path, const fs::path& rights_from, const FileWriter& write) {
  const std::unique_ptr<WritableFile> file = disk.Create(path);
  if (file == nullptr) return false;
  disk.CopyRights(rights_from, path);
  CountingFile counted(*file);
  const bool written = write(counted) && counted.Flush();
  if (!counted.Close() || !written) return false;
  const std::optional<FileState> state = disk.State(path);
  return state && state->size == counted.count();
}

// A drive without hard links: between the two renames there is no file under the name.
bool SwapByRenames(Disk& disk, const fs::path& fresh, const fs::path& path, const fs::path& backup) {
  if (!disk.Rename(path, backup)) return false;
  if (disk.Rename(fresh, path)) return true;
  (void)disk.Rename(backup, path);
  return false;
}

// The old file gets a second name first, so that there is a whole file under its own name at every moment.
bool SwapKeepingBackup(Disk& disk, const fs::path& fresh, const fs::path& path, const fs::path& backup) {
  if (!disk.Exists(path)) return disk.Rename(fresh, path);
  const fs::path aside = BesideName(backup);
  if (!disk.Remove(aside) || !disk.Link(path, aside)) return SwapByRenames(disk, fresh, path, backup);
  if (!disk.Rename(fresh, path)) {
    (void)disk.Remove(aside);
    return false;
  }
  if (disk.Rename(aside, backup)) {
    // Renaming one of two names of the same file to the other does nothing; then this one is left over.
    (void)disk.Remove(aside);
    return true;
  }
  (void)disk.Rename(aside, path);
  return false;
}

bool Replace(Disk& disk, const fs::path& path, const FileWriter& write, const fs::path* backup) {
  const fs::path target = disk.Resolve(path);
  const fs::path fresh = BesideName(target);
  const bool done = WriteWhole(disk, fresh, target, write) &&
                    (backup == nullptr ? disk.Rename(fresh, target) : SwapKeepingBackup(disk, fresh, target, *backup));
  if (!done) {
    (void)disk.Remove(fresh);
    return false;
  }
  // Whatever a folder that cannot be flushed shows after a power cut, it is the old or the new file, so no failure.
  (void)disk.FlushFolder(target.parent_path());
  return true;
}

}  // namespace

bool ReplaceFile(Disk& disk, const fs::path& path, const FileWriter& write) {
  return Replace(disk, path, write, nullptr);
}

bool ReplaceFile(Disk& disk, const fs::path& path, const FileWriter& write, const fs::path& backup) {
  return Replace(disk, path, write, &backup);
}

}  // namespace tessaro
