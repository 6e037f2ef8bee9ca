#include "exchange/similarity.h"

#include <algorithm>
#include <cstdint>

namespace tessaro {
namespace {

constexpr uint64_t kWhole = 100;

}  // namespace

int SimilarityPercent(size_t hits, size_t words, size_t target, size_t source, const CompareRule& rule) {
  const size_t longer = std::max(target, source);
  if (words == 0 || (!rule.ignore_length && longer == 0)) return kNoMatch;
  // Deliberate: the division by the length comes first and loses its fraction.
  const uint64_t percent = rule.ignore_length ? hits * kWhole / words : hits * target * kWhole / longer / words;
  const int shown = static_cast<int>(std::min(percent, kWhole));
  return shown < rule.threshold ? kNoMatch : shown;
}

int Similarity(CardSides target, CardSides source, const CompareRule& rule) {
  if (target == source) return kSameCard;
  if (rule.either_side && target == CardSides{source.back, source.front}) return kSameCard;
  if (target.front == source.front) return kSameFront;
  size_t words = 0;
  size_t hits = 0;
  const auto count = [&](std::string_view side, std::string_view same, std::string_view other) {
    ForEachWord(side, rule.min_word_length, [&](std::string_view word) {
      ++words;
      const bool hit =
          same.find(word) != std::string_view::npos || (rule.either_side && other.find(word) != std::string_view::npos);
      hits += hit ? 1 : 0;
    });
  };
  count(target.front, source.front, source.back);
  count(target.back, source.back, source.front);
  return SimilarityPercent(hits, words, target.front.size() + target.back.size(),
                           source.front.size() + source.back.size(), rule);
}

}  // namespace tessaro
