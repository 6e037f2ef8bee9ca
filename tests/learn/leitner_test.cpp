#include "learn/leitner_count.h"
#include "learn/leitner_method.h"
#include "tests/learn/learn_fixture.h"

namespace tessaro {
namespace {

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
  EXPECT_EQ(counts.fresh, 3);
  EXPECT_EQ(counts.boxes, (std::array<int64_t, 6>{0, 0, 1, 1, 0, 1})) << "counting ends at the marked ID";
  EXPECT_EQ(Topic(4), "4");
  EXPECT_EQ(Topic(5), "3") << "a wrong answer never lowers a level";
  EXPECT_TRUE(file.changed());
}

TEST_F(LeitnerTest, CommandsFollowCountsAndLimits) {
  const struct {
    const char* what;
    BoxCounts counts;
    int64_t quota;  // after bringing new cards
    int64_t fresh;
    std::string commands;  // bring, then boxes 1 ... 6; after the count | after bringing
  } cases[] = {
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
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    BoxCounts counts = c.counts;
    BoxCommands commands;
    AllowAfterCount(counts, {}, commands);
    const std::string after_count = text(commands);
    EXPECT_EQ(BringNewCards({}, counts, commands), c.quota);
    EXPECT_EQ(counts.fresh, c.fresh);
    EXPECT_EQ(after_count + "|" + text(commands), c.commands);
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
}

TEST_F(LeitnerTest, OrderIsByNewestAnswerWithLateOnesLast) {
  const TestCard late = LevelCard(3, "1", "", -50);
  const TestCard later = LevelCard(4, "1", "", -90);
  // 15 characters are read: 12
  const TestCard long_number = With(LevelCard(6, "1"), &TestCard::time_row, "000000000000012345 9");
  Open({LevelCard(1, "1", "", 100), LevelCard(2, "1", "", 300), late, later, NavigationCard(5), long_number,
        LevelCard(7, "1", "", 300)});
  EXPECT_EQ(BuildBoxOrder(file, kNow), (BoxOrder{7, 3, 8, 2, 5, 4}));
  Open({LevelCard(1, "1")});
  ASSERT_TRUE(file.cards().Poke(file.columns().id, 2, ""));
  EXPECT_EQ(BuildBoxOrder(file, kNow), std::nullopt);
}

TEST_F(LeitnerTest, ARunOfABoxTakesNewCardsUpToTheQuotaAndThenTheBox) {
  const TestCard left_out = With(LevelCard(2, "0"), &TestCard::question, "<+++>");
  const std::vector<TestCard> cards = {LevelCard(1, "0"),          left_out,
                                       LevelCard(3, "1", "f", 10), LevelCard(4, "0"),
                                       LevelCard(5, "1", "f", 20), LevelCard(6, "2", "w", 30)};
  const struct {
    int box;
    int64_t quota;
    std::vector<int> rows;
  } cases[] = {{1, 0, {6, 4}}, {1, 1, {2, 6, 4}}, {1, 9, {2, 5, 6, 4}}, {2, 0, {7}}, {3, 0, {}}};
  for (const auto& c : cases) {
    Open(cards);
    told = {};
    StartBox(c.box, c.quota);
    std::vector<int> rows;
    for (told += run->Start(); told.boxes_done == 0; told += run->ShowNext()) rows.push_back(run->card().row);
    EXPECT_EQ(rows, c.rows) << "box " << c.box << ", quota " << c.quota;
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
