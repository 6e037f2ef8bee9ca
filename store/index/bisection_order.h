#pragma once

#include <cstdint>
#include <vector>

namespace tessaro {

// The order that an index gets when its entries are put in one after the other, each at the place that a bisection
// finds. Ascending by key; the order among equal keys depends on where the probes fell at each time, and is wanted.
//
// `keys` holds the keys in the order of insertion. The result holds positions in `keys`, in index order. The index ends
// with an entry of `end_key`; a key above it has no place and is left out. Takes n log n for any keys.
std::vector<int32_t> BisectionOrder(const std::vector<int64_t>& keys, int64_t end_key);

}  // namespace tessaro
