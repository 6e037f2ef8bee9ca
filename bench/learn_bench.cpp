// Times what a learner waits for: one learning step with each method, and counting and ordering the Leitner boxes.
// Works on generated files, or on the card file on its command line, which is read and not written.
#include <stdlib.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "bench/generated_cards.h"
#include "learn/learning_run.h"
#include "learn/leitner_count.h"
#include "learn/leitner_method.h"

namespace tessaro {
namespace {

using Stopwatch = std::chrono::steady_clock;

constexpr int kSteps = 20000;

double Microseconds(const std::function<void()>& work) {
  const auto begin = Stopwatch::now();
  work();
  return std::chrono::duration<double, std::micro>(Stopwatch::now() - begin).count();
}

struct StepClock : Clock {
  int64_t Now() const override { return now; }
  int64_t Milliseconds() const override { return 0; }
  int64_t now = RealClock().Now();
};

struct SeededRandom : Random {
  uint32_t Next() override { return static_cast<uint32_t>(generator()) >> 1U; }
  std::mt19937 generator{1};
};

// Counts what a window would show.
struct CountingView : LearningView {
  void Refresh() override { ++shown; }
  void Tell(RunMessage, int) override { ++messages; }
  void ChooseMethod() override { box_done = true; }
  void EndRun() override {}
  int shown = 0;
  int messages = 0;
  bool box_done = false;
};

struct Bench {
  explicit Bench(CardFile& card_file) : file(card_file) {}
  CardFile& file;
  StepClock clock;
  SeededRandom random;
  CountingView view;
  IniFile settings;
  LearningRun run{file, settings, clock, random, view};

  void Answer(int step) {
    clock.now += 7;
    if (step % 4 == 3) {
      run.NotKnown();
    } else {
      run.Known();
    }
  }
  void Report(const char* name, std::vector<double>& times) {
    std::sort(times.begin(), times.end());
    const auto at = [&](double part) {
      return times[static_cast<size_t>(part * static_cast<double>(times.size() - 1))];
    };
    std::printf("  %-22s median %8.1f us   p99 %8.1f us   longest %8.1f us   (%d logged, %d messages)\n", name, at(0.5),
                at(0.99), times.back(), run.figures().answered, view.messages);
  }
};

void TimeMethod(CardFile& file, Method method, const char* name) {
  Bench bench(file);
  bench.run.SetMethod(method);
  bench.run.Start();
  std::vector<double> times;
  for (int step = 0; step < kSteps; ++step) times.push_back(Microseconds([&] { bench.Answer(step); }));
  bench.Report(name, times);
}

void TimeBoxes(CardFile& file) {
  Bench bench(file);
  CardWriter writer(file);
  BoxCounts counts;
  BoxOrder order;
  const double counting = Microseconds([&] { counts = CountBoxes(file, writer); });
  const double ordering = Microseconds([&] { order = BuildBoxOrder(file, bench.clock.now).value_or(BoxOrder{}); });
  const auto largest = std::max_element(counts.boxes.begin(), counts.boxes.end()) - counts.boxes.begin();
  const int box = static_cast<int>(largest) + 1;

  std::vector<double> times;
  bench.run.StartBox({box, 0, order});
  bench.run.Start();
  for (int step = 0; step < kSteps; ++step) {
    times.push_back(Microseconds([&] { bench.Answer(step); }));
    if (!std::exchange(bench.view.box_done, false)) continue;
    bench.run.StartBox({box, 0, order});
    bench.run.ShowNext();
  }
  bench.Report("Leitner box", times);
  std::printf("  counting the boxes %.1f ms, box order %.1f ms\n", counting / 1000, ordering / 1000);
}

// What any ordering of the cards costs at least.
void TimeReference(const CardFile& file) {
  const CardReader cards(file);
  std::vector<int64_t> keys;
  for (int row = kFirstCardRow; row <= cards.LastCardRow(); ++row) keys.push_back(cards.NewestTime(row));
  std::printf("  reference: stable_sort of the times %.1f ms\n",
              Microseconds([&] { std::stable_sort(keys.begin(), keys.end()); }) / 1000);
}

bool Measure(const std::filesystem::path& path) {
  CardFile file;
  if (file.Open(path).result != OpenResult::Opened) {
    std::fprintf(stderr, "cannot open %s\n", path.c_str());
    return false;
  }
  std::printf("%s, %d cards\n", path.filename().c_str(), file.CardCount());
  TimeMethod(file, Method::Standard, "automatic method");
  TimeMethod(file, Method::RowOrder, "row order");
  TimeBoxes(file);
  TimeReference(file);
  return true;
}

bool MeasureGenerated() {
  std::string folder = (std::filesystem::temp_directory_path() / "learn_bench_XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) return false;
  bool good = true;
  for (const int count : {10'000, 100'000, kMostCards}) {
    const std::filesystem::path path = std::filesystem::path(folder) / (std::to_string(count) + ".mlb");
    good = good && GenerateCards(path, count, 1) && Measure(path);
  }
  std::filesystem::remove_all(folder);
  return good;
}

}  // namespace
}  // namespace tessaro

int main(int argc, char** argv) {
  if (argc < 2) return tessaro::MeasureGenerated() ? 0 : 1;
  return tessaro::Measure(argv[1]) ? 0 : 1;
}
