#include "widgets/htmlview.h"

#include <QAccessible>
#include <QFile>
#include <QShortcut>
#include <QVBoxLayout>
#include <fstream>

#include "tests/support/window_test.h"
#include "widgets/video_screen.h"

namespace tessaro {
namespace {

constexpr QRgb kGreen = qRgb(0, 128, 0);
constexpr QRgb kRed = qRgb(255, 0, 0);
constexpr QRgb kBlue = qRgb(0, 0, 255);
constexpr QRgb kWhite = qRgb(255, 255, 255);
constexpr QRgb kPaper = qRgb(250, 240, 220);
constexpr QRgb kPen = qRgb(10, 60, 160);

struct HtmlView : testing::Test {
  QTemporaryDir folder;
  QWidget window;
  TFrameHtml* frame = new TFrameHtml;
  QPushButton* button = new QPushButton;
  SideLook look = {QFont(QStringLiteral("DejaVu Sans"), 12), Qt::black, QColor(kPaper)};
  QSignalSpy links{frame, &TFrameHtml::LinkClicked};
  QSignalSpy failures{frame, &TFrameHtml::DrawingFailed};

  void SetUp() override {
    auto* box = new QVBoxLayout(&window);
    box->addWidget(frame);
    box->addWidget(button);
    frame->SetMediaFolders({ToPath(folder.path()), {}});
    frame->SetLinkColours([](int64_t id) { return static_cast<ColourClass>(id); });
    window.resize(500, 400);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  }
  QString Path(const char* name) const { return folder.filePath(QString::fromLatin1(name)); }
  // A white picture with one point of another colour in its middle.
  void SavePicture(const char* name, QSize size) const {
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(Qt::white);
    picture.setPixel(size.width() / 2, size.height() / 2, kPen);
    ASSERT_TRUE(picture.save(Path(name)));
  }
  void SaveBytes(const char* name, const std::string& bytes) const { std::ofstream(ToPath(Path(name))) << bytes; }
  void Show(std::string_view side) {
    frame->ShowSide(side, look);
    QApplication::processEvents();
  }
  QWidget* PaintBox() const { return frame->findChild<QWidget*>(QStringLiteral("PaintBox")); }
  QImage Grab() const { return frame->grab().toImage().convertToFormat(QImage::Format_RGB32); }
  // The points of the colour on what is shown.
  int Count(QRgb colour) const {
    const QImage image = Grab();
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) count += image.pixel(x, y) == colour ? 1 : 0;
    }
    return count;
  }
  void Press(std::initializer_list<Qt::Key> keys) {
    for (const Qt::Key key : keys) QTest::keyClick(QApplication::focusWidget(), key);
  }
  QPoint MiddleOfLink(size_t i) const {
    const LinkArea& area = frame->layout().links.areas().at(i);
    return {(area.left + area.right) / 2, (area.top + area.bottom) / 2};
  }
};

TEST_F(HtmlView, MouseFindsLinksWhereTheyAreDrawn) {
  Show("Weit <a href=\"7\">hier</a> und<br><br>dann <a href=\"0\">nichts</a>.");
  ASSERT_EQ(frame->layout().links.areas().size(), 2U);
  const QPoint beside(frame->layout().links.areas()[0].right + 2, MiddleOfLink(0).y());
  for (const auto& [point, cursor] : {std::pair(MiddleOfLink(0), Qt::PointingHandCursor), {beside, Qt::ArrowCursor}}) {
    QTest::mouseMove(PaintBox(), point);
    EXPECT_EQ(PaintBox()->cursor().shape(), cursor);
  }
  QTest::mousePress(PaintBox(), Qt::LeftButton, {}, beside);
  QTest::mousePress(PaintBox(), Qt::RightButton, {}, MiddleOfLink(0));
  EXPECT_EQ(links.count(), 0);
  for (const size_t link : {0U, 1U}) QTest::mousePress(PaintBox(), Qt::LeftButton, {}, MiddleOfLink(link));
  EXPECT_EQ(links, QList<QVariantList>({{7}, {0}}));
}

