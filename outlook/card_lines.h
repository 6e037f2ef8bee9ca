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
// What a list of counted cards can be ordered by.
enum class CardLineKey { Row, Question, Recall, Due, Misses, Seconds };
// The places of the lines in that order; equal ones as they stand, also where it is descending. Questions are compared
// as a person reads them, without case; cards without a recall come before the others.
std::vector<int> OrderedPlaces(const CardFile& file, const std::vector<CardLine>& lines, CardLineKey key,
                               bool descending);
// The beginning of a question as plain text in one line.
std::string QuestionStart(const CardFile& file, int row);

}  // namespace tessaro
