#include "widgets/wnmedia.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <fstream>

#include "tests/support/dialog_driver.h"
#include "widgets/video_screen.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

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
  QTest::mouseClick(&Control<QPushButton>(window, u"ButtonPause"_s), Qt::LeftButton);
  QTest::keyClick(&window, Qt::Key_Space);
  Q_EMIT player->Ended();
  EXPECT_FALSE(Control<QPushButton>(window, u"ButtonPause"_s).isEnabled());
  QTest::mouseClick(&Control<QPushButton>(window, u"ButtonAgain"_s), Qt::LeftButton);
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
  QTest::mouseClick(&Control<QPushButton>(window, u"ButtonAgain"_s), Qt::LeftButton);
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
