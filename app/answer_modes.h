#pragma once

#include <QObject>
#include <QString>
#include <array>
#include <memory>

#include "answer/answer_window.h"
#include "learn/answer_gate.h"

namespace tessaro {

class CardFile;
class Random;
class TF_wnlern;
class TF_wnmedia;
class TF_wnsign;

// The answer windows beside one learning window: makes them when they are switched on, one at a time, and ties them to
// it. Which one is on stands in the settings.
class AnswerModes : public QObject {
  Q_OBJECT

 public:
  // All of these must outlive the object. `input_check_on` is kept as long as the program runs.
  AnswerModes(CardFile& file, TF_wnlern& learning, TF_wnmedia& media, AnswerGate& gate, ProgramSettings& settings,
              const Clock& clock, Random& random, Messages& messages, bool& input_check_on);
  // Keeps the places of the windows.
  ~AnswerModes() override;

  // Switches on what the settings say: at first what was on in the last run.
  void Start();
  void SwitchTo(AnswerMode mode);
  void SettingsChanged();
  // Gives the keyboard to the window in which the card on screen is answered.
  void TakeFocus();
  // The same, unless someone works in another window.
  void GiveFocus();

 private:
  static constexpr size_t kModes = 4;  // of AnswerMode, the first without a window

  AnswerWindow* Window() const { return windows_[static_cast<size_t>(mode_)].get(); }
  void MakeWindow(AnswerMode mode);
  std::unique_ptr<AnswerWindow> MakeInput();
  std::unique_ptr<AnswerWindow> MakeTyping();
  std::unique_ptr<AnswerWindow> MakeChoice();
  void OpenSigns();
  void SwitchOff();
  void TellGate();
  void KeepMode();
  void Place();
  void CardShown();
  void PassKeys();
  // Whether it is the learning window, the answer window or a dialog of theirs.
  bool BelongsToLearning(const QWidget* window) const;
  void PlayErrorSound(const QString& path);
  void TellBadSound(const QString& path);

  CardFile& file_;
  TF_wnlern& learning_;
  TF_wnmedia& media_;
  AnswerSurroundings around_;
  Random& random_;
  bool& input_check_on_;
  bool works_here_ = true;  // the window that was active last belongs to learning
  AnswerMode mode_ = AnswerMode::None;
  std::array<std::unique_ptr<AnswerWindow>, kModes> windows_;
  std::unique_ptr<TF_wnsign> signs_;  // the table of special characters
  QString error_sound_;               // the one that is or was played
  QString bad_sound_;                 // the one that was told of
};

}  // namespace tessaro
