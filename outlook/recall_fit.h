#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <utility>
#include <vector>

#include "outlook/recall.h"

namespace tessaro {

// An answer as it could have been foretold from those before it.
struct FitSample {
  RecallTerms terms;
  bool known = false;
};

// The answers of a deck that its weights are fitted to: every one that has a predecessor. When there are more than
// kMostSamples, those of every k-th card.
class FitSamples {
 public:
  static constexpr size_t kMostSamples = 200'000;

  // Takes the answers of the next card, as far as they are older than `before` (seconds since 1970).
  void AddCard(const AnswerSeries& series, int64_t before = std::numeric_limits<int64_t>::max());
  std::vector<FitSample> TakeSamples() { return std::move(samples_); }
  // Over all cards, not only the k-th ones.
  int64_t answers() const { return answers_; }
  int64_t known() const { return known_; }

 private:
  struct Card {
    uint32_t number;  // counting the cards that were added
    uint32_t samples;
  };
  void Thin();

  std::vector<FitSample> samples_;
  std::vector<Card> cards_;  // those that the samples are of, in their order
  uint32_t every_ = 1;       // k
  uint32_t number_ = 0;
  int64_t answers_ = 0;
  int64_t known_ = 0;
};

// Fits the weights to a deck's answers by Newton's method, from the standard weights and pulled toward them: a deck of
// a few hundred answers believes those, one of thousands itself. Without answers they are what comes out. The result
// depends on the samples and their order alone.
class RecallFit {
 public:
  explicit RecallFit(std::vector<FitSample> samples);

  // Looks at so many samples; false when the weights are found.
  bool Step(size_t samples);
  // Runs to the end.
  const RecallWeights& Solve();
  // Of value when Step has returned false.
  const RecallWeights& weights() const { return weights_; }

 private:
  // Of the penalised likelihood at the weights of this sweep.
  struct Sums {
    double objective = 0;
    RecallTerms gradient{};
    std::array<RecallTerms, kRecallTerms> curvature{};  // the lower triangle; negative of the second derivatives
  };
  void Accumulate(std::span<const FitSample> part);
  void AddPull();
  void EndSweep();
  void Propose();
  void EndRound();

  std::vector<FitSample> samples_;
  RecallWeights weights_ = kStandardWeights;
  RecallWeights from_ = kStandardWeights;  // the best so far
  RecallTerms step_{};
  double best_ = -std::numeric_limits<double>::infinity();
  std::array<bool, kRecallTerms> held_{};  // slopes that are set to kGentlestSlope
  Sums sums_;
  size_t next_ = 0;
  int sweeps_ = 0;
  bool done_;
};

}  // namespace tessaro
