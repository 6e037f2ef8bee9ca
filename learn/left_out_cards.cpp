#include "learn/left_out_cards.h"

#include <algorithm>
#include <utility>

#include "cards/card_reader.h"

namespace tessaro {

void LeftOutCards::FindAll() {
  rows_.clear();
  const CardReader cards(file_);
  for (int row = kFirstCardRow; row <= cards.LastCardRow(); ++row) {
    if (cards.IsNeverChosen(row)) rows_.insert(row);
  }
  SortByIndex();
}

void LeftOutCards::SortByIndex() {
  in_index_.clear();
  const LearnIndex& index = file_.learn_index();
  for (const int32_t row : rows_) {
    if (index.RowOfCard(row) != 0) in_index_.push_back(row);
  }
  std::ranges::sort(in_index_, {}, [&](int32_t row) { return index.RowOfCard(row); });
}

void LeftOutCards::Follow(const RowShift& shift) {
  std::unordered_set<int32_t> moved;
  for (const int32_t row : rows_) {
    if (const int now = shift.Map(row); now != 0) moved.insert(now);
  }
  rows_ = std::move(moved);
  for (int32_t& row : in_index_) row = shift.Map(row);
  std::erase(in_index_, 0);
  for (const int row : shift.inserted()) Judge(row);
}

void LeftOutCards::TextsChanged(std::span<const int> rows) {
  for (const int row : rows) Judge(row);
}

void LeftOutCards::Judge(int card_row) {
  if (CardReader(file_).IsLeftOut(card_row)) {
    rows_.insert(card_row);
    IndexRowChanged(card_row);
  } else if (rows_.erase(card_row) != 0) {
    std::erase(in_index_, card_row);
  }
}

void LeftOutCards::IndexRowChanged(int card_row) {
  if (!Has(card_row)) return;
  std::erase(in_index_, card_row);
  const LearnIndex& index = file_.learn_index();
  const int index_row = index.RowOfCard(card_row);
  if (index_row == 0) return;
  const auto place =
      std::ranges::lower_bound(in_index_, index_row, {}, [&](int32_t row) { return index.RowOfCard(row); });
  in_index_.insert(place, card_row);
}

int LeftOutCards::OthersCount() const {
  return CardReader(file_).Count() - static_cast<int>(rows_.size());
}

// The k-th of them (from 0) has `index row - k` as the position of the card after it, which never falls with k.
int64_t LeftOutCards::IndexRowAt(int64_t position) const {
  const LearnIndex& index = file_.learn_index();
  size_t low = 0;
  size_t high = in_index_.size();
  while (low < high) {
    const size_t middle = low + (high - low) / 2;
    if (index.RowOfCard(in_index_[middle]) - static_cast<int64_t>(middle) <= position) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return position + static_cast<int64_t>(low);
}

}  // namespace tessaro
