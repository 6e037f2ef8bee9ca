#include <fstream>

#include "tests/support/temporary_folder.h"
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
    old_text = FileText({{.id = "000001"}, {.id = "000002"}});
    if (fault.damaged) old_text.resize(old_text.size() - 20);
    disk.set_has_links(fault.has_links);
    disk.Put(kTestFile, old_text);
    disk.Put("/deck/x.ml~", "older");
    disk.Put("/deck/x.ini", "[S]\nk=1\n");
    EXPECT_EQ(file.Open(kTestFile).result, OpenResult::Opened);
    SetScore(file, 2, 777);
    new_text = FileText(file.cards());
    file.settings().SetInt("S", "k", 2);
    disk.FailAt(n, fault.write, fault.stays);
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
  if (result != SaveResult::CardsFailed) {
    EXPECT_TRUE(cards == unsaved.new_text && backup == unsaved.old_text);
    EXPECT_TRUE(!fault.damaged || unsaved.disk.Content("/deck/x-beschaedigt-1.mlb") == unsaved.old_text);
  } else if (!fault.stays) {
    EXPECT_EQ(cards, unsaved.old_text);
    EXPECT_TRUE(backup == "older" || !fault.has_links);
  } else {
    const bool is_new = fault.has_links ? cards == unsaved.new_text : backup == unsaved.old_text;
    EXPECT_TRUE(cards == unsaved.old_text || is_new);
  }
  EXPECT_TRUE(result != SaveResult::SettingsFailed || unsaved.disk.Content("/deck/x.ini") == "[S]\nk=1\n");
}

bool LeavesNothing(const MemoryDisk& disk) {
  const std::string names = testing::PrintToString(disk.FileNames("/deck"));
  return names.find(".tmp") == std::string::npos;
}

void ExpectASecondSaveMendsAll(Unsaved& unsaved) {
  unsaved.disk.FailAt(0);
  EXPECT_EQ(unsaved.file.Save(), SaveResult::Saved);
  const OpenReport report = unsaved.file.Open(kTestFile);
  EXPECT_FALSE(report.end_missing || report.learn_index_rebuilt || report.link_index_rebuilt);
  EXPECT_EQ(unsaved.file.learn_index().Score(3), 777);
  EXPECT_TRUE(LeavesNothing(unsaved.disk));
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
      EXPECT_TRUE(fault.stays || (!unsaved.file.ChangedOnDisk() && LeavesNothing(unsaved.disk)));
      ExpectWholeFiles(unsaved, result, fault);
      unsaved.disk.LoseUnflushed();
      ExpectWholeFiles(unsaved, result, fault);
      ExpectASecondSaveMendsAll(unsaved);
    }
    EXPECT_EQ(results.size(), 5U);
    EXPECT_GT(n, 20);
  }
}

TEST(CardFileFault, AtAnyOperationOfOpeningIsToldAndKeepsTheOpenFileAndTheSettings) {
  const std::string settings = "[S]\nk=1\n";
  int n = 1;
  std::set<OpenResult> results;
  bool settings_missed = false;
  for (bool reached = true; reached; ++n) {
    SCOPED_TRACE(n);
    MemoryDisk disk;
    CardFile file(disk);
    ASSERT_TRUE(file.CreateNew("/deck/y.mlb"));
    file.Close();
    disk.Put("/deck/y.ini", settings);
    OpenTestFile(disk, file, {{.id = "000001"}, {.id = "000002"}});
    disk.FailAt(n);
    const OpenReport report = file.Open("/deck/y.mlb");
    reached = disk.operations() >= n;
    results.insert(report.result);
    const bool opened = report.result == OpenResult::Opened;
    EXPECT_EQ(file.paths().cards, opened ? "/deck/y.mlb" : kTestFile);
    EXPECT_TRUE(file.CardCount() == (opened ? 1 : 2) && file.learn_index().RowCount() == (opened ? 3 : 4));
    disk.FailAt(0);
    settings_missed = settings_missed || report.settings_unreadable;
    if (report.read_only) (void)file.WriteWithoutLock();
    file.RowChanged(2);
    EXPECT_EQ(file.Save(), SaveResult::Saved);
    EXPECT_FALSE(file.changed());
    EXPECT_EQ(disk.Content("/deck/y.ini"), settings) << "what could not be read is not written over";
  }
  EXPECT_EQ(results, (std::set{OpenResult::Opened, OpenResult::CannotOpen, OpenResult::CannotLoad}));
  EXPECT_TRUE(settings_missed);
}

