#pragma once

#include "cards/card_reader.h"
#include "edit/card_desk.h"
#include "tests/support/test_cards.h"

namespace tessaro {

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
