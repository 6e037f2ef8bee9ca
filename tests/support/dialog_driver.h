#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDropEvent>
#include <QLabel>
#include <QMimeData>
#include <QTest>
#include <QTimer>
#include <functional>

#include "widgets/theme.h"

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

// The windows of this kind that are on the screen.
template <typename Window>
QList<Window*> OpenWindows() {
  QList<Window*> windows;
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (auto* found = qobject_cast<Window*>(widget); found != nullptr && found->isVisible()) windows += found;
  }
  return windows;
}

// Does `act` while all dialogs have letters so many times as large.
inline void InLetters(double scale, const std::function<void()>& act) {
  const double before = QApplication::font().pointSizeF();
  ApplyTextSize(static_cast<int>(100 * scale));
  EXPECT_NEAR(QApplication::font().pointSizeF(), before * scale, 0.1);
  act();
  ApplyTextSize(100);
}

// Every label has the height that its text needs, broken into lines or not.
inline void ExpectWholeLabels(const QWidget& window) {
  for (const QLabel* label : window.findChildren<QLabel*>()) {
    if (!label->isVisible()) continue;
    const int needed = label->wordWrap() ? label->heightForWidth(label->width()) : label->sizeHint().height();
    EXPECT_GE(label->height(), needed) << label->text().toStdString();
  }
}

// A control or command of a window by its object name.
template <typename Widget>
Widget& Control(const QWidget& window, const QString& name) {
  auto* found = window.findChild<Widget*>(name);
  if (found == nullptr) throw std::runtime_error("no control " + name.toStdString());
  return *found;
}

// Drops something on a control, as far as that takes it.
inline void Drop(QWidget& target, const QMimeData& what) {
  QDragEnterEvent enter({}, Qt::CopyAction, &what, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&target, &enter);
  QDropEvent drop({}, Qt::CopyAction, &what, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&target, &drop);
}

// Clicks buttons of a window, one after the other: at the left, where a box has its mark.
template <typename... Names>
void Press(const QWidget& window, const Names&... names) {
  for (const QString& name : {QString(names)...}) {
    auto& button = Control<QAbstractButton>(window, name);
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(8, button.height() / 2));
  }
}

}  // namespace tessaro
