#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>
#include <QTimer>
#include <functional>

namespace tessaro {

// Does `open`, which brings up a modal dialog of this kind at once or soon, and `act` in it. A dialog that `act` leaves
// open is closed.
template <typename Dialog>
void DriveDialog(const std::function<void()>& open, const std::function<void(Dialog&)>& act) {
  bool met = false;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
    auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
    if (met || dialog == nullptr || !dialog->isActiveWindow()) return;
    met = true;
    act(*dialog);
    if (dialog->isVisible()) dialog->close();
  });
  timer.start(0);
  open();
  constexpr int kLooks = 200;
  for (int look = 0; look < kLooks && !met; ++look) QTest::qWait(5);
  EXPECT_TRUE(met) << "no such dialog came up";
}

// A control or command of a window by its object name.
template <typename Widget>
Widget& Control(const QWidget& window, const QString& name) {
  auto* found = window.findChild<Widget*>(name);
  if (found == nullptr) throw std::runtime_error("no control " + name.toStdString());
  return *found;
}

}  // namespace tessaro
