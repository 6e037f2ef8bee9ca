#include <QAudioDevice>
#include <QAudioOutput>
#include <QFileInfo>
#include <QMediaDevices>
#include <QMediaPlayer>
#include <QPointer>
#include <QSoundEffect>
#include <QTimer>
#include <QUrl>
#include <QVideoFrame>
#include <QVideoSink>
#include <chrono>
#include <utility>

#include "widgets/media_player.h"
#include "widgets/video_screen.h"

namespace tessaro {
namespace {

using namespace std::chrono_literals;

constexpr auto kLoadingLimit = 5s;
constexpr auto kDisposalDelay = 100ms;
constexpr qint64 kLargestClip = 4 << 20;  // bytes; a sound effect holds its whole file in memory

bool HasSoundDevice() {
  return !QMediaDevices::defaultAudioOutput().isNull();
}

bool IsClip(const QString& path) {
  return path.endsWith(QLatin1String(".wav"), Qt::CaseInsensitive) && QFileInfo(path).size() <= kLargestClip;
}

// Every file gets a player of its own, made when it is played: one that failed needs a second to be stopped, and does
// not always tell that the next file failed too.
class QtMediaPlayer : public MediaPlayer {
 public:
  void Play(const QString& path, VideoScreen* screen) override {
    Stop();
    screen_ = screen;
    if (!QFileInfo(path).isFile()) return Tell(&MediaPlayer::Failed);
    if (screen == nullptr && !HasSoundDevice()) return Tell(&MediaPlayer::Ended);
    // Short clips and ones of an odd length are played whole only by the sound effect.
    if (screen == nullptr && IsClip(path)) return PlayEffect(path);
    PlayFile(path);
  }

  void SetPaused(bool paused) override {
    if (!player_ || !playing_) return;
    if (paused) {
      player_->pause();
    } else {
      player_->play();
    }
  }

  void Stop() override {
    ++number_;
    playing_ = false;
    screen_ = nullptr;
    if (effect_) effect_.release()->deleteLater();
    DisposeOfPlayer();
  }

 private:
  // Later, and only if nothing else was played or stopped in between.
  void Tell(void (MediaPlayer::*signal)()) {
    playing_ = false;
    QTimer::singleShot(0, this, [this, signal, number = number_] {
      if (number == number_) Q_EMIT(this->*signal)();
    });
  }

  // Silent at once; going away takes the player a third of a second, which can wait until the next card is on screen.
  void DisposeOfPlayer() {
    if (!player_) return;
    QObject* playback = player_->parent();
    player_->disconnect(this);
    player_->pause();
    player_ = nullptr;
    QTimer::singleShot(kDisposalDelay, playback, [playback] { delete playback; });
  }

  void PlayEffect(const QString& path) {
    playing_ = true;
    effect_ = std::make_unique<QSoundEffect>();
    connect(effect_.get(), &QSoundEffect::playingChanged, this, [this] {
      if (playing_ && effect_ && !effect_->isPlaying()) Tell(&MediaPlayer::Ended);
    });
    connect(effect_.get(), &QSoundEffect::statusChanged, this, [this, path] {
      if (!playing_ || !effect_ || effect_->status() != QSoundEffect::Error) return;
      effect_.release()->deleteLater();
      PlayFile(path);
    });
    QTimer::singleShot(kLoadingLimit, effect_.get(), [this] {
      if (effect_->status() <= QSoundEffect::Loading) TellOnce(&MediaPlayer::Failed);
    });
    effect_->setSource(QUrl::fromLocalFile(path));
    if (effect_) effect_->play();  // not one that failed at once
  }

  void PlayFile(const QString& path) {
    auto* playback = new QObject(this);
    player_ = new QMediaPlayer(playback);
    auto* sink = new QVideoSink(playback);
    // Without a device an output fails, and with it a film that could be seen.
    if (HasSoundDevice()) player_->setAudioOutput(new QAudioOutput(playback));
    player_->setVideoSink(sink);
    connect(sink, &QVideoSink::videoFrameChanged, playback, [this, sink](const QVideoFrame& frame) {
      if (!screen_ || !player_ || player_->videoSink() != sink || !frame.isValid()) return;
      frame_seen_ = true;
      screen_->ShowFrame(frame.toImage());
    });
    connect(player_, &QMediaPlayer::mediaStatusChanged, this, [this](QMediaPlayer::MediaStatus status) {
      if (status == QMediaPlayer::InvalidMedia) TellOnce(&MediaPlayer::Failed);
      // A video of which only the sound could be played has failed.
      if (status == QMediaPlayer::EndOfMedia)
        TellOnce(screen_ && !player_->hasVideo() ? &MediaPlayer::Failed : &MediaPlayer::Ended);
    });
    connect(player_, &QMediaPlayer::errorOccurred, this, [this] { TellOnce(&MediaPlayer::Failed); });
    playing_ = true;
    frame_seen_ = false;
    player_->setSource(QUrl::fromLocalFile(path));
    player_->play();
    // From here on: starting to play takes seconds where the machine looks for its decoders for the first time.
    QTimer::singleShot(kLoadingLimit, playback, [this, player = player_] {
      // Some decoders take a damaged file for one that will go on some time; its clock may even run.
      const bool loading = player->mediaStatus() <= QMediaPlayer::LoadingMedia;
      const bool is_dead =
          (screen_ ? !frame_seen_ : player->position() == 0) && player->playbackState() != QMediaPlayer::PausedState;
      if (player_ == player && (loading || is_dead)) TellOnce(&MediaPlayer::Failed);
    });
  }

  void TellOnce(void (MediaPlayer::*signal)()) {
    if (playing_) Tell(signal);
  }

  QPointer<VideoScreen> screen_;
  QMediaPlayer* player_ = nullptr;  // with its outputs it belongs to an object of its own
  std::unique_ptr<QSoundEffect> effect_;
  int number_ = 0;  // of the playing at hand; a later one makes what an earlier one still has to tell void
  bool playing_ = false;
  bool frame_seen_ = false;  // of the video at hand
};

}  // namespace

std::unique_ptr<MediaPlayer> MakeMediaPlayer() {
  return std::make_unique<QtMediaPlayer>();
}

}  // namespace tessaro
