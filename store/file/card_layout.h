#pragma once

#include "store/table/card_table.h"

// The shape that a card file's table has: its columns, the two rows that frame the cards, and its first card.
namespace tessaro {

// Fills the table with a new card file: the frame and one card, the index card.
void MakeNewCards(CardTable& cards);

enum class CardTableState {
  Whole,
  StartMissing,  // the first frame row was missing and was added
  EndMissing,    // the last one, or both: the file was cut off
  Unusable,      // no card file, or one without cards
};

// Gives a table that was read the shape of a card file: adds missing columns and missing frame rows, takes rows without
// any text off its end. Everything that was read stays as it is.
CardTableState CompleteCards(CardTable& cards);

}  // namespace tessaro
