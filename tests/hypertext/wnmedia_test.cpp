#include "hypertext/wnmedia.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include "hypertext/video_screen.h"

namespace tessaro {
namespace {

// Notes what it is asked to do.
class NotingPlayer : public MediaPlayer {
 public:
  explicit NotingPlayer(QStringList& notes) : notes_(notes) {}
  void Play(const QString& path, VideoScreen* screen) override {
    notes_ << QStringLiteral("%1 %2").arg(screen ? QStringLiteral("video") : QStringLiteral("sound"), path);
  }
  void SetPaused(bool paused) override { notes_ << (paused ? QStringLiteral("pause") : QStringLiteral("go on")); }
  void Stop() override { notes_ << QStringLiteral("stop"); }

 private:
  QStringList& notes_;
};

struct MediaWindow : testing::Test {
  QStringList notes;
  NotingPlayer* player = new NotingPlayer(notes);
  TF_wnmedia window{std::unique_ptr<MediaPlayer>(player)};

  std::string Notes() {
    const QString all = notes.join(QStringLiteral(", "));
    notes.clear();
    return all.toStdString();
  }
  template <typename Widget>
  Widget* Find(const char* name) const {
    return window.findChild<Widget*>(QString::fromLatin1(name));
  }
};

TEST_F(MediaWindow, SoundsFollowOneAnotherWithoutTheWindow) {
  for (const char16_t* name : {u"a.wav", u"b.mid", u"", u"c.wav"}) window.PlaySound(QString::fromUtf16(name));
  EXPECT_EQ(Notes(), "sound a.wav");
  Q_EMIT player->Ended();
  EXPECT_EQ(Notes(), "sound b.mid");
  QSignalSpy failures(&window, &TF_wnmedia::PlayingFailed);
  Q_EMIT player->Failed();
  EXPECT_EQ(Notes(), "sound c.wav");
  EXPECT_EQ(failures[0][0].toString(), QStringLiteral("b.mid"));
  EXPECT_FALSE(window.isVisible());
}

TEST_F(MediaWindow, ANewCardEndsAllPlaying) {
  window.PlaySound(QStringLiteral("a.wav"));
  window.PlaySound(QStringLiteral("b.wav"));
  window.PlayVideo(QStringLiteral("f.avi"));
  EXPECT_TRUE(window.isVisible());
  window.StopAll();
  EXPECT_FALSE(window.isVisible());
  EXPECT_EQ(Notes(), "sound a.wav, video f.avi, stop");
  window.PlaySound(QStringLiteral("c.wav"));
  EXPECT_EQ(Notes(), "sound c.wav");
}

TEST_F(MediaWindow, VideosPausePlayAgainAndEndWithTheWindow) {
  window.PlayVideo(QStringLiteral("f.avi"));
  QTest::mouseClick(Find<QPushButton>("ButtonPause"), Qt::LeftButton);
  QTest::keyClick(&window, Qt::Key_Space);
  Q_EMIT player->Ended();
  EXPECT_FALSE(Find<QPushButton>("ButtonPause")->isEnabled());
  QTest::mouseClick(Find<QPushButton>("ButtonAgain"), Qt::LeftButton);
  QTest::keyClick(&window, Qt::Key_Escape);
  EXPECT_FALSE(window.isVisible());
  EXPECT_EQ(Notes(), "video f.avi, pause, go on, video f.avi, stop");
}

TEST_F(MediaWindow, AVideoThatCannotBePlayedIsNamed) {
  QSignalSpy ends(&window, &TF_wnmedia::VideoEnded);
  window.PlayVideo(QStringLiteral("/karten/f.avi"));
  Q_EMIT player->Failed();
  EXPECT_TRUE(Find<QLabel>("LabelState")->text().contains(QStringLiteral("\"f.avi\"")));
  EXPECT_EQ(ends.count(), 1);
}

// The machine's own player, whatever the machine has: every file comes to its end, and nothing waits for it.
TEST(MediaPlayer, MissingAndDamagedFilesFailInTheirOwnTime) {
  QTemporaryDir folder;
  QFile file(folder.filePath(QStringLiteral("kaputt.avi")));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("RIFFxxxxAVI and nothing else");
  file.close();
  const auto player = MakeMediaPlayer();
  VideoScreen screen;
  for (const QString& path : {folder.filePath(QStringLiteral("fehlt.avi")), file.fileName()}) {
    QSignalSpy failures(player.get(), &MediaPlayer::Failed);
    player->Play(path, &screen);
    EXPECT_EQ(failures.count(), 0);
    EXPECT_TRUE(failures.wait(8000)) << path.toStdString();
  }
  QSignalSpy ends(player.get(), &MediaPlayer::Failed);
  player->Play(QStringLiteral("/fehlt.wav"), nullptr);
  player->Stop();
  EXPECT_FALSE(ends.wait(100));
}

}  // namespace
}  // namespace tessaro
