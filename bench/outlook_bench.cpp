// Evaluation and forecast: reading and following the histories, the fit, and the plan, each beside its goal. What is
// measured is the time of the processor.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "bench/generated_cards.h"
#include "bench/measure.h"
#include "outlook/knowledge.h"
#include "outlook/plan.h"
#include "platform/memory_file.h"
#include "store/file/card_file.h"

namespace {

using tessaro::CardFile;
using tessaro::DeckOutlook;
using tessaro::ProcessorTime;
namespace fs = std::filesystem;

constexpr int kRounds = 3;
constexpr int64_t kNow = 1'700'000'000;
constexpr int64_t kDay = 86'400;
constexpr int kCardsAtOnce = 200;  // as the windows do

// Cards with so many answers each, as a file on the disk.
void WriteDeck(const fs::path& path, int cards, int answers) {
  std::mt19937 dice(1);
  const std::unique_ptr<tessaro::WritableFile> file = tessaro::RealDisk().Create(path);
  const std::string sep(1, tessaro::kFieldSeparator);
  std::string text;
  const auto add = [&](const std::string& id, const std::string& rest) { text += id + sep + rest + "\n"; };
  add("ID", "Topic" + sep + "Question" + sep + "Answer" + sep + "Score" + sep + "TimeLearned" + sep + "YesNoRow" + sep +
                "TimeRow");
  add("@@", "");
  for (int i = 1; i <= cards; ++i) {
    char id[16];
    std::snprintf(id, sizeof id, "%06d", i % 1'000'000);
    std::string letters;
    std::string times;
    int64_t time = kNow - static_cast<int64_t>(dice() % (60 * kDay));
    for (int k = 0; k < 64; ++k) {
      letters += k < answers && dice() % 8 != 0 ? 'w' : 'f';
      times += (k < answers ? std::to_string(time) : "0") + " ";
      time -= 60 + static_cast<int64_t>(dice() % (9 * kDay));
    }
    const int score = letters[0] == 'w' ? 1 + static_cast<int>(dice() % (40 * kDay)) : 0;
    add(id, "00" + sep + "das Haus" + sep + "the house" + sep + std::to_string(score) + sep + "60" + sep + letters +
                sep + times);
    if (text.size() < (size_t{1} << 20)) continue;
    tessaro::Check(file->Write(text), "write");
    text.clear();
  }
  add("##", "");
  tessaro::Check(file->Write(text) && file->Close(), "write");
}

// The least of some runs, since other programs can only make it longer.
double Least(const std::function<void()>& work) {
  double least = 1e9;
  for (int i = 0; i < kRounds; ++i) least = std::min(least, ProcessorTime(work));
  return least;
}

void PrintGoal(const char* what, double seconds, double goal) {
  std::printf("  %-52s %8.1f ms   goal %7.0f ms   ratio %5.2f\n", what, seconds * 1e3, goal * 1e3, seconds / goal);
  std::fflush(stdout);
}

template <typename Work>
double StepThrough(Work& work, double& longest, int count = kCardsAtOnce) {
  bool more = true;
  return ProcessorTime([&] {
    while (more) longest = std::max(longest, ProcessorTime([&] { more = work.Step(count); }));
  });
}

struct Deck {
  Deck(const fs::path& folder, int cards, int answers) : path(folder / "deck.mlb") {
    WriteDeck(path, cards, answers);
    tessaro::Check(file.Open(path).result == tessaro::OpenResult::Opened, "open");
  }
  ~Deck() {
    file.Close();
    fs::remove(path);
  }
  fs::path path;
  CardFile file;
};

void MeasureReading(const fs::path& folder, int cards, int answers, double goal) {
  const Deck deck(folder, cards, answers);
  const tessaro::LocalDays days;
  double reading = 1e9;
  double fit = 1e9;
  double longest = 0;
  DeckOutlook outlook;
  for (int i = 0; i < kRounds; ++i) {
    tessaro::OutlookReading work(deck.file, kNow, days);
    reading = std::min(reading, ProcessorTime([&] {
                         for (int row = 0; row < cards + kCardsAtOnce; row += kCardsAtOnce) work.Step(kCardsAtOnce);
                       }));
    fit = std::min(fit, StepThrough(work, longest));
    outlook = work.Take();
  }
  char text[80];
  std::snprintf(text, sizeof text, "read and follow %d cards, %d answers each", cards, answers);
  PrintGoal(text, reading, goal);
  std::snprintf(text, sizeof text, "fit on %zu answers", std::min<size_t>(outlook.answers, 200'000));
  PrintGoal(text, fit, 0.25);
  double sum = 0;
  const double recall = Least([&] {
    for (const tessaro::CardTrace& trace : outlook.answered) sum += tessaro::RecallAt(trace, outlook.weights, kNow);
  });
  std::snprintf(text, sizeof text, "recall of %d cards", cards);
  PrintGoal(text, recall, 0.12 * cards / 1e6);
  std::printf("  %-52s %8.2f ms   %.0f cards known\n", "longest step", longest * 1e3, sum / kRounds);
}

void MeasureWindow(const fs::path& folder) {
  const Deck deck(folder, 50'000, 10);
  const tessaro::LocalDays days;
  double longest = 0;
  double least = 1e9;
  for (int i = 0; i < kRounds; ++i) {
    least = std::min(least, ProcessorTime([&] {
                       tessaro::OutlookReading reading(deck.file, kNow, days);
                       StepThrough(reading, longest);
                       const DeckOutlook outlook = reading.Take();
                       tessaro::KnowledgeCount count(deck.file, outlook);
                       StepThrough(count, longest);
                     }));
  }
  PrintGoal("window open to figures, 50000 cards", least, 0.1);
}

void MeasurePlan(const fs::path& folder) {
  const Deck deck(folder, 20'000, 10);
  const tessaro::LocalDays days;
  tessaro::OutlookReading reading(deck.file, kNow, days);
  double longest = 0;
  StepThrough(reading, longest);
  const DeckOutlook outlook = reading.Take();
  const tessaro::IniFile settings;
  longest = 0;
  double least = 1e9;
  for (int i = 0; i < kRounds; ++i) {
    tessaro::Plan plan(deck.file, outlook, settings, days, {days.DayOf(kNow) + 90, 20, 15});
    least = std::min(least, StepThrough(plan, longest, 20));
    const tessaro::PlanReport report = plan.Take();
    if (i > 0) continue;
    std::printf("  known on day 90:");
    for (const tessaro::PlanCurve& curve : report.curves) std::printf(" %.0f", curve.known.back());
    std::printf(" of %d\n", 20'000);
  }
  PrintGoal("plan, 90 days, 4 curves, 20000 cards", least, 1.5);
  std::printf("  %-52s %8.2f ms\n", "longest step of the plan", longest * 1e3);
}

}  // namespace

int main() {
  std::string name = (fs::temp_directory_path() / "tessaro_bench_XXXXXX").string();
  tessaro::Check(mkdtemp(name.data()) != nullptr, "new folder");
  const fs::path folder(name);
  MeasureWindow(folder);
  MeasurePlan(folder);
  MeasureReading(folder, tessaro::kMostCards, 10, 0.6);
  MeasureReading(folder, tessaro::kMostCards, 30, 1.5);
  MeasureReading(folder, 500'000, 64, 1.2);
  fs::remove_all(folder);
  return 0;
}
