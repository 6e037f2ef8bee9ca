#include "outlook/wnprog.h"

#include <QSignalBlocker>

#include "outlook/due_count.h"
#include "outlook/forecast_texts.h"
#include "outlook/number_texts.h"
#include "settings/kept_place.h"
#include "settings/keys.h"
#include "ui_wnprog.h"
#include "widgets/theme.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

constexpr int kAnswersAtOnce = 20;
constexpr int kDefaultDays = 90;
constexpr int kMostDays = 730;
const QDate kFirstDay(1970, 1, 1);

}  // namespace

TF_wnprog::TF_wnprog(CardFile& file, ProgramSettings& settings, const Clock& clock)
    : OutlookWindow(file, settings, clock, place_suffix::kForecast), ui_(std::make_unique<Ui::TF_wnprog>()) {
  ui_->setupUi(this);
  for (OutlookPage* page : {ui_->PageFaellig, ui_->PagePruefung}) TiePage(*page);
  ui_->CbHorizont->setCurrentIndex(1);
  ui_->PanelRueckstand->hide();
  ui_->PanelPause->hide();
  ui_->LabelStatus->hide();
  ReadWishes();
  connect(ui_->Views, &QTabWidget::currentChanged, this, &TF_wnprog::ShowCurrent);
  connect(ui_->CbHorizont, &QComboBox::currentIndexChanged, this, [this] {
    due_shown_ = false;
    ShowCurrent();
  });
  connect(ui_->SpinRueckstand, &QSpinBox::valueChanged, this, &TF_wnprog::SetMinutes);
  connect(ui_->SpinMinuten, &QSpinBox::valueChanged, this, &TF_wnprog::SetMinutes);
  const auto replan = [this] {
    plan_shown_ = false;
    ShowCurrent();
  };
  connect(ui_->SpinNeu, &QSpinBox::valueChanged, this, replan);
  connect(ui_->DatePruefung, &QDateEdit::dateChanged, this, replan);
  connect(ui_->ButtonLernen, &QPushButton::clicked, this, &TF_wnprog::LearnWanted);
}

TF_wnprog::~TF_wnprog() = default;

void TF_wnprog::ReadWishes() {
  const IniFile& settings = file_.settings();
  const QDate today = kFirstDay.addDays(days_.DayOf(clock_.Now()));
  const QDate kept = QDate::fromString(QString::fromStdString(keys::kExamDay.Read(settings)), Qt::ISODate);
  ui_->DatePruefung->setDate(kept.isValid() && kept >= today ? kept : today.addDays(kDefaultDays));
  ui_->SpinNeu->setValue(static_cast<int>(keys::kPlanNewCards.Read(settings)));
  const int minutes = static_cast<int>(keys::kPlanMinutes.Read(settings));
  ui_->SpinMinuten->setValue(minutes);
  ui_->SpinRueckstand->setValue(minutes);
}

void TF_wnprog::KeepWishes() {
  if (!file_.IsOpen()) return;
  IniFile& settings = file_.settings();
  (void)keys::kExamDay.Write(ui_->DatePruefung->date().toString(Qt::ISODate).toStdString(), settings);
  keys::kPlanMinutes.Write(ui_->SpinMinuten->value(), settings);
  keys::kPlanNewCards.Write(ui_->SpinNeu->value(), settings);
  (void)file_.SaveSettings();
}

void TF_wnprog::closeEvent(QCloseEvent* event) {
  KeepWishes();
  OutlookWindow::closeEvent(event);
}

void TF_wnprog::SetMinutes(int minutes) {
  const QSignalBlocker no_echo(ui_->SpinMinuten);
  const QSignalBlocker no_echo_either(ui_->SpinRueckstand);
  ui_->SpinMinuten->setValue(minutes);
  ui_->SpinRueckstand->setValue(minutes);
  due_shown_ = false;
  plan_shown_ = false;
  ShowCurrent();
}

OutlookPage& TF_wnprog::CurrentPage() {
  return ui_->Views->currentIndex() == 0 ? *ui_->PageFaellig : *ui_->PagePruefung;
}

void TF_wnprog::DeckRead() {
  due_shown_ = false;
  plan_shown_ = false;
  ShowCurrent();
}

// What is under way for a page when another one comes to the front is begun anew when it comes back.
void TF_wnprog::ShowCurrent() {
  const bool due = ui_->Views->currentIndex() == 0;
  if (due ? due_shown_ : plan_shown_) return;
  CurrentPage().ShowWaiting();
  if (!deck_is_read()) return;
  due ? ShowDue() : ShowPlan();
}

void TF_wnprog::ShowDue() {
  constexpr int64_t kHorizons[] = {7, 30, 90, 365};
  const int64_t horizon = kHorizons[ui_->CbHorizont->currentIndex()];
  const QString pause = PauseText(deck());
  ui_->LabelPause->setText(pause);
  ui_->PanelPause->setVisible(!pause.isEmpty());
  work_.Count<DueCount>(DueCount(file_, deck(), Parameters(), days_, horizon), [this](DueCount& count) {
    const std::vector<DueSpan> spans = count.Take();
    ui_->PageFaellig->Show(DuePage(deck(), spans, count.next_due(), days_));
    ShowBacklog(spans[0].minutes);
  });
}

void TF_wnprog::ShowBacklog(double overdue_minutes) {
  const int minutes = ui_->SpinRueckstand->value();
  due_shown_ = overdue_minutes <= minutes;
  ui_->PanelRueckstand->setVisible(!due_shown_);
  if (due_shown_) return;
  ui_->LabelRueckstand->setText(u"wird berechnet …"_s);
  work_.Count<Plan>(
      Plan::CatchUp(file_, deck(), settings_.ini, days_, minutes),
      [this](Plan& plan) {
        ui_->LabelRueckstand->setText(CatchUpText(plan.Take(), days_.DayOf(deck().now)));
        due_shown_ = true;
      },
      kAnswersAtOnce);
}

int64_t TF_wnprog::ExamDay() const {
  return kFirstDay.daysTo(ui_->DatePruefung->date());
}

void TF_wnprog::ShowPlan() {
  const int64_t ahead = ExamDay() - days_.DayOf(deck().now);
  SetAccent(*ui_->LabelStatus, Accent::Warning);
  ui_->LabelStatus->setText(ahead < 0           ? u"Der Tag der Prüfung liegt in der Vergangenheit."_s
                            : ahead > kMostDays ? u"Der Tag der Prüfung liegt mehr als 730 Tage in der Zukunft."_s
                                                : QString());
  ui_->LabelStatus->setVisible(!ui_->LabelStatus->text().isEmpty());
  if (ahead < 0 || ahead > kMostDays) {
    work_.Stop();
    return ui_->PagePruefung->ShowLast();
  }
  const PlanWish wish = {ExamDay(), static_cast<double>(ui_->SpinMinuten->value()), ui_->SpinNeu->value()};
  work_.Count<Plan>(
      Plan(file_, deck(), settings_.ini, days_, wish),
      [this](Plan& plan) {
        ui_->PagePruefung->Show(PlanPage(deck(), plan.Take(), days_.DayOf(deck().now)));
        plan_shown_ = true;
      },
      kAnswersAtOnce);
}

}  // namespace tessaro
