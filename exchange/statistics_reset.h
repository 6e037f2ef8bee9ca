#pragma once

#include <cstdint>
#include <optional>

#include "exchange/work_observer.h"
#include "store/file/card_file.h"

namespace tessaro {

// The run lengths that can be chosen.
inline constexpr int kShortestRun = 3;
inline constexpr int kLongestRun = 5;

// Which cards lose their statistics: all, or with a run length those that were not known at each of so many newest
// answers. Navigation cards are cards like others.
using ResetScope = std::optional<int>;

// Makes cards look as if they had never been learned, and queues them in their order: all from the front on, else
// behind the hundred cards that are known worst. Both indexes are built anew. Nothing, with the cards as they were,
// when the observer, which is told the rows, ended it, or the card file could not take it.
std::optional<int64_t> ResetStatistics(CardFile& file, ResetScope scope, const WorkObserver& observer = {});

}  // namespace tessaro
