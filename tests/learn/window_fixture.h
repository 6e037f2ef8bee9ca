#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QTest>

#include "hypertext/htmlview.h"
#include "learn/wnlern.h"
#include "tests/learn/learn_fixture.h"
#include "tests/support/dialog_driver.h"
#include "tests/support/recorded_messages.h"

namespace tessaro {

inline const std::vector<TestCard> kThreeCards = {
    {.id = "000001", .question = "Eins", .answer = "One", .score = "000000000"},
    {.id = "000002", .question = "Zwei", .answer = "Two <a href=\"000003\">weiter</a>", .score = "000000000"},
    {.id = "000003", .question = "<navigation><home>Start", .answer = "-"},
};

class LearningWindow : public testing::Test {
 protected:
  void Open(const std::vector<TestCard>& cards = kThreeCards) {
    file.Close();
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
    return Control<Widget>(*window, name);
  }
  void Click(const QString& name) { QTest::mouseClick(&Find<QAbstractButton>(name), Qt::LeftButton); }
  QAction& Command(const QString& name) { return Find<QAction>(name); }
  void Trigger(const QString& name) { Command(name).trigger(); }
  void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
  }
  QString Text(const QString& name) { return Find<QLabel>(name).text(); }
  std::string_view Field(std::string_view column, int row) {
    return file.cards().FieldAt(file.cards().ColumnIndex(column), row);
  }
  std::string OnScreen() { return Find<TFrameHtml>(QStringLiteral("FrameHtml")).layout().fragments.at(0).text; }
  // How many cards have been answered.
  int Logged() {
    int logged = 0;
    for (int row = kFirstCardRow; row < file.cards().RowCount(); ++row) logged += Field(kTimeRow, row)[0] != '0';
    return logged;
  }

  MemoryDisk disk;
  CardFile file{disk};
  ProgramSettings settings;
  FixedClock clock{kNow};
  ScriptedRandom random;
  RecordedMessages messages;
  std::unique_ptr<TF_wnlern> window;
};

}  // namespace tessaro
