#include "outlook/card_lines.h"

#include "cards/card_edit.h"
#include "tests/outlook/outlook_fixture.h"

namespace tessaro {
namespace {

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
  EXPECT_EQ(lines.Due(1), due);
  EXPECT_EQ(lines.Seconds(2), 50);
  EXPECT_EQ(lines.Misses(0), 2);
}

}  // namespace
}  // namespace tessaro
