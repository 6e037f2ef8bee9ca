#pragma once

#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/disk.h"

namespace tessaro {

// A disk in memory. Any of its operations can be made to fail, once or from then on, and it can lose what was not
// flushed, as a power cut does. Questions about files are no operations and never fail. A thread may flush what another
// writes; all else belongs to one thread.
class MemoryDisk : public Disk {
 public:
  using Path = std::filesystem::path;

  // What the failing operation does, if it is a write: nothing, half of it, or half of it without saying so.
  enum class WriteFault { Nothing, Half, HalfUnnoticed };

  // The n-th operation from now on fails, counting from 1; 0 for none. When the disk stays broken every later one fails
  // too.
  void FailAt(int n, WriteFault fault = WriteFault::Nothing, bool stay_broken = false) {
    operations_ = 0;
    fail_at_ = n;
    fault_ = fault;
    stay_broken_ = stay_broken;
  }
  int operations() const { return operations_; }
  // Writes fail, after what fits, once all files together have so many bytes.
  void set_capacity(uint64_t bytes) { capacity_ = bytes; }
  // Without it no file gets a second name, as on a memory stick.
  void set_has_links(bool on) { has_links_ = on; }
  // Without them no program can be kept away, as on some network drives.
  void set_has_locks(bool on) { has_locks_ = on; }
  void set_ties(const FileTies& ties) { ties_ = ties; }
  // All content that was not flushed is gone; names stay.
  void LoseUnflushed() {
    const std::lock_guard guard(*writing_);
    for (auto& [name, file] : files_) file->bytes = file->safe_bytes;
  }

  // Puts a file on the disk as another program would.
  void Put(const Path& path, const std::string& bytes) {
    files_[path] = std::make_shared<File>(File{bytes, bytes, ++last_time_, ++last_number_});
  }
  void PutSymbolicLink(const Path& path, const Path& target) { links_[path] = target; }
  // The content; nothing when there is no such file.
  std::optional<std::string> Content(const Path& path) const {
    const auto file = files_.find(Resolve(path));
    return file == files_.end() ? std::nullopt : std::optional(file->second->bytes);
  }
  // Another program holds the lock.
  void HoldLock(const Path& path, const LockHolder& holder) { locks_[path] = holder; }
  bool IsLocked(const Path& path) const { return locks_.count(path) > 0; }

  std::unique_ptr<ReadableFile> Open(const Path& path) override {
    std::optional<std::string> bytes = Content(path);
    if (Fails() || !bytes) return nullptr;
    return std::make_unique<Reader>(*this, std::move(*bytes));
  }
  std::unique_ptr<WritableFile> Create(const Path& path) override {
    if (Fails()) return nullptr;
    const std::lock_guard guard(*writing_);
    std::shared_ptr<File>& file = files_[Resolve(path)];
    if (file == nullptr) file = std::make_shared<File>(File{{}, {}, 0, ++last_number_});
    *file = {{}, {}, ++last_time_, file->number};
    return std::make_unique<Writer>(*this, file);
  }
  bool Rename(const Path& from, const Path& to) override {
    if (Fails() || files_.count(from) == 0) return false;
    // Two names of one file both stay.
    if (files_.count(to) > 0 && files_[to] == files_[from]) return true;
    files_[to] = files_.extract(from).mapped();
    links_.erase(to);
    return true;
  }
  bool Link(const Path& from, const Path& to) override {
    return !Fails() && has_links_ && files_.count(from) > 0 && files_.try_emplace(to, files_[from]).second;
  }
  void CopyRights(const Path&, const Path&) override {}
  bool Remove(const Path& path) override { return !Fails() && (files_.erase(path), true); }
  bool FlushFolder(const Path&) override { return !Fails(); }
  LockAttempt Lock(const Path& path) override {
    if (IsLocked(path)) return {nullptr, true, locks_[path]};
    if (Fails() || !has_locks_) return {};
    locks_[path] = {"here", "1"};
    return {std::make_unique<HeldLock>(*this, path), false, {}};
  }
  bool IsKept(const Path& path) const override { return IsLocked(path); }
  FileTies TiesOf(const Path& path) const override { return Exists(path) ? ties_ : FileTies(); }
  bool Exists(const Path& path) const override { return files_.count(Resolve(path)) > 0; }
  Path Resolve(const Path& path) const override {
    const auto link = links_.find(path);
    return link == links_.end() ? path : link->second;
  }
  std::optional<FileState> State(const Path& path) const override {
    const auto file = files_.find(Resolve(path));
    if (file == files_.end()) return std::nullopt;
    return FileState{file->second->bytes.size(), file->second->time, file->second->number};
  }
  std::optional<uint64_t> FreeBytes(const Path&) const override {
    std::map<uint64_t, uint64_t> sizes;
    for (const auto& [name, file] : files_) sizes[file->number] = file->bytes.size();
    uint64_t used = 0;
    for (const auto& [number, size] : sizes) used += size;
    return capacity_ - std::min(capacity_, used);
  }
  std::vector<std::string> FileNames(const Path& folder) const override {
    std::vector<std::string> found;
    for (const auto& [name, file] : files_) {
      if (name.parent_path() == folder) found.push_back(name.filename().string());
    }
    return found;
  }

