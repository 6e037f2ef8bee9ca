#include "widgets/card_pages.h"

#include <fstream>

#include "store/file/ini_file.h"
#include "tests/support/window_test.h"
#include "widgets/painter.h"
#include "widgets/side_look.h"
#include "widgets/video_screen.h"
#include "widgets/wnmedia.h"

namespace tessaro {
namespace {

class CardPagesTest : public testing::Test {
 protected:
  CardPagesTest() {
    QImage(20, 10, QImage::Format_RGB32).save(folder.filePath(u"bild.bmp"_s));
    for (const char* name : {"kaputt.jpg", "notiz.txt", "ton.wav", "film.avi"})
      std::ofstream(folder.path().toStdString() + '/' + name) << "Gruß";
    pages.SetMediaFolders({folder.path().toStdString(), {}});
  }
  void ShowSide(const std::string& side) { pages.ShowSide(side, {QFont(), Qt::black, Qt::white}); }
  // The titles of the pages that are offered, the one in front in brackets.
  QString Offered() {
    QStringList titles;
    for (int page = 0; page < pages.count(); ++page) {
      if (!pages.isTabVisible(page)) continue;
      titles += page == pages.currentIndex() ? u"[%1]"_s.arg(pages.tabText(page)) : pages.tabText(page);
    }
    return titles.join(u' ');
  }

