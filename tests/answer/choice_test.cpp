#include "answer/choice.h"

#include <set>

#include "answer/answer_offer.h"
#include "cards/card_edit.h"
#include "tests/support/clock_and_chance.h"
#include "tests/support/test_cards.h"

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

TestCard Card(const std::string& question, const std::string& answer, const std::string& topic = "") {
  return {.question = question, .answer = answer, .topic = topic};
}

using Texts = std::vector<std::string>;

class Offered : public testing::Test {
 protected:
  void Open(const std::vector<TestCard>& cards) { OpenTestFile(disk, file, cards); }
  // For the card of a number from 1 on. The wrong ones, in order; none where nothing is offered. The right one is
  // checked.
  Texts Wrong(int card, const std::string& right, bool swapped = false) {
    // Whatever was looked at beforehand.
    (void)offer.Prepare(swapped, 2);
    std::optional<OfferedAnswers> offered =
        offer.Make({.row = card + kFirstCardRow - 1, .sides_swapped = swapped}, random);
    if (!offered) return {};
    EXPECT_GT(offered->texts.size(), 1U);
    EXPECT_EQ(offered->texts.at(offered->right), right);
    place = offered->right;
    offered->texts.erase(offered->texts.begin() + static_cast<std::ptrdiff_t>(place));
    std::sort(offered->texts.begin(), offered->texts.end());
    return offered->texts;
  }

  std::mt19937 chance{17};
  ScriptedRandom random{chance};
  MemoryDisk disk;
  CardFile file{disk};
  AnswerOffer offer{file};
  size_t place = 0;
};

TEST_F(Offered, WrongOnesAreAnswersOfOtherKindsOfCardsNever) {
  const std::string picture = "<img src=\"haus.bmp\">";
  const struct {
    std::string answer;
    std::vector<TestCard> others;
    Texts wrong;
  } cases[] = {
      {"Haus", {}, {}},
      {"Haus", {Card("x", "Hof")}, {"Hof"}},
      {"Haus", {Card("x", "<b>HAUS</b> "), Card("y", " haus<br>"), Card("z", "Hof")}, {"Hof"}},
      {"Haus", {Card("x", "Hof"), Card("y", "<i>hof</i>")}, {"hof"}},
      {"Haus", {Card("Frage", "Heim"), Card("<b>frage</b>", "Bau"), Card("z", "Hof")}, {"Hof"}},
      {"Haus", {Card("<navigation>", "Hof"), Card("x<+++>", "Hut"), Card("y", picture)}, {}},
      {"Haus", {Card("x", "b"), Card("y", "1 3"), Card("z", "H2O"), Card("u", "1990")}, {"1990", "H2O"}},
      {"<b>eins</b><br> zwei" + picture, {Card("x", "ah\nbe"), Card("y", "&lt;co")}, {"<co", "ah be"}},
      {"b", {Card("x", "Hof")}, {}},
      {"<font size=\"12\">3</font>", {Card("x", "Hof")}, {}},
      {"<font size=\"12\">Haus</font>", {Card("x", "Hof")}, {"Hof"}},
      {picture, {Card("x", "Hof")}, {}},
  };
  for (const auto& given : cases) {
    file.Close();
    std::vector<TestCard> cards = {Card("Frage", given.answer)};
    cards.insert(cards.end(), given.others.begin(), given.others.end());
    Open(cards);
    const std::string right = given.answer[0] == '<' && given.answer[1] == 'b' ? "eins zwei" : "Haus";
    EXPECT_EQ(Wrong(1, right), given.wrong) << given.answer;
  }
}

TEST_F(Offered, TopicComesFirstThenLength) {
  const std::string right(30, 'r');
  std::vector<TestCard> cards = {Card("quelle", right, "A")};
  for (int i = 0; i < 60; ++i)
    cards.push_back(Card("b" + std::to_string(i), std::string(static_cast<size_t>(i) + 2, 'b'), "B"));
  Open(cards);
  for (int round = 0; round < 50; ++round) {
    for (const std::string& text : Wrong(1, right)) EXPECT_TRUE(text.size() >= 18 && text.size() <= 42) << text;
  }
  cards.push_back(Card("u", std::string(100, 'u'), "A"));
  cards.push_back(Card("v", "v v", "A"));
  file.Close();
  Open(cards);
  const Texts wrong = Wrong(1, right);
  EXPECT_EQ(wrong.size(), 4U);
  EXPECT_TRUE(std::count(wrong.begin(), wrong.end(), "v v") == 1 && wrong[2] == std::string(100, 'u'));
  for (int i = 0; i < 30; ++i)
    cards.push_back(Card("w" + std::to_string(i), "w" + std::string(static_cast<size_t>(i), 'x'), "A"));
  file.Close();
  Open(cards);
  for (int round = 0; round < 50; ++round) {
    for (const std::string& text : Wrong(1, right)) EXPECT_TRUE(text[0] == 'w' || text == "v v") << text;
  }
  EXPECT_EQ(Wrong(1, "quelle", true).size(), 4U) << "the other way round";
}

