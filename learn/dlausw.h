#pragma once

#include <QDialog>
#include <array>
#include <memory>
#include <optional>

#include "learn/leitner_count.h"
#include "learn/method_choice.h"
#include "platform/progress.h"
#include "settings/program_settings.h"
#include "store/file/card_file.h"
#include "widgets/messages.h"

class QLineEdit;
class QPushButton;

namespace Ui {
class TF_dlausw;
}

namespace tessaro {

// What the dialog opens with.
struct MethodDialogState {
  Method automatic = Method::Standard;  // or RowOrder
  bool boxes = false;                   // the tab of the Leitner boxes is in front
  bool box_lock = true;
};

// The selection of the learning method. It counts the cards into the Leitner boxes and shows which of them may be
// learned; accepted, it has a choice. Counting raises the levels of cards, also when no choice follows.
class TF_dlausw : public QDialog, private Progress {
  Q_OBJECT

 public:
  TF_dlausw(CardFile& file, ProgramSettings& settings, const Clock& clock, Messages& messages,
            const MethodDialogState& shown, QWidget* parent = nullptr);
  ~TF_dlausw() override;

  MethodChoice TakeChoice() { return std::move(choice_); }

 private:
  void BitBtnSortClick();
  void BitBtnNeuNach1Click();
  void BitBtnLernClick(int box);
  void LimitEdited(int box);
  void CheckBoxKompatibelClick();
  void BtLernClick();
  void PageChanged();

  void ShowCounts();
  void ShowCommands();
  // Why a counted box cannot be learned.
  QString ReasonText(int box) const;
  // Both paint the dialog now and then, so that it lives while a large file is counted.
  void ShowProgress(const BoxCounts& counts);
  void SetPosition(int64_t position) override;
  bool PaintNow();
  void BuildOrder();

  std::unique_ptr<Ui::TF_dlausw> ui_;
  CardFile& file_;
  ProgramSettings& settings_;
  const Clock& clock_;
  Messages& messages_;
  std::array<QLineEdit*, kBoxes> count_edits_;
  std::array<QLineEdit*, kLimitedBoxes> limit_edits_;
  std::array<QPushButton*, kBoxes> learn_buttons_;

  BoxLimits limits_;
  BoxCounts counts_;
  BoxCommands commands_;
  BoxOrder order_;
  bool counting_ = false;
  int64_t painted_ = 0;  // when the running work was painted last, in milliseconds
  MethodChoice choice_;
};

}  // namespace tessaro
