#include <gtest/gtest.h>

#include <random>

#include "store/learn_index.h"
#include "store/link_index.h"
#include "tests/support/test_cards.h"

namespace tessaro {
namespace {

std::vector<TestCard> CardsWithScores(const std::vector<std::string>& scores) {
  std::vector<TestCard> cards;
  for (const std::string& score : scores) {
    cards.push_back({.id = "00000" + std::to_string(cards.size() + 1), .score = score});
  }
  return cards;
}

std::vector<TestCard> CardsWithIds(const std::vector<std::string>& ids) {
  std::vector<TestCard> cards;
  for (const std::string& id : ids) cards.push_back({.id = id});
  return cards;
}

// The file of an index with "|" for the separator.
template <typename Index>
std::string TextOf(const Index& index, const CardTable& cards) {
  MemoryDisk disk;
  EXPECT_TRUE(index.SaveTo(*disk.Create("index"), cards));
  std::string text = disk.Content("index").value_or("");
  std::replace(text.begin(), text.end(), kFieldSeparator, '|');
  return text;
}

// Has the index take over a file, as a table and as its text.
template <typename Index>
bool Adopts(Index& index, std::string text, const CardTable& cards) {
  std::replace(text.begin(), text.end(), '|', kFieldSeparator);
  const CardIds ids(cards);
  Index other;
  const bool adopted = other.Adopt(TableOf(text), ids);
  EXPECT_EQ(index.Adopt(text, ids), adopted) << text;
  if (adopted) {
    EXPECT_EQ(TextOf(index, cards), TextOf(other, cards));
  }
  return adopted;
}

TEST(LearnIndex, IsWrittenSortedByScoreWithStartAndEndRow) {
  const struct {
    std::vector<std::string> scores;
    std::string rows;
  } cases[] = {
      {{}, ""},
      {{"000000005", "000000001", "000000005"}, "3|000000001|000002\n2|000000005|000001\n4|000000005|000003\n"},
      {{"7", "-2", "", "\\x"}, "3|-2|000002\n4||000003\n5|\\\\x|000004\n2|7|000001\n"},
      {{"1000000000", "999999999"}, "3|999999999|000002\n"},
  };
  for (const auto& c : cases) {
    const CardTable cards = MakeCards(CardsWithScores(c.scores));
    LearnIndex index;
    EXPECT_EQ(index.RowCount(), 0);
    ASSERT_TRUE(index.Build(cards));
    EXPECT_EQ(TextOf(index, cards), "BoxPos|Score|ID\n-1|-1|@@\n" + c.rows + "999999|999999999|##\n");
    const bool nothing_left_out = index.RowCount() == cards.RowCount();
    EXPECT_EQ(Adopts(index, TextOf(index, cards), cards), nothing_left_out);
  }
}

TEST(LinkIndex, IsWrittenSortedByNumberAndFindsCards) {
  const CardTable cards = MakeCards(CardsWithIds({"000007", "000003", "000012", "3", "1000000", "a\x0F"}));
  LinkIndex index;
  ASSERT_TRUE(index.Build(cards));
  EXPECT_EQ(TextOf(index, cards), "ID|BoxPos\n-1|-1\na\\||7\n000003|3\n3|5\n000007|2\n000012|4\n999999|999999\n");
  const struct {
    int64_t id;
    int row;
  } cases[] = {{7, 2}, {3, 3}, {12, 4}, {0, 7}, {8, 0}, {-1, 0}, {999999, 0}, {1000000, 0}};
  for (const auto& c : cases) EXPECT_EQ(index.RowOfId(c.id), c.row) << c.id;
}

TEST(Indexes, RefuseACardWithoutIdAndStayAsTheyWere) {
  const CardTable good = MakeCards(CardsWithIds({"000001"}));
  const CardTable bad = MakeCards(CardsWithIds({"000001", ""}));
  LearnIndex learn;
  LinkIndex link;
  ASSERT_TRUE(learn.Build(good) && link.Build(good));
  EXPECT_FALSE(learn.Build(bad));
  EXPECT_FALSE(link.Build(bad));
  EXPECT_EQ(learn.RowCount(), 3);
  EXPECT_EQ(link.RowCount(), 3);
}

TEST(LearnIndex, AnswersForEveryRow) {
  const CardTable cards = MakeCards(CardsWithScores({"000000005", "000000001"}));
  LearnIndex index;
  ASSERT_TRUE(index.Build(cards));
  const struct {
    int row, box_pos;
    int64_t score;
  } cases[] = {{-1, 0, 0}, {0, 0, 0}, {1, -1, -1}, {2, 3, 1}, {3, 2, 5}, {4, 999999, 999999999}, {5, 0, 0}};
  for (const auto& c : cases) {
    EXPECT_EQ(index.BoxPos(c.row), c.box_pos) << c.row;
    EXPECT_EQ(index.Score(c.row), c.score) << c.row;
  }
  EXPECT_EQ(index.RowOfCard(2), 3);
  for (const int absent : {-1, 0, 1, 4, 1000}) EXPECT_EQ(index.RowOfCard(absent), 0) << absent;
}

const std::string kLearnText = "BoxPos|Score|ID\n-1|-1|@@\n3|000000001|000002\n2|5|000001\n999999|999999999|##\n";
const std::string kLinkText = "ID|BoxPos\n-1|-1\n000001|2\n000002|3\n999999|999999\n";

std::string With(std::string text, std::string_view old_part, std::string_view new_part) {
  const size_t at = text.find(old_part);
  EXPECT_NE(at, std::string::npos) << old_part;
  return text.replace(at, old_part.size(), new_part);
}

TEST(Indexes, AdoptOnlyAFileThatFitsTheCards) {
  const CardTable cards = MakeCards(CardsWithScores({"000000005", "000000001"}));
  LearnIndex learn;
  LinkIndex link;
  EXPECT_TRUE(Adopts(learn, kLearnText, cards));
  EXPECT_EQ(TextOf(learn, cards), kLearnText);
  EXPECT_TRUE(Adopts(link, kLinkText, cards));
  EXPECT_EQ(TextOf(link, cards), kLinkText);
  // The score of a row may differ from that of the card: taking an answer back leaves the index alone.
  EXPECT_TRUE(Adopts(learn, With(kLearnText, "000000001", "000000000"), cards));

  // What a table reads alike.
  for (const auto& [old_part, new_part] :
       {std::pair{"000002\n", "000002\r\n"}, {"000002\n", "000002|mehr\n"}, {"000002\n", "\\000002\n"}}) {
    EXPECT_TRUE(Adopts(learn, With(kLearnText, old_part, new_part), cards)) << new_part;
  }
  const struct {
    std::string_view old_part, new_part;
  } bad_learn[] = {{"BoxPos|Score|ID", "BoxPos|ID|Score"},
                   {"|ID\n", "|ID|X\n"},
                   {"-1|-1|@@\n", ""},
                   {"-1|-1|@@", "-1|-1|"},
                   {"|##\n", "|##\n\n"},
                   {"999999999|##", "999999998|##"},
                   {"3|000000001|000002\n", ""},
                   {"3|000000001|000002", "2|000000001|000001"},
                   {"3|000000001|000002", "3|000000001|000001"},
                   {"3|000000001|000002", "03|000000001|000002"},
                   {"3|000000001|000002", "3 |000000001|000002"},
                   {"3|000000001|000002", "4|000000001|##"},
                   {"3|000000001|000002", "1|000000001|@@"},
                   {"3|000000001|000002", "99999999999999999999|000000001|000002"},
                   {"3|000000001|000002", "3|000000006|000002"},
                   {"2|5|", "2|1000000000|"},
                   {"|##\n", "|##"},
                   {"|000002\n", "|000002\\\n"},
                   {"|000002\n", "|000002\r\r\n"}};
  for (const auto& c : bad_learn) {
    EXPECT_FALSE(Adopts(learn, With(kLearnText, c.old_part, c.new_part), cards)) << c.new_part;
  }
  const struct {
    std::string_view old_part, new_part;
  } bad_link[] = {{"ID|BoxPos", "BoxPos|ID"},        {"-1|-1", "-1|0"},
                  {"999999|999999", "999999|99999"}, {"000001|2\n000002|3", "000002|3\n000001|2"},
                  {"000002|3", "000001|2"},          {"000002|3", "000002|x"}};
  for (const auto& c : bad_link) {
    EXPECT_FALSE(Adopts(link, With(kLinkText, c.old_part, c.new_part), cards)) << c.new_part;
  }
  const CardTable empty;
  EXPECT_FALSE(learn.Adopt(empty, CardIds(empty)));
  EXPECT_EQ(learn.RowCount(), 4);
  EXPECT_EQ(link.RowCount(), 4);
}

// The index as a list of rows, changed row by row.
class PlainIndex {
 public:
  explicit PlainIndex(const LearnIndex& index) {
    for (int row = 2; row < index.RowCount(); ++row) rows_.push_back({index.BoxPos(row), index.Score(row)});
  }

