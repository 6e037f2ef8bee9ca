#include "outlook/wneval.h"

#include <utility>

#include "outlook/activity.h"
#include "outlook/evaluation_texts.h"
#include "outlook/prediction_check.h"
#include "settings/kept_place.h"
#include "ui_wneval.h"

namespace tessaro {
TF_wneval::TF_wneval(CardFile& file, ProgramSettings& settings, const Clock& clock)
    : OutlookWindow(file, settings, clock, place_suffix::kEvaluation), ui_(std::make_unique<Ui::TF_wneval>()) {
  ui_->setupUi(this);
  for (OutlookPage* page : {ui_->PageWissen, ui_->PageGetan, ui_->PageStimmen, ui_->PageKosten}) TiePage(*page);
  const auto renew = [this](View view) {
    shown_[view] = false;
    ShowCurrent();
  };
  connect(ui_->Views, &QTabWidget::currentChanged, this, &TF_wneval::ShowCurrent);
  connect(ui_->RbBehaltenszeit, &QRadioButton::toggled, this, [renew] { renew(Knows); });
  connect(ui_->CbZeitraum, &QComboBox::currentIndexChanged, this, [renew] { renew(Did); });
  connect(ui_->CbPruefzeitraum, &QComboBox::currentIndexChanged, this, [renew] { renew(Predicted); });
  connect(ui_->CbSortierung, &QComboBox::currentIndexChanged, this, [renew] { renew(Costs); });
}

TF_wneval::~TF_wneval() = default;

OutlookPage& TF_wneval::PageOf(View view) const {
  OutlookPage* const pages[] = {ui_->PageWissen, ui_->PageGetan, ui_->PageStimmen, ui_->PageKosten};
  return *pages[view];
}

OutlookPage& TF_wneval::CurrentPage() {
  return PageOf(static_cast<View>(ui_->Views->currentIndex()));
}

void TF_wneval::DeckRead() {
  shown_ = {};
  knowledge_.reset();
  ShowCurrent();
}

void TF_wneval::Show(View view, PageContent content) {
  PageOf(view).Show(std::move(content));
  shown_[view] = true;
}

void TF_wneval::ShowCurrent() {
  const auto view = static_cast<View>(ui_->Views->currentIndex());
  if (shown_[view]) return;
  PageOf(view).ShowWaiting();
  if (!deck_is_read()) return;
  switch (view) {
    case Knows:
      return ShowKnowledge();
    case Did:
      return ShowActivity();
    case Predicted:
      return ShowPredictions();
    case Costs:
      return ShowCosts();
  }
}

void TF_wneval::ShowKnowledge() {
  if (knowledge_) return Show(Knows, KnowledgePage(deck(), *knowledge_, ui_->RbBehaltenszeit->isChecked()));
  work_.Count<KnowledgeCount>(KnowledgeCount(file_, deck()), [this](KnowledgeCount& count) {
    knowledge_ = count.Take();
    ShowKnowledge();
  });
}

void TF_wneval::ShowActivity() {
  const auto period = static_cast<ActivityPeriod>(ui_->CbZeitraum->currentIndex());
  work_.Count<ActivityCount>(ActivityCount(file_, deck().now, days_, period),
                             [this](ActivityCount& count) { Show(Did, ActivityPage(deck(), count.Take())); });
}

void TF_wneval::ShowPredictions() {
  constexpr std::array<int64_t, 3> kDays = {30, 90, 365};
  const auto choice = static_cast<size_t>(ui_->CbPruefzeitraum->currentIndex());
  std::optional<int64_t> start;
  if (choice < kDays.size()) start = days_.StartOf(days_.DayOf(deck().now) - kDays[choice] + 1);
  work_.Count<PredictionCheck>(PredictionCheck(file_, deck().now, start),
                               [this](PredictionCheck& check) { Show(Predicted, PredictionPage(check.Take())); });
}

CardLines TF_wneval::CostLines() const {
  enum Order { ByTime, ByMisses, ByRecall };
  std::vector<int> rows;
  for (const CardCost& cost : deck().costs) rows.push_back(cost.row);
  CardLines lines = Lines(rows);
  const int order = ui_->CbSortierung->currentIndex();
  if (order == ByMisses) lines.Sort(CardLineKey::Misses, true);
  if (order == ByRecall) lines.Sort(CardLineKey::Recall, false);
  return lines;
}

void TF_wneval::ShowCosts() {
  Show(Costs, CostPage(file_, deck(), CostLines()));
}

}  // namespace tessaro
