#include "platform/background_flush.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace tessaro {
namespace {

using namespace std::chrono_literals;

// Waits for what another thread does; false when it does not come.
template <typename Condition>
bool Comes(const Condition& condition) {
  const auto end = std::chrono::steady_clock::now() + 60s;
  bool come = false;
  while (!(come = condition()) && std::chrono::steady_clock::now() < end) std::this_thread::sleep_for(5ms);
  return come;
}

// A flush that is held up at its end, so that on a busy machine, too, it is known what was written meanwhile.
TEST(BackgroundFlush, GathersWritesFlushesOnItsOwnAndGoesOnAfterAFailure) {
  std::atomic<int> flushes = 0;
  std::atomic<bool> may_end = false;
  std::atomic<bool> good = false;
  BackgroundFlush background;
  background.SetFlush([&] {
    ++flushes;
    Comes([&] { return may_end.load(); });
    return good.load();
  });
  const auto start = std::chrono::steady_clock::now();
  background.Written();
  ASSERT_TRUE(Comes([&] { return flushes == 1; }));
  EXPECT_GE(std::chrono::steady_clock::now() - start, 400ms) << "not one by one";
  for (int i = 0; i < 100; ++i) background.Written();
  EXPECT_FALSE(background.TakeFailure()) << "it has not ended yet";
  may_end = true;
  EXPECT_TRUE(Comes([&] { return background.TakeFailure(); }));
  EXPECT_TRUE(Comes([&] { return flushes == 2; })) << "what was written meanwhile is one flush";
  EXPECT_TRUE(Comes([&] { return background.TakeFailure(); }));
  EXPECT_FALSE(background.TakeFailure()) << "told once";
  good = true;
  background.Written();
  EXPECT_TRUE(Comes([&] { return flushes == 3; }));
  std::this_thread::sleep_for(1200ms);
  EXPECT_TRUE(flushes == 3 && !background.TakeFailure()) << "nothing was written since";
}

TEST(BackgroundFlush, FlushesWhatIsLeftWhenItEndsAndNothingThatWasTakenAway) {
  int flushes = 0;
  {
    BackgroundFlush background;
    background.SetFlush([&] { return ++flushes > 0; });
    background.Written();
  }
  EXPECT_EQ(flushes, 1);
  {
    BackgroundFlush background;
    background.SetFlush([&] { return ++flushes > 0; });
    background.Written();
    background.SetFlush(nullptr);
  }
  EXPECT_EQ(flushes, 1);
}

}  // namespace
}  // namespace tessaro
