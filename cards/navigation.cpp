#include "cards/navigation.h"

#include <algorithm>
#include <utility>

#include "cards/card_reader.h"
#include "settings/keys.h"

namespace tessaro {
namespace {

bool Holds(std::string_view text, std::string_view tag) {
  return text.find(tag) != std::string_view::npos;
}

}  // namespace

void BackStack::Push(int64_t card) {
  if (card == 0) return;
  if (size_ == kDepth) {
    std::copy(cards_.begin() + 1, cards_.end(), cards_.begin());
    --size_;
  }
  cards_[size_++] = card;
}

int64_t BackStack::Pop() {
  return size_ == 0 ? 0 : cards_[--size_];
}

void BackStack::Follow(const RowShift& shift) {
  const size_t before = std::exchange(size_, 0);
  for (size_t i = 0; i < before; ++i) Push(shift.Map(static_cast<int>(cards_[i])));
}

int Landmarks::HomeRow(const CardFile& file) {
  Search(file);
  if (home_ != 0) return home_;
  if (index_ != 0) return index_;
  return CardReader(file).Count() > 0 ? kFirstCardRow : 0;
}

int Landmarks::OverviewRow(CardFile& file) {
  const int row = file.RowOfId(keys::kOverviewCard.Read(file.settings()));
  if (row != 0) return row;
  Search(file);
  return automap_;
}

void Landmarks::Search(const CardFile& file) {
  const CardReader cards(file);
  if (searched_ && rows_ == file.cards().RowCount()) return;
  *this = {};
  searched_ = true;
  rows_ = file.cards().RowCount();
  for (int row = kFirstCardRow; row <= cards.LastCardRow(); ++row) {
    const std::string_view question = cards.Question(row);
    if (home_ == 0 && Holds(question, kHomeTag)) home_ = row;
    if (index_ == 0 && Holds(question, kIndexTag)) index_ = row;
    if (automap_ == 0 && Holds(question, kAutomapTag)) automap_ = row;
  }
}

}  // namespace tessaro
