#include "outlook/card_lines.h"

#include <algorithm>

#include "cards/card_reader.h"
#include "hypertext/plain_text.h"
#include "outlook/due_count.h"

namespace tessaro {

std::vector<CardLine> LinesOf(const CardFile& file, const DeckOutlook& deck, const LearningParameters& parameters,
                              const std::vector<int>& rows) {
  const CardReader cards(file);
  std::vector<CardLine> lines;
  lines.reserve(rows.size());
  for (const int row : rows) {
    if (!cards.IsCardRow(row)) continue;
    CardLine line = {.row = row, .recall = std::nullopt, .seconds = cards.TimeLearned(row)};
    if (const CardTrace* trace = deck.TraceOf(row)) {
      line.recall = RecallAt(*trace, deck.weights, deck.now);
      line.due = DueTimeOf(file, *trace, parameters, deck.now);
      line.misses = trace->misses;
    }
    lines.push_back(line);
  }
  return lines;
}

std::string QuestionStart(const CardFile& file, int row) {
  constexpr size_t kLetters = 80;
  std::string text = PlainBeginning(CardReader(file).Question(row)).substr(0, kLetters);
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

}  // namespace tessaro
