#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "cards/card_reader.h"
#include "cards/keep_going.h"
#include "settings/learning_parameters.h"
#include "store/file/card_file.h"

namespace tessaro {

enum class CardChoice { All, Found, Due, Marked, Shown };

// The cards that there are to choose from.
struct CardOffer {
  std::function<bool(int row)> found = {};  // whether the search made last finds this card; empty: none was made
  std::vector<int> marked = {};             // rows, ascending
  int shown = 0;                            // the row of the card being looked at; 0: none
  bool Has(CardChoice choice) const;
};

struct DueAt {
  LearningParameters parameters;
  int64_t now = 0;  // in seconds since 1970
};

// The rows of the chosen cards in the order of the file, without those marked for deletion. `navigation`: of all cards
// and of those found, navigation cards, too. Nothing when it was ended early.
std::optional<std::vector<int>> ChosenCards(const CardFile& file, CardChoice choice, const CardOffer& offer,
                                            bool navigation, const DueAt& at, const KeepGoing& keep_going = {});

}  // namespace tessaro
