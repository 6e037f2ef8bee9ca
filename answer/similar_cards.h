#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "store/file/card_file.h"

namespace tessaro {

// The cards in the order of how many letters one of their sides has, and the same for each topic. Topics and letters
// are those of the moment when this was made: what came, went or was edited since asks for another one.
class SimilarCards {
 public:
  // `side` is the column of the question or the answer. Looks at all cards.
  SimilarCards(const CardFile& file, int side);

  // The table rows of up to `most` other cards whose sides have as many letters as that of `row`, a card, or nearly as
  // many: the nearest first; of equally near ones in turn one that stands before it in the order, and one behind.
  std::vector<int> OfTopic(int row, size_t most) const;
  std::vector<int> OfAll(int row, size_t most) const;
  int RowCount() const { return static_cast<int>(letters_.size()) + kFirstCardRow; }

 private:
  using Order = std::vector<uint32_t>;  // cards, counted from 0

  std::vector<int> Nearest(const uint32_t* begin, const uint32_t* end, int row, size_t most) const;

  // Of each card.
  std::vector<uint32_t> letters_;
  std::vector<uint32_t> topics_;  // equal ones have equal numbers
  Order by_letters_;
  Order by_topic_;  // by topic, then by letters
  std::vector<uint32_t> topic_begins_;
};

}  // namespace tessaro