TEST_F(Offered, EveryPlaceAndEveryCardNearbyHasItsTurn) {
  std::vector<TestCard> cards;
  for (char letter = 'a'; letter <= 'z'; ++letter) cards.push_back(Card({letter}, "Wort " + std::string(1, letter)));
  Open(cards);
  std::map<size_t, int> places;
  std::map<std::string, int> seen;
  constexpr int kRounds = 1500;
  for (int round = 0; round < kRounds; ++round) {
    for (const std::string& text : Wrong(13, "Wort m")) ++seen[text];
    ++places[place];
  }
  for (const auto& [at, count] : places) EXPECT_NEAR(count, kRounds / 5, 80) << at;
  for (const auto& [text, count] : seen) EXPECT_NEAR(count, kRounds * 4 / 24, 80) << text;
  EXPECT_TRUE(places.size() == 5 && seen.size() == 24);
}

TEST_F(Offered, WhatIsEditedMeanwhileIsOfferedAsItIsNow) {
  Open({Card("q", "Haus", "A"), Card("x", "Hof", "A"), Card("y", "Tor", "A")});
  EXPECT_EQ(Wrong(1, "Haus"), (Texts{"Hof", "Tor"}));
  CardEdit edit(file);
  CardCommand replace;
  replace.Replace(kFirstCardRow + 1, {{file.columns().answer, "Bad"}});
  ASSERT_TRUE(edit.Apply(replace));
  EXPECT_EQ(Wrong(1, "Haus"), (Texts{"Bad", "Tor"}));
  CardCommand insert;
  insert.InsertBehind(1, {{file.columns().id, "000009"}, {file.columns().answer, "neu"}});
  insert.Remove(kFirstCardRow + 2);
  ASSERT_TRUE(edit.Apply(insert));
  EXPECT_EQ(Wrong(2, "Haus"), (Texts{"Bad", "neu"}));
  (void)file.deletion_marks().Exchange({kFirstCardRow});
  EXPECT_EQ(Wrong(2, "Haus"), (Texts{"Bad"})) << "marked to be removed";
}

TEST_F(Offered, TopicsThatAreEditedCountAsTheyAreNow) {
  Open({Card("q", "Haus", "A"), Card("x", "Hof", "A"), Card("y", "Tor", "A"), Card("z", "Bad", "A"),
        Card("u", "Weg", "A"), Card("v", "Uhr", "B")});
  EXPECT_EQ(Wrong(1, "Haus"), (Texts{"Bad", "Hof", "Tor", "Weg"}));
  CardCommand swap;
  swap.Replace(kFirstCardRow + 1, {{file.columns().topic, "B"}});
  swap.Replace(kFirstCardRow + 5, {{file.columns().topic, "A"}});
  ASSERT_TRUE(CardEdit(file).Apply(swap));
  EXPECT_EQ(Wrong(1, "Haus"), (Texts{"Bad", "Tor", "Uhr", "Weg"}));
  CardCommand move;
  move.InsertBehind(1, {{file.columns().topic, "B"}, {file.columns().answer, "neu"}});
  move.Remove(kFirstCardRow + 1);
  ASSERT_TRUE(CardEdit(file).Apply(move));
  EXPECT_EQ(Wrong(2, "Haus"), (Texts{"Bad", "Tor", "Uhr", "Weg"}));
}

TEST_F(Offered, LongSidesAreCutAndStayBounded) {
  const std::string words = "Wort " + std::string(5000, 'w');
  Open({Card("q", words), Card("x", words + "x"), Card("y", "<b>" + std::string(5000, '<')), Card("z", "kurz")});
  const std::optional<OfferedAnswers> offered = offer.Make({.row = kFirstCardRow}, random);
  ASSERT_TRUE(offered && offered->texts.size() == 3U) << "cut ones that look alike are one";
  for (const std::string& text : offered->texts) EXPECT_LE(text.size(), 120U);
  EXPECT_FALSE(offer.Make({.row = 1}, random) || offer.Make({.row = 99}, random)) << "no cards";
}

}  // namespace
}  // namespace tessaro
