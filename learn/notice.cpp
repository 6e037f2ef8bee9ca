#include "learn/notice.h"

#include "cards/card_reader.h"
#include "cards/figures.h"
#include "learn/learning_run.h"

namespace tessaro {
namespace {

// Looks no further than the first one.
bool HasLearnableCards(const CardReader& cards) {
  for (int row = kFirstCardRow; row <= cards.LastCardRow(); ++row) {
    if (!cards.IsLeftOut(row)) return true;
  }
  return false;
}

bool HoldsNewCardsBack(const LearningRun& run, const CardFile& file) {
  return run.options().no_new_cards && run.method() == Method::Standard &&
         FiguresOf(file, run.parameters(), 0).never_answered > 0;
}

Notice ToldBy(const StepResult& result, const LearningRun& run) {
  Notice told = run.ended() ? Notice::ClockWentBack : Notice::None;
  for (const RunEvent& event : result.events) {
    if (event.message == RunMessage::StandardExhausted) told = Notice::NothingDue;
    if (event.message == RunMessage::EndOfFile) told = Notice::EndOfFile;
  }
  return told;
}

}  // namespace

Notice NoticeAfter(const StepResult& result, const LearningRun& run, const CardFile& file) {
  Notice told = ToldBy(result, run);
  if (run.card().row == 0) {
    if (!HasLearnableCards(CardReader(file))) return Notice::NoCards;
    if (told == Notice::EndOfFile) return Notice::EndWithoutCard;
    if (told == Notice::None) told = Notice::NothingDue;
  }
  return told == Notice::NothingDue && HoldsNewCardsBack(run, file) ? Notice::NewCardsHeldBack : told;
}

}  // namespace tessaro
