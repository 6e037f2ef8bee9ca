#pragma once

#include <cstdint>

#include "store/table/card_columns.h"
#include "store/table/card_table.h"

namespace tessaro {

// How a card file stands. A card is learnable unless it is a navigation card or its ID holds "#"; the last four figures
// count learnable cards and, `due` left aside, add up to `learnable`.
struct CardFigures {
  int64_t cards = 0;
  int64_t learnable = 0;
  int64_t never_answered = 0;
  int64_t known = 0;    // newest answer "known", with a predicted retention time
  int64_t unknown = 0;  // answered, but not known
  int64_t due = 0;      // those of the known cards whose time has come
};

// What makes a known card due.
struct DueTerms {
  int64_t now = 0;                // seconds since 1970
  double retention_weight = 1.0;  // factor on the predicted retention time
  int64_t max_time = 0;           // seconds after which a card is due in any case
};

CardFigures FiguresOf(const CardTable& cards, const CardColumns& columns, const DueTerms& terms);

// The learnable cards whose score reads as 0.
int64_t CountUnknown(const CardTable& cards, const CardColumns& columns);

}  // namespace tessaro
