#include "outlook/prediction_check.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "outlook/counted_cards.h"

namespace tessaro {
namespace {

constexpr double kCertain = 1.959963984540054;  // standard deviations that hold 95 %

double LossOf(double recall, bool known) {
  constexpr double kLeast = 1e-12;
  return -std::log(std::max(known ? recall : 1 - recall, kLeast));
}

// Kept off 0 and 1 by half an answer, so that it can be compared by its log loss.
std::optional<double> UsualShare(int64_t known, int64_t answers) {
  if (answers == 0) return std::nullopt;
  const auto all = static_cast<double>(answers);
  return std::clamp(static_cast<double>(known) / all, 0.5 / all, 1 - 0.5 / all);
}

}  // namespace

Share WilsonInterval(int64_t known, int64_t answers) {
  const auto all = static_cast<double>(answers);
  const double share = static_cast<double>(known) / all;
  const double square = kCertain * kCertain;
  const double middle = share + square / (2 * all);
  const double reach = kCertain * std::sqrt(share * (1 - share) / all + square / (4 * all * all));
  return {(middle - reach) / (1 + square / all), (middle + reach) / (1 + square / all)};
}

PredictionCheck::PredictionCheck(const CardFile& file, int64_t now, std::optional<int64_t> start)
    : file_(file), now_(now), start_(start), rows_(file.cards().RowCount()) {}

bool PredictionCheck::Step(int count) {
  bool more = false;
  switch (stage_) {
    case Stage::Gathering:
      more = Gather(count);
      break;
    case Stage::Fitting:
      more = Fit(count);
      break;
    case Stage::Predicting:
      more = Predict(count);
      break;
    case Stage::Done:
      return false;
  }
  if (!more) stage_ = static_cast<Stage>(static_cast<int>(stage_) + 1);
  return stage_ != Stage::Done;
}

bool PredictionCheck::Gather(int count) {
  for (; count > 0 && next_row_ < rows_; --count, ++next_row_) {
    const std::optional<AnswerSeries> series = ReadCounted(file_, next_row_, now_);
    if (!series) continue;
    // A row tells about those of the other half.
    const size_t party = start_ ? 0 : 1 - PartyOf(next_row_);
    start_ ? parties_[party].samples.AddCard(*series, *start_) : parties_[party].samples.AddCard(*series);
  }
  if (next_row_ < rows_) return true;
  for (Party& party : parties_) {
    party.usual = UsualShare(party.samples.known(), party.samples.answers());
    party.fit = std::make_unique<RecallFit>(party.samples.TakeSamples());
  }
  next_row_ = kFirstCardRow;
  return false;
}

bool PredictionCheck::Fit(int count) {
  Party& party = parties_[fitted_];
  if (party.fit->Step(static_cast<size_t>(count))) return true;
  party.weights = party.fit->weights();
  party.fit.reset();
  return ++fitted_ < parties_.size();
}

bool PredictionCheck::Predict(int count) {
  for (; count > 0 && next_row_ < rows_; --count) PredictCard(next_row_++);
  return next_row_ < rows_;
}

void PredictionCheck::PredictCard(int row) {
  const std::optional<AnswerSeries> series = ReadCounted(file_, row, now_);
  if (!series) return;
  MemoryTrace trace;
  for (const StoredAnswer& answer : *series) {
    const bool asked = trace.answers > 0 && answer.time <= now_ && (!start_ || answer.time >= *start_);
    if (asked) Count(row, RecallAt(trace, WeightsFor(row), answer.time), answer.known);
    FollowAnswer(trace, answer);
  }
}

void PredictionCheck::Count(int row, double recall, bool known) {
  PredictionClass& found = report_.classes[RecallClassOf(recall)];
  ++found.answers;
  found.known += known ? 1 : 0;
  found.predicted += recall;
  if (found.rows.empty() || found.rows.back() != row) found.rows.push_back(row);
  ++report_.answers;
  report_.known += known ? 1 : 0;
  report_.predicted += recall;
  loss_ += LossOf(recall, known);
  const std::optional<double>& usual = parties_[PartyOf(row)].usual;
  usual_loss_ += usual ? LossOf(*usual, known) : std::nan("");
}

PredictionReport PredictionCheck::Take() {
  const auto all = static_cast<double>(std::max<int64_t>(report_.answers, 1));
  for (const PredictionClass& found : report_.classes) {
    report_.mean_error += std::abs(found.predicted - static_cast<double>(found.known)) / all;
  }
  report_.log_loss = loss_ / all;
  if (report_.answers > 0 && !std::isnan(usual_loss_)) report_.usual_loss = usual_loss_ / all;
  return std::move(report_);
}

}  // namespace tessaro
