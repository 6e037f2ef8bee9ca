#include "outlook/card_lines.h"

#include <algorithm>
#include <utility>

#include "cards/card_reader.h"
#include "hypertext/plain_text.h"
#include "outlook/due_count.h"
#include "platform/code_page.h"

namespace tessaro {
namespace {

std::string Folded(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), ToLower);
  return text;
}

}  // namespace

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

std::vector<int> OrderedPlaces(const CardFile& file, const std::vector<CardLine>& lines, CardLineKey key,
                               bool descending) {
  const auto by = [&](auto key_of) {
    std::vector<std::pair<decltype(key_of(CardLine())), int>> keys;
    keys.reserve(lines.size());
    for (const CardLine& line : lines) keys.emplace_back(key_of(line), static_cast<int>(keys.size()));
    std::stable_sort(keys.begin(), keys.end(), [descending](const auto& a, const auto& b) {
      return descending ? b.first < a.first : a.first < b.first;
    });
    std::vector<int> places;
    places.reserve(keys.size());
    for (const auto& entry : keys) places.push_back(entry.second);
    return places;
  };
  switch (key) {
    case CardLineKey::Question:
      return by([&](const CardLine& line) { return Folded(QuestionStart(file, line.row)); });
    case CardLineKey::Recall:
      return by([](const CardLine& line) { return line.recall; });
    case CardLineKey::Due:
      return by([](const CardLine& line) { return line.due; });
    case CardLineKey::Misses:
      return by([](const CardLine& line) { return line.misses; });
    case CardLineKey::Seconds:
      return by([](const CardLine& line) { return line.seconds; });
    case CardLineKey::Row:
      break;
  }
  return by([](const CardLine& line) { return line.row; });
}

std::string QuestionStart(const CardFile& file, int row) {
  constexpr size_t kLetters = 80;
  std::string text = PlainBeginning(CardReader(file).Question(row)).substr(0, kLetters);
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

}  // namespace tessaro
