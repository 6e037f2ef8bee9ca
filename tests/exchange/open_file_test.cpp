// What is done to the open card file or to the file on the disk: import, reset, transfer.

#include "cards/figures.h"
#include "exchange/blank_card.h"
#include "exchange/card_import.h"
#include "exchange/first_version.h"
#include "exchange/import_guess.h"
#include "exchange/statistics_reset.h"
#include "tests/support/test_cards.h"

namespace tessaro {
namespace {

constexpr TextLayout kBars = {.separator = ';', .card_separator = '|'};
constexpr TableLayout kSemicolons = {.separator = ';', .quote = '\''};

ImportResult Import(CardFile& file, std::string_view text, int topic, const WorkObserver& observer = {}) {
  return ImportText(file, text, kBars, CheckText(text, kBars), topic, observer);
}

class OpenFile : public testing::Test {
 protected:
  std::string Field(int row, std::string_view column) {
    return std::string(file.cards().Peek(file.cards().ColumnIndex(column), row));
  }

  MemoryDisk disk;
  CardFile file{disk};
};

TEST_F(OpenFile, TextImportAppendsCardsThatWereNeverLearned) {
  OpenTestFile(disk, file, {{.id = "000041"}});
  const ImportResult result = Import(file, "Haus;\nhouse|\nBaum;\n|\n", 7);
  EXPECT_EQ(result.end, ImportEnd::Done);
  EXPECT_EQ(result.cards, 2);
  const std::pair<std::string_view, std::string> last[] = {{kId, "000043"},
                                                           {kTopic, "07"},
                                                           {kQuestion, "Baum"},
                                                           {kAnswer, "-"},
                                                           {kScore, "000000120"},
                                                           {kTimeLearned, "0"},
                                                           {kYesNoRow, std::string(64, 'f')}};
  for (const auto& [column, text] : last) EXPECT_EQ(Field(4, column), text) << column;
  EXPECT_EQ(Field(4, kTimeRow).size(), 127U);
  EXPECT_EQ(Field(5, kId), kEndMark);
  EXPECT_EQ(file.RowOfId(43), 4);
  EXPECT_EQ(file.learn_index().RowCount(), 5);
  EXPECT_TRUE(file.changed() && disk.Exists("/deck/x.mlj"));
}

TEST_F(OpenFile, TextImportThatCannotBeDoneChangesNothing) {
  OpenTestFile(disk, file, {{.id = "999989"}});
  EXPECT_EQ(Import(file, "a;b|c;d|", 0).end, ImportEnd::NoNumbers);
  const std::string large(200'000, 'x');
  EXPECT_EQ(Import(file, large + ";b|", 0, [](int64_t) { return false; }).end, ImportEnd::Cancelled);
  EXPECT_EQ(file.CardCount(), 1);
  EXPECT_FALSE(file.changed());
  EXPECT_EQ(Import(file, "a;b|", 0).end, ImportEnd::Done);
}

// More cards than are added in one step.
TEST_F(OpenFile, LargeTextImportIsWholeOrTakenBack) {
  OpenTestFile(disk, file, {{.id = "000041"}});
  const std::string before = FileText(file.cards());
  std::string text;
  constexpr int kCards = 55'000;
  for (int i = 0; i < kCards; ++i) text += "f" + std::to_string(i) + ";b|";
  int64_t told = 0;
  const auto late = [&](int64_t done) { return (told = done) < static_cast<int64_t>(text.size()) * 11 / 12; };
  EXPECT_EQ(Import(file, text, 0, late).end, ImportEnd::Cancelled);
  EXPECT_GT(told, 0);
  EXPECT_EQ(FileText(file.cards()), before);
  EXPECT_EQ(file.highest_id(), 41);
  EXPECT_EQ(file.learn_index().RowCount(), 3);
  EXPECT_EQ(Import(file, text, 0).cards, kCards);
  for (const int n : {1, 50'000, 50'001, kCards}) {
    EXPECT_EQ(Field(n + kFirstCardRow, kQuestion), "f" + std::to_string(n - 1));
    EXPECT_EQ(Field(n + kFirstCardRow, kId), IdText(41 + n));
    EXPECT_EQ(LeadingNumber(Field(n + kFirstCardRow, kScore)), 60 * n);
  }
  EXPECT_EQ(file.learn_index().RowCount(), kCards + 3);
  EXPECT_EQ(file.RowOfId(41 + kCards), kCards + kFirstCardRow);
}

// Whether one operation fails or the program ends there. An answer that is not saved belongs to the cards before, and
// to no others.
TEST_F(OpenFile, TableImportThatFailsAnywhereLeavesTheOldOrTheNewCards) {
  const std::string table = "000005;0;f;g;1;0;wf;0 0\n";
  const TableCheck check = CheckTable(table, kSemicolons);
  for (const bool ends : {false, true}) {
    bool reached = true;
    for (int n = 1; reached; ++n) {
      SCOPED_TRACE(n);
      MemoryDisk failing;
      auto crashed = std::make_unique<CardFile>(failing);
      OpenTestFile(failing, *crashed, {{.id = "000041"}});
      failing.Put("/deck/x.row", "old index");
      SetScore(*crashed, kFirstCardRow, 777);
      failing.FailAt(n, MemoryDisk::WriteFault::Nothing, ends);
      const ImportEnd end = ReplaceByTable(failing, PathsFor(kTestFile), table, kSemicolons, check).end;
      reached = failing.operations() >= n;
      crashed.reset();
      failing.FailAt(0);
      CardFile opened(failing);
      const OpenReport report = opened.Open(kTestFile);
      ASSERT_EQ(report.result, OpenResult::Opened);
      const bool is_new = opened.RowOfId(5) == kFirstCardRow;
      EXPECT_TRUE(is_new || opened.RowOfId(41) == kFirstCardRow);
      EXPECT_TRUE(is_new == (end == ImportEnd::Done) || (ends && is_new));
      EXPECT_EQ(report.unsaved.has_value(), !is_new);
      EXPECT_TRUE(is_new || (opened.TakeOverUnsaved() && LeadingNumber(opened.cards().Peek(5, kFirstCardRow)) == 777));
      if (end != ImportEnd::Done) continue;
      EXPECT_FALSE(failing.Exists("/deck/x.row"));
      EXPECT_EQ(failing.Content("/deck/x.ml~"), FileText({{.id = "000041"}}));
    }
  }
  EXPECT_EQ(ReplaceByTable(disk, PathsFor(kTestFile), "", kSemicolons, CheckTable("", kSemicolons)).end,
            ImportEnd::NoCards);
}

TEST_F(OpenFile, ResetOfAllQueuesCardsInTheirOrder) {
  OpenTestFile(disk, file, {{.score = "000005000"}, {.question = "<navigation>", .score = "000000000"}});
  EXPECT_EQ(ResetStatistics(file, std::nullopt), 2);
  EXPECT_EQ(Field(2, kScore), "000000060");
  EXPECT_EQ(Field(3, kScore), "000000120");
  EXPECT_EQ(Field(3, kTimeLearned), "00");
  EXPECT_EQ(file.learn_index().BoxPos(2), 2);
  EXPECT_EQ(CountUnknown(file), 0);
}

TEST_F(OpenFile, PartialResetKeepsCardsKnownAtEachOfTheLastAnswers) {
  const std::vector<TestCard> cards = {{.yes_no_row = "wwwf"}, {.yes_no_row = "wwfw"}, {.yes_no_row = "ww"}};
  OpenTestFile(disk, file, cards);
  EXPECT_EQ(ResetStatistics(file, 3), 2);
  EXPECT_EQ(Field(2, kYesNoRow), "wwwf");
  EXPECT_EQ(Field(3, kScore), "000100060");
  EXPECT_EQ(ResetStatistics(file, 4), 3);
}

TEST_F(OpenFile, PartialResetQueuesBehindTheHundredWorstOfALargeFile) {
  std::vector<TestCard> cards;
  for (int i = 0; i < 101; ++i)
    cards.push_back({.score = std::to_string(1000 + i), .yes_no_row = i == 0 ? "f" : "www"});
  OpenTestFile(disk, file, cards);
  // Row 100 of the learning index is the 99th card.
  EXPECT_EQ(ResetStatistics(file, 3), 1);
  EXPECT_EQ(Field(2, kScore), "000001158");
}

TEST_F(OpenFile, ResetThatIsCancelledChangesNothing) {
  OpenTestFile(disk, file, std::vector<TestCard>(3000));
  EXPECT_EQ(ResetStatistics(file, std::nullopt, [](int64_t) { return false; }), std::nullopt);
  EXPECT_EQ(Field(2, kScore), "000000001");
  EXPECT_FALSE(file.changed());
}

TEST_F(OpenFile, TransferMakesACardFileWithTopics) {
  using first_version::End;
  const std::string exported = "one\r\ntwo\r\n000001;0;a||b;c;1;0;wf;0\r\n9999990000* Tiere* x";
  disk.Put("/old/export.txt", exported);
  disk.Put("/old/Neu.ini", "[ROW]\nPos=5\n[topic]\n3=weg\nq=weg\n");
  ASSERT_EQ(first_version::TransferFile(disk, "/old/export.txt", "/old/Neu.mlb", ';').end, End::Done);
  ASSERT_EQ(file.Open("/old/Neu.mlb").result, OpenResult::Opened);
  EXPECT_EQ(Field(2, kQuestion), "a\nb");
  EXPECT_EQ(file.settings().GetString("TOPIC", "0"), "Tiere");
  EXPECT_EQ(file.settings().GetString("TOPIC", "3"), "...");
  EXPECT_EQ(file.settings().GetString("TOPIC", "name"), "...");
  EXPECT_FALSE(file.settings().Has("TOPIC", "q"));
  EXPECT_EQ(file.settings().GetString("ROW", "Pos"), "5");
  // It is open now.
  CardFile other(disk);
  EXPECT_EQ(first_version::TransferFile(disk, "/old/export.txt", "/old/Neu.mlb", ';').end, End::InUse);
  EXPECT_EQ(first_version::TransferFile(disk, "/old/no.txt", "/old/B.mlb", ';').end, End::CannotOpen);
  for (int n = 1; n == 1 || n <= disk.operations(); ++n) {
    disk.Put("/old/C.mlb", "old");
    disk.FailAt(n);
    const End end = first_version::TransferFile(disk, "/old/export.txt", "/old/C.mlb", ';').end;
    EXPECT_EQ(disk.Content("/old/C.mlb") == "old", end != End::Done && end != End::TopicsFailed) << n;
  }
}

TEST(LayoutGuess, LinesThatFitDecide) {
  const struct {
    std::string text;
    bool table;
    char separator, card_separator;
  } cases[] = {
      {"Haus\thouse\nBaum\ttree\n\n", false, '\t', '\n'},
      {"Haus;house\nBaum;tree; big\nHund;dog\n", false, ';', '\n'},
      {"Haus\xA4\nhouse|\nBaum\xA4\ntree|", false, '\xA4', '|'},
      {"1;2;3;4;5;6;7;8\n1;2;3;4;5;6;7;8\n", true, ';', '\0'},
  };
  for (const auto& [text, table, separator, card_separator] : cases) {
    const std::optional<LayoutGuess> guess = GuessLayout(text);
    ASSERT_TRUE(guess) << text;
    EXPECT_EQ(guess->table, table) << text;
    EXPECT_EQ(guess->separator, separator) << text;
    EXPECT_EQ(guess->card_separator, card_separator) << text;
  }
  EXPECT_TRUE(!GuessLayout("no\nseparators\nhere") && !GuessLayout(""));
}

}  // namespace
}  // namespace tessaro
