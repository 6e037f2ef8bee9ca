#include <cmath>
#include <ctime>
#include <numeric>
#include <set>

#include "cards/card_edit.h"
#include "cards/due_rule.h"
#include "outlook/activity.h"
#include "outlook/card_lines.h"
#include "outlook/due_count.h"
#include "outlook/prediction_check.h"
#include "tests/outlook/outlook_fixture.h"

namespace tessaro {
namespace {

template <typename Spans>
std::vector<int> AllRows(const Spans& spans) {
  std::vector<int> rows;
  for (const std::vector<int>& part : spans) rows.insert(rows.end(), part.begin(), part.end());
  std::sort(rows.begin(), rows.end());
  return rows;
}

std::vector<int> RowsOf(const DeckOutlook& deck) {
  std::vector<int> rows;
  for (const CardTrace& trace : deck.answered) rows.push_back(trace.row);
  return rows;
}

// Answers of many kinds, some cards of every sort that is counted apart or not at all.
std::vector<TestCard> MixedDeck() {
  std::vector<TestCard> deck = DrawDeck(5, 120, 9, kStandardWeights);
  for (size_t i = 0; i < deck.size(); ++i) {
    deck[i].score = std::to_string((i % 12) * i * i * 3000);
    deck[i].time_learned = std::to_string(i * 7 % 90);
  }
  deck.push_back(TestCard{});
  deck.push_back(CardWith({{kNow + 1, 'w'}}));
  deck.push_back(CardWith({{kNow - 5, 'w'}, {kNow + kDay, 'f'}}));
  for (const auto& [field, text] :
       {std::pair(&TestCard::question, "<navigation>"), {&TestCard::answer, "<+++>"}, {&TestCard::id, "00#001"}}) {
    deck.push_back(CardWith({{kNow - kDay, 'w'}}));
    deck.back().*field = text;
  }
  deck.push_back(CardWith({{kNow - kDay, 'x'}}));
  deck.push_back(CardWith({{kNow, 'w'}}));
  return deck;
}

class Evaluation : public OutlookTest {};

TEST_F(Evaluation, PutsEveryCardWhereItCounts) {
  Open(MixedDeck());
  const DeckOutlook deck = Read();
  EXPECT_EQ(deck.answered.size(), 121U) << "an answer of this second is none of the future";
  EXPECT_EQ(deck.new_rows, (std::vector{122, 128}));
  EXPECT_EQ(deck.future_rows, (std::vector{123, 124}));
  EXPECT_EQ(deck.counted(), 123);
  EXPECT_EQ(deck.answers, 120 * 9 + 1);
  EXPECT_EQ(deck.TraceOf(122), nullptr);
  EXPECT_EQ(deck.TraceOf(50)->row, 50);
}

TEST_F(Evaluation, OfADeckWithoutCardsIsEmpty) {
  Open({{.question = "<navigation>"}});
  const DeckOutlook deck = Read();
  EXPECT_EQ(deck.counted(), 0);
  EXPECT_EQ(deck.weights, kStandardWeights);
  EXPECT_EQ(Finish(KnowledgeCount(file, deck)).known, 0);
  EXPECT_EQ(Finish(PredictionCheck(file, kNow, std::nullopt)).answers, 0);
  EXPECT_EQ(deck.session_hour, 18);
  EXPECT_EQ(deck.repeats_after_miss, 1);
  EXPECT_DOUBLE_EQ(deck.FirstSight(), 0.4);
}

TEST_F(Evaluation, SumsUpWhatIsStored) {
  const int64_t morning = days.HourOf(days.DayOf(kNow) - 2, 9);
  std::vector<TestAnswer> full(64, {morning, 'w'});
  full.back().time = morning + 6 * kHour;
  Open({CardWith(full), CardWith({full.begin(), full.end() - 1}), CardWith({{morning + 6 * kHour, 'f'}}),
        CardWith(full)});
  DeckOutlook deck = Read();
  EXPECT_EQ(deck.full_histories, 2);
  EXPECT_EQ(deck.newest, morning + 6 * kHour);
  EXPECT_EQ(deck.session_hour, 9);
  EXPECT_DOUBLE_EQ(deck.FirstSight(), (3.0 + 2) / (4 + 5));
  Open({CardWith({{morning + 6 * kHour, 'w'}}), CardWith({{morning, 'w'}})});
  deck = Read();
  EXPECT_EQ(deck.session_hour, 9) << "half of the answers are enough";
  EXPECT_EQ(deck.newest, morning + 6 * kHour);
}

TEST_F(Evaluation, MeasuresWhatAnAnswerTakes) {
  const std::vector<TestAnswer> one = {{kNow - kDay, 'w'}};
  const std::vector<TestAnswer> full(64, {kNow - kDay, 'w'});
  std::vector<TestAnswer> many(60, {kNow - kDay, 'w'});
  const std::tuple<const char*, std::vector<TestCard>, double> cases[] = {
      {"too few answers", {CardWith(one, 1, 20)}, 8},
      {"enough", {CardWith(many, 1, 600)}, 10},
      {"full histories tell nothing", {CardWith(many, 1, 600), CardWith(full, 1, 90000)}, 10},
      {"cards without a time tell nothing", {CardWith(many, 1, 600), CardWith(many, 1, 0)}, 10},
      {"hasty", {CardWith(many, 1, 30)}, 2},
      {"slow", {CardWith(many, 1, int64_t{1} << 62)}, 120},
  };
  for (const auto& [name, cards, seconds] : cases) {
    Open(cards);
    EXPECT_DOUBLE_EQ(Read().seconds_per_answer, seconds) << name;
  }
}

TEST_F(Evaluation, CountsFurtherAnswersOnTheDayOfAMiss) {
  const int64_t noon = days.StartOf(days.DayOf(kNow) - 3) + 12 * kHour;
  Open({CardWith({{noon, 'f'}, {noon + 60, 'f'}, {noon + 120, 'w'}, {noon + kDay, 'f'}}),
        CardWith({{noon, 'w'}, {noon + 60, 'w'}})});
  // Two days with a miss, two further answers on the first of them.
  EXPECT_DOUBLE_EQ(Read().repeats_after_miss, 1);
  EXPECT_EQ(Read().session_hour, 12);
  Open({CardWith({{noon, 'f'}, {noon + 60, 'w'}, {noon + 120, 'w'}, {noon + 12 * kHour, 'w'}})});
  EXPECT_DOUBLE_EQ(Read().repeats_after_miss, 2) << "at midnight the day is over";
}

TEST_F(Evaluation, ListsTheCardsThatTookMostTime) {
  std::vector<TestCard> cards;
  for (int i = 0; i < 60; ++i) cards.push_back(CardWith({{kNow - kDay, 'w'}}, 1, i % 30));
  cards[7].time_learned = "viel";
  Open(cards);
  const DeckOutlook deck = Read();
  ASSERT_EQ(deck.costs.size(), DeckOutlook::kCosts);
  EXPECT_EQ(deck.costs[0].row, 31);
  EXPECT_EQ(deck.costs[1].row, 61);
  EXPECT_EQ(deck.seconds_learned, 2 * 29 * 30 / 2 - 7);
  for (size_t i = 1; i < deck.costs.size(); ++i) EXPECT_GE(deck.costs[i - 1].seconds, deck.costs[i].seconds);
}

TEST_F(Evaluation, BarsHoldEachAnsweredCardOnce) {
  Open(MixedDeck());
  const DeckOutlook deck = Read();
  const Knowledge knowledge = Finish(KnowledgeCount(file, deck));
  EXPECT_EQ(AllRows(knowledge.by_recall), RowsOf(deck));
  EXPECT_EQ(AllRows(knowledge.by_retention), RowsOf(deck));
  double known = 0;
  double variance = 0;
  for (const CardTrace& trace : deck.answered) {
    const double recall = RecallAt(trace, deck.weights, kNow);
    known += recall;
    variance += recall * (1 - recall);
  }
  EXPECT_NEAR(knowledge.known, known, 1e-9);
  EXPECT_NEAR(knowledge.spread * knowledge.spread, variance, 1e-9);
  for (const int64_t horizon : {7, 30, 90, 365}) {
    std::vector<std::vector<int>> spans;
    for (const DueSpan& span : Finish(DueCount(file, deck, {}, days, horizon))) spans.push_back(span.rows);
    EXPECT_EQ(AllRows(spans), RowsOf(deck)) << horizon;
  }
}

TEST(Knowledge, ClassesBeginAtTheirLowerBound) {
  const std::pair<double, size_t> recalls[] = {{0, 0},  {.4999, 0}, {.5, 1},  {.5999, 1}, {.6, 2},
                                               {.9, 5}, {.9499, 5}, {.95, 6}, {1, 6}};
  for (const auto& [recall, expected] : recalls) EXPECT_EQ(CardClassOf(recall), expected) << recall;
  EXPECT_EQ(RecallClassOf(.31), 3U);
  const std::pair<int64_t, size_t> scores[] = {
      {-1, 0}, {0, 0}, {1, 1}, {3600, 1}, {3601, 2}, {86'400, 2}, {31'536'000, 9}, {31'536'001, 10}, {kMaxScore, 10}};
  for (const auto& [score, expected] : scores) EXPECT_EQ(RetentionClassOf(score), expected) << score;
}

// In spans of every length, on the night of a day with 23 hours too.
TEST_F(Evaluation, ActivityCountsWhatWasAnsweredOnADay) {
  const int64_t today = days.DayOf(kNow);
  const int64_t start = days.StartOf(today);
  Open({CardWith({{start - 1, 'f'}, {start, 'w'}, {start + 1, 'w'}}),
        CardWith({{days.StartOf(today - 29) - 1, 'w'}, {days.StartOf(today - 29), 'f'}}),
        CardWith({{kNow - 10, 'w'}, {kNow + 1, 'w'}})});
  const std::vector<ActivitySpan> month = Finish(ActivityCount(file, kNow, days, ActivityPeriod::Month));
  ASSERT_EQ(month.size(), 30U);
  EXPECT_EQ(std::tuple(month[29].known, month[28].missed, month[0].missed), std::tuple(2, 1, 1));
  for (const ActivitySpan& last : {month[29], CountToday(file, kNow, days)})
    EXPECT_TRUE(last.known == 2 && last.missed == 0 && last.rows == std::vector{2});
  const std::vector<ActivitySpan> year = Finish(ActivityCount(file, kNow, days, ActivityPeriod::Year));
  ASSERT_EQ(year.size(), 53U);
  int64_t answers = 0;
  for (const ActivitySpan& span : year) answers += span.answers();
  EXPECT_EQ(answers, 5);
  EXPECT_EQ(year.back().first_day, today - 1) << "the day was a Tuesday";
}

// One answer of each card in the period: then its prediction is made of what was before and nothing else.
TEST_F(Evaluation, TurningAnAnswerChangesNoPredictionForIt) {
  std::vector<TestCard> deck;
  for (int i = 0; i < 150; ++i) {
    const int64_t old = kNow - (60 + i % 40) * kDay;
    deck.push_back(CardWith({{old, i % 5 ? 'w' : 'f'}, {old + 3 * kDay, i % 3 ? 'w' : 'f'}, {kNow - i * 60, 'w'}}));
  }
  Open(deck);
  // The oldest of these answers is given in the first second of the period.
  const int64_t start = kNow - 149 * kMinute;
  PredictionCheck check(file, kNow, start);
  while (check.Step(50)) {
  }
  EXPECT_NE(check.WeightsFor(2), kStandardWeights);
  const PredictionReport one = check.Take();
  for (TestCard& card : deck) card.yes_no_row[0] = 'f';
  Open(deck);
  const PredictionReport other = Finish(PredictionCheck(file, kNow, start));
  EXPECT_EQ(one.answers, 150);
  EXPECT_EQ(one.predicted, other.predicted);
  for (size_t i = 0; i < kRecallClasses; ++i) EXPECT_EQ(one.classes[i].rows, other.classes[i].rows);
  EXPECT_EQ(one.known, 150);
  EXPECT_EQ(other.known, 0);
  // That deck behaved like no average before.
  EXPECT_GT(other.log_loss, *one.usual_loss);
}

TEST_F(Evaluation, HalvesOfTheCardsPredictEachOther) {
  std::vector<TestCard> deck = DrawDeck(21, 400, 10, kStandardWeights);
  Open(deck);
  PredictionCheck check(file, kNow, std::nullopt);
  while (check.Step(100)) {
  }
  EXPECT_NE(check.WeightsFor(2), check.WeightsFor(3));
  for (const int row : {2, 3}) EXPECT_NE(check.WeightsFor(row), kStandardWeights);
  for (size_t i = 0; i < deck.size(); i += 2) deck[i].yes_no_row = std::string(64, 'f');
  Open(deck);
  PredictionCheck turned(file, kNow, std::nullopt);
  while (turned.Step(100)) {
  }
  EXPECT_EQ(turned.WeightsFor(2), check.WeightsFor(2)) << "a card's own half is not asked";
  EXPECT_NE(turned.WeightsFor(3), check.WeightsFor(3));
  const PredictionReport report = check.Take();
  EXPECT_EQ(report.answers, 400 * 9);
  EXPECT_LT(report.mean_error, 0.05);
  EXPECT_LT(report.log_loss, *report.usual_loss);
  EXPECT_NEAR(report.predicted / 3600, static_cast<double>(report.known) / 3600, 0.02);
  int64_t answers = 0;
  for (const PredictionClass& found : report.classes) answers += found.answers;
  EXPECT_EQ(answers, report.answers);
}

// A learner who knew everything so far is not certain to go on so.
TEST_F(Evaluation, AverageOfAPeriodIsNeverCertain) {
  const std::vector<TestAnswer> answers = {{kNow - 9 * kDay, 'w'}, {kNow - 8 * kDay, 'w'}, {kNow - kHour, 'f'}};
  Open(std::vector<TestCard>(10, CardWith(answers)));
  EXPECT_NEAR(*Finish(PredictionCheck(file, kNow, kNow - kDay)).usual_loss, -std::log(0.5 / 10), 1e-9);
}

TEST(Predictions, WilsonIntervalHoldsItsWorkedExamples) {
  const Share some = WilsonInterval(8, 10);
  EXPECT_NEAR(some.low, 0.4902, 0.0001);
  EXPECT_NEAR(some.high, 0.9433, 0.0001);
  EXPECT_NEAR(WilsonInterval(20, 20).low, 0.8389, 0.0001);
  EXPECT_NEAR(WilsonInterval(0, 20).low, 0, 1e-12);
}

// The zone of the tests: the days below have 23 and 25 hours in it.
class InBerlin : public OutlookTest {
 protected:
  void SetUp() override {
    setenv("TZ", "Europe/Berlin", 1);
    tzset();
  }
  void TearDown() override {
    unsetenv("TZ");
    tzset();
  }
};

TEST_F(InBerlin, DaysHaveTheirTrueLengths) {
  constexpr int64_t kSpring = 1'711'839'600;  // 2024-03-31 00:00
  constexpr int64_t kAutumn = 1'729'980'000;  // 2024-10-27 00:00
  for (const auto& [start, hours] : {std::pair{kSpring, 23}, std::pair{kAutumn, 25}}) {
    const int64_t day = days.DayOf(start);
    EXPECT_EQ(days.StartOf(day), start);
    EXPECT_EQ(days.DayOf(start - 1), day - 1);
    EXPECT_EQ(days.DayOf(start + hours * kHour - 1), day);
    EXPECT_EQ(days.DayOf(start + hours * kHour), day + 1);
    EXPECT_EQ(days.HourOf(day, 12), start + (hours - 12) * kHour);
  }
  for (const int64_t odd : {int64_t{0}, int64_t{-1}, int64_t{1} << 62, -(int64_t{1} << 62)}) (void)days.DayOf(odd);
}

TEST_F(InBerlin, CardsAreDueOnTheirDay) {
  constexpr int64_t kNoon = 1'711'796'400;  // 2024-03-30 12:00, the day before the short one
  constexpr int64_t kMidnight = kNoon + 12 * kHour;
  const auto known = [&](int64_t due) { return CardWith({{kNoon - 100, 'w'}}, due - (kNoon - 100)); };
  // When a card is due, the card, the weight of retention times, and its span: overdue, today, tomorrow ...
  const std::tuple<const char*, TestCard, double, size_t> cases[] = {
      {"a second ago", known(kNoon - 1), 1, 0},
      {"this second", known(kNoon), 1, 1},
      {"before midnight", known(kMidnight - 1), 1, 1},
      {"at midnight", known(kMidnight), 1, 2},
      {"at the end of the short day", known(kMidnight + 23 * kHour - 1), 1, 2},
      {"after it", known(kMidnight + 23 * kHour), 1, 3},
      {"weighted", CardWith({{kNoon - 100, 'w'}}, 12 * kHour), 2.5, 2},
      {"not known", CardWith({{kNoon - 100, 'f'}}, 99999), 1, 0},
      {"known without a retention time", CardWith({{kNoon - 100, 'w'}}, 0), 1, 0},
      {"known this second without one", CardWith({{kNoon, 'w'}}, 0), 1, 0},
      {"in a week", known(kMidnight + 7 * kDay - kHour), 1, 9},
      {"never", CardWith({{kNoon - 100, 'w'}}, kMaxScore), 4, 9},
  };
  for (const auto& [name, card, weight, span] : cases) {
    Open({card});
    const DeckOutlook deck = Read(kNoon);
    const std::vector<DueSpan> spans = Finish(DueCount(file, deck, {.retention_weight = weight}, days, 7));
    ASSERT_EQ(spans.size(), 10U);
    for (size_t i = 0; i < spans.size(); ++i) EXPECT_EQ(spans[i].rows.size(), i == span ? 1U : 0U) << name << i;
  }
}

TEST_F(Evaluation, MinutesOfADayHoldTheRepeatsAfterMisses) {
  const int64_t noon = days.StartOf(days.DayOf(kNow) - 3) + 12 * kHour;
  Open({CardWith({{noon, 'f'}, {noon + 60, 'w'}}, kDay)});
  const DeckOutlook deck = Read();
  const std::vector<DueSpan> spans = Finish(DueCount(file, deck, {}, days, 90));
  const double missed = 1 - RecallAt(deck.answered[0], deck.weights, kNow);
  EXPECT_NEAR(spans[0].minutes, 8.0 / 60 * (1 + missed), 1e-9);
  EXPECT_TRUE(spans.size() == 2 + 13 + 1 && spans[14].days == 6);
  Open({CardWith({{kNow, 'w'}}, 3 * kDay), CardWith({{kNow, 'w'}}, kDay), CardWith({{kNow, 'w'}}, 2 * kDay)});
  const DeckOutlook later = Read();
  DueCount count(file, later, {}, days, 7);
  while (count.Step(1)) {
  }
  EXPECT_EQ(count.next_due(), kNow + kDay);
}

using CardLinesTest = OutlookTest;

TEST_F(CardLinesTest, GoByWhatTheyShowAndFollowTheirCards) {
  std::vector<TestCard> cards = {
      CardWith({{kNow - 3 * kDay, 'f'}}, 0, 50), TestCard{}, CardWith({{kNow - kDay, 'w'}}, 5 * kDay, 20),
      CardWith({{kNow - 2 * kDay, 'w'}}, 1, 20), CardWith({{kNow - 9 * kDay, 'f'}, {kNow - 8 * kDay, 'f'}}, 0, -5)};
  const char* const questions[] = {"banane", "\xC4hre", "Apfel aus dem Garten, reif",
                                   "<b>a</b>pfel aus dem Garten, s\xFC\xDF", "Banane"};
  for (size_t i = 0; i < cards.size(); ++i) cards[i].question = questions[i];
  Open(cards);
  CardLines lines(file, std::make_shared<const DeckOutlook>(Read()), {}, {6, 2, 3, 4, 5, 99});
  const auto rows = [&] {
    std::vector<int> found;
    for (int place = 0; place < lines.Count(); ++place) found.push_back(lines.Row(place));
    return found;
  };
  EXPECT_EQ(rows(), (std::vector<int>{6, 2, 3, 4, 5}));
  const std::tuple<CardLineKey, bool, std::vector<int>> cases[] = {
      {CardLineKey::Question, false, {4, 5, 2, 6, 3}}, {CardLineKey::Question, true, {3, 2, 6, 5, 4}},
      {CardLineKey::Recall, false, {3, 6, 2, 5, 4}},   {CardLineKey::Due, false, {3, 5, 2, 6, 4}},
      {CardLineKey::Misses, true, {6, 2, 3, 4, 5}},    {CardLineKey::Seconds, false, {3, 6, 4, 5, 2}},
      {CardLineKey::Row, true, {6, 5, 4, 3, 2}}};
  for (const auto& [key, descending, expected] : cases) {
    lines.Sort(key, descending);
    EXPECT_EQ(rows(), expected) << static_cast<int>(key);
  }
  const int64_t due = lines.Due(lines.PlaceOf(4));
  CardCommand command;
  command.Remove(3);
  command.Remove(5);
  command.InsertBehind(1, {});
  command.InsertBehind(1, {});
  EXPECT_EQ(lines.Follow(CardEdit(file).Apply(command)->shift), (std::vector<int>{1, 3}));
  lines.DropGone();
  EXPECT_EQ(rows(), (std::vector<int>{6, 5, 4}));
  EXPECT_EQ(std::tuple(lines.Due(1), lines.Seconds(2), lines.Misses(0)), std::tuple(due, 50, 2));
}

}  // namespace
}  // namespace tessaro
