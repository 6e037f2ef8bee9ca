#pragma once

#include <QObject>
#include <filesystem>
#include <memory>

#include "platform/disk.h"
#include "settings/program_settings.h"

namespace tessaro {

class Messages;
class TF_wnhelp;

// Gives help in every window of the program, dialogs and message boxes included: F1, and whatever calls RequestHelp,
// opens the card of the place where that happened.
class HelpDesk : public QObject {
  Q_OBJECT

 public:
  // `deck` is the card file of the help, empty where there is none. All must live longer. Needs a QApplication.
  HelpDesk(Disk& disk, std::filesystem::path deck, ProgramSettings& settings, Messages& messages);
  ~HelpDesk() override;

  // Opens the help on this place: the card of the nearest control or window that has one, seen from there outward.
  void Open(QWidget& place);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  // Null when the help cannot be read, which the user then knows.
  TF_wnhelp* Window(QWidget& asker);

  Disk& disk_;
  std::filesystem::path deck_;
  ProgramSettings& settings_;
  Messages& messages_;
  std::unique_ptr<TF_wnhelp> window_;
};

}  // namespace tessaro