  QTemporaryDir folder;
  CardPages pages;
};

TEST_F(CardPagesTest, OffersThePagesThatTheSideHasUseFor) {
  const std::pair<const char*, QString> cases[] = {
      {"nur Text", u"[HTML]"_s},
      {"<#SHOW:bild.bmp>", u"Text [Grafik] HTML"_s},
      {"<#SHOW:bild.bmp+ (Pluszeichen)>", u"Text Grafik [HTML]"_s},
      {"<#SHOW:kaputt.jpg>", u"[HTML]"_s},
      {"<#TEXT:notiz.txt!>", u"Text [Text +] HTML"_s},
      {"<#PLAY:film.avi+>", u"Text Video [HTML]"_s},
      {"<#WAVE:ton.wav+>", u"Text Ton [HTML]"_s},
      {"<#SHOW:bild.bmp+><#PLAY:film.avi>", u"Text Grafik [Video] HTML"_s},
      {"wieder nur Text", u"[HTML]"_s},
  };
  const QSignalSpy failed(&pages, &CardPages::PictureFailed);
  for (const auto& [side, offered] : cases) {
    ShowSide(side);
    EXPECT_EQ(Offered(), offered) << side;
    EXPECT_EQ(pages.tabBar()->isVisibleTo(&pages), offered.contains(u' ')) << side;
  }
  EXPECT_EQ(failed.count(), 1) << "the picture that cannot be read";
}

TEST_F(CardPagesTest, TextPagesShowWhatAPersonReads) {
  ShowSide("<b>Eins</b> und <a href=\"1\">zwei</a><br>drei &lt;<#TEXT:notiz.txt>");
  pages.setCurrentIndex(0);
  EXPECT_EQ(pages.findChild<QPlainTextEdit*>(u"Text"_s)->toPlainText(), u"Eins und zwei\ndrei <"_s);
  EXPECT_EQ(pages.findChild<QPlainTextEdit*>(u"TextPlus"_s)->toPlainText(), u"Gruß"_s);
}

TEST_F(CardPagesTest, SoundsAreShownAndPlayedAgain) {
  QSignalSpy wanted(&pages, &CardPages::SoundWanted);
  auto* speaker = pages.findChild<QToolButton*>(u"ButtonLautsprecher"_s);
  auto* again = pages.findChild<QAction*>(u"TonNochEinmal"_s);
  const std::tuple<const char*, bool, int> cases[] = {{"nichts", false, 0},
                                                      {"<embed src=\"ton.wav\">", true, 1},
                                                      {"<#WAVE:ton.wav>", true, 1},
                                                      {"<#WAVE:ton.wav+>", true, 0},
                                                      {"nichts", false, 0}};
  for (const auto& [side, shown, played] : cases) {
    const qsizetype before = wanted.count();
    ShowSide(side);
    EXPECT_EQ(wanted.count() - before, played) << side;
    EXPECT_EQ(speaker->isVisibleTo(pages.widget(5)), shown) << side;
    again->trigger();
    EXPECT_EQ(wanted.count() - before, played + (shown ? 1 : 0)) << side;
  }
  ShowSide("<#WAVE:ton.wav+>");
  wanted.clear();
  pages.findChild<QPushButton*>(u"ButtonTon"_s)->click();
  EXPECT_EQ(wanted, QList<QVariantList>({{folder.filePath(u"ton.wav"_s)}}));
}

TEST_F(CardPagesTest, ADarkDesktopGetsDarkPaperUnlessTheUserOrTheFileWantsAnother) {
  IniFile settings;
  pages.KeepViewIn(settings);
  const auto paper = [this] {
    return pages.findChild<QWidget*>(u"PaintBox"_s)->parentWidget()->palette().color(QPalette::Window);
  };
  ShowSide("x");
  EXPECT_EQ(paper(), QColor(Qt::white));
  pages.setPalette(ThemePalette(Theme::Dark));
  EXPECT_LT(paper().lightness(), 60) << "the side on screen, too";
  pages.findChild<QAction*>(u"PapierHell"_s)->trigger();
  EXPECT_EQ(paper(), QColor(Qt::white));
  EXPECT_TRUE(keys::kWhitePaper.Read(settings));
  const SideLook own = {QFont(), Qt::darkBlue, QColor(200, 230, 200)};
  EXPECT_EQ(OnDarkPaper(own).paper, own.paper);
  const SideLook dark = OnDarkPaper({QFont(), Qt::darkBlue, Qt::white});
  for (const ColourClass colour : {ColourClass::Text, ColourClass::Green, ColourClass::Red, ColourClass::Blue})
    EXPECT_GE(Contrast(ColourOfClass(colour, dark), dark.paper), 4.5) << static_cast<int>(colour);
}

TEST_F(CardPagesTest, LettersGrowAndTheirSizeIsKept) {
  IniFile settings;
  pages.KeepViewIn(settings);
  ShowSide("Wort <font size=\"30\">Wort</font>");
  const auto width = [this](size_t i) { return pages.findChild<TFrameHtml*>()->layout().fragments.at(i).rect.width; };
  const int before[] = {width(0), width(1)};
  for (int i = 0; i < 5; ++i) pages.findChild<QAction*>(u"ZoomIn"_s)->trigger();
  for (const size_t i : {0U, 1U}) EXPECT_NEAR(width(i), before[i] * 1.5, 3);
  EXPECT_EQ(keys::kCardPercent.Read(settings), 150);
  CardPages other;
  other.KeepViewIn(settings);
  pages.SetZoom(1);
  EXPECT_EQ(keys::kCardPercent.Read(settings), keys::kCardPercent.least);
  pages.findChild<QAction*>(u"ZoomNormal"_s)->trigger();
  for (const size_t i : {0U, 1U}) EXPECT_EQ(width(i), before[i]);
}

// A view would break the lines of a long word for seconds.
TEST_F(CardPagesTest, HugeTextsAreBrokenAndCutWithANote) {
  const auto& side = *pages.findChild<QPlainTextEdit*>(u"Text"_s);
  const auto& note = *pages.findChild<QPlainTextEdit*>(u"TextPlus"_s);
  const auto show = [this](const std::string& front, const std::string& text) {
    std::ofstream(folder.path().toStdString() + "/notiz.txt") << text;
    ShowSide(front + "<#TEXT:notiz.txt>");
    pages.setCurrentIndex(0);
  };
  std::string many_lines;
  while (many_lines.size() < (9U << 20)) many_lines += "\xC3\xBC\n";
  for (const std::string& text : {std::string(9 << 20, 'x'), many_lines}) {
    show(std::string(300'000, 'y'), text);
    EXPECT_TRUE(note.toPlainText().endsWith(u"[Hier abgeschnitten: Der Text ist zu lang.]"_s));
    EXPECT_TRUE(note.toPlainText().startsWith(QChar(text[0] == 'x' ? u'x' : u'ü')));
    EXPECT_LT(note.document()->blockCount(), 30'000);
    EXPECT_GE(side.toPlainText().size(), 300'000);
    for (const QString& shown : {side.toPlainText(), note.toPlainText()}) {
      EXPECT_LT(shown.size(), 1'100'000);
      for (const QString& line : shown.split(u'\n')) EXPECT_LE(line.size(), 4001);
    }
  }
  show("", "kurz");
  EXPECT_EQ(note.toPlainText(), u"kurz"_s);
}

// It is read beside the window, unless the learner has gone on by then.
TEST_F(CardPagesTest, ALargePictureComesWhenItHasBeenRead) {
  QImage large(2400, 2000, QImage::Format_RGB32);
  large.fill(Qt::red);
  ASSERT_TRUE(large.save(folder.filePath(u"bild.bmp"_s)) && large.save(folder.filePath(u"gross.png"_s)));
  std::ofstream drawing(folder.path().toStdString() + "/viele.svg");
  drawing << "<svg xmlns='http://www.w3.org/2000/svg' width='300' height='250'>";
  for (int i = 0; i < 2000; ++i) drawing << "<rect width='300' height='250' fill='red'/>";
  drawing << "</svg>";
  drawing.close();
  pages.resize(400, 300);
  pages.show();
  const auto is_red = [this] {
    const QWidget& page = *pages.currentWidget();
    const QColor middle = pages.grab().toImage().pixelColor(page.mapTo(&pages, page.rect().center()));
    return middle.red() > 200 && middle.green() < 60;
  };
  for (const char* side :
       {"<#SHOW:bild.bmp>", "<img src=\"gross.png\" border=\"0\">", "<img src=\"viele.svg\" border=\"0\">"}) {
    ShowSide(side);
    EXPECT_FALSE(is_red()) << side;
    const QImage shown = pages.grab().toImage();
    EXPECT_NE(shown.pixel(pages.width() / 2, 60), shown.pixel(3, pages.height() - 3)) << "its place";
    EXPECT_TRUE(QTest::qWaitFor(is_red, 60'000)) << side;
    ShowSide(side);
    ShowSide("anders");
    QTest::qWait(100);
    EXPECT_FALSE(is_red()) << side;
  }
}

TEST_F(CardPagesTest, NothingOfTheVideoBeforeStaysOnTheNextSide) {
  qRegisterMetaType<VideoScreen*>();
  QSignalSpy wanted(&pages, &CardPages::VideoWanted);
  pages.resize(400, 300);
  pages.show();
  ShowSide("<#PLAY:film.avi>");
  ASSERT_EQ(wanted.count(), 1);
  EXPECT_EQ(wanted[0][0].toString(), folder.filePath(u"film.avi"_s));
  auto* screen = wanted[0][1].value<VideoScreen*>();
  const auto shown = [screen] { return screen->grab().toImage().pixel(screen->rect().center()); };
  QImage frame(8, 8, QImage::Format_RGB32);
  frame.fill(Qt::red);
  screen->ShowFrame(frame);
  ASSERT_EQ(shown(), qRgb(255, 0, 0));
  ShowSide("<#PLAY:film.avi+>");
  EXPECT_EQ(shown(), qRgb(0, 0, 0));
}

// Notes what it is asked to do.
class NotingPlayer : public MediaPlayer {
 public:
  void Play(const QString& path, VideoScreen* screen) override { notes << (screen ? u"video "_s : u"sound "_s) + path; }
  void SetPaused(bool paused) override { notes << (paused ? u"pause"_s : u"go on"_s); }
  void Stop() override { notes << u"stop"_s; }

  QStringList notes;
};

struct MediaWindow : testing::Test {
  NotingPlayer* player = new NotingPlayer;
  TF_wnmedia window{std::unique_ptr<MediaPlayer>(player)};

  std::string Notes() { return std::exchange(player->notes, {}).join(u", "_s).toStdString(); }
};

TEST_F(MediaWindow, SoundsFollowOneAnotherWithoutTheWindow) {
  for (const QString& name : {u"a.wav"_s, u"b.mid"_s, u""_s, u"c.wav"_s, u"c.wav"_s}) window.PlaySound(name);
  EXPECT_EQ(Notes(), "sound a.wav");
  Q_EMIT player->Ended();
  EXPECT_EQ(Notes(), "sound b.mid");
  Q_EMIT player->Failed();
  EXPECT_EQ(Notes(), "sound c.wav");
  EXPECT_FALSE(window.isVisible());
}

TEST_F(MediaWindow, ANewCardEndsAllPlaying) {
  for (const QString& name : {u"a.wav"_s, u"b.wav"_s}) window.PlaySound(name);
  window.PlayVideo(u"f.avi"_s);
  EXPECT_TRUE(window.isVisible());
  window.StopAll();
  EXPECT_FALSE(window.isVisible());
  Q_EMIT player->Ended();
  EXPECT_EQ(Notes(), "sound a.wav, video f.avi, stop");
}

TEST_F(MediaWindow, VideosPausePlayAgainAndEndWithTheWindow) {
  window.PlayVideo(u"f.avi"_s);
  Press(window, u"ButtonPause"_s);
  QTest::keyClick(&window, Qt::Key_Space);
  Q_EMIT player->Ended();
  EXPECT_FALSE(Control<QPushButton>(window, u"ButtonPause"_s).isEnabled());
  Press(window, u"ButtonAgain"_s);
  QTest::keyClick(&window, Qt::Key_Escape);
  EXPECT_FALSE(window.isVisible());
  EXPECT_EQ(Notes(), "video f.avi, pause, go on, video f.avi, stop");
}

TEST_F(MediaWindow, AskedAgainForTheVideoInTheCardPausesIt) {
  VideoScreen card;
  VideoScreen page;
  for (VideoScreen* screen : {&card, &card, &card, &page}) window.PlayVideoOn(u"f.avi"_s, *screen);
  Q_EMIT player->Ended();
  window.PlayVideoOn(u"f.avi"_s, page);
  EXPECT_EQ(Notes(), "video f.avi, pause, go on, video f.avi, video f.avi");
}

TEST_F(MediaWindow, AVideoThatCannotBePlayedIsToldAndTheNextSoundChangesNothingOfThat) {
  QSignalSpy ends(&window, &TF_wnmedia::VideoEnded);
  VideoScreen screen;
  window.PlayVideoOn(u"f.avi"_s, screen);
  Q_EMIT player->Failed();
  EXPECT_EQ(ends, QList<QVariantList>({{false}}));
  window.PlayVideo(u"/karten/g.avi"_s);
  window.PlaySound(u"a.wav"_s);
  Q_EMIT player->Failed();
  EXPECT_EQ(ends.count(), 1) << "the window tells it itself";
  EXPECT_TRUE(Control<QLabel>(window, u"LabelState"_s).text().contains(u"\"g.avi\""_s));
  EXPECT_FALSE(Control<QPushButton>(window, u"ButtonPause"_s).isEnabled());
  Press(window, u"ButtonAgain"_s);
  EXPECT_EQ(Notes(), "video f.avi, video /karten/g.avi, sound a.wav, video /karten/g.avi");
}

// The machine's own player, whatever the machine has: every file comes to its end, and nothing waits for it.
TEST(MediaPlayer, MissingAndDamagedFilesFailInTheirOwnTime) {
  const QTemporaryDir folder;
  const QString damaged = folder.filePath(u"kaputt.avi"_s);
  std::ofstream(damaged.toStdString()) << "RIFFxxxxAVI and nothing else";
  const auto player = MakeMediaPlayer();
  VideoScreen screen;
  for (const QString& path : {folder.filePath(u"fehlt.avi"_s), damaged}) {
    QSignalSpy failures(player.get(), &MediaPlayer::Failed);
    player->Play(path, &screen);
    EXPECT_EQ(failures.count(), 0);
    EXPECT_TRUE(failures.wait(8000)) << path.toStdString();
  }
}

}  // namespace
}  // namespace tessaro
