#pragma once

#include <QDialog>
#include <array>
#include <memory>
#include <optional>

#include "learn/learning_run.h"
#include "learn/leitner_count.h"
#include "learn/leitner_method.h"
#include "platform/qt/messages.h"
#include "store/card_file.h"
#include "store/program_settings.h"

class QLineEdit;
class QPushButton;

namespace Ui {
class TF_dlausw;
}

namespace tessaro {

// What the learner chose: a method of the automatic kind, or a Leitner box to work through.
struct MethodChoice {
  Method method = Method::Standard;
  LeitnerBox box;        // for Method::Leitner
  bool box_lock = true;  // the lock against early advancing
};

// The selection of the learning method. It counts the cards into the Leitner boxes and shows which of them may be
// learned; accepted, it has a choice.
class TF_dlausw : public QDialog {
  Q_OBJECT

 public:
  // `shown` is the choice that the dialog opens with; of a Leitner box only the tab and the lock are taken. `observer`
  // hears of the cards whose level counting raises and may be null.
  TF_dlausw(CardFile& file, ProgramSettings& settings, const Clock& clock, Messages& messages,
            const MethodChoice& shown, RowObserver* observer, QWidget* parent = nullptr);
  ~TF_dlausw() override;

  MethodChoice TakeChoice() { return std::move(choice_); }

 private:
  void BitBtnSortClick();
  void BitBtnNeuNach1Click();
  void BitBtnLernClick(int box);
  void LimitEdited(int box);
  void CheckBoxKompatibelClick();
  void BtLernClick();

  void ShowCounts();
  void ShowCommands();
  void ShowProgress(const BoxCounts& counts);

  std::unique_ptr<Ui::TF_dlausw> ui_;
  CardFile& file_;
  ProgramSettings& settings_;
  const Clock& clock_;
  Messages& messages_;
  RowObserver* observer_;
  std::array<QLineEdit*, kBoxes> count_edits_;
  std::array<QLineEdit*, kLimitedBoxes> limit_edits_;
  std::array<QPushButton*, kBoxes> learn_buttons_;

  BoxLimits limits_;
  BoxCounts counts_;
  BoxCommands commands_;
  BoxOrder order_;
  bool counting_ = false;
  int64_t progress_shown_ = 0;  // when the running counts were painted last, in milliseconds
  MethodChoice choice_;
};

}  // namespace tessaro
