#include <QDBusVariant>
#include <QFile>
#include <QProgressBar>
#include <QScreen>
#include <QThread>
#include <fstream>

#include "store/file/ini_file.h"
#include "tests/support/window_test.h"
#include "widgets/background.h"
#include "widgets/desktop_colours.h"
#include "widgets/dlprogress.h"
#include "widgets/long_work.h"
#include "widgets/picture_store.h"
#include "widgets/side_look.h"
#include "widgets/window_place.h"

namespace tessaro {
namespace {

TEST(Text, HoldsWhatTheCodePageHolds) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all.push_back(static_cast<char>(byte));
  EXPECT_EQ(ToBytes(FromBytes(all)), all);
  EXPECT_EQ(FromBytes("\x80 \xC4\xD6\xDC\xE4\xF6\xFC\xDF \x84\x93\x96 \x9F"), u"€ ÄÖÜäöüß „“– Ÿ"_s);
  for (const QString& text : {u"gut Ω"_s, u"Čeština"_s, u"日本"_s, u"😀"_s}) EXPECT_EQ(ToBytes(text), std::nullopt);
}

TEST(Text, AnyNameOfAFileSurvives) {
  for (const std::string name :
       {"/d/\xC3\xBC \xF0\x9F\x98\x80.mlb", "/d/\xFC.mlb", "\x80\xFF", "\xC3", "a\xED\xB3\xBC", ""}) {
    EXPECT_EQ(ToPath(FromPath(name)).string(), name);
  }
  EXPECT_EQ(FromPath("\xC3\xBC\xFC").at(0), u'ü');
}

TEST(Theme, EmptyBoxesAndRingsAreSeenInTheDark) {
  ApplyTheme(Theme::Dark);
  QCheckBox box;
  QRadioButton ring;
  for (QAbstractButton* button : {static_cast<QAbstractButton*>(&box), static_cast<QAbstractButton*>(&ring)}) {
    button->resize(button->sizeHint());
    const QImage picture = button->grab().toImage();
    const int middle = picture.height() / 2;
    EXPECT_GT(Contrast(picture.pixelColor(middle, middle), button->palette().color(QPalette::Window)), 2);
  }
  ApplyTheme(Theme::Desktop);
}

TEST(LongWork, IsEndedByItsDialogOnlyWhereItAllowsIt) {
  for (const bool allowed : {false, true}) {
    QWidget window;
    window.show();
    FixedClock clock;
    LongWork work(&window, clock);
    if (allowed) work.AllowCancel();
    work.NextStage(u"Karten zählen"_s, 1000);
    EXPECT_TRUE(work.GoesOn(1));
    EXPECT_EQ(window.findChild<TF_dlprogress*>(), nullptr) << "no dialog within the first second";
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
    clock.milliseconds += 200;
    EXPECT_TRUE(work.GoesOn(5));
    EXPECT_NE(QGuiApplication::overrideCursor(), nullptr);
    clock.milliseconds += 800;
    EXPECT_TRUE(work.GoesOn(10));
    auto* dialog = window.findChild<TF_dlprogress*>();
    ASSERT_NE(dialog, nullptr);
    const auto shown = [dialog] { return Control<QProgressBar>(*dialog, u"ProgressBar"_s).value(); };
    EXPECT_TRUE(work.GoesOn(12) && shown() == 10) << "not twice in a moment";
    clock.milliseconds += 60;
    EXPECT_TRUE(work.GoesOn(14) && shown() == 14);
    EXPECT_EQ(Control<QPushButton>(*dialog, u"ButtonCancel"_s).isVisible(), allowed);
    dialog->activateWindow();
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space}) QTest::keyClick(dialog->focusWidget(), key);
    EXPECT_TRUE(work.GoesOn(15)) << "keys that were meant for the window before";
    QTest::keyClick(dialog, Qt::Key_Escape);
    EXPECT_TRUE(dialog->isVisible()) << "until the work has ended";
    EXPECT_EQ(work.GoesOn(20), !allowed);
  }
  EXPECT_TRUE(QGuiApplication::overrideCursor() == nullptr && !LongWork::Running());
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
  QWidget active;
  active.setGeometry(100, 150, 300, 200);
  active.show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&active));
  QWidget dialog;
  dialog.resize(140, 100);
  RestoreWindowPlace(dialog, {}, "T");
  EXPECT_EQ(dialog.pos(), QPoint(180, 200)) << "the first time it stands in the middle of the window in front";
}

