#pragma once

#include <vector>

#include "outlook/activity.h"
#include "outlook/card_lines.h"
#include "outlook/knowledge.h"
#include "outlook/outlook_page.h"
#include "outlook/prediction_check.h"

// The pages of the evaluation in words, plots and tables.
namespace tessaro {

// "Stand 14:05", with what is left out of all sums.
QString StandText(const DeckOutlook& deck);

PageContent KnowledgePage(const DeckOutlook& deck, const Knowledge& knowledge, bool by_retention);
PageContent ActivityPage(const DeckOutlook& deck, const std::vector<ActivitySpan>& spans);
PageContent PredictionPage(const PredictionReport& report);
// `lines` are those of the deck's costs, in the order in which they are to be shown.
PageContent CostPage(const CardFile& file, const DeckOutlook& deck, const CardLines& lines);

}  // namespace tessaro
