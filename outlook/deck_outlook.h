#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "outlook/recall.h"
#include "outlook/recall_fit.h"
#include "platform/local_days.h"
#include "store/file/card_file.h"

namespace tessaro {

struct CardTrace : MemoryTrace {
  int row = 0;  // of the card table
};
static_assert(sizeof(CardTrace) == 40, "a million of them are kept");

struct CardCost {
  int row = 0;
  int64_t seconds = 0;  // learned on this card
};

// What the histories of a deck come to at one time. Counted are the cards that learning is about: no navigation cards,
// none marked as duplicates, none with "#" in the ID. Each of them is in one of the three lists.
struct DeckOutlook {
  int64_t now = 0;
  std::vector<CardTrace> answered;  // by row
  std::vector<int> new_rows;        // without an answer that can be read
  std::vector<int> future_rows;     // answered last later than now: in no sum
  RecallWeights weights = kStandardWeights;

  int64_t answers = 0;         // stored ones
  int64_t first_known = 0;     // cards whose oldest stored answer was known
  int64_t full_histories = 0;  // cards whose older answers are no longer stored
  int64_t seconds_learned = 0;
  double seconds_per_answer = 0;
  double repeats_after_miss = 0;  // further answers to a card on the day of a miss
  int session_hour = 0;           // the median hour of the answers
  int64_t newest = 0;             // time of the newest answer; 0 = none
  static constexpr size_t kCosts = 50;
  std::vector<CardCost> costs;  // the cards that took most time, most first

  int64_t counted() const { return static_cast<int64_t>(answered.size() + new_rows.size()); }
  // How likely a new card is known at first sight.
  double FirstSight() const;
  // The trace of the card in this row; null when it has none.
  const CardTrace* TraceOf(int row) const;
};

// Reads a deck and fits the weights to it, in steps, so that it can be done beside other work. Fields may change
// between the steps; when rows come or go it is to be begun anew.
class OutlookReading {
 public:
  // `file` must live longer.
  OutlookReading(const CardFile& file, int64_t now, const LocalDays& days);

  // Looks at so many cards, or at so many answers for the fit; false when all is done.
  bool Step(int count);
  int RowCount() const { return rows_; }
  // Of value when Step has returned false.
  DeckOutlook Take();

 private:
  void Read(int row);
  void CountAnswers(const AnswerSeries& series);
  void CountCost(int row, int64_t seconds, int answers);
  void FinishReading();

  const CardFile& file_;
  const LocalDays& days_;
  int rows_;
  int next_row_;
  DeckOutlook deck_;
  FitSamples samples_;
  std::unique_ptr<RecallFit> fit_;

  std::array<int64_t, 24> by_hour_{};
  int64_t timed_seconds_ = 0;  // of cards whose answers are all stored
  int64_t timed_answers_ = 0;
  int64_t miss_days_ = 0;  // days of a card with a miss
  int64_t repeats_ = 0;    // answers on them after the first miss
};

}  // namespace tessaro
