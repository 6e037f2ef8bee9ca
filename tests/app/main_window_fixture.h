#pragma once

#include "app/program.h"
#include "app/wnmain.h"
#include "tests/learn/learn_fixture.h"
#include "tests/support/window_test.h"

namespace tessaro {

// The whole program over a disk in memory. The main window is shown; no card file is open yet.
class MainWindow : public WindowTest {
 protected:
  // With a folder for dated copies and a help, or without them.
  explicit MainWindow(const char* backups = "", const char* help = "")
      : program{
            {disk, clock, random, messages},
            {.settings = "/tessaro.ini", .samples = {}, .documents = "/documents", .backups = backups, .help = help}} {
    window().show();
  }

  // A card file with the indexes that fit it.
  void PutDeck(const std::vector<TestCard>& cards, const char* path = kTestFile) {
    disk.Put(path, FileText(cards));
    CardFile deck(disk);
    EXPECT_EQ(deck.Open(path).result, OpenResult::Opened);
    EXPECT_EQ(deck.Save(), SaveResult::Saved);
  }
  void Open(const std::vector<TestCard>& cards) {
    program.file().Close();
    PutDeck(cards);
    ASSERT_TRUE(window().OpenFile(kTestFile));
  }
  static void Change(CardFile& deck, const std::string& answer) {
    deck.cards().Poke(deck.columns().answer, kFirstCardRow, answer);
    deck.RowChanged(kFirstCardRow);
  }
  // The file with these cards is opened elsewhere, a card is changed, and the program there ends without a save.
  void PutCrashed(const std::vector<TestCard>& cards) {
    PutDeck(cards);
    CardFile crashed(disk, clock);
    EXPECT_EQ(crashed.Open(kTestFile).result, OpenResult::Opened);
    Change(crashed, "anders");
  }
  TF_wnmain& window() { return program.main_window(); }
  QWidget& Tested() override { return window(); }
  std::string CardsPath() { return program.file().paths().cards.string(); }

  Program program;
};

inline constexpr const char* kOther = "/deck/other.mlb";

// One card of every kind that the start page counts, and a navigation card.
inline const std::vector<TestCard> kCards = {NewCard(1), WrongCard(2, 500), KnownCard(3, 100, 500),
                                             KnownCard(4, 900000, 500), NavigationCard(5, "<navigation><home>Start")};

// The main window, and two card files that it can open.
class MainWindowFiles : public MainWindow {
 protected:
  MainWindowFiles() { PutDeck({{.id = "000007"}, {.id = "000008"}}, kOther); }

  // The file is open, one card of it was changed since.
  void OpenAndChange() {
    Open(kCards);
    Change(program.file(), "anders");
    messages.asked.clear();
  }
  void TriggerWithFile(const QString& command, const QString& file) {
    messages.files = {file};
    Trigger(command);
  }
  void BreakDisk() { disk.FailAt(1, MemoryDisk::WriteFault::Nothing, true); }
  bool SavedOnDisk() { return disk.Content(kTestFile)->find("anders") != std::string::npos; }
};

}  // namespace tessaro
