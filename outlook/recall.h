#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "store/table/card_columns.h"

// How likely a card is known when it is asked now. What was bridged without help counts for a card, every miss against
// it, and time wears it down: slowly within a day, faster after a night, a little faster still the further it lies
// beyond the longest gap that was ever bridged.
namespace tessaro {

struct StoredAnswer {
  int64_t time;  // seconds since 1970
  bool known;
};

// The answers that a card's columns hold, the oldest first. They end at the first time that is none and at the first
// letter that is neither "w" nor "f". The times may fall.
struct AnswerSeries {
  int count = 0;
  std::array<StoredAnswer, kHistoryLength> answers;  // of value are the first `count`

  const StoredAnswer* begin() const { return answers.data(); }
  const StoredAnswer* end() const { return answers.data() + count; }
  const StoredAnswer& Oldest() const { return answers[0]; }
  const StoredAnswer& Newest() const { return answers[static_cast<size_t>(count - 1)]; }
};
// Of the two columns of a card.
AnswerSeries ReadAnswers(std::string_view time_row, std::string_view yes_no_row);

// What the answers up to one of them come to.
struct MemoryTrace {
  double proved = 0;      // days that were bridged without help, halved by every miss
  double miss_share = 0;  // of the answers, the newer ones counting more
  double longest = 0;     // days: the longest gap between two known answers since the last miss
  int64_t newest = 0;     // time of the newest answer
  uint8_t misses = 0;
  uint8_t streak = 0;  // known answers up to the newest
  uint8_t answers = 0;
  bool newest_known = false;
};
void FollowAnswer(MemoryTrace& trace, const StoredAnswer& answer);
MemoryTrace TraceOf(const AnswerSeries& series);

// What the probability is made of, and the weight of each.
enum RecallTerm : size_t { kBase, kKnown, kProved, kKnownDay, kLater, kMissedDay, kMissShare, kMisses, kBeyond };
inline constexpr size_t kRecallTerms = 9;
using RecallTerms = std::array<double, kRecallTerms>;
using RecallWeights = std::array<double, kRecallTerms>;
// Drawn from the logs of many learners.
inline constexpr RecallWeights kStandardWeights = {2.77, 0.59, 0.19, -0.10, -0.29, -0.12, -1.48, -0.76, -0.08};
// The weights that are slopes over time. They stay at or below kGentlestSlope, so that no card is known better for
// having been left alone.
inline constexpr std::array kSlopes = {kKnownDay, kLater, kMissedDay, kBeyond};
inline constexpr double kGentlestSlope = -0.02;

// Of a trace with at least one answer. A time before its newest answer counts as one second after it.
RecallTerms TermsAt(const MemoryTrace& trace, int64_t now);
// The probability, 0 ... 1.
double RecallOf(const RecallTerms& terms, const RecallWeights& weights);
inline double RecallAt(const MemoryTrace& trace, const RecallWeights& weights, int64_t now) {
  return RecallOf(TermsAt(trace, now), weights);
}

}  // namespace tessaro
