#pragma once

#include <atomic>
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

// The same for a walk over the rows up to `end` in two parts, each on a thread of its own (InTwoParts): for the rows of
// the first part it is asked, on the thread that was called, and both end. `before`: rows that earlier walks told of.
class TwoPartsGoOn {
 public:
  TwoPartsGoOn(const KeepGoing& keep_going, int end, int before = 0) : middle_(end / 2) {
    if (keep_going) ask_ = [keep_going, before](int row) { return keep_going(row + before); };
  }
  bool operator()(int row) {
    if (row < middle_ && !GoesOn(ask_, 2 * row)) ended_ = true;
    return !ended_;
  }
  bool ended() const { return ended_; }

 private:
  int middle_;
  KeepGoing ask_;
  std::atomic<bool> ended_ = false;
};

}  // namespace tessaro
