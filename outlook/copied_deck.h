#pragma once

#include <memory>
#include <vector>

#include "store/file/card_file.h"

namespace tessaro {

// Cards of a file as a card file of its own in memory: their histories without the sides, and no journal. What happens
// to it concerns no file.
class CopiedDeck {
 public:
  // The cards stand in rows 2 ... N + 1 in the order of `rows`.
  CopiedDeck(const CardFile& file, const std::vector<int>& rows);
  ~CopiedDeck();
  CardFile& file() { return *copy_; }
  const CardFile& file() const { return *copy_; }

 private:
  std::unique_ptr<Disk> disk_;
  std::unique_ptr<CardFile> copy_;
};

}  // namespace tessaro
