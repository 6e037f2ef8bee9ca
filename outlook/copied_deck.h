#pragma once

#include <memory>
#include <string>

#include "cards/card_reader.h"

namespace tessaro {

// The histories of cards as the text of a card file, without the sides.
class HistoriesText {
 public:
  HistoriesText();
  // The n-th card that is added stands in row n + 1.
  void Add(const CardReader& cards, int row);
  // To be called once, after the last card.
  std::string Take();

 private:
  std::string text_;
  int cards_ = 0;
};

// Such a text as a card file of its own in memory, without a journal. What happens to it concerns no file.
class CopiedDeck {
 public:
  // `text` must live longer.
  explicit CopiedDeck(const std::string& text);
  ~CopiedDeck();
  CardFile& file() { return *copy_; }
  const CardFile& file() const { return *copy_; }

 private:
  std::unique_ptr<Disk> disk_;
  std::unique_ptr<CardFile> copy_;
};

}  // namespace tessaro
