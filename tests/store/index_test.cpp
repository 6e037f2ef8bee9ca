#include <random>

#include "store/index/bisection_order.h"
#include "tests/support/test_cards.h"

namespace tessaro {
namespace {

CardTable CardsWithScores(const std::vector<std::string>& scores) {
  std::vector<TestCard> cards;
  for (const std::string& score : scores)
    cards.push_back({.id = "00000" + std::to_string(cards.size() + 1), .score = score});
  return MakeCards(cards);
}

// The file of an index with "|" for the separator.
template <typename Index>
std::string TextOf(const Index& index, const CardTable& cards) {
  MemoryDisk disk;
  EXPECT_TRUE(index.SaveTo(*disk.Create("index"), cards));
  return WithBars(disk.Content("index").value_or(""));
}

// Has the index take over a file, as a table and as its text.
template <typename Index>
bool Adopts(Index& index, std::string text, const CardTable& cards) {
  std::replace(text.begin(), text.end(), '|', kFieldSeparator);
  const CardIds ids(cards);
  Index other;
  const bool adopted = other.Adopt(TableOf(text), ids);
  EXPECT_EQ(index.Adopt(text, ids), adopted) << text;
  EXPECT_TRUE(!adopted || TextOf(index, cards) == TextOf(other, cards));
  return adopted;
}

TEST(LearnIndex, IsWrittenSortedByScoreWithStartAndEndRow) {
  const std::pair<std::vector<std::string>, std::string> cases[] = {
      {{}, ""},
      {{"000000005", "000000001", "000000005"}, "3|000000001|000002\n2|000000005|000001\n4|000000005|000003\n"},
      {{"7", "-2", "", "\\x"}, "3|-2|000002\n4||000003\n5|\\\\x|000004\n2|7|000001\n"},
      {{"1000000000", "999999999"}, "3|999999999|000002\n"},
  };
  for (const auto& [scores, rows] : cases) {
    const CardTable cards = CardsWithScores(scores);
    LearnIndex index;
    EXPECT_EQ(index.RowCount(), 0);
    ASSERT_TRUE(index.Build(cards));
    EXPECT_EQ(TextOf(index, cards), "BoxPos|Score|ID\n-1|-1|@@\n" + rows + "999999|999999999|##\n");
    const bool nothing_left_out = index.RowCount() == cards.RowCount();
    EXPECT_EQ(Adopts(index, TextOf(index, cards), cards), nothing_left_out);
  }
}

TEST(LinkIndex, IsWrittenSortedByNumberAndFindsCards) {
  const CardTable cards = MakeCards(
      {{.id = "000007"}, {.id = "000003"}, {.id = "000012"}, {.id = "3"}, {.id = "1000000"}, {.id = "a\x0F"}});
  LinkIndex index;
  ASSERT_TRUE(index.Build(cards));
  EXPECT_EQ(TextOf(index, cards), "ID|BoxPos\n-1|-1\na\\||7\n000003|3\n3|5\n000007|2\n000012|4\n999999|999999\n");
  for (const auto& [id, row] : {std::pair{7, 2}, {3, 3}, {0, 0}, {8, 0}, {-1, 0}, {999999, 0}, {1000000, 0}})
    EXPECT_EQ(index.RowOfId(id), row) << id;
}

const std::string kLearnText = "BoxPos|Score|ID\n-1|-1|@@\n3|000000001|000002\n2|5|000001\n999999|999999999|##\n";
const std::string kLinkText = "ID|BoxPos\n-1|-1\n000001|2\n000002|3\n999999|999999\n";

TEST(Indexes, AdoptOnlyAFileThatFitsTheCards) {
  const CardTable cards = CardsWithScores({"000000005", "000000001"});
  LearnIndex learn;
  LinkIndex link;
  EXPECT_TRUE(Adopts(learn, kLearnText, cards));
  EXPECT_EQ(TextOf(learn, cards), kLearnText);
  const std::tuple<int, int, int64_t> rows[] = {
      {-1, 0, 0}, {0, 0, 0}, {1, -1, -1}, {2, 3, 1}, {3, 2, 5}, {4, 999999, 999999999}, {5, 0, 0}};
  for (const auto& [row, box_pos, score] : rows)
    EXPECT_TRUE(learn.BoxPos(row) == box_pos && learn.Score(row) == score) << row;
  for (const int absent : {-1, 0, 1, 4, 1000}) EXPECT_EQ(learn.RowOfCard(absent), 0) << absent;
  EXPECT_TRUE(Adopts(link, kLinkText, cards));
  EXPECT_EQ(TextOf(link, cards), kLinkText);

  using Change = std::pair<std::string_view, std::string_view>;
  // The score of a row may differ from that of the card: taking an answer back leaves the index alone. The others are
  // what a table reads alike.
  for (const Change& c :
       {Change{"000000001", "000000000"}, {"2\n", "2\r\n"}, {"2\n", "2|mehr\n"}, {"|000002", "|\\000002"}}) {
    EXPECT_TRUE(Adopts(learn, With(kLearnText, c), cards)) << c.second;
  }
  const Change bad_learn[] = {
      {"Score|ID\n", "ID|Score\n"}, {"|ID\n", "|ID|X\n"},     {"\n-1|-1|@@\n", "\n"},       {"-1|-1|@@", "-1|-1|"},
      {"|##\n", "|##\n\n"},         {"999|##", "998|##"},     {"2|5|000001\n", ""},         {"2|5|", "2|1000000000|"},
      {"9|##\n", "9|##"},           {"2\n", "2\r\r\n"},       {"|000002", "|000001"},       {"\n3|0", "\n03|0"},
      {"2|5|000001", "4|5|##"},     {"2|5|000001", "1|5|@@"}, {"2|5|000001", "3|5|000002"}, {"00001|", "00006|"},
      {"2|5", "99999999999|5"},     {"|000002", "|0000002"},  {"|000002", "|00002"}};
  const Change bad_link[] = {{"ID|BoxPos", "BoxPos|ID"},        {"-1|-1", "-1|0"},
                             {"999999|999999", "999999|99999"}, {"000001|2\n000002|3", "000002|3\n000001|2"},
                             {"000002|3", "000001|2"},          {"000002|3", "000002|x"},
                             {"000002|3", "0000002|3"}};
  for (const Change& c : bad_learn) EXPECT_FALSE(Adopts(learn, With(kLearnText, c), cards)) << c.second;
  for (const Change& c : bad_link) EXPECT_FALSE(Adopts(link, With(kLinkText, c), cards)) << c.second;
  // Nor are they built over a table of other columns; whatever is refused leaves them as they were.
  CardTable defect;
  defect.AddColumn("Id");
  EXPECT_FALSE(learn.Build(defect) || link.Build(defect));
  EXPECT_TRUE(learn.RowCount() == 4 && link.RowCount() == 4);
}

// Puts the entries in row by row, as the order is defined. `rows` counts from 1 with a start row, as an index does.
std::vector<int32_t> OrderByInserting(const std::vector<int64_t>& keys, int64_t end_key) {
  std::vector<std::pair<int64_t, int32_t>> rows = {{0, 0}, {-1, -1}, {end_key, -1}};  // keys and entries
  size_t n = 2;
  for (size_t i = 0; i < keys.size(); ++i) {
    size_t low = 2;
    size_t high = n;
    size_t middle = std::max<size_t>(n / 2, 2);
    do {
      if (rows[middle].first >= keys[i]) high = middle;
      if (rows[middle].first <= keys[i]) low = middle;
      middle = low + (high - low) / 2;
    } while (high - low >= 10);
    while (low <= high && rows[low].first < keys[i]) ++low;
    if (low > high) continue;
    rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(low), {keys[i], static_cast<int32_t>(i)});
    ++n;
  }
  std::vector<int32_t> order;
  for (size_t row = 2; row < n; ++row) order.push_back(rows[row].second);
  return order;
}

TEST(BisectionOrder, GivesTheOrderOfInsertingOneByOne) {
  std::mt19937 random(20240229);
  const auto draw = [&](int64_t most) { return static_cast<int64_t>(random() % static_cast<uint64_t>(most + 1)); };
  constexpr int64_t kEndKey = 999;
  for (int round = 0; round < 4000; ++round) {
    // Mostly small ones, where every size occurs; a few as long as the bisection needs to go deep.
    const int64_t size = round % 40 == 0 ? draw(3000) : draw(80);
    const int64_t distinct = 1 + draw(round % 3 == 0 ? 1005 : 6);
    std::vector<int64_t> keys;
    for (int64_t i = 0; i < size; ++i) keys.push_back(kEndKey + 2 - draw(distinct) * (round % 2 == 0 ? 1 : 150));
    if (round % 5 == 0) std::sort(keys.begin(), keys.end());
    if (round % 7 == 0) std::reverse(keys.begin(), keys.end());
    ASSERT_EQ(BisectionOrder(keys, kEndKey), OrderByInserting(keys, kEndKey)) << ::testing::PrintToString(keys);
  }
}

// The index as a list of rows, each a card and its score, changed row by row.
using PlainIndex = std::vector<std::pair<int, int64_t>>;

void Update(PlainIndex& rows, int card_row, int64_t score) {
  const auto place = std::find_if(rows.begin(), rows.end(), [&](const auto& row) { return row.second >= score; });
  const auto old_row = std::find_if(rows.begin(), rows.end(), [&](const auto& row) { return row.first == card_row; });
  if (old_row == rows.end()) {
    rows.insert(place, {card_row, score});
    return;
  }
  old_row->second = score;
  if (old_row < place) std::rotate(old_row, old_row + 1, place);
  if (old_row > place) std::rotate(place, old_row, old_row + 1);
}

void ExpectSame(const LearnIndex& index, const PlainIndex& plain) {
  ASSERT_EQ(index.RowCount(), static_cast<int>(plain.size()) + 2);
  for (int row = 2; row < index.RowCount(); ++row) {
    const auto& [card_row, score] = plain[static_cast<size_t>(row) - 2];
    ASSERT_EQ(index.BoxPos(row), card_row) << row;
    ASSERT_EQ(index.Score(row), score) << row;
    ASSERT_EQ(index.RowOfCard(card_row), row);
  }
}

TEST(LearnIndex, UpdatesAsMovingRowsInAListDoes) {
  constexpr int kCards = 2500;  // several chunks, which grow, split and run empty
  std::vector<std::string> scores;
  for (int i = 0; i < kCards; ++i) scores.push_back(std::to_string(i % 7));
  // Two cards are too high for the index at first.
  scores[10] = scores[2400] = "1000000000";
  const CardTable cards = CardsWithScores(scores);
  LearnIndex index;
  ASSERT_TRUE(index.Build(cards));
  PlainIndex plain;
  for (int row = 2; row < index.RowCount(); ++row) plain.emplace_back(index.BoxPos(row), index.Score(row));
  const auto update = [&](int card_row, int64_t score) {
    index.Update(card_row, score);
    Update(plain, card_row, score);
  };
  std::mt19937 random(7);
  for (int i = 0; i < 4000; ++i) {
    const int card_row = 2 + static_cast<int>(random() % (i < 2000 ? kCards : 50));
    const int64_t lower = index.Score(index.RowOfCard(card_row)) - 1;
    update(card_row, i % 3 == 0 ? lower : static_cast<int64_t>(random() % (i % 2 == 0 ? 10 : 1000)));
    if (i % 500 == 0) ExpectSame(index, plain);
  }
  // Nearly all cards go to one end and back.
  for (const int64_t score : {kMaxScore, int64_t{0}, int64_t{5}}) {
    for (int card_row = 2; card_row < kCards; ++card_row) update(card_row, score);
    ExpectSame(index, plain);
  }
}

}  // namespace
}  // namespace tessaro
