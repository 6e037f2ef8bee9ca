#include "store/bisection_order.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace tessaro {
namespace {

// Puts the entries in row by row, as the order is defined. `rows` counts from 1 with a start row, as an index does.
std::vector<int32_t> OrderByInserting(const std::vector<int64_t>& keys, int64_t end_key) {
  struct Row {
    int64_t key;
    int32_t entry;
  };
  std::vector<Row> rows = {{0, 0}, {-1, -1}, {end_key, -1}};
  size_t n = 2;
  for (size_t i = 0; i < keys.size(); ++i) {
    size_t low = 2;
    size_t high = n;
    size_t middle = std::max<size_t>(n / 2, 2);
    do {
      if (rows[middle].key >= keys[i]) high = middle;
      if (rows[middle].key <= keys[i]) low = middle;
      middle = low + (high - low) / 2;
    } while (high - low >= 10);
    while (low <= high && rows[low].key < keys[i]) ++low;
    if (low > high) continue;
    rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(low), {keys[i], static_cast<int32_t>(i)});
    ++n;
  }
  std::vector<int32_t> order;
  for (size_t row = 2; row < n; ++row) order.push_back(rows[row].entry);
  return order;
}

TEST(BisectionOrder, GivesTheOrderOfInsertingOneByOne) {
  std::mt19937 random(20240229);
  const auto draw = [&](int64_t most) { return static_cast<int64_t>(random() % static_cast<uint64_t>(most + 1)); };
  constexpr int64_t kEndKey = 999;
  for (int round = 0; round < 4000; ++round) {
    // Mostly small ones, where every size occurs; a few as long as the bisection needs to go deep.
    const int64_t size = round % 40 == 0 ? draw(3000) : draw(80);
    const int64_t distinct = 1 + draw(round % 3 == 0 ? 1005 : 6);
    std::vector<int64_t> keys;
    for (int64_t i = 0; i < size; ++i) keys.push_back(kEndKey + 2 - draw(distinct) * (round % 2 == 0 ? 1 : 150));
    if (round % 5 == 0) std::sort(keys.begin(), keys.end());
    if (round % 7 == 0) std::reverse(keys.begin(), keys.end());
    ASSERT_EQ(BisectionOrder(keys, kEndKey), OrderByInserting(keys, kEndKey)) << ::testing::PrintToString(keys);
  }
}

}  // namespace
}  // namespace tessaro
