#pragma once

#include <filesystem>
#include <memory>
#include <string>

namespace tessaro {

// Keeps other running programs away from something for as long as it lives. It vanishes with the program, however that
// ends.
class FileLock {
 public:
  virtual ~FileLock() = default;
};

// The running program that has a lock; empty texts when that is unknown.
struct LockHolder {
  std::string machine;
  std::string process;  // its number
  bool operator==(const LockHolder&) const = default;
};

struct LockAttempt {
  std::unique_ptr<FileLock> lock;  // null when it could not be had
  bool held_by_other = false;      // because another program, or another place in this one, has it
  LockHolder holder;               // who
};

// Takes the lock whose sign is this file. Creates the file, writes the holder into it and removes it with the lock.
// Neither lock nor other holder: the place allows no lock (a read-only drive).
LockAttempt AcquireFileLock(const std::filesystem::path& path);

}  // namespace tessaro
