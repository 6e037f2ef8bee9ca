// Loading a card file and saving it, beside `wc -l` and `cp` of the same file in the same run.
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/generated_cards.h"
#include "bench/measure.h"
#include "store/card_columns.h"
#include "store/card_table.h"

namespace {

using tessaro::CardTable;
using tessaro::Median;
using tessaro::RunFigures;
using tessaro::RunProgram;
namespace fs = std::filesystem;

constexpr int kRounds = 11;
constexpr double kMega = 1e6;

CardTable Load(const fs::path& path) {
  CardTable table;
  table.SetSeparator(tessaro::kFieldSeparator);
  if (!table.LoadFromFile(path)) {
    std::fprintf(stderr, "cannot load %s\n", path.c_str());
    std::exit(1);
  }
  return table;
}

void Print(const char* work, double seconds, const char* reference, double reference_seconds) {
  std::printf("  %-34s %8.1f ms   %-6s %8.1f ms   ratio %5.2f\n", work, seconds * 1e3, reference,
              reference_seconds * 1e3, seconds / reference_seconds);
}

void MeasureLoad(const fs::path& path) {
  std::vector<double> load;
  std::vector<double> count;
  std::vector<double> peak;
  for (int i = 0; i < kRounds; ++i) {
    count.push_back(RunProgram({"wc", "-l", path.string()}).seconds);
    const RunFigures figures = RunProgram({tessaro::OwnPath(), "--load", path.string()});
    load.push_back(figures.seconds);
    peak.push_back(static_cast<double>(figures.peak_kib) * 1024);
  }
  const auto size = static_cast<double>(fs::file_size(path));
  Print("load, whole process", Median(load), "wc -l", Median(count));
  std::printf("  %-34s %8.1f MB   file   %8.1f MB   ratio %5.2f\n", "peak memory", Median(peak) / kMega, size / kMega,
              Median(peak) / size);
}

void ChangeEveryHundredth(CardTable& table) {
  const tessaro::CardColumns columns = tessaro::ColumnsOf(table);
  for (int row = tessaro::kFirstCardRow; row < table.RowCount(); row += 100) {
    table.Poke(columns.score, row, "000012345");
    table.Poke(columns.time_row, row, std::string(table.Peek(columns.time_row, row)) + " 1");
  }
}

void MeasureSave(const fs::path& path, const fs::path& folder) {
  CardTable table = Load(path);
  ChangeEveryHundredth(table);
  const fs::path saved = folder / "saved.mlb";
  const fs::path copied = folder / "copied.mlb";
  std::vector<double> save;
  std::vector<double> copy;
  bool good = true;
  for (int i = 0; i < kRounds; ++i) {
    fs::remove(saved);
    fs::remove(copied);
    sync();
    copy.push_back(RunProgram({"cp", path.string(), copied.string()}).seconds);
    sync();
    save.push_back(tessaro::Time([&] { good = table.SaveToFile(saved) && good; }));
  }
  if (!good) {
    std::fprintf(stderr, "cannot save to %s\n", saved.c_str());
    std::exit(1);
  }
  Print("save, 1 % of the rows changed", Median(save), "cp", Median(copy));
}

void Measure(const fs::path& path, const fs::path& folder) {
  std::printf("%s, %d rows, medians of %d\n", path.filename().c_str(), Load(path).RowCount(), kRounds);
  MeasureLoad(path);
  MeasureSave(path, folder);
}

void MeasureGenerated(const fs::path& folder) {
  for (const int count : {10'000, 100'000, tessaro::kMostCards}) {
    const fs::path path = folder / (std::to_string(count) + ".mlb");
    if (!tessaro::GenerateCards(path, count, 1)) {
      std::fprintf(stderr, "cannot write %s\n", path.c_str());
      std::exit(1);
    }
    Measure(path, folder);
    fs::remove(path);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 3 && std::strcmp(argv[1], "--load") == 0) {
    return Load(argv[2]).RowCount() > 0 ? 0 : 1;
  }
  std::string name = (fs::temp_directory_path() / "load_bench_XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) return 1;
  if (argc > 1) {
    Measure(argv[1], name);
  } else {
    MeasureGenerated(name);
  }
  fs::remove_all(name);
  return 0;
}
