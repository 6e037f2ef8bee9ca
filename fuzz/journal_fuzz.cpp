// Takes any bytes as a journal beside a card file: by itself, and with a head that fits the file, so that its records
// are replayed. Whatever comes of it, the file can be saved and opened again.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#define XXH_INLINE_ALL
#include <xxhash.h>

#include "store/file/card_file.h"
#include "tests/support/memory_disk.h"

namespace {

using namespace tessaro;

void Require(bool good) {
  if (!good) std::abort();
}

void Open(const std::string& cards, const std::string& journal) {
  MemoryDisk disk;
  disk.Put("/d/x.mlb", cards);
  disk.Put("/d/x.mlj", journal);
  CardFile file(disk);
  const OpenReport report = file.Open("/d/x.mlb");
  Require(report.result == OpenResult::Opened);
  Require(report.unsaved || disk.Exists("/d/x.mlj") == false);
  Require(report.put_aside.empty() || disk.Content(report.put_aside) == journal);
  if (report.unsaved) (void)file.TakeOverUnsaved();
  Require(file.CardCount() > 0);
  Require(file.Save() == SaveResult::Saved);
  const int cards_saved = file.CardCount();
  Require(file.Open("/d/x.mlb").result == OpenResult::Opened && file.CardCount() == cards_saved);
}

void Put(std::string& text, uint64_t number) {
  for (int i = 0; i < 8; ++i) text += static_cast<char>(number >> (8 * i) & 0xFF);
}

// A record of any payload, with the length and the checksum that it needs to be read.
std::string Record(const std::string& payload) {
  std::string text;
  Put(text, payload.size());
  Put(text, XXH3_64bits(payload.data(), payload.size()));
  return text + payload;
}

// Rows go, come and change as the bytes say, for a table of so many rows.
std::string EditRecord(const std::string& bytes, uint32_t rows, const std::vector<std::string>& ids) {
  EditChange change = {.row_count = rows, .old_ids = {}, .edit = {}};
  for (size_t i = 0; i < bytes.size() && i < 12; ++i) {
    const int row = bytes[i] & 15;
    if ((bytes[i] & 0x30) == 0) change.edit.removed.push_back(row);
    if ((bytes[i] & 0x30) == 0x10) change.edit.places.push_back(row);
    if ((bytes[i] & 0x30) == 0x10) change.edit.inserted.AddRow({{1, "000009"}, {bytes[i] & 7, bytes}});
    if ((bytes[i] & 0x30) != 0x20) continue;
    change.edit.replaced.push_back(row);
    change.edit.replacing.AddRow({{(bytes[i] & 7) + 1, bytes}});
  }
  for (const std::vector<int>* named : {&change.edit.removed, &change.edit.replaced}) {
    for (const int row : *named) change.old_ids.AddRow({{1, ids[static_cast<size_t>(row) % ids.size()]}});
  }
  return JournalText({1, change});
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const std::string cards = [] {
    MemoryDisk disk;
    CardFile file(disk);
    Require(file.CreateNew("/d/x.mlb"));
    return disk.Content("/d/x.mlb").value_or("");
  }();
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  Open(cards, bytes);
  ContentHash hash;
  hash.Add(cards);
  const std::string head = JournalHead(hash.Stamp());
  Open(cards, head + bytes);
  // A record with a good checksum: what the bytes say reaches the cards.
  const auto row = size > 0 ? static_cast<uint32_t>(data[0] % 6) : 0;
  const auto column = size > 1 ? static_cast<uint32_t>(data[1] % 10) : 0;
  Open(cards, head + JournalText({1, RowChange{row, {{column, bytes}}}}) + JournalText({2, TableChange{bytes}}) +
                  JournalText({3, RowChange{2, {{3, bytes}}}}));
  Open(cards, head + Record(bytes) + Record("\4" + std::string(8, '\0') + bytes));
  // Of the deck's three rows the one in the middle is a card; a first edit makes more of them.
  EditChange more = {.row_count = 3, .old_ids = {}, .edit = {}};
  more.edit.places = {2, 2, 2};
  for (const char* id : {"000002", "000003", "000004"}) more.edit.inserted.AddRow({{1, id}});
  Open(cards, head + JournalText({1, more}) +
                  EditRecord(bytes, 6, {"@@", "@@", "000001", "000002", "000003", "000004", "##"}) +
                  JournalText({3, RowChange{2, {{3, bytes}}}}));
  return 0;
}
