#pragma once

#include <string>
#include <vector>

#include "app/program.h"
#include "app/wnmain.h"
#include "tests/learn/learn_fixture.h"
#include "tests/support/window_test.h"

namespace tessaro {

// The whole program over a disk in memory. The main window is shown; no card file is open yet.
class MainWindow : public WindowTest {
 protected:
  // With a folder for dated copies, or without them.
  explicit MainWindow(const char* backups = "")
      : program{{disk, clock, random, messages},
                {.settings = "/tessaro.ini", .samples = {}, .documents = "/documents", .backups = backups}} {
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
  TF_wnmain& window() { return program.main_window(); }
  QWidget& Tested() override { return window(); }
  std::string CardsPath() { return program.file().paths().cards.string(); }

  Program program;
};

}  // namespace tessaro
