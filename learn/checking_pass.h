#pragma once

#include "learn/selection_method.h"

namespace tessaro {

// The checking pass of the standard method: from time to time goes on through the learning index for some rows, and
// stops at the first card that must be repeated. Asks to go on (with a draw) when it found none. The check position is
// the index row looked at last; 1 = none yet.
class CheckingPass : public SelectionMethod {
 public:
  Choice Next(SelectionContext& run) override;
  Choice Failed(SelectionContext& run) override;

  // True when the pass comes before the next card: it does before every n-th card presented.
  static bool IsPending(int presented, const LearningParameters& parameters);

 private:
  enum class RowResult { PassOver, Take, EndPass };
  static RowResult LookAt(SelectionContext& run, Choice& choice);
  static bool MustRepeat(SelectionContext& run, int row, CardMarks& marks);
};

}  // namespace tessaro
