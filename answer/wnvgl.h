#pragma once

#include <QTimer>
#include <memory>
#include <string>

#include "answer/answer_window.h"
#include "answer/tolerance.h"

namespace Ui {
class TF_wnvgl;
}

namespace tessaro {

// The line for a typed answer: with every key it says whether the word that is being typed occurs in the answer. The
// learner judges himself.
class TF_wnvgl : public AnswerWindow {
  Q_OBJECT

 public:
  // `input_check_on` lives as long as the program: whether the words are checked.
  TF_wnvgl(const AnswerSurroundings& around, bool& input_check_on);
  ~TF_wnvgl() override;

  void CardCame() override;
  void SideCame() override;
  // Shows what was typed beside the answer to that card, for three seconds or up to the next key.
  void AnswerGiven() override;
  void ReadSettings() override;
  void TakeFocus() override;
  // Puts a character in at the cursor.
  void InsertSign(const QString& sign);

 Q_SIGNALS:
  // The learner wants to choose a special character.
  void SignWanted();

 protected:
  bool LeaveToLearning(const QKeyEvent& key) override;
  bool KeyPressed(QKeyEvent& event) override;

 private:
  void RichEditVglChange();
  void ShowAnswerAndJudge();
  void Judge(bool known);
  void BitBtnTestClick();
  void ClearInput();
  void EndComparison();

  std::unique_ptr<Ui::TF_wnvgl> ui_;
  bool& input_check_on_;
  size_t blank_limit_ = 2;
  Tolerance tolerance_;
  std::string key_;           // the side of the card that is to be known
  CodePage page_;             // of the key
  bool answer_seen_ = false;  // of the card on screen
  bool typed_since_ = false;  // since the answer was shown last
  bool keeps_focus_ = false;  // when a key that it left to learning shows another side
  QTimer comparison_end_;
};

}  // namespace tessaro
