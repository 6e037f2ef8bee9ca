#pragma once

#include <QObject>
#include <QString>
#include <memory>

namespace tessaro {

class VideoScreen;

// Plays one sound or video at a time. Nothing here waits: what becomes of a file is told by the signals, exactly one
// of Ended and Failed for each Play that is not stopped or followed by another one.
class MediaPlayer : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;
  // Plays a file from its start in place of what was played. `screen` is null for sounds; else it must outlive the
  // playing.
  virtual void Play(const QString& path, VideoScreen* screen) = 0;
  virtual void SetPaused(bool paused) = 0;
  virtual void Stop() = 0;

 Q_SIGNALS:
  void Ended();
  void Failed();  // no such file, or nothing on this machine can play it
};

// The player of Qt Multimedia. It costs nothing until something is played. Without a sound device sounds end at once
// and videos are silent.
std::unique_ptr<MediaPlayer> MakeMediaPlayer();

}  // namespace tessaro
