#include "store/file/card_file.h"

#include "platform/code_page.h"
#include "tests/support/test_cards.h"

namespace tessaro {
namespace {

const std::vector<TestCard> kTwoCards = {{.id = "000007", .score = "5"}, {.id = "000003"}};
constexpr const char* kLock = "/deck/.x.mlb.lock";

// An open card file on a fresh disk.
class CardFileTest : public ::testing::Test {
 protected:
  CardFileTest() { OpenTestFile(disk_, file_, kTwoCards); }

  std::string TextOf(const char* path) { return WithBars(disk_.Content(path).value_or("(missing)")); }

  MemoryDisk disk_;
  CardFile file_{disk_};
};

TEST_F(CardFileTest, CreateNewWritesOneIndexCardAndKeepsTheFileThatWasThere) {
  ASSERT_TRUE(file_.CreateNew(kTestFile));
  std::string history = std::string(kHistoryLength, 'f') + "|0";
  for (int i = 1; i < kHistoryLength; ++i) history += " 0";
  EXPECT_EQ(TextOf(kTestFile),
            "ID|Topic|Question|Answer|Score|TimeLearned|YesNoRow|TimeRow\n@@|||||||\n000001|00|" +
                std::string("<index><navigation><font size=\"14\">Index</font><font size=\"12\"><br><br>z.B. "
                            "für Kurzbeschreibung und Links auf Themenübersichten."_cp) +
                "|-|000000001|00|" + history + "\n##|||||||\n");
  EXPECT_EQ(TextOf("/deck/x.row"), "BoxPos|Score|ID\n-1|-1|@@\n2|000000001|000001\n999999|999999999|##\n");
  EXPECT_EQ(TextOf("/deck/x.idt"), "ID|BoxPos\n-1|-1\n000001|2\n999999|999999\n");
  EXPECT_EQ(disk_.Content("/deck/x.ml~"), FileText(kTwoCards));
  EXPECT_FALSE(file_.changed());
  EXPECT_EQ(file_.IssueId(), "000002");
  EXPECT_FALSE(file_.CreateNew("/deck/neu.Mlb"));
  disk_.set_capacity(1);
  EXPECT_TRUE(!file_.CreateNew("/deck/neu.mlb") && !file_.changed()) << "no room";
  const OpenReport report = file_.Open(kTestFile);
  EXPECT_FALSE(report.learn_index_rebuilt || report.link_index_rebuilt || report.end_missing);
  EXPECT_EQ(file_.highest_id(), 1);
}

TEST_F(CardFileTest, OpenRefusesWhatIsNoCardFileAndKeepsTheOpenOne) {
  disk_.Put("/deck/leer.mlb", "");
  disk_.Put("/deck/ohne.mlb", FileText(std::vector<TestCard>()));
  disk_.Put("/deck/benutzt.mlb", FileText(kTwoCards));
  disk_.HoldLock("/deck/.benutzt.mlb.lock", {"pc", "7"});
  disk_.PutSymbolicLink("/deck/link.mlb", "/deck/x.txt");
  file_.RowChanged(2);
  using enum OpenResult;
  const std::pair<const char*, OpenResult> cases[] = {{"/deck/x.ml~", WrongType},      {"/deck/link.mlb", WrongType},
                                                      {"/deck/fehlt.mlb", CannotOpen}, {"/deck/leer.mlb", Unusable},
                                                      {"/deck/ohne.mlb", Unusable},    {"/deck/benutzt.mlb", InUse}};
  for (const auto& [path, result] : cases) {
    const OpenReport report = file_.Open(path);
    EXPECT_EQ(report.result, result) << path;
    EXPECT_EQ(report.in_use_by, (result == InUse ? LockHolder{"pc", "7"} : LockHolder())) << path;
  }
  EXPECT_EQ(file_.paths().cards, kTestFile);
  EXPECT_TRUE(file_.CardCount() == 2 && file_.changed());
  EXPECT_TRUE(disk_.IsLocked(kLock) && !disk_.IsLocked("/deck/.leer.mlb.lock"));
}

TEST_F(CardFileTest, CardFilesThatShareTheirCompanionsAreNotOpenAtTheSameTime) {
  disk_.Put("/deck/x.MLB", FileText(kTwoCards));
  const OpenReport twin = file_.Open("/deck/x.MLB");
  EXPECT_TRUE(twin.result == OpenResult::InUse && twin.twin == kTestFile);
  EXPECT_EQ(file_.SaveAs("/deck/x.MLB"), SaveResult::CardsFailed);
  EXPECT_EQ(file_.paths().cards, kTestFile);
  // A program without a lock is known by its journal.
  disk_.Put("/deck/y.mlb", FileText(kTwoCards));
  disk_.HoldLock("/deck/y.mlj", {"pc", "7"});
  const OpenReport journal = file_.Open("/deck/y.mlb");
  EXPECT_TRUE(journal.result == OpenResult::InUse && journal.twin.empty() && !disk_.IsLocked("/deck/.y.mlb.lock"));
}

TEST_F(CardFileTest, WithoutALockItIsReadUnlessTheUserInsists) {
  disk_.set_has_locks(false);
  disk_.Put("/deck/y.mlb", FileText(kTwoCards));
  const auto write_all = [&] {
    SetScore(file_, 2, 77);
    file_.settings().SetInt("ROW", "Pos", 3);
    EXPECT_TRUE(file_.SaveSettings());
    EXPECT_EQ(file_.SaveIndexes(), SaveResult::Saved);
    return file_.Save();
  };
  ASSERT_TRUE(file_.Open("/deck/y.mlb").read_only && file_.read_only() && !file_.locked());
  TableEdit edit;
  edit.replaced = {2};
  edit.replacing.AddRow({{file_.columns().answer, "anders"}});
  const int operations = disk_.operations();
  EXPECT_TRUE(file_.Edit(edit) && disk_.operations() == operations);
  EXPECT_EQ(write_all(), SaveResult::ReadOnly);
  EXPECT_TRUE(file_.changed() && disk_.FileNames("/deck").size() == 2) << "no journal, no index, no settings";
  ASSERT_EQ(file_.SaveAs("/deck/z.mlb"), SaveResult::Saved);
  EXPECT_FALSE(file_.read_only() || file_.changed());
  ASSERT_TRUE(file_.Open("/deck/y.mlb").read_only && !file_.WriteWithoutLock().unsaved);
  EXPECT_TRUE(write_all() == SaveResult::Saved && disk_.Content("/deck/y.mlb")->find("77") != std::string::npos);
  SetScore(file_, 2, 78);
  EXPECT_TRUE(disk_.Exists("/deck/y.mlj"));
  // What an earlier run left is told when it can be taken over.
  CardFile next(disk_);
  EXPECT_TRUE(!(next.Open("/deck/y.mlb").unsaved) && next.WriteWithoutLock().unsaved && next.TakeOverUnsaved());
}

TEST_F(CardFileTest, OpenTakesACardWithoutIdAndCountsNumbersUpToTheEndMark) {
  disk_.Put(kTestFile, FileText({{.id = "000012"}, {.id = "x99"}, {.id = ""}, {.id = "#"}, {.id = "000500"}}));
  const OpenReport report = file_.Open(kTestFile);
  EXPECT_TRUE(report.learn_index_rebuilt && report.index_defect == IndexDefect::None);
  EXPECT_TRUE(file_.highest_id() == 12 && file_.CardCount() == 5);
  EXPECT_TRUE(file_.learn_index().RowOfCard(4) != 0 && file_.RowOfId(500) == 6 && file_.RowOfId(0) == 0);
  ASSERT_EQ(file_.Save(), SaveResult::Saved);
  EXPECT_FALSE(file_.Open(kTestFile).learn_index_rebuilt || file_.Open(kTestFile).link_index_rebuilt);
}

TEST_F(CardFileTest, FindsCardsThatMovedAndSavesIndexesThatFit) {
  file_.cards().GoTo(2);
  file_.cards().InsertRow(false);
  EXPECT_TRUE(file_.RowOfId(7) == 3 && file_.RowOfId(3) == 4 && file_.RowOfId(9) == 0);
  file_.cards().Poke(file_.columns().id, 2, "000000");
  EXPECT_TRUE(file_.RebuildIndexes() && file_.RowOfId(0) == 0) << "a link to 0 leads to nothing";
  file_.cards().Poke(file_.columns().id, 2, "000009");
  ASSERT_EQ(file_.Save(), SaveResult::Saved);
  const std::string index = TextOf("/deck/x.row");
  disk_.Put("/deck/x.row", "alt");
  EXPECT_TRUE(file_.RebuildIndexes() && file_.SaveIndexes() == SaveResult::Saved);
  EXPECT_EQ(TextOf("/deck/x.row"), index);
  // Line ends are kept as they were read, for both indexes.
  for (const char* path : {"/deck/x.row", "/deck/x.idt"}) {
    const std::string lines = *disk_.Content(path);
    std::string text;
    for (const char c : lines) text += c == '\n' ? "\r\n" : std::string(1, c);
    disk_.Put(path, text);
    ASSERT_EQ(file_.Open(kTestFile).result, OpenResult::Opened);
    EXPECT_EQ(file_.SaveIndexes(), SaveResult::Saved);
    EXPECT_EQ(disk_.Content(path), text);
    EXPECT_TRUE(file_.RebuildIndexes() && file_.SaveIndexes() == SaveResult::Saved);
  }
  EXPECT_EQ(TextOf("/deck/x.row"), index);
  file_.RowChanged(2);
  disk_.Put("/deck/x.row", "alt");
  EXPECT_EQ(file_.SaveIndexes(), SaveResult::Saved);
  EXPECT_EQ(TextOf("/deck/x.row"), "alt") << "it goes with the cards";
  ASSERT_EQ(file_.Save(), SaveResult::Saved);
  const OpenReport report = file_.Open(kTestFile);
  EXPECT_FALSE(report.learn_index_rebuilt || report.link_index_rebuilt);
  EXPECT_EQ(file_.learn_index().Score(file_.learn_index().RowOfCard(3)), 5);
}

TEST_F(CardFileTest, SaveKeepsTheStateBeforeAsTheOnlyBackupAndWritesThroughALink) {
  disk_.Put("/deck/x.ini", "[Fremd]\r\nk=v\r\n");
  disk_.PutSymbolicLink("/near/y.mlb", kTestFile);
  ASSERT_EQ(file_.Open("/near/y.mlb").result, OpenResult::Opened);
  SetScore(file_, 2, 10);
  ASSERT_EQ(file_.Save(), SaveResult::Saved);
  EXPECT_FALSE(file_.changed());
  const std::string first = *disk_.Content(kTestFile);
  SetScore(file_, 2, 20);
  file_.settings().SetInt("ROW", "Pos", 2);
  ASSERT_EQ(file_.Save(), SaveResult::Saved);
  EXPECT_EQ(disk_.Content("/deck/x.ml~"), first);
  EXPECT_TRUE(disk_.FileNames("/deck").size() == 5 && disk_.FileNames("/near").empty());
  EXPECT_EQ(TextOf("/deck/x.row"),
            "BoxPos|Score|ID\n-1|-1|@@\n3|000000001|000003\n2|000000020|000007\n999999|999999999|##\n");
  EXPECT_EQ(disk_.Content("/deck/x.ini"), "[Fremd]\r\nk=v\r\n\r\n[ROW]\r\nPos=2\r\n");
}

TEST_F(CardFileTest, ADamagedFileIsKeptWhicheverBackupTakesItsPlace) {
  const std::string whole = FileText(kTwoCards);
  const std::string no_end = whole.substr(0, whole.find("000003") + 9);  // in the middle of the second card
  const std::string no_start =
      With(whole, {whole.substr(whole.find("@@"), whole.find("000007") - whole.find("@@")), ""});
  for (const char* backup : {"/deck/x.ml~", "/b/y.ml~"}) {
    disk_ = MemoryDisk();
    disk_.Put(kTestFile, no_start);
    disk_.Put(backup, no_end);
    disk_.Put("/deck/x-beschaedigt-1.mlb", "schon da");
    const OpenReport report = file_.Open(kTestFile);
    EXPECT_TRUE(report.start_missing && !report.end_missing && report.cards == 2 && !file_.changed());
    const OpenReport restored = file_.Restore(backup);
    ASSERT_TRUE(restored.end_missing && restored.cards == 2);
    for (int save = 0; save < 2; ++save) ASSERT_EQ(file_.Save(), SaveResult::Saved);
    EXPECT_EQ(disk_.Content("/deck/x-beschaedigt-1.mlb"), "schon da");
    const std::string first = disk_.Content("/deck/x-beschaedigt-2.mlb").value_or("");
    const std::string second = disk_.Content("/deck/x-beschaedigt-3.mlb").value_or("");
    EXPECT_FALSE(disk_.Exists("/deck/x-beschaedigt-4.mlb") || file_.Open(kTestFile).end_missing);
    EXPECT_EQ(first, no_start);
    EXPECT_EQ(second.empty() ? disk_.Content(backup) : second, no_end);
  }
}

TEST_F(CardFileTest, SaveCopyLeavesTheOpenFileAsItIs) {
  SetScore(file_, 2, 10);
  disk_.Put("/b/kopie.mlb", "war da");
  ASSERT_EQ(file_.SaveCopy("/b/kopie.mlb"), SaveResult::Saved);
  EXPECT_TRUE(file_.changed() && !file_.ChangedOnDisk());
  EXPECT_EQ(file_.paths().cards, kTestFile);
  EXPECT_EQ(disk_.Content("/b/kopie.ml~"), "war da");
  EXPECT_EQ(disk_.FileNames("/b").size(), 4U);
  EXPECT_EQ(disk_.Content(kTestFile), FileText(kTwoCards));
  disk_.HoldLock("/b/.kopie.mlb.lock", {"pc", "7"});
  for (const char* refused : {"/b/kopie.mlb", "/b/kopie.txt"}) {
    EXPECT_EQ(file_.SaveCopy(refused), SaveResult::CardsFailed) << refused;
    EXPECT_EQ(file_.SaveAs(refused), SaveResult::CardsFailed) << refused;
  }
  ASSERT_EQ(file_.SaveCopy(kTestFile), SaveResult::Saved);
  EXPECT_FALSE(file_.changed());
}

TEST_F(CardFileTest, SaveAsMovesOnToTheNewName) {
  file_.settings().SetInt("ROW", "Pos", 2);
  SetScore(file_, 2, 10);
  ASSERT_EQ(file_.SaveAs("/b/neu.mlb"), SaveResult::Saved);
  EXPECT_FALSE(file_.changed() || file_.ChangedOnDisk());
  EXPECT_EQ(file_.paths().learn_index, "/b/neu.row");
  EXPECT_EQ(disk_.Content("/b/neu.ini"), "[ROW]\nPos=2\n");
  EXPECT_TRUE(!disk_.IsLocked(kLock) && disk_.IsLocked("/b/.neu.mlb.lock"));
  file_.Close();
  EXPECT_FALSE(disk_.IsLocked("/b/.neu.mlb.lock") || file_.IsOpen() || file_.CardCount() > 0);
}

TEST_F(CardFileTest, RestorePutsOtherCardsIntoTheOpenFile) {
  std::string broken = FileText({{.id = "000020"}});
  broken.resize(broken.size() - 10);
  disk_.Put("/deck/x.ml~", broken);
  disk_.Put("/deck/leer.mlb", "");
  EXPECT_EQ(file_.Restore("/deck/x.row").result, OpenResult::WrongType);
  EXPECT_EQ(file_.Restore("/deck/leer.mlb").result, OpenResult::Unusable);
  EXPECT_FALSE(file_.changed());
  file_.settings().SetInt("ROW", "Pos", 2);
  EXPECT_TRUE(file_.Restore("/deck/x.ml~").end_missing && file_.settings().Has("ROW", "Pos"));
  EXPECT_EQ(file_.paths().cards, kTestFile);
  EXPECT_TRUE(file_.changed() && !file_.ChangedOnDisk());
  EXPECT_EQ(file_.IssueId(), "000021");
  EXPECT_TRUE(file_.RowOfId(20) == 2 && file_.learn_index().RowCount() == 3);
  // Under a name that is a link, they are put into the file that it leads to.
  disk_.PutSymbolicLink("/near/y.mlb", kTestFile);
  file_.Close();
  ASSERT_EQ(file_.RestoreAs("/near/y.mlb", "/deck/x.ml~").result, OpenResult::Opened);
  EXPECT_TRUE(file_.paths().cards == kTestFile && disk_.IsLocked(kLock));
}

TEST_F(CardFileTest, EstimatesTheSpaceOfASave) {
  for (const auto& [wish, clamped] : {std::pair<int64_t, int64_t>{301, 301}, {9999, 2000}, {-1, 300}}) {
    int64_t bytes_per_card = wish;
    EXPECT_EQ(file_.EstimateSpace(bytes_per_card, kTestFile).needed, static_cast<uint64_t>(clamped * 2 * 6 / 5));
    EXPECT_EQ(bytes_per_card, clamped);
  }
}

}  // namespace
}  // namespace tessaro
