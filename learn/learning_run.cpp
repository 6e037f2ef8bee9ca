#include "learn/learning_run.h"

#include <utility>

#include "learn/learning_run_state.h"
#include "settings/keys.h"

namespace tessaro {

LearningRun::LearningRun(CardFile& file, const IniFile& program_settings, const Clock& clock, Random& random,
                         LearningView& view)
    : state_(std::make_unique<State>(file, program_settings, clock, random, view)) {}

LearningRun::~LearningRun() = default;

void LearningRun::Start() {
  state_->log.RecountUnknown();
  ShowNext();
}

void LearningRun::KeepPositions() {
  keys::kCheckPosition.Write(state_->checking.position(), state_->file.settings());
  state_->row_order.Keep(state_->file.settings());
}

void LearningRun::Known() {
  state_->Answer(AnswerCode::Known);
}

void LearningRun::NotKnown() {
  state_->Answer(AnswerCode::NotKnown);
}

void LearningRun::KnownForDays(int days) {
  state_->log.SetMinRetention(days * kSecondsPerDay);
  Known();
  state_->log.SetMinRetention(0);
}

void LearningRun::Undo() {
  if (ended()) return;
  const int row = state_->log.UndoRow();
  if (row == 0) return;
  state_->BeginStep(row);
  state_->log.Undo();
  state_->Step(AnswerCode::ShowAgain, Destination::Undone, row);
}

bool LearningRun::CanUndo() const {
  return !ended() && state_->log.CanUndo();
}

void LearningRun::TakeBackAnswer() {
  if (CanTakeBackAnswer()) state_->TakeBack();
}

bool LearningRun::CanTakeBackAnswer() const {
  return !ended() && !state_->steps.empty();
}

void LearningRun::RestoreAnswer() {
  if (CanRestoreAnswer()) state_->Restore();
}

bool LearningRun::CanRestoreAnswer() const {
  return !ended() && !state_->steps_taken_back.empty();
}

void LearningRun::GoHome(AnswerCode code) {
  state_->Leave(code, Destination::Home);
}

void LearningRun::GoBack(AnswerCode code) {
  state_->Leave(code, Destination::Back);
}

void LearningRun::GoOverview(AnswerCode code) {
  state_->Leave(code, Destination::Overview);
}

void LearningRun::FollowLink(int64_t id, AnswerCode code) {
  if (ended()) return;
  state_->BeginStep(code);
  state_->back.Push(LeadingNumber(state_->run.cards.Id(card().row)));
  state_->Step(code, Destination::Link, state_->file.RowOfId(id));
}

bool LearningRun::CanGoBack() const {
  return !state_->back.Empty();
}

bool LearningRun::AsksBeforeLeaving() const {
  return card().by_link && !card().navigation && !answered() && !ended();
}

void LearningRun::SetAnswerWindowVisible(bool visible) {
  state_->answer_window_visible = visible;
}

bool LearningRun::ReturnsAfterAnswer() const {
  return state_->return_after_answer;
}

void LearningRun::Turn() {
  state_->first_side = !state_->first_side;
  state_->view.Refresh();
}

bool LearningRun::first_side_shown() const {
  return state_->first_side;
}

bool LearningRun::question_shown() const {
  const bool question_first = state_->inverse == state_->swapped;
  return state_->first_side == question_first;
}

std::string_view LearningRun::side_text() const {
  const CardReader& cards = state_->run.cards;
  return question_shown() ? cards.Question(card().row) : cards.Answer(card().row);
}

void LearningRun::ShowNext() {
  if (!ended()) state_->Step(AnswerCode::NoRating, Destination::Method);
}

void LearningRun::ShowNextIfNone() {
  if (card().row == 0) ShowNext();
}

void LearningRun::SetMethod(Method method) {
  if (method == Method::Leitner && !state_->leitner.has_box()) return;
  state_->leitner_on = method == Method::Leitner;
  if (method != Method::Leitner) state_->run.row_order = method == Method::RowOrder;
}

Method LearningRun::method() const {
  if (state_->leitner_on) return Method::Leitner;
  return state_->run.row_order ? Method::RowOrder : Method::Standard;
}

void LearningRun::StartBox(LeitnerBox box) {
  state_->SetAside(state_->leitner.Start(std::move(box)));
  SetMethod(Method::Leitner);
}

int LearningRun::box() const {
  return state_->leitner.box();
}

void LearningRun::SetBoxLock(bool on) {
  state_->box_lock = on;
}

bool LearningRun::box_lock() const {
  return state_->box_lock;
}

void LearningRun::SetNoNewCards(bool on) {
  state_->run.no_new_cards = on;
}

bool LearningRun::no_new_cards() const {
  return state_->run.no_new_cards;
}

void LearningRun::SetTimeLock(bool on) {
  state_->run.time_lock = on;
  if (on) return;
  state_->run.width = state_->parameters.max_width;
  state_->run.figures.width = state_->run.width;
}

bool LearningRun::time_lock() const {
  return state_->run.time_lock;
}

void LearningRun::SetInverse(bool on) {
  state_->inverse = on;
  state_->view.Refresh();
}

bool LearningRun::inverse() const {
  return state_->inverse;
}

void LearningRun::SetSwapped(bool on) {
  state_->swapped = on;
  state_->view.Refresh();
}

bool LearningRun::swapped() const {
  return state_->swapped;
}

void LearningRun::RestartRowOrder() {
  state_->row_order.Restart(state_->file.settings());
}

void LearningRun::CardsChanged() {
  state_->CardsChanged();
}

const LearningParameters& LearningRun::parameters() const {
  return state_->parameters;
}

const AnswerStatistics* LearningRun::statistics() const {
  const auto& statistics = state_->log.statistics();
  return statistics ? &*statistics : nullptr;
}

const ShownCard& LearningRun::card() const {
  return state_->card;
}

const RunFigures& LearningRun::figures() const {
  return state_->run.figures;
}

RunStage LearningRun::stage() const {
  return state_->run.stage;
}

int LearningRun::showings() const {
  return state_->showings;
}

bool LearningRun::answered() const {
  return state_->answered;
}

bool LearningRun::ended() const {
  return state_->ended;
}

}  // namespace tessaro
