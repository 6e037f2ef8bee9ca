// Times what a learner waits for: one learning step with each method, and counting and ordering the Leitner boxes.
// Works on generated files, or on the card file on its command line, which is read and not written.
#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "bench/generated_cards.h"
#include "bench/measure.h"
#include "learn/learning_run.h"
#include "learn/leitner_count.h"
#include "learn/leitner_method.h"

namespace tessaro {
namespace {

constexpr int kSteps = 20000;
constexpr int kRounds = 5;
constexpr double kMilli = 1e3;
constexpr double kMicro = 1e6;

std::vector<double> Repeat(int count, const std::function<void(int step)>& work) {
  std::vector<double> times;
  for (int step = 0; step < count; ++step) times.push_back(Time([&] { work(step); }));
  return times;
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

struct Bench {
  explicit Bench(CardFile& card_file) : file(card_file) {}
  CardFile& file;
  StepClock clock;
  SeededRandom random;
  IniFile settings;
  LearningRun run{file, settings, clock, random};

  StepResult Answer(int step) {
    clock.now += 7;
    return step % 4 == 3 ? run.NotKnown() : run.Known();
  }
};

// The row of times of a card as text: the least that logging an answer writes.
double WriteTimes() {
  std::array<char, 32 * kHistoryLength> text;
  return Median(Repeat(kSteps, [&](int step) {
    char* end = text.data();
    for (int i = 0; i < kHistoryLength; ++i) end += std::snprintf(end, 32, "%d ", 1'700'000'000 - step * i);
  }));
}

void Report(const char* name, const char* slow_name, const std::vector<double>& times) {
  const Measured reference = {"write 64 numbers", WriteTimes() * kMicro};
  Print({name, Median(times) * kMicro}, "us", reference);
  Print({slow_name, Nearly(times) * kMicro}, "us", reference);
}

void TimeMethod(CardFile& file, Method method, const char* name, const char* slow_name) {
  Bench bench(file);
  bench.run.SetMethod(method);
  bench.run.Start();
  Report(name, slow_name, Repeat(kSteps, [&](int step) { bench.Answer(step); }));
  Check(bench.run.figures().answered > 0, "learning run");
}

// Sorting the cards by the time of their newest answer is the least that any box order costs.
void SortTimes(const CardFile& file) {
  const CardReader cards(file);
  std::vector<int64_t> keys;
  for (int row = kFirstCardRow; row <= cards.LastCardRow(); ++row) keys.push_back(cards.NewestTime(row));
  std::stable_sort(keys.begin(), keys.end());
}

void TimeBoxes(CardFile& file) {
  Bench bench(file);
  CardWriter writer(file);
  BoxCounts counts;
  BoxOrder order;
  const double counting = Median(Repeat(kRounds, [&](int) { counts = CountBoxes(file, writer); }));
  const double ordering =
      Median(Repeat(kRounds, [&](int) { order = BuildBoxOrder(file, bench.clock.now).value_or(BoxOrder{}); }));
  const double sorting = Median(Repeat(kRounds, [&](int) { SortTimes(file); }));
  Print({"count the Leitner boxes", counting * kMilli}, "ms", {"read and sort the times", sorting * kMilli});
  Print({"order the Leitner boxes", ordering * kMilli}, "ms", {"read and sort the times", sorting * kMilli});

  const auto largest = std::max_element(counts.boxes.begin(), counts.boxes.end()) - counts.boxes.begin();
  const int box = static_cast<int>(largest) + 1;
  bench.run.StartBox({box, 0, order});
  bench.run.Start();
  std::vector<double> times;
  for (int step = 0; step < kSteps; ++step) {
    bool box_done = false;
    times.push_back(Time([&] { box_done = bench.Answer(step).box_done; }));
    if (!box_done) continue;
    bench.run.StartBox({box, 0, order});
    bench.run.ShowNext();
  }
  Report("one step, Leitner box", "one step, Leitner box, 99 % within", times);
}

bool Measure(const std::filesystem::path& path) {
  CardFile file;
  if (file.Open(path).result != OpenResult::Opened) {
    std::fprintf(stderr, "cannot open %s\n", path.c_str());
    return false;
  }
  std::printf("%s, %d cards\n", path.filename().c_str(), file.CardCount());
  TimeMethod(file, Method::Standard, "one step, automatic method", "one step, automatic method, 99 % within");
  TimeMethod(file, Method::RowOrder, "one step, row order", "one step, row order, 99 % within");
  TimeBoxes(file);
  return true;
}

}  // namespace
}  // namespace tessaro

int main(int argc, char** argv) {
  tessaro::MeasureCardFiles(argc > 1 ? argv[1] : nullptr, [](const std::filesystem::path& path, const auto&) {
    tessaro::Check(tessaro::Measure(path), "measure");
  });
  return 0;
}
