#pragma once

#include <QString>
#include <QStringList>
#include <QWidget>
#include <memory>

#include "widgets/media_player.h"

namespace Ui {
class TF_wnmedia;
}

namespace tessaro {

// The media window: plays the sounds and videos of a card. It opens only for a video that is to be seen larger than in
// its place in the card.
class TF_wnmedia : public QWidget {
  Q_OBJECT

 public:
  // A null player means the machine's own.
  explicit TF_wnmedia(std::unique_ptr<MediaPlayer> player = nullptr, QWidget* parent = nullptr);
  ~TF_wnmedia() override;

  // Sounds asked for while another one is played follow it, each once. One that cannot be played is passed over.
  void PlaySound(const QString& path);
  // Opens the window and plays the video in it.
  void PlayVideo(const QString& path);
  // Plays the video on another window's screen, for example in the place that a card has for it. Where it is played
  // there already, it pauses or goes on.
  void PlayVideoOn(const QString& path, VideoScreen& screen);
  // Ends all playing, drops waiting sounds and closes the window: for when the card changes.
  void StopAll();

 Q_SIGNALS:
  void SoundFailed(const QString& path);  // it cannot be played here and was passed over
  void VideoEnded(bool played);           // on another window's screen; false: it could not be played

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  enum class Playing { Nothing, Sound, Video };

  void StartVideo(const QString& path, VideoScreen& screen);
  void Stop();
  void PlayNextSound();
  void OnEnded();
  void OnFailed();
  void End(const QString& video_state, bool played);
  void TogglePause();
  void ButtonAgainClick();
  void ShowState(const QString& text, bool running);

  std::unique_ptr<Ui::TF_wnmedia> ui_;
  std::unique_ptr<MediaPlayer> player_;
  QStringList waiting_sounds_;
  QString sound_path_;                   // of the sound that is played
  QString video_path_;                   // of the video that is or was played
  const VideoScreen* screen_ = nullptr;  // where it is or was seen, only to be compared
  Playing playing_ = Playing::Nothing;
  bool paused_ = false;
};

}  // namespace tessaro
