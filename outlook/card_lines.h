#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "outlook/deck_outlook.h"
#include "settings/learning_parameters.h"

namespace tessaro {

// What a list of counted cards can be ordered by.
enum class CardLineKey { Row, Question, Recall, Due, Misses, Seconds };

// Counted cards as lists show them. A card is looked at when it is asked for, so that a list of a million opens at
// once.
class CardLines {
 public:
  // `file` must live longer. Of these rows of the card table, those that it lacks are left out.
  CardLines(const CardFile& file, std::shared_ptr<const DeckOutlook> deck, const LearningParameters& parameters,
            const std::vector<int>& rows);

  // Of a card by its place, 0 ... Count() - 1; as it stood at now().
  int Count() const { return static_cast<int>(lines_.size()); }
  int Row(int place) const { return LineAt(place).row; }
  std::optional<double> Recall(int place) const;  // nothing without a usable answer
  int64_t Due(int place) const;                   // seconds since 1970; 0 = never answered
  int Misses(int place) const;
  int64_t Seconds(int place) const;  // learned on it; not negative
  int64_t now() const { return deck_->now; }

  // Puts them in order; equal ones go by row, also where it is descending. Questions are compared as a person reads
  // them, without case; cards without a recall come first.
  void Sort(CardLineKey key, bool descending);
  // The place of a card row; -1 when it is not among them.
  int PlaceOf(int row) const;

  // Follows the cards to their new rows and gives the places of those that are gone; they have row 0 until they are
  // dropped.
  std::vector<int> Follow(const RowShift& shift);
  void DropGone();

 private:
  struct Line {
    int row;
    int row_read;  // of the same card when the deck was read
  };
  const Line& LineAt(int place) const { return lines_[static_cast<size_t>(place)]; }
  // The places in the order of a key.
  std::vector<int> PlacesBy(CardLineKey key, bool descending) const;
  const CardTrace* TraceAt(int place) const { return deck_->TraceOf(LineAt(place).row_read); }

  const CardFile& file_;
  std::shared_ptr<const DeckOutlook> deck_;
  LearningParameters parameters_;
  std::vector<Line> lines_;
};

// The beginning of a question as plain text in one line.
std::string QuestionStart(const CardFile& file, int row);

}  // namespace tessaro
