// Loading a card file and saving it, beside `wc -l` and `cp` of the same file in the same run, and the whole save of an
// open card file, beside `dd conv=fsync` of as many bytes.
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
#include "store/file/card_file.h"
#include "store/table/card_columns.h"
#include "store/table/card_table.h"

namespace {

using tessaro::CardTable;
using tessaro::Check;
using tessaro::Median;
using tessaro::Print;
using tessaro::ProcessFigures;
using tessaro::RunProgram;
namespace fs = std::filesystem;

constexpr int kRounds = 11;
constexpr double kMega = 1e6;
constexpr double kMilli = 1e3;

CardTable Load(const fs::path& path) {
  CardTable table;
  table.SetSeparator(tessaro::kFieldSeparator);
  Check(table.LoadFromFile(path), "load");
  return table;
}

void MeasureLoad(const fs::path& path) {
  std::vector<double> load;
  std::vector<double> count;
  std::vector<double> peak;
  for (int i = 0; i < kRounds; ++i) {
    count.push_back(RunProgram({"wc", "-l", path.string()}).seconds);
    const ProcessFigures figures = RunProgram({tessaro::OwnPath(), "--load", path.string()});
    load.push_back(figures.seconds);
    peak.push_back(static_cast<double>(figures.peak_kib) * 1024);
  }
  Print({"load, whole process", Median(load) * kMilli}, "ms", {"wc -l", Median(count) * kMilli});
  Print({"peak memory", Median(peak) / kMega}, "MB",
        {"size of the file", static_cast<double>(fs::file_size(path)) / kMega});
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
  Check(good, "save");
  Print({"save, 1 % of the rows changed", Median(save) * kMilli}, "ms", {"cp", Median(copy) * kMilli});
}

// What the save command does: cards, both indexes, stamp, backup, all of it on the disk.
void MeasureWholeSave(const fs::path& path, const fs::path& folder) {
  const fs::path copied = folder / "copied";
  tessaro::CardFile file;
  Check(file.Open(path).result == tessaro::OpenResult::Opened && file.RebuildIndexes(), "open");
  ChangeEveryHundredth(file.cards());
  std::vector<double> save;
  std::vector<double> copy;
  for (int i = 0; i < kRounds; ++i) {
    fs::remove(copied);
    sync();
    copy.push_back(
        RunProgram({"dd", "if=" + path.string(), "of=" + copied.string(), "bs=1M", "conv=fsync", "status=none"})
            .seconds);
    sync();
    save.push_back(tessaro::Time([&] { Check(file.Save() == tessaro::SaveResult::Saved, "whole save"); }));
  }
  Print({"whole save: indexes, stamp, flush", Median(save) * kMilli}, "ms", {"dd conv=fsync", Median(copy) * kMilli});
}

void Measure(const fs::path& path, const fs::path& folder) {
  std::printf("%s, %d rows, medians of %d\n", path.filename().c_str(), Load(path).RowCount(), kRounds);
  MeasureLoad(path);
  MeasureSave(path, folder);
  MeasureWholeSave(path, folder);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 3 && std::strcmp(argv[1], "--load") == 0) {
    return Load(argv[2]).RowCount() > 0 ? 0 : 1;
  }
  tessaro::MeasureCardFiles(argc > 1 ? argv[1] : nullptr, Measure);
  return 0;
}
