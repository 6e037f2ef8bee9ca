#include "learn/run_presenter.h"

#include <gtest/gtest.h>

#include "tests/learn/learn_fixture.h"

namespace tessaro {
namespace {

using RunPresenterTest = LearnTest;

TEST_F(RunPresenterTest, TheNextThingToDo) {
  using enum RunScreen::Next;
  const TestCard waiting = KnownCard(1, 100, 10);
  const struct {
    const char* what;
    std::vector<TestCard> cards;
    std::function<void()> after_start;
    RunScreen::Next next;
    bool open;
  } cases[] = {
      {"a question", {NewCard(1)}, [] {}, Turn, true},
      {"its answer", {NewCard(1)}, [&] { run->Turn(); }, Answer, true},
      {"a navigation card", {NavigationCard(1)}, [&] { run->GoHome(); }, GoOn, true},
      {"no card", {waiting}, [] {}, Close, false},
      {"the run has ended", {NewCard(1)}, [&] { --clock.now, run->Known(); }, BeginRun, false},
  };
  for (const auto& c : cases) {
    Open(c.cards);
    run->Start();
    c.after_start();
    const RunScreen screen = ScreenOf(*run, file, Notice::None, clock.now);
    EXPECT_EQ(screen.next, c.next) << c.what;
    EXPECT_EQ(screen.open, c.open) << c.what;
  }
}

TEST_F(RunPresenterTest, WhatIsOfferedWhereThereIsNoCard) {
  Open({KnownCard(1, 8200, 1000)});
  run->Start();
  RunScreen screen = ScreenOf(*run, file, Notice::NothingDue, clock.now);
  EXPECT_EQ(screen.next_due_in, 7201);
  EXPECT_TRUE(screen.offers_no_lock && !screen.offers_new_run && !screen.has_card);
  run->Set(&RunOptions::time_lock, false);
  screen = ScreenOf(*run, file, Notice::EndWithoutCard, clock.now);
  EXPECT_TRUE(!screen.offers_no_lock && screen.offers_new_run);
}

// What is said before the answer is what the answer then comes to.
TEST_F(RunPresenterTest, TheForecastIsTheAnswersOwn) {
  settings.SetInt("CHK", "nt", 2);
  settings.SetInt("CHK", "n", 0);
  Open({NewCard(1), WrongCard(2), KnownCard(3, 50, 5000), KnownCard(4, 40'000'000, 366 * kDay), KnownCard(5, 900, 5),
        NavigationCard(6)});
  const std::optional<int64_t> forecasts[] = {2, 2, 10000, 2, std::nullopt, std::nullopt};
  for (int i = 0; i < 6; ++i) {
    SCOPED_TRACE(i);
    run->FollowLink(i + 1);
    ASSERT_EQ(run->card().row, i + 2);
    EXPECT_EQ(ScreenOf(*run, file, Notice::None, clock.now).due_in_if_known, forecasts[i]);
    const std::optional<GivenAnswer> answer = run->Known().answer;
    EXPECT_EQ(answer ? answer->due_in : std::nullopt, forecasts[i]);
    EXPECT_EQ(answer && answer->logged, forecasts[i].has_value());
  }
}

TEST_F(RunPresenterTest, Fields) {
  Open({KnownCard(1, 3 * kDay + 7331, 65)});
  run->FollowLink(1);
  const RunScreen screen = ScreenOf(*run, file, Notice::None, clock.now);
  EXPECT_EQ(screen.retention, "3:02:02:11");
  EXPECT_EQ(screen.last_shown, "0:00:01:05");
  EXPECT_EQ(screen.position, 1);
  EXPECT_EQ(StopwatchText(3661), "61:01");
  EXPECT_EQ(DurationText(-5), "0:00:00:00");
}

}  // namespace
}  // namespace tessaro
