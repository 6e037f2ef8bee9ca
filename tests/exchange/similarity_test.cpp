#include "exchange/similarity.h"

#include <gtest/gtest.h>

#include <random>

#include "exchange/match_finder.h"

namespace tessaro {
namespace {

TEST(Similarity, WordsOfTheTargetAreLookedForInTheSource) {
  const std::string longest(99, 'x');
  const struct {
    const char* what;
    CardSides target, source;
    CompareRule rule;
    int result;
  } cases[] = {
      {"two of three words", {"Der rote Hund", ""}, {"Der Hund", ""}, {.threshold = 5}, 66},
      {"a shorter target loses", {"Der Hund", ""}, {"Der rote Hund", ""}, {.threshold = 5}, 61},
      {"not without the lengths",
       {"Der Hund", ""},
       {"Der rote Hund", ""},
       {.threshold = 5, .ignore_length = true},
       100},
      {"below the threshold", {"Der rote Hund", ""}, {"Der Hund", ""}, {.threshold = 70}, kNoMatch},
      {"equal", {"a", "b"}, {"a", "b"}, {.threshold = 95}, kSameCard},
      {"equal fronts", {"a", "b"}, {"a", "c"}, {.threshold = 95}, kSameFront},
      {"crosswise", {"a", "b"}, {"b", "a"}, {.threshold = 95}, kNoMatch},
      {"crosswise where sides do not matter",
       {"a", "b"},
       {"b", "a"},
       {.threshold = 95, .either_side = true},
       kSameCard},
      {"on the other side", {"Hund", ""}, {"", "Hund"}, {.threshold = 5}, kNoMatch},
      {"on either side", {"Hund", "x"}, {"", "Hund"}, {.threshold = 5, .either_side = true}, 100},
      {"within a word", {"und", "-"}, {"Hund", "-"}, {.threshold = 5, .ignore_length = true}, 100},
      {"too short words", {"ab cd", ""}, {"x ab cd", ""}, {.threshold = 5, .min_word_length = 2}, kNoMatch},
      {"a word that stands twice", {"ab ab cd", ""}, {"ab", ""}, {.threshold = 5}, 66},
      {"one letter case only", {"hund", ""}, {"Hund", ""}, {.threshold = 5}, kNoMatch},
      {"nothing to look for", {"", ""}, {"a", ""}, {.threshold = 5}, kNoMatch},
      {"fractions are lost one after the other", {"ab cd ef", ""}, {"ab cd xxxx", ""}, {.threshold = 5}, 53},
  };
  for (const auto& [what, target, source, rule, result] : cases) {
    EXPECT_EQ(Similarity(target, source, rule), result) << what;
  }
}

TEST(Similarity, WordsEndAtStopsAndAfter99Bytes) {
  std::string words;
  ForEachWord("ab.cd,ef\\gh:i" + std::string(200, 'x') + "\nk!", 0,
              [&](std::string_view word) { words += std::to_string(word.size()) + " "; });
  EXPECT_EQ(words, "2 2 2 2 99 99 3 1 ");
}

std::string AnySide(std::mt19937& random) {
  static constexpr const char* kWords[] = {"a", "ab", "abc", "bc", "der", "rote", "Hund", "und", "x"};
  std::string side;
  for (size_t count = random() % 5; count > 0; --count) {
    side += kWords[random() % std::size(kWords)];
    side += " .\\"[random() % 3];
  }
  return side;
}

// What the finder gives is what comparing with every card gives, while cards come, change and are left out.
TEST(MatchFinder, FindsWhatComparingWithAllFinds) {
  std::mt19937 random(3);
  for (int round = 0; round < 1500; ++round) {
    const CompareRule rule = {.threshold = static_cast<int>(random() % 19 + 1) * 5,
                              .min_word_length = random() % 3 + 1,
                              .ignore_length = random() % 2 == 0,
                              .either_side = random() % 2 == 0};
    std::vector<std::pair<std::string, std::string>> cards(random() % 10 + 1);
    for (auto& [front, back] : cards) front = AnySide(random), back = AnySide(random);
    const auto sides = [&](int row) {
      const auto& [front, back] = cards[static_cast<size_t>(row)];
      return CardSides{front, back};
    };
    MatchFinder finder(rule, sides);
    const int count = static_cast<int>(cards.size());
    for (int row = 0; row < count; ++row) finder.Count(row);
    for (int row = 0; row < count; ++row) finder.MakeFindable(row);
    const int left_out = static_cast<int>(random() % cards.size());
    finder.LeaveOut(left_out);
    const int changed = static_cast<int>(random() % cards.size());
    cards[static_cast<size_t>(changed)] = {AnySide(random), AnySide(random)};
    finder.Put(changed);
    const std::string front = random() % 2 == 0 ? cards[0].first : AnySide(random);
    const std::string back = random() % 2 == 0 ? cards[0].second : AnySide(random);
    const int first = static_cast<int>(random() % 3);
    std::vector<Match> expected;
    for (int row = first; row < count; ++row) {
      const int result = row == left_out && row != changed ? kNoMatch : Similarity(sides(row), {front, back}, rule);
      if (result != kNoMatch) expected.push_back({row, result});
    }
    EXPECT_EQ(finder.Find({front, back}, first), expected);
  }
}

}  // namespace
}  // namespace tessaro
