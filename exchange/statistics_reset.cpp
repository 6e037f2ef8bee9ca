#include "exchange/statistics_reset.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "cards/answer_history.h"
#include "cards/card_edit.h"
#include "exchange/blank_card.h"

namespace tessaro {
namespace {

constexpr int kQueuedBehind = 100;  // row of the learning index, and the cards that a file must have more of
constexpr int64_t kBaseOfFewCards = 100'000;
// Deliberate: not the "0" that an import gives.
constexpr std::string_view kNoTimeLearned = "00";

bool WasKnown(std::string_view letters, int run_length) {
  const auto run = static_cast<size_t>(run_length);
  return letters.substr(0, run) == std::string(run, kKnownLetter);
}

int64_t BaseOf(const CardFile& file, ResetScope scope) {
  if (!scope) return 0;
  return file.CardCount() > kQueuedBehind ? file.learn_index().Score(kQueuedBehind) : kBaseOfFewCards;
}

}  // namespace

std::optional<int64_t> ResetStatistics(CardFile& file, ResetScope scope, const WorkObserver& observer) {
  const CardTable& cards = file.cards();
  const CardColumns& columns = file.columns();
  const std::string letters = BlankYesNoRow();
  const std::string times = BlankTimeRow();
  const int64_t base = BaseOf(file, scope);
  WorkWatch watch(observer, kTellEveryCards);
  CardCommand command;
  int64_t count = 0;
  for (int row = kFirstCardRow; row <= file.CardCount() + 1 && cards.Peek(columns.id, row) != kEndMark; ++row) {
    if (!watch.GoOn(row)) return std::nullopt;
    cards.Expect(row + CardTable::kAhead);
    if (scope && WasKnown(cards.Peek(columns.yes_no_row, row), *scope)) continue;
    const std::string score = QueuedScore(base, ++count);
    command.Replace(row, {{columns.score, score},
                          {columns.time_learned, kNoTimeLearned},
                          {columns.yes_no_row, letters},
                          {columns.time_row, times}});
  }
  CardEdit edit(file);
  if (!edit.ApplyForGood(std::move(command))) return std::nullopt;
  (void)edit.Finish();
  return count;
}

}  // namespace tessaro
