#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "outlook/knowledge.h"
#include "outlook/recall_fit.h"
#include "store/file/card_file.h"

namespace tessaro {

// What was predicted for the answers of one class of probability, and what became of them.
struct PredictionClass {
  int64_t answers = 0;
  int64_t known = 0;
  double predicted = 0;   // sum of the probabilities
  std::vector<int> rows;  // the cards answered, each once

  double MeanPredicted() const { return predicted / static_cast<double>(answers); }
  double ShareKnown() const { return static_cast<double>(known) / static_cast<double>(answers); }
};

struct Share {
  double low = 0;
  double high = 0;
};
// Where the true share lies with 95 % certainty (Wilson's interval).
Share WilsonInterval(int64_t known, int64_t answers);

// The predictions of one period. Each is made of the answers before it with weights fitted to other answers: those
// before the period, or of the other half of the cards.
struct PredictionReport {
  std::array<PredictionClass, kRecallClasses> classes;
  int64_t answers = 0;
  int64_t known = 0;
  double predicted = 0;              // sum of the probabilities
  double mean_error = 0;             // mean distance of prediction and share in a class
  double log_loss = 0;               // of an answer, in the mean
  std::optional<double> usual_loss;  // the same when the learner's own average is predicted; nothing when there is none

  static constexpr int64_t kEnough = 100;  // answers to tell something by
};

// Checks the predictions in steps, as OutlookReading does.
class PredictionCheck {
 public:
  // For the answers from `start` on (seconds since 1970); nothing: all of them, odd and even rows telling about each
  // other. `file` must live longer.
  PredictionCheck(const CardFile& file, int64_t now, std::optional<int64_t> start);
  // Looks at so many cards, or at so many answers for the fit; false when all is done.
  bool Step(int count);
  PredictionReport Take();
  // Of value when Step has returned false. By the row's remainder; for a period both are the same.
  const RecallWeights& WeightsFor(int row) const { return parties_[PartyOf(row)].weights; }

 private:
  // Those whose answers a fit sees, and what it says.
  struct Party {
    FitSamples samples;
    std::unique_ptr<RecallFit> fit;
    RecallWeights weights = kStandardWeights;
    std::optional<double> usual;  // share known
  };
  // Who tells about this row.
  size_t PartyOf(int row) const { return start_ ? 0 : static_cast<size_t>(row % 2 == 0); }
  bool Gather(int count);
  bool Fit(int count);
  bool Predict(int count);
  void PredictCard(int row);
  void Count(int row, double recall, bool known);

  enum class Stage { Gathering, Fitting, Predicting, Done };
  const CardFile& file_;
  int64_t now_;
  std::optional<int64_t> start_;
  int rows_;
  int next_row_ = kFirstCardRow;
  Stage stage_ = Stage::Gathering;
  std::array<Party, 2> parties_;
  size_t fitted_ = 0;
  double loss_ = 0;
  double usual_loss_ = 0;
  PredictionReport report_;
};

}  // namespace tessaro
