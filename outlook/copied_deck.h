#pragma once

#include <memory>
#include <string>

#include "cards/card_reader.h"

namespace tessaro {

// The histories of cards as the text of a card file, without the sides.
class HistoriesText {
 public:
  HistoriesText();
  void Add(const CardReader& cards, int row);
  // To be called once, after the last card.
  std::string Take();

 private:
  std::string text_;
  int cards_ = 0;
};

// Such a text as a card file of its own in memory, without a journal. What happens to it concerns no file. The cards
// stand in the order in which they were added, the first one in kFirstRow.
class CopiedDeck {
 public:
  static constexpr int kFirstRow = kFirstCardRow + 1;
  // `text` must live longer.
  explicit CopiedDeck(const std::string& text);
  ~CopiedDeck();
  CardFile& file() { return *copy_; }
  // Puts new cards behind the others.
  void AddNew(int count);
  const CardFile& file() const { return *copy_; }

 private:
  std::unique_ptr<Disk> disk_;
  std::unique_ptr<CardFile> copy_;
};

}  // namespace tessaro
