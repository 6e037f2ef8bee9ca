// Times what the journal adds to an answer, and taking over ten thousand answers after a crash. Works on generated
// files, or on a copy of the card file on its command line.
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "bench/generated_cards.h"
#include "bench/measure.h"
#include "store/file/card_file.h"

namespace tessaro {
namespace {

namespace fs = std::filesystem;
using Stopwatch = std::chrono::steady_clock;

constexpr int kAnswers = 10000;

double Microseconds(const std::function<void()>& work) {
  const auto begin = Stopwatch::now();
  work();
  return std::chrono::duration<double, std::micro>(Stopwatch::now() - begin).count();
}

void Report(const char* name, std::vector<double> times) {
  std::sort(times.begin(), times.end());
  const auto at = [&](double part) { return times[static_cast<size_t>(part * static_cast<double>(times.size() - 1))]; };
  std::printf("  %-44s median %8.1f us   p99 %8.1f us   longest %8.1f us\n", name, at(0.5), at(0.99), times.back());
}

// What an answer changes.
void ChangeCard(CardFile& file, int row) {
  const CardColumns& columns = file.columns();
  for (const int column : {columns.score, columns.time_learned, columns.yes_no_row, columns.time_row, columns.topic}) {
    file.cards().Poke(column, row, std::string(file.cards().Peek(column, row)));
  }
}

void TimeAnswers(CardFile& file, const char* name) {
  const CardColumns& columns = file.columns();
  const std::array changed = {columns.score, columns.time_learned, columns.yes_no_row, columns.time_row, columns.topic};
  std::vector<double> times;
  for (int i = 0; i < kAnswers; ++i) {
    const int row = kFirstCardRow + i * 7919 % file.CardCount();
    ChangeCard(file, row);
    times.push_back(Microseconds([&] { file.RowChanged(row, changed); }));
    // An answer a millisecond is faster than any learner, and gives the thread that flushes its share.
    if (i % 10 == 0) std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  Report(name, std::move(times));
}

// What waiting for the disk with every answer would cost.
void TimeFlushes(const fs::path& folder) {
  const std::unique_ptr<WritableFile> file = RealDisk().Create(folder / "reference");
  const std::string record(600, 'x');
  std::vector<double> times;
  for (int i = 0; i < 200; ++i) times.push_back(Microseconds([&] { (void)(file->Write(record) && file->Flush()); }));
  Report("reference: write 600 bytes and wait", std::move(times));
}

bool Measure(const fs::path& path) {
  {
    CardFile file;
    if (file.Open(path).result != OpenResult::Opened) return false;
    std::printf("%s, %d cards\n", path.filename().c_str(), file.CardCount());
    file.journal().FlushInBackground();
    TimeAnswers(file, "journal of one answer");
    TimeFlushes(path.parent_path());
    // Not closed, as if the program had crashed.
  }
  CardFile file;
  OpenReport report;
  const double opening = Microseconds([&] { report = file.Open(path); });
  const double taking = Microseconds([&] { (void)file.TakeOverUnsaved(); });
  std::printf("  opening with it %.1f ms, taking over %d changed cards %.1f ms\n", opening / 1000,
              report.unsaved ? report.unsaved->cards : 0, taking / 1000);
  file.Close();
  return report.unsaved.has_value();
}

}  // namespace
}  // namespace tessaro

int main(int argc, char** argv) {
  tessaro::MeasureCardFiles(argc > 1 ? argv[1] : nullptr, [](const std::filesystem::path& path, const auto&) {
    tessaro::Check(tessaro::Measure(path), "measure");
  });
  return 0;
}
