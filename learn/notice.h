#pragma once

namespace tessaro {

class CardFile;
class LearningRun;

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

// The notice after a command. `told` is what the run let its view know meanwhile, or None.
Notice NoticeAfter(Notice told, const LearningRun& run, const CardFile& file);

}  // namespace tessaro
