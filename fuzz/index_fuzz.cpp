// Reads any bytes as the index files of a small card file. An index that is taken over must be a true one.
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "store/index/learn_index.h"
#include "store/index/link_index.h"
#include "store/table/card_columns.h"
#include "tests/support/memory_disk.h"

namespace {

using namespace tessaro;

void Require(bool good) {
  if (!good) std::abort();
}

CardTable MakeCards() {
  CardTable cards;
  cards.AddColumn(kId);
  cards.AddColumn(kScore);
  for (const std::string_view id : {"@@", "000003", "000001", "2", "000003", "a\\b", "##"}) {
    cards.AppendRow();
    cards.Poke(1, cards.RowCount(), id);
    cards.Poke(2, cards.RowCount(), "000000005");
  }
  return cards;
}

template <typename Index>
std::string TextOf(const Index& index, const CardTable& cards) {
  MemoryDisk disk;
  Require(index.SaveTo(*disk.Create("index"), cards));
  return disk.Content("index").value_or("");
}

// Takes the text over, as it is and as a table: both agree, and the index can be saved and taken over again.
template <typename Index>
bool Adopts(Index& index, std::string_view text, const CardTable& cards) {
  MemoryDisk disk;
  disk.Put("index", std::string(text));
  CardTable table;
  table.SetSeparator(kFieldSeparator);
  Require(table.LoadFrom(*disk.Open("index")));
  const CardIds ids(cards);
  Index from_table;
  const bool adopted = index.Adopt(text, ids);
  Require(from_table.Adopt(table, ids) == adopted);
  if (!adopted) return false;
  const std::string saved = TextOf(index, cards);
  Require(TextOf(from_table, cards) == saved);
  Require(from_table.Adopt(saved, ids) && TextOf(from_table, cards) == saved);
  return true;
}

void CheckLearnIndex(const LearnIndex& index, const CardTable& cards) {
  std::vector<bool> seen(static_cast<size_t>(cards.RowCount()));
  Require(index.RowCount() == cards.RowCount());
  for (int row = 2; row < index.RowCount(); ++row) {
    const int card_row = index.BoxPos(row);
    Require(card_row >= kFirstCardRow && card_row < cards.RowCount() && !seen[static_cast<size_t>(card_row)]);
    seen[static_cast<size_t>(card_row)] = true;
    Require(index.RowOfCard(card_row) == row && index.Score(row) <= index.Score(row + 1));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const CardTable cards = MakeCards();
  LinkIndex link;
  if (Adopts(link, text, cards)) Require(link.RowOfId(1) == 3 && link.RowOfId(2) == 4 && link.RowOfId(4) == 0);
  LearnIndex learn;
  if (!Adopts(learn, text, cards)) return 0;
  CheckLearnIndex(learn, cards);
  for (const char c : text) learn.Update(kFirstCardRow + (c & 3), c & 12);
  CheckLearnIndex(learn, cards);
  return 0;
}
