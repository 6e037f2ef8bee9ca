#pragma once

#include <cstddef>
#include <string_view>

// How much one card, the target, is like another, the source.
namespace tessaro {

struct CompareRule {
  int threshold = 50;          // percent, 5 ... 95
  size_t min_word_length = 1;  // words must be longer
  bool ignore_length = false;  // without the measure of the cards' lengths
  bool either_side = false;    // words may stand on either side of the source
};

struct CardSides {
  std::string_view front;
  std::string_view back;
  bool operator==(const CardSides&) const = default;
};

// What a comparison gives besides a percentage, which is never below the threshold.
inline constexpr int kNoMatch = 0;
inline constexpr int kSameCard = 1;
inline constexpr int kSameFront = 2;

// kSameCard, kSameFront, the percentage of the target's words that the source holds, or kNoMatch when that is below the
// threshold. A target shorter than the source loses in proportion to its length, a longer one does not: Deliberate.
int Similarity(CardSides target, CardSides source, const CompareRule& rule);

// Calls `visit` with each word of a side that is longer than `min_length`. Words are cut at blanks, line ends, stops
// and backslashes, and after 99 bytes.
template <typename Visit>
void ForEachWord(std::string_view side, size_t min_length, const Visit& visit);

// The percentage of `hits` of `words` words; `target` and `source` are the lengths of both sides together.
int SimilarityPercent(size_t hits, size_t words, size_t target, size_t source, const CompareRule& rule);

inline constexpr size_t kLongestWord = 99;

inline bool EndsWord(char c) {
  return std::string_view(" \n\r.,;:?!\\").find(c) != std::string_view::npos;
}

template <typename Visit>
void ForEachWord(std::string_view side, size_t min_length, const Visit& visit) {
  size_t start = 0;
  for (size_t i = 0; i <= side.size(); ++i) {
    const bool at_end = i == side.size() || EndsWord(side[i]);
    if (!at_end && i - start < kLongestWord) continue;
    if (i - start > min_length) visit(side.substr(start, i - start));
    start = at_end ? i + 1 : i;
  }
}

}  // namespace tessaro
