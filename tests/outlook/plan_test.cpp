#include "outlook/plan.h"

#include <numeric>

#include "outlook/knowledge.h"
#include "tests/outlook/outlook_fixture.h"

namespace tessaro {
namespace {

class PlanTest : public OutlookTest {
 protected:
  PlanReport Run(const PlanWish& wish) { return Finish(Plan(file, deck, settings, days, wish), 50); }
  int64_t Today() { return days.DayOf(kNow); }
  // Its first curve shows what is left of the answered cards without learning.
  void ExpectOnlyForgotten(const PlanReport& report) {
    std::vector<int> weak;
    for (size_t i = 0; i < report.days.size(); ++i) {
      const int64_t time = i == 0 ? kNow : days.HourOf(Today() + report.days[i], deck.session_hour);
      double expected = 0;
      weak.clear();
      for (const CardTrace& trace : deck.answered) {
        const double recall = RecallAt(trace, deck.weights, time);
        expected += recall;
        if (recall < 0.8) weak.push_back(trace.row);
      }
      EXPECT_NEAR(report.curves[0].known[i], expected, 1e-6) << i;
    }
    EXPECT_EQ(report.curves[0].weak_rows, weak);
  }

  IniFile settings;
  DeckOutlook deck;
};

// Cards learned some time ago, and new ones.
std::vector<TestCard> OldDeck(int answered, int fresh) {
  std::vector<TestCard> deck = DrawDeck(31, answered, 5, kStandardWeights, kNow);
  for (int i = 0; i < fresh; ++i) deck.push_back(TestCard{});
  for (size_t i = 0; i < deck.size(); ++i) {
    deck[i].id = IdText(static_cast<int64_t>(i) + 1);
    if (deck[i].yes_no_row[0] == 'f' && deck[i].time_row.size() > 1) deck[i].score = "0";
  }
  return deck;
}

TEST_F(PlanTest, BeginsWithWhatIsKnownNowAndForgetsWithoutLearning) {
  Open(OldDeck(80, 20));
  deck = Read();
  const PlanReport report = Run({Today() + 40, 0, 5});
  ASSERT_EQ(report.curves.size(), 4U);
  ASSERT_TRUE(report.days.front() == 0 && report.days.back() == 40);
  const double now = Finish(KnowledgeCount(file, deck)).known;
  for (const PlanCurve& curve : report.curves) {
    EXPECT_NEAR(curve.known[0], now, 1e-9);
    EXPECT_EQ(curve.known, report.curves[0].known) << "no minutes are no learning";
  }
  ExpectOnlyForgotten(report);
}

TEST_F(PlanTest, LearningHelpsMoreWithMoreMinutesAndLeavesTheDeckAlone) {
  Open(OldDeck(150, 60));
  const std::string before = FileText(file.cards());
  deck = Read();
  const PlanWish wish = {Today() + 30, 6, 4};
  const PlanReport report = Run(wish);
  const auto last = [&](size_t curve) { return report.curves[curve].known.back(); };
  EXPECT_LT(last(0), last(1));
  EXPECT_LT(last(1) - 2, last(2));
  EXPECT_GT(last(3), last(0) + 20) << "the new cards are learned too";
  EXPECT_LE(last(3), 210);
  EXPECT_TRUE(FileText(file.cards()) == before && !file.changed());

  const PlanReport again = Run(wish);
  for (size_t i = 0; i < 4; ++i)
    EXPECT_TRUE(report.curves[i].known == again.curves[i].known &&
                report.curves[i].weak_rows == again.curves[i].weak_rows);
}

TEST_F(PlanTest, ShowsNoMoreNewCardsThanTheDayAllows) {
  Open(OldDeck(0, 40));
  deck = Read();
  const PlanReport none = Run({Today() + 10, 60, 0});
  EXPECT_EQ(none.curves[3].known.back(), 0);
  const PlanReport some = Run({Today() + 3, 60, 2});
  EXPECT_GT(some.curves[2].known.back(), 3);
  EXPECT_LE(some.curves[2].known.back(), 6);
}

TEST_F(PlanTest, CopyKeepsScoresAndPutsNewCardsBehind) {
  std::vector<TestCard> cards(12, CardWith({{kNow - 2 * kDay, 'w'}, {kNow - kDay, 'w'}}, 300 * kDay));
  cards[7].score = "000000001";
  for (size_t i = 0; i < cards.size(); ++i) cards[i].id = std::to_string(100'001 + i);
  Open(cards);
  deck = Read();
  PlanStart start;
  HistoriesText copy;
  for (const CardTrace& trace : deck.answered) {
    start.rows.push_back(trace.row);
    start.traces.push_back(trace);
    copy.Add(CardReader(file), trace.row);
  }
  start.new_rows = {14, 15};
  start.text = copy.Take();
  PlanSession session(start, std::make_unique<CopiedDeck>(start.text), deck, settings);
  session.Begin(kNow, 0.1, 0);
  EXPECT_TRUE(session.Answer());
  EXPECT_EQ(session.traces()[7].answers, 3) << "the only one that is due";
  EXPECT_FALSE(session.Answer());
  session.Begin(kNow + kHour, 3 * deck.seconds_per_answer / 60, 2);
  while (session.Answer()) {
  }
  for (size_t i = 0; i < 12; ++i) EXPECT_GE(session.traces()[i].answers, 2) << i;
}

// Those that had no turn yet count among the new cards of the next day.
TEST_F(PlanTest, SessionsEndInTimeAndAdmitNoNewCardsBeforeOthersThatWait) {
  Open(OldDeck(0, 20));
  deck = Read();
  PlanStart start;
  start.new_rows = deck.new_rows;
  start.text = HistoriesText().Take();
  PlanSession session(start, std::make_unique<CopiedDeck>(start.text), deck, settings);
  size_t learned = 0;
  for (int day = 0; day < 4; ++day) {
    session.Begin(kNow + day * kDay, 2 * deck.seconds_per_answer / 60, 5);
    EXPECT_EQ(session.traces().size(), 5 + learned);
    int given = 0;
    while (session.Answer()) ++given;
    EXPECT_EQ(given, 2);
    learned = 0;
    for (const MemoryTrace& trace : session.traces()) learned += trace.answers > 0 ? 1 : 0;
    EXPECT_GT(learned, 0U);
  }
}

TEST_F(PlanTest, CatchesUpSoonerWithMoreMinutes) {
  std::vector<TestCard> cards;
  for (int i = 0; i < 300; ++i) {
    cards.push_back(CardWith({{kNow - 40 * kDay, 'w'}, {kNow - (30 - i % 20) * kDay, 'w'}}, kDay));
    cards.back().id = IdText(i + 1);
  }
  // New cards in front of the index do not keep those that are due from being asked.
  for (int i = 0; i < 60; ++i) cards.push_back(TestCard{.id = std::to_string(100'301 + i), .score = "000000000"});
  Open(cards);
  deck = Read();
  const PlanReport report = Finish(Plan::CatchUp(file, deck, settings, days, 10), 50);
  ASSERT_EQ(report.curves.size(), 3U);
  EXPECT_GT(report.curves[1].caught_up, 1);
  EXPECT_GT(report.curves[0].caught_up, report.curves[1].caught_up);
  EXPECT_LT(report.curves[2].caught_up, report.curves[1].caught_up);
  EXPECT_GT(report.curves[2].caught_up, 0);
  EXPECT_EQ(Finish(Plan::CatchUp(file, deck, settings, days, 600), 50).curves[0].caught_up, 1) << "today";
}

// Of more cards than are learned the others are counted as well.
TEST_F(PlanTest, OfALargeDeckForgetsWhatItDoesNotLearn) {
  std::vector<TestCard> cards;
  constexpr int kLearned = 20'000;
  for (int i = 0; i < kLearned + 100; ++i)
    cards.push_back(CardWith({{kNow - (1 + i % 90) * kDay, i % 3 == 0 ? 'f' : 'w'}}, i % 3 == 0 ? 0 : 1 + i % 70));
  Open(cards);
  deck = Read();
  const PlanReport report = Run({Today() + 2, 0, 0});
  EXPECT_TRUE(report.partial);
  ExpectOnlyForgotten(report);
}

TEST_F(PlanTest, OfAnExamTodayOrADeckWithoutAnswersIsShort) {
  Open(OldDeck(3, 0));
  deck = Read();
  EXPECT_EQ(Run({Today(), 20, 5}).curves[2].known.size(), 1U);
  EXPECT_EQ(Run({Today() - 5, 20, 5}).days, std::vector<int64_t>{0});
  const std::vector<int64_t> dates = Run({Today() + 730, 0, 0}).days;
  EXPECT_EQ(dates.back(), 730);
  EXPECT_EQ(dates[1], 13) << "about 60 of them";
  Open({{.question = "<navigation>"}});
  deck = Read();
  EXPECT_EQ(Run({Today() + 5, 20, 5}).curves[2].known.back(), 0);
}

}  // namespace
}  // namespace tessaro
