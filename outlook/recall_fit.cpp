#include "outlook/recall_fit.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tessaro {
namespace {

constexpr double kPull = 400;  // the ridge: half of it times the squared distance is taken off the likelihood
constexpr double kSmallStep = 1e-6;
constexpr int kMostSweeps = 12;

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

}  // namespace

void FitSamples::AddCard(const AnswerSeries& series, int64_t before) {
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
  const size_t end = std::min(next_ + samples, samples_.size());
  for (; next_ < end; ++next_) Accumulate(samples_[next_]);
  if (next_ == samples_.size()) EndSweep();
  return !done_;
}

const RecallWeights& RecallFit::Solve() {
  while (Step(samples_.size())) {
  }
  return weights_;
}

void RecallFit::Accumulate(const FitSample& sample) {
  double z = 0;
  for (size_t i = 0; i < kRecallTerms; ++i) z += weights_[i] * sample.terms[i];
  const double likely = 1 / (1 + std::exp(-z));
  const double error = (sample.known ? 1 : 0) - likely;
  const double spread = likely * (1 - likely);
  sums_.objective += std::min(sample.known ? z : -z, 0.0) - std::log1p(std::exp(-std::abs(z)));
  for (size_t i = 0; i < kRecallTerms; ++i) {
    sums_.gradient[i] += error * sample.terms[i];
    const double weighted = spread * sample.terms[i];
    for (size_t j = 0; j <= i; ++j) sums_.curvature[i][j] += weighted * sample.terms[j];
  }
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