TEST_F(HtmlView, TabWalksThroughTheLinksAndEnterFollows) {
  int enter_of_window = 0;
  auto* shortcut = new QShortcut(Qt::Key_Return, &window);
  QObject::connect(shortcut, &QShortcut::activated, &window, [&] { ++enter_of_window; });
  std::string side = "<a href=\"1\">a</a>";
  for (int i = 0; i < 40; ++i) side += "<br>";
  Show(side + "<a href=\"2\">b</a>");
  button->setFocus();
  Press({Qt::Key_Return});
  EXPECT_EQ(enter_of_window, 1);
  const QRgb ring = frame->palette().color(QPalette::Highlight).rgb();
  EXPECT_EQ(Count(ring), 0);
  Press({Qt::Key_Tab});
  EXPECT_GT(Count(ring), 10);
  Press({Qt::Key_Return, Qt::Key_Tab, Qt::Key_Enter});
  EXPECT_GT(frame->verticalScrollBar()->value(), 0);
  Press({Qt::Key_Tab});
  EXPECT_TRUE(button->hasFocus());
  Press({Qt::Key_Return});
  EXPECT_EQ(enter_of_window, 2);
  Press({Qt::Key_Backtab, Qt::Key_Return});
  Show("<a href=\"3\">c</a> <a href=\"4\">d</a>");
  Press({Qt::Key_Return});
  EXPECT_EQ(links, QList<QVariantList>({{1}, {2}, {2}})) << "on a new side no link has the ring";
}

TEST_F(HtmlView, SoundsAreAskedForOncePerShownSide) {
  SaveBytes("ton.wav", "x");
  QSignalSpy sounds(frame, &TFrameHtml::SoundWanted);
  Show("<embed src=\"TON.wav\"><embed src=\"fehlt.wav\">");
  window.resize(600, 500);
  EXPECT_EQ(sounds, QList<QVariantList>({{Path("ton.wav")}}));
}

TEST_F(HtmlView, LinksAndFramesHaveTheColourOfTheirClass) {
  SavePicture("p.png", {30, 20});
  const std::pair<const char*, QRgb> cases[] = {{"<a href=\"1\">____</a>", kGreen},
                                                {"<a href=\"2\">____</a>", kRed},
                                                {"<a href=\"0\">____</a>", kBlue},
                                                {"<a href=\"2\"><img src=\"p.png\"></a>", kRed},
                                                {"<a href=\"1\"><img src=\"p.png\" border=\"1\"></a>", kGreen}};
  for (const auto& [side, expected] : cases) {
    Show(side);
    for (const QRgb colour : {kGreen, kRed, kBlue}) EXPECT_EQ(Count(colour) > 20, colour == expected) << side;
  }
  Show("<a href=\"2\"><img src=\"p.png\" border=\"0\"></a>");
  EXPECT_EQ(Count(kRed), 0);
  EXPECT_EQ(Count(kWhite), 30 * 20 - 1);
}

TEST_F(HtmlView, WhiteIsTransparentOnlyInBitmapsOfTheirOwnSize) {
  SavePicture("p.bmp", {30, 20});
  Show("<img src=\"P.BMP\" border=\"0\">");
  EXPECT_EQ(Count(kWhite), 0);
  EXPECT_EQ(Count(kPen), 1);
  Show("<img src=\"p.bmp\" border=\"0\" width=\"60\">");
  EXPECT_GT(Count(kWhite), 1000);
}

