#pragma once

#include <gtest/gtest.h>

#include <QAction>
#include <QLabel>
#include <string>
#include <vector>

#include "app/program.h"
#include "app/wnmain.h"
#include "tests/support/dialog_driver.h"
#include "tests/support/fixed_clock.h"
#include "tests/support/recorded_messages.h"
#include "tests/support/scripted_random.h"
#include "tests/support/test_cards.h"

namespace tessaro {

inline constexpr int64_t kNow = 1'700'000'000;

// The whole program over a disk in memory. The main window is shown; no card file is open yet.
class MainWindow : public testing::Test {
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
  template <typename Widget>
  Widget& Find(const QString& name) {
    return Control<Widget>(window(), name);
  }
  QAction& Command(const QString& name) { return Find<QAction>(name); }
  void Trigger(const QString& name) { Command(name).trigger(); }
  void Press(const QString& button) { QTest::mouseClick(&Find<QWidget>(button), Qt::LeftButton); }
  QString Text(const QString& label) { return Find<QLabel>(label).text(); }
  std::string CardsPath() { return program.file().paths().cards.string(); }

  MemoryDisk disk;
  FixedClock clock{kNow};
  ScriptedRandom random;
  RecordedMessages messages;
  Program program;
};

}  // namespace tessaro
