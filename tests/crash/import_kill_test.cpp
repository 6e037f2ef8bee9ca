// Kills a program at random moments while it brings tables into the place of its open card file, over and over, and
// looks each time whether the card file is whole: the cards of the last table, or those of the one under way.
// Usage: import_kill_test [NUMBER OF KILLS] [SEED]
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>

#include "exchange/blank_card.h"
#include "exchange/card_import.h"
#include "store/index/card_ids.h"
#include "tests/crash/killed_program.h"
#include "tests/support/test_cards.h"

namespace tessaro {
namespace {

namespace fs = std::filesystem;

constexpr TableLayout kTable = {.separator = ';', .quote = '\''};
constexpr int kFewestCards = 500;
constexpr int kSizes = 7;  // tables of so many lengths take turns

int CardsIn(int table) {
  return kFewestCards + table % kSizes * 100;
}

std::string TableText(int table) {
  std::string text;
  for (int i = 1; i <= CardsIn(table); ++i) {
    text += IdText(i) + ";00;Frage;" + std::to_string(table) + ";000000060;0;wf;7 0\n";
  }
  return text;
}

bool Import(const CardFilePaths& paths, int table) {
  const std::string text = TableText(table);
  return ReplaceByTable(RealDisk(), paths, text, kTable, CheckTable(text, kTable)).end == ImportEnd::Done;
}

// Holds the card file open with an answer that is not saved, as the program does.
[[noreturn]] void ImportUntilKilled(const fs::path& path, int table, int news) {
  CardFile file;
  if (file.Open(path).result != OpenResult::Opened) Fail("cannot open");
  file.cards().Poke(file.columns().score, kFirstCardRow, "000000777");
  file.RowChanged(kFirstCardRow);
  for (;; ++table) {
    if (!Import(file.paths(), table) || write(news, "=", 1) != 1) std::_Exit(EXIT_FAILURE);
  }
}

// Kills one run that begins with this table; returns how many were done.
// The table that the cards are of; each card must be.
int TableOf(const CardFile& file) {
  const int table = static_cast<int>(LeadingNumber(file.cards().Peek(file.columns().answer, kFirstCardRow)));
  if (file.CardCount() != CardsIn(table)) Fail("not all cards of a table");
  for (int row = kFirstCardRow; row <= file.CardCount() + 1; ++row) {
    if (LeadingNumber(file.cards().Peek(file.columns().answer, row)) != table) Fail("cards of two tables");
  }
  return table;
}

int Run(int kills, uint32_t seed, const fs::path& folder) {
  const fs::path path = folder / "x.mlb";
  if (!Import(PathsFor(path), 0)) Fail("cannot write");
  std::mt19937 random(seed);
  int table = 0;
  int imports = 0;
  int under_way = 0;  // imports that were done, though the killed program could not say so
  for (int i = 0; i < kills; ++i) {
    const int done = KillAtRandom([&](int news) { ImportUntilKilled(path, table + 1, news); }, 4, 6000, random);
    CardFile file;
    const OpenReport report = file.Open(path);
    if (report.result != OpenResult::Opened || report.end_missing) Fail("the card file cannot be opened");
    const CardIds ids(file.cards());
    if (!file.learn_index().Fits(ids) || !file.link_index().Fits(ids)) Fail("an index does not fit");
    const int found = TableOf(file);
    if (found != table + done && found != table + done + 1) Fail("an import is lost");
    // The answer that was not saved belongs to the cards before, and to no others.
    if (report.unsaved && (found != table || !file.TakeOverUnsaved())) Fail("answers of other cards are offered");
    under_way += found == table + done + 1 ? 1 : 0;
    imports += done;
    table = found;
    file.Close();
  }
  std::printf("%d kills, %d imports done, %d more that were under way\n", kills, imports, under_way);
  return EXIT_SUCCESS;
}

}  // namespace
}  // namespace tessaro

int main(int argc, char** argv) {
  return tessaro::RunKills(argc, argv, tessaro::Run);
}
