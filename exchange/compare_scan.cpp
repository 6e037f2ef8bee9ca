#include "exchange/compare_scan.h"

#include <algorithm>

#include "exchange/blank_card.h"
#include "store/table/card_columns.h"

namespace tessaro {
namespace {

// Matches that are kept in advance; looking ahead pauses there.
constexpr size_t kMostAhead = 200'000;
// So many changed rows are looked at one by one, for more all are searched anew.
constexpr size_t kMostPatched = 64;
// Changes wait until the walks of so many source cards have ended or until the scan stops.
constexpr int kWalksAtOnce = 2048;
constexpr int kRowsAtOnce = 64;  // prepared without asking

bool IsOverview(const CardSides& sides) {
  const auto holds = [&](std::string_view tag) {
    return sides.front.find(tag) != std::string_view::npos || sides.back.find(tag) != std::string_view::npos;
  };
  return holds("<automap>") || holds("<autotopic>");
}

}  // namespace

CompareScan::CompareScan(CardFile& file, CardTable* source, const CompareRule& rule, int source_row)
    : target_(file),
      source_(source),
      rule_(rule),
      source_row_(source_row),
      source_end_(EndOfCards(source == nullptr ? file.cards() : *source)) {
  SetRule(rule);
}

void CompareScan::SetRule(const CompareRule& rule) {
  rule_ = rule;
  finder_ = std::make_unique<MatchFinder>(rule, [this](int row) { return target_.Sides(row); });
  prepared_ = 0;
  ahead_.clear();
  ahead_matches_ = 0;
  left_out_.clear();
  for (int row = kFirstCardRow; row < target_.end(); ++row) {
    if (target_.IsMarked(row)) left_out_.push_back(row);
  }
}

CardSides CompareScan::SourceSides(int row) const {
  if (internal()) return target_.Sides(row);
  return {source_->Peek(source_->ColumnIndex(kQuestion), row), source_->Peek(source_->ColumnIndex(kAnswer), row)};
}

bool CompareScan::Prepare(const GoOn& go_on) {
  const int rows = target_.end() - kFirstCardRow;
  for (; prepared_ < 2 * rows; ++prepared_) {
    if (prepared_ % kRowsAtOnce == 0 && !go_on()) return false;
    const int row = kFirstCardRow + prepared_ % rows;
    if (prepared_ < rows) {
      finder_->Count(row);
    } else if (!std::binary_search(left_out_.begin(), left_out_.end(), row)) {
      finder_->MakeFindable(row);
    }
    if (prepared_ == 2 * rows - 1 && walking_) {
      walk_.matches = finder_->Find(SourceSides(source_row_), walk_.next_row);
      walk_.next_match = 0;
    }
  }
  return true;
}

CompareScan::Step CompareScan::Advance(const GoOn& go_on) {
  if (stop_) return Step::Stopped;
  if (!Prepare(go_on)) return Step::Paused;
  while (source_row_ < source_end_) {
    if (!walking_) BeginWalk();
    while (walk_.next_match < walk_.matches.size()) {
      if (Meet(walk_.matches[walk_.next_match++])) return target_.Commit() ? Step::Stopped : Step::Failed;
    }
    EndWalk();
    if (source_row_ % kWalksAtOnce == 0 && !target_.Commit()) return Step::Failed;
    if (!go_on()) return Step::Paused;
  }
  return target_.Commit() ? Step::Ended : Step::Failed;
}

void CompareScan::BeginWalk() {
  walking_ = true;
  walk_ = {};
  walk_.next_row = FirstTargetRow(source_row_);
  if (!IsDuplicateMarked(SourceSides(source_row_).front)) {
    walk_.matches = MatchesOf(source_row_);
  } else {
    walk_.rejected = true;
    walk_.next_row = target_.end();
  }
}

std::vector<Match> CompareScan::MatchesOf(int source_row) {
  while (!ahead_.empty() && ahead_.front().source_row <= source_row) {
    Prepared prepared = std::move(ahead_.front());
    ahead_.pop_front();
    ahead_matches_ -= prepared.matches.size();
    const bool fits = prepared.source_row == source_row && changes_.size() - prepared.changes <= kMostPatched;
    if (!fits) continue;
    BringUpToDate(prepared, FirstTargetRow(source_row));
    return std::move(prepared.matches);
  }
  return finder_->Find(SourceSides(source_row), FirstTargetRow(source_row));
}

void CompareScan::BringUpToDate(Prepared& prepared, int first_row) const {
  std::vector<int> rows(changes_.begin() + static_cast<std::ptrdiff_t>(prepared.changes), changes_.end());
  std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  std::vector<Match>& matches = prepared.matches;
  for (const int row : rows) {
    std::erase_if(matches, [&](const Match& match) { return match.row == row; });
    if (row < first_row || row >= target_.end() || target_.IsMarked(row)) continue;
    const int result = Similarity(target_.Sides(row), SourceSides(prepared.source_row), rule_);
    if (result != kNoMatch) matches.push_back({row, result});
  }
  std::sort(matches.begin(), matches.end(), [](const Match& a, const Match& b) { return a.row < b.row; });
}

bool CompareScan::LookAhead(const GoOn& go_on) {
  const int rows = target_.end() - kFirstCardRow;
  if (prepared_ < 2 * rows) return false;
  int next = ahead_.empty() ? source_row_ + (walking_ ? 1 : 0) : ahead_.back().source_row + 1;
  for (; next < source_end_ && ahead_matches_ < kMostAhead; ++next) {
    Prepared prepared = {next, changes_.size(), {}};
    const CardSides sides = SourceSides(next);
    if (!IsDuplicateMarked(sides.front)) prepared.matches = finder_->Find(sides, FirstTargetRow(next));
    ahead_matches_ += prepared.matches.size();
    ahead_.push_back(std::move(prepared));
    if (!go_on()) return true;
  }
  return false;
}

void CompareScan::CountUpTo(int row) {
  const auto before = [&](int limit) { return std::lower_bound(left_out_.begin(), left_out_.end(), limit); };
  if (row <= walk_.next_row) return;
  counts_.comparisons += row - walk_.next_row - (before(row) - before(walk_.next_row));
  walk_.next_row = row;
}

bool CompareScan::Meet(const Match& match) {
  CountUpTo(match.row + 1);
  const bool same_front = match.result == kSameFront;
  if (match.result == kSameCard) {
    PassEqual(match.row);
  } else {
    stop_ = CompareStop{source_row_, match.row, match.result, same_front ? walk_.front_matched : walk_.matched};
    ++counts_.pairs;
  }
  walk_.matched = true;
  walk_.front_matched = walk_.front_matched || same_front || match.result == kSameCard;
  return stop_.has_value();
}

void CompareScan::PassEqual(int row) {
  duplicate_note_ = duplicate_note_ || walk_.matched;
  ++counts_.duplicates;
  // Inside one file the source card is itself the first of them.
  if (++walk_.equal > (internal() ? 0 : 1)) MarkTargetRow(row);
}

void CompareScan::EndWalk() {
  CountUpTo(target_.end());
  const bool fresh = walk_.equal == 0 || walk_.wanted;
  if (!internal() && fresh && !walk_.rejected && !walk_.replaced) TakeOver();
  walking_ = false;
  ++source_row_;
}

void CompareScan::TakeOver() {
  if (IsOverview(SourceSides(source_row_))) return;
  CardTexts texts = TextsOf(*source_, source_row_);
  const int64_t number = LeadingNumber(texts[kIdAt]);
  if (!with_statistics_) MakeBlank(texts, counts_.taken + 1);
  const int row = target_.Append(std::move(texts));
  if (row == 0) {
    ++counts_.no_number;
    return;
  }
  ++counts_.taken;
  taken_.push_back({number, row});
  if (row < target_.end()) TargetChanged(row);
}

void CompareScan::MarkTargetRow(int row) {
  target_.Mark(row);
  ++counts_.marked;
  TargetChanged(row);
}

void CompareScan::TargetChanged(int row) {
  changes_.push_back(row);
  const auto place = std::lower_bound(left_out_.begin(), left_out_.end(), row);
  const bool was_out = place != left_out_.end() && *place == row;
  if (target_.IsMarked(row)) {
    finder_->LeaveOut(row);
    if (!was_out) left_out_.insert(place, row);
  } else {
    finder_->Put(row);
    if (was_out) left_out_.erase(place);
  }
  if (!internal()) return;
  // The row may be a source card that was looked at in advance.
  const auto stale = std::find_if(ahead_.begin(), ahead_.end(), [&](const Prepared& p) { return p.source_row == row; });
  if (stale == ahead_.end()) return;
  for (auto prepared = stale; prepared != ahead_.end(); ++prepared) ahead_matches_ -= prepared->matches.size();
  ahead_.erase(stale, ahead_.end());
}

void CompareScan::WriteSource(const CompareEdits& edits) {
  const CardSides sides = SourceSides(stop_->source_row);
  const std::string front = edits.source_front.value_or(std::string(sides.front));
  const std::string back = edits.source_back.value_or(std::string(sides.back));
  if (front == sides.front && back == sides.back) return;
  if (internal()) {
    target_.SetSides(stop_->source_row, front, back);
    TargetChanged(stop_->source_row);
  } else {
    source_->Poke(source_->ColumnIndex(kQuestion), stop_->source_row, front);
    source_->Poke(source_->ColumnIndex(kAnswer), stop_->source_row, back);
  }
  walk_.matches = finder_->Find({front, back}, walk_.next_row);
  walk_.next_match = 0;
}

void CompareScan::WriteTarget(const CompareEdits& edits) {
  const CardSides sides = target_.Sides(stop_->target_row);
  const std::string front = edits.target_front.value_or(std::string(sides.front));
  const std::string back = edits.target_back.value_or(std::string(sides.back));
  if (front == sides.front && back == sides.back) return;
  target_.SetSides(stop_->target_row, front, back);
  TargetChanged(stop_->target_row);
}

bool CompareScan::Decided() {
  stop_.reset();
  return target_.Commit();
}

bool CompareScan::KeepBoth(const CompareEdits& edits) {
  if (!stop_) return true;
  WriteTarget(edits);
  WriteSource(edits);
  ++counts_.kept;
  return Decided();
}

bool CompareScan::ReplaceTarget(const CompareEdits& edits, bool with_statistics) {
  if (!stop_) return true;
  WriteSource(edits);
  const int row = stop_->target_row;
  const CardSides sides = SourceSides(stop_->source_row);
  target_.SetSides(row, std::string(sides.front), std::string(sides.back));
  const CardTexts texts = TextsOf(internal() ? target_.file().cards() : *source_, stop_->source_row);
  if (with_statistics) target_.SetStatistics(row, texts);
  if (!internal()) taken_.push_back({LeadingNumber(texts[kIdAt]), row});
  TargetChanged(row);
  walk_.replaced = true;
  ++counts_.replaced;
  return Decided();
}

bool CompareScan::RejectSource(const CompareEdits& edits) {
  if (!stop_) return true;
  WriteTarget(edits);
  const int row = stop_->source_row;
  if (internal()) {
    WriteSource(edits);
    MarkTargetRow(row);
  }
  stop_.reset();
  // The rest of the target is not compared with it.
  walk_.rejected = true;
  walk_.next_row = target_.end();
  EndWalk();
  return target_.Commit();
}

bool CompareScan::MarkTarget(const CompareEdits& edits) {
  if (!stop_) return true;
  WriteTarget(edits);
  WriteSource(edits);
  MarkTargetRow(stop_->target_row);
  walk_.wanted = true;
  return Decided();
}

}  // namespace tessaro