  void Update(int card_row, int64_t score) {
    const auto place = std::find_if(rows_.begin(), rows_.end(), [&](const Row& row) { return row.score >= score; });
    auto old_row = std::find_if(rows_.begin(), rows_.end(), [&](const Row& row) { return row.box_pos == card_row; });
    if (old_row != rows_.end() && old_row == place) {
      place->score = score;
      return;
    }
    auto at = place - rows_.begin();
    if (old_row != rows_.end()) {
      if (old_row < place) --at;
      rows_.erase(old_row);
    }
    rows_.insert(rows_.begin() + at, {card_row, score});
  }

  void ExpectSame(const LearnIndex& index) const {
    ASSERT_EQ(index.RowCount(), static_cast<int>(rows_.size()) + 2);
    for (int row = 2; row < index.RowCount(); ++row) {
      const Row& expected = rows_[static_cast<size_t>(row) - 2];
      ASSERT_EQ(index.BoxPos(row), expected.box_pos) << row;
      ASSERT_EQ(index.Score(row), expected.score) << row;
      ASSERT_EQ(index.RowOfCard(expected.box_pos), row);
    }
  }

 private:
  struct Row {
    int box_pos;
    int64_t score;
  };
  std::vector<Row> rows_;
};

TEST(LearnIndex, UpdatesAsMovingRowsInAListDoes) {
  constexpr int kCards = 2500;  // several chunks, which grow, split and run empty
  std::vector<std::string> scores;
  for (int i = 0; i < kCards; ++i) scores.push_back(std::to_string(i % 7));
  // Two cards are too high for the index at first.
  scores[10] = scores[2400] = "1000000000";
  const CardTable cards = MakeCards(CardsWithScores(scores));
  LearnIndex index;
  ASSERT_TRUE(index.Build(cards));
  PlainIndex plain(index);
  std::mt19937 random(7);
  for (int i = 0; i < 4000; ++i) {
    const int card_row = 2 + static_cast<int>(random() % (i < 2000 ? kCards : 50));
    const int64_t score = i % 3 == 0 ? 0 : static_cast<int64_t>(random() % (i % 2 == 0 ? 10 : 1000));
    index.Update(card_row, score);
    plain.Update(card_row, score);
    if (i % 500 == 0) plain.ExpectSame(index);
  }
  // Nearly all cards go to one end and back.
  for (const int64_t score : {kMaxScore, int64_t{0}, int64_t{5}}) {
    for (int card_row = 2; card_row < kCards; ++card_row) {
      index.Update(card_row, score);
      plain.Update(card_row, score);
    }
    plain.ExpectSame(index);
  }
}

}  // namespace
}  // namespace tessaro
