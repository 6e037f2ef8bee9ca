#include "store/index/bisection_order.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <functional>
#include <numeric>
#include <optional>

// How the order comes about: the index has n rows, row 1 being a start row that is never looked at and row n the end
// row. For each key the span lo = 2 ... hi = n is narrowed by probes, the first at row n / 2, until a probe meets an
// equal key or the span is below 10 rows; then the first row that is not below the key is taken. The entry goes before
// the row found.
//
// Doing so costs a probe into the rows a step and an insertion into their middle. But which way a probe goes is
// decided by where the rows of equal key begin and end, [first, behind), and those are ranks: how many keys below this
// one, and how many equal ones, are in already. A tree of counters over the distinct keys gives them, and the probes
// become plain arithmetic. That yields the place of each entry among its equals at the time it came; a second pass,
// backward over the entries of each key, turns these places into the final order: the entry that came last stands
// where it was put, the one before it takes its place among the slots that are left, and so on.
namespace tessaro {
namespace {

constexpr int32_t kFirstRow = 2;
constexpr int32_t kScanSpan = 10;  // narrower spans are scanned

// Counters over positions 0 ... size - 1, with sums in logarithmic time (a Fenwick tree).
class CounterTree {
 public:
  explicit CounterTree(size_t size) : sums_(size + 1, 0), top_(std::bit_floor(std::max<size_t>(size, 1))) {}

  // One in every position.
  void Fill() {
    for (size_t i = 1; i < sums_.size(); ++i) sums_[i] = static_cast<int32_t>(i & (~i + 1));
  }
  void Add(size_t position, int32_t amount) {
    for (size_t i = position + 1; i < sums_.size(); i += i & (~i + 1)) sums_[i] += amount;
  }
  int32_t SumBefore(size_t position) const {
    int32_t sum = 0;
    for (size_t i = position; i > 0; i &= i - 1) sum += sums_[i];
    return sum;
  }
  // Takes the unit that has `before` units before it out, and returns its position.
  size_t TakeUnit(int32_t before) {
    size_t position = 0;
    for (size_t step = top_; step > 0; step >>= 1U) {
      const size_t next = position + step;
      if (next >= sums_.size()) continue;
      if (sums_[next] <= before) {
        position = next;
        before -= sums_[next];
      } else {
        --sums_[next];
      }
    }
    return position;
  }

 private:
  std::vector<int32_t> sums_;
  size_t top_;
};

// The row before which a key is inserted into an index of `rows` rows whose rows [first, behind) hold equal keys.
int32_t InsertionRow(int32_t rows, int32_t first, int32_t behind) {
  int32_t low = kFirstRow;
  int32_t high = rows;
  int32_t probe = std::max(rows / 2, kFirstRow);
  do {
    if (probe >= behind) {
      high = probe;
    } else if (probe < first) {
      low = probe;
    } else {
      return probe;
    }
    probe = low + (high - low) / 2;
  } while (high - low >= kScanSpan);
  return first;
}

// The entries sorted by key, those of equal key in the order of insertion.
std::vector<int32_t> SortedEntries(const std::vector<int64_t>& keys, int64_t end_key) {
  struct Entry {
    int64_t key;
    int32_t number;
    bool operator<(const Entry& other) const { return key != other.key ? key < other.key : number < other.number; }
  };
  std::vector<Entry> entries;
  entries.reserve(keys.size());
  for (size_t i = 0; i < keys.size(); ++i) {
    if (keys[i] <= end_key) entries.push_back({keys[i], static_cast<int32_t>(i)});
  }
  if (std::is_sorted(entries.rbegin(), entries.rend())) std::reverse(entries.begin(), entries.end());
  if (!std::is_sorted(entries.begin(), entries.end())) std::sort(entries.begin(), entries.end());
  std::vector<int32_t> sorted;
  sorted.reserve(entries.size());
  for (const Entry& entry : entries) sorted.push_back(entry.number);
  return sorted;
}

// Numbers the distinct keys in ascending order and gives each entry the number of its key.
std::vector<int32_t> Ranks(const std::vector<int64_t>& keys, const std::vector<int32_t>& sorted, size_t& distinct) {
  std::vector<int32_t> ranks(keys.size(), -1);
  distinct = 0;
  for (size_t i = 0; i < sorted.size(); ++i) {
    const auto entry = static_cast<size_t>(sorted[i]);
    if (i == 0 || keys[entry] != keys[static_cast<size_t>(sorted[i - 1])]) ++distinct;
    ranks[entry] = static_cast<int32_t>(distinct - 1);
  }
  return ranks;
}

// For each entry its place among the entries of the same key at the time it came in: 0 is before all of them.
std::vector<int32_t> PlacesAmongEquals(const std::vector<int64_t>& keys, const std::vector<int32_t>& ranks,
                                       size_t distinct, int64_t end_key) {
  std::vector<int32_t> places(keys.size(), 0);
  std::vector<int32_t> equals(distinct, 0);
  CounterTree below(distinct);
  int32_t rows = 2;
  for (size_t i = 0; i < keys.size(); ++i) {
    if (ranks[i] < 0) continue;
    const auto rank = static_cast<size_t>(ranks[i]);
    const int32_t first = kFirstRow + below.SumBefore(rank);
    const int32_t behind = first + equals[rank] + (keys[i] == end_key ? 1 : 0);
    places[i] = InsertionRow(rows, first, behind) - first;
    below.Add(rank, 1);
    ++equals[rank];
    ++rows;
  }
  return places;
}

// Brings entries of one key, given in the order of insertion, into their final order.
void OrderEquals(int32_t* entries, size_t count, const std::vector<int32_t>& places) {
  if (count < 2) return;
  CounterTree free_slots(count);
  free_slots.Fill();
  std::vector<int32_t> ordered(count);
  for (size_t i = count; i-- > 0;) ordered[free_slots.TakeUnit(places[static_cast<size_t>(entries[i])])] = entries[i];
  std::copy(ordered.begin(), ordered.end(), entries);
}

// The order of keys that only fall or only rise, as those of cards that were numbered or queued in their order.
std::optional<std::vector<int32_t>> PlainOrder(const std::vector<int64_t>& keys, int64_t end_key) {
  if (keys.empty() || std::max(keys.front(), keys.back()) > end_key) return std::nullopt;
  const auto all_are = [&](auto in_order) {
    return std::adjacent_find(keys.begin(), keys.end(), std::not_fn(in_order)) == keys.end();
  };
  const bool fall = all_are(std::greater<>());
  if (!fall && !all_are(std::less<>())) return std::nullopt;
  std::vector<int32_t> order(keys.size());
  std::iota(order.begin(), order.end(), 0);
  if (fall) std::reverse(order.begin(), order.end());
  return order;
}

}  // namespace

std::vector<int32_t> BisectionOrder(const std::vector<int64_t>& keys, int64_t end_key) {
  if (std::optional<std::vector<int32_t>> plain = PlainOrder(keys, end_key)) return *std::move(plain);
  std::vector<int32_t> order = SortedEntries(keys, end_key);
  size_t distinct = 0;
  const std::vector<int32_t> ranks = Ranks(keys, order, distinct);
  if (distinct == order.size()) return order;
  const std::vector<int32_t> places = PlacesAmongEquals(keys, ranks, distinct, end_key);
  for (size_t begin = 0; begin < order.size();) {
    size_t end = begin + 1;
    while (end < order.size() && ranks[static_cast<size_t>(order[end])] == ranks[static_cast<size_t>(order[begin])])
      ++end;
    OrderEquals(&order[begin], end - begin, places);
    begin = end;
  }
  return order;
}

}  // namespace tessaro
