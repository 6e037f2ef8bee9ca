#include "widgets/sliced_work.h"

#include "widgets/long_work.h"

namespace tessaro {
namespace {

constexpr int64_t kSlice = 6;  // milliseconds

}  // namespace

SlicedWork::SlicedWork(const Clock& clock, QObject* parent) : QObject(parent), clock_(clock) {
  connect(&timer_, &QTimer::timeout, this, &SlicedWork::Slice);
}

void SlicedWork::Begin(std::function<bool()> step, std::function<void()> done) {
  step_ = std::move(step);
  done_ = std::move(done);
  timer_.start(0);
}

void SlicedWork::Stop() {
  timer_.stop();
  step_ = nullptr;
  done_ = nullptr;
}

void SlicedWork::Slice() {
  // That work may change the cards, and shows windows meanwhile.
  if (LongWork::Running()) return;
  const int64_t end = clock_.Milliseconds() + kSlice;
  do {
    if (step_()) continue;
    timer_.stop();
    step_ = nullptr;
    // It may begin the next work.
    const std::function<void()> done = std::move(done_);
    done();
    return;
  } while (clock_.Milliseconds() < end);
}

}  // namespace tessaro
