#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "learn/selection_method.h"
#include "platform/progress.h"

namespace tessaro {

// The cards in the order of their newest answer, the one answered longest ago first. Navigation cards are not in it.
using BoxOrder = std::vector<int>;  // card table rows

// The order at the time `now`. Among equal times it is that of the index builder's bisection; cards whose newest answer
// is later than `now` stand last. `progress`, which may be null, hears of the rows; nothing when the table has a card
// row without an ID.
std::optional<BoxOrder> BuildBoxOrder(const CardFile& file, int64_t now, Progress* progress = nullptr);

// A box to be learned, as the selection of the method hands it to the run.
struct LeitnerBox {
  int box = 0;        // 1 ... 6
  int64_t quota = 0;  // new cards to be taken first: the number shown for box 1, and 0 for the other boxes
  BoxOrder order;
};

// The box method: new cards up to the quota, then the cards of the box, the one answered longest ago first. Gives no
// card when the box is worked through.
class LeitnerMethod : public SelectionMethod {
 public:
  explicit LeitnerMethod(LeitnerPlace& place) : place_(place) {}

  // From the first card and the first place of the order on. Returns the order of the box before.
  BoxOrder Start(LeitnerBox box);
  // Ends the box and returns its order; nothing of it is kept.
  BoxOrder End();
  // Together with its place this puts the method back to where it stood in this run.
  void SwapOrder(BoxOrder& order) { order_.swap(order); }

  // Follows the cards after rows moved; a card that is gone leaves an empty place in the order.
  static void Follow(const RowShift& shift, BoxOrder& order);
  void Follow(const RowShift& shift) { Follow(shift, order_); }

  Choice Next(SelectionContext& run) override;
  Choice Failed(SelectionContext& run) override;

 private:
  int NextNewCard(const SelectionContext& run);
  int NextOfBox(const SelectionContext& run);

  LeitnerPlace& place_;
  BoxOrder order_;
};

}  // namespace tessaro
