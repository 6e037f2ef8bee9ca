#include "widgets/dlprogress.h"

#include <QPushButton>
#include <algorithm>

#include "ui_dlprogress.h"

namespace tessaro {

TF_dlprogress::TF_dlprogress(QWidget* parent) : QDialog(parent), ui_(std::make_unique<Ui::TF_dlprogress>()) {
  ui_->setupUi(this);
  setWindowFlag(Qt::WindowCloseButtonHint, false);
  ui_->ButtonCancel->hide();
  // Keys that were meant for what was there before must not end the work: the focus is on no button.
  setFocusPolicy(Qt::StrongFocus);
  setFocus();
  connect(ui_->ButtonCancel, &QPushButton::clicked, this, &TF_dlprogress::reject);
}

TF_dlprogress::~TF_dlprogress() = default;

void TF_dlprogress::AllowCancel() {
  // No other window may begin anything while its own work asks for keys and clicks.
  setWindowModality(Qt::ApplicationModal);
  ui_->ButtonCancel->show();
}

void TF_dlprogress::reject() {
  cancelled_ = ui_->ButtonCancel->isVisibleTo(this);
  ui_->ButtonCancel->setDisabled(cancelled_);
}

void TF_dlprogress::ShowWork(const QString& text, int64_t position, int64_t range) {
  constexpr int kSteps = 1000;
  ui_->LabelWork->setText(text);
  ui_->ProgressBar->setRange(0, range > 0 ? kSteps : 0);
  if (range > 0) {
    ui_->ProgressBar->setValue(static_cast<int>(std::clamp<int64_t>(position, 0, range) * kSteps / range));
  }
}

}  // namespace tessaro
