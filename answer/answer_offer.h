#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "answer/similar_cards.h"
#include "learn/learning_commands.h"
#include "platform/random.h"
#include "store/file/card_file.h"

namespace tessaro {

inline constexpr size_t kMostOffered = 5;

// The answer to a card among answers to others.
struct OfferedAnswers {
  // What a person reads of them, in one line, cut where it is long. No two are alike but for blanks and case.
  std::vector<std::string> texts;
  size_t right = 0;
};

// Offers answers of other cards beside the right one: those of the same topic first, of these and where they are too
// few of all others some with about as many letters. A card whose answer would be right, too, because it asks the same,
// is none of them, nor is one that learning leaves out, or whose answer is a key.
//
// It looks at all cards once, and again after cards came, went or were edited; for each offer at a few hundred.
// Deliberate: the topics of that moment count. What learning itself writes there since is a box, no topic.
class AnswerOffer : private CardWatcher {
 public:
  // The file must outlive it.
  explicit AnswerOffer(CardFile& file);

  // Looks at so many cards more, for offers to cards of which this side comes first. False: it knows them all, and Make
  // answers at once.
  bool Prepare(bool sides_swapped, int cards);

  // At most kMostOffered answers, at least two, in the code page of the card's second side, the right one equally
  // likely at every place. Nothing where there is none to choose: no card, an answer that is a key or has no letters,
  // no other answer. What chance decides: which others, one by one, then the place.
  std::optional<OfferedAnswers> Make(const CardOnScreen& card, Random& random);

 private:
  struct Asked;

  SimilarCards& Similar(bool sides_swapped);
  // Those among `rows` that may be offered, up to `most`.
  std::vector<std::string> Usable(std::span<const int> rows, Asked& asked) const;
  void Forget();
  void RowsShifted(const RowShift& shift) override;
  void CardsChanged(std::span<const int> rows, std::span<const int> columns) override;

  CardFile& file_;
  CardWatch watch_;
  std::array<std::optional<SimilarCards>, 2> similar_;  // by answers, by questions
};

}  // namespace tessaro
