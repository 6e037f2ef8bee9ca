#include "learn/learning_run.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "learn/answer_log.h"
#include "learn/leitner_method.h"
#include "learn/link_state.h"
#include "tests/learn/learn_fixture.h"

namespace tessaro {
namespace {

using LearningRunTest = LearnTest;

TEST_F(LearningRunTest, DayButtonsRaiseTheScoreOnceAtMost) {
  settings.SetInt("CHK", "n", 0);
  Open({NewCard(1), NewCard(2), NewCard(3)});
  run->SetMethod(Method::RowOrder);
  run->Start();
  run->KnownForDays(30);
  EXPECT_EQ(Score(2), "002592000");
  run->Known();
  EXPECT_EQ(Score(3), "000000001");
  run->KnownForDays(std::numeric_limits<int>::max());
  EXPECT_EQ(Score(4), "999999900");
}

// A press that logs nothing uses the days up too.
TEST_F(LearningRunTest, DaysDoNotWaitForALaterCard) {
  settings.SetInt("CHK", "n", 0);
  Open({KnownCard(1, 100, 10), KnownCard(2, 100, 10), NewCard(3)});
  run->SetMethod(Method::RowOrder);
  run->SetTimeLock(false);
  run->Start();
  run->Known();
  EXPECT_EQ(run->card().status, CardStatus::Overlearning);
  run->KnownForDays(365);
  EXPECT_EQ(Score(3), "100");
  run->Known();
  EXPECT_EQ(Score(4), "000000001");
}

TEST_F(LearningRunTest, StatusOfTheCardOnScreen) {
  const struct {
    TestCard card;
    AnswerCode code;  // by which a link leads to the card
    CardStatus status;
    bool newest_known;
  } cases[] = {
      {NewCard(1), AnswerCode::LinkKnown, CardStatus::NeverShown, false},
      {WrongCard(1), AnswerCode::LinkKnown, CardStatus::RepeatAfterError, false},
      {KnownCard(1, 100, 99), AnswerCode::LinkKnown, CardStatus::Overlearning, true},
      {KnownCard(1, 100, 100), AnswerCode::LinkKnown, CardStatus::Overlearning, true},
      {KnownCard(1, 100, 101), AnswerCode::LinkKnown, CardStatus::RetentionUpdate, true},
      {KnownCard(1, 40'000'000, 365 * kDay + 1), AnswerCode::LinkKnown, CardStatus::RepeatMaximumTime, true},
      {KnownCard(1, 100, 365 * kDay), AnswerCode::LinkKnown, CardStatus::RetentionUpdate, true},
      {KnownCard(1, 100, 99), AnswerCode::LinkNoRating, CardStatus::Overlearning, true},
      {NavigationCard(1), AnswerCode::LinkKnown, CardStatus::Navigation, false},
  };
  for (size_t i = 0; i < std::size(cases); ++i) {
    SCOPED_TRACE(i);
    Open({cases[i].card, NewCard(2)});
    run->FollowLink(2);
    run->FollowLink(1, cases[i].code);
    EXPECT_EQ(run->card().row, 2);
    EXPECT_EQ(run->card().status, cases[i].status);
    EXPECT_EQ(run->card().newest_known, cases[i].newest_known);
  }
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
  run->FollowLink(1, AnswerCode::LinkNotKnown);
  ASSERT_EQ(run->card().status, CardStatus::RepeatMaximumTime);
  const std::string letters = YesNoRow(2);
  run->NotKnown();
  EXPECT_EQ(YesNoRow(2), letters);
  EXPECT_EQ(Score(2), "000000000");
}

TEST_F(LearningRunTest, NavigationFindsItsCards) {
  Open({NewCard(1), NavigationCard(2, "<index><navigation>"), NavigationCard(3, "<home><navigation>"), NewCard(4),
        NavigationCard(5, "<automap><navigation>")});
  const struct {
    const char* what;
    std::function<void()> go;
    int row;
    bool navigation;
    bool can_go_back;
  } steps[] = {
      {"home", [&] { run->GoHome(); }, 4, true, false},
      {"overview", [&] { run->GoOverview(); }, 6, true, false},
      {"link", [&] { run->FollowLink(4); }, 5, false, true},
      {"link to no card", [&] { run->FollowLink(77); }, 2, false, true},
      {"link to 0", [&] { run->FollowLink(0); }, 2, false, true},
      {"back", [&] { run->GoBack(); }, 2, false, true},
      {"back", [&] { run->GoBack(); }, 5, false, true},
      {"back", [&] { run->GoBack(); }, 6, true, false},
      {"back at the end of the way", [&] { run->GoBack(); }, 4, true, false},
      {"the remembered overview", [&] { file.settings().SetInt("HTML", "Vis", 4), run->GoOverview(); }, 5, true, false},
      {"a remembered one that is gone", [&] { file.settings().SetInt("HTML", "Vis", 9), run->GoOverview(); }, 6, true,
       false},
  };
  for (const auto& step : steps) {
    SCOPED_TRACE(step.what);
    step.go();
    EXPECT_EQ(run->card().row, step.row);
    EXPECT_EQ(run->card().navigation, step.navigation);
    EXPECT_EQ(run->CanGoBack(), step.can_go_back);
    EXPECT_EQ(run->AsksBeforeLeaving(), run->card().by_link && !step.navigation);
    EXPECT_EQ(file.cards().CurrentRow(), step.row);
    EXPECT_EQ(run->stage(), RunStage::Navigation);
  }
  EXPECT_EQ(run->figures().presented, 5) << "navigation cards do not count";
}

TEST_F(LearningRunTest, HomeFallsBackToTheIndexAndTheFirstCard) {
  Open({NewCard(1), NavigationCard(2, "<index><navigation>")});
  run->GoHome();
  EXPECT_EQ(run->card().row, 3);
  ASSERT_TRUE(file.cards().Poke(file.columns().question, 3, "gone"));
  run->CardsChanged();
  run->GoHome();
  EXPECT_EQ(run->card().row, 2);
}

TEST_F(LearningRunTest, TheWayBackHasThirtyPlaces) {
  std::vector<TestCard> cards;
  for (int i = 1; i <= 40; ++i) cards.push_back(NewCard(i));
  Open(cards);
  for (int i = 1; i <= 40; ++i) run->FollowLink(i);
  for (int i = 39; i >= 10; --i) {
    run->GoBack();
    EXPECT_EQ(run->card().row, i + 1);
  }
  EXPECT_FALSE(run->CanGoBack());
}

TEST_F(LearningRunTest, LinksAndButtonsCarryAnswers) {
  Open({NewCard(1), NewCard(2), NavigationCard(3)});
  run->FollowLink(1);
  run->FollowLink(2, AnswerCode::LinkNotKnown);
  EXPECT_EQ(Score(2), "000000000");
  run->GoHome(AnswerCode::Known);
  EXPECT_EQ(YesNoRow(3), Letters("w"));
  run->FollowLink(2);
  run->GoBack(AnswerCode::NotKnown);
  EXPECT_EQ(YesNoRow(3), Letters("fw"));
  EXPECT_EQ(run->figures().answered, 3);
}

TEST_F(LearningRunTest, BesideAnAnswerWindowALinkedCardLeadsBackWhenAnswered) {
  Open({NewCard(1), NewCard(2), NavigationCard(3)});
  run->SetAnswerWindowVisible(true);
  run->FollowLink(3);
  run->FollowLink(2);
  run->Known();
  EXPECT_EQ(run->card().row, 4);
  EXPECT_EQ(YesNoRow(3), Letters("w"));
  run->SetAnswerWindowVisible(false);
  run->FollowLink(2);
  run->Known();
  EXPECT_EQ(run->stage(), RunStage::BoxSearch);
}

TEST_F(LearningRunTest, UndoShowsTheCardAgainWithoutChoosing) {
  settings.SetInt("CHK", "n", 0);
  Open({WrongCard(1), WrongCard(2)});
  random.numbers = {0, 1};
  run->Start();
  const int row = run->card().row;
  EXPECT_FALSE(run->CanUndo());
  run->Undo();
  EXPECT_EQ(view.refreshes, 1);
  run->Known();
  const size_t draws = random.draws;
  ASSERT_TRUE(run->CanUndo());
  run->Undo();
  EXPECT_EQ(run->card().row, row);
  EXPECT_EQ(run->card().status, CardStatus::RepeatAfterError);
  EXPECT_EQ(Score(row), "1");
  EXPECT_EQ(run->figures().unknown_count, 2);
  EXPECT_EQ(run->figures().answered, 0);
  EXPECT_EQ(run->figures().presented, 2);
  EXPECT_EQ(random.draws, draws);
  EXPECT_FALSE(run->CanUndo());
  EXPECT_EQ(run->statistics(), nullptr);
}

TEST_F(LearningRunTest, AClockThatWentBackEndsTheRun) {
  const std::function<void()> commands[] = {[&] { run->Known(); }, [&] { run->NotKnown(); }, [&] { run->GoHome(); },
                                            [&] { run->FollowLink(1, AnswerCode::LinkNoRating); }};
  for (const auto& command : commands) {
    view = {};
    Open({NewCard(1), NewCard(2)});
    run->Start();
    const int row = run->card().row;
    --clock.now;
    command();
    EXPECT_TRUE(run->ended());
    EXPECT_EQ(view.ends, 1);
    run->Known();
    run->Undo();
    EXPECT_EQ(run->card().row, row);
    EXPECT_FALSE(file.changed());
  }
}

TEST_F(LearningRunTest, ACardFromTheFutureIsTold) {
  settings.SetInt("CHK", "n", 0);
  Open({KnownCard(1, 100, -50)});
  run->SetTimeLock(false);
  run->Start();
  run->Known();
  ASSERT_FALSE(view.messages.empty());
  EXPECT_EQ(view.messages[0], (std::pair{RunMessage::CardTimeInFuture, 0}));
  EXPECT_EQ(run->statistics()->history.times[0], kNow);
}

TEST_F(LearningRunTest, SidesFollowTurningInverseAndSwapped) {
  Open({NewCard(1)});
  run->FollowLink(1);
  for (const bool inverse : {false, true}) {
    for (const bool swapped : {false, true}) {
      run->SetInverse(inverse);
      run->SetSwapped(swapped);
      EXPECT_EQ(run->side_text(), inverse != swapped ? "Antwort" : "Frage");
      run->Turn();
      EXPECT_EQ(run->side_text(), inverse != swapped ? "Frage" : "Antwort");
      EXPECT_FALSE(run->first_side_shown());
      run->FollowLink(1);
      EXPECT_TRUE(run->first_side_shown());
    }
  }
}

TEST_F(LearningRunTest, ParametersOfAnyText) {
  const struct {
    const char* text;
    double weight;
  } weights[] = {{"", 1},  {"1.5", 1.5}, {"1,5", 1.5}, {" +2", 2},   {"0.5", 1}, {"-3", 1},
                 {"x", 1}, {"nan", 1},   {"inf", 1},   {"1e999", 1}, {"4 x", 4}};
  for (const auto& c : weights) EXPECT_EQ(ReadWeight(c.text), c.weight) << c.text;
  EXPECT_EQ(WeightText(1), "1.0");
  EXPECT_EQ(WeightText(1.25), "1.25");

  LearningParameters parameters = {3, 40, 6, 7, 200, 1.2, 100 * kDay};
  WriteParameters(parameters, settings);
  EXPECT_EQ(settings.GetString("CHK", "max"), "100");
  const LearningParameters read = ReadParameters(settings);
  EXPECT_EQ(std::tuple(read.min_width, read.max_width, read.switch_count, read.check_every, read.check_run,
                       read.retention_weight, read.max_time),
            std::tuple(3, 40, 6, 7, 200, 1.2, 100 * kDay));
  settings.SetInt("CHK", "max", std::numeric_limits<int64_t>::max());
  EXPECT_EQ(ReadParameters(settings).max_time, std::numeric_limits<int64_t>::max());
}

TEST_F(LearningRunTest, LinkStates) {
  Open({NewCard(1), WrongCard(2), KnownCard(3, 100, 99), KnownCard(4, 100, 100), KnownCard(5, 100, 101),
        KnownCard(6, 40'000'000, 365 * kDay + 1), NavigationCard(7, "<NAVIGATION>"), KnownCard(0, 100, 9)});
  const LinkState states[] = {LinkState::NeverLearned, LinkState::NeverLearned, LinkState::DueOrWrong,
                              LinkState::KnownNotDue,  LinkState::KnownNotDue,  LinkState::DueOrWrong,
                              LinkState::DueOrWrong,   LinkState::NeverLearned, LinkState::NeverLearned};
  for (int id = 0; id <= 8; ++id) EXPECT_EQ(LinkStateOf(file, id, {}, kNow), states[id]) << id;
}

// Whatever stands in settings and cards, a run keeps its promises.
TEST_F(LearningRunTest, SillySettingsAndBrokenCardsDoNoHarm) {
  std::mt19937 chance(6);
  const int64_t silly[] = {std::numeric_limits<int64_t>::min(), -5, -1, 0, 1, 2, 3, 5, 50,
                           std::numeric_limits<int64_t>::max()};
  const std::string scores[] = {"000000000", "000000001", "000050000", "", "-7", "x", "999999999999999999999"};
  const std::string questions[] = {"Frage", "Frage", "Frage", "<navigation>", "<+++>", "<home>"};
  const std::string ids[] = {"000001", "000002", "000003", "#4", "x"};
  const auto any = [&](const auto& values) { return values[chance() % std::size(values)]; };
  for (int round = 0; round < 60; ++round) {
    for (const char* key : {"min", "max", "chn"}) settings.SetInt("RNG", key, any(silly));
    for (const char* key : {"n", "wi", "max"}) settings.SetInt("CHK", key, any(silly));
    std::vector<TestCard> cards;
    for (size_t i = 0; i < 1 + chance() % 12; ++i) {
      TestCard card = {.id = any(ids), .question = any(questions), .score = any(scores)};
      card.time_row =
          std::to_string(kNow - static_cast<int64_t>(chance() % 100000) + 1000) + (chance() % 2 ? " 5 x" : "");
      card.yes_no_row = std::string(1 + chance() % 3, "wwf\0x"[chance() % 5]);
      card.topic = any(scores);
      cards.push_back(card);
    }
    Open(cards);
    file.settings().SetInt("ROW", "Pos", any(silly));
    random.numbers = {static_cast<uint32_t>(chance()) >> 1U, static_cast<uint32_t>(chance()) >> 1U, 1};
    clock.now = kNow;
    run->SetNoNewCards(chance() % 3 == 0);
    run->SetTimeLock(chance() % 2 == 0);
    run->SetMethod(chance() % 3 == 0 ? Method::RowOrder : Method::Standard);
    if (chance() % 4 == 0) run->StartBox({1 + static_cast<int>(chance() % 6), any(silly), *BuildBoxOrder(file, kNow)});
    run->Start();
    for (int step = 0; step < 40; ++step) {
      clock.now += chance() % 200;
      const int before = run->card().row;
      const std::function<void()> commands[] = {
          [&] { run->Known(); }, [&] { run->NotKnown(); }, [&] { run->Known(); },    [&] { run->KnownForDays(3); },
          [&] { run->Undo(); },  [&] { run->GoBack(); },   [&] { run->ShowNext(); }, [&] { run->FollowLink(2); }};
      any(commands)();
      const int row = run->card().row;
      ASSERT_TRUE(row == 0 || (row >= 2 && row < file.cards().RowCount()));
      const bool chosen = row != before && run->stage() != RunStage::Navigation;
      ASSERT_FALSE(chosen && run->card().navigation);
      ASSERT_FALSE(run->answered());
      ASSERT_GE(run->figures().unknown_count, 0);
    }
    run->KeepPositions();
    EXPECT_GE(file.settings().GetInt("CHK", "rpos", 0), 1);
  }
}

}  // namespace
}  // namespace tessaro
