
#include "learn/leitner_count.h"
#include "tests/learn/learn_fixture.h"

namespace tessaro {
namespace {

using Setting = std::tuple<const char*, const char*, int64_t>;

class SelectionTest : public LearnTest {
 protected:
  // Opens the cards, and a run with these settings instead of those of the test before.
  void OpenWith(const std::vector<TestCard>& cards, const std::vector<Setting>& values = {},
                const std::vector<uint32_t>& draws = {}) {
    settings = {};
    for (const auto& [section, key, value] : values) settings.SetInt(section, key, value);
    random = ScriptedRandom(draws);
    told = {};
    Open(cards);
  }
  // The rows shown after Start and further steps with this answer.
  std::vector<int> Rows(int steps, Rating rating = Rating::Known) {
    run->Start();
    std::vector<int> rows = {run->card().row};
    for (int i = 1; i < steps; ++i) {
      ++clock.now;
      rating == Rating::Known ? run->Known() : run->NotKnown();
      rows.push_back(run->card().row);
    }
    return rows;
  }
};

std::vector<RunEvent> Only(RunMessage message, int number = 0) {
  return {{message, number}};
}

constexpr Setting kNoChecking = {"CHK", "n", 0};

TEST_F(SelectionTest, FirstDrawOfTheStandardMethod) {
  const TestCard due = KnownCard(1, 50, 100);
  const TestCard marked = With(WrongCard(2), &TestCard::answer, "<+++>");
  const TestCard hash = With(WrongCard(3), &TestCard::id, "00#003");
  const TestCard navigation = NavigationCard(4, "<NAVIGATION>");
  const TestCard early = KnownCard(5, 100, 100);  // due at this very second
  const TestCard old = KnownCard(6, 40'000'000, 365 * kDay + 1);
  const struct {
    const char* what;
    std::vector<TestCard> cards;
    std::vector<Setting> values;
    std::vector<uint32_t> draws;
    bool lock;
    int row;
    size_t draw_count;
    int64_t width;
  } cases[] = {
      {"cards that can never be chosen take no place", {marked, hash, due, navigation}, {}, {0}, true, 4, 1, 50},
      {"between others", {WrongCard(2), navigation, WrongCard(1), marked, due}, {}, {2}, true, 6, 1, 3},
      {"not yet due", {early}, {}, {0}, true, 0, 500, 1},
      {"not yet due without the lock", {early}, {}, {0}, false, 2, 1, 50},
      {"due by weight", {due}, {{"CHK", "nt", 2}}, {0}, true, 0, 500, 1},
      {"beyond the maximum time, but not yet due", {old}, {}, {0}, true, 0, 500, 1},
      {"no width", {due, WrongCard(2)}, {{"RNG", "max", 0}}, {1}, true, 3, 0, 0},
      {"a negative width", {due, WrongCard(2)}, {{"RNG", "max", -2}}, {1}, true, 2, 1, -2},
      {"a width beyond all cards", {due, due}, {{"RNG", "max", 1LL << 62}}, {3}, true, 3, 1, 1LL << 62},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    std::vector<Setting> values = c.values;
    values.push_back(kNoChecking);
    OpenWith(c.cards, values, c.draws);
    if (!c.lock) run->Set(&RunOptions::time_lock, false);
    told += run->Start();
    EXPECT_EQ(run->card().row, c.row);
    EXPECT_EQ(random.draws, c.draw_count);
    EXPECT_EQ(run->figures().width, c.width);
    EXPECT_EQ(told.events, std::vector<RunEvent>(c.row == 0 ? 1 : 0, {RunMessage::StandardExhausted}));
  }
}

// Told by the notice, not by a box.
TEST_F(SelectionTest, NothingButCardsThatCannotBeChosenIsNoCardAtAll) {
  OpenWith({NavigationCard(1), With(WrongCard(2), &TestCard::question, "<+++>")}, {kNoChecking}, {0});
  told += run->Start();
  EXPECT_EQ(run->card().row, 0);
  EXPECT_EQ(random.draws, 0u);
  EXPECT_TRUE(told.events.empty());
}

TEST_F(SelectionTest, ManyUnknownCardsNarrowTheWidthAndNoneWidensIt) {
  OpenWith(Numbered(6, [](int i) { return WrongCard(i); }), {kNoChecking}, {0});
  (void)Rows(2);
  EXPECT_EQ(run->figures().unknown_count, 5);
  EXPECT_EQ(run->figures().width, 2);
  run->Set(&RunOptions::time_lock, false);
  EXPECT_EQ((run->ShowNext(), run->figures().width), 6) << "the lock resets it, the cards bound it";
  for (int i = 0; i < 5; ++i) run->Known();
  EXPECT_EQ(run->figures().width, 50);
}

TEST_F(SelectionTest, WidthDoublesTwiceInALongSearch) {
  const std::vector<TestCard> cards = Numbered(20, [](int i) { return KnownCard(i, 1000, 10); });
  for (const auto& [min, width] : {std::pair(2, 12), {3, 3}}) {
    OpenWith(cards, {{"RNG", "max", 3}, {"RNG", "min", min}, kNoChecking}, {0});
    run->Start();
    EXPECT_EQ(run->figures().width, width);
    EXPECT_EQ(run->figures().widened, width > 3);
  }
}

TEST_F(SelectionTest, TheSameCardComesTwiceOnlyWhenItAloneIsUnknown) {
  OpenWith({WrongCard(1), WrongCard(2)}, {kNoChecking}, {0, 0, 1});
  EXPECT_EQ(Rows(2, Rating::NotKnown), (std::vector<int>{2, 3}));
  OpenWith({WrongCard(1), KnownCard(2, 5, 100)}, {kNoChecking}, {0});
  EXPECT_EQ(Rows(2, Rating::NotKnown), (std::vector<int>{2, 2}));
}

TEST_F(SelectionTest, WithoutNewCardsItSearchesSevenTimesAndSaysSoOnce) {
  OpenWith({NewCard(1), NewCard(2)}, {kNoChecking}, {0, 1});
  run->Start();
  run->Set(&RunOptions::no_new_cards, true);
  random.draws = 0;
  told += run->ShowNext();  // the new card on screen stays
  EXPECT_EQ(random.draws, 3500u);
  EXPECT_EQ(told.events, Only(RunMessage::StandardExhausted));
}

TEST_F(SelectionTest, ChecksEveryNthCardAndKeepsItsPosition) {
  // Index order is row order: the scores ascend. Wrong: 2. New: 4. Due: 3, 6. Too long not shown, but not due: 7.
  const std::vector<TestCard> cards = {
      WrongCard(1),           KnownCard(2, 50, 900),     With(NewCard(3), &TestCard::score, "60"),
      KnownCard(4, 7000, 10), KnownCard(5, 8000, 90000), KnownCard(6, 40'000'000, 366 * kDay)};
  // What is shown are rows and why: t tested, c check position, e repeated after an error.
  const std::tuple<const char*, std::vector<Setting>, bool, std::string, int64_t> cases[] = {
      {"one after the other, then anew with a draw", {{"CHK", "n", 1}}, false, "3t 4c 6t 7t 2e ", 1},
      {"no new cards", {{"CHK", "n", 1}}, true, "3t 6t 7t ", 7},
      {"every second card", {{"CHK", "n", 2}}, false, "2e 3t 2e 4c ", 4},
      {"one row at a time", {{"CHK", "n", 1}, {"CHK", "wi", 1}}, false, "2e 3t ", 3},
      {"no rows", {{"CHK", "n", 1}, {"CHK", "wi", -1}}, false, "2e ", 1},
  };
  std::map<CardStatus, std::string> letters = {
      {CardStatus::Tested, "t "}, {CardStatus::CheckPosition, "c "}, {CardStatus::RepeatAfterError, "e "}};
  for (const auto& [what, values, no_new_cards, expected, position] : cases) {
    OpenWith(cards, values, {0});
    run->Set(&RunOptions::no_new_cards, no_new_cards);
    std::string shown;
    while (shown.size() < expected.size()) {
      run->ShowNext();
      shown += std::to_string(run->card().row) + letters[run->card().status];
    }
    EXPECT_EQ(shown, expected) << what;
    run->KeepPositions();
    EXPECT_EQ(file.settings().GetInt("CHK", "rpos", 0), position) << what;
  }
}

TEST_F(SelectionTest, AKeptCheckPositionIsTakenUpIfTheFileHasIt) {
  for (const auto& [kept, row] : {std::pair(int64_t{1}, 2), {3, 4}, {4, 2}, {-9, 2}, {1LL << 40, 2}}) {
    OpenWith({KnownCard(1, 10, 99), KnownCard(2, 20, 99), KnownCard(3, 30, 99)}, {{"CHK", "n", 1}});
    file.settings().SetInt("CHK", "rpos", kept);
    run = std::make_unique<LearningRun>(file, settings, clock, random);
    run->Start();
    EXPECT_EQ(run->card().row, row) << kept;
  }
}

TEST_F(SelectionTest, DefectsOfTheIndexAreTold) {
  // One card has no place in the index, so the last draw leads to the end row.
  OpenWith({WrongCard(1), With(WrongCard(2), &TestCard::score, "9999999999")}, {kNoChecking}, {1, 1, 0});
  told += run->Start();
  EXPECT_EQ(told.events, Only(RunMessage::IndexFault, 8)) << "once a search";

  OpenWith({WrongCard(1)}, {kNoChecking}, {3, 3, 3, 0});
  for (int i = 0; i < 3; ++i) ASSERT_TRUE(file.cards().GoTo(2) && file.cards().InsertRow(false));
  run->Set(&RunOptions::time_lock, false);
  told += run->Start();
  EXPECT_EQ(told.events, Only(RunMessage::IndexFault, 7));

  OpenWith({WrongCard(1), WrongCard(2), WrongCard(3)}, {{"CHK", "n", 1}}, {0});
  for (int i = 0; i < 2; ++i) ASSERT_TRUE(file.cards().GoTo(2) && file.cards().DeleteRow());
  told += run->Start();
  EXPECT_EQ(told.events.at(0), (RunEvent{RunMessage::IndexFault, 2}));
}

TEST_F(SelectionTest, RowOrderWalksAndStartsAnewAtTheEnd) {
  const TestCard due = KnownCard(2, 50, 100);
  const TestCard early = KnownCard(3, 50, 5);
  const TestCard marked = With(NewCard(4), &TestCard::question, "a<+++>");
  const struct {
    const char* what;
    std::vector<TestCard> cards;
    int64_t kept;
    bool lock;
    std::vector<int> rows;
    size_t ends;
    int64_t kept_after;
  } cases[] = {
      {"all in their order", {NewCard(1), NewCard(2), NewCard(3)}, 2, true, {2, 3, 4}, 0, 5},
      {"the end, and the first card again", {NewCard(1), NewCard(2)}, 2, true, {2, 3, 3, 2}, 1, 3},
      {"from the kept row", {NewCard(1), NewCard(2), NewCard(3)}, 3, true, {3, 4}, 0, 5},
      {"from a kept row below the first", {NewCard(1), NewCard(2)}, -3, true, {2, 3}, 0, 4},
      {"from a kept row at the end", {NewCard(1), NewCard(2)}, 4, true, {0, 2}, 1, 3},
      {"passing over", {NavigationCard(1), due, early, marked, NewCard(5)}, 2, true, {3, 6}, 0, 7},
      {"not yet due without the lock", {due, early, NewCard(4)}, 2, false, {2, 3, 4}, 0, 5},
      {"up to a marked ID", {NewCard(1), With(NewCard(2), &TestCard::id, "#"), NewCard(3)}, 2, true, {2, 2}, 1, 2},
      {"a duplicate of the card on screen", {NewCard(1), NewCard(1), NewCard(3)}, 2, true, {2, 4}, 0, 5},
      {"nothing due", {early}, 2, true, {0}, 1, 2},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    OpenWith(c.cards);
    file.settings().SetInt("ROW", "Pos", c.kept);
    run->SetMethod(Method::RowOrder);
    run->Set(&RunOptions::time_lock, c.lock);
    std::vector<int> rows;
    for (size_t i = 0; i < c.rows.size(); ++i) {
      told += run->ShowNext();
      rows.push_back(run->card().row);
    }
    EXPECT_EQ(rows, c.rows);
    EXPECT_EQ(told.events, std::vector<RunEvent>(c.ends, {RunMessage::EndOfFile}));
    run->KeepPositions();
    EXPECT_EQ(file.settings().GetInt("ROW", "Pos", 0), c.kept_after);
  }
}

TEST_F(SelectionTest, RowOrderRepeatsUnknownCardsUntilNoneIsLeft) {
  OpenWith(Numbered(8, NewCard), {{"RNG", "chn", 2}, {"RNG", "min", 2}}, {0, 1});
  run->SetMethod(Method::RowOrder);
  EXPECT_EQ(Rows(3, Rating::NotKnown).size(), 3u);  // 2, 3 wrong: from here on the two are repeated
  EXPECT_EQ(run->moment().stage, RunStage::BoxSearch);
  EXPECT_LE(run->card().row, 3);
  for (int i = 0; i < 2; ++i) run->Known();
  EXPECT_EQ(run->card().row, 4);
  EXPECT_EQ(run->moment().stage, RunStage::RowOrder);
}

TestCard LevelCard(int number, const std::string& topic, const std::string& letters = "", int64_t ago = 0) {
  TestCard card = NewCard(number);
  card.topic = topic;
  card.yes_no_row = Letters(letters);
  card.time_row = ago == 0 ? "0" : std::to_string(kNow - ago) + " 0";
  return card;
}

class LeitnerTest : public LearnTest {
 protected:
  BoxCounts Count() {
    CardWriter writer(file);
    return CountBoxes(file, writer);
  }
  void StartBox(int box, int64_t quota = 0) { run->StartBox({box, quota, BuildBoxOrder(file, clock.now).value()}); }
};

TEST_F(LeitnerTest, CountsLevelsRaisedToTheStreak) {
  const TestCard marked = With(LevelCard(9, "1"), &TestCard::id, "#00009");
  Open({LevelCard(1, "00"), LevelCard(2, "Erdkunde"), LevelCard(3, "2", "wwww"), LevelCard(4, "3", "wf"),
        LevelCard(5, "-1", "f"), LevelCard(6, "6"), LevelCard(7, "7"), NavigationCard(8), marked, LevelCard(10, "1")});
  const BoxCounts counts = Count();
  EXPECT_TRUE(counts.fresh == 3 && file.changed());
  EXPECT_EQ(counts.boxes, (std::array<int64_t, 6>{0, 0, 1, 1, 0, 1})) << "counting ends at the marked ID";
  EXPECT_EQ(Topic(4), "4");
  EXPECT_EQ(Topic(5), "3") << "a wrong answer never lowers a level";
  Open({LevelCard(1, "6")});
  EXPECT_EQ(Count().boxes[5], 1) << "the last card";
}

TEST_F(LeitnerTest, CommandsFollowCountsAndLimits) {
  // Quota and new cards after bringing some; the commands (bring, then boxes 1 ... 6) after the count | after bringing.
  const std::tuple<const char*, BoxCounts, int64_t, int64_t, std::string> cases[] = {
      {"only new cards", {30, {}}, 10, 20, "1000000|1100000"},
      {"room for five", {30, {20}}, 25, 25, "1100000|1100000"},
      {"fewer than ten", {3, {}}, 3, 0, "1000000|1100000"},
      {"box 1 over its limit", {30, {26}}, 26, 30, "0100000|0100000"},
      {"box 2 full", {30, {5, 50}}, 15, 20, "1010000|1010000"},
      {"box 3 full, box 6 filled", {0, {1, 1, 100, 1, 1, 1}}, 1, 0, "1101111|1101111"},
      {"nothing", {}, 0, 0, "1000000|1000000"},
  };
  const auto text = [](const BoxCommands& commands) {
    std::string flags = commands.bring_new_cards ? "1" : "0";
    for (const bool allowed : commands.learn) flags += allowed ? '1' : '0';
    return flags;
  };
  for (const auto& [what, counted, quota, fresh, expected] : cases) {
    SCOPED_TRACE(what);
    BoxCounts counts = counted;
    BoxCommands commands;
    AllowAfterCount(counts, {}, commands);
    const std::string after_count = text(commands);
    EXPECT_EQ(BringNewCards({}, counts, commands), quota);
    EXPECT_EQ(counts.fresh, fresh);
    EXPECT_EQ(after_count + "|" + text(commands), expected);
  }
  const BoxCounts counts = {0, {1, 50, 0, 0, 0, 1}};
  BoxLimits limits;
  BoxCommands commands;
  AllowAfterCount(counts, limits, commands);
  limits.cards = {1, 51, 100, 250, 500};
  for (const int box : {1, 2, 3}) AllowAfterLimitEdit(box, counts, limits, commands);
  EXPECT_EQ(text(commands), "0110001");
  AllowAfterCount({}, limits, commands);
  EXPECT_TRUE(commands.learn[5]) << "box 6 stays allowed";
  commands = {};
  for (const int box : {3, 2}) AllowAfterLimitEdit(box, {0, {0, 0, 1}}, {}, commands);
  EXPECT_EQ(text(commands), "0100000") << "box 2 has no cards";
}

TEST_F(LeitnerTest, OrderIsByNewestAnswerWithLateOnesLast) {
  const TestCard late = LevelCard(3, "1", "", -50);
  const TestCard later = LevelCard(4, "1", "", -90);
  // 15 characters are read: 12
  const TestCard long_number = With(LevelCard(6, "1"), &TestCard::time_row, "000000000000012345 9");
  Open({LevelCard(1, "1", "", 100), LevelCard(2, "1", "", 300), late, later, NavigationCard(5), long_number,
        LevelCard(7, "1", "", 300)});
  EXPECT_EQ(BuildBoxOrder(file, kNow), (BoxOrder{7, 3, 8, 2, 5, 4}));
  struct : Progress {
    void SetPosition(int64_t position) override { all.push_back(position); }
    std::vector<int64_t> all;
  } positions;
  Open(std::vector<TestCard>(250, LevelCard(1, "1")));
  EXPECT_EQ(BuildBoxOrder(file, kNow, &positions)->size(), 250U);
  EXPECT_EQ(positions.all, (std::vector<int64_t>{51, 151}));
  ASSERT_TRUE(file.cards().Poke(file.columns().id, 2, ""));
  EXPECT_EQ(BuildBoxOrder(file, kNow), std::nullopt);
}

TEST_F(LeitnerTest, ARunOfABoxTakesNewCardsUpToTheQuotaAndThenTheBox) {
  const TestCard left_out = With(LevelCard(2, "0"), &TestCard::question, "<+++>");
  const std::vector<TestCard> cards = {LevelCard(1, "0"),          left_out,
                                       LevelCard(3, "1", "f", 10), LevelCard(4, "0"),
                                       LevelCard(5, "1", "f", 20), LevelCard(6, "2", "w", 30)};
  const std::tuple<int, int64_t, std::vector<int>> cases[] = {
      {1, 0, {6, 4}}, {1, 1, {2, 6, 4}}, {1, 9, {2, 5, 6, 4}}, {2, 0, {7}}, {3, 0, {}}};
  for (const auto& [box, quota, expected] : cases) {
    Open(cards);
    told = {};
    StartBox(box, quota);
    std::vector<int> rows;
    for (told += run->Start(); told.boxes_done == 0; told += run->ShowNext()) rows.push_back(run->card().row);
    EXPECT_EQ(rows, expected) << "box " << box << ", quota " << quota;
    EXPECT_EQ(told.events, (std::vector<RunEvent>{{RunMessage::BoxDone}}));
    EXPECT_EQ(run->method(), Method::Standard);
    EXPECT_EQ(run->moment().leitner.box, 0);
  }
}

TEST_F(LeitnerTest, TheLockDecidesWhetherACardCountsAsShownTooEarly) {
  const TestCard early = With(LevelCard(1, "1", "w", 5), &TestCard::score, "000001000");
  for (const bool lock : {true, false}) {
    Open({early, early, early});
    run->Set(&RunOptions::box_lock, lock);
    StartBox(1);
    run->Start();
    run->Known();  // the first card of a run is not classified, so this one is logged
    EXPECT_EQ(run->card().status, lock ? CardStatus::Overlearning : CardStatus::RandomChoice);
    run->Known();
    EXPECT_EQ(run->figures().answered, lock ? 1 : 2);
  }
}

}  // namespace
}  // namespace tessaro
