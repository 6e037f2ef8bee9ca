#pragma once

#include <array>
#include <cstdint>
#include <functional>

#include "cards/card_writer.h"
#include "settings/box_limits.h"

// Counting the cards into Leitner boxes, and what follows from the counts: which box may be learned, and how many new
// cards box 1 takes. Box k holds the cards of level k; a card's level is its Topic, raised to its streak by counting.
namespace tessaro {

inline constexpr int kBoxes = 6;

// The numbers as the dialog shows them. Element k - 1 belongs to box k.
struct BoxCounts {
  int64_t fresh = 0;  // new cards: below level 1
  std::array<int64_t, kBoxes> boxes{};
};

// What the learner may press. Nothing before the first count.
struct BoxCommands {
  bool bring_new_cards = false;
  std::array<bool, kBoxes> learn{};
};
// After a count. Deliberate: box 6 becomes learnable when it holds cards and stays so when a later count finds none.
void AllowAfterCount(const BoxCounts& counts, const BoxLimits& limits, BoxCommands& commands);
// After the limit of box `box` (1 ... 5) was edited.
void AllowAfterLimitEdit(int box, const BoxCounts& counts, const BoxLimits& limits, BoxCommands& commands);

// Moves up to 10 new cards into box 1, no more than its limit allows, in the numbers alone. Returns the quota: how many
// new cards a run of box 1 may take.
int64_t BringNewCards(const BoxLimits& limits, BoxCounts& counts, BoxCommands& commands);

// Counts from the first card to the first whose ID begins with "#", and writes raised levels into the cards. Navigation
// cards are left out. `progress` hears of the counts so far every 20 cards.
BoxCounts CountBoxes(CardFile& file, CardWriter& writer, const std::function<void(const BoxCounts&)>& progress = {});

}  // namespace tessaro
