#include "learn/leitner_count.h"

#include <algorithm>
#include <string>

namespace tessaro {
namespace {

constexpr int64_t kNewCardsAtOnce = 10;
constexpr int kProgressStep = 20;  // cards

// Cards of a box that are known move on to the next one, so a box may be learned only while the next has room.
bool NextBoxHasRoom(size_t box_index, const BoxCounts& counts, const BoxLimits& limits) {
  return limits.cards[box_index + 1] > counts.boxes[box_index + 1];
}

bool FirstBoxHasRoom(const BoxCounts& counts, const BoxLimits& limits) {
  return limits.cards[0] > counts.boxes[0];
}

int64_t RaiseLevel(const CardReader& cards, int row, CardWriter& writer) {
  const int64_t level = cards.Level(row);
  const int64_t streak = Streak(cards.YesNoRow(row));
  if (streak <= level) return level;
  CardChange change;
  change.topic = std::to_string(streak);
  writer.Write(row, change);
  return streak;
}

}  // namespace

void AllowAfterCount(const BoxCounts& counts, const BoxLimits& limits, BoxCommands& commands) {
  commands.bring_new_cards = FirstBoxHasRoom(counts, limits);
  for (size_t i = 0; i < kLimitedBoxes; ++i) {
    const bool has_room = i + 1 == kLimitedBoxes || NextBoxHasRoom(i, counts, limits);
    commands.learn[i] = has_room && counts.boxes[i] > 0;
  }
  if (counts.boxes[kBoxes - 1] > 0) commands.learn[kBoxes - 1] = true;
}

void AllowAfterLimitEdit(int box, const BoxCounts& counts, const BoxLimits& limits, BoxCommands& commands) {
  if (box == 1) {
    commands.bring_new_cards = FirstBoxHasRoom(counts, limits);
    return;
  }
  const auto edited = static_cast<size_t>(box - 1);
  commands.learn[edited - 1] = NextBoxHasRoom(edited - 1, counts, limits);
  if (counts.boxes[edited] < 1) commands.learn[edited] = false;
}

int64_t BringNewCards(const BoxLimits& limits, BoxCounts& counts, BoxCommands& commands) {
  int64_t brought = std::min(counts.fresh, kNewCardsAtOnce);
  if (counts.boxes[0] + brought > limits.cards[0]) brought = limits.cards[0] - counts.boxes[0];
  brought = std::max<int64_t>(brought, 0);
  counts.fresh -= brought;
  counts.boxes[0] += brought;
  const int64_t quota = counts.boxes[0];
  commands.learn[0] = quota > 0 && NextBoxHasRoom(0, counts, limits);
  return quota;
}

BoxCounts CountBoxes(CardFile& file, CardWriter& writer, const std::function<void(const BoxCounts&)>& progress) {
  const CardReader cards(file);
  BoxCounts counts;
  file.BeginManyChanges();
  for (int row = kFirstCardRow; row <= cards.LastCardRow(); ++row) {
    if (cards.Id(row).substr(0, 1) == "#") break;
    if (progress && (row - kFirstCardRow) % kProgressStep == 0) progress(counts);
    if (cards.IsNavigation(row)) continue;
    const int64_t level = RaiseLevel(cards, row, writer);
    if (level < 1) {
      ++counts.fresh;
    } else if (level <= kBoxes) {
      ++counts.boxes[static_cast<size_t>(level - 1)];
    }
  }
  file.EndManyChanges();
  return counts;
}

}  // namespace tessaro
