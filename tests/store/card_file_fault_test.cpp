#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <fstream>

#include "store/card_file.h"
#include "tests/support/test_cards.h"

namespace tessaro {
namespace {

namespace fs = std::filesystem;

// An open file with an unsaved answer, on a disk that then fails at operation `n`.
struct Unsaved {
  explicit Unsaved(int n, MemoryDisk::WriteFault fault, bool damaged) {
    CardTable cards = MakeCards({{.id = "000001"}, {.id = "000002"}});
    old_text = FileText(cards);
    if (damaged) old_text.resize(old_text.size() - 20);
    disk.Put(kTestFile, old_text);
    disk.Put("/deck/x.ini", "[S]\nk=1\n");
    EXPECT_EQ(file.Open(kTestFile).result, OpenResult::Opened);
    file.cards().Poke(file.columns().score, 2, "000000777");
    file.learn_index().Update(2, 777);
    new_text = FileText(file.cards());
    file.settings().SetInt("S", "k", 2);
    file.RowChanged(2);
    disk.FailAt(n, fault);
  }

  MemoryDisk disk;
  CardFile file{disk};
  std::string old_text;
  std::string new_text;
};

void ExpectNothingLost(Unsaved& unsaved, SaveResult result, bool damaged) {
  const std::optional<std::string> cards = unsaved.disk.Content(kTestFile);
  EXPECT_EQ(cards, result == SaveResult::CardsFailed ? unsaved.old_text : unsaved.new_text);
  EXPECT_EQ(unsaved.file.changed(), result != SaveResult::Saved);
  EXPECT_FALSE(unsaved.file.ChangedOnDisk());
  if (result != SaveResult::CardsFailed && damaged) {
    EXPECT_EQ(unsaved.disk.Content("/deck/x-beschaedigt-1.mlb"), unsaved.old_text);
  }
  if (result == SaveResult::SettingsFailed) {
    EXPECT_EQ(unsaved.disk.Content("/deck/x.ini"), "[S]\nk=1\n");
  }
  // Saving again is all it takes.
  unsaved.disk.FailAt(0);
  EXPECT_EQ(unsaved.file.Save(), SaveResult::Saved);
  unsaved.file.Close();
  CardFile again(unsaved.disk);
  const OpenReport report = again.Open(kTestFile);
  EXPECT_FALSE(report.end_missing || report.learn_index_rebuilt || report.link_index_rebuilt);
  EXPECT_EQ(again.learn_index().Score(3), 777);
  for (const std::string& name : unsaved.disk.FileNames("/deck")) EXPECT_FALSE(name.ends_with(".tmp")) << name;
}

TEST(CardFileFault, AtAnyOperationOfASaveLeavesAWholeFileAndTellsWhatFailed) {
  using enum MemoryDisk::WriteFault;
  for (const bool damaged : {false, true}) {
    for (const MemoryDisk::WriteFault fault : {Nothing, Half, HalfUnnoticed}) {
      std::set<SaveResult> results;
      int n = 1;
      for (bool reached = true; reached; ++n) {
        SCOPED_TRACE(n);
        Unsaved unsaved(n, fault, damaged);
        const SaveResult result = unsaved.file.Save();
        reached = unsaved.disk.operations() >= n;
        results.insert(result);
        ExpectNothingLost(unsaved, result, damaged);
      }
      EXPECT_EQ(results.size(), 5U);
      EXPECT_GT(n, 20);
    }
  }
}

TEST(CardFileFault, AtAnyOperationOfOpeningIsToldAndKeepsTheOpenFile) {
  int n = 1;
  std::set<OpenResult> results;
  for (bool reached = true; reached; ++n) {
    SCOPED_TRACE(n);
    MemoryDisk disk;
    CardFile file(disk);
    ASSERT_TRUE(file.CreateNew("/deck/y.mlb"));
    file.Close();
    OpenTestFile(disk, file, {{.id = "000001"}, {.id = "000002"}});
    disk.FailAt(n);
    const OpenReport report = file.Open("/deck/y.mlb");
    reached = disk.operations() >= n;
    results.insert(report.result);
    const bool opened = report.result == OpenResult::Opened;
    EXPECT_EQ(file.paths().cards, opened ? "/deck/y.mlb" : kTestFile);
    EXPECT_EQ(file.CardCount(), opened ? 1 : 2);
    EXPECT_EQ(file.learn_index().RowCount(), opened ? 3 : 4);
  }
  EXPECT_EQ(results, (std::set{OpenResult::Opened, OpenResult::CannotOpen, OpenResult::CannotLoad}));
}

TEST(CardFileFault, SettingsThatCouldNotBeReadAreNotWrittenOver) {
  MemoryDisk disk;
  disk.Put("/deck/x.ini", "[S]\nk=1\n");
  int n = 1;
  CardFile file(disk);
  OpenTestFile(disk, file, {{.id = "000001"}});
  // The last thing opening does is to read the settings.
  disk.FailAt(0);
  ASSERT_EQ(file.Open(kTestFile).result, OpenResult::Opened);
  n = disk.operations();
  disk.FailAt(n);
  ASSERT_EQ(file.Open(kTestFile).result, OpenResult::Opened);
  disk.FailAt(0);
  EXPECT_EQ(file.Save(), SaveResult::SettingsFailed);
  EXPECT_EQ(disk.Content("/deck/x.ini"), "[S]\nk=1\n");
}

// A folder on the machine's own disk.
class RealFolderTest : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string name = (fs::temp_directory_path() / "tessaro-XXXXXX").string();
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    folder_ = name;
  }
  void TearDown() override { fs::remove_all(folder_); }