TEST(Drawing, ShowsNothingOfOtherFiles) {
  const QTemporaryDir folder;
  const QString outside = folder.filePath(QStringLiteral("rot.png"));
  QImage red(8, 8, QImage::Format_RGB32);
  red.fill(Qt::red);
  ASSERT_TRUE(red.save(outside));
  QFile file(outside);
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const std::string inside = "data:image/png;base64," + file.readAll().toBase64().toStdString();
  const auto image = [](const std::string& reference) {
    return "<image width='20' height='20' xlink:href='" + reference + "'/>";
  };
  const std::string begin =
      "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
      "width='20' height='20'>";
  const std::string by_file = begin + image(outside.toStdString()) + "</svg>";
  const std::tuple<const char*, std::string, bool> cases[] = {
      {"a picture in it", begin + image(inside) + "</svg>", true},
      {"a shape", begin + "<rect width='20' height='20' fill='red'/></svg>", true},
      {"a file", by_file, false},
      {"a file, by an entity",
       "<!DOCTYPE svg [<!ENTITY e \"&#60;image width='20' height='20' xlink:&#104;ref='" + outside.toStdString() +
           "'/>\">]>" + begin + "&e;</svg>",
       false},
      {"a file, by a drawing in it",
       begin + image("data:image/png;base64," + QByteArray::fromStdString(by_file).toBase64().toStdString()) + "</svg>",
       false},
  };
  const QString path = folder.filePath(QStringLiteral("bild.svg"));
  for (const auto& [what, drawing, is_red] : cases) {
    std::ofstream(path.toStdString()) << drawing;
    const QImage picture = ReadPicture(path);
    EXPECT_EQ(!picture.isNull() && picture.pixelColor(10, 10) == QColor(Qt::red), is_red) << what;
  }
}

// Asked while the window waits, so no more is read than that takes.
TEST(Drawing, IsMeasuredByItsOutermostElement) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("bild.svg"));
  const std::string shape = "<rect width='30' height='20' fill='red'/>";
  constexpr size_t kMiB = 1 << 20;
  const std::tuple<std::string, std::string, size_t, PixelSize> cases[] = {
      {"width='40' height='50'", shape, 0, {40, 50}},
      {"viewBox='0 0 60 70'", shape + "<open>", 0, {60, 70}},
      {"width='40'", shape, kMiB, {30, 20}},
      {"width='40'", shape, kMiB + 1, {0, 0}},
      {"width='9' height='8'", shape, 4 * kMiB, {9, 8}},
      {"width='9' height='8'", shape, 4 * kMiB + 1, {0, 0}},
  };
  for (const auto& [attributes, shapes, bytes, size] : cases) {
    std::string drawing = "<svg xmlns='http://www.w3.org/2000/svg' " + attributes + ">" + shapes + "</svg>";
    drawing.resize(std::max(bytes, drawing.size()), ' ');
    std::ofstream(path.toStdString()) << drawing;
    EXPECT_EQ(MeasurePicture(path).file.size, size) << attributes << bytes;
  }
}

TEST(DesktopColours, WishIsReadHoweverItIsWrapped) {
  const auto wrapped = [](const QVariant& value) { return QVariant::fromValue(QDBusVariant(value)); };
  EXPECT_EQ(WishOf(wrapped(wrapped(1U))), Theme::Dark);
  EXPECT_EQ(WishOf(wrapped(2U)), Theme::Light);
  for (const QVariant& none : {QVariant(0U), QVariant(7U), QVariant(), wrapped(QStringLiteral("dark"))})
    EXPECT_EQ(WishOf(none), Theme::Desktop);
}

}  // namespace
}  // namespace tessaro
