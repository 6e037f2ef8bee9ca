#pragma once

#include <QString>

#include "outlook/knowledge.h"

// Lines of the evaluation for other windows.
namespace tessaro {

// "Heute: 143 Antworten, 87 % gewusst"; empty without answers today. Looks at all cards.
QString TodayLine(const CardFile& file, int64_t now, const LocalDays& days);
// "Gewusst jetzt: 87 % · in 7 Tagen 81 % · in 30 Tagen 74 %"; empty for a card without a usable answer.
QString RecallLine(const CardFile& file, int row, const RecallWeights& weights, int64_t now);
// "Sie wissen jetzt etwa 1 842 von 2 310 Karten."; empty when no card was answered.
QString KnownLine(const DeckOutlook& deck, const Knowledge& knowledge);

}  // namespace tessaro
