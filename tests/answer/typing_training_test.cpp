#include "answer/typing_training.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace tessaro {
namespace {

TEST(TypingText, IsWhatAPersonCanCopy) {
  const struct {
    const char* side;
    const char* text;
  } cases[] = {
      {"asdf jkl", "asdf jkl"},
      {"  <b>asdf</b>", "asdf"},
      {"a<br>b", "a\nb"},
      {"a<BR>\r\nb", "a\nb"},
      {"a<br><br>b\n\nc", "a\n\nb\n\nc"},
      {"<font size=\"14\"> a  b </font> ", "a  b  "},
      {"1 &lt; 2 &amp; 3", "1 < 2 &amp; 3"},
      {"a < b", "a < b"},
      {"a <x> b < c", "a  b < c"},
      {"<a href=\"000003\">Verweis</a>.", "Verweis."},
      {"<img src=\"x.bmp\"><br> \n", ""},
      {"", ""},
  };
  for (const auto& given : cases) EXPECT_EQ(TypingText(given.side), given.text) << given.side;
}

// A learner at the keyboard: what he types lands in an input that the training may rewrite.
class Typist {
 public:
  explicit Typist(const std::string& required, const TypingLimits& limits = {}) { training.Begin(required, limits); }
  TypingStep Type(std::string_view keys, int64_t milliseconds = 100) {
    TypingStep step;
    for (const char key : keys) {
      now += milliseconds;
      input += key;
      step = training.Change(input, now);
      if (step.rewritten) input = *step.rewritten;
    }
    return step;
  }

  TypingTraining training;
  std::string input;
  int64_t now = 1000;
};

TEST(TypingTraining, WrongKeyIsTakenBackCountedOnceAndNamed) {
  Typist typist("abcdefghijklmnopqrst");
  TypingStep step = typist.Type("x");
  EXPECT_EQ(step.verdict, TypingVerdict::Wrong);
  EXPECT_EQ(step.expected, 'a');
  EXPECT_EQ(step.mark, 0U);
  EXPECT_EQ(typist.Type("y").errors, 1) << "also at the first place";
  EXPECT_EQ(typist.input, "");
  step = typist.Type("a");
  EXPECT_TRUE(step.verdict == TypingVerdict::Right && step.mood == TypingMood::Normal && step.mark == 1);
  step = typist.Type("zzz");
  EXPECT_EQ(step.mood, TypingMood::BeyondLimit) << "two of twenty are 10 %";
  EXPECT_TRUE(step.errors == 2 && step.expected == 'b' && typist.input == "a");
  Typist patient("abcdefghijklmnopqrst", {.error_percent = 10});
  patient.Type("xaab");
  EXPECT_EQ(patient.Type("x").mood, TypingMood::BeyondLimit);
  Typist lucky("abcdefghijklmnopqrst", {.error_percent = 10});
  EXPECT_EQ(lucky.Type("x").mood, TypingMood::FirstError);
  EXPECT_EQ(lucky.Type("ax").mood, TypingMood::WithinLimit);
}

TEST(TypingTraining, FinishedTextIsJudgedByBothLimits) {
  const struct {
    const char* what;
    TypingLimits limits;
    const char* keys;
    int64_t milliseconds;
    bool fast, right;
  } cases[] = {
      {"quick and right", {}, "abcdefghij", 100, true, true},
      {"too slow", {}, "abcdefghij", 1000, false, true},
      {"slow, but a tenth is enough", {.percent = 10}, "abcdefghij", 1000, true, true},
      {"an error of ten", {}, "xabcdefghij", 100, true, false},
      {"an error within the limit", {.error_percent = 10}, "xabcdefghij", 100, true, true},
      {"the last key is not looked at", {}, "abcdefghi?", 100, true, true},
  };
  for (const auto& given : cases) {
    Typist typist("abcdefghij", given.limits);
    const TypingStep step = typist.Type(given.keys, given.milliseconds);
    ASSERT_EQ(step.verdict, TypingVerdict::Finished) << given.what;
    EXPECT_TRUE(step.result->fast_enough == given.fast && step.result->right_enough == given.right) << given.what;
    EXPECT_EQ(step.result->Known(), given.fast && given.right) << given.what;
    EXPECT_EQ(typist.input, "");
    EXPECT_EQ(typist.Type("a").verdict, TypingVerdict::Nothing) << "until the next card comes";
  }
  const TypingLimits odd = {.speed = 133, .percent = 50};
  EXPECT_EQ(odd.RequiredSpeed(), 66) << "whole numbers";
}

TEST(TypingTraining, ClockRunsFromTheFirstKeyAndTakesNoTimeForASecond) {
  Typist typist("abcd");
  typist.now = 50000;
  EXPECT_FALSE(typist.training.Figures(typist.now));
  typist.Type("a", 0);
  typist.Type("bc", 500);
  const TypingFigures figures = typist.training.Figures(typist.now).value();
  EXPECT_TRUE(figures.letters == 3 && figures.seconds == 1 && figures.speed == 180) << figures.speed;
  EXPECT_TRUE(typist.training.Figures(typist.now + 5000) && !typist.training.Figures(typist.now + 5001));
  EXPECT_DOUBLE_EQ(typist.Type("d", 0).result->speed, 240.0);
  Typist sudden("ab");
  EXPECT_DOUBLE_EQ(sudden.Type("ab", 0).result->speed, 120.0);
}

TEST(TypingTraining, LineEndsAndBlanksAtTheBeginningAreThoseOfTheText) {
  TypingTraining training;
  training.Begin("a\nbc", {});
  EXPECT_EQ(training.Change("  a", 1).mark, 1U);
  EXPECT_EQ(training.Change("a\r\n", 2).mark, 2U);
  EXPECT_EQ(training.Change("a\r\nb", 3).mark, 3U);
  EXPECT_EQ(training.Change("a\rx", 3).mark, 2U) << "what stands behind a carriage return is part of the line end";
  EXPECT_EQ(training.Change("a ", 4).expected, '\n');
  training.Begin("ab ", {});
  EXPECT_EQ(training.Change("ab ", 1).verdict, TypingVerdict::Finished);
}

// The steps as they are described, with everything held as it is on screen.
struct ByHand {
  std::string required;
  TypingLimits limits;
  std::string input;
  int errors = 0;
  bool normal_colour = true;
  int64_t start = 0;
  std::string log = {};

