#pragma once

#include <future>
#include <utility>

namespace tessaro {

// How std::async is to begin work that goes on beside that of its caller. Where there is no thread to spare, or the
// work is not worth one, it is done when its result is asked for.
inline std::launch OnOtherThread(bool worth_it = true) {
  return worth_it ? std::launch::async | std::launch::deferred : std::launch::deferred;
}

// From so many cards on a walk over them is worth a thread.
inline constexpr int kWorthAThread = 10'000;

// Walks over [first, middle) and over [middle, last) with `walk`, which may be at both at once, and returns what it
// returned for each. What it shares with itself must be only read, or belong to one of the parts.
template <typename Walk>
auto InTwoParts(int first, int middle, int last, const Walk& walk) {
  std::future behind = std::async(OnOtherThread(last - first >= kWorthAThread), [&] { return walk(middle, last); });
  auto front = walk(first, middle);
  return std::pair(std::move(front), behind.get());
}
template <typename Walk>
auto InTwoParts(int first, int last, const Walk& walk) {
  return InTwoParts(first, first + (last - first) / 2, last, walk);
}

}  // namespace tessaro
