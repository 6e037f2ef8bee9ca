#pragma once

namespace tessaro {

class CardFile;
class LearningRun;
struct StepResult;

// What the learner is told of the card that a command led to, and most of all of its absence.
enum class Notice {
  None,
  ClockWentBack,
  NothingDue,
  NewCardsHeldBack,  // no card was found, but there are new ones
  EndOfFile,
  EndWithoutCard,  // the end of the file was reached and no card was shown before it
  NoCards,         // none that could be learned
  RowOrderRestarted,
};

// The notice after a command that came to `result`.
Notice NoticeAfter(const StepResult& result, const LearningRun& run, const CardFile& file);

}  // namespace tessaro
