#include "store/file/journal.h"

#include <chrono>

#include "tests/support/clock_and_chance.h"
#include "tests/support/test_cards.h"

namespace tessaro {
namespace {

const std::filesystem::path kJournal = "/deck/x.mlj";

constexpr ContentStamp kBase = {33, 44};
constexpr ContentStamp kSaved = {12, 0xFFFFFFFFFFFFFFFF};
JournalRecord AnyEdit() {
  EditChange change = {.row_count = 5, .old_ids = {}, .edit = {}};
  change.old_ids.AddRow({{1, "000002"}});
  change.edit.removed = {3};
  change.edit.places = {4};
  change.edit.inserted.AddRow({{2, "neu"}, {3, "new"}});
  return {1003, change};
}
const std::vector<JournalRecord> kRecords = {{1000, RowChange{2, {{5, "000000777"}, {7, std::string("w\0\xFF\n", 4)}}}},
                                             {1001, SavePoint{kSaved}},
                                             {-1, TableChange{"ID\nx\n"}},
                                             {1002, RowChange{4294967295, {}}},
                                             AnyEdit()};

TEST(Journal, CutOrDamagedAnywhereKeepsTheRecordsBefore) {
  std::string text = JournalHead(kBase);
  std::vector<size_t> ends{text.size()};
  for (const JournalRecord& record : kRecords) ends.push_back((text += JournalText(record)).size());
  const auto expect_whole_up_to = [&](size_t place, const std::string& bytes) {
    const std::optional<JournalContents> read = ParseJournal(bytes);
    const auto whole = std::count_if(ends.begin(), ends.end(), [&](size_t end) { return end <= place; });
    ASSERT_EQ(read.has_value(), whole > 0);
    if (!read) return;
    EXPECT_EQ(read->base, kBase);
    EXPECT_EQ(read->records, std::vector(kRecords.begin(), kRecords.begin() + (whole - 1)));
    EXPECT_EQ(read->cut, bytes.size() != ends[static_cast<size_t>(whole - 1)]);
  };
  for (size_t place = 0; place < text.size(); ++place) {
    SCOPED_TRACE(place);
    expect_whole_up_to(place, text.substr(0, place));
    std::string damaged = text;
    damaged[place] = static_cast<char>(damaged[place] ^ 0x10);
    expect_whole_up_to(place, damaged);
  }
  for (char& form = text[text.find('\n') - 1]; form > '0'; --form) EXPECT_TRUE(ParseJournal(text)) << form;
}

TEST(Journal, TellsWhatAFileLacksFromItsLastSavePointOn) {
  const JournalContents contents = {kBase, kRecords, false};
  EXPECT_EQ(ChangesSince(contents, kBase), (std::vector{kRecords[0], kRecords[2], kRecords[3], kRecords[4]}));
  EXPECT_EQ(ChangesSince(contents, kSaved), (std::vector{kRecords[2], kRecords[3], kRecords[4]}));
}

// A card file that is changed, and a program that can end at any moment.
class CardFileJournal : public ::testing::Test {
 protected:
  CardFileJournal() {
    disk_.Put(kTestFile, FileText({{.id = "000001"}, {.id = "000002"}, {.id = "000003"}}));
    EXPECT_EQ(Crash().result, OpenResult::Opened);
  }

  void Change(int row, int64_t score) { SetScore(*file_, row, score); }
  static constexpr int kLong = 1000;
  // The answer of this row changes; mostly a card comes, too, or where one came before it goes.
  void EditCards(int row, int answer) {
    TableEdit edit;
    if (answer % 3 != 0 && file_->CardCount() > 3) {
      edit.removed = {5};
    } else if (answer % 3 != 0) {
      edit.places = {4};
      edit.inserted.AddRow({{file_->columns().id, "000009"}, {file_->columns().score, "000000003"}});
    }
    edit.replaced = {row};
    const std::string longer(answer < kLong ? 0 : 1'200'000, 'x');  // than what is written at once
    edit.replacing.AddRow({{file_->columns().answer, std::to_string(answer) + longer}});
    EXPECT_TRUE(file_->Edit(edit));
  }

  // The program ends without having been asked to, and is started again.
  OpenReport Crash() {
    file_.reset();
    disk_.FailAt(0);
    file_ = std::make_unique<CardFile>(disk_, clock_);
    file_->journal().SetFailureObserver([this] { ++failures_; });
    return file_->Open(kTestFile);
  }

  // What the user has in mind as the state of his cards.
  std::string Text() { return FileText(file_->cards()); }

