#include "print/card_choice.h"

#include "cards/figures.h"
#include "tests/learn/learn_fixture.h"

namespace tessaro {
namespace {

using Rows = std::vector<int>;

TEST(CardChoice, GivesRowsInTheOrderOfTheFile) {
  MemoryDisk disk;
  CardFile file{disk};
  OpenTestFile(disk, file,
               {NewCard(1), NavigationCard(2), KnownCard(3, 100, 500), WrongCard(4), KnownCard(5, 900000, 500),
                KnownCard(6, 100, 500)});
  const DueAt at = {.parameters = {}, .now = kNow};
  const CardOffer offer = {.found = [](int row) { return row <= 4; }, .marked = {3, 6, 7, 99}, .shown = 6};
  // A choice, with navigation cards or without, its rows, and those when the last card is marked for deletion.
  const std::tuple<CardChoice, bool, Rows, Rows> kCases[] = {
      {CardChoice::All, false, {2, 4, 5, 6, 7}, {2, 4, 5, 6}},
      {CardChoice::All, true, {2, 3, 4, 5, 6, 7}, {2, 3, 4, 5, 6}},
      {CardChoice::Found, false, {2, 4}, {2, 4}},
      {CardChoice::Found, true, {2, 3, 4}, {2, 3, 4}},
      {CardChoice::Due, true, {4, 7}, {4}},
      {CardChoice::Marked, false, {3, 6, 7}, {3, 6}},
      {CardChoice::Shown, false, {6}, {6}},
  };
  for (const auto& [choice, navigation, rows, without_last] : kCases) {
    file.deletion_marks().Clear();
    EXPECT_EQ(ChosenCards(file, choice, offer, navigation, at), rows) << static_cast<int>(choice);
    (void)file.deletion_marks().Exchange({7});
    EXPECT_EQ(ChosenCards(file, choice, offer, navigation, at), without_last) << static_cast<int>(choice);
  }
  EXPECT_EQ(ChosenCards(file, CardChoice::Shown, {}, false, at), Rows());
  EXPECT_FALSE(CardOffer().Has(CardChoice::Found) || CardOffer().Has(CardChoice::Marked) ||
               CardOffer().Has(CardChoice::Shown));
}

TEST(CardChoice, CallsDueWhatTheStartPageCounts) {
  std::mt19937 chance(7);
  MemoryDisk disk;
  CardFile file{disk};
  std::vector<TestCard> cards = Numbered(3000, [&](int number) {
    TestCard card = KnownCard(number, static_cast<int64_t>(chance() % 5) * 100, static_cast<int64_t>(chance() % 700));
    if (chance() % 5 == 0) card.yes_no_row = Letters("f");
    if (chance() % 9 == 0) card.question = "<navigation>";
    if (chance() % 9 == 0) card.answer = "<+++>";
    if (chance() % 9 == 0) card.time_row = "0";
    return card;
  });
  OpenTestFile(disk, file, cards);
  DueAt at = {.parameters = {}, .now = kNow};
  at.parameters.max_time = 200;
  const auto due = ChosenCards(file, CardChoice::Due, {}, false, at);
  EXPECT_GT(due->size(), 500U);
  EXPECT_EQ(static_cast<int64_t>(due->size()), FiguresOf(file, at.parameters, at.now).due);
  int asked = 0;
  EXPECT_FALSE(ChosenCards(file, CardChoice::All, {}, false, at, [&](int) { return ++asked < 2; }));
  EXPECT_EQ(asked, 2);
}

}  // namespace
}  // namespace tessaro
