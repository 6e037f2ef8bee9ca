#include "learn/run_presenter.h"

#include <gtest/gtest.h>

#include "learn/start_method.h"
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

// In the line above the answer, whichever side was asked.
TEST_F(RunPresenterTest, TheSideBeforeIsOneLineWithoutTags) {
  TestCard card = NewCard(1);
  card.question = "<b>Wie</b><br>heisst \n  es? ";
  card.answer = "So";
  Open({card, NavigationCard(2)});
  run->FollowLink(1);
  const auto line = [&] { return ScreenOf(*run, file, Notice::None, clock.now).side_before; };
  EXPECT_EQ(line(), "") << "the question itself";
  run->Turn();
  EXPECT_EQ(line(), "Wie heisst es?");
  run->Set(&RunOptions::inverse, true);
  EXPECT_EQ(line(), "So");
  file.cards().Poke(file.columns().answer, kFirstCardRow, std::string(1 << 20, 'x'));
  EXPECT_LE(line().size(), 500U);
}

TEST_F(RunPresenterTest, ARunMayBeginWithTheHomeCard) {
  Open({NewCard(1), NavigationCard(2, "<navigation><home>")});
  run->SetMethod(Method::RowOrder);
  run->Start(Destination::Home);
  EXPECT_EQ(run->card().row, 3);
  EXPECT_FALSE(run->CanGoBack());
  run->Known();
  EXPECT_EQ(run->card().row, 2);
}

// The card file's own way to begin goes before the program's, and what a run was left with is kept where it came from.
TEST(StartMethod, IsTheCardFilesOrElseTheProgramsAndKeptThere) {
  const struct {
    const char* program;
    const char* card_file;
    Method begins, left;
    const char* program_after;
    const char* card_file_after;
  } cases[] = {
      {"", "", Method::Standard, Method::RowOrder, "[rowlearn]\nchecked=1\n", ""},
      {"[rowlearn]\nchecked=1\n", "", Method::RowOrder, Method::Leitner, "[rowlearn]\nchecked=1\n", ""},
      {"", "[START]\nMethode=2\n", Method::RowOrder, Method::Standard, "", "[START]\nMethode=1\n"},
      {"[rowlearn]\nchecked=1\n", "[START]\nMethode=1\n", Method::Standard, Method::RowOrder, "[rowlearn]\nchecked=1\n",
       "[START]\nMethode=2\n"},
  };
  for (const auto& c : cases) {
    IniFile program;
    IniFile card_file;
    program.Parse(c.program);
    card_file.Parse(c.card_file);
    EXPECT_EQ(StartMethod(program, card_file), c.begins);
    KeepStartMethod(c.left, program, card_file);
    EXPECT_EQ(program.Text(), c.program_after);
    EXPECT_EQ(card_file.Text(), c.card_file_after);
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
