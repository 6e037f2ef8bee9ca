// Opens any bytes as a card file, works with it, saves it and opens it again: no card may get lost on the way.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "cards/deck_check.h"
#include "cards/figures.h"
#include "store/file/card_file.h"
#include "tests/support/memory_disk.h"

namespace {

using namespace tessaro;

void Require(bool good) {
  if (!good) std::abort();
}

void Work(CardFile& file) {
  const CardFigures figures = FiguresOf(file, {.retention_weight = 1.5}, 1'700'000'000);
  Require(figures.cards == file.CardCount());
  Require(figures.never_answered + figures.known + figures.unknown == figures.learnable);
  Require(figures.due <= figures.known && CountUnknown(file) <= figures.learnable);
  (void)file.RowOfId(file.highest_id());
  for (int row = kFirstCardRow; row <= file.CardCount() + 1; ++row) file.learn_index().Update(row, row % 3);
}

// Repairing a second time finds nothing to repair, and no card gets lost.
void CheckAndRepair(CardFile& file) {
  constexpr int64_t kNow = 1'700'000'000;
  for (const bool repaired : {false, true}) {
    DeckCheck check(file, kNow);
    while (check.Step(3)) {
    }
    const DeckReport report = check.TakeReport();
    Require(report.cards == file.CardCount());
    Require(report.Count(DeckFault::FutureAnswer) == CountFutureAnswers(file, kNow));
    const int cards = file.CardCount();
    const int count = RepairDeck(file, report.findings, kNow);
    Require(file.CardCount() == cards && (!repaired || count == 0));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  MemoryDisk disk;
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  disk.Put("/d/x.mlb", bytes);
  CardFile file(disk);
  const OpenReport report = file.Open("/d/x.mlb");
  Require(report.result == OpenResult::Opened || report.result == OpenResult::Unusable);
  if (report.result != OpenResult::Opened) return 0;
  const int cards = file.CardCount();
  Require(cards > 0 && cards == report.cards);
  Work(file);
  Require(file.Save() == SaveResult::Saved);
  Require(disk.Content("/d/x.ml~") == bytes);
  Require(disk.Exists("/d/x-beschaedigt-1.mlb") == (report.start_missing || report.end_missing));
  const OpenReport again = file.Open("/d/x.mlb");
  Require(again.result == OpenResult::Opened && again.cards == cards && !again.end_missing);
  Require(again.index_defect == report.index_defect);
  CheckAndRepair(file);
  return 0;
}
