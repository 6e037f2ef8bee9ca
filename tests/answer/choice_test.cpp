#include "answer/choice.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "platform/code_page.h"

namespace tessaro {
namespace {

Ticks TicksOf(const std::vector<size_t>& choices) {
  Ticks ticks;
  for (const size_t choice : choices) ticks.set(choice);
  return ticks;
}

TEST(Choice, SingleChoiceIsTheWholeKey) {
  const struct {
    std::string_view key;
    ChoicePage page;
    size_t choice;
    bool right;
  } cases[] = {{"b", ChoicePage::Letters, 1, true},   {"B", ChoicePage::Letters, 1, true},
               {"B ", ChoicePage::Letters, 1, false}, {"", ChoicePage::Letters, 0, false},
               {"S", ChoicePage::Letters, 18, true},  {"a", ChoicePage::Letters, 1, false},
               {"13", ChoicePage::Numbers, 13, true}, {"0", ChoicePage::Numbers, 0, true},
               {"1", ChoicePage::Numbers, 13, false}, {"013", ChoicePage::Numbers, 13, false}};
  for (const auto& given : cases)
    EXPECT_EQ(IsRightChoice(given.key, given.page, given.choice), given.right) << given.key;
}

TEST(Choice, KeyNamesTheBoxesToTick) {
  const std::string all = "A B C D E F G H I J K L M N O P Q R S";
  const struct {
    std::string key;
    ChoicePage page;
    std::optional<std::vector<size_t>> ticks;
  } cases[] = {
      {"1 3", ChoicePage::Numbers, {{1, 3}}},
      {"13", ChoicePage::Numbers, {{13}}},
      {"123", ChoicePage::Numbers, {{3, 12}}},
      {"1 19", ChoicePage::Numbers, {}},
      {"07", ChoicePage::Numbers, {}},
      {"<b>2</b>", ChoicePage::Numbers, {{2}}},
      {"<b>2</b>", ChoicePage::Letters, {}},  // B twice
      {"a, c", ChoicePage::Letters, {{0, 2}}},
      {"Berlin", ChoicePage::Letters, {}},
      {std::string("a ä"_cp), ChoicePage::Letters, {}},
      {std::string("a ß"_cp), ChoicePage::Letters, {}},
      {std::string("aä"_cp), ChoicePage::Letters, {}},
      {"a a", ChoicePage::Letters, {}},
      {"", ChoicePage::Letters, {}},
      {all, ChoicePage::Letters, {}},
      {all.substr(2), ChoicePage::Letters, {{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18}}},
      {all.substr(2) + " zz", ChoicePage::Letters, {{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18}}},
      {all.substr(2) + " B", ChoicePage::Letters, {}},
  };
  for (const auto& given : cases) {
    const auto ticks = given.ticks ? std::optional(TicksOf(*given.ticks)) : std::nullopt;
    EXPECT_EQ(RightTicks(given.key, given.page), ticks) << given.key;
    EXPECT_EQ(CanBeRight(given.key, given.page), ticks.has_value()) << given.key;
  }
  EXPECT_EQ(PageOf("3"), ChoicePage::Numbers);
  EXPECT_EQ(PageOf("a, c"), ChoicePage::Letters);
  EXPECT_EQ(PageOf("a 1"), std::nullopt) << "fits both";
  EXPECT_EQ(PageOf("Berlin"), std::nullopt);
}

// The judgement as it is described for a person: note the boxes, blank what does not belong, cut, compare, count.
bool JudgedByHand(std::string key, ChoicePage page, const Ticks& boxes) {
  const bool numbers = page == ChoicePage::Numbers;
  for (char& c : key) {
    if (!numbers) c = ToUpper(c);
    const bool kept =
        numbers ? c >= '0' && c <= '9' : (c >= 'A' && c <= 'Z') || "ÄÖÜßŠ"_cp.find(c) != std::string::npos;
    if (!kept) c = ' ';
  }
  std::vector<std::string> tokens;
  for (size_t i = 0; i < key.size() && tokens.size() < 18; ++i) {
    if (key[i] == ' ' || (i > 0 && key[i - 1] != ' ')) continue;
    tokens.emplace_back(1, key[i]);
    if (i + 1 < key.size() && key[i + 1] != ' ') {
      tokens.back() += key[i + 1];
      key[i] = key[i + 1] = ' ';
    }
  }
  size_t hits = 0;
  Ticks named;
  for (const std::string& token : tokens) {
    for (size_t i = 0; i < kChoices; ++i) {
      if (token != ChoiceName(page, i)) continue;
      if (!boxes[i] || named[i]) return false;
      named.set(i);
      ++hits;
    }
  }
  return hits == tokens.size() && tokens.size() == boxes.count();
}

TEST(Choice, KeyIsReadInItsCodePage) {
  EXPECT_TRUE(RightTicks("b,i", ChoicePage::Letters, CodePage(CharacterSet::Turkish)).has_value());
  // In 1252 this byte is no letter, and parts two choices.
  EXPECT_TRUE(RightTicks("A\xB9"
                         "B",
                         ChoicePage::Letters)
                  .has_value());
  EXPECT_FALSE(RightTicks("A\xB9"
                          "B",
                          ChoicePage::Letters, CodePage(CharacterSet::CentralEuropean))
                   .has_value());
}

TEST(Choice, TicksAreJudgedAsByHand) {
  std::mt19937 random(14);
  const auto below = [&](size_t count) { return static_cast<size_t>(random() % count); };
  int right = 0;
  for (int i = 0; i < 20000; ++i) {
    const auto page = below(2) == 0 ? ChoicePage::Numbers : ChoicePage::Letters;
    std::string key;
    Ticks boxes;
    for (size_t tokens = below(7); tokens > 0; --tokens) {
      const size_t choice = below(kChoices + 1);
      key += choice < kChoices ? ChoiceName(page, choice) : std::string(1, "9zÄß<"_cp[below(5)]);
      if (choice < kChoices && below(4) != 0) boxes.set(choice);
      if (below(5) != 0) key += below(3) == 0 ? ", " : " ";
    }
    if (below(3) == 0) boxes.set(below(kChoices));
    if (boxes.none()) continue;
    const bool judged = RightTicks(key, page) == boxes;
    ASSERT_EQ(judged, JudgedByHand(key, page, boxes)) << key << " " << boxes;
    right += judged ? 1 : 0;
  }
  EXPECT_GT(right, 500) << "the cases must hold right answers, too";
}

}  // namespace
}  // namespace tessaro
