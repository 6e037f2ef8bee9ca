#include "learn/retention.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <string>
#include <vector>

namespace tessaro {
namespace {

// Letters, newest first, and the times of the answers as distances from one moment.
AnswerHistory History(const std::string& letters, const std::vector<int64_t>& ago) {
  AnswerHistory history = EmptyHistory();
  for (size_t i = 0; i < letters.size(); ++i) history.letters[i] = letters[i];
  for (size_t i = 0; i < ago.size(); ++i) history.times[i] = 1'700'000'000 - ago[i];
  return history;
}

TEST(Retention, WorkedExamples) {
  const struct {
    const char* what;
    std::string letters;
    std::vector<int64_t> ago;
    int64_t min_retention;
    int64_t score;
  } cases[] = {
      {"first answer", "w", {0}, 0, 1},
      {"first answer with a day button", "w", {0}, 604800, 604800},
      {"one interval", "ww", {0, 1000}, 0, 1000},
      {"one interval, ended by an empty slot", "www", {0, 1000}, 0, 1000},
      {"growing intervals", "wwww", {0, 400, 600, 700}, 0, 533},
      {"shrinking intervals give their mean", "wwww", {0, 100, 300, 700}, 0, 233},
      {"the floor stands above the forecast", "wwww", {0, 400, 600, 700}, 86400, 86400},
      {"the floor stands below it", "wwww", {0, 400, 600, 700}, 500, 533},
      {"after a wrong answer", "wf", {0, 50}, 0, 1},
      {"one interval since a wrong answer, older ones count", "wwfwww", {0, 300, 400, 500, 600, 900}, 0, 233},
      {"both lines differ", "wwwfwww", {0, 300, 400, 500, 600, 700, 1000}, 0, 350},
      {"two answers in one second", "www", {0, 0, 50}, 0, 50},
      {"only in one second", "www", {0, 0, 0}, 0, 1},
      {"a clock set back gives a negative interval", "ww", {0, -80}, 0, 1},
      {"the score is bounded", "ww", {0, 1'600'000'000}, 0, kMaxScore},
      {"times beyond all numbers", "ww", {0, std::numeric_limits<int64_t>::max()}, 0, kMaxScore},
      {"no history kept: newest is wrong", "fww", {0, 1000, 2000}, 86400, 1},
      {"no history kept: a broken row", "xww", {0, 1000, 2000}, 0, 1},
      {"no history kept: the streak line reads over broken letters", "wwxww", {0, 300, 400, 500, 520}, 0, 420},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ForecastRetention(History(c.letters, c.ago), c.min_retention).score, c.score) << c.what;
  }
}

TEST(Retention, TakesInAFullHistory) {
  AnswerHistory full = ParseHistory("", std::string(64, 'w'));
  for (size_t i = 0; i < full.times.size(); ++i) full.times[i] = 9000 - static_cast<int64_t>(i) * 60;
  const RetentionForecast of_full = ForecastRetention(full, 0);
  EXPECT_EQ(std::tuple(of_full.all.count, of_full.streak.count, of_full.score), std::tuple(63, 63, 60));
}

TEST(Retention, BrokenHistoriesDoNoHarm) {
  std::mt19937_64 random(3);
  for (int i = 0; i < 2000; ++i) {
    AnswerHistory history;
    for (auto& letter : history.letters) letter = "wwwf\0x"[random() % 6];
    for (auto& time : history.times) time = static_cast<int64_t>(random() >> (random() % 64));
    const int64_t score = ForecastRetention(history, static_cast<int64_t>(random())).score;
    EXPECT_TRUE(score >= 1 && score <= kMaxScore);
  }
}

}  // namespace
}  // namespace tessaro
