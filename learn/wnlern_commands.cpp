// The commands of the learning window and what it shows after each of them.

#include <QClipboard>
#include <QGuiApplication>
#include <QScopedValueRollback>
#include <algorithm>
#include <utility>

#include "cards/card_reader.h"
#include "hypertext/plain_text.h"
#include "learn/lern_texts.h"
#include "learn/wnlern.h"
#include "learn/wnlern_look.h"
#include "settings/keys.h"
#include "ui_wnlern.h"
#include "widgets/text.h"

using namespace Qt::StringLiterals;

namespace tessaro {

CardOnScreen TF_wnlern::Card() const {
  if (run_ == nullptr || run_->card().row == 0) return {};
  const bool first = run_->moment().first_side;
  const bool swapped = run_->question_shown() != first;
  return {.row = run_->card().row,
          .navigation = run_->card().navigation,
          .first_side = first,
          .sides_swapped = swapped,
          .open = !run_->moment().answered && !run_->ended(),
          .first_page = looks_[swapped ? 1 : 0].page,
          .second_page = looks_[swapped ? 0 : 1].page};
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
  if (run_ == nullptr || in_command_ || run_->moment().answered || RefuseAnswer()) return;
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
  gate_.LockInput();
  Do([&](LearningRun& run) { return known ? run.Known(days) : run.NotKnown(); });
}

void TF_wnlern::Do(const Command& command, const QString& done) {
  if (run_ == nullptr || in_command_) return;
  const int showings = run_->showings();
  StepResult result;
  {
    const QScopedValueRollback<bool> in_command(in_command_, true);
    run_->SetAnswerWindowVisible(gate_.AnswerWindowVisible());
    try {
      result = command(*run_);
      done_ = done;
      said_.clear();
      if (result.answer)
        said_ = AnswerText(*result.answer, CardReader(file_).Question(result.answer->row), looks_[0].page);
      notice_ = NoticeAfter(result, *run_, file_);
      ShowRun(result.drawn_anew);
    } catch (...) {
      result.Tell(RunMessage::LoggingFailed);
    }
    Tell(result);
  }
  gate_.SetResult(run_->moment().return_after_answer ? AnswerModeResult::Awaited : AnswerModeResult::None);
  if (result.answer) Q_EMIT AnswerGiven(result.answer->row, result.answer->rating == Rating::Known);
  if (run_->showings() != showings) Q_EMIT CardShown();
  if (result.drawn_anew) Q_EMIT SideShown();
  if (result.box_done) QTimer::singleShot(0, this, &TF_wnlern::SpeedButtonLeitnerClick);
}

void TF_wnlern::RowsShifted(const RowShift& /*shift*/) {
  if (!std::exchange(edited_, true)) QTimer::singleShot(0, this, &TF_wnlern::ShowEdited);
}

void TF_wnlern::CardsChanged(std::span<const int> rows, std::span<const int> /*columns*/) {
  if (run_ != nullptr && std::ranges::binary_search(rows, run_->card().row)) card_edited_ = true;
  if (!std::exchange(edited_, true)) QTimer::singleShot(0, this, &TF_wnlern::ShowEdited);
}

// Once, however much was changed in one go. A card that is gone gives way to the next one.
void TF_wnlern::ShowEdited() {
  edited_ = false;
  const bool card_edited = std::exchange(card_edited_, false);
  Do([card_edited](LearningRun& run) {
    StepResult result = run.ShowNextIfNone();
    result.drawn_anew = result.drawn_anew || card_edited;
    return result;
  });
}

// The card that the step led to is painted before a box stands over it.
void TF_wnlern::Tell(const StepResult& result) {
  if (result.events.empty()) return;
  ui_->Mitte->repaint();
  for (const RunEvent& event : result.events) {
    const QString text = MessageText(event.message, event.number);
    IsFault(event.message) ? messages_.Error(this, text) : messages_.Information(this, text);
  }
}

void TF_wnlern::BtHandClick() {
  Do(&LearningRun::Turn);
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
  Do(&LearningRun::Undo);
}

void TF_wnlern::MAntwortZurueckClick() {
  Do(&LearningRun::TakeBackAnswer, AnswerTakenBackText());
}

void TF_wnlern::MAntwortWiederClick() {
  Do(&LearningRun::RestoreAnswer, AnswerRestoredText());
}

void TF_wnlern::SpeedButtonHomeClick() {
  Leave([](LearningRun& run, Rating rating) { return run.GoHome(rating); });
}

void TF_wnlern::SpeedButtonBackClick() {
  Leave([](LearningRun& run, Rating rating) { return run.GoBack(rating); });
}

void TF_wnlern::SpeedButtonVisClick() {
  Do(&LearningRun::GoOverview);
}

void TF_wnlern::LinkClick(int card_id) {
  if (file_.RowOfId(card_id) == 0)
    return messages_.Information(this, u"\nZielkarte nicht gefunden.\nNummer nicht (mehr) gültig"_s);
  Leave([card_id](LearningRun& run, Rating rating) { return run.FollowLink(card_id, rating); });
}

void TF_wnlern::SpeedButtonInversClick(bool on) {
  Do([on](LearningRun& run) { return run.Set(&RunOptions::inverse, on); });
}

void TF_wnlern::SpeedButtonTauschClick(bool on) {
  Do([on](LearningRun& run) { return run.Set(&RunOptions::swapped, on); });
}

void TF_wnlern::SpeedButtonSperreClick(bool on) {
  Do([on](LearningRun& run) {
    run.Set(&RunOptions::time_lock, on);
    return run.ShowNextIfNone();
  });
}

void TF_wnlern::MNeueKartenClick(bool on) {
  Do([on](LearningRun& run) {
    run.Set(&RunOptions::no_new_cards, on);
    return run.ShowNextIfNone();
  });
  keys::kFewNewCards.Write(on, settings_.ini);
}

void TF_wnlern::VideoEnded(bool played) {
  ui_->PageControlAnz->CloseVideo();
  if (!played) messages_.Error(this, DrawingFailedText());
}

void TF_wnlern::MKopierenClick() {
  const QString selected = ui_->PageControlAnz->SelectedText();
  const QString text = selected.isEmpty() ? FromBytes(PlainText(run_->side_text()), LookOnScreen().page) : selected;
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

void TF_wnlern::MFrageClick(bool on) {
  keys::kRepeatQuestion.Write(on, settings_.ini);
  if (run_ != nullptr) ShowRun();
}

void TF_wnlern::MVollbildClick(bool on) {
  setWindowState(windowState().setFlag(Qt::WindowFullScreen, on));
}

void TF_wnlern::MAnzeigenClick(bool on) {
  keys::kShowFigures.Write(on, settings_.ini);
  FitControls(*ui_, width());
}

}  // namespace tessaro
