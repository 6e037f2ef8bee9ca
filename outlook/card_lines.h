#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "outlook/deck_outlook.h"
#include "settings/learning_parameters.h"

namespace tessaro {

// A card as the lists of counted cards show it.
struct CardLine {
  int row = 0;
  std::optional<double> recall;  // nothing of a card without a usable answer
  int64_t due = 0;               // seconds since 1970; 0 = never answered
  int misses = 0;
  int64_t seconds = 0;  // learned on it
};

// One line for each of these card rows, in their order. Rows that the table lacks by now are left out.
std::vector<CardLine> LinesOf(const CardFile& file, const DeckOutlook& deck, const LearningParameters& parameters,
                              const std::vector<int>& rows);
// The beginning of a question as plain text in one line.
std::string QuestionStart(const CardFile& file, int row);

}  // namespace tessaro
