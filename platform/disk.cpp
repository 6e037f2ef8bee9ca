#include "platform/disk.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <new>
#include <system_error>
#include <utility>

#include "platform/large_pages.h"

namespace tessaro {
namespace {

namespace fs = std::filesystem;

// A file may grow by so much while it is read. Some of the system's own tell no size and never end.
constexpr uint64_t kMostGrowth = uint64_t{16} << 20;

// The kernel moves at most 2 GiB in one call, and a signal may end a call early.
constexpr size_t kMostPerCall = size_t{1} << 30;

// Owns a file number; -1 when there is none.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { Close(); }

  int number() const { return number_; }
  bool IsOpen() const { return number_ >= 0; }
  // Gives the file up to the caller.
  int Release() { return std::exchange(number_, -1); }
  // False when the system reports that earlier writes were lost, and when nothing was open.
  bool Close() {
    if (!IsOpen()) return false;
    return ::close(Release()) == 0;
  }

 private:
  int number_;
};

class PosixReadableFile : public ReadableFile {
 public:
  PosixReadableFile(int number, uint64_t size, off_t offset = 0) : file_(number), size_(size), offset_(offset) {}

  uint64_t Size() const override { return size_; }

  std::ptrdiff_t Read(char* buffer, size_t size) override {
    if (static_cast<uint64_t>(offset_) > size_ + kMostGrowth) return -1;
    ssize_t count = 0;
    do {
      count = ::pread(file_.number(), buffer, std::min(size, kMostPerCall), offset_);
    } while (count < 0 && errno == EINTR);
    if (count > 0) offset_ += count;
    return count;
  }

  std::unique_ptr<ReadableFile> ReadFrom(uint64_t offset) override {
    const int number = ::fcntl(file_.number(), F_DUPFD_CLOEXEC, 0);
    if (number < 0) return nullptr;
    return std::make_unique<PosixReadableFile>(number, size_, static_cast<off_t>(offset));
  }

 private:
  Descriptor file_;
  uint64_t size_;
  off_t offset_;
};

class PosixWritableFile : public WritableFile {
 public:
  explicit PosixWritableFile(int number) : file_(number) {}

  bool Write(std::string_view bytes) override {
    while (!bytes.empty()) {
      const ssize_t count = ::write(file_.number(), bytes.data(), std::min(bytes.size(), kMostPerCall));
      if (count < 0 && errno != EINTR) return false;
      if (count > 0) bytes.remove_prefix(static_cast<size_t>(count));
      if (count > 0) BeginWriteback(count);
    }
    return true;
  }
  bool Flush() override { return file_.IsOpen() && ::fsync(file_.number()) == 0; }
  bool Close() override { return file_.Close(); }
  void KeepOthersAway() override { (void)::flock(file_.number(), LOCK_EX | LOCK_NB); }

 private:
  // Lets the disk begin with what was written, so that there is less to wait for when it is flushed.
  void BeginWriteback(ssize_t written) {
#ifdef __linux__
    constexpr off_t kLeast = off_t{8} << 20;
    size_ += written;
    if (size_ - begun_ < kLeast) return;
    (void)::sync_file_range(file_.number(), begun_, size_ - begun_, SYNC_FILE_RANGE_WRITE);
    begun_ = size_;
#endif
  }

