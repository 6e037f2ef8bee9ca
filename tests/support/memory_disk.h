#pragma once

#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/disk.h"

namespace tessaro {

// A disk in memory. Any of its operations can be made to fail, once or from then on, and it can lose what was not
// flushed, as a power cut does. Questions about files are no operations and never fail.
class MemoryDisk : public Disk {
 public:
  using Path = std::filesystem::path;

  // What the failing operation does, if it is a write: nothing, half of it, or half of it without saying so.
  enum class WriteFault { Nothing, Half, HalfUnnoticed };

  // The n-th operation from now on fails, counting from 1; 0 for none.
  void FailAt(int n, WriteFault fault = WriteFault::Nothing) {
    operations_ = 0;
    fail_at_ = n;
    fault_ = fault;
  }
  // With the failing operation the disk is gone: every later one fails too.
  void stay_broken(bool on) { stay_broken_ = on; }
  int operations() const { return operations_; }
  // Writes fail, after what fits, once all files together have so many bytes.
  void set_capacity(uint64_t bytes) { capacity_ = bytes; }
  // Without it no file gets a second name, as on a memory stick.
  void set_has_links(bool on) { has_links_ = on; }
  // All content that was not flushed is gone; names stay.
  void LoseUnflushed() {
    for (auto& [number, file] : files_) file.bytes = file.safe_bytes;
  }

  // Puts a file on the disk as another program would.
  void Put(const Path& path, std::string bytes) {
    names_[path.string()] = ++last_number_;
    files_[last_number_] = {bytes, bytes, ++last_time_};
  }
  void PutSymbolicLink(const Path& path, const Path& target) { links_[path.string()] = target; }
  // The content; nothing when there is no such file.
  std::optional<std::string> Content(const Path& path) const {
    const auto name = names_.find(Resolve(path).string());
    return name == names_.end() ? std::nullopt : std::optional(files_.at(name->second).bytes);
  }
  // Another program holds the lock, until it lets go.
  void HoldLock(const Path& path, const std::string& holder) { locks_[path.string()] = holder; }
  void ReleaseLock(const Path& path) { locks_.erase(path.string()); }
  bool IsLocked(const Path& path) const { return locks_.count(path.string()) > 0; }

  std::unique_ptr<ReadableFile> Open(const Path& path) override {
    std::optional<std::string> bytes = Content(path);
    if (Fails() || !bytes) return nullptr;
    return std::make_unique<Reader>(*this, std::move(*bytes));
  }
  std::unique_ptr<WritableFile> Create(const Path& path) override {
    if (Fails()) return nullptr;
    const std::string name = Resolve(path).string();
    if (names_.count(name) == 0) names_[name] = ++last_number_;
    files_[names_[name]] = {{}, {}, ++last_time_};
    return std::make_unique<Writer>(*this, names_[name]);
  }
  bool Rename(const Path& from, const Path& to) override {
    const auto name = names_.find(from.string());
    if (Fails() || name == names_.end()) return false;
    const uint64_t number = name->second;
    // Two names of one file both stay.
    if (names_.count(to.string()) > 0 && names_[to.string()] == number) return true;
    names_.erase(name);
    names_[to.string()] = number;
    links_.erase(to.string());
    return true;
  }
  bool Link(const Path& from, const Path& to) override {
    if (Fails() || !has_links_ || names_.count(from.string()) == 0 || names_.count(to.string()) > 0) return false;
    names_[to.string()] = names_[from.string()];
    return true;
  }
  void CopyRights(const Path&, const Path&) override {}
  bool Remove(const Path& path) override {
    if (Fails()) return false;
    names_.erase(path.string());
    return true;
  }
  bool FlushFolder(const Path&) override { return !Fails(); }
  LockAttempt Lock(const Path& path) override {
    if (const auto lock = locks_.find(path.string()); lock != locks_.end()) return {nullptr, true, lock->second};
    if (Fails()) return {};
    locks_[path.string()] = "this test";
    return {std::make_unique<HeldLock>(*this, path), false, {}};
  }
  bool Exists(const Path& path) const override { return names_.count(Resolve(path).string()) > 0; }
  Path Resolve(const Path& path) const override {
    const auto link = links_.find(path.string());
    return link == links_.end() ? path : link->second;
  }
  std::optional<FileState> State(const Path& path) const override {
    const auto name = names_.find(Resolve(path).string());
    if (name == names_.end()) return std::nullopt;
    const File& file = files_.at(name->second);
    return FileState{file.bytes.size(), file.time, name->second};
  }
  std::optional<uint64_t> FreeBytes(const Path&) const override { return capacity_ - std::min(capacity_, UsedBytes()); }
  std::vector<std::string> FileNames(const Path& folder) const override {
    std::vector<std::string> found;
    for (const auto& [name, number] : names_) {
      if (Path(name).parent_path() == folder) found.push_back(Path(name).filename().string());
    }
    return found;
  }

