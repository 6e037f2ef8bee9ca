#include "learn/leitner_method.h"

#include <limits>
#include <utility>

#include "platform/progress.h"
#include "store/bisection_order.h"

namespace tessaro {
namespace {

// A newest answer is read from no more than 15 characters, so every time is below this number. Answers later than the
// clock go behind all others in the order in which they come.
constexpr size_t kTimeCharacters = 15;
constexpr int64_t kBehindAllTimes = 1'000'000'000'000'000;
constexpr int kProgressStep = 100;  // cards

}  // namespace

std::optional<BoxOrder> BuildBoxOrder(const CardFile& file, int64_t now) {
  const CardReader cards(file);
  BoxOrder rows;
  std::vector<int64_t> keys;
  int64_t late_key = kBehindAllTimes;
  for (int row = cards.LastCardRow(); row >= kFirstCardRow; --row) {
    if (cards.Id(row).empty()) return std::nullopt;
    if (row % kProgressStep == 0) Progress().ShowPosition(cards.LastCardRow() - row);
    if (cards.IsNavigation(row)) continue;
    const int64_t time = NewestTime(cards.TimeRow(row).substr(0, kTimeCharacters));
    rows.push_back(row);
    keys.push_back(time > now ? late_key++ : time);
  }
  BoxOrder order;
  order.reserve(rows.size());
  for (const int32_t entry : BisectionOrder(keys, std::numeric_limits<int64_t>::max())) {
    order.push_back(rows[static_cast<size_t>(entry)]);
  }
  return order;
}

void LeitnerMethod::Start(LeitnerBox box) {
  box_ = std::move(box);
  scan_row_ = kFirstCardRow;
  order_place_ = 0;
}

Choice LeitnerMethod::Next(SelectionContext& run) {
  run.stage = RunStage::LeitnerBox;
  Choice choice;
  choice.row = box_.quota > 0 ? NextNewCard(run) : 0;
  if (choice.row != 0) {
    --box_.quota;
    return choice;
  }
  box_.quota = 0;
  choice.row = NextOfBox(run);
  return choice;
}

Choice LeitnerMethod::Failed(SelectionContext& run) {
  run.view.Tell(RunMessage::BoxSearchFailed, 0);
  return {};
}

int LeitnerMethod::NextNewCard(const SelectionContext& run) {
  const CardReader& cards = run.cards;
  for (int row = scan_row_; row <= cards.LastCardRow() && !cards.HasEndMark(row); ++row) {
    if (cards.Level(row) >= 1 || run.IsLeftOut(row)) continue;
    scan_row_ = row + 1;
    return row;
  }
  return 0;
}

int LeitnerMethod::NextOfBox(const SelectionContext& run) {
  while (order_place_ < box_.order.size()) {
    const int row = box_.order[order_place_];
    if (run.cards.HasEndMark(row)) break;
    ++order_place_;
    if (run.cards.IsCardRow(row) && run.cards.Level(row) == box_.box) return row;
  }
  order_place_ = 0;
  return 0;
}

}  // namespace tessaro