  Descriptor file_;
  off_t size_ = 0;
  off_t begun_ = 0;  // up to here
};

class PosixDisk : public Disk {
 public:
  std::unique_ptr<ReadableFile> Open(const fs::path& path) override {
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return nullptr;
    // It may have become something else meanwhile: opening a pipe nobody writes to would never return.
    Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file.IsOpen() || ::fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode)) return nullptr;
    return std::make_unique<PosixReadableFile>(file.Release(), static_cast<uint64_t>(status.st_size));
  }

  std::unique_ptr<WritableFile> Create(const fs::path& path) override {
    const int number = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (number < 0) return nullptr;
    return std::make_unique<PosixWritableFile>(number);
  }

  bool Rename(const fs::path& from, const fs::path& to) override { return std::rename(from.c_str(), to.c_str()) == 0; }

  bool Link(const fs::path& from, const fs::path& to) override { return ::link(from.c_str(), to.c_str()) == 0; }

  void CopyRights(const fs::path& from, const fs::path& to) override {
    std::error_code error;
    const fs::file_status status = fs::status(from, error);
    if (!error && fs::is_regular_file(status)) fs::permissions(to, status.permissions(), error);
  }

  bool Remove(const fs::path& path) override { return ::unlink(path.c_str()) == 0 || errno == ENOENT; }

  bool FlushFolder(const fs::path& folder) override {
    const fs::path& named = folder.empty() ? kHere : folder;
    const Descriptor file(::open(named.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // Some file systems cannot flush a folder and say so with EINVAL: they need none.
    return file.IsOpen() && (::fsync(file.number()) == 0 || errno == EINVAL);
  }

  bool MakeFolder(const fs::path& folder) override {
    std::error_code error;
    fs::create_directories(folder, error);
    return fs::is_directory(folder, error);
  }

  LockAttempt Lock(const fs::path& path) override { return AcquireFileLock(path); }

  bool IsKept(const fs::path& path) const override {
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    return file.IsOpen() && ::flock(file.number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
  }

  FileTies TiesOf(const fs::path& path) const override {
    constexpr mode_t kWritable = S_IWUSR | S_IWGRP | S_IWOTH;
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0) return {};
    return {(status.st_mode & kWritable) == 0 || ::access(path.c_str(), W_OK) != 0, status.st_nlink > 1};
  }

  fs::path Resolve(const fs::path& path) const override {
    std::error_code error;
    fs::path target = fs::weakly_canonical(path, error);
    return error ? path : target;
  }

  bool Exists(const fs::path& path) const override {
    std::error_code error;
    return fs::exists(path, error);
  }

  std::optional<FileState> State(const fs::path& path) const override {
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0) return std::nullopt;
    constexpr int64_t kNanosecondsPerSecond = 1'000'000'000;
    return FileState{static_cast<uint64_t>(status.st_size),
                     status.st_mtim.tv_sec * kNanosecondsPerSecond + status.st_mtim.tv_nsec,
                     static_cast<uint64_t>(status.st_ino)};
  }

  std::optional<uint64_t> FreeBytes(const fs::path& folder) const override {
    std::error_code error;
    const fs::space_info space = fs::space(folder.empty() ? kHere : folder, error);
    if (error) return std::nullopt;
    return space.available;
  }

  std::vector<std::string> FileNames(const fs::path& folder) const override { return Names(folder, false); }

  std::vector<std::string> FolderNames(const fs::path& folder) const override { return Names(folder, true); }

 private:
  std::vector<std::string> Names(const fs::path& folder, bool folders) const {
    std::vector<std::string> names;
    std::error_code error;
    fs::directory_iterator entry(folder.empty() ? kHere : folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
      std::error_code unknown_type;
      if (entry->is_directory(unknown_type) == folders) names.push_back(entry->path().filename().string());
    }
    return names;
  }

  // The folder of a path without one.
  const fs::path kHere = ".";
};

}  // namespace

Disk& RealDisk() {
  static PosixDisk disk;
  return disk;
}

std::string ShortName(std::string name) {
  constexpr size_t kMostUncut = 200;
  constexpr size_t kCut = 160;
  if (name.size() <= kMostUncut) return name;
  uint64_t hash = 0xCBF29CE484222325U;  // FNV-1a
  for (const char byte : name) hash = (hash ^ static_cast<uint8_t>(byte)) * 0x100000001B3U;
  size_t end = kCut;
  while (end > 0 && (static_cast<uint8_t>(name[end]) & 0xC0U) == 0x80U) --end;
  return name.substr(0, end) + '-' + std::to_string(hash);
}

std::optional<std::string> ReadBeginning(Disk& disk, const fs::path& path, size_t most) try {
  const std::unique_ptr<ReadableFile> file = disk.Open(path);
  if (file == nullptr) return std::nullopt;
  std::string bytes(std::min<uint64_t>(most, file->Size()), '\0');
  size_t used = 0;
  while (used < bytes.size()) {
    const std::ptrdiff_t count = file->Read(bytes.data() + used, bytes.size() - used);
    if (count < 0) return std::nullopt;
    if (count == 0) break;
    used += static_cast<size_t>(count);
  }
  bytes.resize(used);
  return bytes;
} catch (const std::bad_alloc&) {
  return std::nullopt;
}

// A large text is put together from pieces that stay in the processor's cache: memory is touched once only, and large
// pages need few such touches.
std::optional<std::string> ReadFile(Disk& disk, const fs::path& path) try {
  const std::unique_ptr<ReadableFile> file = disk.Open(path);
  if (file == nullptr || file->Size() > kMostWhole) return std::nullopt;
  constexpr size_t kMostPiece = size_t{256} * 1024;
  constexpr size_t kLeastPiece = size_t{4} * 1024;
  std::string piece(std::clamp<uint64_t>(file->Size() + 1, kLeastPiece, kMostPiece), '\0');
  std::string bytes;
  bytes.reserve(file->Size());
  PreferLargePages(bytes.data(), bytes.capacity());
  for (;;) {
    const std::ptrdiff_t count = file->Read(piece.data(), piece.size());
    if (count < 0) return std::nullopt;
    if (count == 0) return bytes;
    bytes.append(piece, 0, static_cast<size_t>(count));
    if (bytes.size() > kMostWhole) return std::nullopt;
  }
} catch (const std::bad_alloc&) {
  return std::nullopt;
}

}  // namespace tessaro
