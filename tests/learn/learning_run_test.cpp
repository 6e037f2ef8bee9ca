#include "learn/learning_run.h"

#include <limits>
#include <tuple>

#include "cards/link_state.h"
#include "learn/run_presenter.h"
#include "learn/start_method.h"
#include "settings/decimal_text.h"
#include "tests/learn/learn_fixture.h"

namespace tessaro {
namespace {

using LearningRunTest = LearnTest;
using RunPresenter = LearnTest;

TEST_F(LearningRunTest, DayButtonsRaiseTheScoreOnceAtMost) {
  settings.SetInt("CHK", "n", 0);
  Open({NewCard(1), NewCard(2), NewCard(3), KnownCard(4, 100, 10), NewCard(5)});
  run->SetMethod(Method::RowOrder);
  run->Set(&RunOptions::time_lock, false);
  run->Start();
  run->Known(30);
  EXPECT_EQ(Score(2), "002592000");
  run->Known();
  EXPECT_EQ(Score(3), "000000001");
  run->Known(std::numeric_limits<int>::max());
  EXPECT_EQ(Score(4), "999999900");
  EXPECT_EQ(run->card().status, CardStatus::Overlearning);
  run->Known(365);
  EXPECT_EQ(Score(5), "100");
  run->Known();
  EXPECT_EQ(Score(6), "000000001") << "a press that logs nothing uses the days up too";
}

TEST_F(LearningRunTest, StatusOfTheCardOnScreen) {
  const std::pair<TestCard, CardStatus> cases[] = {
      {NewCard(1), CardStatus::NeverShown},
      {WrongCard(1), CardStatus::RepeatAfterError},
      {KnownCard(1, 100, 100), CardStatus::Overlearning},
      {KnownCard(1, 100, 101), CardStatus::RetentionUpdate},
      {KnownCard(1, 40'000'000, 365 * kDay + 1), CardStatus::RepeatMaximumTime},
      {KnownCard(1, 100, 365 * kDay), CardStatus::RetentionUpdate},
      {NavigationCard(1), CardStatus::Navigation},
  };
  for (const auto& [card, status] : cases) {
    Open({card});
    run->FollowLink(1);
    EXPECT_EQ(run->card().status, status) << card.score << " " << card.time_row;
    EXPECT_EQ(run->card().newest_known, card.yes_no_row[0] == 'w');
  }
}

TEST_F(LearningRunTest, NoticeSaysWhyThereIsNoCard) {
  const TestCard waiting = KnownCard(1, 100, 10);
  const std::vector left_out = {NavigationCard(1), With(NewCard(1), &TestCard::answer, "<+++>")};
  const StepResult nothing;
  const StepResult at_end = {.events = {{RunMessage::EndOfFile}}};
  const std::tuple<std::vector<TestCard>, Method, bool, StepResult, Notice> cases[] = {
      {left_out, Method::Standard, true, nothing, Notice::NoCards},
      {left_out, Method::RowOrder, false, at_end, Notice::NoCards},
      {{waiting}, Method::Standard, true, nothing, Notice::NothingDue},
      {{waiting}, Method::RowOrder, false, at_end, Notice::EndWithoutCard},
      {{waiting, NewCard(2)}, Method::Standard, true, nothing, Notice::NewCardsHeldBack},
      {{waiting, NewCard(2)}, Method::Standard, false, nothing, Notice::NothingDue},
      {{waiting, NewCard(2)}, Method::RowOrder, true, nothing, Notice::NothingDue},
  };
  for (const auto& [cards, method, no_new_cards, result, expected] : cases) {
    Open(cards);
    run->SetMethod(method);
    run->Set(&RunOptions::no_new_cards, no_new_cards);
    EXPECT_EQ(NoticeAfter(result, *run, file), expected) << cards.size() << " cards";
  }
  run->FollowLink(2);
  EXPECT_EQ(NoticeAfter(at_end, *run, file), Notice::EndOfFile) << "the card before the end is there";
}

// The only card cannot be chosen: it stays on screen after going home, and is no navigation card for that.
TEST_F(LearningRunTest, CardThatStaysIsClassifiedAnew) {
  Open({KnownCard(1, 100, 99)});
  run->Start();
  run->GoHome();
  ASSERT_EQ(run->card().status, CardStatus::Navigation);
  run->Known();
  EXPECT_EQ(run->card().row, 2);
  EXPECT_EQ(run->card().status, CardStatus::Overlearning);
}

TEST_F(LearningRunTest, CardsBeyondTheMaximumTimeKeepTheirHistory) {
  Open({KnownCard(1, 40'000'000, 366 * kDay), NewCard(2)});
  run->FollowLink(2);
  run->FollowLink(1, Rating::NotKnown);
  const std::string letters = YesNoRow(2);
  run->NotKnown();
  EXPECT_EQ(YesNoRow(2), letters);
  EXPECT_EQ(Score(2), "000000000");
}

TEST_F(LearningRunTest, NavigationFindsItsCards) {
  Open({NewCard(1), NavigationCard(2, "<index><navigation>"), NavigationCard(3, "<home><navigation>"), NewCard(4),
        NavigationCard(5, "<automap><navigation>")});
  const auto overview_with = [&](int id) {
    file.settings().SetInt("HTML", "Vis", id);
    run->GoOverview();
  };
  const auto home_after = [&](int row) {
    ASSERT_TRUE(file.cards().Poke(file.columns().question, row, "gone"));
    run->CardsReplaced();
    run->GoHome();
  };
  const std::tuple<const char*, std::function<void()>, int, bool, bool> steps[] = {
      {"begun with home", [&] { run->Start(Destination::Home); }, 4, true, false},
      {"overview", [&] { run->GoOverview(); }, 6, true, false},
      {"link", [&] { run->FollowLink(4); }, 5, false, true},
      {"link to no card", [&] { run->FollowLink(77); }, 2, false, true},
      {"link to 0", [&] { run->FollowLink(0); }, 2, false, true},
      {"back", [&] { run->GoBack(); }, 2, false, true},
      {"back", [&] { run->GoBack(); }, 5, false, true},
      {"back", [&] { run->GoBack(); }, 6, true, false},
      {"back at the end of the way", [&] { run->GoBack(); }, 4, true, false},
      {"the remembered overview", [&] { overview_with(4); }, 5, true, false},
      {"a remembered one that is gone", [&] { overview_with(9); }, 6, true, false},
      {"home on the index card", [&] { home_after(4); }, 3, true, false},
      {"home on the first card", [&] { home_after(3); }, 2, true, false},
  };
  for (const auto& [what, go, row, navigation, can_go_back] : steps) {
    SCOPED_TRACE(what);
    go();
    EXPECT_EQ(run->card().row, row);
    EXPECT_EQ(run->card().navigation, navigation);
    EXPECT_EQ(run->CanGoBack(), can_go_back);
    EXPECT_EQ(file.cards().CurrentRow(), row);
    EXPECT_EQ(run->moment().stage, RunStage::Navigation);
  }
  EXPECT_EQ(run->figures().presented, 5) << "navigation cards do not count";
}

TEST_F(LearningRunTest, BesideAnAnswerWindowALinkedCardLeadsBackWhenAnswered) {
  Open({NewCard(1), NewCard(2), NavigationCard(3)});
  run->SetAnswerWindowVisible(true);
  for (const int id : {3, 2}) run->FollowLink(id);
  run->Known();
  EXPECT_EQ(run->card().row, 4);
  EXPECT_EQ(YesNoRow(3), Letters("w"));
  run->SetAnswerWindowVisible(false);
  run->FollowLink(2);
  run->Known();
  EXPECT_EQ(run->moment().stage, RunStage::BoxSearch);
}

TEST_F(LearningRunTest, UndoShowsTheCardAgainWithoutChoosing) {
  settings.SetInt("CHK", "n", 0);
  Open({WrongCard(1), WrongCard(2)});
  random.numbers = {0, 1};
  run->Start();
  const int row = run->card().row;
  EXPECT_FALSE(run->CanUndo());
  run->Known();
  const size_t draws = random.draws;
  run->Undo();
  EXPECT_EQ(run->card().row, row);
  EXPECT_EQ(run->card().status, CardStatus::RepeatAfterError);
  EXPECT_EQ(std::tuple(run->figures().unknown_count, run->figures().presented), std::tuple(2, 2));
  EXPECT_EQ(random.draws, draws);
  EXPECT_TRUE(!run->CanUndo() && !(run->moment().log.statistics));
}

TEST_F(LearningRunTest, AClockThatWentBackEndsTheRun) {
  // Taking back turns no clock back.
  const auto known_earlier_than_taken_back = [&] {
    clock.now += 100;
    run->Known();
    run->TakeBackAnswer();
    clock.now -= 50;
    return run->Known();
  };
  const std::function<StepResult()> commands[] = {[&] { return run->Known(); }, [&] { return run->GoHome(); },
                                                  [&] { return run->FollowLink(1); }, known_earlier_than_taken_back};
  for (const auto& command : commands) {
    Open({NewCard(1), NewCard(2)});
    run->Start();
    const int row = run->card().row;
    --clock.now;
    EXPECT_TRUE(command().run_ended && run->ended());
    EXPECT_EQ(NoticeAfter({}, *run, file), Notice::ClockWentBack);
    run->Known();
    EXPECT_EQ(run->figures().answered, 0);
    run->Undo();
    EXPECT_EQ(run->card().row, row);
  }
}

TEST_F(LearningRunTest, ACardFromTheFutureIsTold) {
  Open({KnownCard(1, 100, -50), NewCard(2)});
  run->FollowLink(1);
  EXPECT_EQ(run->NotKnown().events, (std::vector<RunEvent>{{RunMessage::CardTimeInFuture}}));
  EXPECT_EQ(run->moment().log.statistics->history.times[0], kNow);
}

TEST_F(LearningRunTest, ParametersOfAnyText) {
  const std::pair<const char*, double> weights[] = {{"", 1},   {"1.5", 1.5}, {"1,5", 1.5}, {" +2", 2},   {"0.5", 1},
                                                    {"-3", 1}, {"nan", 1},   {"inf", 1},   {"1e999", 1}, {"4 x", 4}};
  for (const auto& [text, weight] : weights) EXPECT_EQ(ReadWeight(text), weight) << text;
  EXPECT_EQ(DecimalText(1) + " " + DecimalText(1.25), "1.0 1.25");

  WriteParameters({3, 40, 6, 7, 200, 1.2, 100 * kDay}, settings);
  const auto [min_width, max_width, switch_count, every, check_run, weight, max_time] = ReadParameters(settings);
  EXPECT_EQ(std::tie(min_width, max_width, switch_count, every, check_run, weight, max_time),
            std::tuple(3, 40, 6, 7, 200, 1.2, 100 * kDay));
  settings.SetInt("CHK", "max", std::numeric_limits<int64_t>::max());
  EXPECT_EQ(ReadParameters(settings).max_time, std::numeric_limits<int64_t>::max());
}

TEST_F(LearningRunTest, LinkStates) {
  Open({NewCard(1), WrongCard(2), KnownCard(3, 100, 99), KnownCard(4, 100, 100), KnownCard(5, 100, 101),
        KnownCard(6, 40'000'000, 365 * kDay + 1), NavigationCard(7, "<NAVIGATION>"), KnownCard(0, 100, 9)});
  using enum LinkState;
  const LinkState states[] = {NeverLearned, NeverLearned, DueOrWrong,   KnownNotDue, KnownNotDue,
                              DueOrWrong,   DueOrWrong,   NeverLearned, NeverLearned};
  for (int id = 0; id <= 8; ++id) EXPECT_EQ(LinkStateOf(file, id, {}, kNow), states[id]) << id;
}

TEST_F(RunPresenter, TheNextThingToDo) {
  using enum RunScreen::Next;
  const TestCard waiting = KnownCard(1, 100, 10);
  const std::tuple<const char*, std::vector<TestCard>, std::function<void()>, RunScreen::Next, bool> cases[] = {
      {"a question", {NewCard(1)}, [] {}, Turn, true},
      {"its answer", {NewCard(1)}, [&] { run->Turn(); }, Answer, true},
      {"a navigation card", {NavigationCard(1)}, [&] { run->GoHome(); }, GoOn, true},
      {"no card", {waiting}, [] {}, Close, false},
      {"the run has ended", {NewCard(1)}, [&] { --clock.now, run->Known(); }, BeginRun, false},
  };
  for (const auto& [what, cards, after_start, next, open] : cases) {
    Open(cards);
    run->Start();
    after_start();
    const RunScreen screen = ScreenOf(*run, file, Notice::None, clock.now);
    EXPECT_TRUE(screen.next == next && screen.open == open) << what;
  }
}

TEST_F(RunPresenter, WhatIsOfferedWhereThereIsNoCard) {
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
TEST_F(RunPresenter, TheForecastIsTheAnswersOwn) {
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
TEST_F(RunPresenter, TheSideBeforeIsOneLineWithoutTags) {
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

// The card file's own way to begin goes before the program's, and what a run was left with is kept where it came from.
TEST(StartMethod, IsTheCardFilesOrElseTheProgramsAndKeptThere) {
  const std::tuple<const char*, const char*, Method, Method, const char*, const char*> cases[] = {
      {"", "", Method::Standard, Method::RowOrder, "[rowlearn]\nchecked=1\n", ""},
      {"[rowlearn]\nchecked=1\n", "", Method::RowOrder, Method::Leitner, "[rowlearn]\nchecked=1\n", ""},
      {"", "[START]\nMethode=2\n", Method::RowOrder, Method::Standard, "", "[START]\nMethode=1\n"},
      {"[rowlearn]\nchecked=1\n", "[START]\nMethode=1\n", Method::Standard, Method::RowOrder, "[rowlearn]\nchecked=1\n",
       "[START]\nMethode=2\n"},
  };
  for (const auto& [program_before, card_file_before, begins, left, program_after, card_file_after] : cases) {
    IniFile program;
    IniFile card_file;
    program.Parse(program_before);
    card_file.Parse(card_file_before);
    EXPECT_EQ(StartMethod(program, card_file), begins);
    KeepStartMethod(left, program, card_file);
    EXPECT_EQ(program.Text(), program_after);
    EXPECT_EQ(card_file.Text(), card_file_after);
  }
}

TEST_F(RunPresenter, Fields) {
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
