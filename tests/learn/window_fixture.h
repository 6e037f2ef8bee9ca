#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QTest>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "learn/wnlern.h"
#include "tests/support/fixed_clock.h"
#include "tests/support/recorded_messages.h"
#include "tests/support/scripted_random.h"
#include "tests/support/test_cards.h"

namespace tessaro {

inline std::string Letters(const std::string& newest) {
  return newest + std::string(kHistoryLength - newest.size(), 'f');
}

inline TestCard KnownUntil(const std::string& id, int64_t answered, int64_t score) {
  return {.id = id, .score = std::to_string(score), .yes_no_row = Letters("ww"), .time_row = std::to_string(answered)};
}

inline const std::vector<TestCard> kThreeCards = {
    {.id = "000001", .question = "Eins", .answer = "One", .score = "000000000"},
    {.id = "000002", .question = "Zwei", .answer = "Two <a href=\"000003\">weiter</a>", .score = "000000000"},
    {.id = "000003", .question = "<navigation><home>Start", .answer = "-"},
};

class LearningWindow : public testing::Test {
 protected:
  void Open(const std::vector<TestCard>& cards = kThreeCards) {
    OpenTestFile(disk, file, cards);
    Show();
  }
  void Show() {
    window = std::make_unique<TF_wnlern>(file, settings, clock, random, messages);
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    QApplication::processEvents();
  }
  template <typename Widget>
  Widget& Find(const QString& name) {
    auto* found = window->findChild<Widget*>(name);
    if (found == nullptr) throw std::runtime_error("no control " + name.toStdString());
    return *found;
  }
  void Click(const QString& name) { QTest::mouseClick(&Find<QAbstractButton>(name), Qt::LeftButton); }
  void Trigger(const QString& name) { Find<QAction>(name).trigger(); }
  void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
  }
  QString Text(const QString& name) { return Find<QLabel>(name).text(); }
  std::string_view Field(std::string_view column, int row) {
    return file.cards().FieldAt(file.cards().ColumnIndex(column), row);
  }
  // Letters of all logged answers of the deck, as they stand in the cards.
  int Logged() {
    int logged = 0;
    for (int row = kFirstCardRow; row < file.cards().RowCount(); ++row) {
      if (Field(kTimeRow, row).substr(0, 1) != "0") ++logged;
    }
    return logged;
  }

  MemoryDisk disk;
  CardFile file{disk};
  ProgramSettings settings;
  FixedClock clock;
  ScriptedRandom random;
  RecordedMessages messages;
  std::unique_ptr<TF_wnlern> window;
};

}  // namespace tessaro
