#pragma once

#include <algorithm>
#include <span>
#include <vector>

#include "store/table/row_shift.h"

namespace tessaro {

// Whoever holds on to rows of the open card file, or shows them, watches it to hear of rows that come, go or change
// outside learning. What learning writes is not told. A watcher must not change cards while it is told something.
class CardWatcher {
 public:
  CardWatcher() = default;
  CardWatcher(const CardWatcher&) = delete;
  CardWatcher& operator=(const CardWatcher&) = delete;
  virtual ~CardWatcher() = default;

  // Rows are about to come and go: cards and indexes are still as they were.
  virtual void RowsWillShift(const RowShift& /*shift*/) {}
  // They have: cards and both indexes are as they are to be.
  virtual void RowsShifted(const RowShift& /*shift*/) {}
  // In these rows, ascending, as they count now, texts have changed; each in one of these columns or several.
  virtual void CardsChanged(std::span<const int> /*rows*/, std::span<const int> /*columns*/) {}
  // An index was built anew: among equal keys cards may stand in another order.
  virtual void IndexesRebuilt() {}
};

// Those who watch a card file.
class CardWatchers {
 public:
  // A watcher is added once and must be removed before its end; CardWatch does both.
  void Add(CardWatcher& watcher) { watchers_.push_back(&watcher); }
  void Remove(CardWatcher& watcher) { std::erase(watchers_, &watcher); }

  // Calls tell(watcher) for each; one may leave meanwhile.
  template <typename Tell>
  void ForEach(const Tell& tell) const {
    for (CardWatcher* const watcher : std::vector<CardWatcher*>(watchers_)) {
      if (std::find(watchers_.begin(), watchers_.end(), watcher) != watchers_.end()) tell(*watcher);
    }
  }

 private:
  std::vector<CardWatcher*> watchers_;
};

// Watches from now on to the end of its life.
class CardWatch {
 public:
  // Both must outlive it.
  CardWatch(CardWatchers& watchers, CardWatcher& watcher) : watchers_(watchers), watcher_(watcher) {
    watchers_.Add(watcher_);
  }
  CardWatch(const CardWatch&) = delete;
  CardWatch& operator=(const CardWatch&) = delete;
  ~CardWatch() { watchers_.Remove(watcher_); }

 private:
  CardWatchers& watchers_;
  CardWatcher& watcher_;
};

}  // namespace tessaro
