#pragma once

#include "cards/keep_going.h"
#include "store/file/card_file.h"
#include "widgets/long_work.h"

namespace tessaro {

// Stands on the stack while a tool walks over all cards: the user sees how far it is and can end it.
class CardWork : public LongWork {
 public:
  // `walks`: how often it walks over them.
  CardWork(QWidget* window, const Clock& clock, const QString& text, const CardFile& file, int walks = 1)
      : LongWork(window, clock) {
    AllowCancel();
    NextStage(text, int64_t{walks} * file.cards().RowCount());
  }
  // For the core; holds as long as this.
  KeepGoing keep_going() {
    return [this](int row) { return GoesOn(row); };
  }
};

// Shows the stages of a rebuild of the indexes; holds as long as `work`.
inline StageObserver ShowIndexes(LongWork& work) {
  return {[&work](FileStage /*stage*/, uint64_t rows) {
            work.NextStage(QStringLiteral("Index aufbauen"), static_cast<int64_t>(rows));
          },
          &work};
}

}  // namespace tessaro
