#include "outlook/knowledge.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "cards/card_reader.h"

namespace tessaro {

size_t RecallClassOf(double recall) {
  size_t found = 0;
  while (found + 1 < kRecallClasses && recall >= kRecallBounds[found + 1] / 100.0) ++found;
  return found;
}

size_t CardClassOf(double recall) {
  constexpr size_t kBelowHalf = kRecallClasses - kCardClasses;
  return std::max(RecallClassOf(recall), kBelowHalf) - kBelowHalf;
}

size_t RetentionClassOf(int64_t score) {
  if (score <= 0) return 0;
  const auto found = std::lower_bound(kRetentionBounds.begin(), kRetentionBounds.end(), score);
  return static_cast<size_t>(found - kRetentionBounds.begin()) + 1;
}

bool KnowledgeCount::Step(int count) {
  const CardReader cards(file_);
  for (; count > 0 && next_ < deck_.answered.size(); --count, ++next_) {
    const CardTrace& trace = deck_.answered[next_];
    const double recall = RecallAt(trace, deck_.weights, deck_.now);
    knowledge_.known += recall;
    variance_ += recall * (1 - recall);
    knowledge_.by_recall[CardClassOf(recall)].push_back(trace.row);
    knowledge_.by_retention[RetentionClassOf(cards.Score(trace.row))].push_back(trace.row);
  }
  return next_ < deck_.answered.size();
}

Knowledge KnowledgeCount::Take() {
  knowledge_.spread = std::sqrt(variance_);
  return std::move(knowledge_);
}

}  // namespace tessaro
