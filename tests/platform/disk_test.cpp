#include "platform/disk.h"

#include <sys/resource.h>
#include <sys/stat.h>

#include <chrono>
#include <csignal>

#include "platform/background_flush.h"
#include "tests/support/temporary_folder.h"

namespace tessaro {
namespace {

namespace fs = std::filesystem;

class RealDiskTest : public testing::Test {
 protected:
  bool Put(const fs::path& path, const std::string& text) {
    const auto file = disk_.Create(path);
    return file != nullptr && file->Write(text) && file->Flush() && file->Close();
  }

  Disk& disk_ = RealDisk();
  const TemporaryFolder temporary_;
  const fs::path& folder_ = temporary_.path();
  const fs::path file_ = folder_ / "a.txt";
  const fs::path other_ = folder_ / "b.txt";
};

TEST_F(RealDiskTest, ReadsBackWhatItWrote) {
  const std::string large(3'000'000, 'x');
  for (const std::string& text : {std::string(), std::string("a\0b\r\n", 5), large, std::string("short")}) {
    ASSERT_TRUE(Put(file_, text));
    EXPECT_TRUE(ReadFile(disk_, file_) == text) << text.size();
    EXPECT_TRUE(ReadBeginning(disk_, file_, 4) == text.substr(0, 4)) << text.size();
    EXPECT_TRUE(ReadBeginning(disk_, file_, 4'000'000) == text) << text.size();
  }
  // A file that announces no size.
  EXPECT_GT(ReadFile(disk_, "/proc/self/maps").value_or("").size(), 100U);
}

TEST_F(RealDiskTest, TellsFailures) {
  const fs::path nowhere = folder_ / "none" / "x";
  for (const fs::path& bad : {nowhere, folder_}) EXPECT_FALSE(disk_.Open(bad) || disk_.Create(bad));
  EXPECT_EQ(ReadFile(disk_, "/proc/self/mem"), std::nullopt);
  // A file with a hole, larger than any memory.
  ASSERT_TRUE(Put(file_, "x"));
  fs::resize_file(file_, uint64_t{1} << 40);
  EXPECT_EQ(ReadFile(disk_, file_), std::nullopt);
  EXPECT_FALSE(disk_.Rename(nowhere, file_) || disk_.Remove(folder_) || disk_.FlushFolder(nowhere));
  EXPECT_FALSE(disk_.State(nowhere) || disk_.FreeBytes(nowhere) || !disk_.FileNames(nowhere).empty());
  const auto full = disk_.Create("/dev/full");
  ASSERT_NE(full, nullptr);
  EXPECT_TRUE(!full->Write("x") && full->Close());
  EXPECT_FALSE(full->Close()) << "closed already";
  // A disk that takes a part of what is written.
  rlimit limit = {};
  getrlimit(RLIMIT_FSIZE, &limit);
  const rlim_t before = std::exchange(limit.rlim_cur, 50'000);
  std::signal(SIGXFSZ, SIG_IGN);
  setrlimit(RLIMIT_FSIZE, &limit);
  EXPECT_FALSE(Put(file_, std::string(100'000, 'x')));
  limit.rlim_cur = before;
  setrlimit(RLIMIT_FSIZE, &limit);
}

TEST_F(RealDiskTest, OpensOnlyRegularFilesAndReadsNoneWithoutEnd) {
  ASSERT_EQ(mkfifo(file_.c_str(), 0600), 0);
  fs::create_symlink("/dev/zero", other_);
  for (const fs::path& special : {file_, other_, folder_}) EXPECT_EQ(disk_.Open(special), nullptr) << special;
  // It tells a size of 0 and has thousands of gigabytes.
  EXPECT_EQ(ReadFile(disk_, "/proc/self/pagemap"), std::nullopt);
}

TEST_F(RealDiskTest, AFileIsKeptAsLongAsItIsOpenUnderAnyName) {
  auto kept = disk_.Create(file_);
  EXPECT_FALSE(disk_.IsKept(file_));
  kept->KeepOthersAway();
  ASSERT_TRUE(disk_.Rename(file_, other_) && Put(file_, "x"));
  EXPECT_TRUE(disk_.IsKept(other_) && !disk_.IsKept(file_) && !disk_.IsKept(folder_ / "none"));
  kept.reset();
  EXPECT_FALSE(disk_.IsKept(other_));
}

TEST_F(RealDiskTest, TellsWhatSpeaksAgainstReplacingAFile) {
  ASSERT_TRUE(Put(file_, "x"));
  EXPECT_FALSE(disk_.TiesOf(file_).protected_from_writing || disk_.TiesOf(file_).has_other_names);
  EXPECT_FALSE(disk_.TiesOf(other_).protected_from_writing) << "there is none";
  fs::permissions(file_, fs::perms::owner_read);
  ASSERT_TRUE(disk_.Link(file_, other_));
  EXPECT_TRUE(disk_.TiesOf(file_).protected_from_writing && disk_.TiesOf(file_).has_other_names);
}

TEST_F(RealDiskTest, StateTellsWritingAndReplacing) {
  ASSERT_TRUE(Put(file_, "12345"));
  const auto before = disk_.State(file_);
  EXPECT_TRUE(before && before->size == 5 && before == disk_.State(file_));
  // The same size and time in another file.
  ASSERT_TRUE(Put(other_, "54321"));
  fs::last_write_time(other_, fs::last_write_time(file_));
  ASSERT_TRUE(disk_.Rename(other_, file_));
  EXPECT_FALSE(disk_.Exists(other_));
  EXPECT_EQ(ReadFile(disk_, file_), "54321");
  const auto replaced = disk_.State(file_);
  EXPECT_NE(before, replaced);
  fs::last_write_time(file_, fs::last_write_time(file_) + std::chrono::nanoseconds(100));
  EXPECT_NE(replaced, disk_.State(file_));
  EXPECT_TRUE(disk_.Remove(file_) && !disk_.Exists(file_));
  EXPECT_TRUE(disk_.Remove(file_)) << "there is none";
}

TEST_F(RealDiskTest, ListsPlainFilesAndFreeBytes) {
  ASSERT_TRUE(Put(folder_ / "\xC3\xBC.mlb", ""));
  fs::create_directory(folder_ / "folder");
  EXPECT_EQ(disk_.FileNames(folder_), std::vector<std::string>{"\xC3\xBC.mlb"});
  // Others may be writing at the same time.
  constexpr double kGiB = 1 << 30;
  EXPECT_NEAR(static_cast<double>(disk_.FreeBytes(folder_).value_or(0)),
              static_cast<double>(fs::space(folder_).available), kGiB);
}

TEST_F(RealDiskTest, MakesFoldersAndFollowsLinks) {
  EXPECT_TRUE(disk_.MakeFolder(folder_ / "a" / "b"));
  EXPECT_TRUE(disk_.MakeFolder(folder_ / "a" / "b")) << "there already";
  ASSERT_TRUE(Put(file_, "x"));
  EXPECT_FALSE(disk_.MakeFolder(file_ / "c"));
  fs::create_symlink(file_, other_);
  fs::create_symlink(folder_ / "none", folder_ / "dangling");
  fs::create_directory_symlink(folder_, folder_ / "a" / "back");
  fs::create_symlink(folder_ / "loop", folder_ / "loop");
  const std::string long_name(300, 'n');
  const fs::path real = fs::canonical(folder_);
  const std::pair<fs::path, fs::path> cases[] = {{other_, real / "a.txt"},
                                                 {folder_ / "a" / "back" / "b.txt", real / "a.txt"},
                                                 {folder_ / "a" / "back" / "none", real / "none"},
                                                 {folder_ / "dangling", real / "dangling"},
                                                 {folder_ / "loop" / "x", folder_ / "loop" / "x"},
                                                 {folder_ / long_name, folder_ / long_name}};
  for (const auto& [path, target] : cases) EXPECT_EQ(disk_.Resolve(path), target);
}

using namespace std::chrono_literals;

// Waits for what another thread does; false when it does not come.
template <typename Condition>
bool Comes(const Condition& condition) {
  const auto end = std::chrono::steady_clock::now() + 60s;
  bool come = false;
  while (!(come = condition()) && std::chrono::steady_clock::now() < end) std::this_thread::sleep_for(5ms);
  return come;
}

// A flush that is held up at its end, so that on a busy machine, too, it is known what was written meanwhile.
TEST(BackgroundFlush, GathersWritesFlushesOnItsOwnAndGoesOnAfterAFailure) {
  std::atomic<int> flushes = 0;
  std::atomic<bool> may_end = false;
  std::atomic<bool> good = false;
  BackgroundFlush background;
  background.SetFlush([&] {
    ++flushes;
    Comes([&] { return may_end.load(); });
    return good.load();
  });
  const auto start = std::chrono::steady_clock::now();
  background.Written();
  ASSERT_TRUE(Comes([&] { return flushes == 1; }));
  EXPECT_GE(std::chrono::steady_clock::now() - start, 400ms) << "not one by one";
  for (int i = 0; i < 100; ++i) background.Written();
  EXPECT_FALSE(background.TakeFailure()) << "it has not ended yet";
  may_end = true;
  EXPECT_TRUE(Comes([&] { return background.TakeFailure(); }));
  EXPECT_TRUE(Comes([&] { return flushes == 2; })) << "what was written meanwhile is one flush";
  EXPECT_TRUE(Comes([&] { return background.TakeFailure(); }));
  EXPECT_FALSE(background.TakeFailure()) << "told once";
  good = true;
  background.Written();
  EXPECT_TRUE(Comes([&] { return flushes == 3; }));
  std::this_thread::sleep_for(1200ms);
  EXPECT_TRUE(flushes == 3 && !background.TakeFailure()) << "nothing was written since";
}

TEST(BackgroundFlush, FlushesWhatIsLeftWhenItEndsAndNothingThatWasTakenAway) {
  int flushes = 0;
  for (const bool taken_away : {false, true}) {
    {
      BackgroundFlush background;
      background.SetFlush([&] { return ++flushes > 0; });
      background.Written();
      if (taken_away) background.SetFlush(nullptr);
    }
    EXPECT_EQ(flushes, 1);
  }
}

}  // namespace
}  // namespace tessaro