  void Change(int64_t now) {
    std::string typed = input;
    if (typed.empty()) return;
    std::erase(typed, '\r');
    while (!typed.empty() && typed[0] == ' ') typed.erase(0, 1);
    if (typed.size() < 2) start = now;
    if (typed.size() < required.size()) {
      if (typed == required.substr(0, typed.size())) {
        normal_colour = true;
        log = "right " + std::to_string(typed.size());
        return;
      }
      input = typed.substr(0, typed.size() - 1);
      if (normal_colour) ++errors;
      normal_colour = false;
      const double rate = errors * 100.0 / static_cast<double>(required.size());
      log = "wrong " + std::to_string(errors) +
            (errors == 1                    ? " first"
             : rate <= limits.error_percent ? " in"
                                            : " over") +
            required[input.size()];
      return;
    }
    double seconds = static_cast<double>(now - start) * 0.001;
    if (!(seconds > 0)) seconds = 1;
    const double speed = static_cast<double>(typed.size()) * 60 / seconds;
    const double rate = errors * 100.0 / static_cast<double>(required.size());
    const bool known =
        !(speed < static_cast<double>(limits.speed * limits.percent / 100) || rate > limits.error_percent);
    log = std::string("finished ") + (known ? "w " : "f ") + std::to_string(speed);
    input.clear();
  }
};

std::string LogOf(const TypingStep& step) {
  if (step.verdict == TypingVerdict::Right) return "right " + std::to_string(step.mark);
  if (step.verdict == TypingVerdict::Finished)
    return std::string("finished ") + (step.result->Known() ? "w " : "f ") + std::to_string(step.result->speed);
  const char* mood = step.mood == TypingMood::FirstError    ? " first"
                     : step.mood == TypingMood::WithinLimit ? " in"
                                                            : " over";
  return "wrong " + std::to_string(step.errors) + mood + step.expected;
}

TEST(TypingTraining, RandomTypistsAreFollowedAsByHand) {
  std::mt19937 random(5);
  int finished = 0;
  for (int i = 0; i < 3000; ++i) {
    std::string required(2 + random() % 8, 'a');
    for (size_t at = 1; at < required.size(); ++at) required[at] = "ab \n"[random() % 4];
    const TypingLimits limits = {.error_percent = static_cast<double>(random() % 40), .speed = 60};
    TypingTraining training;
    training.Begin(required, limits);
    ByHand hand = {.required = required, .limits = limits, .input = {}};
    int64_t now = 0;
    for (int key = 0; key < 60 && !hand.log.starts_with("finished"); ++key) {
      now += static_cast<int64_t>(random() % 1500);
      const size_t place = std::min(hand.input.size(), required.size() - 1);
      const bool back = random() % 12 == 0 && !hand.input.empty();
      back ? hand.input.pop_back() : hand.input.push_back(random() % 4 == 0 ? "ab \n"[random() % 4] : required[place]);
      if (hand.input.empty()) continue;
      const TypingStep step = training.Change(hand.input, now);
      hand.Change(now);
      ASSERT_EQ(LogOf(step), hand.log) << required;
      ASSERT_EQ(step.rewritten.value_or(hand.input), hand.input);
    }
    finished += hand.log.starts_with("finished") ? 1 : 0;
  }
  EXPECT_GT(finished, 2000);
}

TEST(TypingTraining, MarkIsACharacterAWordOrNothing) {
  const std::string text = "ab cd\n";
  EXPECT_EQ(MarkLength(text, 0, TypingMark::Character), 1U);
  EXPECT_EQ(MarkLength(text, 0, TypingMark::Word), 2U);
  EXPECT_EQ(MarkLength(text, 4, TypingMark::Word), 1U);
  EXPECT_EQ(MarkLength(text, 2, TypingMark::Word), 1U) << "the blank itself";
  EXPECT_EQ(MarkLength(text, 0, TypingMark::Nothing), 0U);
  EXPECT_EQ(MarkLength(text, 6, TypingMark::Character), 0U);
}

}  // namespace
}  // namespace tessaro
