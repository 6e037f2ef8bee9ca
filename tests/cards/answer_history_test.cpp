#include "cards/answer_history.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

namespace tessaro {
namespace {

constexpr int64_t kTwoYears = 63'072'000;

std::string Row(const std::vector<int64_t>& times) {
  std::string text;
  for (const int64_t time : times) text += std::to_string(time) + " ";
  return text;
}

std::vector<int64_t> UsedTimes(const AnswerHistory& history) {
  std::vector<int64_t> times(history.times.begin(), history.times.end());
  while (!times.empty() && times.back() == 0) times.pop_back();
  return times;
}

TEST(AnswerHistory, ReadsTimesAndDropsAnOldestOneThatDoesNotFit) {
  const int64_t t = 1'700'000'000;
  std::vector<int64_t> full(64);
  std::iota(full.rbegin(), full.rend(), t);
  std::vector<int64_t> longer = full;
  longer.push_back(5);
  std::vector<int64_t> full_late = full;
  full_late[63] = 5;
  const std::tuple<std::string, std::vector<int64_t>, bool> cases[] = {
      {"", {}, false},
      {"9  8 7 6y x 5", {9, 0, 8, 7, 6, 0, 5}, false},  // an empty piece is a slot of its own
      {"-4 +5", {-4, 5}, false},
      {Row(longer), full, false},
      {Row(full_late), {full.begin(), full.begin() + 63}, true},
      {Row({t, t - kTwoYears - 1}), {t, t - kTwoYears - 1}, false},  // never one of the newest two
      {Row({t, t - 1, t - 1 - kTwoYears}), {t, t - 1, t - 1 - kTwoYears}, false},
      {Row({t, t - 1, t - 2 - kTwoYears}), {t, t - 1}, true},
      {Row({t, t - 5, t - 4}), {t, t - 5}, true},
      {Row({t, t - 5, t - 5}), {t, t - 5, t - 5}, false},
      {Row({t, t, t - (int64_t{1} << 32) - 9}), {t, t, t - (int64_t{1} << 32) - 9}, false},  // gap modulo 2 to the 32nd
      {"5 0 7 0", {5}, true},
  };
  for (const auto& [text, times, corrected] : cases) {
    const AnswerHistory history = ParseHistory(text, "");
    EXPECT_EQ(UsedTimes(history), times) << text;
    EXPECT_EQ(history.corrected, corrected) << text;
  }
}

TEST(AnswerHistory, CheaperReadersSayWhatTheWholeHistorySays) {
  std::mt19937 random(1);
  const std::string alphabet = "0123456789 -+x";
  for (int i = 0; i < 4000; ++i) {
    std::string text;
    for (size_t length = random() % 30; text.size() < length;) text += alphabet[random() % alphabet.size()];
    const AnswerHistory whole = ParseHistory(text, text);
    EXPECT_EQ(NewestTime(text), whole.times[0]) << text;
    EXPECT_EQ(NewestLetter(text), whole.letters[0]) << text;
    AnswerTimes used = whole.times;
    std::fill(std::find(used.begin(), used.end(), 0), used.end(), 0);
    EXPECT_EQ(ParseAnswers(text, text).times, used) << text;
    EXPECT_EQ(ParseAnswers(text, text).letters, whole.letters) << text;
  }
}

TEST(AnswerHistory, PushingAnAnswerRepairsLetters) {
  const std::tuple<std::string, char, std::string> cases[] = {
      {"", 'w', "w"},     {std::string(63, 'f') + "w", 'w', "w"}, {"wfw", 'f', "fwfw"}, {"wwxww", 'w', "www"},
      {"Wwww", 'w', "w"},
  };
  for (const auto& [before, letter, after] : cases) {
    AnswerHistory history = ParseHistory("8 6", before);
    PushAnswer(history, letter, 9);
    EXPECT_EQ(LettersText(history.letters), after + std::string(64 - after.size(), 'f')) << before;
    EXPECT_EQ(UsedTimes(history), (std::vector<int64_t>{9, 8, 6}));
  }
}

TEST(AnswerHistory, ThreeFormsOfTheTimesReadBack) {
  AnswerHistory history;
  for (size_t i = 0; i < 64; ++i) history.times[i] = 2000 - static_cast<int64_t>(i);
  const std::string after_answer = TimesAfterAnswer(history.times);
  EXPECT_EQ(after_answer.substr(after_answer.size() - 10), "1938 1937 ");
  EXPECT_EQ(ParseHistory(after_answer, "").times, history.times);

  const std::string after_undo = TimesAfterUndo(history.times);
  EXPECT_EQ(after_undo.substr(after_undo.size() - 10), "1939 1938 ");
  history.times[63] = 0;
  EXPECT_EQ(ParseHistory(after_undo, "").times, history.times);

  EXPECT_EQ(BlankTimeRow().size(), 127u);
  EXPECT_EQ(UsedTimes(ParseHistory(BlankTimeRow(), "")), std::vector<int64_t>{});
}

TEST(AnswerHistory, StreakCountsLettersBeforeTheFirstWrongAnswer) {
  const std::pair<std::string, int> cases[] = {{"", 0}, {"fww", 0}, {"wwf", 2}, {"wxw", 3}, {std::string(64, 'w'), 63}};
  for (const auto& [row, streak] : cases) EXPECT_EQ(Streak(row), streak) << row;
}

}  // namespace
}  // namespace tessaro
