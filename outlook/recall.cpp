#include "outlook/recall.h"

#include <algorithm>
#include <cmath>

#include "cards/answer_history.h"
#include "platform/saturating.h"

namespace tessaro {
namespace {

constexpr double kSecondsADay = 86'400;
constexpr double kShortest = 1 / kSecondsADay;  // days
constexpr double kProvedAtFirst = 0.10;         // days, of a first answer that was known
constexpr double kProvedByMiss = 0.05;          // ... and of one that was not
constexpr double kLeastProved = 0.0001;
constexpr double kUsualMisses = 0.15;
constexpr double kNewestCounts = 0.3;
constexpr double kNight = -0.6931471805599453;  // the logarithm of half a day, where forgetting changes its pace

double DaysBetween(int64_t earlier, int64_t later) {
  return static_cast<double>(SaturatingSubtract(later, earlier)) / kSecondsADay;
}

bool IsAnswer(char letter) {
  return letter == kKnownLetter || letter == kNotKnownLetter;
}

MemoryTrace Begin(const StoredAnswer& first) {
  MemoryTrace trace;
  trace.proved = first.known ? kProvedAtFirst : kProvedByMiss;
  trace.miss_share = kUsualMisses + kNewestCounts * ((first.known ? 0 : 1) - kUsualMisses);
  trace.misses = first.known ? 0 : 1;
  trace.streak = first.known ? 1 : 0;
  return trace;
}

}  // namespace

AnswerSeries ReadAnswers(std::string_view time_row, std::string_view yes_no_row) {
  const AnswerHistory history = ParseAnswers(time_row, yes_no_row);
  size_t count = 0;
  while (count < history.times.size() && history.times[count] > 0 && IsAnswer(history.letters[count])) ++count;
  AnswerSeries series;
  series.count = static_cast<int>(count);
  for (size_t i = 0; i < count; ++i) {
    series.answers[count - 1 - i] = {history.times[i], history.letters[i] == kKnownLetter};
  }
  return series;
}

void FollowAnswer(MemoryTrace& trace, const StoredAnswer& answer) {
  if (trace.answers == 0) {
    trace = Begin(answer);
  } else {
    const double gap = std::max(DaysBetween(trace.newest, answer.time), 0.0);
    trace.miss_share += kNewestCounts * ((answer.known ? 0 : 1) - trace.miss_share);
    if (answer.known) {
      trace.proved += gap;
      if (trace.newest_known) trace.longest = std::max(trace.longest, gap);
      ++trace.streak;
    } else {
      trace.proved = std::max(trace.proved / 2, kLeastProved);
      trace.longest = 0;
      ++trace.misses;
      trace.streak = 0;
    }
  }
  ++trace.answers;
  trace.newest = answer.time;
  trace.newest_known = answer.known;
}

MemoryTrace TraceOf(const AnswerSeries& series) {
  MemoryTrace trace;
  for (const StoredAnswer& answer : series) FollowAnswer(trace, answer);
  return trace;
}

RecallTerms TermsAt(const MemoryTrace& trace, int64_t now) {
  const double elapsed = std::max(DaysBetween(trace.newest, now), kShortest);
  const double known = trace.newest_known ? 1 : 0;
  const double log_elapsed = std::log(elapsed);
  const double within_day = std::min(log_elapsed, kNight);
  RecallTerms terms;
  terms[kBase] = 1;
  terms[kKnown] = known;
  terms[kProved] = std::log(trace.proved);
  terms[kKnownDay] = known * within_day;
  terms[kLater] = std::max(log_elapsed - kNight, 0.0);
  terms[kMissedDay] = (1 - known) * within_day;
  terms[kMissShare] = trace.miss_share;
  terms[kMisses] = std::log(1.0 + trace.misses);
  terms[kBeyond] = trace.streak >= 2 ? std::log(1 + elapsed / std::max(trace.longest, kShortest)) : 0;
  return terms;
}

double RecallOf(const RecallTerms& terms, const RecallWeights& weights) {
  double sum = 0;
  for (size_t i = 0; i < kRecallTerms; ++i) sum += weights[i] * terms[i];
  return 1 / (1 + std::exp(-sum));
}

}  // namespace tessaro
