#include "platform/file_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string_view>
#include <utility>

namespace tessaro {
namespace {

namespace fs = std::filesystem;

// The lock is the kernel's, on the open file; the file's name only says where to ask.
class PosixFileLock : public FileLock {
 public:
  PosixFileLock(int number, fs::path path) : number_(number), path_(std::move(path)) {}
  PosixFileLock(const PosixFileLock&) = delete;
  PosixFileLock& operator=(const PosixFileLock&) = delete;
  ~PosixFileLock() override {
    // In this order, so that nobody can take the lock of a file that is about to lose its name.
    ::unlink(path_.c_str());
    ::close(number_);
  }

 private:
  int number_;
  fs::path path_;
};

LockHolder Holder(int number) {
  std::array<char, 256> buffer = {};
  const ssize_t count = ::pread(number, buffer.data(), buffer.size(), 0);
  const std::string_view text(buffer.data(), count > 0 ? static_cast<size_t>(count) : 0);
  const size_t first = text.find('\n');
  if (first == std::string_view::npos) return {};
  const std::string_view process = text.substr(first + 1, text.find('\n', first + 1) - first - 1);
  return {std::string(text.substr(0, first)), std::string(process)};
}

void WriteHolder(int number) {
  std::array<char, 256> machine = {};
  if (::gethostname(machine.data(), machine.size() - 1) != 0) machine[0] = '\0';
  const std::string text = std::string(machine.data()) + '\n' + std::to_string(::getpid()) + '\n';
  // Only a courtesy to whoever is refused: without it the lock holds as well.
  if (::ftruncate(number, 0) != 0 || ::pwrite(number, text.data(), text.size(), 0) < 0) return;
}

int OpenLockFile(const fs::path& path) {
  constexpr int kFlags = O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
  const int number = ::open(path.c_str(), kFlags | O_RDWR | O_CREAT, 0666);
  // Another user's sign in a folder that is not ours can still be asked.
  return number >= 0 ? number : ::open(path.c_str(), kFlags | O_RDONLY);
}

// The holder before us may have removed the file between our opening and locking it: then the lock is on no name.
bool StillHasName(int number, const fs::path& path) {
  struct stat open_file = {};
  struct stat named = {};
  return ::fstat(number, &open_file) == 0 && ::stat(path.c_str(), &named) == 0 && open_file.st_ino == named.st_ino &&
         open_file.st_dev == named.st_dev;
}

}  // namespace

LockAttempt AcquireFileLock(const fs::path& path) {
  constexpr int kAttempts = 100;
  for (int i = 0; i < kAttempts; ++i) {
    const int number = OpenLockFile(path);
    if (number < 0) return {};
    if (::flock(number, LOCK_EX | LOCK_NB) != 0) {
      LockAttempt refused;
      refused.held_by_other = errno == EWOULDBLOCK;
      if (refused.held_by_other) refused.holder = Holder(number);
      ::close(number);
      return refused;
    }
    if (StillHasName(number, path)) {
      WriteHolder(number);
      return {std::make_unique<PosixFileLock>(number, path), false, {}};
    }
    ::close(number);
  }
  return {};
}

}  // namespace tessaro
