// The answer modes as the learning window sees them: switches, and a place under the card. The windows in which the
// learner answers are tied to it from outside.

#include "learn/run_presenter.h"
#include "learn/wnlern.h"
#include "ui_wnlern.h"
#include "widgets/text.h"

namespace tessaro {

void TF_wnlern::ConnectModes() {
  const auto tie = [this](QToolButton* button, QAction* action, AnswerMode mode) {
    const auto want = [this, mode](bool on) { Q_EMIT AnswerModeWanted(on ? mode : AnswerMode::None); };
    connect(button, &QAbstractButton::clicked, this, want);
    connect(action, &QAction::triggered, this, want);
  };
  tie(ui_->SpeedButtonWahl, ui_->MAuswahlleiste, AnswerMode::Choice);
  tie(ui_->SpeedButtonInput, ui_->MEingabezeile, AnswerMode::Input);
  tie(ui_->SpeedButtonTipp, ui_->MTastaturtraining, AnswerMode::Typing);
}

void TF_wnlern::ShowAnswerMode(AnswerMode mode) {
  const auto show = [mode](QToolButton* button, QAction* action, AnswerMode own) {
    button->setChecked(mode == own);
    action->setChecked(mode == own);
  };
  show(ui_->SpeedButtonWahl, ui_->MAuswahlleiste, AnswerMode::Choice);
  show(ui_->SpeedButtonInput, ui_->MEingabezeile, AnswerMode::Input);
  show(ui_->SpeedButtonTipp, ui_->MTastaturtraining, AnswerMode::Typing);
  // The window that the learner answered in has taken the focus with it.
  if (mode == AnswerMode::None) FocusNextStep(ScreenOf(*run_, file_, notice_, clock_.Now()), true);
}

void TF_wnlern::DockUnderCard(QWidget& window) {
  const int below_card = ui_->KartenspalteLayout->indexOf(ui_->PageControlAnz) + 1;
  ui_->KartenspalteLayout->insertWidget(below_card, &window);
}

void TF_wnlern::ShowTemplate(const std::string& text) {
  ui_->PageControlAnz->ShowTemplate(FromBytes(text, Card().first_page));
}

void TF_wnlern::MarkTemplate(int place, int length) {
  ui_->PageControlAnz->MarkTemplate(place, length);
}

void TF_wnlern::HideTemplate() {
  if (run_ != nullptr && run_->card().row != 0) ShowCard();
}

void TF_wnlern::SettingsChanged() {
  if (run_ == nullptr) return;
  ReadOptions();
  ReadLooks();
  HideTemplate();
}

}  // namespace tessaro
