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

struct Fault {
  MemoryDisk::WriteFault write;
  bool stays;      // every later operation fails too
  bool has_links;  // without them there is a moment between two renames
  bool damaged;    // the file had lost its end before it was opened
};

// An open file with an unsaved answer, on a disk that then fails at operation `n`.
struct Unsaved {
  Unsaved(int n, const Fault& fault) {
    CardTable cards = MakeCards({{.id = "000001"}, {.id = "000002"}});
    old_text = FileText(cards);
    if (fault.damaged) old_text.resize(old_text.size() - 20);
    disk.set_has_links(fault.has_links);
    disk.Put(kTestFile, old_text);
    disk.Put("/deck/x.ml~", "older");
    disk.Put("/deck/x.ini", "[S]\nk=1\n");
    EXPECT_EQ(file.Open(kTestFile).result, OpenResult::Opened);
    file.cards().Poke(file.columns().score, 2, "000000777");
    file.learn_index().Update(2, 777);
    new_text = FileText(file.cards());
    file.settings().SetInt("S", "k", 2);
    file.RowChanged(2);
    disk.stay_broken(fault.stays);
    disk.FailAt(n, fault.write);
  }

  MemoryDisk disk;
  CardFile file{disk};
  std::string old_text;
  std::string new_text;
};

// Right after the save, and after a power cut: what has a name has reached the disk.
void ExpectWholeFiles(const Unsaved& unsaved, SaveResult result, const Fault& fault) {
  const std::optional<std::string> cards = unsaved.disk.Content(kTestFile);
  const std::optional<std::string> backup = unsaved.disk.Content("/deck/x.ml~");
  const bool is_new = cards == unsaved.new_text && backup == unsaved.old_text;
  if (result != SaveResult::CardsFailed) {
    EXPECT_TRUE(is_new);
  } else if (!fault.stays) {
    EXPECT_EQ(cards, unsaved.old_text);
    EXPECT_TRUE(backup == "older" || !fault.has_links);
  } else {
    EXPECT_TRUE(cards == unsaved.old_text ||
                (fault.has_links ? cards == unsaved.new_text : backup == unsaved.old_text));
  }
  if (result != SaveResult::CardsFailed && fault.damaged) {
    EXPECT_EQ(unsaved.disk.Content("/deck/x-beschaedigt-1.mlb"), unsaved.old_text);
  }
  if (result == SaveResult::SettingsFailed) {
    EXPECT_EQ(unsaved.disk.Content("/deck/x.ini"), "[S]\nk=1\n");
  }
}

void ExpectNothingLeftOver(const Unsaved& unsaved) {
  for (const std::string& name : unsaved.disk.FileNames("/deck")) EXPECT_FALSE(name.ends_with(".tmp")) << name;
}

void ExpectASecondSaveMendsAll(Unsaved& unsaved) {
  unsaved.disk.FailAt(0);
  EXPECT_EQ(unsaved.file.Save(), SaveResult::Saved);
  unsaved.file.Close();
  CardFile again(unsaved.disk);
  const OpenReport report = again.Open(kTestFile);
  EXPECT_FALSE(report.end_missing || report.learn_index_rebuilt || report.link_index_rebuilt);
  EXPECT_EQ(again.learn_index().Score(3), 777);
  ExpectNothingLeftOver(unsaved);
}

TEST(CardFileFault, AtAnyOperationOfASaveLeavesAWholeFileAndTellsWhatFailed) {
  using enum MemoryDisk::WriteFault;
  const Fault faults[] = {{Nothing, false, true, false},       {Nothing, false, true, true},
                          {Half, false, true, false},          {Half, true, true, true},
                          {HalfUnnoticed, false, true, false}, {HalfUnnoticed, false, false, true},
                          {Nothing, false, false, false},      {Half, true, false, false}};
  for (const Fault& fault : faults) {
    std::set<SaveResult> results;
    int n = 1;
    for (bool reached = true; reached; ++n) {
      SCOPED_TRACE(std::to_string(&fault - faults) + ". fault at operation " + std::to_string(n));
      Unsaved unsaved(n, fault);
      const SaveResult result = unsaved.file.Save();
      reached = unsaved.disk.operations() >= n;
      results.insert(result);
      EXPECT_EQ(unsaved.file.changed(), result != SaveResult::Saved);
      if (!fault.stays) {
        EXPECT_FALSE(unsaved.file.ChangedOnDisk());
        ExpectNothingLeftOver(unsaved);
      }
      ExpectWholeFiles(unsaved, result, fault);
      unsaved.disk.LoseUnflushed();
      ExpectWholeFiles(unsaved, result, fault);
      ExpectASecondSaveMendsAll(unsaved);
    }
    EXPECT_EQ(results.size(), 5U);
    EXPECT_GT(n, 20);
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
