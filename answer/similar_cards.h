#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "store/file/card_file.h"

namespace tessaro {

// The cards in the order of how many letters one of their sides has, and the same for each topic. Topics and letters
// are those of the moment when a card was looked at: what came, went or was edited since asks for another one.
class SimilarCards {
 public:
  // `side` is the column of the question or the answer. The file must outlive this. No card is looked at yet.
  SimilarCards(const CardFile& file, int side);

  // Looks at so many cards more, or orders them all; does the whole of a table with no more cards. False: all is done,
  // and it can be asked.
  bool Step(int cards);

  // The table rows of up to `most` other cards whose sides have as many letters as that of `row`, a card, or nearly as
  // many: the nearest first; of equally near ones in turn one that stands before it in the order, and one behind.
  std::vector<int> OfTopic(int row, size_t most) const;
  std::vector<int> OfAll(int row, size_t most) const;
  // Of the table whose cards these are.
  int RowCount() const { return static_cast<int>(count_) + kFirstCardRow; }

 private:
  using Order = std::vector<uint32_t>;  // cards, counted from 0

  void LookAt(size_t card);
  std::vector<int> Nearest(const uint32_t* begin, const uint32_t* end, int row, size_t most) const;

  const CardFile& file_;
  int side_;
  size_t count_;                                       // of the cards
  std::unordered_map<std::string, uint32_t> numbers_;  // of the topics
  std::string last_topic_;
  uint32_t last_number_ = 0;
  // Of each card looked at.
  std::vector<uint32_t> letters_;
  std::vector<uint32_t> topics_;  // equal ones have equal numbers
  Order by_letters_;
  Order by_topic_;  // by topic, then by letters
  std::vector<uint32_t> topic_begins_;
};

}  // namespace tessaro
