#pragma once

#include <QKeySequence>
#include <QList>
#include <QWidget>
#include <string_view>

#include "learn/answer_gate.h"
#include "learn/learning_commands.h"
#include "platform/clock.h"
#include "settings/kept_place.h"
#include "settings/program_settings.h"
#include "widgets/messages.h"

class QKeyEvent;
class QLabel;
class QToolButton;

namespace tessaro {

// What an answer window works with; all of it must outlive the window.
struct AnswerSurroundings {
  LearningCommands& learning;
  AnswerGate& gate;
  ProgramSettings& settings;
  const Clock& clock;
  Messages& messages;
};

// A window in which the learner answers: docked into the learning window, or floating over it. While it has the focus
// the learning keys do not act, but for those that it leaves to learning; Enter presses the focused button, and a key
// that is held down does nothing more.
class AnswerWindow : public QWidget {
  Q_OBJECT

 public:
  void SetLearningKeys(const QList<QKeySequence>& keys) { learning_keys_ = keys; }

  // Shows it as a window of its own, at its kept place, over `owner`.
  void Float(QWidget& owner);
  // To be called when it has been put into another window.
  void BeDocked();
  bool IsFloating() const { return isWindow(); }
  // Keeps its place, if it is floating.
  void KeepPlace();

  // A card came on screen, perhaps the same as before: what was pending is dropped.
  virtual void CardCame() = 0;
  // A side of the same card came on screen.
  virtual void SideCame() {}
  // The learner said "known" or "not known" of the card that was on screen.
  virtual void AnswerGiven() {}
  // The mode ends, by the learner's wish.
  virtual void SwitchedOff() {}
  // The settings were changed by the learner.
  virtual void ReadSettings() {}
  // Whether the card on screen can be answered here: if not, the keyboard is better left to the learning window.
  virtual bool CanAnswer() const { return Asks(); }
  // Brings the keyboard to where the answer is given.
  virtual void TakeFocus() = 0;

 Q_SIGNALS:
  void CloseWanted();
  void FloatWanted(bool floating);

 protected:
  // `suffix` is that of its place in the settings; without one there it floats at `first_place`.
  AnswerWindow(const AnswerSurroundings& around, std::string_view suffix, const KeptPlace& first_place);

  // To be called when the controls are made: the title, the button that floats or docks, the one that closes and the
  // one that explains.
  void DressHeader(QLabel& title, QToolButton& floats, QToolButton& closes, QToolButton& helps);
  void WatchKeys();
  // Whether this learning key is to act in the learning window though a control of this window has the focus.
  virtual bool LeaveToLearning(const QKeyEvent& /*key*/) { return false; }
  // A key in any of its controls, before these get it. True: it is done with.
  virtual bool KeyPressed(QKeyEvent& event) = 0;

  bool eventFilter(QObject* watched, QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;

  // There is a card that asks, and it was not answered yet.
  bool Asks() const;
  void Register(bool known);
  // Gives `control` the keyboard, in whichever window it has been.
  void FocusOn(QWidget& control);

  AnswerSurroundings around_;

 private:
  bool IsLearningKey(const QKeyEvent& event) const;

  std::string_view suffix_;
  KeptPlace first_place_;
  QList<QKeySequence> learning_keys_;
  QToolButton* floats_ = nullptr;
};

}  // namespace tessaro
