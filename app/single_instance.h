#pragma once

#include <QLocalServer>
#include <QObject>
#include <filesystem>

class QLocalSocket;

namespace tessaro {

// The one running program of a user, on a display, with a settings file. A second start hands its card file over to it
// and ends.
class SingleInstance : public QObject {
  Q_OBJECT

 public:
  // What the program of this settings file is called by, for this user and display.
  static QString NameFor(const std::filesystem::path& settings);
  // Hands the card file, or none, to the program of this name. False when there is none, or none that answers within
  // so many milliseconds.
  static constexpr int kPatience = 2000;
  static bool HandOver(const QString& name, const std::filesystem::path& card_file, int patience = kPatience);

  // From now on this program is called by the name, unless another is.
  explicit SingleInstance(const QString& name);

 Q_SIGNALS:
  // `card_file` is empty when the other start had none.
  void OtherStart(const std::filesystem::path& card_file);

 private:
  void Answer(QLocalSocket& caller);

  QLocalServer server_;
};

}  // namespace tessaro
