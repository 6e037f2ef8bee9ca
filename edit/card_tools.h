#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "cards/keep_going.h"
#include "edit/command_stack.h"
#include "edit/overview_cards.h"
#include "store/file/card_file.h"

// The tools that change or make many cards at once, each as one command. `row` is where the user is.
namespace tessaro {

enum class ToolOutcome {
  Done,
  Nothing,       // there is nothing to do it with or to
  NoNumberLeft,  // the cards to be made would get numbers that links cannot lead to
  Cancelled,
  Failed
};

struct ToolResult {
  ToolOutcome outcome = ToolOutcome::Done;
  int cards = 0;         // entries of an overview, cards changed, cards made
  bool linked = false;   // an index card now leads to the overview
  int64_t start_id = 0;  // where the overview begins
  int start_row = 0;
};

// "<br>" before the line ends of all sides; see TransferLineBreaks.
ToolResult TransferAllLineBreaks(CardFile& file, CommandStack& commands, int row, const KeepGoing& keep_going = {});

// Replaces the generated overview of all cards by a new one at the end of the file. Cards that are no card of their own
// to learn (navigation cards) are no entries.
ToolResult MakeRowOrderOverview(CardFile& file, CommandStack& commands, const OverviewSymbols& symbols, int row,
                                const KeepGoing& keep_going = {});
// The same for the cards of a topic, or of two at once; replaces the overview of the same title.
ToolResult MakeTopicOverview(CardFile& file, CommandStack& commands, const OverviewSymbols& symbols,
                             std::string_view topic1, std::string_view topic2, int row,
                             const KeepGoing& keep_going = {});

// Adds the topic that the card file's settings name for the number in a card's Topic to the front of the card.
ToolResult TransferOldTopics(CardFile& file, CommandStack& commands, int row, const KeepGoing& keep_going = {});

// For each picture a copy of the card `row` that shows it, at the end of the file. Nothing: that card shows no picture.
ToolResult MakePictureCards(CardFile& file, CommandStack& commands, const std::vector<std::string>& pictures, int row);

}  // namespace tessaro