// One is none; two only turn out damaged when they are drawn: one breaks off, the other says of itself that it is huge,
// and must not take the memory for it.
TEST_F(HtmlView, MissingPicturesTakeNoRoomAndDamagedOnesEndTheSide) {
  Show("a<a href=\"1\"><img src=\"fehlt.png\"></a>b");
  EXPECT_EQ(frame->layout().fragments.size(), 2U);
  EXPECT_EQ(failures.count(), 0);
  SaveBytes("kaputt.jpg", "\xFF\xD8\xFF\xE0 and no picture behind it");
  SavePicture("halb.png", {300, 200});
  ASSERT_TRUE(QFile::resize(Path("halb.png"), QFile(Path("halb.png")).size() / 2));
  SaveBytes("riesig.bmp",
            QByteArray::fromHex("424d3600000000000000360000002800000040420f0040420f0001001800").toStdString() +
                std::string(24, '\0'));
  for (const char* name : {"kaputt.jpg", "halb.png", "riesig.bmp"}) {
    failures.clear();
    Show("<a href=\"1\">____</a><img src=\"" + std::string(name) + "\"><a href=\"2\">____</a>");
    EXPECT_TRUE(failures.count() > 0 || failures.wait());
    EXPECT_GT(Count(kGreen), 20) << name;
    EXPECT_EQ(frame->layout().fragments.size(), 1U) << name;
    window.resize(window.width() + 10, 400);
    QApplication::processEvents();
    EXPECT_EQ(failures.count(), 1) << name;
  }
}

TEST_F(HtmlView, APictureLargerThanTheCardIsFittedAndAClickShowsItWhole) {
  SavePicture("p.png", {1200, 300});
  Show("<img src=\"p.png\">");
  const auto width = [this] { return frame->layout().fragments.at(0).rect.width; };
  EXPECT_LT(width(), 500);
  EXPECT_NEAR(width(), 4 * frame->layout().fragments[0].rect.height, 4);
  EXPECT_EQ(frame->horizontalScrollBar()->maximum(), 0);
  QTest::mouseClick(PaintBox(), Qt::LeftButton, {}, {20, 20});
  EXPECT_EQ(width(), 1200);
  button->setFocus();
  Press({Qt::Key_Tab, Qt::Key_Return});
  EXPECT_LT(width(), 500);
  Show("<img src=\"p.png\" width=\"1000\">");
  QTest::mouseClick(PaintBox(), Qt::LeftButton, {}, {20, 20});
  EXPECT_EQ(width(), 1000) << "a size that the card gives holds";
}

TEST_F(HtmlView, LinksAreObjectsForScreenReaders) {
  SaveBytes("film.avi", "x");
  Show("Weit <a href=\"7\">hier</a> und <a href=\"8\">dort</a><embed src=\"film.avi\">");
  QAccessibleInterface* side = QAccessible::queryAccessibleInterface(frame);
  ASSERT_NE(side, nullptr);
  ASSERT_EQ(side->childCount(), 3);
  QAccessibleInterface* link = side->child(1);
  EXPECT_EQ(link->text(QAccessible::Name), QStringLiteral("dort"));
  EXPECT_EQ(link->role(), QAccessible::Link);
  EXPECT_EQ(side->indexOfChild(link), 1);
  EXPECT_EQ(link->parent(), side);
  for (QAccessibleInterface* child : {side->child(0), link})
    EXPECT_EQ(side->childAt(child->rect().center().x(), child->rect().center().y()), child);
  link->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(links, QList<QVariantList>({{8}}));
  button->setFocus();
  Press({Qt::Key_Tab});
  EXPECT_EQ(side->focusChild(), side->child(0));
  EXPECT_NE(side->child(2)->role(), QAccessible::Link);
  Show("ohne");
  EXPECT_EQ(side->childCount(), 0);
  EXPECT_FALSE(link->isValid());
}

