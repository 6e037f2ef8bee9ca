#pragma once

#include <QTimer>
#include <functional>
#include <memory>
#include <utility>

#include "platform/clock.h"

namespace tessaro {

// Work on the cards beside what the user does: a few milliseconds at a time, on the windows' thread.
class SlicedWork : public QObject {
 public:
  SlicedWork(const Clock& clock, QObject* parent);

  // Ends what is under way and begins this: `step` until it answers false, then `done`.
  void Begin(std::function<bool()> step, std::function<void()> done);
  // The same for a counter of the core, which takes so many cards, or what else it counts, in a step; `done` gets it.
  template <typename Counter>
  void Count(Counter counter, std::function<void(Counter&)> done, int cards = kCardsAtOnce) {
    const auto shared = std::make_shared<Counter>(std::move(counter));
    Begin([shared, cards] { return shared->Step(cards); }, [shared, done = std::move(done)] { done(*shared); });
  }
  void Stop();
  bool Running() const { return timer_.isActive(); }

 private:
  static constexpr int kCardsAtOnce = 200;

  void Slice();

  const Clock& clock_;
  QTimer timer_;
  std::function<bool()> step_;
  std::function<void()> done_;
};

}  // namespace tessaro
