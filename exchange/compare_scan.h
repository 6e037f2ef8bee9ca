#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "exchange/compare_target.h"
#include "exchange/match_finder.h"

namespace tessaro {

// A pair at which a comparison waits for a decision.
struct CompareStop {
  int source_row = 0;
  int target_row = 0;
  int result = kNoMatch;  // kSameFront or a percentage
  // The source card matched another target before; of kSameFront, with an equal front.
  bool earlier = false;
  bool operator==(const CompareStop&) const = default;
};

// What the user made of the four texts of a pair; what is not set stays.
struct CompareEdits {
  std::optional<std::string> target_front, target_back, source_front, source_back;
};

struct CompareCounts {
  int64_t comparisons = 0;
  int64_t pairs = 0;       // at which the walk stopped
  int64_t duplicates = 0;  // cards that were found equal on both sides
  int64_t kept = 0;        // pairs of which both cards stay
  int64_t marked = 0;      // cards that got the mark of a duplicate
  int64_t replaced = 0;    // cards that got the sides of a source card
  int64_t taken = 0;       // source cards that were appended
  int64_t no_number = 0;   // source cards that were not, since the card numbers have run out
};

// A card of the source and the target card that now holds its text.
struct TakenCard {
  int64_t source_number = 0;
  int target_row = 0;
};

// Compares each card of a source with each of the open card file, and stops at pairs that are alike. A walk over the
// target belongs to every source card; one that met no equal card is appended behind the target's cards when its walk
// ends. Inside one file a walk begins behind the source card, and nothing is appended.
class CompareScan {
 public:
  // Asked now and then; false lets the scan pause.
  using GoOn = std::function<bool()>;
  enum class Step { Stopped, Paused, Ended, Failed };

  // `source` null: the open file is compared with itself. Begins at this source row.
  CompareScan(CardFile& file, CardTable* source, const CompareRule& rule, int source_row = kFirstCardRow);

  // Goes on to the next stop. Changes of the target are in the card file when it stopped or ended, after a pause only
  // when they are settled. Failed: the card file could not take a change.
  Step Advance(const GoOn& go_on);
  [[nodiscard]] bool Settle() { return target_.Commit(); }
  // Looks for the matches of the source cards that come next, so that the next stop is at hand. False when there is
  // nothing to do.
  bool LookAhead(const GoOn& go_on);

  // The decisions about the pair that it stopped at; false when the card file could not take them.
  bool KeepBoth(const CompareEdits& edits);
  // The source card's sides, and with `with_statistics` what learning wrote of it, take the place of the target's.
  bool ReplaceTarget(const CompareEdits& edits, bool with_statistics);
  // The source card is not taken over; inside one file it is marked. Its walk ends.
  bool RejectSource(const CompareEdits& edits);
  // The target card is marked; the source card will be appended.
  bool MarkTarget(const CompareEdits& edits);

  // Whether appended cards get what learning wrote of the source card.
  void set_with_statistics(bool on) { with_statistics_ = on; }
  // Goes on by another rule.
  void SetRule(const CompareRule& rule);

  bool internal() const { return source_ == nullptr; }
  const std::optional<CompareStop>& stop() const { return stop_; }
  // An equal card was passed whose source card had matched another one before; asking forgets it.
  bool TakeDuplicateNote() { return std::exchange(duplicate_note_, false); }
  const CompareCounts& counts() const { return counts_; }
  const std::vector<TakenCard>& taken() const { return taken_; }
  int source_row() const { return source_row_; }
  int source_end() const { return source_end_; }
  int target_end() const { return target_.end(); }
  // How many rows have been prepared for comparing, up to twice the target's.
  int prepared() const { return prepared_; }
  CardSides TargetSides(int row) const { return target_.Sides(row); }
  CardSides SourceSides(int row) const;

 private:
  // The matches of a source card, as they were when so many rows had been changed.
  struct Prepared {
    int source_row = 0;
    size_t changes = 0;
    std::vector<Match> matches;
  };
  // What is known of the source card whose walk is under way.
  struct Walk {
    int next_row = 0;  // of the target
    std::vector<Match> matches;
    size_t next_match = 0;
    int64_t equal = 0;
    bool matched = false;
    bool front_matched = false;
    bool rejected = false;
    bool replaced = false;
    bool wanted = false;  // a target was marked in its favour
  };

  bool Prepare(const GoOn& go_on);
  int FirstTargetRow(int source_row) const { return internal() ? source_row + 1 : kFirstCardRow; }
  void BeginWalk();
  std::vector<Match> MatchesOf(int source_row);
  void BringUpToDate(Prepared& prepared, int first_row) const;
  // True when the walk is to stop at this match.
  bool Meet(const Match& match);
  void PassEqual(int row);
  void EndWalk();
  void TakeOver();
  void CountUpTo(int row);
  void MarkTargetRow(int row);
  void WriteSource(const CompareEdits& edits);
  void WriteTarget(const CompareEdits& edits);
  // The texts of a target row are others now.
  void TargetChanged(int row);
  bool Decided();

  CompareTarget target_;
  CardTable* source_;
  CompareRule rule_;
  std::unique_ptr<MatchFinder> finder_;
  int prepared_ = 0;
  int source_row_;
  int source_end_;
  bool walking_ = false;
  Walk walk_;
  std::optional<CompareStop> stop_;
  std::deque<Prepared> ahead_;  // of source rows one behind the other
  size_t ahead_matches_ = 0;
  std::vector<int> changes_;   // target rows that came or changed, in order
  std::vector<int> left_out_;  // target rows that are marked, ascending
  bool with_statistics_ = false;
  bool duplicate_note_ = false;
  CompareCounts counts_;
  std::vector<TakenCard> taken_;
};

}  // namespace tessaro
