#pragma once

#include <QLocalServer>
#include <QObject>
#include <filesystem>

#include "app/start_wish.h"

class QLocalSocket;

namespace tessaro {

// The one running program of a user, on a display, with a settings file. A second start hands over to it what it was
// asked for and ends.
class SingleInstance : public QObject {
  Q_OBJECT

 public:
  // What the program of this settings file is called by, for this user and display.
  static QString NameFor(const std::filesystem::path& settings);
  // Hands the wish, which may be empty, to the program of this name. False when there is none, or none that answers
  // within so many milliseconds.
  static constexpr int kPatience = 2000;
  static bool HandOver(const QString& name, const StartWish& wish, int patience = kPatience);

  // From now on this program is called by the name, unless another is.
  explicit SingleInstance(const QString& name);

 Q_SIGNALS:
  void OtherStart(const StartWish& wish);

 private:
  void Answer(QLocalSocket& caller);

  QLocalServer server_;
};

}  // namespace tessaro
