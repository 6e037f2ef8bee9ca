// Reads any bytes as a text file of another program, in every layout.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "exchange/first_version.h"
#include "exchange/foreign_text.h"
#include "exchange/table_import.h"
#include "exchange/text_cards.h"
#include "platform/memory_file.h"
#include "store/file/card_layout.h"
#include "store/table/card_columns.h"
#include "store/table/card_table.h"

namespace {

using namespace tessaro;

void Require(bool good) {
  if (!good) std::abort();
}

CardTable Load(const std::string& text) {
  CardTable cards;
  cards.SetSeparator(kFieldSeparator);
  MemoryReader reader(text);
  Require(cards.LoadFrom(reader));
  return cards;
}

void ReadTextCards(const std::string& text, const TextLayout& layout) {
  const TextCheck check = CheckText(text, layout);
  if (!check.good) return;
  TextCards cards(text, layout);
  int64_t count = 0;
  for (TextCards::Card card; cards.Next(card); ++count) Require(!card.front.empty() && !card.back.empty());
  Require(count == check.Given());
}

// A table that was checked is a whole card file of just its cards.
void ReadTable(const std::string& text, const TableLayout& layout) {
  const TableCheck check = CheckTable(text, layout);
  MemoryWriter file;
  Require(WriteTable(text, layout, check, file));
  CardTable cards = Load(file.TakeText() + "\n");
  Require(cards.RowCount() == check.cards + 2);
  const CardTableState state = CompleteCards(cards);
  Require(state == (check.cards > 0 ? CardTableState::Whole : CardTableState::Unusable));
}

}  // namespace

// The first three bytes are the separators, the rest is the file.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  constexpr size_t kHead = 3;
  if (size < kHead) return 0;
  const auto at = [&](size_t i) { return static_cast<char>(data[i]); };
  const ForeignText text = ReadForeignText(std::string(reinterpret_cast<const char*>(data) + kHead, size - kHead));
  Require(text.bytes.size() <= size && text.bytes.find('\0') == std::string::npos);
  const SideCodePages pages = {CodePage(CharacterSet::Cyrillic), CodePage(CharacterSet::Thai)};
  for (const FieldPages& fields :
       {FieldPages::OfText(pages, at(0), at(1), false), FieldPages::OfTable(pages, at(0), at(2))}) {
    const std::string raw(reinterpret_cast<const char*>(data) + kHead, size - kHead);
    Require(ReadForeignText(raw, fields).bytes.size() <= size);
  }
  ReadTextCards(text.bytes, {.separator = at(0), .card_separator = at(1), .backslash_pairs = at(2) == '\\'});
  ReadTable(text.bytes, {.separator = at(0), .quote = at(2)});
  MemoryWriter file;
  Require(first_version::WriteCards(text.bytes, at(0), file).good);
  (void)Load(file.TakeText());
  return 0;
}
