#include "app/outlook_windows.h"

#include "outlook/summary_texts.h"
#include "outlook/wneval.h"
#include "outlook/wnprog.h"

namespace tessaro {

OutlookWindows::OutlookWindows(CardFile& file, ProgramSettings& settings, const Clock& clock)
    : file_(file),
      settings_(settings),
      clock_(clock),
      watch_(file.watchers(), static_cast<CardWatcher&>(*this)),
      summary_(clock, this) {
  summary_delay_.setSingleShot(true);
  connect(&summary_delay_, &QTimer::timeout, this, &OutlookWindows::Summarise);
}

OutlookWindows::~OutlookWindows() = default;

void OutlookWindows::OpenEvaluation() {
  if (!file_.IsOpen()) return;
  if (evaluation_ == nullptr) {
    evaluation_ = std::make_unique<TF_wneval>(file_, settings_, clock_);
    // The window is still busy with being closed.
    connect(evaluation_.get(), &OutlookWindow::Closed, this, [this] { evaluation_.release()->deleteLater(); });
  }
  Bring(*evaluation_);
}

void OutlookWindows::OpenForecast() {
  if (!file_.IsOpen()) return;
  if (forecast_ == nullptr) {
    forecast_ = std::make_unique<TF_wnprog>(file_, settings_, clock_);
    connect(forecast_.get(), &OutlookWindow::Closed, this, [this] { forecast_.release()->deleteLater(); });
    connect(forecast_.get(), &TF_wnprog::LearnWanted, this, &OutlookWindows::LearnWanted);
  }
  Bring(*forecast_);
}

void OutlookWindows::Bring(OutlookWindow& window) {
  window.SetEditor(edit_);
  window.show();
  window.raise();
  window.activateWindow();
  window.Renew();
}

void OutlookWindows::BeginSummary() {
  constexpr int kBeginAfter = 400;  // milliseconds: the start page is painted first
  summary_.Stop();
  if (file_.paths().cards != summarised_) Q_EMIT Summarised({});
  file_.IsOpen() ? summary_delay_.start(kBeginAfter) : Q_EMIT Summarised({});
}

void OutlookWindows::Summarise() {
  if (!file_.IsOpen()) return;
  summary_.Count<OutlookReading>(OutlookReading(file_, clock_.Now(), days_), [this](OutlookReading& reading) {
    deck_ = reading.Take();
    weights_ = deck_.weights;
    summary_.Count<KnowledgeCount>(KnowledgeCount(file_, deck_), [this](KnowledgeCount& count) {
      summarised_ = file_.paths().cards;
      Q_EMIT Summarised(KnownLine(deck_, count.Take()));
      deck_ = {};
    });
  });
}

OutlookLines OutlookWindows::Lines() const {
  return {.today = [this] { return TodayLine(file_, clock_.Now(), days_); },
          .card = [this](int row) { return RecallLine(file_, row, weights_, clock_.Now()); }};
}

bool OutlookWindows::Close() {
  summary_delay_.stop();
  summary_.Stop();
  if (evaluation_ != nullptr && !evaluation_->close()) return false;
  return forecast_ == nullptr || forecast_->close();
}

void OutlookWindows::RowsShifted(const RowShift& /*shift*/) {
  if (summary_.Running()) BeginSummary();
}

}  // namespace tessaro
