#pragma once

#include <QString>
#include <vector>

#include "cards/deck_check.h"

// What the check of a card file says.
namespace tessaro {

// "3 doppelte Nummern, ein Verweis ins Leere"; empty when nothing was found.
QString SummaryText(const DeckReport& report);
// Names the files with changes that were put aside, in a paragraph of its own; empty when there are none.
QString PutAsideText(const std::vector<ChangesPutAside>& put_aside);
// What is wrong with one card.
QString FaultText(const DeckFinding& finding);
// What its repair does, or why there is none.
QString RepairText(const DeckFinding& finding);
// The question before cards are learned whose newest answer lies in the future. `now`: what the clock shows.
QString FutureAnswersText(int64_t cards, const QString& now);

}  // namespace tessaro
