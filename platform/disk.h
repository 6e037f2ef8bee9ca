#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file_lock.h"

namespace tessaro {

// What tells one state of a file on disk from another: a file whose state changed was written by someone.
struct FileState {
  uint64_t size = 0;
  int64_t modified_ns = 0;
  uint64_t inode = 0;
  bool operator==(const FileState&) const = default;
};

// A file being read from its start.
class ReadableFile {
 public:
  virtual ~ReadableFile() = default;
  // Size when it was opened; a hint, the file may be longer or shorter when it is read.
  virtual uint64_t Size() const = 0;
  // Reads up to `size` bytes; returns how many, 0 at the end of the file, -1 on an error.
  virtual std::ptrdiff_t Read(char* buffer, size_t size) = 0;
  // The same file from `offset` bytes after its start on, for another thread; null when it cannot be read in two
  // places at once.
  virtual std::unique_ptr<ReadableFile> ReadFrom(uint64_t /*offset*/) { return nullptr; }
};

// A file being written. Destroying it closes it; whoever cares for the content calls Close and looks at the result.
class WritableFile {
 public:
  virtual ~WritableFile() = default;
  // Appends all bytes; false when any could not be written.
  [[nodiscard]] virtual bool Write(std::string_view bytes) = 0;
  // Returns when everything written so far has reached the disk. A thread may call it while another one writes.
  [[nodiscard]] virtual bool Flush() = 0;
  [[nodiscard]] virtual bool Close() = 0;
  // As long as it is open, Disk::IsKept says so of it to every program, whatever name it gets meanwhile.
  virtual void KeepOthersAway() {}
};

// What speaks against replacing a file that was not made by us.
struct FileTies {
  bool protected_from_writing = false;
  bool has_other_names = false;  // hard links, which would go on naming the old content
};

// All that the program does with files. Every operation answers with false, null or nothing when it fails and then
// has changed nothing. Tests replace it by a disk in memory that fails on demand.
class Disk {
 public:
  virtual ~Disk() = default;
  // Only a regular file is ever opened: a pipe could keep us waiting, a device act. It is read to the size that it
  // tells and a little more, since it may be growing; what goes on without end fails.
  virtual std::unique_ptr<ReadableFile> Open(const std::filesystem::path& path) = 0;
  // Creates the file, or empties it when it exists.
  virtual std::unique_ptr<WritableFile> Create(const std::filesystem::path& path) = 0;
  // Replaces `to` when it exists, in one step: a power cut leaves the one or the other.
  [[nodiscard]] virtual bool Rename(const std::filesystem::path& from, const std::filesystem::path& to) = 0;
  // Gives the file a second name. False when `to` exists or the drive has no such thing.
  [[nodiscard]] virtual bool Link(const std::filesystem::path& from, const std::filesystem::path& to) = 0;
  // Gives `to` the access rights of `from`, as far as both exist and the drive keeps such rights.
  virtual void CopyRights(const std::filesystem::path& from, const std::filesystem::path& to) = 0;
  // True also when there was no such file.
  [[nodiscard]] virtual bool Remove(const std::filesystem::path& path) = 0;
  // Makes the folder and those above it; true also when it is there. A disk without folders needs none.
  [[nodiscard]] virtual bool MakeFolder(const std::filesystem::path& /*folder*/) { return true; }
  // Makes renames in this folder survive a power cut.
  [[nodiscard]] virtual bool FlushFolder(const std::filesystem::path& folder) = 0;
  // See AcquireFileLock.
  virtual LockAttempt Lock(const std::filesystem::path& path) = 0;
  // Whether a program, this one included, has the file open and keeps others away from it.
  virtual bool IsKept(const std::filesystem::path& /*path*/) const { return false; }
  virtual FileTies TiesOf(const std::filesystem::path& /*path*/) const { return {}; }
  virtual bool Exists(const std::filesystem::path& path) const = 0;
  // The path with all symbolic links in it followed as far as it exists, so that a file has one name; the path as it is
  // when that cannot be told.
  virtual std::filesystem::path Resolve(const std::filesystem::path& path) const = 0;
  virtual std::optional<FileState> State(const std::filesystem::path& path) const = 0;
  // Free bytes of the drive that holds `folder`.
  virtual std::optional<uint64_t> FreeBytes(const std::filesystem::path& folder) const = 0;
  // The plain names of the files in a folder, unsorted; empty when it cannot be read.
  virtual std::vector<std::string> FileNames(const std::filesystem::path& folder) const = 0;
  // The same of the folders in it. A disk without folders has none.
  virtual std::vector<std::string> FolderNames(const std::filesystem::path& /*folder*/) const { return {}; }
};

// Names of files have at most so many bytes on the drives that people have.
inline constexpr size_t kLongestName = 255;
// A name to which this program can add endings of its own: where it would get too long by them it is cut, between two
// letters, and told from others by its hash.
std::string ShortName(std::string name);

// The name beside `path` under which a file is written that is to replace it: always the same, so that what a crash
// left behind is replaced and does not pile up.
inline std::filesystem::path BesideName(const std::filesystem::path& path) {
  return path.parent_path() / (ShortName(path.filename().string()) + ".tmp");
}

// The machine's own file system.
Disk& RealDisk();

// Reads a whole file; nothing when it cannot be opened or read, or memory is short. Nothing that the program keeps
// comes near kMostWhole bytes; a larger file is not even begun, since the system might give memory that it does not
// have.
inline constexpr uint64_t kMostWhole = uint64_t{1} << 33;
std::optional<std::string> ReadFile(Disk& disk, const std::filesystem::path& path);
// The first bytes of a file, `most` of them where it has more.
std::optional<std::string> ReadBeginning(Disk& disk, const std::filesystem::path& path, size_t most);

}  // namespace tessaro
