#pragma once

#include <vector>

#include "outlook/due_count.h"
#include "outlook/outlook_page.h"
#include "outlook/plan.h"

// The pages of the forecast in words, plots and tables.
namespace tessaro {

// `next_due` is the first due time to come, 0 for none.
PageContent DuePage(const DeckOutlook& deck, const std::vector<DueSpan>& spans, int64_t next_due,
                    const LocalDays& days);
// "aufgeholt am Mi, 30.11. (9 Tage); mit 10 Min. nicht, mit 40 Min. in 4 Tagen", for the plan of Plan::CatchUp.
QString CatchUpText(const PlanReport& report, int64_t today);
// "Nach der Pause von 21 Tagen wissen Sie voraussichtlich noch 87 %."; empty without a pause of a week.
QString PauseText(const DeckOutlook& deck);
PageContent PlanPage(const DeckOutlook& deck, const PlanReport& report, int64_t today);

}  // namespace tessaro
