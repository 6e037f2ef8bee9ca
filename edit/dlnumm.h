#pragma once

#include <QDialog>
#include <functional>
#include <memory>

#include "edit/command_stack.h"
#include "platform/clock.h"
#include "widgets/messages.h"

namespace Ui {
class TF_dlnumm;
}

namespace tessaro {

// Numbers the cards of the open file anew.
class TF_dlnumm : public QDialog {
  Q_OBJECT

 public:
  // Asked before the cards are changed; false: they are to stay as they are.
  using MayBegin = std::function<bool(QWidget* asker)>;
  // `row` is where the user is.
  TF_dlnumm(CardFile& file, CommandStack& commands, Messages& messages, const Clock& clock, int row, QWidget* parent,
            MayBegin may_begin = {});
  ~TF_dlnumm() override;

 private:
  void ShowDeadLinks();
  void BitBtnOKClick();

  CardFile& file_;
  CommandStack& commands_;
  Messages& messages_;
  const Clock& clock_;
  int row_;
  MayBegin may_begin_;
  std::unique_ptr<Ui::TF_dlnumm> ui_;
};

}  // namespace tessaro
