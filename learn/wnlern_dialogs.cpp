// The windows that the learning window opens, and what it does with what they bring.

#include <QScreen>
#include <algorithm>
#include <utility>

#include "learn/dlausw.h"
#include "learn/dldata.h"
#include "learn/dllernkeys.h"
#include "learn/frage.h"
#include "learn/lern_texts.h"
#include "learn/statistics_texts.h"
#include "learn/wnlern.h"
#include "settings/kept_place.h"
#include "settings/keys.h"
#include "ui_wnlern.h"
#include "widgets/text.h"
#include "widgets/window_place.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

// To the right of the learning window where the screen has room, else at the right edge of the screen.
void PlaceBeside(QWidget& window, const QWidget& other) {
  const QRect screen = other.screen()->availableGeometry();
  const QRect beside = other.frameGeometry();
  window.move(std::max(screen.left(), std::min(beside.right() + 1, screen.right() - window.width())), beside.top());
}

}  // namespace

void TF_wnlern::LearnBy(MethodChoice choice) {
  if (run_ == nullptr) {
    first_choice_ = std::move(choice);
    return;
  }
  if (in_command_) return;
  if (run_->ended()) {
    MakeRun();
    first_choice_ = std::move(choice);
    return StartRun();
  }
  Do([&](LearningRun& run) {
    TakeChoice(run, std::move(choice));
    return run.ShowNext();
  });
}

void TF_wnlern::TakeChoice(LearningRun& run, MethodChoice choice) {
  if (choice.box_lock) run.Set(&RunOptions::box_lock, *choice.box_lock);
  if (choice.method == Method::Leitner) {
    run.StartBox(std::move(choice.box));
    return;
  }
  automatic_ = choice.method;
  run.SetMethod(automatic_);
}

void TF_wnlern::MethodClick(Method method) {
  if (method != Method::Leitner) automatic_ = method;
  Do([method](LearningRun& run) {
    run.SetMethod(method);
    return run.ShowNextIfNone();
  });
}

void TF_wnlern::SpeedButtonLeitnerClick() {
  if (run_ == nullptr || in_command_) return;
  const MethodDialogState shown = {.automatic = automatic_, .boxes = true, .box_lock = run_->options().box_lock};
  TF_dlausw dialog(file_, settings_, clock_, messages_, shown, this);
  if (dialog.exec() == QDialog::Accepted) {
    LearnBy(dialog.TakeChoice());
  } else if (run_->card().row == 0) {
    Do(&LearningRun::ShowNextIfNone);
  } else {
    ShowRun();
  }
}

void TF_wnlern::MReiheAnfangClick() {
  Do([](LearningRun& run) {
    run.RestartRowOrder();
    return StepResult();
  });
  if (notice_ != Notice::None) return;
  notice_ = Notice::RowOrderRestarted;
  ShowRun();
}

void TF_wnlern::MShortCutsDefClick() {
  TF_dllernkeys(settings_.ini, this).exec();
  ReadShortcuts();
}

void TF_wnlern::Leave(const std::function<StepResult(LearningRun&, Rating)>& go) {
  Do([&](LearningRun& run) { return go(run, run.AsksBeforeLeaving() ? AskWhetherKnown() : Rating::None); });
}

Rating TF_wnlern::AskWhetherKnown() {
  TF_frage question(settings_.ini, this);
  connect(&question, &TF_frage::TurnWanted, this, [this] {
    run_->Turn();
    ShowRun(true);
  });
  question.exec();
  return question.rating();
}

void TF_wnlern::TbCalcClick(bool on) {
  keys::kShowStatistics.Write(on, settings_.ini);
  SwitchStatistics(on);
}

void TF_wnlern::SwitchStatistics(bool on) {
  if (statistics_ != nullptr) {
    KeepWindowPlace(*statistics_, settings_.ini, place_suffix::kStatistics);
    statistics_->hide();
    // It may be its own closing that leads here.
    statistics_.release()->deleteLater();
  }
  if (on) {
    statistics_ = std::make_unique<TF_dldata>(this);
    connect(statistics_.get(), &TF_dldata::Closed, this, [this] { TbCalcClick(false); });
    PlaceBeside(*statistics_, *this);
    RestoreWindowPlace(*statistics_, settings_.ini, place_suffix::kStatistics);
    statistics_->show();
  }
  ShowStatistics();
}

void TF_wnlern::ShowStatistics() {
  ui_->TbCalc->setChecked(statistics_ != nullptr);
  ui_->MEinzelstatistik->setChecked(statistics_ != nullptr);
  if (statistics_ == nullptr) return;
  if (run_ == nullptr || !run_->moment().log.statistics) return statistics_->Clear();
  const AnswerStatistics& figures = *run_->moment().log.statistics;
  const CardReader cards(file_);
  const QString front = FromBytes(SideTitle(cards.Question(figures.row)), looks_[0].page);
  const QString back = FromBytes(SideTitle(cards.Answer(figures.row)), looks_[1].page);
  statistics_->Show(figures, front + u" | "_s + back);
  statistics_->ShowRecall(outlook_.card ? outlook_.card(figures.row) : QString());
}

}  // namespace tessaro
