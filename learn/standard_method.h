#pragma once

#include "learn/selection_method.h"

namespace tessaro {

// The automatic standard method: draws at random among the first R cards of the learning index, the worst-known ones.
// Cards that can never be chosen take no place in it: neither width nor positions count them.
// Few rows while many cards are unknown, so that they come again soon; more rows when nothing suitable is found.
// Asks to go on when it chose a card, and whenever row order is on.
class StandardMethod : public SelectionMethod {
 public:
  Choice Next(SelectionContext& run) override;
  Choice Failed(SelectionContext& run) override;

  // Sets the width after a logged answer.
  static void AdjustWidth(SelectionContext& run);

 private:
  struct Search;
  static void Widen(SelectionContext& run);
  static int64_t DrawPosition(SelectionContext& run);
  static int CardAt(SelectionContext& run, int64_t position, Search& search);
  static bool Takes(SelectionContext& run, int row, CardMarks& marks);
  static Choice Draw(SelectionContext& run);
};

}  // namespace tessaro
