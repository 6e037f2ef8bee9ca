#include "learn/leitner_method.h"

#include <limits>
#include <utility>

#include "store/index/bisection_order.h"

namespace tessaro {
namespace {

// A newest answer is read from no more than 15 characters, so every time is below this number. Answers later than the
// clock go after all others in the order in which they come.
constexpr size_t kTimeCharacters = 15;
constexpr int64_t kBehindAllTimes = 1'000'000'000'000'000;
constexpr int kProgressStep = 100;  // cards

}  // namespace

std::optional<BoxOrder> BuildBoxOrder(const CardFile& file, int64_t now, Progress* progress) {
  const CardReader cards(file);
  BoxOrder rows;
  std::vector<int64_t> keys;
  int64_t late_key = kBehindAllTimes;
  for (int row = cards.LastCardRow(); row >= kFirstCardRow; --row) {
    if (cards.Id(row).empty()) return std::nullopt;
    if (progress != nullptr && row % kProgressStep == 0) progress->SetPosition(cards.LastCardRow() - row);
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

BoxOrder LeitnerMethod::Start(LeitnerBox box) {
  place_ = {.box = box.box, .quota = box.quota};
  return std::exchange(order_, std::move(box.order));
}

BoxOrder LeitnerMethod::End() {
  place_ = {};
  return std::exchange(order_, {});
}

void LeitnerMethod::Follow(const RowShift& shift, BoxOrder& order) {
  for (int& row : order) row = shift.Map(row);
}

Choice LeitnerMethod::Next(SelectionContext& run) {
  run.moment.stage = RunStage::LeitnerBox;
  Choice choice;
  choice.row = place_.quota > 0 ? NextNewCard(run) : 0;
  if (choice.row != 0) {
    --place_.quota;
    return choice;
  }
  place_.quota = 0;
  choice.row = NextOfBox(run);
  return choice;
}

Choice LeitnerMethod::Failed(SelectionContext& run) {
  run.result.Tell(RunMessage::BoxSearchFailed);
  return {};
}

int LeitnerMethod::NextNewCard(const SelectionContext& run) {
  const CardReader& cards = run.cards;
  for (int row = place_.scan_row; row <= cards.LastCardRow() && !cards.HasEndMark(row); ++row) {
    if (cards.Level(row) >= 1 || run.PassesOver(row)) continue;
    place_.scan_row = row + 1;
    return row;
  }
  return 0;
}

int LeitnerMethod::NextOfBox(const SelectionContext& run) {
  while (place_.order_place < order_.size()) {
    const int row = order_[place_.order_place];
    if (row != 0 && run.cards.HasEndMark(row)) break;
    ++place_.order_place;
    if (run.cards.IsCardRow(row) && run.cards.Level(row) == place_.box) return row;
  }
  place_.order_place = 0;
  return 0;
}

}  // namespace tessaro