  void ExpectTheIndexHasTheScoresOfTheCards() {
    for (int row = kFirstCardRow; row <= file_->CardCount() + 1; ++row) {
      const LearnIndex& index = file_->learn_index();
      EXPECT_EQ(index.Score(index.RowOfCard(row)), LeadingNumber(file_->cards().Peek(file_->columns().score, row)));
    }
  }

  // After a crash that state is still to be had.
  void CrashAndTakeOver() {
    const std::string text = Text();
    ASSERT_TRUE(Crash().unsaved && file_->TakeOverUnsaved());
    EXPECT_EQ(Text(), text);
  }

  MemoryDisk disk_;
  FixedClock clock_;
  std::unique_ptr<CardFile> file_;
  int failures_ = 0;
};

TEST_F(CardFileJournal, BringsBackWhatWasNotSaved) {
  Change(2, 5);
  clock_.now += 60;
  Change(4, 6);
  Change(2, 7);
  const std::string text = Text();
  const OpenReport report = Crash();
  ASSERT_TRUE(report.unsaved);
  EXPECT_EQ(report.unsaved->cards, 2);
  EXPECT_EQ(report.unsaved->last - report.unsaved->first, 60);
  EXPECT_TRUE(!file_->changed() && Text() != text);
  ASSERT_TRUE(file_->TakeOverUnsaved());
  EXPECT_TRUE(file_->changed() && Text() == text);
  ExpectTheIndexHasTheScoresOfTheCards();
  CrashAndTakeOver();  // it is still unsaved
  ASSERT_EQ(file_->Save(), SaveResult::Saved);
  EXPECT_FALSE(disk_.Exists(kJournal) || Crash().unsaved);
  EXPECT_EQ(Text(), text);
}

TEST_F(CardFileJournal, OfManyEditsIsCountedAtOnce) {
  constexpr int kEdits = 600;
  const int cards = file_->CardCount();
  for (int i = 0; i < kEdits; ++i) {
    TableEdit edit;
    edit.places = {cards + i + 1};
    edit.inserted.AddRow({{file_->columns().id, "000009"}});
    ASSERT_TRUE(file_->Edit(edit));
  }
  Change(2, 5);
  TableEdit edit;
  edit.removed = {3};
  ASSERT_TRUE(file_->Edit(edit));
  EXPECT_EQ(Crash().unsaved->cards, kEdits + 2);
  ASSERT_TRUE(file_->TakeOverUnsaved());
  EXPECT_EQ(file_->CardCount(), cards + kEdits - 1);
}

TEST_F(CardFileJournal, OfLongEditsIsWrittenInPiecesWhereverTheDiskFails) {
  for (int fail_at = 0; fail_at < 10; ++fail_at) {
    SCOPED_TRACE(fail_at);
    disk_.FailAt(fail_at);
    EditCards(2, kLong + 1);
    EditCards(3, kLong + 2 + fail_at % 2);
    file_->journal().BeginBatch();
    Change(2, 7);
    EditCards(4, kLong + 3);
    file_->journal().EndBatch(file_->cards());
    disk_.FailAt(0);
    CrashAndTakeOver();
    ASSERT_EQ(file_->Save(), SaveResult::Saved);
  }
}

TEST_F(CardFileJournal, EndsWithTheFileThatIsGivenUp) {
  Change(2, 5);
  file_->Close();
  EXPECT_FALSE(disk_.Exists(kJournal) || file_->Open(kTestFile).unsaved);
  Change(2, 5);
  EXPECT_FALSE(file_->Open(kTestFile).unsaved || disk_.Exists(kJournal));
  Change(2, 5);
  ASSERT_EQ(file_->SaveAs("/deck/y.mlb"), SaveResult::Saved);
  EXPECT_FALSE(disk_.Exists(kJournal));
  Change(2, 8);
  EXPECT_TRUE(disk_.Exists("/deck/y.mlj"));
}

TEST_F(CardFileJournal, IsPutAsideWhenItIsNotWanted) {
  for (const std::string name : {"/deck/x-Antworten-1.mlj", "/deck/x-Antworten-2.mlj"}) {
    Change(2, name[18]);
    const std::string journal = *disk_.Content(kJournal);
    ASSERT_TRUE(Crash().unsaved);
    // A change before the question was answered must not cost the answers either.
    EXPECT_TRUE(name[18] == '2' || file_->PutUnsavedAside() == name);
    Change(3, 9);
    EXPECT_EQ(disk_.Content(name), journal);
    ASSERT_EQ(file_->Save(), SaveResult::Saved);
  }
}

TEST_F(CardFileJournal, OfAnotherStateIsNeverReplayed) {
  Change(2, 5);
  const std::string journal = *disk_.Content(kJournal);
  const std::string other = FileText({{.id = "000001"}, {.id = "000009"}, {.id = "000003"}});
  disk_.Put(kTestFile, other);
  const OpenReport report = Crash();
  EXPECT_FALSE(report.unsaved);
  EXPECT_EQ(disk_.Content(report.put_aside), journal);
  EXPECT_EQ(Text(), other);
}

TEST_F(CardFileJournal, FollowsTheBackupWhenTheCardFileIsGone) {
  ASSERT_EQ(file_->Save(), SaveResult::Saved);
  Change(2, 5);
  const std::string text = Text();
  ASSERT_TRUE(disk_.Rename(kTestFile, "/deck/x.ml~"));
  for (const bool wanted : {true, false}) {
    ASSERT_EQ(Crash().result, OpenResult::CannotOpen);
    ASSERT_TRUE(file_->Restore("/deck/x.ml~").unsaved && file_->changed());
    EXPECT_TRUE(file_->paths().cards == kTestFile && disk_.IsLocked("/deck/.x.mlb.lock"));
    ASSERT_TRUE(wanted ? file_->TakeOverUnsaved() : !file_->PutUnsavedAside().empty());
    EXPECT_EQ(Text() == text, wanted);
    EXPECT_TRUE(disk_.Exists(kJournal)) << "what was restored is not saved either";
  }
}

TEST_F(CardFileJournal, OfCardsRestoredUnderTheNameOfAnUnusableFileIsTakenOver) {
  const std::string cards = Text();
  for (const char* backup : {"/deck/x.ml~", "/backups/x.ml~"}) {
    disk_.Put(backup, cards);
    disk_.Put(kTestFile, "");
    ASSERT_EQ(Crash().result, OpenResult::Unusable);
    ASSERT_EQ(file_->RestoreAs(kTestFile, backup).result, OpenResult::Opened);
    for (const int score : {5, 6}) {
      Change(2, score);
      const std::string text = Text();
      ASSERT_EQ(Crash().result, OpenResult::Unusable);
      ASSERT_TRUE(file_->RestoreAs(kTestFile, backup).unsaved && file_->TakeOverUnsaved());
      EXPECT_EQ(Text(), text);
    }
    file_->Close();
  }
}

// Changes of other cards than those of the backup are nothing without a table that came after them.
TEST_F(CardFileJournal, OfTheReplacedCardsIsTakenOverFromItsTableOn) {
  disk_.Put("/deck/x.ml~", FileText({{.id = "000007"}}));
  for (const bool table : {true, false}) {
    Change(4, 5);
    if (table) file_->TableChanged();
    Change(3, 6);
    const std::string text = Text();
    (void)Crash();
    file_->Close();
    const OpenReport report = file_->RestoreAs(kTestFile, "/deck/x.ml~");
    EXPECT_TRUE(report.unsaved.has_value() == table && report.put_aside.empty() == table);
    EXPECT_TRUE(!table || (file_->TakeOverUnsaved() && Text() == text));
    file_->Close();
    (void)Crash();
  }
}

TEST_F(CardFileJournal, OfADamagedFileFits) {
  disk_.Put(kTestFile, disk_.Content(kTestFile)->substr(0, disk_.Content(kTestFile)->size() - 20));
  ASSERT_TRUE(Crash().end_missing);
  Change(2, 5);
  CrashAndTakeOver();
}

TEST_F(CardFileJournal, OnAFullDiskIsToldOnceAndMadeGoodWhenThereIsRoom) {
  const uint64_t used = uint64_t{1} << 40;
  disk_.set_capacity(used - *disk_.FreeBytes("/deck") + 700);
  for (int score = 1; score < 40; ++score) Change(2 + score % 3, score);
  EXPECT_EQ(failures_, 1);
  disk_.set_capacity(used);
  Change(2, 100);
  CrashAndTakeOver();
}

TEST_F(CardFileJournal, SurvivesAPowerCutOnceItIsFlushed) {
  Change(2, 5);
  ASSERT_TRUE(file_->journal().Flush());
  const std::string text = Text();
  Change(3, 6);
  disk_.LoseUnflushed();
  ASSERT_TRUE(Crash().unsaved && file_->TakeOverUnsaved());
  EXPECT_EQ(Text(), text);
  // Written anew after a failure, it is on the disk before it replaces the one before.
  EditCards(3, 0);
  disk_.FailAt(1);
  Change(4, 7);
  disk_.LoseUnflushed();
  CrashAndTakeOver();
}

TEST_F(CardFileJournal, IsFlushedInTheBackgroundAsLongAsItIsThere) {
  const auto change_and_wait = [this](int row, int operations, int fail_at) {
    disk_.FailAt(fail_at);
    Change(row, operations);
    for (int i = 0; i < 600 && disk_.operations() < operations; ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_EQ(disk_.operations(), operations);
  };
  file_->journal().FlushInBackground();
  // Created, written, renamed and flushed with its folder; then written and flushed.
  change_and_wait(2, 5, 0);
  change_and_wait(3, 3, 0);
  const std::optional<std::string> journal = disk_.Content(kJournal);
  disk_.LoseUnflushed();
  EXPECT_EQ(disk_.Content(kJournal), journal);
  // A flush that failed is made good by the next change, at once.
  change_and_wait(3, 2, 2);
  Change(4, 7);
  disk_.LoseUnflushed();
  CrashAndTakeOver();
  // A flush that is due when the journal ends would be one of a file that is no more.
  ASSERT_EQ(file_->Save(), SaveResult::Saved);
  file_->journal().FlushInBackground();
  Change(2, 6);
  ASSERT_EQ(file_->Save(), SaveResult::Saved);
  const int saved = disk_.operations();
  std::this_thread::sleep_for(std::chrono::milliseconds(700));
  EXPECT_EQ(disk_.operations(), saved);
}

// On a drive without hard links the program ends at any operation of a save: the file is found again, with all answers.
TEST_F(CardFileJournal, ASaveThatWasCutShortIsFinishedOrTakenBack) {
  std::set<CutSave> met;
  for (const bool changed : {true, false}) {
    bool reached = true;
    for (int n = 1; reached; ++n) {
      SCOPED_TRACE(n);
      ASSERT_EQ(Crash().result, OpenResult::Opened);
      disk_.set_has_links(false);
      if (changed) Change(2, n);
      const std::string text = Text();
      disk_.FailAt(n, MemoryDisk::WriteFault::Nothing, true);
      (void)file_->Save();
      reached = disk_.operations() >= n;
      const OpenReport report = Crash();
      ASSERT_EQ(report.result, OpenResult::Opened);
      met.insert(report.cut_save);
      EXPECT_TRUE(!report.unsaved || file_->TakeOverUnsaved());
      EXPECT_EQ(Text(), text);
      ExpectTheIndexHasTheScoresOfTheCards();
      ASSERT_EQ(file_->Save(), SaveResult::Saved);
    }
  }
  EXPECT_EQ(met.size(), 3U);
}

// Any run of changes, edits, saves and restores in which one operation of the disk fails, or all from there on until it
// works again: what the program did not report as failed is there after a crash.
TEST_F(CardFileJournal, LosesNothingWhereverTheDiskFails) {
  using enum MemoryDisk::WriteFault;
  const std::pair<MemoryDisk::WriteFault, bool> faults[] = {
      {Nothing, false}, {Nothing, true}, {Half, false}, {Half, true}, {HalfUnnoticed, false}, {HalfUnnoticed, true}};
  int journals = 0;
  int tables = 0;
  for (uint32_t round = 0; round < 4 * std::size(faults); ++round) {
    const auto& [fault, stays] = faults[round % std::size(faults)];
    bool reached = true;
    for (int n = 1; reached; ++n) {
      SCOPED_TRACE(n);
      ASSERT_EQ(Crash().result, OpenResult::Opened);
      (void)file_->PutUnsavedAside();
      std::mt19937 random(static_cast<uint32_t>(n) + 1000 * round);
      failures_ = 0;
      disk_.FailAt(n, fault, stays);
      reached = false;
      std::string kept = Text();  // the newest state of which no change was reported as not kept
      for (int step = 0; step < 12; ++step) {
        const auto dice = random() % 10;
        if (dice < 2) {
          (void)file_->Save();
        } else if (dice == 2) {
          (void)file_->Restore("/deck/x.ml~");
        } else if (dice < 5) {
          EditCards(2 + static_cast<int>(random() % 3), step);
        } else {
          Change(2 + static_cast<int>(random() % 3), static_cast<int>(random() % 1000));
        }
        if (!file_->journal().failing()) kept = Text();
        reached = reached || disk_.operations() >= n;
        if (reached && random() % 4 == 0) disk_.FailAt(0);
      }
      EXPECT_LE(failures_, 1);
      const OpenReport report = Crash();
      EXPECT_TRUE(report.put_aside.empty());
      ExpectTheIndexHasTheScoresOfTheCards();
      journals += report.unsaved ? 1 : 0;
      tables += report.unsaved && report.unsaved->whole_table ? 1 : 0;
      EXPECT_TRUE(!report.unsaved || file_->TakeOverUnsaved());
      EXPECT_EQ(Text(), kept);
      ExpectTheIndexHasTheScoresOfTheCards();
      ASSERT_EQ(file_->Save(), SaveResult::Saved);
    }
  }
  EXPECT_GT(journals, 80);
  EXPECT_GT(tables, 20);
}

}  // namespace
}  // namespace tessaro
