#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAction>
#include <QLabel>

#include "tests/support/clock_and_chance.h"
#include "tests/support/dialog_driver.h"
#include "tests/support/memory_disk.h"
#include "tests/support/recorded_messages.h"

namespace tessaro {

// A test of a window in a world that it rules. It finds the controls and commands by their object names.
class WindowTest : public testing::Test {
 protected:
  virtual QWidget& Tested() = 0;
  template <typename Widget>
  Widget& Find(const QString& name) {
    return Control<Widget>(Tested(), name);
  }
  QAction& Command(const QString& name) { return Find<QAction>(name); }
  void Trigger(const QString& name) { Command(name).trigger(); }
  void Click(const QString& name) { QTest::mouseClick(&Find<QAbstractButton>(name), Qt::LeftButton); }
  QString Text(const QString& name) { return Find<QLabel>(name).text(); }

  MemoryDisk disk;
  FixedClock clock;
  ScriptedRandom random;
  RecordedMessages messages;
};

}  // namespace tessaro
