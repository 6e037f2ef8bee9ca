#include "outlook/recall.h"

#include <cmath>

#include "tests/outlook/outlook_fixture.h"

namespace tessaro {
namespace {

AnswerSeries SeriesOf(const TestCard& card) {
  return ReadAnswers(card.time_row, card.yes_no_row);
}

std::vector<AnswerSeries> SeriesOf(const std::vector<TestCard>& deck) {
  std::vector<AnswerSeries> all;
  for (const TestCard& card : deck) all.push_back(SeriesOf(card));
  return all;
}

RecallWeights Fit(const std::vector<AnswerSeries>& deck) {
  FitSamples samples;
  for (const AnswerSeries& series : deck) samples.AddCard(series);
  return RecallFit(samples.TakeSamples()).Solve();
}

TEST(Recall, IsThatOfWorkedExamples) {
  const int64_t day = kDay;
  // Answers, and the recall after 10 minutes, 1, 7, 30, 365 days.
  std::tuple<const char*, std::vector<TestAnswer>, std::array<double, 5>> cases[] = {
      {"w", {{0, 'w'}}, {.9632, .9331, .8881, .8388, .7159}},
      {"f", {{0, 'f'}}, {.8417, .7225, .5969, .4926, .3199}},
      {"w0 w1 w4", {{0, 'w'}, {day, 'w'}, {4 * day, 'w'}}, {.9829, .9676, .9405, .9040, .7899}},
      {"five spaced",
       {{0, 'w'}, {day, 'w'}, {4 * day, 'w'}, {12 * day, 'w'}, {30 * day, 'w'}},
       {.9886, .9788, .9626, .9412, .8679}},
      {"relearned",
       {{0, 'w'}, {day, 'w'}, {4 * day, 'w'}, {12 * day, 'f'}, {12 * day + 600, 'w'}},
       {.9577, .9235, .8728, .8182, .6856}},
      {"massed",
       {{0, 'w'}, {60, 'w'}, {120, 'w'}, {180, 'w'}, {240, 'w'}, {300, 'w'}},
       {.9611, .8993, .8130, .7173, .5016}},
      {"alternating",
       {{0, 'f'},
        {2 * day, 'w'},
        {4 * day, 'f'},
        {6 * day, 'w'},
        {8 * day, 'f'},
        {10 * day, 'w'},
        {12 * day, 'f'},
        {14 * day, 'w'},
        {16 * day, 'f'}},
       {.7806, .6353, .4977, .3939, .2394}},
      {"w0 w1 f30", {{0, 'w'}, {day, 'w'}, {30 * day, 'f'}}, {.9008, .8163, .7165, .6237, .4454}},
      {"missed twelve times", std::vector<TestAnswer>(12, {0, 'f'}), {.1424, .0752, .0442, .0294, .0145}},
      {"clock set back after a miss",
       {{0, 'w'}, {4 * day, 'w'}, {5 * day, 'f'}, {6 * day, 'w'}, {2 * day, 'w'}},
       {.9413, .8518, .7368, .6203, .3932}},
  };
  const int64_t elapsed[] = {10 * kMinute, day, 7 * day, 30 * day, 365 * day};
  for (auto& [name, answers, recall] : cases) {
    for (TestAnswer& answer : answers) answer.time += kNow;
    const MemoryTrace trace = TraceOf(SeriesOf(CardWith(answers)));
    const auto after = [&](int64_t seconds) { return RecallAt(trace, kStandardWeights, trace.newest + seconds); };
    EXPECT_EQ(after(-5), after(1)) << name;
    for (size_t i = 0; i < std::size(elapsed); ++i)
      EXPECT_NEAR(after(elapsed[i]), recall[i], 0.00005) << name << " after " << elapsed[i];
  }
}

TEST(Recall, ReadsEveryFormOfAHistory) {
  const std::string rest(62, 'f');
  std::string zeros;
  for (int i = 0; i < 61; ++i) zeros += "0 ";
  // What is odd about a history, its times and letters, and its answers, the oldest first.
  const std::tuple<const char*, std::string, std::string, std::string> cases[] = {
      {"after an answer", "300 200 " + zeros + "0 ", "wf" + rest, "f200 w300"},
      {"after an undo", "300 200 " + zeros, "wf" + rest, "f200 w300"},
      {"short rows", "300 200 100", "ww", "w200 w300"},
      {"a letter that is none", "300 200 100", "wxw" + rest, "w300"},
      {"a gap in the times", "300 0 100", "www" + rest, "w300"},
      {"falling times stay", "200 300 100", "www" + rest, "w100 w300 w200"},
      {"oldest too old", "200000000 199999999 100000000", "www" + rest, "w199999999 w200000000"},
      {"a time before all times", "300 -5 -9", "www" + rest, "w300"},
      {"nothing", "", "", ""},
      {"new", "0 " + zeros, "f" + rest, ""},
  };
  for (const auto& [name, times, letters, expected] : cases) {
    std::string text;
    for (const StoredAnswer& answer : ReadAnswers(times, letters))
      text += std::string(text.empty() ? "" : " ") + (answer.known ? "w" : "f") + std::to_string(answer.time);
    EXPECT_EQ(text, expected) << name;
  }
}

// Also of decks that push a slope up: those whose cards are known the better the longer they were left alone.
TEST(Recall, NeverRisesWithTime) {
  std::vector<RecallWeights> all_weights = {kStandardWeights};
  for (uint32_t seed = 1; seed <= 4; ++seed) {
    RecallWeights upside_down = kStandardWeights;
    for (const size_t slope : kSlopes) upside_down[slope] = 0.1 * seed;
    const RecallWeights fitted = Fit(SeriesOf(DrawDeck(seed, 400, 12, upside_down)));
    EXPECT_EQ(*std::max_element(fitted.begin() + kKnownDay, fitted.begin() + kMissShare), kGentlestSlope);
    all_weights.push_back(fitted);
  }
  for (const RecallWeights& weights : all_weights) {
    for (const TestCard& card : DrawDeck(99, 50, 9, kStandardWeights)) {
      const MemoryTrace trace = TraceOf(SeriesOf(card));
      double before = 1;
      for (int64_t elapsed = 0; elapsed < 2000 * kDay; elapsed = elapsed * 5 / 4 + 1) {
        const double recall = RecallAt(trace, weights, trace.newest + elapsed);
        ASSERT_LE(recall, before);
        ASSERT_GT(recall, 0);
        before = recall;
      }
    }
  }
}

TEST(RecallFit, GivesTheStandardWeightsBitByBitWithoutAnswers) {
  EXPECT_EQ(Fit({}), kStandardWeights);
  EXPECT_EQ(Fit(SeriesOf({CardWith({{kNow, 'w'}}), TestCard{}})), kStandardWeights);
}

// At the best weights the answers pull as strongly one way as the standard weights pull the other.
TEST(RecallFit, BalancesTheAnswersAgainstTheStandardWeights) {
  RecallWeights own = kStandardWeights;
  own[kMisses] += 0.8;
  const std::vector<AnswerSeries> deck = SeriesOf(DrawDeck(17, 150, 9, own));
  const RecallWeights fitted = Fit(deck);
  RecallTerms pull{};
  for (const AnswerSeries& series : deck) {
    MemoryTrace trace;
    for (const StoredAnswer& answer : series) {
      if (trace.answers > 0) {
        const RecallTerms terms = TermsAt(trace, answer.time);
        const double error = (answer.known ? 1 : 0) - RecallOf(terms, fitted);
        for (size_t i = 0; i < kRecallTerms; ++i) pull[i] += error * terms[i];
      }
      FollowAnswer(trace, answer);
    }
  }
  for (size_t i = 0; i < kRecallTerms; ++i) {
    if (fitted[i] == kGentlestSlope) continue;
    EXPECT_NEAR(pull[i], 400 * (fitted[i] - kStandardWeights[i]), 1e-3) << i;
  }
}

// A step of Newton's method from predictions that are sure and all wrong goes far beyond.
TEST(RecallFit, EndsAtTheBestWeightsOfADeckAgainstAllExpectation) {
  const std::vector<AnswerSeries> deck(15'000, SeriesOf(CardWith({{kNow, 'w'}, {kNow + kDay, 'f'}})));
  const RecallWeights fitted = Fit(deck);
  MemoryTrace trace;
  FollowAnswer(trace, deck[0].Oldest());
  EXPECT_GT(RecallAt(trace, kStandardWeights, kNow + kDay), 0.9);
  EXPECT_LT(RecallAt(trace, fitted, kNow + kDay), 0.1);
}

TEST(FitSamples, TakesAnswersBeforeATimeOnly) {
  FitSamples samples;
  samples.AddCard(SeriesOf(CardWith({{kNow, 'w'}, {kNow + 10, 'w'}, {kNow + 15, 'f'}, {kNow + 20, 'w'}})), kNow + 20);
  EXPECT_EQ(samples.answers(), 2) << "of those with a predecessor";
  EXPECT_EQ(samples.known(), 1);
  EXPECT_EQ(samples.TakeSamples().size(), 2U);
}

TEST(FitSamples, KeepsEveryKthCardOfALargeDeck) {
  const AnswerSeries series = SeriesOf(DrawDeck(1, 1, 64, kStandardWeights)[0]);
  FitSamples samples;
  constexpr int kCards = 7000;
  for (int i = 0; i < kCards; ++i) samples.AddCard(series);
  EXPECT_EQ(samples.answers(), kCards * 63);
  // 7000 x 63 = 441,000; every second card is still too much, every fourth is not.
  EXPECT_EQ(samples.TakeSamples().size(), size_t{kCards / 4 * 63});
}

}  // namespace
}  // namespace tessaro
