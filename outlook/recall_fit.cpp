#include "outlook/recall_fit.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tessaro {
namespace {

constexpr double kPull = 400;  // the ridge: half of it times the squared distance is taken off the likelihood
constexpr double kSmallStep = 1e-6;
constexpr int kMostSweeps = 12;
constexpr size_t kPart = 64;  // samples that are looked at together

// Solves curvature x = gradient, a positive definite system given by its lower triangle, by Cholesky's method.
RecallTerms SolveSystem(std::array<RecallTerms, kRecallTerms> rows, RecallTerms x) {
  for (size_t i = 0; i < kRecallTerms; ++i) {
    for (size_t j = 0; j <= i; ++j) {
      double sum = rows[i][j];
      for (size_t k = 0; k < j; ++k) sum -= rows[i][k] * rows[j][k];
      rows[i][j] = i == j ? std::sqrt(sum) : sum / rows[j][j];
    }
  }
  for (size_t i = 0; i < kRecallTerms; ++i) {
    for (size_t k = 0; k < i; ++k) x[i] -= rows[i][k] * x[k];
    x[i] /= rows[i][i];
  }
  for (size_t i = kRecallTerms; i-- > 0;) {
    for (size_t k = i + 1; k < kRecallTerms; ++k) x[i] -= rows[k][i] * x[k];
    x[i] /= rows[i][i];
  }
  return x;
}

// One row of the lower triangle: its sums stay in registers while the samples go by.
template <size_t kRow>
void AddRow(std::span<const FitSample> part, const std::array<double, kPart>& errors,
            const std::array<double, kPart>& spreads, double& gradient, RecallTerms& curvature) {
  std::array<double, kRow + 1> sums;
  std::copy_n(curvature.begin(), sums.size(), sums.begin());
  double slope = gradient;
  for (size_t k = 0; k < part.size(); ++k) {
    const RecallTerms& terms = part[k].terms;
    slope += errors[k] * terms[kRow];
    const double weighted = spreads[k] * terms[kRow];
    for (size_t j = 0; j <= kRow; ++j) sums[j] += weighted * terms[j];
  }
  gradient = slope;
  std::copy(sums.begin(), sums.end(), curvature.begin());
}

}  // namespace

void FitSamples::AddCard(const AnswerSeries& series, int64_t before) {
  if (number_ == 0) samples_.reserve(kMostSamples + kHistoryLength);
  const uint32_t number = number_++;
  const bool taken = number % every_ == 0;
  const size_t first = samples_.size();
  MemoryTrace trace;
  for (const StoredAnswer& answer : series) {
    if (answer.time >= before) break;
    if (&answer != series.begin()) {
      ++answers_;
      known_ += answer.known ? 1 : 0;
      if (taken) samples_.push_back({TermsAt(trace, answer.time), answer.known});
    }
    if (taken) FollowAnswer(trace, answer);
  }
  if (samples_.size() == first) return;
  cards_.push_back({number, static_cast<uint32_t>(samples_.size() - first)});
  while (samples_.size() > kMostSamples) Thin();
}

// Leaves every second card out.
void FitSamples::Thin() {
  every_ *= 2;
  size_t from = 0;
  size_t to = 0;
  std::erase_if(cards_, [&](const Card& card) {
    const bool stays = card.number % every_ == 0;
    for (uint32_t i = 0; stays && i < card.samples; ++i) samples_[to++] = samples_[from + i];
    from += card.samples;
    return !stays;
  });
  samples_.resize(to);
}

RecallFit::RecallFit(std::vector<FitSample> samples) : samples_(std::move(samples)), done_(samples_.empty()) {}

bool RecallFit::Step(size_t samples) {
  if (done_) return false;
  const size_t end = next_ + std::min(samples, samples_.size() - next_);
  while (next_ < end) {
    const std::span part = std::span(samples_).subspan(next_, std::min(end - next_, kPart));
    Accumulate(part);
    next_ += part.size();
  }
  if (next_ == samples_.size()) EndSweep();
  return !done_;
}

const RecallWeights& RecallFit::Solve() {
  while (Step(samples_.size())) {
  }
  return weights_;
}

void RecallFit::Accumulate(std::span<const FitSample> part) {
  std::array<double, kPart> errors;
  std::array<double, kPart> spreads;
  double product = 1;
  for (size_t k = 0; k < part.size(); ++k) {
    double z = 0;
    for (size_t i = 0; i < kRecallTerms; ++i) z += weights_[i] * part[k].terms[i];
    const double tail = std::exp(-std::abs(z));
    const double likely = (z < 0 ? tail : 1) / (1 + tail);
    errors[k] = (part[k].known ? 1 : 0) - likely;
    spreads[k] = likely * (1 - likely);
    sums_.objective += std::min(part[k].known ? z : -z, 0.0);
    product *= 1 + tail;
  }
  sums_.objective -= std::log(product);
  const auto add_rows = [&]<size_t... kRow>(std::index_sequence<kRow...> /*rows*/) {
    (AddRow<kRow>(part, errors, spreads, sums_.gradient[kRow], sums_.curvature[kRow]), ...);
  };
  add_rows(std::make_index_sequence<kRecallTerms>());
}

void RecallFit::AddPull() {
  for (size_t i = 0; i < kRecallTerms; ++i) {
    const double distance = weights_[i] - kStandardWeights[i];
    sums_.objective -= kPull / 2 * distance * distance;
    sums_.gradient[i] -= kPull * distance;
    sums_.curvature[i][i] += kPull;
    if (!held_[i]) continue;
    // Taken out: the system says that it does not move, and nothing moves for it.
    sums_.gradient[i] = 0;
    for (size_t k = 0; k < kRecallTerms; ++k) sums_.curvature[std::max(i, k)][std::min(i, k)] = 0;
    sums_.curvature[i][i] = 1;
  }
}

void RecallFit::EndSweep() {
  AddPull();
  ++sweeps_;
  // On a strange deck a step may go too far.
  if (sums_.objective < best_ && sweeps_ < kMostSweeps) {
    for (double& part : step_) part /= 2;
  } else {
    Propose();
  }
  for (size_t i = 0; i < kRecallTerms; ++i) weights_[i] = from_[i] + step_[i];
  const double largest = std::abs(
      *std::max_element(step_.begin(), step_.end(), [](double a, double b) { return std::abs(a) < std::abs(b); }));
  sums_ = {};
  next_ = 0;
  if (largest < kSmallStep || sweeps_ >= kMostSweeps) EndRound();
}

void RecallFit::Propose() {
  if (sums_.objective < best_) {
    step_ = {};
    return;
  }
  best_ = sums_.objective;
  from_ = weights_;
  step_ = SolveSystem(sums_.curvature, sums_.gradient);
}

void RecallFit::EndRound() {
  done_ = true;
  for (const size_t slope : kSlopes) {
    if (held_[slope] || weights_[slope] <= kGentlestSlope) continue;
    weights_[slope] = kGentlestSlope;
    held_[slope] = true;
    done_ = false;
  }
  from_ = weights_;
  best_ = -std::numeric_limits<double>::infinity();
  sweeps_ = 0;
}

}  // namespace tessaro
