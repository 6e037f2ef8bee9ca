#pragma once

#include <QTimer>
#include <memory>
#include <string>

#include "answer/answer_window.h"
#include "answer/typing_training.h"

namespace Ui {
class TF_wntipp;
}

namespace tessaro {

// The window of the typing training: the text that the card shows is copied here, and each key is looked at.
class TF_wntipp : public AnswerWindow {
  Q_OBJECT

 public:
  explicit TF_wntipp(const AnswerSurroundings& around);
  ~TF_wntipp() override;

  void CardCame() override;
  void SideCame() override;
  void ReadSettings() override;
  bool CanAnswer() const override { return !required_.empty(); }
  void TakeFocus() override;

 Q_SIGNALS:
  // The card is to show this text, and nothing else, as what is to be copied.
  void TemplateWanted(const std::string& text);
  // ... and so many of its characters from `place` on marked.
  void MarkWanted(int place, int length);
  // The sound file for an error is to be played.
  void SoundWanted(const QString& path);

 protected:
  bool KeyPressed(QKeyEvent& event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void RichEditTippChange();
  void Follow(const TypingStep& step);
  void ShowWrong(const TypingStep& step);
  void ShowResult(const TypingResult& result);
  void Mark(size_t place);
  void ShowFigures();
  void ShowStart();

  std::unique_ptr<Ui::TF_wntipp> ui_;
  TypingTraining training_;
  CodePage Page() const;

  std::string required_;  // empty: there is nothing to type
  size_t place_ = 0;
  TypingMark mark_ = TypingMark::Character;
  TypingLimits limits_;
  bool show_figures_ = true;
  QString sound_;
  bool result_shown_ = false;  // of the card before, until the first key
  QTimer figures_;
};

}  // namespace tessaro
