// The commands of the learning window and what it shows after each of them.

#include <QClipboard>
#include <QGuiApplication>
#include <QScopedValueRollback>
#include <utility>

#include "cards/figures.h"
#include "hypertext/plain_text.h"
#include "learn/lern_texts.h"
#include "learn/wnlern.h"
#include "learn/wnlern_look.h"
#include "settings/keys.h"
#include "ui_wnlern.h"
#include "widgets/icons.h"
#include "widgets/text.h"

using namespace Qt::StringLiterals;

namespace tessaro {

void TF_wnlern::Refresh() {
  card_changed_ = true;
}

// The box opens in the middle of the step, while the card that it is about is still on screen.
void TF_wnlern::Tell(RunMessage message, int number) {
  if (message == RunMessage::StandardExhausted) notice_ = Notice::NothingDue;
  if (message == RunMessage::EndOfFile) notice_ = Notice::EndOfFile;
  const QString text = MessageText(message, number);
  IsFault(message) ? messages_.Error(this, text) : messages_.Information(this, text);
}

void TF_wnlern::ChooseMethod() {
  choose_method_ = true;
}

void TF_wnlern::EndRun() {
  notice_ = Notice::ClockWentBack;
}

CardOnScreen TF_wnlern::Card() const {
  if (run_ == nullptr || run_->card().row == 0) return {};
  const bool first = run_->first_side_shown();
  return {.row = run_->card().row,
          .navigation = run_->card().navigation,
          .first_side = first,
          .sides_swapped = run_->question_shown() != first,
          .open = !run_->answered() && !run_->ended()};
}

std::string_view TF_wnlern::FirstSide() const {
  const CardOnScreen card = Card();
  return card.sides_swapped ? CardReader(file_).Answer(card.row) : CardReader(file_).Question(card.row);
}

std::string_view TF_wnlern::SecondSide() const {
  const CardOnScreen card = Card();
  return card.sides_swapped ? CardReader(file_).Question(card.row) : CardReader(file_).Answer(card.row);
}

void TF_wnlern::Known() {
  AnswerCard(true);
}

void TF_wnlern::NotKnown() {
  AnswerCard(false);
}

void TF_wnlern::TypingDone(bool known) {
  AnswerUnrefused(known, 0);
}

void TF_wnlern::ShowAnswer() {
  if (Card().row != 0 && Card().first_side) BtHandClick();
}

void TF_wnlern::AnswerCard(bool known, int days) {
  if (run_ == nullptr || in_command_ || run_->answered() || RefuseAnswer()) return;
  AnswerUnrefused(known, days);
}

// What waits in an answer window goes before the learner's own judgement.
bool TF_wnlern::RefuseAnswer() {
  if (run_->ended()) return false;
  const AnswerRefusal refusal = gate_.RefusalFor(Card().row == 0 || Card().navigation);
  if (refusal == AnswerRefusal::None) return false;
  messages_.Information(this, RefusalText(refusal));
  return true;
}

void TF_wnlern::AnswerUnrefused(bool known, int days) {
  const CardOnScreen card = Card();
  gate_.LockInput();
  Do([&](LearningRun& run) {
    if (!known) {
      run.NotKnown();
    } else {
      days > 0 ? run.KnownForDays(days) : run.Known();
    }
    if (card.open) answered_row_ = card.row;
    answered_known_ = known;
  });
}

void TF_wnlern::Do(const std::function<void(LearningRun&)>& command) {
  if (run_ == nullptr || in_command_) return;
  answered_row_ = 0;
  const int showings = run_->showings();
  {
    const QScopedValueRollback<bool> in_command(in_command_, true);
    notice_ = run_->ended() ? Notice::ClockWentBack : Notice::None;
    done_.clear();
    card_changed_ = false;
    run_->SetAnswerWindowVisible(gate_.AnswerWindowVisible());
    try {
      command(*run_);
      notice_ = NoticeAfter(notice_, *run_, file_);
      ShowRun();
    } catch (...) {
      messages_.Error(this, AnswerFailedText());
    }
  }
  gate_.SetResult(run_->ReturnsAfterAnswer() ? AnswerModeResult::Awaited : AnswerModeResult::None);
  if (answered_row_ != 0) Q_EMIT AnswerGiven(answered_row_, answered_known_);
  if (run_->showings() != showings) Q_EMIT CardShown();
  if (card_changed_) Q_EMIT SideShown();
  if (std::exchange(choose_method_, false)) QTimer::singleShot(0, this, &TF_wnlern::SpeedButtonLeitnerClick);
}

void TF_wnlern::BtHandClick() {
  Do([](LearningRun& run) { run.Turn(); });
}

void TF_wnlern::Weiss_ichExecute() {
  AnswerCard(true);
}

void TF_wnlern::Lerne_ichExecute() {
  AnswerCard(false);
}

void TF_wnlern::SpeedButtonTageClick(int days) {
  AnswerCard(true, days);
}

void TF_wnlern::SpeedButtonUndoClick() {
  Do([](LearningRun& run) { run.Undo(); });
}

void TF_wnlern::MAntwortZurueckClick() {
  Do([this](LearningRun& run) {
    run.TakeBackAnswer();
    done_ = AnswerTakenBackText();
  });
}

void TF_wnlern::MAntwortWiederClick() {
  Do([this](LearningRun& run) {
    run.RestoreAnswer();
    done_ = AnswerRestoredText();
  });
}

void TF_wnlern::SpeedButtonHomeClick() {
  Leave([](LearningRun& run, AnswerCode code) { run.GoHome(code); }, AnswerCode::NoRating);
}

void TF_wnlern::SpeedButtonBackClick() {
  Leave([](LearningRun& run, AnswerCode code) { run.GoBack(code); }, AnswerCode::NoRating);
}

void TF_wnlern::SpeedButtonVisClick() {
  Do([](LearningRun& run) { run.GoOverview(); });
}

void TF_wnlern::LinkClick(int card_id) {
  if (file_.RowOfId(card_id) == 0)
    return messages_.Information(this, u"\nZielkarte nicht gefunden.\nNummer nicht (mehr) gültig"_s);
  Leave([card_id](LearningRun& run, AnswerCode code) { run.FollowLink(card_id, code); }, AnswerCode::LinkNoRating);
}

void TF_wnlern::SpeedButtonInversClick(bool on) {
  Do([on](LearningRun& run) { run.SetInverse(on); });
}

void TF_wnlern::SpeedButtonTauschClick(bool on) {
  Do([on](LearningRun& run) { run.SetSwapped(on); });
}

void TF_wnlern::SpeedButtonSperreClick(bool on) {
  Do([on](LearningRun& run) {
    run.SetTimeLock(on);
    run.ShowNextIfNone();
  });
}

void TF_wnlern::MNeueKartenClick(bool on) {
  Do([on](LearningRun& run) {
    run.SetNoNewCards(on);
    run.ShowNextIfNone();
  });
  keys::kFewNewCards.Write(on, settings_.ini);
}

void TF_wnlern::VideoEnded(bool played) {
  ui_->PageControlAnz->CloseVideo();
  if (!played) messages_.Error(this, DrawingFailedText());
}

void TF_wnlern::MKopierenClick() {
  const QString selected = ui_->PageControlAnz->SelectedText();
  const QString text = selected.isEmpty() ? FromBytes(PlainText(run_->side_text())) : selected;
  QGuiApplication::clipboard()->setText(text);
}

void TF_wnlern::MSpeichernClick() {
  run_->KeepPositions();
  Q_EMIT SaveWanted();
}

void TF_wnlern::MAnsichtClick(bool below) {
  PlaceControlBar(*ui_, below);
  keys::kBarBelow.Write(below, settings_.ini);
}

void TF_wnlern::MAnzeigenClick(bool on) {
  keys::kShowFigures.Write(on, settings_.ini);
  FitControls(*ui_, width());
}

void TF_wnlern::ShowRun() {
  if (card_changed_ && run_->card().row != 0) ShowCard();
  ShowCaption();
  ShowFigures();
  ShowControls();
  ShowMethod();
  ShowNotice();
  ShowStatistics();
  FitControls(*ui_, width());
}

void TF_wnlern::ShowCard() {
  Q_EMIT MediaStopWanted();
  const bool question = run_->question_shown();
  ui_->PageControlAnz->ShowSide(run_->side_text(), looks_[question ? 0 : 1]);
}

void TF_wnlern::ShowCaption() {
  const ShownCard& card = run_->card();
  if (card.row == 0) {
    setWindowTitle(StageText(RunStage::None, 0));
    ui_->LabelSeite->clear();
    return;
  }
  const CardSide side = run_->first_side_shown() ? CardSide::Question : CardSide::Answer;
  const int position = card.row - kFirstCardRow + 1;
  setWindowTitle(CaptionText(side, run_->inverse(), card.navigation, position));
  ui_->LabelSeite->setText(SideText(side, run_->inverse(), card.navigation));
}

void TF_wnlern::ShowFigures() {
  const ShownCard& card = run_->card();
  const RunFigures& figures = run_->figures();
  ShowChoiceStatus();
  ui_->DisplayBeh->setText(card.newest_known ? DurationText(card.score) : u"0"_s);
  ui_->DisplayZuletzt->setText(card.last_answer > 0 ? DurationText(clock_.Now() - card.last_answer) : u"–"_s);
  ui_->DisplayKarteifach->setText(QString::number(figures.width));
  ui_->DisplayFachErweiterung->setText(figures.widened ? u">>"_s : QString());
  ui_->DisplayZufallswahl->setText(QString::number(figures.drawn_position));
  ui_->LabelPos->setText(QString::number(figures.drawn_position));
  ui_->DisplayAnzGewNull->setText(QString::number(figures.unknown_count));
  ui_->Edit1->setText(QString::number(figures.unknown_count));
  ui_->DisplayCheckAnzahl->setText(QString::number(figures.check_count));
  ui_->DisplayJetztGeuebt->setText(QString::number(figures.presented));
  ui_->LabelSteuerung->setText(done_.isEmpty() ? StageText(run_->stage(), run_->box()) : done_);
  TimerLernTimer();
}

void TF_wnlern::ShowChoiceStatus() {
  if (run_ == nullptr) return;
  const ChoiceStatus choice = run_->card().navigation ? ChoiceStatus::None : gate_.Status();
  ui_->DisplayStatus->setText(choice != ChoiceStatus::None
                                  ? ChoiceStatusText(choice)
                                  : StatusText(run_->card().status, run_->figures().check_count));
}

void TF_wnlern::ShowControls() {
  const bool card = run_->card().row != 0;
  for (QWidget* part : {static_cast<QWidget*>(ui_->PageControlAnz), ui_->Antwortzeile, ui_->Tageszeile}) {
    part->setVisible(card);
  }
  const bool open = card && !run_->ended();
  ui_->Antwortzeile->setEnabled(open);
  ui_->Tageszeile->setEnabled(open);
  for (AnswerButton* button : {ui_->BtHand, ui_->BtLerneIch, ui_->BtWeissIch}) {
    button->setToolTip(open ? button->accessibleDescription() : RunEndedHint());
  }
  for (QAction* action : {ui_->MDrehen, ui_->MKarteDrehen, ui_->Weiss_ich, ui_->Lerne_ich}) action->setEnabled(open);
  ui_->MenuWiedervorlage->setEnabled(open);
  ui_->SpeedButtonUndo->setEnabled(run_->CanUndo());
  ui_->SpeedButtonUndo->setToolTip(run_->CanUndo() ? ui_->SpeedButtonUndo->accessibleName() : NothingToUndoHint());
  ui_->MAntwortZurueck->setEnabled(run_->CanTakeBackAnswer());
  ui_->MAntwortWieder->setEnabled(run_->CanRestoreAnswer());
  ui_->SpeedButtonInversEin->setVisible(run_->inverse());
  ui_->SpeedButtonInversEin->setChecked(true);
  ui_->SpeedButtonInversAus->setVisible(!run_->inverse());
  ui_->MInvers->setChecked(run_->inverse());
  ui_->SpeedButtonTausch->setChecked(run_->swapped());
  ui_->MTausch->setChecked(run_->swapped());
  ui_->SpeedButtonSperre->setAccessibleName(TimeLockText(run_->time_lock()));
  ui_->SpeedButtonSperre->setIcon(Icon(run_->time_lock() ? "lock" : "unlock"));
  ui_->MZeitsperre->setChecked(run_->time_lock());
  ui_->EditZeitsperre->setText(TimeLockText(run_->time_lock()));
  FocusNextStep();
}

// The button for what comes next has the focus, so that the space bar does it too. A navigation card asks nothing: the
// next thing is to go on.
void TF_wnlern::FocusNextStep() {
  const bool asks = !run_->card().navigation;
  const bool turn = asks && run_->first_side_shown();
  ui_->BtHand->SetProminent(turn);
  ui_->BtLerneIch->SetProminent(asks && !turn);
  ui_->BtWeissIch->SetProminent(asks && !turn);
  if (card_changed_) (turn ? ui_->BtHand : ui_->BtWeissIch)->setFocus();
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

void TF_wnlern::ShowNotice() {
  const bool nothing_due = notice_ == Notice::NothingDue;
  const bool at_end = notice_ == Notice::EndWithoutCard;
  const auto next_due =
      nothing_due ? FiguresOf(file_, run_->parameters(), clock_.Now()).next_due_in : std::optional<int64_t>();
  ui_->LabelHinweis->setText(NoticeText(notice_, next_due));
  ui_->ButtonNeuerLauf->setVisible(notice_ == Notice::ClockWentBack || at_end);
  ui_->ButtonOhneSperre->setVisible((nothing_due || at_end) && run_->time_lock());
  ui_->Hinweis->setVisible(notice_ != Notice::None);
  ShowToday();
  // Without a card the notice stands in its place.
  const bool alone = run_->card().row == 0;
  ui_->PolsterOben->setVisible(alone);
  ui_->PolsterUnten->setVisible(alone);
  // Who answers in his rhythm must not close the window, or begin anew, by the Enter that was meant for the next card.
  for (QPushButton* button : {ui_->ButtonNeuerLauf, ui_->ButtonHinweisEnde}) button->setAutoDefault(!run_->ended());
  if (run_->ended()) {
    ui_->ButtonNeuerLauf->setFocus();
  } else if (alone) {
    ui_->ButtonHinweisEnde->setFocus();
  }
}

}  // namespace tessaro
