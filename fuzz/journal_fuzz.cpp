// Takes any bytes as a journal beside a card file: by itself, and with a head that fits the file, so that its records
// are replayed. Whatever comes of it, the file can be saved and opened again.
#include <cstdint>
#include <cstdlib>
#include <string>

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
  return 0;
}
