#pragma once

#include <functional>

namespace tessaro {

// Asked by work on many cards, as it comes to this row of the card table (of a second walk over them, the row and their
// number): false ends the work, with the cards as they were. Empty: the work goes on to its end.
using KeepGoing = std::function<bool(int row)>;

// To be called for each row: asks every now and then.
inline bool GoesOn(const KeepGoing& keep_going, int row) {
  constexpr int kRowsBetween = 1024;
  return !keep_going || row % kRowsBetween != 0 || keep_going(row);
}

}  // namespace tessaro
