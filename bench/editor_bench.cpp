// What the editor's commands and tools cost on a card file, each beside a pass of `grep` or `wc` over the same file in
// the same run. Takes a card file; without one it makes one of 980,000 cards.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <vector>

#include "bench/generated_cards.h"
#include "bench/measure.h"
#include "cards/card_reader.h"
#include "edit/card_desk.h"
#include "edit/card_order.h"
#include "edit/card_tools.h"
#include "edit/renumbering.h"

namespace {

using namespace tessaro;
namespace fs = std::filesystem;

constexpr int kRounds = 5;
constexpr int kCommands = 200;
constexpr int kCards = 980'000;

double Least(const std::vector<double>& values) {
  return *std::min_element(values.begin(), values.end());
}

void MeasureSearch(const CardFile& file, const fs::path& path) {
  constexpr const char* kAbsent = "kommt nirgends vor";
  for (const bool ignore_case : {false, true}) {
    std::vector<double> search;
    std::vector<double> grep;
    const CardSearch query({.first = kAbsent, .second = "", .ignore_case = ignore_case});
    for (int i = 0; i < kRounds; ++i) {
      // It finds nothing, which grep calls a failure.
      grep.push_back(
          RunProgram({"sh", "-c", "LC_ALL=C grep -cF '" + std::string(kAbsent) + "' '" + path.string() + "' || true"})
              .seconds);
      search.push_back(Time([&] { Check(SearchCards(file, query, 0).row == 0, "search"); }));
    }
    Print({ignore_case ? "absent text, either case" : "absent text", Least(search) * 1e3}, "ms",
          {"grep -cF", Least(grep) * 1e3});
  }
}

void MeasureCommands(CardFile& file, double reference) {
  int64_t made = 0;
  CardDesk desk(file, made);
  desk.GoTo(file.CardCount() / 2);
  std::vector<double> insert;
  std::vector<double> paste;
  std::vector<double> save;
  std::vector<double> cut;
  for (int i = 0; i < kCommands; ++i) {
    insert.push_back(Time([&] { Check(desk.InsertEmpty().outcome == DeskOutcome::Done, "insert"); }));
    save.push_back(Time([&] { (void)desk.Store("Vorne " + std::to_string(i), "Hinten"); }));
    desk.Copy();
    paste.push_back(Time([&] { (void)desk.Paste(); }));
    cut.push_back(Time([&] { (void)desk.Cut(); }));
  }
  Print({"card inserted", Median(insert) * 1e3}, "ms", {"wc -l", reference * 1e3});
  Print({"card stored", Median(save) * 1e3}, "ms", {"wc -l", reference * 1e3});
  Print({"card pasted", Median(paste) * 1e3}, "ms", {"wc -l", reference * 1e3});
  Print({"card cut", Median(cut) * 1e3}, "ms", {"wc -l", reference * 1e3});
  while (desk.commands().CanUndo()) desk.Undo();
}

void MeasureTools(CardFile& file, double reference) {
  int64_t made = 0;
  CardDesk desk(file, made);
  desk.First();
  std::vector<double> renumber;
  std::vector<double> overview;
  for (int i = 0; i < 3; ++i) {
    renumber.push_back(
        Time([&] { Check(Renumber(file, desk.commands(), {2 + i % 2}, 2) == RenumberOutcome::Done, "renumber"); }));
    overview.push_back(Time([&] {
      Check(MakeRowOrderOverview(file, desk.commands(), {"o", "oo"}, 2).outcome == ToolOutcome::Done, "overview");
    }));
    desk.Undo();
  }
  Print({"cards renumbered", Least(renumber) * 1e3}, "ms", {"wc -l", reference * 1e3});
  Print({"overview in row order", Least(overview) * 1e3}, "ms", {"wc -l", reference * 1e3});
}

void MeasureSorting(const CardFile& file) {
  const CardReader cards(file);
  std::vector<std::string> keys;
  for (int row = kFirstCardRow; row <= cards.LastCardRow(); ++row) keys.emplace_back(cards.Question(row));
  const double sort = Time([&] { std::stable_sort(keys.begin(), keys.end()); });
  for (const auto& [name, order] :
       {std::pair("sorted by front", CardOrder::Front), {"sorted by retention time", CardOrder::Retention}}) {
    Print({name, Time([&, o = order] { (void)OrderedRows(file, {}, o, false); }) * 1e3}, "ms",
          {"stable_sort of fronts", sort * 1e3});
  }
}

void Measure(const fs::path& path) {
  CardFile file;
  Check(file.Open(path).result == OpenResult::Opened, "open");
  std::printf("%d cards\n", file.CardCount());
  std::vector<double> count;
  for (int i = 0; i < kRounds; ++i) count.push_back(RunProgram({"wc", "-l", path.string()}).seconds);
  MeasureSearch(file, path);
  MeasureCommands(file, Least(count));
  MeasureSorting(file);
  MeasureTools(file, Least(count));
}

}  // namespace

int main(int argc, char** argv) {
  const fs::path folder = fs::temp_directory_path() / "edit_bench";
  fs::create_directories(folder);
  const fs::path path = folder / "cards.mlb";
  if (argc > 1) {
    fs::copy_file(argv[1], path, fs::copy_options::overwrite_existing);
  } else {
    Check(GenerateCards(path, kCards, 1), "generate");
  }
  Measure(path);
  fs::remove_all(folder);
  return EXIT_SUCCESS;
}
