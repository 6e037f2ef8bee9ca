#include "learn/answer_rules.h"

#include <algorithm>

#include "platform/saturating.h"

namespace tessaro {
namespace {

void CountOneLess(int64_t& count) {
  count = std::max<int64_t>(count - 1, 0);
}

// Deliberate: the count of unknown cards goes down only when the newest letter was "f", whatever the score was.
void WipeFutureCard(AnswerContext& context, AnswerOutcome& outcome) {
  if (context.history.letters[0] == kNotKnownLetter) CountOneLess(outcome.unknown_count);
  context.history = EmptyHistory();
  context.time_learned = 0;
  outcome.wiped = true;
  outcome.change.time_row = BlankTimeRow();
  outcome.change.yes_no_row = LettersText(context.history.letters);
  outcome.change.score = ScoreText(0);
  outcome.change.time_learned = "0";
}

void WriteHistory(const AnswerContext& context, AnswerOutcome& outcome) {
  outcome.history = context.history;
  if (!context.keep_history) {
    PushAnswer(outcome.history, context.known ? kKnownLetter : kNotKnownLetter, context.now);
    outcome.change.yes_no_row = LettersText(outcome.history.letters);
  }
  outcome.change.time_row = TimesAfterAnswer(outcome.history.times);
}

// `context.score` is the one read before a wipe.
void ScoreKnown(const AnswerContext& context, AnswerOutcome& outcome) {
  outcome.forecast = ForecastRetention(outcome.history, context.min_retention);
  outcome.score = outcome.forecast->score;
  if (context.score < 1 && outcome.score > 0) CountOneLess(outcome.unknown_count);
}

void ScoreNotKnown(const AnswerContext& context, AnswerOutcome& outcome) {
  outcome.score = 0;
  if (context.score > 0) ++outcome.unknown_count;
}

}  // namespace

AnswerOutcome ComputeAnswer(const AnswerContext& given) {
  AnswerContext context = given;
  AnswerOutcome outcome;
  outcome.unknown_count = context.unknown_count;
  if (context.history.times[0] > 0 && context.history.times[0] > context.now) WipeFutureCard(context, outcome);
  WriteHistory(context, outcome);
  if (outcome.history.times[0] < outcome.history.times[1]) {
    outcome.times_out_of_order = true;
    return outcome;
  }
  if (context.known) {
    ScoreKnown(context, outcome);
  } else {
    ScoreNotKnown(context, outcome);
  }
  outcome.change.score = ScoreText(outcome.score);
  outcome.change.time_learned = std::to_string(SaturatingAdd(context.time_learned, context.spent));
  return outcome;
}

CardChange ComputeUndo(const CardReader& cards, int row, bool keep_history) {
  CardChange change;
  // Deliberate: the old score is not restored; the next answer replaces this one.
  change.score = "1";
  if (keep_history) return change;

  AnswerHistory history = cards.History(row);
  DropNewestAnswer(history);
  const std::string letters = LettersText(history.letters);
  const int64_t level = cards.Level(row);
  // Deliberate: a card of box 1 keeps no time older than its current streak.
  const auto cut = static_cast<size_t>(level == 1 ? Streak(letters) : kHistoryLength - 1);
  history.times[cut] = 0;
  change.topic = std::to_string(level > 1 ? level - 1 : level == 1 ? static_cast<int64_t>(cut) : level);
  change.time_row = TimesAfterUndo(history.times);
  change.yes_no_row = letters;
  return change;
}

}  // namespace tessaro