  static std::string Bytes(const fs::path& path) { return ReadFile(RealDisk(), path).value_or("(missing)"); }

  fs::path folder_;
};

TEST_F(RealFolderTest, NeverGivesAFileToTwo) {
  CardFile first;
  ASSERT_TRUE(first.CreateNew(folder_ / "a.mlb"));
  fs::create_symlink(folder_ / "a.mlb", folder_ / "b.mlb");
  CardFile second;
  for (const char* name : {"a.mlb", "b.mlb"}) {
    const OpenReport report = second.Open(folder_ / name);
    EXPECT_EQ(report.result, OpenResult::InUse);
    EXPECT_TRUE(report.in_use_by.ends_with(", process " + std::to_string(getpid()))) << report.in_use_by;
  }
  EXPECT_FALSE(second.CreateNew(folder_ / "a.mlb"));
  first.Close();
  EXPECT_EQ(second.Open(folder_ / "b.mlb").result, OpenResult::Opened);
  second.Close();
  EXPECT_FALSE(fs::exists(folder_ / ".a.mlb.lock"));
  // What a program that died left behind keeps nobody out.
  std::ofstream(folder_ / ".a.mlb.lock") << "pc\n1\n";
  EXPECT_EQ(first.Open(folder_ / "a.mlb").result, OpenResult::Opened);
}

TEST_F(RealFolderTest, SavingKeepsTheRightsOfTheFile) {
  CardFile file;
  ASSERT_TRUE(file.CreateNew(folder_ / "a.mlb"));
  fs::permissions(folder_ / "a.mlb", fs::perms::owner_read | fs::perms::owner_write);
  ASSERT_EQ(file.Save(), SaveResult::Saved);
  EXPECT_EQ(fs::status(folder_ / "a.mlb").permissions(), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_FALSE(file.ChangedOnDisk());
}

TEST_F(RealFolderTest, AFileThatMayNotGrowKeepsItsOldContent) {
  CardFile file;
  ASSERT_TRUE(file.CreateNew(folder_ / "a.mlb"));
  const std::string old_text = Bytes(folder_ / "a.mlb");
  file.cards().Poke(file.columns().answer, 2, std::string(100000, 'x'));
  rlimit old_limit = {};
  getrlimit(RLIMIT_FSIZE, &old_limit);
  rlimit limit = old_limit;
  limit.rlim_cur = 50000;
  std::signal(SIGXFSZ, SIG_IGN);
  setrlimit(RLIMIT_FSIZE, &limit);
  const SaveResult result = file.Save();
  setrlimit(RLIMIT_FSIZE, &old_limit);
  EXPECT_EQ(result, SaveResult::CardsFailed);
  EXPECT_EQ(Bytes(folder_ / "a.mlb"), old_text);
  EXPECT_FALSE(fs::exists(folder_ / "a.mlb.tmp"));
  EXPECT_EQ(file.Save(), SaveResult::Saved);
}

}  // namespace
}  // namespace tessaro
