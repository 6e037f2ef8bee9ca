#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "outlook/deck_outlook.h"

namespace tessaro {

// The classes of a probability in percent: from each bound to the next, the last one with 100. The first five count as
// one class, below 50, where cards are counted.
inline constexpr std::array kRecallBounds = {0, 10, 20, 30, 40, 50, 60, 70, 80, 90, 95};
inline constexpr size_t kRecallClasses = kRecallBounds.size();
inline constexpr size_t kCardClasses = kRecallClasses - 4;
// The class among all of them, and among those that cards are counted in.
size_t RecallClassOf(double recall);
size_t CardClassOf(double recall);

// The classes of a retention time (Score) in seconds: 0, then up to each of these, then above.
inline constexpr std::array<int64_t, 9> kRetentionBounds = {3'600,     86'400,    259'200,   604'800,   1'209'600,
                                                            2'592'000, 5'184'000, 8'640'000, 31'536'000};
inline constexpr size_t kRetentionClasses = kRetentionBounds.size() + 2;
size_t RetentionClassOf(int64_t score);

// How much of a deck is known now, and the card rows behind each figure.
struct Knowledge {
  double known = 0;   // expected number of known cards among the answered ones
  double spread = 0;  // its standard deviation
  std::array<std::vector<int>, kCardClasses> by_recall;
  std::array<std::vector<int>, kRetentionClasses> by_retention;
};

// Counts in steps, as OutlookReading does.
class KnowledgeCount {
 public:
  // Both must live longer.
  KnowledgeCount(const CardFile& file, const DeckOutlook& deck) : file_(file), deck_(deck) {}
  // Looks at so many cards; false when all are counted.
  bool Step(int count);
  Knowledge Take();

 private:
  const CardFile& file_;
  const DeckOutlook& deck_;
  size_t next_ = 0;
  double variance_ = 0;
  Knowledge knowledge_;
};

}  // namespace tessaro
