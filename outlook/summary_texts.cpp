#include "outlook/summary_texts.h"

#include "outlook/activity.h"
#include "outlook/counted_cards.h"
#include "outlook/number_texts.h"

namespace tessaro {

using namespace Qt::Literals::StringLiterals;

QString TodayLine(const CardFile& file, int64_t now, const LocalDays& days) {
  const ActivitySpan today = CountToday(file, now, days);
  if (today.answers() == 0) return {};
  return u"Heute: %1, %2 gewusst"_s.arg(
      AnswersText(today.answers()),
      PercentText(static_cast<double>(today.known) / static_cast<double>(today.answers())));
}

QString RecallLine(const CardFile& file, int row, const RecallWeights& weights, int64_t now) {
  const std::optional<AnswerSeries> series = ReadCounted(file, row, now);
  if (!series) return {};
  const MemoryTrace trace = TraceOf(*series);
  const auto after = [&](int64_t days) { return PercentText(RecallAt(trace, weights, now + days * 86'400)); };
  return u"Gewusst jetzt: %1 · in 7 Tagen %2 · in 30 Tagen %3"_s.arg(after(0), after(7), after(30));
}

QString KnownLine(const DeckOutlook& deck, const Knowledge& knowledge) {
  if (deck.answered.empty()) return {};
  return u"Sie wissen jetzt etwa %1 von %2 Karten."_s.arg(RoundedText(knowledge.known),
                                                          NumberText(static_cast<int64_t>(deck.answered.size())));
}

}  // namespace tessaro
