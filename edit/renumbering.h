#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "cards/keep_going.h"
#include "edit/command_stack.h"
#include "store/file/card_file.h"

namespace tessaro {

// The number that a text is, blanks around it aside; nothing for any other text.
std::optional<int64_t> ReadStartNumber(std::string_view text);
// Whether the cards can be numbered from there on: none below 1, none beyond what links can lead to.
bool CanNumberFrom(const CardFile& file, int64_t start);

// Links to numbers that no card has; nothing when it was ended early.
std::optional<int64_t> CountDeadLinks(const CardFile& file, const KeepGoing& keep_going = {});

enum class RenumberOutcome { Done, BadStart, Cancelled, Failed };

struct RenumberChoice {
  int64_t start = 1;
  bool clear_dead_links = false;  // they then lead to "000000", else they keep their numbers
};

// Numbers all cards in their order from `start` on. Links lead to the same cards as before; of several with the same
// number to the first. The settings of the card file then name the home card and the one where the overview begins.
// `row` is where the user is. On anything but Done all is as it was.
RenumberOutcome Renumber(CardFile& file, CommandStack& commands, const RenumberChoice& choice, int row,
                         const KeepGoing& keep_going = {});

}  // namespace tessaro