TEST_F(HtmlView, TextIsMarkedWithTheMouse) {
  Show("eins zwei<br>drei <a href=\"1\">vier</a>.");
  const auto place_of = [this](size_t i) {
    const PixelRect& rect = frame->layout().fragments.at(i).rect;
    return QRect(rect.left, rect.top, rect.width, rect.height);
  };
  const int plain = Count(kPaper);
  QTest::mousePress(PaintBox(), Qt::LeftButton, {}, {0, place_of(0).center().y()});
  QTest::mouseMove(PaintBox(), place_of(2).center() + QPoint(place_of(2).width() / 2 + 1, 0));
  QTest::mouseRelease(PaintBox(), Qt::LeftButton);
  EXPECT_EQ(frame->MarkedText(), QStringLiteral("eins zwei\ndrei"));
  EXPECT_LT(Count(kPaper), plain);
  frame->MarkAll();
  EXPECT_EQ(frame->MarkedText(), QStringLiteral("eins zwei\ndrei vier."));
  EXPECT_EQ(links.count(), 0);
  Show("neu");
  EXPECT_EQ(frame->MarkedText(), QString());
}

TEST_F(HtmlView, ALongSideFollowsBitByBitAndAHugeOneIsCut) {
  constexpr size_t kWords = 30000;
  std::string side;
  for (size_t i = 0; i < kWords; ++i) side += "Wort" + std::to_string(i % 50) + " ";
  frame->ShowSide(side, look);
  EXPECT_LT(frame->layout().fragments.size(), kWords);
  EXPECT_TRUE(QTest::qWaitFor([this] { return frame->layout().fragments.size() == kWords; }, 20000));
  EXPECT_GT(frame->verticalScrollBar()->maximum(), 1000);
  frame->ShowSide(std::string(3 << 20, 'x'), look);
  const auto has_note = [this] {
    const auto& fragments = frame->layout().fragments;
    return !fragments.empty() && fragments.back().text == "lang.]";
  };
  EXPECT_TRUE(QTest::qWaitFor(has_note, 20000));
  Show("kurz");
  EXPECT_EQ(frame->layout().fragments.size(), 1U);
}

TEST_F(HtmlView, AnExceptionEndsTheSideAndNotTheProgram) {
  Show("<a href=\"1\">davor</a>");
  frame->SetLinkColours([](int64_t) -> ColourClass { throw std::bad_alloc(); });
  Show("<a href=\"1\">Link</a>");
  window.resize(600, 500);
  QApplication::processEvents();
  EXPECT_EQ(failures.count(), 1);
  EXPECT_TRUE(frame->layout().fragments.empty());
  Show("danach");
  EXPECT_EQ(frame->layout().fragments.size(), 1U);
}

TEST_F(HtmlView, TheVideoAreaAnswersToTheMouseAndHoldsThePanel) {
  SaveBytes("film.avi", "x");
  QSignalSpy videos(frame, &TFrameHtml::VideoClicked);
  Show("kein Video");
  EXPECT_EQ(frame->OpenVideoPanel(), nullptr);
  Show("<embed src=\"Film.AVI\" width=\"120\" height=\"80\"> <a href=\"1\">x</a>");
  const QRect area(5, 5, 120, 80);
  QTest::mousePress(PaintBox(), Qt::LeftButton, {}, area.center());
  EXPECT_EQ(videos, QList<QVariantList>({{Path("film.avi")}}));
  QSignalSpy enlarged(frame, &TFrameHtml::VideoDoubleClicked);
  QTest::mouseDClick(PaintBox(), Qt::LeftButton, {}, area.center());
  button->setFocus();
  frame->setFocus(Qt::BacktabFocusReason);
  QTest::keyClick(frame, Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_EQ(enlarged, QList<QVariantList>({{Path("film.avi")}, {Path("film.avi")}}));
  VideoScreen* panel = frame->OpenVideoPanel();
  ASSERT_NE(panel, nullptr);
  EXPECT_EQ(panel->geometry(), area);
  EXPECT_TRUE(panel->isVisible());
  Show(
      "Worte, die in einem schmalen Fenster mehr Zeilen brauchen als zuvor<embed src=\"film.avi\" width=\"120\" "
      "height=\"80\">");
  const int top = frame->OpenVideoPanel()->y();
  window.resize(250, 400);
  EXPECT_GT(panel->y(), top) << "it stays in its place";
  Show("weiter");
  EXPECT_FALSE(panel->isVisible());
}

}  // namespace
}  // namespace tessaro
