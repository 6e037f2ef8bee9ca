#include <gtest/gtest.h>

#include <QApplication>
#include <QScreen>
#include <QThread>
#include <QWidget>

#include "store/file/ini_file.h"
#include "widgets/background.h"
#include "widgets/text.h"
#include "widgets/window_place.h"

namespace tessaro {
namespace {

using namespace Qt::StringLiterals;

TEST(Text, HoldsWhatTheCodePageHolds) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all.push_back(static_cast<char>(byte));
  EXPECT_EQ(ToBytes(FromBytes(all)), all);
  EXPECT_EQ(FromBytes("\x80 \xC4\xD6\xDC\xE4\xF6\xFC\xDF \x84\x93\x96 \x9F"), u"€ ÄÖÜäöüß „“– Ÿ"_s);
  for (const QString& text : {u"gut Ω"_s, u"Čeština"_s, u"日本"_s, u"😀"_s}) EXPECT_EQ(ToBytes(text), std::nullopt);
}

TEST(Background, WorksBesideTheWindowsAndReportsToThem) {
  ThreadBackground background;
  const QThread* windows = QThread::currentThread();
  QString order;
  auto* gone = new QObject;
  QObject receiver;
  const auto work = [&](QChar name) {
    return [&order, windows, name]() -> std::function<void()> {
      order += QThread::currentThread() == windows ? u'?' : name;
      return [&order, windows, name] { order += QThread::currentThread() == windows ? name.toUpper() : u'?'; };
    };
  };
  background.Run(receiver, work(u'a'));
  background.Run(*gone, work(u'b'));
  background.Run(receiver, work(u'c'));
  background.Wait();
  EXPECT_EQ(order, u"abc"_s) << "one after the other, and nothing here yet";
  delete gone;
  QApplication::processEvents();
  EXPECT_EQ(order, u"abcAC"_s);
}

TEST(WindowPlace, ComesBackAndIsAlwaysOnAScreen) {
  const QRect screen = QApplication::primaryScreen()->availableGeometry();
  const std::pair<QRect, QRect> cases[] = {
      {{-5000, -5000, 300, 200}, {screen.left(), screen.top(), 300, 200}},
      {{90000, 90000, 300, 200}, {screen.right() + 1 - 300, screen.bottom() + 1 - 200, 300, 200}},
      {{50, 60, 90000, 90000}, screen},
      {{50, 60, 7, 9}, {50, 60, 120, 100}},
  };
  for (const auto& [kept, restored] : cases) {
    QWidget before;
    before.setGeometry(kept);
    IniFile settings;
    KeepWindowPlace(before, settings, "T");
    QWidget window;
    window.setMinimumSize(120, 100);
    RestoreWindowPlace(window, settings, "T");
    EXPECT_EQ(QRect(window.pos(), window.size()), restored) << kept.x() << " " << kept.width();
  }
}

}  // namespace
}  // namespace tessaro
