#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "cards/card_reader.h"
#include "edit/card_desk.h"
#include "tests/support/test_cards.h"

namespace tessaro {

// Both indexes are what a rebuild would make of the cards, the order among equal keys aside.
inline void ExpectIndexesRight(const CardFile& file) {
  const CardReader cards(file);
  LinkIndex links;
  LearnIndex scores;
  ASSERT_TRUE(links.Build(file.cards()));
  ASSERT_TRUE(scores.Build(file.cards()));
  EXPECT_EQ(scores.RowCount(), file.learn_index().RowCount());
  int64_t last = -1;
  for (int row = 2; row < file.learn_index().RowCount(); ++row) {
    const int64_t score = file.learn_index().Score(row);
    EXPECT_GE(score, last);
    last = score;
  }
  for (int row = kFirstCardRow; row <= cards.LastCardRow(); ++row) {
    const int place = file.learn_index().RowOfCard(row);
    ASSERT_NE(place, 0) << row;
    EXPECT_EQ(file.learn_index().Score(place), cards.Score(row));
    const int64_t id = LeadingNumber(cards.Id(row));
    EXPECT_EQ(LeadingNumber(cards.Id(file.RowOfId(id))), id);
  }
}

inline std::string CardsOf(const CardFile& file) {
  std::string text;
  for (int row = 1; row <= file.cards().RowCount(); ++row) {
    for (int column = 1; column <= file.cards().ColumnCount(); ++column) {
      text.append(file.cards().Peek(column, row)) += '|';
    }
    text += '\n';
  }
  return text;
}

class CardDeskTest : public testing::Test {
 protected:
  void Open(const std::vector<TestCard>& cards) {
    OpenTestFile(disk, file, cards);
    desk = std::make_unique<CardDesk>(file, made);
    desk->First();
  }
  // IDs and fronts of all cards; "*" stands before what is marked, ">" before the card on the desk.
  std::string Show() const {
    const CardReader cards(file);
    std::string text;
    for (int row = kFirstCardRow; row <= cards.LastCardRow(); ++row) {
      if (!text.empty()) text += ' ';
      if (desk && desk->row() == row) text += '>';
      if (file.deletion_marks().Has(row)) text += '*';
      text += std::to_string(LeadingNumber(cards.Id(row))) + ':' + std::string(cards.Question(row));
    }
    return text;
  }
  std::string Front(int row) const { return std::string(file.cards().Peek(file.columns().question, row)); }

  MemoryDisk disk;
  CardFile file{disk};
  int64_t made = 0;
  std::unique_ptr<CardDesk> desk;
};

}  // namespace tessaro
