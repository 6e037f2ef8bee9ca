// Building both indexes beside a sort of the learning index's keys, and opening a card file whole beside `wc -l` of the
// same file, in the same run.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/generated_cards.h"
#include "bench/measure.h"
#include "cards/figures.h"
#include "store/file/card_file.h"

namespace {

using tessaro::CardFile;
using tessaro::Check;
using tessaro::Median;
using tessaro::OpenResult;
using tessaro::Print;
using tessaro::Time;
namespace fs = std::filesystem;

constexpr int kRounds = 7;
constexpr int kUpdates = 20000;
constexpr double kMilli = 1e3;

// What opening a card file takes before learning can begin.
void OpenWhole(CardFile& file, const fs::path& path) {
  const tessaro::OpenReport report = file.Open(path);
  Check(report.result == OpenResult::Opened && !report.learn_index_rebuilt && !report.link_index_rebuilt, "open");
  Check(file.highest_id() > 0 && CountUnknown(file) <= file.CardCount(), "counts");
}

// What the start page shows of it.
void CountFigures(const CardFile& file) {
  Check(FiguresOf(file, {}, 1'700'000'000).cards == file.CardCount(), "figures");
}

void MeasureBuild(CardFile& file) {
  std::vector<int64_t> keys;
  for (int row = file.CardCount() + 1; row >= tessaro::kFirstCardRow; --row) {
    keys.push_back(tessaro::LeadingNumber(file.cards().Peek(file.columns().score, row)));
  }
  std::vector<double> sort;
  std::vector<double> learn;
  std::vector<double> both;
  for (int i = 0; i < kRounds; ++i) {
    std::vector<int64_t> sorted = keys;
    sort.push_back(Time([&] { std::stable_sort(sorted.begin(), sorted.end()); }));
    learn.push_back(Time([&] { Check(file.learn_index().Build(file.cards()), "learning index"); }));
    both.push_back(Time([&] { Check(file.RebuildIndexes(), "both indexes"); }));
  }
  const tessaro::Measured reference = {"stable_sort of the keys", Median(sort) * kMilli};
  Print({"build the learning index", Median(learn) * kMilli}, "ms", reference);
  Print({"build both indexes", Median(both) * kMilli}, "ms", reference);
}

void MeasureUpdate(CardFile& file) {
  std::vector<double> times;
  uint32_t random = 1;
  for (int i = 0; i < kUpdates; ++i) {
    random = random * 1664525U + 1013904223U;
    const int row = tessaro::kFirstCardRow + static_cast<int>(random % static_cast<uint32_t>(file.CardCount()));
    const int64_t score = i % 4 == 0 ? 0 : random % 10'000'000;
    times.push_back(Time([&] { file.learn_index().Update(row, score); }));
  }
  Print({"move a card in the index, 99 % within", tessaro::Nearly(times) * 1e6}, "us",
        {"the median", Median(times) * 1e6});
}

void MeasureOpen(const fs::path& path) {
  std::vector<double> open;
  std::vector<double> figures;
  std::vector<double> count;
  std::vector<double> peak;
  for (int i = 0; i < kRounds; ++i) {
    count.push_back(tessaro::RunProgram({"wc", "-l", path.string()}).seconds);
    CardFile file(tessaro::RealDisk(), tessaro::SystemClock(), tessaro::CountUnknown);
    open.push_back(Time([&] { OpenWhole(file, path); }));
    figures.push_back(Time([&] { CountFigures(file); }));
    file.Close();
    peak.push_back(static_cast<double>(tessaro::RunProgram({tessaro::OwnPath(), "--open", path.string()}).peak_kib) *
                   1024);
  }
  const double size = static_cast<double>(fs::file_size(path)) / 1e6;
  Print({"open, in process", Median(open) * kMilli}, "ms", {"wc -l", Median(count) * kMilli});
  Print({"count the figures of the start page", Median(figures) * kMilli}, "ms", {"wc -l", Median(count) * kMilli});
  Print({"peak memory with it open", Median(peak) / 1e6}, "MB", {"size of the file", size});
}

// A copy has index files that fit.
void Measure(const fs::path& path, const fs::path& folder) {
  const fs::path copy = folder / "copy.mlb";
  CardFile file;
  Check(file.Open(path).result == OpenResult::Opened, "open");
  std::printf("%s, %d cards, medians of %d\n", path.filename().c_str(), file.CardCount(), kRounds);
  Check(file.RebuildIndexes() && file.SaveCopy(copy) == tessaro::SaveResult::Saved, "copy");
  MeasureBuild(file);
  MeasureUpdate(file);
  file.Close();
  MeasureOpen(copy);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 3 && std::strcmp(argv[1], "--open") == 0) {
    CardFile file(tessaro::RealDisk(), tessaro::SystemClock(), tessaro::CountUnknown);
    OpenWhole(file, argv[2]);
    return 0;
  }
  tessaro::MeasureCardFiles(argc > 1 ? argv[1] : nullptr, Measure);
  return 0;
}