 private:
  struct File {
    std::string bytes;
    std::string safe_bytes;  // what survives a power cut
    int64_t time = 0;
  };

  class HeldLock : public FileLock {
   public:
    HeldLock(MemoryDisk& disk, Path path) : disk_(disk), path_(std::move(path)) {}
    ~HeldLock() override { disk_.ReleaseLock(path_); }

   private:
    MemoryDisk& disk_;
    Path path_;
  };

  class Reader : public ReadableFile {
   public:
    Reader(MemoryDisk& disk, std::string bytes) : disk_(disk), bytes_(std::move(bytes)) {}
    uint64_t Size() const override { return bytes_.size(); }
    std::ptrdiff_t Read(char* buffer, size_t size) override {
      if (disk_.Fails()) return -1;
      const size_t count = bytes_.copy(buffer, size, at_);
      at_ += count;
      return static_cast<std::ptrdiff_t>(count);
    }

   private:
    MemoryDisk& disk_;
    std::string bytes_;
    size_t at_ = 0;
  };

  class Writer : public WritableFile {
   public:
    Writer(MemoryDisk& disk, uint64_t number) : disk_(disk), number_(number) {}
    bool Write(std::string_view bytes) override {
      File& file = disk_.files_[number_];
      if (disk_.Fails()) {
        if (disk_.fault_ != WriteFault::Nothing) file.bytes += bytes.substr(0, bytes.size() / 2);
        return disk_.fault_ == WriteFault::HalfUnnoticed;
      }
      const uint64_t room = *disk_.FreeBytes({});
      file.bytes += bytes.substr(0, room);
      return bytes.size() <= room;
    }
    bool Flush() override {
      if (disk_.Fails()) return false;
      File& file = disk_.files_[number_];
      file.safe_bytes = file.bytes;
      return true;
    }
    bool Close() override { return !disk_.Fails(); }

   private:
    MemoryDisk& disk_;
    uint64_t number_;
  };

  bool Fails() {
    ++operations_;
    return operations_ == fail_at_ || (stay_broken_ && fail_at_ > 0 && operations_ > fail_at_);
  }
  uint64_t UsedBytes() const {
    std::set<uint64_t> named;
    uint64_t used = 0;
    for (const auto& [name, number] : names_) {
      if (named.insert(number).second) used += files_.at(number).bytes.size();
    }
    return used;
  }

  std::map<std::string, uint64_t> names_;
  std::map<uint64_t, File> files_;
  std::map<std::string, Path> links_;
  std::map<std::string, std::string> locks_;
  uint64_t last_number_ = 0;
  int64_t last_time_ = 0;
  uint64_t capacity_ = uint64_t{1} << 40;
  bool has_links_ = true;
  int operations_ = 0;
  int fail_at_ = 0;
  WriteFault fault_ = WriteFault::Nothing;
  bool stay_broken_ = false;
};

}  // namespace tessaro