 private:
  // May have several names.
  struct File {
    std::string bytes;
    std::string safe_bytes;  // what survives a power cut
    int64_t time = 0;
    uint64_t number = 0;
  };

  struct HeldLock : FileLock {
    HeldLock(MemoryDisk& disk_in, Path path_in) : disk(disk_in), path(std::move(path_in)) {}
    ~HeldLock() override { disk.locks_.erase(path); }
    MemoryDisk& disk;
    Path path;
  };

  struct Reader : ReadableFile {
    Reader(MemoryDisk& disk_in, std::string bytes_in) : disk(disk_in), bytes(std::move(bytes_in)) {}
    uint64_t Size() const override { return bytes.size(); }
    std::ptrdiff_t Read(char* buffer, size_t size) override {
      if (disk.Fails()) return -1;
      const size_t count = bytes.copy(buffer, size, at);
      at += count;
      return static_cast<std::ptrdiff_t>(count);
    }
    MemoryDisk& disk;
    std::string bytes;
    size_t at = 0;
  };

  struct Writer : WritableFile {
    Writer(MemoryDisk& disk_in, std::shared_ptr<File> file_in) : disk(disk_in), file(std::move(file_in)) {}
    bool Write(std::string_view text) override {
      const std::lock_guard guard(*disk.writing_);
      if (disk.Fails()) {
        if (disk.fault_ != WriteFault::Nothing) file->bytes += text.substr(0, text.size() / 2);
        return disk.fault_ == WriteFault::HalfUnnoticed;
      }
      const uint64_t room = *disk.FreeBytes({});
      file->bytes += text.substr(0, room);
      return text.size() <= room;
    }
    bool Flush() override {
      const std::lock_guard guard(*disk.writing_);
      return !disk.Fails() && (file->safe_bytes = file->bytes, true);
    }
    bool Close() override { return !disk.Fails(); }
    MemoryDisk& disk;
    std::shared_ptr<File> file;
  };

  bool Fails() {
    const std::lock_guard guard(*writing_);
    ++operations_;
    return operations_ == fail_at_ || (stay_broken_ && fail_at_ > 0 && operations_ > fail_at_);
  }

  // Comparing paths part by part is slow.
  struct ByText {
    bool operator()(const Path& a, const Path& b) const { return a.native() < b.native(); }
  };
  std::map<Path, std::shared_ptr<File>, ByText> files_;
  std::map<Path, Path, ByText> links_;
  std::map<Path, LockHolder> locks_;
  uint64_t last_number_ = 0;
  int64_t last_time_ = 0;
  uint64_t capacity_ = uint64_t{1} << 40;
  bool has_links_ = true;
  bool has_locks_ = true;
  FileTies ties_;
  // Guards the bytes of files that are being written, and what counts operations.
  std::shared_ptr<std::recursive_mutex> writing_ = std::make_shared<std::recursive_mutex>();
  int operations_ = 0;
  int fail_at_ = 0;
  WriteFault fault_ = WriteFault::Nothing;
  bool stay_broken_ = false;
};

}  // namespace tessaro
