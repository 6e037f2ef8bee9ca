#include "platform/background_flush.h"

#include <chrono>
#include <utility>

namespace tessaro {
namespace {

// The time in which writes are gathered: with the flush itself well below a second.
constexpr std::chrono::milliseconds kGather{500};

}  // namespace

BackgroundFlush::BackgroundFlush() : thread_([this] { Work(); }) {}

BackgroundFlush::~BackgroundFlush() {
  {
    const std::lock_guard lock(mutex_);
    stop_ = true;
  }
  wake_.notify_one();
  thread_.join();
}

void BackgroundFlush::SetFlush(std::function<bool()> flush) {
  const std::lock_guard lock(flush_mutex_);
  flush_ = std::move(flush);
}

void BackgroundFlush::Written() {
  const std::lock_guard lock(mutex_);
  if (!std::exchange(written_, true)) wake_.notify_one();
}

void BackgroundFlush::Work() {
  std::unique_lock lock(mutex_);
  while (!stop_ || written_) {
    wake_.wait(lock, [this] { return written_ || stop_; });
    wake_.wait_for(lock, kGather, [this] { return stop_; });
    if (!std::exchange(written_, false)) continue;
    lock.unlock();
    FlushNow();
    lock.lock();
  }
}

void BackgroundFlush::FlushNow() {
  const std::lock_guard lock(flush_mutex_);
  if (flush_ && !flush_()) failed_ = true;
}

}  // namespace tessaro
