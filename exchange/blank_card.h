#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "store/table/card_columns.h"
#include "store/table/card_table.h"
#include "store/table/packed_fields.h"

namespace tessaro {

inline constexpr int64_t kMostCardNumber = 999'990;
inline constexpr int64_t kScoreStep = 60;  // seconds from one card that was never learned to the next

// The score of the n-th card, from 1, of those that are queued behind `base`: n steps more, as nine digits.
std::string QueuedScore(int64_t base, int64_t n);

// The texts of a card in the order of the card columns.
using CardTexts = std::array<std::string, kCardColumns.size()>;
enum CardTextAt : size_t { kIdAt, kTopicAt, kQuestionAt, kAnswerAt, kScoreAt, kTimeLearnedAt, kYesNoRowAt, kTimeRowAt };
// Gives a card what the n-th new card has that was brought into a card file: nothing learned, and the topic.
void MakeBlank(CardTexts& texts, int64_t n, int topic = 0);
// The texts of a card row; empty ones for columns that the table lacks.
CardTexts TextsOf(const CardTable& cards, int row);
// The same as fields of a table with these columns; they are views.
std::vector<FieldView> FieldsIn(const CardColumns& columns, const CardTexts& texts);

}  // namespace tessaro
