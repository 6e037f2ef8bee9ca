// Checking the cards of a file, and copying it after a save, beside `wc -l` and `cp` of the same file in the same run.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/generated_cards.h"
#include "bench/measure.h"
#include "cards/deck_check.h"
#include "store/file/backup_generations.h"

namespace {

using tessaro::CardFile;
using tessaro::Median;
using tessaro::RunProgram;
using tessaro::Time;
namespace fs = std::filesystem;

constexpr int kRounds = 7;
constexpr int64_t kNow = 4'000'000'000;  // later than any generated answer
constexpr int kRowsAtOnce = 200;         // what the window looks at before it looks at the clock

void Print(const char* work, double seconds, const char* reference, double reference_seconds) {
  std::printf("  %-34s %8.1f ms   %-6s %8.1f ms   ratio %5.2f\n", work, seconds * 1e3, reference,
              reference_seconds * 1e3, seconds / reference_seconds);
}

// The whole check, and the longest single step of it.
void MeasureCheck(const CardFile& file, const fs::path& path) {
  std::vector<double> check;
  std::vector<double> longest;
  std::vector<double> future;
  std::vector<double> count;
  size_t findings = 0;
  for (int i = 0; i < kRounds; ++i) {
    count.push_back(RunProgram({"wc", "-l", path.string()}).seconds);
    double slowest = 0;
    check.push_back(Time([&] {
      tessaro::DeckCheck deck_check(file, kNow);
      bool more = true;
      while (more) slowest = std::max(slowest, Time([&] { more = deck_check.Step(kRowsAtOnce); }));
      findings = deck_check.TakeReport().findings.size();
    }));
    longest.push_back(slowest);
    future.push_back(Time([&] { (void)tessaro::CountFutureAnswers(file, kNow); }));
  }
  Print("check the cards", Median(check), "wc -l", Median(count));
  Print("count answers in the future", Median(future), "wc -l", Median(count));
  std::printf("  %-34s %8.2f ms   %zu findings\n", "longest step of the check", Median(longest) * 1e3, findings);
}

void MeasureCopy(const CardFile& file, const fs::path& path, const fs::path& folder) {
  const fs::path copied = folder / "copied.mlb";
  tessaro::GenerationFolder generations(tessaro::RealDisk(), folder / "backups");
  std::vector<double> copy;
  std::vector<double> reference;
  bool made = true;
  for (int i = 0; i < kRounds; ++i) {
    sync();
    reference.push_back(RunProgram({"cp", path.string(), copied.string()}).seconds);
    sync();
    copy.push_back(Time([&] {
      made = generations.Add({path, *file.on_disk(), file.stamp(), file.CardCount()}, {}, {}) ==
                 tessaro::GenerationResult::Made &&
             made;
    }));
  }
  Print(made ? "dated copy, read back, flushed" : "dated copy FAILED", Median(copy), "cp", Median(reference));
}

void Measure(const fs::path& path, const fs::path& folder) {
  CardFile file;
  if (file.Open(path).result != tessaro::OpenResult::Opened) {
    std::fprintf(stderr, "cannot open %s\n", path.c_str());
    std::exit(1);
  }
  std::printf("%s, %d cards, medians of %d\n", path.filename().c_str(), file.CardCount(), kRounds);
  MeasureCheck(file, path);
  MeasureCopy(file, path, folder);
}

}  // namespace

int main(int argc, char** argv) {
  tessaro::MeasureCardFiles(argc > 1 ? argv[1] : nullptr, Measure);
  return 0;
}
