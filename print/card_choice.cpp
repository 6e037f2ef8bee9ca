#include "print/card_choice.h"

#include <algorithm>

#include "cards/due_rule.h"

namespace tessaro {
namespace {

std::vector<int> Kept(const CardFile& file, std::vector<int> rows) {
  const CardReader cards(file);
  std::erase_if(rows, [&](int row) { return !cards.IsCardRow(row) || file.deletion_marks().Has(row); });
  return rows;
}

// Whether the retention time of a card that was known has run out.
bool IsDue(const CardReader& cards, int row, const DueAt& at) {
  const int64_t newest = cards.NewestTime(row);
  const int64_t score = cards.Score(row);
  if (newest <= 0 || score <= 0 || cards.NewestLetter(row) != kKnownLetter || cards.IsNeverChosen(row)) return false;
  return DueStateAt(newest, score, at.parameters, at.now).IsDue();
}

}  // namespace

bool CardOffer::Has(CardChoice choice) const {
  if (choice == CardChoice::Found) return found != nullptr;
  if (choice == CardChoice::Marked) return !marked.empty();
  return choice != CardChoice::Shown || shown != 0;
}

std::optional<std::vector<int>> ChosenCards(const CardFile& file, CardChoice choice, const CardOffer& offer,
                                            bool navigation, const DueAt& at, const KeepGoing& keep_going) {
  if (choice == CardChoice::Marked) return Kept(file, offer.marked);
  if (choice == CardChoice::Shown) return Kept(file, {offer.shown});
  const CardReader cards(file);
  const auto chosen = [&](int row) {
    if (choice == CardChoice::Due) return IsDue(cards, row, at);
    return (navigation || !cards.IsNavigation(row)) && (choice == CardChoice::All || (offer.found && offer.found(row)));
  };
  std::vector<int> rows;
  for (int row = kFirstCardRow; row <= cards.LastCardRow(); ++row) {
    if (!GoesOn(keep_going, row)) return std::nullopt;
    file.cards().Expect(row + CardTable::kAhead);
    if (!file.deletion_marks().Has(row) && chosen(row)) rows.push_back(row);
  }
  return rows;
}

}  // namespace tessaro
