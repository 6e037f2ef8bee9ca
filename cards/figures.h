#pragma once

#include <cstdint>
#include <optional>

#include "settings/learning_parameters.h"
#include "store/file/card_file.h"

namespace tessaro {

// How a card file stands. A card is learnable unless it is left out of learning: a navigation card, one whose ID holds
// "#", or one with the mark of a superfluous variant. `never_answered`, `known` and `unknown` add up to `learnable`.
struct CardFigures {
  int64_t cards = 0;
  int64_t navigation = 0;
  int64_t learnable = 0;
  int64_t never_answered = 0;
  int64_t known = 0;    // newest answer "known", with a predicted retention time
  int64_t unknown = 0;  // answered, but not known
  int64_t due = 0;      // those of the known cards whose time has come
  // Seconds until the first of the known cards that wait for their time is due; nothing when none waits.
  std::optional<int64_t> next_due_in;
};

// Looks at all cards. `now` in seconds since 1970.
CardFigures FiguresOf(const CardFile& file, const LearningParameters& parameters, int64_t now);

// The unknown cards: learnable ones whose score reads as 0. Looks at all cards.
int64_t CountUnknown(const CardTable& cards, const CardColumns& columns);
// The same, at no cost as long as no card changed since the file was opened by a CardFile that counts them.
int64_t CountUnknown(const CardFile& file);

}  // namespace tessaro