// On the machine's own disk.
TEST(CardFileOnDisk, IsNeverGivenToTwoAndKeepsItsRights) {
  const TemporaryFolder temporary;
  const fs::path& folder = temporary.path();
  const fs::path path = folder / "a.mlb";
  const fs::path link = folder / "b.mlb";
  fs::create_symlink(path, link);
  fs::create_directory_symlink(folder, folder / "c");
  CardFile file;
  CardFile second;
  ASSERT_TRUE(file.CreateNew(path));
  EXPECT_EQ(file.Open(folder / "c" / "a.mlb").result, OpenResult::Opened) << "it is the open file";
  for (const fs::path& name : {path, link, folder / "c" / "a.mlb"}) {
    const OpenReport report = second.Open(name);
    EXPECT_EQ(report.result, OpenResult::InUse);
    EXPECT_EQ(report.in_use_by.process, std::to_string(getpid()));
    EXPECT_NE(report.in_use_by.machine, "");
  }
  EXPECT_FALSE(second.CreateNew(path));
  file.Close();
  EXPECT_EQ(second.Open(link).result, OpenResult::Opened);
  constexpr fs::perms kRights = fs::perms::owner_read | fs::perms::owner_write;
  fs::permissions(path, kRights);
  EXPECT_EQ(second.Save(), SaveResult::Saved);
  EXPECT_TRUE(fs::status(path).permissions() == kRights && !second.ChangedOnDisk());
  second.Close();
  EXPECT_FALSE(fs::exists(folder / ".a.mlb.lock"));
  // Where a link has the lock's place there is none.
  fs::create_symlink("/dev/null", folder / ".a.mlb.lock");
  EXPECT_TRUE(file.Open(path).read_only);
  file.Close();
  fs::remove(folder / ".a.mlb.lock");
  // What a program that died left behind keeps nobody out.
  std::ofstream(folder / ".a.mlb.lock") << "pc\n1\n";
  EXPECT_EQ(file.Open(path).result, OpenResult::Opened);
  file.Close();
}

// The names of all companions fit, and none is that of another card file.
TEST(CardFileOnDisk, AFileWithTheLongestNameOfADriveLacksNothing) {
  const TemporaryFolder temporary;
  for (const size_t length : {196U, 200U, 201U, 252U, 254U, 255U}) {
    SCOPED_TRACE(length);
    std::string name(length % 2, 'n');
    while (name.size() + 4 < length) name += "ü";
    const fs::path path = temporary.path() / (name + ".mlb");
    std::ofstream(path) << FileText({{.id = "000001"}, {.id = "000002"}});
    const auto answer = [&](const char* text) {
      CardFile file;
      ASSERT_EQ(file.Open(path).result, OpenResult::Opened);
      CardFile second;
      EXPECT_TRUE(file.locked() && second.Open(path).result == OpenResult::InUse);
      file.cards().Poke(file.columns().answer, kFirstCardRow, text);
      file.RowChanged(kFirstCardRow);
    };
    answer("eins");
    CardFile file;
    ASSERT_TRUE(file.Open(path).unsaved) << "the program ended without saving";
    EXPECT_FALSE(file.PutUnsavedAside().empty());
    const std::vector<ChangesPutAside> aside = file.ListPutAside();
    ASSERT_EQ(aside.size(), 1U);
    ASSERT_TRUE(file.TakeOverPutAside(aside[0].path));
    ASSERT_EQ(file.Save(), SaveResult::Saved);
    EXPECT_TRUE(fs::exists(file.paths().backup) && fs::exists(file.paths().learn_index));
    file.Close();
    fs::resize_file(path, fs::file_size(path) - 40);
    ASSERT_TRUE(file.Open(path).end_missing && file.Save() == SaveResult::Saved);
  }
  int kept = 0;
  for (const auto& entry : fs::directory_iterator(temporary.path())) {
    EXPECT_FALSE(entry.path().string().ends_with(".tmp")) << entry.path();
    if (entry.path().string().find("-beschaedigt-1") != std::string::npos) ++kept;
  }
  EXPECT_EQ(kept, 6) << "the damaged file of each";
}

}  // namespace
}  // namespace tessaro
