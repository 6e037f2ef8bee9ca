#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "store/file/card_file.h"
#include "store/table/row_shift.h"

namespace tessaro {

// What marks the card to begin with, an index and the beginning of a generated overview.
inline constexpr std::string_view kHomeTag = "<home>";
inline constexpr std::string_view kIndexTag = "<index>";
inline constexpr std::string_view kAutomapTag = "<automap>";

// The cards on which a link was followed, each by its card table row or by its number, as the owner has it; the last 30
// are remembered.
class BackStack {
 public:
  bool Empty() const { return size_ == 0; }
  // 0 is no card and not remembered.
  void Push(int64_t card);
  // The newest one, which is taken off; 0 when empty.
  int64_t Pop();
  // For rows, after they moved. Cards that are gone are not gone back to.
  void Follow(const RowShift& shift);

 private:
  static constexpr size_t kDepth = 30;
  std::array<int64_t, kDepth> cards_{};
  size_t size_ = 0;
};

// Finds the cards that the home and overview commands lead to. The home card is searched once and remembered.
class Landmarks {
 public:
  // The first card with "<home>", else the first with "<index>", else the first card; 0 in a file without cards.
  int HomeRow(const CardFile& file);
  // The card whose number the card file's settings remember, else the first with "<automap>"; 0 when there is none.
  int OverviewRow(CardFile& file);
  // To be called when cards may have changed.
  void Forget() { *this = {}; }

 private:
  void Search(const CardFile& file);

  bool searched_ = false;
  int rows_ = 0;  // rows of the table when it was searched
  int home_ = 0;
  int index_ = 0;
  int automap_ = 0;
};

}  // namespace tessaro
