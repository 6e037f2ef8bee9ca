// What the learning window shows of its run.

#include "hypertext/plain_text.h"
#include "learn/lern_texts.h"
#include "learn/run_presenter.h"
#include "learn/wnlern.h"
#include "learn/wnlern_look.h"
#include "ui_wnlern.h"
#include "widgets/icons.h"
#include "widgets/text.h"

using namespace Qt::StringLiterals;

namespace tessaro {

void TF_wnlern::ShowRun(bool card_changed) {
  const RunScreen screen = ScreenOf(*run_, file_, notice_, clock_.Now());
  if (card_changed && screen.has_card) ShowCard();
  ShowCaption(screen);
  ShowFigures(screen);
  ShowControls(screen);
  ShowMethod(screen);
  ShowNotice(screen);
  ShowStatistics();
  FitControls(*ui_, width());
  FocusNextStep(screen, card_changed);
}

void TF_wnlern::ShowCard() {
  Q_EMIT MediaStopWanted();
  // A screen reader that comes to the focused button reads the card; no one listens to more.
  constexpr size_t kMostRead = 100'000;
  const QString text = FromBytes(PlainText(run_->side_text().substr(0, kMostRead)), LookOnScreen().page);
  for (AnswerButton* button : {ui_->BtHand, ui_->BtWeissIch}) button->setAccessibleDescription(text);
  ui_->PageControlAnz->ShowSide(run_->side_text(), LookOnScreen());
}

const SideLook& TF_wnlern::LookOnScreen() const {
  return looks_[run_->question_shown() ? 0 : 1];
}

void TF_wnlern::ShowCaption(const RunScreen& screen) {
  if (!screen.has_card) {
    setWindowTitle(StageText(RunStage::None, 0));
    ui_->LabelSeite->clear();
    ui_->LabelFrage->hide();
    return;
  }
  const bool inverse = screen.options.inverse;
  setWindowTitle(CaptionText(screen.side, inverse, screen.navigation, screen.position));
  ui_->LabelSeite->setText(SideText(screen.side, inverse, screen.navigation));
  ui_->LabelFrage->setText(ui_->MFrage->isChecked() ? FromBytes(screen.side_before, Card().first_page) : QString());
  ui_->LabelFrage->setVisible(!ui_->LabelFrage->text().isEmpty());
}

void TF_wnlern::ShowFigures(const RunScreen& screen) {
  const RunFigures& figures = screen.figures;
  ShowChoiceStatus();
  ui_->DisplayBeh->setText(QString::fromStdString(screen.retention));
  ui_->DisplayZuletzt->setText(screen.last_shown ? QString::fromStdString(*screen.last_shown) : u"–"_s);
  ui_->DisplayKarteifach->setText(QString::number(figures.width));
  ui_->DisplayFachErweiterung->setText(figures.widened ? u">>"_s : QString());
  ui_->DisplayZufallswahl->setText(QString::number(figures.drawn_position));
  ui_->LabelPos->setText(QString::number(figures.drawn_position));
  ui_->DisplayAnzGewNull->setText(QString::number(figures.unknown_count));
  ui_->Edit1->setText(QString::number(figures.unknown_count));
  ui_->DisplayCheckAnzahl->setText(QString::number(figures.check_count));
  ui_->DisplayJetztGeuebt->setText(QString::number(figures.presented));
  ui_->LabelSteuerung->setText(done_.isEmpty() ? StageText(screen.stage, screen.box) : done_);
  ui_->LabelAntwort->setText(said_);
  ui_->LabelAntwort->setHidden(said_.isEmpty() && ui_->LabelFrage->isVisibleTo(this));
  NameFigures(*ui_);
  TimerLernTimer();
}

void TF_wnlern::ShowChoiceStatus() {
  if (run_ == nullptr) return;
  const ChoiceStatus choice = run_->card().navigation ? ChoiceStatus::None : gate_.Status();
  ui_->DisplayStatus->setText(choice != ChoiceStatus::None
                                  ? ChoiceStatusText(choice)
                                  : StatusText(run_->card().status, run_->figures().check_count));
}

void TF_wnlern::ShowControls(const RunScreen& screen) {
  for (QWidget* part : {static_cast<QWidget*>(ui_->PageControlAnz), ui_->Antwortzeile, ui_->Tageszeile}) {
    part->setVisible(screen.has_card);
  }
  ui_->Antwortzeile->setEnabled(screen.open);
  ui_->Tageszeile->setEnabled(screen.open);
  // A navigation card asks nothing: one button leads on.
  for (QWidget* part : {static_cast<QWidget*>(ui_->BtHand), static_cast<QWidget*>(ui_->BtLerneIch)}) {
    part->setVisible(!screen.navigation);
  }
  if (screen.navigation) ui_->Tageszeile->hide();
  const QString known = screen.navigation ? u"Weiter"_s : u"Weiß ich"_s;
  const QString forecast = ForecastText(screen.due_in_if_known);
  ui_->BtWeissIch->setText(known);
  ui_->BtWeissIch->setAccessibleName(forecast.isEmpty() ? known : known + u", "_s + forecast);
  ui_->BtWeissIch->SetNote(forecast);
  for (AnswerButton* button : {ui_->BtHand, ui_->BtLerneIch, ui_->BtWeissIch}) {
    button->setToolTip(screen.open ? button->property(kHint).toString() : RunEndedHint());
  }
  for (QAction* action : {ui_->MDrehen, ui_->MKarteDrehen, ui_->Weiss_ich, ui_->Lerne_ich}) {
    action->setEnabled(screen.open);
  }
  ui_->MenuWiedervorlage->setEnabled(screen.open);
  ui_->SpeedButtonUndo->setEnabled(screen.can_undo);
  ui_->SpeedButtonUndo->setToolTip(screen.can_undo ? ui_->SpeedButtonUndo->accessibleName() : NothingToUndoHint());
  ui_->MAntwortZurueck->setEnabled(screen.can_take_back);
  ui_->MAntwortWieder->setEnabled(screen.can_restore);
  ShowOptions(screen.options);
}

void TF_wnlern::ShowOptions(const RunOptions& options) {
  ui_->SpeedButtonInversEin->setVisible(options.inverse);
  ui_->SpeedButtonInversEin->setChecked(true);
  ui_->SpeedButtonInversAus->setVisible(!options.inverse);
  ui_->MInvers->setChecked(options.inverse);
  ui_->SpeedButtonTausch->setChecked(options.swapped);
  ui_->MTausch->setChecked(options.swapped);
  ui_->SpeedButtonSperre->setAccessibleName(TimeLockText(options.time_lock));
  ui_->SpeedButtonSperre->setIcon(Icon(options.time_lock ? "lock" : "unlock"));
  ui_->MZeitsperre->setChecked(options.time_lock);
  ui_->EditZeitsperre->setText(TimeLockText(options.time_lock));
}

void TF_wnlern::ShowMethod(const RunScreen& screen) {
  // An answer that is taken back may bring back another method.
  if (screen.method != Method::Leitner) automatic_ = screen.method;
  ui_->MAutoStandard->setChecked(screen.method == Method::Standard);
  ui_->MAutoReihe->setChecked(screen.method == Method::RowOrder);
  ui_->MLeitner->setChecked(screen.method == Method::Leitner);
  ui_->ButtonMethode->setText(MethodText(screen.method) + u" ▾"_s);
  ui_->SpeedButtonLeitnerOn->setVisible(screen.method == Method::Leitner);
  ui_->SpeedButtonLeitnerOff->setVisible(screen.box_waits);
}

void TF_wnlern::ShowNotice(const RunScreen& screen) {
  ui_->LabelHinweis->setText(NoticeText(screen.notice, screen.next_due_in));
  ui_->ButtonNeuerLauf->setVisible(screen.offers_new_run);
  ui_->ButtonOhneSperre->setVisible(screen.offers_no_lock);
  ui_->Hinweis->setVisible(screen.notice != Notice::None);
  ShowToday();
  // Without a card the notice stands in its place.
  ui_->PolsterOben->setVisible(!screen.has_card);
  ui_->PolsterUnten->setVisible(!screen.has_card);
  // Who answers in his rhythm must not close the window, or begin anew, by the Enter that was meant for the next card.
  for (QPushButton* button : {ui_->ButtonNeuerLauf, ui_->ButtonHinweisEnde}) button->setAutoDefault(!run_->ended());
}

// What a run that found its end came to.
void TF_wnlern::ShowToday() {
  const bool over = notice_ == Notice::NothingDue || notice_ == Notice::NewCardsHeldBack ||
                    notice_ == Notice::EndOfFile || notice_ == Notice::EndWithoutCard;
  const QString today = over && outlook_.today ? outlook_.today() : QString();
  ui_->LabelHeute->setText(today);
  ui_->LabelHeute->setVisible(!today.isEmpty());
  ui_->ButtonAuswertung->setVisible(!today.isEmpty());
}

void TF_wnlern::FocusNextStep(const RunScreen& screen, bool card_changed) {
  using enum RunScreen::Next;
  ui_->BtHand->SetProminent(screen.next == Turn);
  // Its focus makes the space bar turn the card, too.
  const QString both_keys = turn_key_.isEmpty() ? QString() : u"Leertaste, "_s + turn_key_;
  ui_->BtHand->KeepRoomFor({}, both_keys);
  ui_->BtHand->SetKeyText(screen.next == Turn ? both_keys : turn_key_);
  ui_->BtLerneIch->SetProminent(screen.next == Answer);
  ui_->BtWeissIch->SetProminent(screen.next == Answer);
  if (screen.next == BeginRun) return ui_->ButtonNeuerLauf->setFocus();
  if (screen.next == Close) return ui_->ButtonHinweisEnde->setFocus();
  if (card_changed) (screen.next == Turn ? ui_->BtHand : ui_->BtWeissIch)->setFocus();
}

}  // namespace tessaro
