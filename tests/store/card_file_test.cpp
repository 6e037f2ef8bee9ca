#include "store/card_file.h"

#include <gtest/gtest.h>

#include "store/code_page.h"
#include "tests/support/test_cards.h"

namespace tessaro {
namespace {

const std::vector<TestCard> kTwoCards = {{.id = "000007", .score = "5"}, {.id = "000003"}};
constexpr const char* kLock = "/deck/.x.mlb.lock";

std::string TextOf(std::string text) {
  std::replace(text.begin(), text.end(), kFieldSeparator, '|');
  return text;
}

std::string TextOf(const MemoryDisk& disk, const std::string& path) {
  return TextOf(disk.Content(path).value_or(""));
}

std::string DeckOf(const std::vector<TestCard>& cards) {
  CardTable table = MakeCards(cards);
  return FileText(table);
}

// A fresh disk with a card file on it.
class CardFileTest : public ::testing::Test {
 protected:
  CardFileTest() { disk_.Put(kTestFile, DeckOf(kTwoCards)); }

  // Changes a card so that the next save differs.
  static void Answer(CardFile& file, const char* score) {
    file.cards().Poke(file.columns().score, 2, score);
    file.learn_index().Update(2, LeadingNumber(score));
    file.RowChanged(2);
  }

  MemoryDisk disk_;
  CardFile file_{disk_};
};

TEST(CardFilePaths, StandBesideTheCardFile) {
  const CardFilePaths paths = PathsFor("/a.b/Karten 1.MLB");
  EXPECT_EQ(paths.learn_index, "/a.b/Karten 1.row");
  EXPECT_EQ(paths.link_index, "/a.b/Karten 1.idt");
  EXPECT_EQ(paths.settings, "/a.b/Karten 1.ini");
  EXPECT_EQ(paths.backup, "/a.b/Karten 1.ML~");
}

TEST_F(CardFileTest, CreateNewWritesOneIndexCard) {
  ASSERT_TRUE(file_.CreateNew("/deck/neu.mlb"));
  const std::string no = std::string(kHistoryLength, 'f');
  std::string times = "0";
  for (int i = 1; i < kHistoryLength; ++i) times += " 0";
  EXPECT_EQ(TextOf(disk_, "/deck/neu.mlb"),
            "ID|Topic|Question|Answer|Score|TimeLearned|YesNoRow|TimeRow\n@@|||||||\n"
            "000001|00|<index><navigation><font size=\"14\">Index</font><font size=\"12\"><br><br>"
            "z.B. " +
                std::string("für Kurzbeschreibung und Links auf Themenübersichten."_cp) + "|-|000000001|00|" + no +
                "|" + times + "\n##|||||||\n");
  EXPECT_EQ(TextOf(disk_, "/deck/neu.row"), "BoxPos|Score|ID\n-1|-1|@@\n2|000000001|000001\n999999|999999999|##\n");
  EXPECT_EQ(TextOf(disk_, "/deck/neu.idt"), "ID|BoxPos\n-1|-1\n000001|2\n999999|999999\n");
  EXPECT_FALSE(file_.changed());
  EXPECT_EQ(file_.IssueId(), "000002");
  EXPECT_EQ(file_.IssueId(), "000003");
  CardFile again(disk_);
  file_.Close();
  const OpenReport report = again.Open("/deck/neu.mlb");
  EXPECT_EQ(report.result, OpenResult::Opened);
  EXPECT_FALSE(report.learn_index_rebuilt || report.link_index_rebuilt || report.end_missing);
  EXPECT_EQ(again.highest_id(), 1);
}

TEST_F(CardFileTest, CreateNewKeepsTheFileThatWasThereAsBackup) {
  ASSERT_TRUE(file_.CreateNew(kTestFile));
  EXPECT_EQ(disk_.Content("/deck/x.ml~"), DeckOf(kTwoCards));
  for (const char* bad : {"/deck/neu.Mlb", "/deck/neu", "/deck/neu.ml~"}) EXPECT_FALSE(file_.CreateNew(bad)) << bad;
  EXPECT_EQ(file_.paths().cards, kTestFile);
}

TEST_F(CardFileTest, OpenRefusesWhatIsNoCardFileAndKeepsTheOpenOne) {
  disk_.Put("/deck/a.Mlb", DeckOf(kTwoCards));
  disk_.Put("/deck/leer.mlb", "");
  disk_.Put("/deck/ohne.mlb", DeckOf({}));
  disk_.Put("/deck/fremd.mlb", "a;b\n1;2\n");
  disk_.Put("/deck/benutzt.mlb", DeckOf(kTwoCards));
  disk_.HoldLock("/deck/.benutzt.mlb.lock", "pc, process 7");
  disk_.PutSymbolicLink("/deck/link.mlb", "/deck/x.txt");
  ASSERT_EQ(file_.Open(kTestFile).result, OpenResult::Opened);
  file_.RowChanged(2);
  const struct {
    const char* path;
    OpenResult result;
  } cases[] = {{"/deck/a.Mlb", OpenResult::WrongType},    {"/deck/x.ml~", OpenResult::WrongType},
               {"/deck/link.mlb", OpenResult::WrongType}, {"/deck/fehlt.mlb", OpenResult::CannotOpen},
               {"/deck/leer.mlb", OpenResult::Unusable},  {"/deck/ohne.mlb", OpenResult::Unusable},
               {"/deck/fremd.mlb", OpenResult::Unusable}, {"/deck/benutzt.mlb", OpenResult::InUse}};
  for (const auto& c : cases) {
    const OpenReport report = file_.Open(c.path);
    EXPECT_EQ(report.result, c.result) << c.path;
    EXPECT_EQ(report.in_use_by, c.result == OpenResult::InUse ? "pc, process 7" : "") << c.path;
  }
  EXPECT_EQ(file_.paths().cards, kTestFile);
  EXPECT_EQ(file_.CardCount(), 2);
  EXPECT_TRUE(file_.changed());
  EXPECT_TRUE(disk_.IsLocked(kLock));
  EXPECT_FALSE(disk_.IsLocked("/deck/.leer.mlb.lock"));
}

TEST_F(CardFileTest, OpenRebuildsAnIndexThatDoesNotFit) {
  ASSERT_EQ(file_.Open(kTestFile).result, OpenResult::Opened);
  ASSERT_EQ(file_.Save(), SaveResult::Saved);
  const std::string row = *disk_.Content("/deck/x.row");
  const std::string idt = *disk_.Content("/deck/x.idt");
  const struct {
    std::string row, idt;
    bool learn_rebuilt, link_rebuilt;
  } cases[] = {{row, idt, false, false}, {"", idt, true, false}, {row, "x\n", false, true}, {idt, row, true, true}};
  for (const auto& c : cases) {
    disk_.Put("/deck/x.row", c.row);
    disk_.Put("/deck/x.idt", c.idt);
    const OpenReport report = file_.Open(kTestFile);
    EXPECT_EQ(report.learn_index_rebuilt, c.learn_rebuilt);
    EXPECT_EQ(report.link_index_rebuilt, c.link_rebuilt);
    EXPECT_EQ(file_.learn_index().BoxPos(2), 3);
    EXPECT_EQ(file_.RowOfId(7), 2);
  }
}

TEST_F(CardFileTest, OpenTellsOfACardWithoutId) {
  disk_.Put(kTestFile, DeckOf({{.id = "000001"}, {.id = ""}}));
  const OpenReport report = file_.Open(kTestFile);
  EXPECT_EQ(report.result, OpenResult::Opened);
  EXPECT_TRUE(report.index_defect);
  EXPECT_FALSE(file_.RebuildIndexes());
}

TEST_F(CardFileTest, CountsTheNumbersUpToTheEndMark) {
  disk_.Put(kTestFile, DeckOf({{.id = "000012"}, {.id = "x99"}, {.id = "#"}, {.id = "000500"}}));
  ASSERT_EQ(file_.Open(kTestFile).result, OpenResult::Opened);
  EXPECT_EQ(file_.highest_id(), 12);
  EXPECT_EQ(file_.CardCount(), 4);
}

TEST_F(CardFileTest, FindsACardThatMovedSinceTheIndexWasBuilt) {
  ASSERT_EQ(file_.Open(kTestFile).result, OpenResult::Opened);
  file_.cards().GoTo(2);
  file_.cards().InsertRow(false);
  EXPECT_EQ(file_.RowOfId(7), 3);
  EXPECT_EQ(file_.RowOfId(3), 4);
  EXPECT_EQ(file_.RowOfId(9), 0);
}

TEST_F(CardFileTest, SaveKeepsTheStateBeforeAsTheOnlyBackup) {
  disk_.Put("/deck/x.ini", "[Fremd]\r\nk=v\r\n");
  ASSERT_EQ(file_.Open(kTestFile).result, OpenResult::Opened);
  Answer(file_, "000000010");
  ASSERT_EQ(file_.Save(), SaveResult::Saved);
  EXPECT_FALSE(file_.changed());
  const std::string first = *disk_.Content(kTestFile);
  Answer(file_, "000000020");
  file_.settings().SetInt("ROW", "Pos", 2);
  ASSERT_EQ(file_.Save(), SaveResult::Saved);
  EXPECT_EQ(disk_.Content("/deck/x.ml~"), first);
  EXPECT_EQ(disk_.FileNames("/deck").size(), 5U);
  EXPECT_EQ(TextOf(disk_, "/deck/x.row"),
            "BoxPos|Score|ID\n-1|-1|@@\n3|000000001|000003\n2|000000020|000007\n999999|999999999|##\n");
  EXPECT_EQ(disk_.Content("/deck/x.ini"), "[Fremd]\r\nk=v\r\n\r\n[ROW]\r\nPos=2\r\n");
}

TEST_F(CardFileTest, SaveWritesIndexesThatFitAlthoughCardsMoved) {
  ASSERT_EQ(file_.Open(kTestFile).result, OpenResult::Opened);
  file_.cards().Poke(file_.columns().id, 2, "000003");
  file_.cards().Poke(file_.columns().id, 3, "000007");
  ASSERT_EQ(file_.Save(), SaveResult::Saved);
  const OpenReport report = file_.Open(kTestFile);
  EXPECT_FALSE(report.learn_index_rebuilt || report.link_index_rebuilt);
  EXPECT_EQ(file_.learn_index().Score(file_.learn_index().RowOfCard(2)), 5);
}

TEST_F(CardFileTest, ADamagedFileIsKeptWhenItIsSavedOver) {
  std::string broken = DeckOf(kTwoCards);
  broken.resize(broken.find("000003") + 9);  // in the middle of the second card
  for (const bool has_links : {true, false}) {
    disk_ = MemoryDisk();
    disk_.set_has_links(has_links);
    disk_.Put(kTestFile, broken);
    disk_.Put("/deck/x-beschaedigt-1.mlb", "schon da");
    CardFile file(disk_);
    const OpenReport report = file.Open(kTestFile);
    EXPECT_EQ(report.result, OpenResult::Opened);
    EXPECT_TRUE(report.end_missing);
    EXPECT_EQ(report.cards, 2);
    EXPECT_FALSE(file.changed());
    ASSERT_EQ(file.Save(), SaveResult::Saved);
    ASSERT_EQ(file.Save(), SaveResult::Saved);
    EXPECT_EQ(disk_.Content("/deck/x-beschaedigt-2.mlb"), broken);
    EXPECT_EQ(disk_.Content("/deck/x-beschaedigt-1.mlb"), "schon da");
    EXPECT_FALSE(disk_.Exists("/deck/x-beschaedigt-3.mlb"));
    EXPECT_FALSE(file.Open(kTestFile).end_missing);
  }
}

TEST_F(CardFileTest, SaveCopyLeavesTheOpenFileAsItIs) {
  ASSERT_EQ(file_.Open(kTestFile).result, OpenResult::Opened);
  Answer(file_, "000000010");
  disk_.Put("/b/kopie.mlb", "war da");
  ASSERT_EQ(file_.SaveCopy("/b/kopie.mlb"), SaveResult::Saved);
  EXPECT_TRUE(file_.changed());
  EXPECT_FALSE(file_.ChangedOnDisk());
  EXPECT_EQ(file_.paths().cards, kTestFile);
  EXPECT_EQ(disk_.Content("/b/kopie.ml~"), "war da");
  EXPECT_EQ(disk_.FileNames("/b").size(), 4U);
  EXPECT_EQ(disk_.Content(kTestFile), DeckOf(kTwoCards));
  disk_.HoldLock("/b/.kopie.mlb.lock", "pc, process 7");
  for (const char* refused : {"/b/kopie.mlb", "/b/kopie.txt"}) {
    EXPECT_EQ(file_.SaveCopy(refused), SaveResult::CardsFailed) << refused;
    EXPECT_EQ(file_.SaveAs(refused), SaveResult::CardsFailed) << refused;
  }
  ASSERT_EQ(file_.SaveCopy(kTestFile), SaveResult::Saved);
  EXPECT_FALSE(file_.changed());
}

TEST_F(CardFileTest, SaveAsMovesOnToTheNewName) {
  disk_.Put("/deck/x.ini", "[ROW]\nPos=2\n");
  ASSERT_EQ(file_.Open(kTestFile).result, OpenResult::Opened);
  Answer(file_, "000000010");
  ASSERT_EQ(file_.SaveAs("/b/neu.mlb"), SaveResult::Saved);
  EXPECT_FALSE(file_.changed());
  EXPECT_EQ(file_.paths().learn_index, "/b/neu.row");
  EXPECT_EQ(disk_.Content("/b/neu.ini"), "[ROW]\nPos=2\n");
  EXPECT_FALSE(disk_.IsLocked(kLock));
  EXPECT_TRUE(disk_.IsLocked("/b/.neu.mlb.lock"));
  EXPECT_FALSE(file_.ChangedOnDisk());
  file_.Close();
  EXPECT_FALSE(disk_.IsLocked("/b/.neu.mlb.lock"));
  EXPECT_FALSE(file_.IsOpen());
  EXPECT_EQ(file_.CardCount(), 0);
}

TEST_F(CardFileTest, RestorePutsOtherCardsIntoTheOpenFile) {
  ASSERT_EQ(file_.Open(kTestFile).result, OpenResult::Opened);
  disk_.Put("/deck/x.ml~", DeckOf({{.id = "000020"}}));
  disk_.Put("/deck/leer.mlb", "");
  EXPECT_EQ(file_.Restore("/deck/x.row").result, OpenResult::WrongType);
  EXPECT_EQ(file_.Restore("/deck/leer.mlb").result, OpenResult::Unusable);
  EXPECT_FALSE(file_.changed());
  ASSERT_EQ(file_.Restore("/deck/x.ml~").result, OpenResult::Opened);
  EXPECT_EQ(file_.paths().cards, kTestFile);
  EXPECT_TRUE(file_.changed());
  EXPECT_EQ(file_.highest_id(), 20);
  EXPECT_EQ(file_.RowOfId(20), 2);
  EXPECT_EQ(file_.learn_index().RowCount(), 3);
  EXPECT_FALSE(file_.ChangedOnDisk());
}

TEST_F(CardFileTest, RestoreWithoutAnOpenFileOpensTheBackupUnderTheCardFilesName) {
  const std::string backup = DeckOf({{.id = "000020"}});
  disk_.Put("/deck/x.ml~", backup);
  disk_.Put(kTestFile, "zerstoert");
  ASSERT_EQ(file_.Restore("/deck/x.ml~").result, OpenResult::Opened);
  EXPECT_EQ(file_.paths().cards, kTestFile);
  EXPECT_TRUE(file_.changed());
  EXPECT_TRUE(disk_.IsLocked(kLock));
  ASSERT_EQ(file_.Save(), SaveResult::Saved);
  EXPECT_EQ(disk_.Content(kTestFile), backup);
}

TEST_F(CardFileTest, ADamagedBackupIsKeptWhenSavingReplacesIt) {
  std::string broken = DeckOf({{.id = "000020"}});
  broken.resize(broken.size() - 10);
  disk_.Put("/deck/x.ml~", broken);
  ASSERT_EQ(file_.Open(kTestFile).result, OpenResult::Opened);
  ASSERT_TRUE(file_.Restore("/deck/x.ml~").end_missing);
  ASSERT_EQ(file_.Save(), SaveResult::Saved);
  EXPECT_EQ(disk_.Content("/deck/x-beschaedigt-1.mlb"), broken);
  EXPECT_EQ(disk_.Content("/deck/x.ml~"), DeckOf(kTwoCards));
}

TEST_F(CardFileTest, TellsThatAnotherProgramWroteTheFile) {
  ASSERT_EQ(file_.Open(kTestFile).result, OpenResult::Opened);
  EXPECT_FALSE(file_.ChangedOnDisk());
  disk_.Put(kTestFile, DeckOf(kTwoCards));
  EXPECT_TRUE(file_.ChangedOnDisk());
  ASSERT_EQ(file_.Save(), SaveResult::Saved);
  EXPECT_FALSE(file_.ChangedOnDisk());
  EXPECT_TRUE(disk_.Remove(kTestFile));
  EXPECT_FALSE(file_.ChangedOnDisk());
}

TEST_F(CardFileTest, ASymbolicLinkOpensAndSavesTheFileItLeadsTo) {
  disk_.PutSymbolicLink("/near/y.mlb", kTestFile);
  ASSERT_EQ(file_.Open("/near/y.mlb").result, OpenResult::Opened);
  EXPECT_TRUE(disk_.IsLocked(kLock));
  Answer(file_, "000000010");
  ASSERT_EQ(file_.Save(), SaveResult::Saved);
  EXPECT_NE(disk_.Content(kTestFile), DeckOf(kTwoCards));
  EXPECT_EQ(disk_.Content("/deck/x.ml~"), DeckOf(kTwoCards));
  EXPECT_TRUE(disk_.FileNames("/near").empty());
}

TEST_F(CardFileTest, EstimatesTheSpaceOfASave) {
  ASSERT_EQ(file_.Open(kTestFile).result, OpenResult::Opened);
  disk_.set_capacity(disk_.Content(kTestFile)->size() + 1000);
  const struct {
    int64_t bytes_per_card, clamped;
    uint64_t needed;
    bool enough;
  } cases[] = {{100, 300, 720, true}, {301, 301, 722, true}, {9999, 2000, 4800, false}, {-1, 300, 720, true}};
  for (const auto& c : cases) {
    int64_t bytes_per_card = c.bytes_per_card;
    const SpaceEstimate estimate = file_.EstimateSpace(bytes_per_card, kTestFile);
    EXPECT_EQ(bytes_per_card, c.clamped);
    EXPECT_EQ(estimate.needed, c.needed);
    EXPECT_EQ(estimate.free, 1000U);
    EXPECT_EQ(estimate.Enough(), c.enough);
  }
}

TEST_F(CardFileTest, NamesEachStage) {
  std::vector<std::pair<FileStage, bool>> stages;
  const StageObserver observer = [&](FileStage stage, uint64_t size) { stages.emplace_back(stage, size > 0); };
  ASSERT_EQ(file_.Open(kTestFile, observer).result, OpenResult::Opened);
  ASSERT_EQ(file_.Save(observer), SaveResult::Saved);
  using enum FileStage;
  const std::vector<std::pair<FileStage, bool>> expected = {{LoadCards, true},       {LoadLearnIndex, false},
                                                            {LoadLinkIndex, false},  {SaveCards, false},
                                                            {SaveLearnIndex, false}, {SaveLinkIndex, false}};
  EXPECT_EQ(stages, expected);
}

}  // namespace
}  // namespace tessaro
