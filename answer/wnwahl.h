#pragma once

#include <array>
#include <memory>

#include "answer/answer_offer.h"
#include "answer/answer_window.h"
#include "answer/choice.h"
#include "widgets/sliced_work.h"

class QCheckBox;

namespace Ui {
class TF_wnwahl;
}

namespace tessaro {

// The choice bar: the learner answers a test card by clicking a letter, a number, or a set of boxes; if he wishes,
// other cards by choosing the answer among answers of other cards. After a wrong answer the right one is shown, and
// "weiter" is the only way on.
class TF_wnwahl : public AnswerWindow {
  Q_OBJECT

 public:
  // The file and the chance must outlive the window.
  TF_wnwahl(const AnswerSurroundings& around, CardFile& file, Random& random);
  ~TF_wnwahl() override;

  void CardCame() override;
  void SideCame() override { ShowStatus(); }
  // What is pending is registered as "weiter" would.
  void SwitchedOff() override;
  void ReadSettings() override;
  bool CanAnswer() const override;
  void TakeFocus() override;

 Q_SIGNALS:
  // The gate has another status.
  void StatusChanged();
  // Beside what the learner did it was found whether there are answers to choose.
  void OfferDecided();

 protected:
  bool KeyPressed(QKeyEvent& event) override;

 private:
  ChoicePage Page() const;
  CodePage KeyPage() const;
  void MakeChoices();
  void PageChanged();
  void ShowHint();
  void MakeOffer();
  void PrepareOffer();
  bool MayChoose() const;
  void ChoiceClick(size_t choice, QToolButton& button);
  void OfferedClick(size_t place);
  void CheckBoxClick(size_t choice);
  void BitBtnMehrfachClick();
  void BitBtnLerneIchClick();

  void Right(const QString& text);
  void Wrong();
  void Restore();
  void Untick();
  Ticks Ticked() const;
  void ShowStatus(ChoiceStatus after = ChoiceStatus::Choice);
  bool ChooseByKey(QKeyEvent& event);
  bool ChooseOffered(QKeyEvent& event);
  bool MoveAmongBoxes(int key);

  std::unique_ptr<Ui::TF_wnwahl> ui_;
  std::array<std::array<QToolButton*, kChoices>, 2> choices_{};
  std::array<QCheckBox*, kChoices> boxes_{};
  size_t box_ = 0;  // the one that the keys tick
  bool offers_ = false;
  AnswerOffer offer_;
  SlicedWork preparation_;  // of the offer
  Random& random_;
  std::optional<OfferedAnswers> offered_;  // for the card on screen
};

}  // namespace tessaro
