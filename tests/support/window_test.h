#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QImage>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSpinBox>
#include <QStatusBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTableView>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QToolButton>

#include "settings/keys.h"
#include "tests/support/clock_and_chance.h"
#include "tests/support/dialog_driver.h"
#include "tests/support/memory_disk.h"
#include "tests/support/recorded_messages.h"
#include "widgets/text.h"

namespace tessaro {

using namespace Qt::StringLiterals;  // names of controls

// A test of a window in a world that it rules. It finds the controls and commands by their object names.
class WindowTest : public testing::Test {
 protected:
  virtual QWidget& Tested() = 0;
  template <typename Widget>
  Widget& Find(const QString& name) {
    return Control<Widget>(Tested(), name);
  }
  QAction& Command(const QString& name) { return Find<QAction>(name); }
  // One after the other.
  void Trigger(const auto&... names) { (Command(names).trigger(), ...); }
  void Click(const auto&... names) { (QTest::mouseClick(&Find<QAbstractButton>(names), Qt::LeftButton), ...); }
  QString Text(const QString& name) { return Find<QLabel>(name).text(); }
  // Presses a key where the focus is.
  static void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
  }
  // Does `act` in the dialog that the command opens.
  template <typename Dialog>
  void Drive(const QString& command, const std::function<void(Dialog&)>& act) {
    DriveDialog<Dialog>([&] { Trigger(command); }, act);
  }

  MemoryDisk disk;
  FixedClock clock;
  ScriptedRandom random;
  RecordedMessages messages;
};

}  // namespace tessaro
